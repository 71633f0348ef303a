#include "Tests/Support/PinnedEnvironment.h"

#include <gmock/gmock.h>

int main(int argc, char** argv) {
  tavrin::test::pinEnvironment();
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}

#include "Tests/Support/PinnedEnvironment.h"

#include <QApplication>
#include <gmock/gmock.h>

// Widgets need an application.
int main(int argc, char** argv) {
  tavrin::test::pinEnvironment();
  testing::InitGoogleMock(&argc, argv);
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}

#include "TavrinSlot/Controllers/Runs/StoredRun.h"

#include "TavrinCore/Kinds/Runs/TimerRun.h"
#include "Tests/Support/FakePlatform.h"

#include <gtest/gtest.h>
#include <limits>

namespace tavrin::test {
namespace {

TEST(StoredRun, OneWithoutAJSONFormLeavesWhatIsThere) {
  FakeUserDefaults defaults;
  TimerRun run;
  run.accumulated = 12;
  storeRun(defaults, "run", run);
  TimerRun endless = run;
  endless.accumulated = std::numeric_limits<double>::infinity();
  EXPECT_NO_THROW(storeRun(defaults, "run", endless));
  EXPECT_EQ(storedRun(defaults, "run", TimerRun{}).accumulated, 12);
}

} // namespace
} // namespace tavrin::test

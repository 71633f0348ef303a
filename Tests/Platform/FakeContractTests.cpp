#include "TavrinPlatform/POSIX/JSONUserDefaults.h"
#include "Tests/Platform/ApplicationLibraryContract.h"
#include "Tests/Platform/CalendarStoreContract.h"
#include "Tests/Platform/ColourSamplerContract.h"
#include "Tests/Platform/HostStatisticsContract.h"
#include "Tests/Platform/KeychainContract.h"
#include "Tests/Platform/NotificationCenterContract.h"
#include "Tests/Platform/PowerSourcesContract.h"
#include "Tests/Platform/UserDefaultsContract.h"
#include "Tests/Platform/WorkspaceContract.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/ManualRunLoop.h"
#include "Tests/Support/FakeClipboard.h"
#include "Tests/Support/FakeHardware.h"
#include "Tests/Support/FakePlatform.h"

/// The fakes of the tests, by the same suites as the adapters they stand for.
namespace tavrin::test {
namespace {

struct FakeKeychainRig {
  Keychain& keychain() { return fake; }
  void refuse(int status) { fake.status = status; }
  FakeKeychain fake;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, KeychainContract, FakeKeychainRig);

struct FakeStatisticsRig {
  HostStatistics& statistics() { return fake; }
  void set(const CPULoad& load) { fake.cpu = load; }
  void set(const MemoryLoad& load) { fake.memory = load; }
  void setLinks(const std::vector<LinkCounters>& links) {
    for (const auto& link : links)
      fake.links.push_back({link.name, link.received, link.sent});
  }
  void fail() { fake = {}; }
  FakeHostStatistics fake;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, HostStatisticsContract, FakeStatisticsRig);

struct FakePowerRig {
  PowerSources& sources() { return fake; }
  void set(const std::vector<PowerSource>& list) { fake.sources = list; }
  void tell() { fake.changes.call(); }
  FakePowerSources fake;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, PowerSourcesContract, FakePowerRig);

struct FakeDefaultsRig {
  UserDefaults& defaults() { return fake; }
  UserDefaults& again() { return fake; }
  FakeUserDefaults fake;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, UserDefaultsContract, FakeDefaultsRig);

struct FileDefaultsRig {
  UserDefaults& defaults() { return *now; }
  UserDefaults& again() { return *(now = std::make_unique<JSONUserDefaults>(file, log, loop)); }
  TemporaryFolder folder;
  FakeLog log;
  ManualClock clock{Date{}};
  ManualRunLoop loop{clock};
  std::filesystem::path file = folder.path() / "defaults.json";
  std::unique_ptr<JSONUserDefaults> now = std::make_unique<JSONUserDefaults>(file, log, loop);
};
INSTANTIATE_TYPED_TEST_SUITE_P(File, UserDefaultsContract, FileDefaultsRig);

struct FakeSamplerRig {
  ColourSampler& sampler() { return fake; }
  void take(const ColourSample& sample) { fake.done(sample); }
  void cancel() { fake.done({}); }
  FakeColourSampler fake;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ColourSamplerContract, FakeSamplerRig);

/// Those that answer when the loop says so.
struct FakeLoopRig {
  void settle() { loop.advance(0); }
  ManualClock clock{{}};
  ManualRunLoop loop{clock};
};

struct FakeCalendarRig : FakeLoopRig {
  FakeCalendarRig() { fake.current = CalendarAccess::notAsked; }
  CalendarStore& store() { return fake; }
  void grant() { fake.onRequest = CalendarAccess::granted; }
  void change() { fake.changes.call(); }
  FakeCalendarStore fake{loop};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, CalendarStoreContract, FakeCalendarRig);

struct FakeLibraryRig : FakeLoopRig {
  ApplicationLibrary& library() { return fake; }
  ApplicationInfo install() {
    fake.installed = {FakeApplicationLibrary::app("Mail")};
    return fake.installed.front();
  }
  void refuse() { fake.trouble = "Failed to start \"Mail\""; }
  FakeApplicationLibrary fake{loop};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ApplicationLibraryContract, FakeLibraryRig);

struct FakeNoticesRig {
  DistributedNotificationCenter& center() { return fake; }
  void settle() {}
  FakeNotificationCenter fake;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, NotificationCenterContract, FakeNoticesRig);

struct FakeWorkspaceRig {
  Workspace& workspace() { return fake; }
  void wake() { fake.wake.call(); }
  void dayChange() { fake.dayChange.call(); }
  void clockChange() { fake.clockChange.call(); }
  void setLowPower(bool flag) {
    fake.lowPower = flag;
    fake.lowPowerChange.call();
  }
  void setDark(bool flag) {
    fake.dark = flag;
    fake.appearance.call();
  }
  void setReducedMotion(bool flag) {
    fake.reducedMotion = flag;
    fake.appearance.call();
  }
  FakeWorkspace fake;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, WorkspaceContract, FakeWorkspaceRig);

} // namespace
} // namespace tavrin::test

#include "TavrinPlatform/POSIX/JSONUserDefaults.h"
#include "Tests/Platform/HostStatisticsContract.h"
#include "Tests/Platform/KeychainContract.h"
#include "Tests/Platform/PowerSourcesContract.h"
#include "Tests/Platform/UserDefaultsContract.h"
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

} // namespace
} // namespace tavrin::test

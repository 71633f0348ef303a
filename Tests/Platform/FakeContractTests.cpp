#include "Tests/Platform/ApplicationLibraryContract.h"
#include "Tests/Platform/CalendarStoreContract.h"
#include "Tests/Platform/ColourSamplerContract.h"
#include "Tests/Platform/GlobalShortcutsContract.h"
#include "Tests/Platform/HostStatisticsContract.h"
#include "Tests/Platform/KeychainContract.h"
#include "Tests/Platform/MainBundleContract.h"
#include "Tests/Platform/MediaPlayersContract.h"
#include "Tests/Platform/NotificationCenterContract.h"
#include "Tests/Platform/PasteboardContract.h"
#include "Tests/Platform/PowerSourcesContract.h"
#include "Tests/Platform/SoundPlayerContract.h"
#include "Tests/Platform/UserDefaultsContract.h"
#include "Tests/Platform/UserNotificationsContract.h"
#include "Tests/Platform/WorkspaceContract.h"
#include "Tests/Support/FakeClipboard.h"
#include "Tests/Support/FakeGlobalShortcuts.h"
#include "Tests/Support/FakeHardware.h"
#include "Tests/Support/FakePlatform.h"
#include "Tests/Support/ManualRunLoop.h"

#include <sstream>

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
  bool comesTrue(const std::function<bool()>& condition) { return condition(); }
  FakePowerSources fake;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, PowerSourcesContract, FakePowerRig);

struct FakeDefaultsRig {
  UserDefaults& defaults() { return fake; }
  UserDefaults& again() { return fake; }
  FakeUserDefaults fake;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, UserDefaultsContract, FakeDefaultsRig);

struct FakeSamplerRig {
  ColourSampler& sampler() { return fake; }
  void take(const ColourSample& sample) { fake.done(sample); }
  void cancel() { fake.done({}); }
  bool comesTrue(const std::function<bool()>& condition, int = 0) { return condition(); }
  FakeColourSampler fake;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ColourSamplerContract, FakeSamplerRig);

/// Those that answer when the loop says so.
struct FakeLoopRig {
  bool comesTrue(const std::function<bool()>& condition) {
    loop.advance(0);
    return condition();
  }
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
  bool comesTrue(const std::function<bool()>& condition) { return condition(); }
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

struct FakePasteboardRig {
  Pasteboard& board() { return fake; }
  void copy(const std::string& type, const std::string& bytes) { fake.copy({{type, bytes}}); }
  bool comesTrue(const std::function<bool()>& condition) { return condition() || condition(); }
  FakePasteboard fake;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, PasteboardContract, FakePasteboardRig);

struct FakeShortcutsRig {
  GlobalShortcuts& shortcuts() { return fake; }
  static Hotkey free(int number) {
    return {static_cast<std::uint16_t>(number), HotkeyModifiers::option};
  }
  Hotkey taken() {
    fake.refusals = {{"taken", "another program has this key"}};
    return {7, HotkeyModifiers::option};
  }
  void press(const Hotkey& hotkey) {
    for (const auto& shortcut : fake.bound)
      if (shortcut.hotkey == hotkey && shortcut.id != "taken")
        fake.pressed(shortcut.id);
  }
  bool comesTrue(const std::function<bool()>& condition) { return condition(); }
  FakeGlobalShortcuts fake;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, GlobalShortcutsContract, FakeShortcutsRig);

struct FakeSoundRig {
  SoundPlayer& player() { return *fake; }
  void end() { fake.reset(); }
  std::size_t begun() const { return fake ? fake->played.size() : 0; }
  bool comesTrue(const std::function<bool()>& condition) { return condition(); }
  std::unique_ptr<FakeSounds> fake = std::make_unique<FakeSounds>();
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SoundPlayerContract, FakeSoundRig);

struct FakePlayersRig {
  MediaPlayers& players() { return fake; }
  Clock& clock() { return now; }
  std::string come(int number) {
    auto player = FakeMediaPlayers::player(names[number], "Tide", 200, now.now());
    player.playback.track.artist = "One";
    player.playback.setPosition(5, now.now());
    player.volume = 0.4;
    fake.all.insert(fake.all.begin(), player);
    fake.changes.call();
    return player.name;
  }
  void quit(int number) {
    std::erase_if(fake.all, [&](const auto& player) { return player.name == names[number]; });
    fake.changes.call();
  }
  std::vector<std::string> orders(int number) const {
    std::vector<std::string> orders;
    for (const auto& words : fake.told) {
      std::istringstream stream(words);
      std::string order, name, value;
      stream >> order >> name >> value;
      if (name == names[number])
        orders.push_back(order == "playPause" ? "toggle" : order + (value.empty() ? "" : " " + value));
    }
    return orders;
  }
  bool comesTrue(const std::function<bool()>& condition) { return condition(); }
  const std::string names[2] = {"one", "two"};
  ManualClock now{{}};
  FakeMediaPlayers fake;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, MediaPlayersContract, FakePlayersRig);
// The fake's players stand as a test puts them.
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(MediaPlayersOrderContract);

struct FakeUserNoticesRig {
  UserNotificationCenter& center() { return fake; }
  Titles shownAfter(double seconds) {
    passed += seconds;
    std::vector<std::pair<double, std::string>> due;
    for (const auto& [id, request] : fake.pending)
      if (request.delay <= passed)
        due.emplace_back(request.delay, request.title);
    std::ranges::sort(due);
    Titles titles;
    for (const auto& [delay, title] : due)
      titles.push_back(title);
    return titles;
  }
  FakeUserNotifications fake;
  double passed = 0;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, UserNotificationsContract, FakeUserNoticesRig);

struct FakeBundleRig {
  FakeBundleRig() {
    fake.bundlePath = "/Applications/Tavrin Slot 3.app";
    fake.strings = {{"CFBundleIdentifier", "dev.quellby.Tavrin.Slot3"},
                    {"TavrinDataFolder", "TavrinDev"}};
    fake.integers = {{"TavrinSlot", 3}};
  }
  MainBundle& bundle() { return fake; }
  MainBundle& bare() { return none; }
  FakeMainBundle fake;
  FakeMainBundle none;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, MainBundleContract, FakeBundleRig);

} // namespace
} // namespace tavrin::test

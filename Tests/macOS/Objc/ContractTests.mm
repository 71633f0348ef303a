#include "Tests/macOS/Objc/MacTest.h"

#include "TavrinPlatform/macOS/Applications/MacApplicationLibrary.h"
#include "TavrinPlatform/macOS/Applications/MacAutostart.h"
#include "TavrinPlatform/macOS/Desktop/MacCalendarStore.h"
#include "TavrinPlatform/macOS/Desktop/MacMediaPlayers.h"
#include "TavrinPlatform/macOS/Desktop/MacNotifications.h"
#include "TavrinPlatform/macOS/Desktop/MacSoundPlayer.h"
#include "TavrinPlatform/macOS/Desktop/MacWorkspace.h"
#include "TavrinPlatform/macOS/Dock/MacFocusStatus.h"
#include "TavrinPlatform/macOS/Files/MacFolderWatch.h"
#include "TavrinPlatform/macOS/Files/MacUserFiles.h"
#include "TavrinPlatform/macOS/Input/MacColourSampler.h"
#include "TavrinPlatform/macOS/Input/MacGlobalShortcuts.h"
#include "TavrinPlatform/macOS/Input/MacInputBlocker.h"
#include "TavrinPlatform/macOS/Pasteboard/MacPasteboard.h"
#include "TavrinPlatform/macOS/Slot/MacFileManager.h"
#include "TavrinPlatform/macOS/Slot/MacMainBundle.h"
#include "TavrinPlatform/macOS/Slot/MacUserDefaults.h"
#include "Tests/Platform/ApplicationLibraryContract.h"
#include "Tests/Platform/AutostartContract.h"
#include "Tests/Platform/CalendarStoreContract.h"
#include "Tests/Platform/ColourSamplerContract.h"
#include "Tests/Platform/FileManagerContract.h"
#include "Tests/Platform/FocusStatusContract.h"
#include "Tests/Platform/FolderWatchContract.h"
#include "Tests/Platform/GlobalShortcutsContract.h"
#include "Tests/Platform/InputBlockerContract.h"
#include "Tests/Platform/MainBundleContract.h"
#include "Tests/Platform/MediaPlayersContract.h"
#include "Tests/Platform/NotificationCenterContract.h"
#include "Tests/Platform/PasteboardContract.h"
#include "Tests/Platform/SoundPlayerContract.h"
#include "Tests/Platform/UserDefaultsContract.h"
#include "Tests/Platform/UserFilesContract.h"
#include "Tests/Platform/UserNotificationsContract.h"
#include "Tests/Platform/WorkspaceContract.h"
#include "Tests/Support/FakeFolderWatch.h"

#include <sstream>

/// The macOS adapters on their fakes, by the same suites as the others.
namespace tavrin::test {
namespace {

struct MacFolderRig : MacFakes {
  FolderWatch& watch() { return watch_; }
  void changed(const std::filesystem::path& path) { changeFile(path.string()); }
  bool comesTrue(const std::function<bool()>& condition) {
    for (int i = 0; i < 4; ++i) {
      runQueues();
      runLoop_.runPosts();
      if (condition())
        return true;
      runLoop_.advance(5);
    }
    return false;
  }
  MacFolderWatch watch_{runLoop_};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, FolderWatchContract, MacFolderRig);

struct MacDefaultsRig : MacFakes {
  struct Silence final : LogSink {
    void write(LogLevel, std::string_view, std::string_view, std::string_view) override {}
  };
  UserDefaults& defaults() { return *now_; }
  UserDefaults& again() { return *(now_ = makeMacUserDefaults(log_)); }
  Silence log_;
  std::unique_ptr<UserDefaults> now_ = makeMacUserDefaults(log_);
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, UserDefaultsContract, MacDefaultsRig);

struct MacSamplerRig : MacFakes {
  MacSamplerRig() { settle([] { (void)NSColorSpace.sRGBColorSpace; }); }
  ColourSampler& sampler() { return *sampler_; }
  /// The fake colour is always the same orange.
  void take(const ColourSample&) { appKit.sampled([[NSColor alloc] init]); }
  void cancel() { appKit.sampled(nil); }
  bool comesTrue(const std::function<bool()>& condition, int = 0) { return condition(); }
  std::unique_ptr<ColourSampler> sampler_ = makeMacColourSampler();
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, ColourSamplerContract, MacSamplerRig);

struct MacCalendarRig : MacFakes {
  CalendarStore& store() { return *store_; }
  void grant() {
    eventKit.events = eventKit.reminders = EKAuthorizationStatusFullAccess;
    if (eventKit.asked != nil)
      eventKit.asked(YES, nil);
  }
  bool comesTrue(const std::function<bool()>& condition) {
    runLoop_.runPosts();
    runLoop_.runBackground();
    return condition();
  }
  void change() { postNotice(NSNotificationCenter.defaultCenter, EKEventStoreChangedNotification); }
  std::unique_ptr<CalendarStore> store_ = makeMacCalendarStore(runLoop_);
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, CalendarStoreContract, MacCalendarRig);

struct MacWorkspaceRig : MacFakes {
  Workspace& workspace() { return *workspace_; }
  void wake() { postNotice(own, NSWorkspaceDidWakeNotification); }
  void dayChange() { postNotice(standard, NSCalendarDayChangedNotification); }
  void clockChange() { postNotice(standard, NSSystemClockDidChangeNotification); }
  void setLowPower(bool flag) {
    foundation.isLowPower = flag;
    postNotice(standard, NSProcessInfoPowerStateDidChangeNotification);
  }
  void setDark(bool flag) {
    appKit.isDark = flag;
    // The fakes observe no properties; the other notice leads to the same handlers.
    postNotice(own, NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification);
  }
  void setReducedMotion(bool flag) {
    appKit.reducesMotion = flag;
    postNotice(own, NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification);
  }
  bool comesTrue(const std::function<bool()>& condition) { return condition(); }
  NSNotificationCenter* own = NSWorkspace.sharedWorkspace.notificationCenter;
  NSNotificationCenter* standard = NSNotificationCenter.defaultCenter;
  std::unique_ptr<FileManager> files_ = makeMacFileManager({});
  std::unique_ptr<Workspace> workspace_ = makeMacWorkspace(*files_);
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, WorkspaceContract, MacWorkspaceRig);

struct MacNoticesRig : MacFakes {
  DistributedNotificationCenter& center() { return *center_; }
  void settle() {}
  std::unique_ptr<DistributedNotificationCenter> center_ = makeMacDistributedNotificationCenter();
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, NotificationCenterContract, MacNoticesRig);

struct MacLibraryRig : MacFakes {
  ApplicationLibrary& library() { return *library_; }
  ApplicationInfo install() {
    ApplicationInfo app;
    app.id = "org.mail";
    app.name = "Mail";
    app.path = app.icon = (folder_ / "Mail.app").string();
    std::filesystem::create_directory(app.path);
    foundation.bundles[app.path] = {app.id};
    foundation.displayNames[app.path] = "Mail.app";
    foundation.applicationFolders = {folder_.path().string()};
    appKit.installed.emplace()[app.id] = app.path;
    appKit.opened = 7;
    return app;
  }
  bool comesTrue(const std::function<bool()>& condition) {
    runLoop_.runBackground();
    return condition();
  }
  void refuse() { appKit.opened = 0; }
  TemporaryFolder folder_;
  FakeFolderWatch folders_;
  std::unique_ptr<ApplicationLibrary> library_ = makeMacApplicationLibrary(runLoop_, folders_);
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, ApplicationLibraryContract, MacLibraryRig);

struct MacPasteboardRig : MacFakes {
  MacPasteboardRig() { settle([] { (void)NSPasteboard.generalPasteboard; }); }
  Pasteboard& board() { return *board_; }
  void copy(const std::string& type, const std::string& bytes) {
    ++pasteboard.count;
    pasteboard.contents = {{type == Pasteboard::textType ? "public.utf8-plain-text" : "public.png", bytes}};
  }
  bool comesTrue(const std::function<bool()>& condition) {
    for (int i = 0; i < 4; ++i) {
      if (condition())
        return true;
      runLoop_.advance(0.5);
      runLoop_.runBackground();
    }
    return condition();
  }
  std::unique_ptr<Pasteboard> board_ = makeMacPasteboard(runLoop_);
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, PasteboardContract, MacPasteboardRig);

struct MacShortcutsRig : MacFakes {
  GlobalShortcuts& shortcuts() { return *shortcuts_; }
  static Hotkey free(int number) { return {std::uint16_t(number), HotkeyModifiers::option}; }
  static Hotkey taken() {
    input.refused = {{7, eventHotKeyExistsErr}};
    return {7, HotkeyModifiers::option};
  }
  static void press(const Hotkey& hotkey) {
    if (const auto found = input.keys.find(hotkey.keyCode); found != input.keys.end())
      pressKey(found->second);
  }
  bool comesTrue(const std::function<bool()>& condition) { return condition(); }
  std::unique_ptr<GlobalShortcuts> shortcuts_ = makeMacGlobalShortcuts();
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, GlobalShortcutsContract, MacShortcutsRig);

struct MacUserNoticesRig : MacFakes {
  MacUserNoticesRig() { settle([] { (void)UNUserNotificationCenter.currentNotificationCenter; (void)UNNotificationSound.defaultSound; }); }
  UserNotificationCenter& center() { return *center_; }
  Titles shownAfter(double seconds) {
    passed_ += seconds;
    std::vector<std::pair<double, std::string>> due;
    for (const auto& [id, request] : notifications.pending)
      if (request.second <= passed_)
        due.emplace_back(request.second, request.first);
    std::ranges::sort(due);
    Titles titles;
    for (const auto& [delay, title] : due)
      titles.push_back(title);
    return titles;
  }
  std::unique_ptr<UserNotificationCenter> center_ = makeMacUserNotificationCenter();
  double passed_ = 0;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, UserNotificationsContract, MacUserNoticesRig);

struct MacBundleRig : MacFakes {
  MainBundle& bundle() {
    foundation.information["TavrinSlot"] = @3;
    foundation.information["TavrinDataFolder"] = @"TavrinDev";
    foundation.information["Flag"] = @YES;
    foundation.information["Half"] = @0.5;
    return *(bundle_ = makeMacMainBundle());
  }
  MainBundle& bare() {
    foundation.bundlePath = "/usr/local/bin";
    return *(bundle_ = makeMacMainBundle());
  }
  std::unique_ptr<MainBundle> bundle_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, MainBundleContract, MacBundleRig);

struct MacSoundRig : MacFakes {
  MacSoundRig() { settle([] { (void)[NSSound soundNamed:@""]; }); }
  ~MacSoundRig() { [[NSSound soundNamed:@""] stop]; }
  SoundPlayer& player() { return *player_; }
  void end() { player_.reset(); }
  long begun() const {
    return std::ranges::count_if(calls, [](const auto& call) { return call.starts_with("play "); });
  }
  bool comesTrue(const std::function<bool()>& condition) { return condition(); }
  std::unique_ptr<SoundPlayer> player_ = makeMacSoundPlayer();
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, SoundPlayerContract, MacSoundRig);

struct MacPlayersRig : MacFakes {
  MediaPlayers& players() { return *players_; }
  Clock& clock() { return clock_; }
  std::string come(int number) {
    appKit.running[identifiers[number]] = first + number;
    FakePlayer& player = services.players[first + number];
    player.codes["pPlS"] = "kPSP";
    player.numbers = {{"pPos", 5}, {"pVol", 40}, {"pTrk.pDur", number == 0 ? 200 : 200'000}};
    player.texts = {{"pTrk.pnam", "Tide"}, {"pTrk.pArt", "One"}};
    postNotice(NSWorkspace.sharedWorkspace.notificationCenter, NSWorkspaceDidLaunchApplicationNotification);
    return number == 0 ? "music" : "spotify";
  }
  void quit(int number) {
    appKit.running.erase(identifiers[number]);
    services.players.erase(first + number);
    postNotice(NSWorkspace.sharedWorkspace.notificationCenter, NSWorkspaceDidTerminateApplicationNotification);
  }
  void play(int number) { become(number, "kPSP", @"Playing"); }
  void pause(int number) { become(number, "kPSp", @"Paused"); }
  std::vector<std::string> orders(int number) const {
    const std::map<std::string, std::string> words = {
        {"PlPs", "toggle"}, {"Next", "next"}, {"Prev", "previous"}};
    std::vector<std::string> orders;
    for (const auto& call : calls) {
      std::istringstream stream(call);
      std::string to, process, suite, event, property, equals;
      double value = 0;
      stream >> to >> process >> suite >> event >> property >> equals >> value;
      if (to != "to" || process != std::to_string(first + number) + ":")
        continue;
      if (const auto word = words.find(event); word != words.end())
        orders.push_back(word->second);
      else if (property == "pPos")
        orders.push_back("seek " + std::to_string(int(value)));
      else
        orders.push_back(property == "pVol" && value == 25 ? "volume 0.25" : call);
    }
    return orders;
  }
  bool comesTrue(const std::function<bool()>& condition) {
    runLoop_.runBackground();
    return condition();
  }

private:
  void become(int number, const char* state, NSString* name) {
    services.players[first + number].codes["pPlS"] = state;
    [[NSDistributedNotificationCenter defaultCenter]
        post:number == 0 ? @"com.apple.Music.playerInfo" : @"com.spotify.client.PlaybackStateChanged"
      object:nil
        info:@{@"Player State" : name}];
  }
  static constexpr int first = 71;
  const std::string identifiers[2] = {"com.apple.Music", "com.spotify.client"};
  std::unique_ptr<MediaPlayers> players_ = makeMacMediaPlayers(runLoop_, clock_);
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, MediaPlayersContract, MacPlayersRig);
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, MediaPlayersOrderContract, MacPlayersRig);

struct MacBlockerRig : MacFakes {
  InputBlocker& blocker() { return *blocker_; }
  static void press() {
    if (input.ports > 0) // else there is no tap that it could come through
      sendInput(10);
  }
  static void takeKeyboard() { input.isSecure = true; }
  static void lockScreen() {
    postNotice([NSDistributedNotificationCenter defaultCenter], @"com.apple.screenIsLocked");
  }
  bool comesTrue(const std::function<bool()>& condition, int = 0) {
    for (int i = 0; i < 8; ++i) {
      runLoop_.runPosts();
      if (condition())
        return true;
      runLoop_.advance(0.25);
    }
    return false;
  }
  std::unique_ptr<DistributedNotificationCenter> notices_ = makeMacDistributedNotificationCenter();
  std::unique_ptr<InputBlocker> blocker_ = makeMacInputBlocker(runLoop_, *notices_);
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, InputBlockerContract, MacBlockerRig);

struct MacFilesRig : MacFakes {
  UserFiles& files() { return *files_; }
  std::filesystem::path home() const { return "/Users/ada"; }
  static void choose(const std::string& folder) {
    foundation.defaults["com.apple.screencapture"]["location"] =
        [NSString stringWithUTF8String:("~/" + folder).c_str()];
  }
  static std::filesystem::path opened() { return lastAfter("open file://"); }
  static std::filesystem::path shown() { return lastAfter("reveal "); }
  static std::string lastAfter(const std::string& word) {
    return calls.empty() || !calls.back().starts_with(word) ? "" : calls.back().substr(word.size());
  }
  std::unique_ptr<UserFiles> files_ = makeMacUserFiles();
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, UserFilesContract, MacFilesRig);

struct MacFocusRig : MacFakes {
  MacFocusRig() { settle([] { (void)INFocusStatusCenter.defaultCenter; }); }
  FocusStatusProvider& focus() { return *focus_; }
  static void set(bool flag) {
    services.focusAccess = INFocusStatusAuthorizationStatusAuthorized;
    services.isFocused = [NSNumber numberWithBool:flag];
  }
  std::unique_ptr<FocusStatusProvider> focus_ = makeMacFocusStatus();
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, FocusStatusContract, MacFocusRig);

struct MacManagerRig : MacFakes {
  std::unique_ptr<FileManager> files(std::map<std::string, std::string> environment) {
    return makeMacFileManager(std::move(environment));
  }
  std::filesystem::path home() const { return "/Users/ada"; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, FileManagerContract, MacManagerRig);

struct MacAutostartRig : MacFakes {
  Autostart& autostart() { return now_.emplace(home_.path(), "/opt/tavrin/bin/tavrin"); }
  void refuse() { put(home_ / "Library", "in the way"); }
  TemporaryFolder home_;
  std::optional<MacAutostart> now_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, AutostartContract, MacAutostartRig);

} // namespace
} // namespace tavrin::test

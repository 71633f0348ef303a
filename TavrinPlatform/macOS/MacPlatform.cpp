#include "TavrinCore/Base/Lazily.h"
#include "TavrinPlatform/Files/TextsFile.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinPlatform/Qt/QtHTTPClient.h"
#include "TavrinPlatform/Qt/QtProcessRunner.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "TavrinPlatform/Qt/QtTextLocale.h"
#include "TavrinPlatform/macOS/Applications/MacApplicationLibrary.h"
#include "TavrinPlatform/macOS/Base/UserLanguages.h"
#include "TavrinPlatform/macOS/Desktop/MacCalendarStore.h"
#include "TavrinPlatform/macOS/Desktop/MacKeychain.h"
#include "TavrinPlatform/macOS/Desktop/MacLogSink.h"
#include "TavrinPlatform/macOS/Desktop/MacMediaPlayers.h"
#include "TavrinPlatform/macOS/Desktop/MacNearbyDevices.h"
#include "TavrinPlatform/macOS/Desktop/MacNotifications.h"
#include "TavrinPlatform/macOS/Desktop/MacSoundPlayer.h"
#include "TavrinPlatform/macOS/Desktop/MacWorkspace.h"
#include "TavrinPlatform/macOS/Devices/MacConnectedDevices.h"
#include "TavrinPlatform/macOS/Devices/MacHostStatistics.h"
#include "TavrinPlatform/macOS/Devices/MacPowerSources.h"
#include "TavrinPlatform/macOS/Devices/SMCConnection.h"
#include "TavrinPlatform/macOS/Dock/MacPreferencesService.h"
#include "TavrinPlatform/macOS/FanHelper/MacFanHelper.h"
#include "TavrinPlatform/macOS/Files/MacFolderWatch.h"
#include "TavrinPlatform/macOS/Files/MacUserFiles.h"
#include "TavrinPlatform/macOS/Input/MacColourSampler.h"
#include "TavrinPlatform/macOS/Input/MacGlobalShortcuts.h"
#include "TavrinPlatform/macOS/Input/MacInputBlocker.h"
#include "TavrinPlatform/macOS/Pasteboard/MacPasteboard.h"
#include "TavrinPlatform/macOS/Slot/MacApplication.h"
#include "TavrinPlatform/macOS/Slot/MacFileManager.h"
#include "TavrinPlatform/macOS/Slot/MacMainBundle.h"
#include "TavrinPlatform/macOS/Slot/MacUserDefaults.h"
#include "TavrinPlatform/macOS/Tile/MacDockGeometry.h"
#include "TavrinPlatform/macOS/Tile/MacDockTile.h"
#include "TavrinPlatform/macOS/Tile/MacPanelPopover.h"

#include <QApplication>
#include <chrono>

namespace tavrin {
namespace {

double uptime() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Members are destroyed in reverse order: what others use stands first.
class MacPlatform final : public Platform {
public:
  MacPlatform(int& argc, char** argv) : application_({argv, argv + argc}), toolkit_(argc, argv) {
    QApplication::setQuitOnLastWindowClosed(false);
    setTextLocale();
    application_.hasJustClosedPanel = [this] {
      return popover_ && popover_->hasJustClosedByItself();
    };
  }
  /// No work is under way that uses a service, then the services go.
  ~MacPlatform() override { runLoop_.endWork(); }
  int run(std::function<void()> launched) { return application_.run(std::move(launched)); }

  LogSink& log() override { return log_; }
  Clock& clock() override { return clock_; }
  RunLoop& runLoop() override { return runLoop_; }
  Application& application() override { return application_; }
  MainBundle& mainBundle() override { return *mainBundle_; }
  FileManager& fileManager() override { return *fileManager_; }
  UserFiles& userFiles() override { return lazily(userFiles_, makeMacUserFiles); }
  FolderWatch& folderWatch() override { return made(folderWatch_, runLoop_); }
  UserDefaults& userDefaults() override {
    return lazily(userDefaults_, [this] { return makeMacUserDefaults(log_); });
  }
  DistributedNotificationCenter& notifications() override {
    return lazily(notifications_, makeMacDistributedNotificationCenter);
  }
  DockTile& dockTile() override { return made(dockTile_); }
  DockGeometry& dockGeometry() override {
    return lazily(dockGeometry_, [] { return makeMacDockGeometry(); });
  }
  PanelPopover& popover() override { return made(popover_, uptime); }
  Workspace& workspace() override {
    return lazily(workspace_, [this] { return makeMacWorkspace(*fileManager_); });
  }
  UserNotificationCenter& userNotifications() override { return *userNotifications_; }
  SoundPlayer& sounds() override { return lazily(sounds_, makeMacSoundPlayer); }
  ProcessRunner& processes() override { return processes_; }
  HTTPClient& http() override { return made(http_); }
  CalendarStore& calendars() override {
    return lazily(calendars_, [this] { return makeMacCalendarStore(runLoop_); });
  }
  HostStatistics& hostStatistics() override { return made(hostStatistics_); }
  PowerSources& powerSources() override { return made(powerSources_); }
  ConnectedDevices& connectedDevices() override {
    return made(connectedDevices_, runLoop_, processes_, log_);
  }
  InputBlocker& inputBlocker() override {
    return lazily(inputBlocker_, [this] { return makeMacInputBlocker(runLoop_, notifications()); });
  }
  SMCAccess& smc() override { return smc_; }
  FanHelperClient& fanHelper() override {
    return lazily(fanHelper_, [this] {
      return makeMacFanHelper(runLoop_, mainBundle_->identifier().value_or(""),
                              mainBundle_->string("TavrinTeam").value_or(""));
    });
  }
  Pasteboard& pasteboard() override {
    return lazily(pasteboard_, [this] { return makeMacPasteboard(runLoop_); });
  }
  ColourSampler& colourSampler() override { return lazily(colourSampler_, makeMacColourSampler); }
  Keychain& keychain() override { return keychain_; }
  GlobalShortcuts& globalShortcuts() override {
    return lazily(globalShortcuts_, makeMacGlobalShortcuts);
  }
  ApplicationLibrary& applications() override {
    return lazily(applications_,
                  [this] { return makeMacApplicationLibrary(runLoop_, folderWatch()); });
  }
  MediaPlayers& mediaPlayers() override {
    return lazily(mediaPlayers_, [this] { return makeMacMediaPlayers(runLoop_, clock_); });
  }
  NearbyDevices& nearbyDevices() override {
    return lazily(nearbyDevices_, [this] { return makeMacNearbyDevices(runLoop_); });
  }

private:
  template <class Service, class... Arguments>
  Service& made(std::unique_ptr<Service>& member, Arguments&... arguments) {
    return lazily(member, [&] { return std::make_unique<Service>(arguments...); });
  }

  MacLogSink log_;
  std::unique_ptr<FileManager> fileManager_ = makeMacFileManager();
  std::unique_ptr<MainBundle> mainBundle_ = makeMacMainBundle();
  /// Before the toolkit's, which asks the delegate that it finds.
  MacApplication application_;
  QApplication toolkit_;
  SystemClock clock_;
  QtRunLoop runLoop_;
  QtProcessRunner processes_;
  MacKeychain keychain_;
  SMCConnection smc_;
  /// Notices that the user chose are told to a delegate that is there before the launch is over.
  std::unique_ptr<UserNotificationCenter> userNotifications_ = makeMacUserNotificationCenter();
  std::unique_ptr<DistributedNotificationCenter> notifications_;
  std::unique_ptr<UserFiles> userFiles_;
  std::unique_ptr<MacFolderWatch> folderWatch_;
  std::unique_ptr<UserDefaults> userDefaults_;
  std::unique_ptr<MacDockTile> dockTile_;
  std::unique_ptr<DockGeometry> dockGeometry_;
  std::unique_ptr<MacPanelPopover> popover_;
  std::unique_ptr<Workspace> workspace_;
  std::unique_ptr<SoundPlayer> sounds_;
  std::unique_ptr<QtHTTPClient> http_;
  std::unique_ptr<CalendarStore> calendars_;
  std::unique_ptr<MacHostStatistics> hostStatistics_;
  std::unique_ptr<MacPowerSources> powerSources_;
  std::unique_ptr<MacConnectedDevices> connectedDevices_;
  std::unique_ptr<InputBlocker> inputBlocker_;
  std::unique_ptr<FanHelperClient> fanHelper_;
  std::unique_ptr<Pasteboard> pasteboard_;
  std::unique_ptr<ColourSampler> colourSampler_;
  std::unique_ptr<GlobalShortcuts> globalShortcuts_;
  std::unique_ptr<ApplicationLibrary> applications_;
  std::unique_ptr<MediaPlayers> mediaPlayers_;
  std::unique_ptr<NearbyDevices> nearbyDevices_;
};

} // namespace

/// Nothing is done beforehand: processes are not forked from one another here.
std::unique_ptr<Platform> makePlatform(int& argc, char**& argv, ProgramSetup setup) {
  MacPreferencesService preferences;
  // Texts in the environment's languages have been loaded by now.
  if (nameLanguages(preferences, makeMacMainBundle()->identifier().value_or(setup.identifier)))
    loadTexts();
  return std::make_unique<MacPlatform>(argc, argv);
}

int runEventLoop(Platform& platform, const std::function<void()>& launched) {
  return static_cast<MacPlatform&>(platform).run(launched);
}

} // namespace tavrin

#pragma once

#include "TavrinCore/Base/Log.h"
#include "TavrinPlatform/Application.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/ColourSampler.h"
#include "TavrinPlatform/ConnectedDevices.h"
#include "TavrinPlatform/DistributedNotificationCenter.h"
#include "TavrinPlatform/DockGeometry.h"
#include "TavrinPlatform/FanHelperClient.h"
#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/GlobalShortcuts.h"
#include "TavrinPlatform/HostStatistics.h"
#include "TavrinPlatform/InputBlocker.h"
#include "TavrinPlatform/Keychain.h"
#include "TavrinPlatform/MainBundle.h"
#include "TavrinPlatform/Pasteboard.h"
#include "TavrinPlatform/PowerSources.h"
#include "TavrinPlatform/ProcessRunner.h"
#include "TavrinPlatform/RunLoop.h"
#include "TavrinPlatform/SoundPlayer.h"
#include "TavrinPlatform/UserDefaults.h"
#include "TavrinPlatform/UserNotificationCenter.h"
#include "TavrinPlatform/Workspace.h"

#include <filesystem>
#include <functional>
#include <memory>

namespace tavrin {

class ApplicationLibrary;
class CalendarStore;
class DockTile;
class HTTPClient;
class MediaPlayers;
class NearbyDevices;
class SMCAccess;
class PanelPopover;
class FolderWatch;
class UserFiles;

/// All services of one desktop. A member is made when it is first asked for.
class Platform {
public:
  virtual ~Platform() = default;

  virtual LogSink& log() = 0;
  virtual Clock& clock() = 0;
  virtual RunLoop& runLoop() = 0;
  virtual Application& application() = 0;
  virtual MainBundle& mainBundle() = 0;
  virtual FileManager& fileManager() = 0;
  virtual UserFiles& userFiles() = 0;
  virtual FolderWatch& folderWatch() = 0;
  virtual UserDefaults& userDefaults() = 0;
  virtual DistributedNotificationCenter& notifications() = 0;
  virtual DockTile& dockTile() = 0;
  virtual DockGeometry& dockGeometry() = 0;
  virtual PanelPopover& popover() = 0;
  virtual Workspace& workspace() = 0;
  virtual UserNotificationCenter& userNotifications() = 0;
  virtual SoundPlayer& sounds() = 0;
  virtual ProcessRunner& processes() = 0;
  virtual HTTPClient& http() = 0;
  virtual CalendarStore& calendars() = 0;
  virtual HostStatistics& hostStatistics() = 0;
  virtual PowerSources& powerSources() = 0;
  virtual ConnectedDevices& connectedDevices() = 0;
  virtual InputBlocker& inputBlocker() = 0;
  /// For reading, off the main thread.
  virtual SMCAccess& smc() = 0;
  virtual FanHelperClient& fanHelper() = 0;
  virtual Pasteboard& pasteboard() = 0;
  virtual ColourSampler& colourSampler() = 0;
  virtual Keychain& keychain() = 0;
  virtual GlobalShortcuts& globalShortcuts() = 0;
  virtual ApplicationLibrary& applications() = 0;
  virtual MediaPlayers& mediaPlayers() = 0;
  virtual NearbyDevices& nearbyDevices() = 0;
};

/// What a program says of itself before it has a platform.
struct ProgramSetup {
  /// Does what every process of this program would do first. Where processes that are started
  /// together come from one, it is done once for all of them.
  std::function<void()> prepare = {};
  /// The folder of the user's data. May throw FileError.
  std::function<std::filesystem::path(const FileManager&, const MainBundle&)> dataFolder = {};
  /// What the program is called where it stands in no bundle that says so: there is one process of
  /// it in a session. Empty for programs of which there may be many.
  std::string identifier = {};
  /// It has windows and no use without them.
  bool needsDisplay = false;
};

/// The services of this desktop, for a slot and for other programs with a tile; which desktop's is
/// chosen with what is linked. To be called first thing in `main`. Null when the process has
/// nothing left to do: another process is this application already and has been asked to
/// activate, the arguments asked for something else that has been done (a notice, starting
/// others); then `main` returns 0. Throws NoDisplay, and has not claimed the identifier then: whoever
/// had the desktop start the program learns that it did not, and may try where there is a display.
std::unique_ptr<Platform> makePlatform(int& argc, char**& argv, ProgramSetup setup = {});

/// Runs the event loop until `Application::terminate` or a signal to end; the exit status. Calls
/// `launched` once the application is ready for it; returns soon where that has terminated it.
int runEventLoop(Platform& platform, const std::function<void()>& launched = {});

} // namespace tavrin

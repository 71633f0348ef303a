#include "TavrinPlatform/Linux/LinuxPlatform.h"

#include "TavrinCore/Base/Errors.h"

#include "TavrinPlatform/Linux/Applications/LinuxApplicationLibrary.h"
#include "TavrinPlatform/Qt/QtProcessRunner.h"
#include "TavrinPlatform/Linux/Base/X11.h"
#include "TavrinPlatform/Linux/Desktop/BusMediaPlayers.h"
#include "TavrinPlatform/Linux/Desktop/BusNotificationCenter.h"
#include "TavrinPlatform/Linux/Desktop/CanberraPlayer.h"
#include "TavrinPlatform/Linux/Desktop/LinuxNotificationCenter.h"
#include "TavrinPlatform/Linux/Desktop/LinuxWorkspace.h"
#include "TavrinPlatform/Linux/Desktop/SecretServiceKeychain.h"
#include "TavrinPlatform/Linux/Devices/BusConnectedDevices.h"
#include "TavrinPlatform/Linux/Devices/BusFanHelper.h"
#include "TavrinPlatform/Linux/Devices/BusNearbyDevices.h"
#include "TavrinPlatform/Linux/Devices/LinuxHostStatistics.h"
#include "TavrinPlatform/Linux/Devices/SysfsFans.h"
#include "TavrinPlatform/Linux/Devices/UPowerSources.h"
#include "TavrinPlatform/Linux/Files/LinuxFileManager.h"
#include "TavrinPlatform/Linux/Files/LinuxFolderWatch.h"
#include "TavrinPlatform/Linux/Files/LinuxUserFiles.h"
#include "TavrinPlatform/Linux/Input/InputGuard.h"
#include "TavrinPlatform/Linux/Input/LinuxColourSampler.h"
#include "TavrinPlatform/Linux/Input/LinuxGlobalShortcuts.h"
#include "TavrinPlatform/Linux/Input/LinuxInputBlocker.h"
#include "TavrinPlatform/Linux/Pasteboard/X11Pasteboard.h"
#include "TavrinPlatform/Linux/Slot/LinuxApplication.h"
#include "TavrinPlatform/Linux/Slot/LinuxMainBundle.h"
#include "TavrinPlatform/Linux/Slot/LinuxSystemLog.h"
#include "TavrinPlatform/Linux/Slot/MemoryRelease.h"
#include "TavrinPlatform/Linux/Slot/ToolkitSetup.h"
#include "TavrinPlatform/Linux/Tile/LinuxDockGeometry.h"
#include "TavrinPlatform/Linux/Tile/LinuxDockTile.h"
#include "TavrinPlatform/Linux/Tile/QtPanelPopover.h"
#include "TavrinPlatform/Linux/Tile/StripSurface.h"
#include "TavrinPlatform/Linux/Tile/TileAccessibility.h"
#include "TavrinPlatform/Linux/Tile/TraySurface.h"
#include "TavrinPlatform/POSIX/JSONUserDefaults.h"
#include "TavrinPlatform/POSIX/LoadingCalendarStore.h"
#include "TavrinPlatform/POSIX/Module.h"
#include "TavrinPlatform/POSIX/UnavailableServices.h"
#include "TavrinPlatform/Qt/PictureSurface.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "TavrinStorage/StoragePath.h"

#include <QApplication>
#include <malloc.h>

namespace tavrin {

namespace {

constexpr double watcherLimit = 0.2;

template <class Service, class Make> Service& lazily(std::unique_ptr<Service>& member, Make make) {
  if (!member)
    member = make();
  return *member;
}

class LinuxPlatform final : public Platform {
public:
  LinuxPlatform(int& argc, char** argv);

  /// False when another process has this application's name; it has been told.
  bool isFirst() {
    const bool isFirst = application_->isFirst();
    if (!isFirst)
      application_->handOver();
    return isFirst;
  }
  int run() {
    memory_.soon();
    return application_->run();
  }

  LogSink& log() override { return log_; }
  Clock& clock() override { return clock_; }
  RunLoop& runLoop() override { return *runLoop_; }
  Application& application() override { return *application_; }
  MainBundle& mainBundle() override { return bundle_; }
  FileManager& fileManager() override { return files_; }
  UserFiles& userFiles() override;
  FolderWatch& folderWatch() override;
  UserDefaults& userDefaults() override;
  DistributedNotificationCenter& notifications() override;
  DockTile& dockTile() override;
  DockGeometry& dockGeometry() override;
  PanelPopover& popover() override;
  Workspace& workspace() override;
  UserNotificationCenter& userNotifications() override;
  SoundPlayer& sounds() override;
  ProcessRunner& processes() override;
  HTTPClient& http() override;
  CalendarStore& calendars() override;
  HostStatistics& hostStatistics() override { return hostStatistics_; }
  PowerSources& powerSources() override { return powerSources_; }
  ConnectedDevices& connectedDevices() override { return connectedDevices_; }
  InputBlocker& inputBlocker() override;
  SMCAccess& smc() override;
  FanHelperClient& fanHelper() override;
  Pasteboard& pasteboard() override;
  ColourSampler& colourSampler() override;
  Keychain& keychain() override { return keychain_; }
  GlobalShortcuts& globalShortcuts() override;
  ApplicationLibrary& applications() override;
  MediaPlayers& mediaPlayers() override;
  NearbyDevices& nearbyDevices() override;

private:
  std::string identifier() const { return bundle_.identifier().value_or("tavrin"); }
  std::unique_ptr<LinuxDockTile> makeDockTile();
  std::vector<std::string> surfaceNames();
  std::unique_ptr<TileSurface> makeSurface(const std::string& name);
  bool hasTray();
  /// Connected once somebody wants something of it; null where there is none.
  Bus* systemBus();

  LinuxFileManager files_;
  LinuxSystemLog log_;
  SystemClock clock_;
  std::filesystem::path executable_;
  LinuxMainBundle bundle_;
  std::unique_ptr<QApplication> toolkit_;
  MemoryRelease memory_;
  std::unique_ptr<QtRunLoop> runLoop_;
  std::unique_ptr<Bus> bus_;
  std::optional<std::unique_ptr<Bus>> systemBus_;
  LinuxHostStatistics hostStatistics_;
  UPowerSources powerSources_{[this] { return systemBus(); }};
  BusConnectedDevices connectedDevices_{[this] { return systemBus(); }, powerSources_};
  std::unique_ptr<LinuxApplication> application_;
  std::unique_ptr<LinuxUserFiles> userFiles_;
  std::unique_ptr<LinuxFolderWatch> folderWatch_;
  std::unique_ptr<JSONUserDefaults> defaults_;
  std::unique_ptr<BusNotificationCenter> notifications_;
  std::unique_ptr<LinuxWorkspace> workspace_;
  std::unique_ptr<LinuxNotificationCenter> userNotifications_;
  std::unique_ptr<CanberraPlayer> sounds_;
  std::unique_ptr<QtProcessRunner> processes_;
  std::unique_ptr<HTTPClient> http_;
  std::unique_ptr<CalendarStore> calendars_;
  std::unique_ptr<LinuxInputBlocker> inputBlocker_;
  std::unique_ptr<SysfsFans> smc_;
  std::unique_ptr<BusFanHelper> fanHelper_;
  std::unique_ptr<X11Pasteboard> pasteboard_;
  std::unique_ptr<LinuxColourSampler> colourSampler_;
  SecretServiceKeychain keychain_;
  std::unique_ptr<GlobalShortcuts> globalShortcuts_;
  std::unique_ptr<LinuxApplicationLibrary> applications_;
  std::unique_ptr<BusMediaPlayers> mediaPlayers_;
  std::unique_ptr<BusNearbyDevices> nearbyDevices_;
  StripSurface* strip_ = nullptr;
  std::unique_ptr<LinuxDockTile> tile_;
  std::unique_ptr<AccessibilitySwitch> accessibility_;
  std::unique_ptr<LinuxDockGeometry> geometry_;
  std::unique_ptr<QtPanelPopover> popover_;
};

LinuxPlatform::LinuxPlatform(int& argc, char** argv)
    : executable_(LinuxMainBundle::executablePath(argc > 0 ? argv[0] : nullptr)),
      bundle_(executable_) {
  std::vector<std::string> arguments(argv, argv + argc);
  bus_ = Bus::session();
  application_ =
      std::make_unique<LinuxApplication>(std::move(arguments), bundle_.identifier(), bus_.get());
  // Asked for now, answered while the toolkit starts.
  application_->claimIdentity();
  {
    const ToolkitSetup setup(files_);
    QApplication::setQuitOnLastWindowClosed(false);
    toolkit_ = std::make_unique<QApplication>(argc, argv);
  }
  QApplication::setApplicationName(QString::fromStdString(identifier()));
  application_->watchSignals();
  runLoop_ = std::make_unique<QtRunLoop>();
  application_->isPanelShown = [this] { return popover_ && popover_->isShown(); };
  application_->onAttention = [this](bool isWanted) {
    if (tile_)
      tile_->setAttention(isWanted);
  };
}

UserDefaults& LinuxPlatform::userDefaults() {
  return lazily(defaults_, [this] {
    std::filesystem::path file;
    try {
      file = files_.configurationFolder() / "tavrin" / (identifier() + ".json");
    } catch (const FileError& error) {
      Log(log_, "defaults").error(error.what());
    }
    return std::make_unique<JSONUserDefaults>(file, log_);
  });
}

UserFiles& LinuxPlatform::userFiles() {
  return lazily(userFiles_, [this] {
    return std::make_unique<LinuxUserFiles>(files_, bus_.get(),
                                            [this]() -> Workspace& { return workspace(); });
  });
}

FolderWatch& LinuxPlatform::folderWatch() {
  return lazily(folderWatch_, [this] { return std::make_unique<LinuxFolderWatch>(*runLoop_); });
}

DistributedNotificationCenter& LinuxPlatform::notifications() {
  return lazily(notifications_,
                [this] { return std::make_unique<BusNotificationCenter>(bus_.get(), *runLoop_); });
}

Workspace& LinuxPlatform::workspace() {
  return lazily(workspace_, [this] {
    return std::make_unique<LinuxWorkspace>(files_, bus_.get(), [this] { return systemBus(); });
  });
}

UserNotificationCenter& LinuxPlatform::userNotifications() {
  return lazily(userNotifications_, [this] {
    auto center =
        std::make_unique<LinuxNotificationCenter>(bus_.get(), *runLoop_, executable_, log_);
    // The panel is what the notice leads to.
    center->onClick = [this] { application_->show(); };
    return center;
  });
}

SoundPlayer& LinuxPlatform::sounds() {
  return lazily(sounds_, [this] { return std::make_unique<CanberraPlayer>(*runLoop_); });
}

ProcessRunner& LinuxPlatform::processes() {
  return lazily(processes_, [] { return std::make_unique<QtProcessRunner>(); });
}

HTTPClient& LinuxPlatform::http() {
  return lazily(http_, [this]() -> std::unique_ptr<HTTPClient> {
    std::string error;
    const auto make =
        ModuleFolder(files_, bundle_).find<HTTPClient*()>("http", "tavrinMakeHTTPClient", error);
    if (make != nullptr)
      return std::unique_ptr<HTTPClient>(make());
    Log(log_, "http").error(failure("load the module http", error));
    return std::make_unique<UnavailableHTTPClient>(*runLoop_);
  });
}

CalendarStore& LinuxPlatform::calendars() {
  return lazily(calendars_, [this] {
    return std::make_unique<LoadingCalendarStore>(
        *runLoop_,
        [this, modules = ModuleFolder(files_, bundle_)]() -> LoadingCalendarStore::Factory {
          std::string error;
          const auto make =
              modules.find<CalendarStore*(RunLoop&)>("calendar", "tavrinMakeCalendarStore", error);
          return [this, make, error]() -> std::unique_ptr<CalendarStore> {
            if (make != nullptr)
              return std::unique_ptr<CalendarStore>(make(*runLoop_));
            Log(log_, "calendar").error(failure("load the module calendar", error));
            return std::make_unique<UnavailableCalendarStore>(*runLoop_);
          };
        });
  });
}

InputBlocker& LinuxPlatform::inputBlocker() {
  return lazily(inputBlocker_, [this] {
    return std::make_unique<LinuxInputBlocker>(*runLoop_, bus_.get(),
                                               [this] { return systemBus(); });
  });
}

SMCAccess& LinuxPlatform::smc() {
  return lazily(smc_, [this] {
    return std::make_unique<SysfsFans>(files_.environment("TAVRIN_SYSFS_ROOT").value_or("/"));
  });
}

FanHelperClient& LinuxPlatform::fanHelper() {
  return lazily(fanHelper_, [this] {
    return std::make_unique<BusFanHelper>(*runLoop_, [this] { return systemBus(); });
  });
}

Pasteboard& LinuxPlatform::pasteboard() {
  return lazily(pasteboard_, [this] { return std::make_unique<X11Pasteboard>(*runLoop_); });
}

ColourSampler& LinuxPlatform::colourSampler() {
  return lazily(colourSampler_,
                [this] { return std::make_unique<LinuxColourSampler>(bus_.get()); });
}

GlobalShortcuts& LinuxPlatform::globalShortcuts() {
  return lazily(globalShortcuts_, [this] {
    return std::make_unique<LinuxGlobalShortcuts>(bus_.get(), identifier());
  });
}

ApplicationLibrary& LinuxPlatform::applications() {
  return lazily(applications_, [this] {
    return std::make_unique<LinuxApplicationLibrary>(files_, *runLoop_, bus_.get(),
                                                     ModuleFolder(files_, bundle_));
  });
}

MediaPlayers& LinuxPlatform::mediaPlayers() {
  return lazily(mediaPlayers_, [this] {
    return std::make_unique<BusMediaPlayers>(bus_.get(), *runLoop_, clock_);
  });
}

NearbyDevices& LinuxPlatform::nearbyDevices() {
  return lazily(nearbyDevices_, [this] {
    return std::make_unique<BusNearbyDevices>(
        bus_.get(), [this] { return systemBus(); }, *runLoop_);
  });
}

DockTile& LinuxPlatform::dockTile() {
  return lazily(tile_, [this] { return makeDockTile(); });
}

DockGeometry& LinuxPlatform::dockGeometry() {
  return lazily(geometry_, [this] {
    LinuxDockGeometry::Sources sources;
    sources.stripFrame = [this] { return strip_ ? strip_->stripFrame() : std::nullopt; };
    sources.stripTileSize = [this] {
      return strip_ ? std::optional(strip_->tileSize()) : std::nullopt;
    };
    sources.tileFrame = [this] { return strip_ ? strip_->frame() : std::nullopt; };
    sources.tileAnchor = [this] { return tile_ ? tile_->anchor() : std::nullopt; };
    return std::make_unique<LinuxDockGeometry>(files_.homeFolder(), std::move(sources));
  });
}

PanelPopover& LinuxPlatform::popover() {
  return lazily(popover_, [this] {
    QtPanelPopover::Environment environment;
    environment.prefersReducedMotion = [this] { return workspace().prefersReducedMotion(); };
    environment.prefersDarkAppearance = [this] { return workspace().prefersDarkAppearance(); };
    environment.resignedActive = [this] {
      if (application_->onResignActive)
        application_->onResignActive();
    };
    environment.hasClosed = [this] { memory_.soon(); };
    return std::make_unique<QtPanelPopover>(std::move(environment));
  });
}

std::unique_ptr<LinuxDockTile> LinuxPlatform::makeDockTile() {
  std::vector<std::unique_ptr<TileSurface>> surfaces;
  for (const auto& name : surfaceNames())
    if (auto surface = makeSurface(name))
      surfaces.push_back(std::move(surface));
  if (surfaces.empty())
    surfaces.push_back(makeSurface("picture"));
  LinuxDockTile::Requests requests;
  requests.reopen = [this] { application_->reopen(); };
  requests.openFiles = [this](const auto& files) { return application_->openFiles(files); };
  requests.hasJustClosedPanel = [this](Point place) {
    return popover_ && popover_->hasJustBeenClosedAt(place);
  };
  requests.hasDrawnMuch = [this] { memory_.soon(); };
  return std::make_unique<LinuxDockTile>(std::move(surfaces), std::move(requests));
}

std::vector<std::string> LinuxPlatform::surfaceNames() {
  const auto wish = files_.environment("TAVRIN_SURFACE").value_or("");
  std::vector<std::string> names;
  for (const auto& part : QString::fromStdString(wish).split(QLatin1Char(','), Qt::SkipEmptyParts))
    names.push_back(part.trimmed().toLower().toStdString());
  if (!names.empty())
    return names;
  if (x11::connection() != nullptr)
    return {"strip"};
  if (hasTray())
    return {"tray"};
  // A panel may start after its slots; until then the picture is all there is to see.
  if (!files_.environment("WAYLAND_DISPLAY").value_or("").empty() && bus_)
    return {"tray", "picture"};
  return {"picture"};
}

Bus* LinuxPlatform::systemBus() {
  if (!systemBus_)
    systemBus_ = Bus::system();
  return systemBus_->get();
}

bool LinuxPlatform::hasTray() {
  if (!bus_ || !bus_->isOpen())
    return false;
  const BusAddress daemon{"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"};
  BusMessage question = bus_->method(daemon, "NameHasOwner");
  // The answer may come after this function has returned.
  const auto answer = std::make_shared<std::optional<bool>>();
  bus_->call(question.append("s", "org.kde.StatusNotifierWatcher"),
             [answer](sd_bus_message* reply, const std::string&) {
               int isThere = 0;
               if (reply != nullptr)
                 sd_bus_message_read(reply, "b", &isThere);
               *answer = isThere != 0;
             });
  bus_->waitUntil([&] { return answer->has_value(); }, watcherLimit);
  return answer->value_or(false);
}

std::unique_ptr<TileSurface> LinuxPlatform::makeSurface(const std::string& name) {
  if (name == "strip" && QGuiApplication::platformName() != QLatin1String("offscreen")) {
    StripSurface::Environment environment;
    environment.preferences = [this] { return readDockPreferences(files_.homeFolder()); };
    environment.prefersReducedMotion = [this] { return workspace().prefersReducedMotion(); };
    auto strip = std::make_unique<StripSurface>(std::move(environment));
    strip_ = strip.get();
    if (bus_)
      accessibility_ = std::make_unique<AccessibilitySwitch>(*bus_, strip->window());
    return strip;
  }
  if (name == "tray" && bus_)
    return std::make_unique<TraySurface>(*bus_, identifier());
  if (name != "picture")
    return nullptr;
  std::filesystem::path folder = files_.environment("TAVRIN_PICTURE_DIR").value_or("");
  if (folder.empty()) {
    try {
      folder = StoragePath(files_, bundle_).resolvedDirectory() / "tiles";
    } catch (const FileError&) {
      folder = std::filesystem::temp_directory_path() / "tavrin-tiles";
    }
  }
  return std::make_unique<PictureSurface>(folder / (identifier() + ".png"),
                                          readDockPreferences(files_.homeFolder()).tileSize, log_);
}

} // namespace

std::unique_ptr<Platform> makePlatform(int& argc, char** argv) {
  if (runInputGuardIfAsked(argc, argv) || showNoticeIfAsked(argc, argv))
    return nullptr;
  // One arena: the few short-lived threads of a slot do not need heaps of their own.
  mallopt(M_ARENA_MAX, 1);
  // Pictures and files go back to the system with their last use; left to itself the library would
  // take room for them from the heap once the first has been freed, and keep it.
  mallopt(M_MMAP_THRESHOLD, 128 * 1024);
  auto platform = std::make_unique<LinuxPlatform>(argc, argv);
  if (!platform->isFirst())
    return nullptr;
  return platform;
}

int runEventLoop(Platform& platform) {
  return static_cast<LinuxPlatform&>(platform).run();
}

} // namespace tavrin

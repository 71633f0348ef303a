#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Base/Lazily.h"
#include "TavrinCore/Desktop/NoDisplay.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Linux/Applications/LinuxApplicationLibrary.h"
#include "TavrinPlatform/Linux/Base/ProcessFamily.h"
#include "TavrinPlatform/Linux/Base/ResourceDpi.h"
#include "TavrinPlatform/Linux/Base/WorkAreaHold.h"
#include "TavrinPlatform/Linux/Desktop/DesktopServices.h"
#include "TavrinPlatform/Linux/Devices/DeviceServices.h"
#include "TavrinPlatform/Linux/Files/LinuxFileManager.h"
#include "TavrinPlatform/Linux/Files/LinuxFolderWatch.h"
#include "TavrinPlatform/Linux/Files/LinuxUserFiles.h"
#include "TavrinPlatform/Linux/Input/InputGuard.h"
#include "TavrinPlatform/Linux/Input/InputServices.h"
#include "TavrinPlatform/Linux/Pasteboard/X11Pasteboard.h"
#include "TavrinPlatform/Linux/Slot/BusReturn.h"
#include "TavrinPlatform/Linux/Slot/LinuxApplication.h"
#include "TavrinPlatform/Linux/Slot/LinuxMainBundle.h"
#include "TavrinPlatform/Linux/Slot/LinuxSystemLog.h"
#include "TavrinPlatform/Linux/Slot/MemoryRelease.h"
#include "TavrinPlatform/Linux/Slot/News.h"
#include "TavrinPlatform/Linux/Slot/ToolkitSetup.h"
#include "TavrinPlatform/Linux/Tile/TileServices.h"
#include "TavrinPlatform/POSIX/JSONUserDefaults.h"
#include "TavrinPlatform/POSIX/UnavailableServices.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinPlatform/Qt/QtProcessRunner.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "TavrinPlatform/Qt/QtTextLocale.h"

#include <QApplication>
#include <QWidget>
#include <algorithm>
#include <malloc.h>
#include <unistd.h>

namespace tavrin {

namespace {

/// The services of a Linux desktop. Read from the environment, beside what the desktop itself sets:
/// - TAVRIN_SURFACE: the surfaces of the tile, of "strip", "tray" and "picture", with commas,
///   instead of what `chooseSurface` takes.
/// - TAVRIN_PICTURE_DIR: the folder of the picture surface's files; by default "tiles" in the
///   data folder. A file is called by the bundle identifier.
/// - TAVRIN_APPEARANCE: "light" or "dark", instead of the desktop's preference.
/// - TAVRIN_LOG: "stderr" to write the log there too.
///
/// When a bus is lost and comes back, the program ends as if it were asked to and starts itself
/// again in the same process, with a panel open once that is closed.
class LinuxPlatform final : public Platform {
public:
  LinuxPlatform(int& argc, char** argv, ProgramSetup setup);
  ~LinuxPlatform() override;

  /// False when another process has this application's name; it has been told.
  bool isFirst() {
    const bool isFirst = application_->isFirst();
    if (!isFirst)
      application_->handOver();
    return isFirst;
  }
  int run() {
    memory_->soon();
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
  DistributedNotificationCenter& notifications() override { return desktop_->notifications(); }
  DockTile& dockTile() override { return tile_->tile(); }
  DockGeometry& dockGeometry() override { return tile_->geometry(); }
  PanelPopover& popover() override { return tile_->popover(); }
  Workspace& workspace() override { return desktop_->workspace(); }
  UserNotificationCenter& userNotifications() override { return desktop_->userNotifications(); }
  SoundPlayer& sounds() override { return desktop_->sounds(); }
  ProcessRunner& processes() override { return processes_; }
  HTTPClient& http() override;
  CalendarStore& calendars() override { return desktop_->calendars(); }
  HostStatistics& hostStatistics() override { return devices_->statistics(); }
  PowerSources& powerSources() override { return devices_->power(); }
  ConnectedDevices& connectedDevices() override { return devices_->connected(); }
  InputBlocker& inputBlocker() override { return input_->blocker(); }
  SMCAccess& smc() override { return devices_->fans(); }
  FanHelperClient& fanHelper() override { return devices_->fanHelper(); }
  Pasteboard& pasteboard() override;
  ColourSampler& colourSampler() override { return input_->sampler(); }
  Keychain& keychain() override { return desktop_->keychain(); }
  GlobalShortcuts& globalShortcuts() override { return input_->shortcuts(); }
  ApplicationLibrary& applications() override;
  MediaPlayers& mediaPlayers() override { return desktop_->mediaPlayers(); }
  NearbyDevices& nearbyDevices() override { return devices_->nearby(); }

private:
  std::string identifier() const { return ownIdentifier().value_or("tavrin"); }
  std::optional<std::string> ownIdentifier() const {
    const auto bundled = bundle_.identifier();
    return bundled || setup_.identifier.empty() ? bundled : std::optional(setup_.identifier);
  }
  void startToolkit(int& argc, char** argv);
  void followReturn(Bus* bus, BusReturn::Open open);
  void startAnew() const;
  /// False while the user is in one of its windows.
  bool endsToStartAnew();
  void followResources();
  void makeRooms();
  TileServices::Environment tileEnvironment();
  std::unique_ptr<LayerShell> makeLayers();
  /// A function of the module that speaks to the compositor; null, and the log says why, without.
  template <class Function> Function* onWayland(const char* symbol, const char* room);
  std::optional<RunningApplication> foreground();
  TokenPtr pickOnCompositor(std::function<void(const ColourSample&)> done);
  std::filesystem::path pictureFolder() const;
  /// By one notice for all slots, until there is another reason.
  void tellMakeshift(const std::string& reason);
  /// Connected once somebody wants something of it; null where there is none.
  Bus* systemBus();

  // What the rooms stand on, in the order in which it comes up.
  ProgramSetup setup_;
  LinuxFileManager files_;
  LinuxSystemLog log_;
  SystemClock clock_;
  std::filesystem::path executable_;
  DesktopFacts displays_;
  LinuxMainBundle bundle_;
  ModuleFolder modules_{files_, bundle_};
  QtProcessRunner processes_;
  std::unique_ptr<Bus> bus_;
  std::optional<std::unique_ptr<Bus>> systemBus_;
  std::unique_ptr<LinuxApplication> application_;
  std::unique_ptr<QApplication> toolkit_;
  std::unique_ptr<MemoryRelease> memory_;
  std::unique_ptr<QtRunLoop> runLoop_;
  std::vector<std::unique_ptr<BusReturn>> awaited_;
  bool startsAnew_ = false;
  std::unique_ptr<WorkAreaHold> workArea_;
  std::unique_ptr<ResourceDpi> resources_;
  TokenPtr scaleStart_;

  // The rooms: none refers to another but through this class.
  std::unique_ptr<JSONUserDefaults> defaults_;
  std::unique_ptr<LinuxUserFiles> userFiles_;
  std::unique_ptr<LinuxFolderWatch> folderWatch_;
  std::unique_ptr<HTTPClient> http_;
  std::unique_ptr<Pasteboard> pasteboard_;
  std::unique_ptr<LinuxApplicationLibrary> applications_;
  std::unique_ptr<DesktopServices> desktop_;
  std::unique_ptr<DeviceServices> devices_;
  std::unique_ptr<InputServices> input_;
  std::unique_ptr<TileServices> tile_;
};

LinuxPlatform::LinuxPlatform(int& argc, char** argv, ProgramSetup setup)
    : setup_(std::move(setup)),
      executable_(LinuxMainBundle::executablePath(argc > 0 ? argv[0] : nullptr)),
      bundle_(executable_) {
  bus_ = Bus::session();
  application_ = std::make_unique<LinuxApplication>(std::vector<std::string>(argv, argv + argc),
                                                    ownIdentifier(), bus_.get());
  // Asked for now, answered while the toolkit starts.
  application_->claimIdentity();
  startToolkit(argc, argv);
  application_->watchSignals();
  runLoop_ = std::make_unique<QtRunLoop>();
  makeRooms();
  application_->isPanelShown = [this] { return tile_->isPanelShown(); };
  application_->onAttention = [this](bool isWanted) { tile_->setAttention(isWanted); };
  application_->onFocus = [this](const auto& object) { return tile_->takeKeyboard(object); };
  followReturn(bus_.get(), &Bus::session);
  followResources();
}

/// From the roof down: nobody calls any more, no work is under way that uses a service, then the
/// services, and last what they stand on. Whoever used this platform is gone before.
LinuxPlatform::~LinuxPlatform() {
  awaited_.clear();
  scaleStart_.reset();
  resources_.reset();
  workArea_.reset();
  application_->isPanelShown = nullptr;
  application_->onAttention = nullptr;
  application_->onFocus = nullptr;
  runLoop_->endWork();
  tile_.reset();
  input_.reset();
  devices_.reset();
  applications_.reset();
  pasteboard_.reset();
  http_.reset();
  folderWatch_.reset();
  userFiles_.reset();
  desktop_.reset();
  defaults_.reset();
  const auto isWanted = application_->isWanted();
  application_.reset();
  systemBus_.reset();
  // Else the process that begins anew may find its own name taken, and end.
  if ((startsAnew_ || isWanted) && bus_ != nullptr && bus_->isOpen())
    bus_->releaseName(identifier());
  bus_.reset();
  runLoop_.reset();
  memory_.reset();
  toolkit_.reset();
  if (startsAnew_ || (isWanted && isWanted()))
    startAnew();
}

void LinuxPlatform::followReturn(Bus* bus, BusReturn::Open open) {
  if (bus == nullptr)
    return;
  bus->onClose = [this, open] {
    awaited_.push_back(std::make_unique<BusReturn>(open, [this] { return endsToStartAnew(); }));
  };
}

bool LinuxPlatform::endsToStartAnew() {
  // Somebody may be typing into it: a panel, a dialog, the settings window.
  if (std::ranges::any_of(QApplication::topLevelWidgets(), &QWidget::isVisible))
    return false;
  startsAnew_ = true;
  application_->terminate();
  return true;
}

/// The toolkit takes the database's scale when it starts, and not again.
void LinuxPlatform::followResources() {
  workArea_ = std::make_unique<WorkAreaHold>();
  resources_ = std::make_unique<ResourceDpi>([this] {
    constexpr double often = 0.5;
    scaleStart_ = runLoop_->repeat(often, [this] {
      if (!startsAnew_)
        endsToStartAnew();
    });
  });
}

/// Everything is saved and given back. Where it fails the process ends.
void LinuxPlatform::startAnew() const {
  std::string program = executable_.string();
  std::string background = "--background";
  char* arguments[] = {program.data(), background.data(), nullptr};
  ::execv(program.c_str(), arguments);
}

void LinuxPlatform::startToolkit(int& argc, char** argv) {
  displays_ = readDisplays(files_);
  const ToolkitSetup setup(files_, displays_);
  QApplication::setQuitOnLastWindowClosed(false);
  toolkit_ = std::make_unique<QApplication>(argc, argv);
  setTextLocale();
  QApplication::setApplicationName(QString::fromStdString(identifier()));
  memory_ = std::make_unique<MemoryRelease>();
}

void LinuxPlatform::makeRooms() {
  const auto system = [this] { return systemBus(); };
  desktop_ = std::make_unique<DesktopServices>(DesktopServices::Environment{
      files_, log_, clock_, *runLoop_, bus_.get(), system, modules_, executable_,
      // The panel is what a notice leads to.
      [this] { application_->show(); },
      displays_.hasWayland ? [this] { return foreground(); } : LinuxWorkspace::Foreground()});
  devices_ = std::make_unique<DeviceServices>(files_, *runLoop_, bus_.get(), system);
  input_ = std::make_unique<InputServices>(InputServices::Environment{
      *runLoop_, bus_.get(), system, identifier(), displays_.hasWayland,
      displays_.hasWayland ? [this](auto done) { return pickOnCompositor(std::move(done)); }
                           : LinuxColourSampler::ScreenPick(LinuxColourSampler::pickOnX11)});
  tile_ = std::make_unique<TileServices>(tileEnvironment());
}

TileServices::Environment LinuxPlatform::tileEnvironment() {
  return {.files = files_,
          .log = log_,
          .bus = bus_.get(),
          .identifier = identifier(),
          .displays = displays_,
          .workspace = [this]() -> Workspace& { return workspace(); },
          .pictureFolder = [this] { return pictureFolder(); },
          .reopen = [this] { application_->reopen(); },
          .takesFiles = [this] { return application_->acceptsFiles(); },
          .openFiles = [this](const auto& files) { return application_->openFiles(files); },
          .resignedActive =
              [this] {
                if (application_->onResignActive)
                  application_->onResignActive();
              },
          .toldMakeshift = [this](const auto& reason) { tellMakeshift(reason); },
          .makeLayers = [this] { return makeLayers(); },
          .hasDrawnMuch = [this] { memory_->soon(); }};
}

std::unique_ptr<LayerShell> LinuxPlatform::makeLayers() {
  if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
    return nullptr;
  const auto make = onWayland<LayerShell*()>("tavrinMakeLayerShell", "surface");
  return std::unique_ptr<LayerShell>(make == nullptr ? nullptr : make());
}

template <class Function> Function* LinuxPlatform::onWayland(const char* symbol, const char* room) {
  std::string error;
  auto* function = modules_.find<Function>("wayland", symbol, error);
  if (function == nullptr)
    Log(log_, room).error(failure("load the module wayland", error));
  return function;
}

std::optional<RunningApplication> LinuxPlatform::foreground() {
  const auto ask = onWayland<bool(RunningApplication&)>("tavrinForegroundApplication", "workspace");
  RunningApplication application;
  return ask != nullptr && ask(application) ? std::optional(application) : std::nullopt;
}

TokenPtr LinuxPlatform::pickOnCompositor(std::function<void(const ColourSample&)> done) {
  using Done = std::function<void(const ColourSample&)>;
  const auto pick = onWayland<Token*(Done)>("tavrinPickColour", "colours");
  return TokenPtr(pick == nullptr ? nullptr : pick(std::move(done)));
}

std::filesystem::path LinuxPlatform::pictureFolder() const {
  if (const auto wish = files_.environment("TAVRIN_PICTURE_DIR"); wish && !wish->empty())
    return *wish;
  try {
    if (setup_.dataFolder)
      return setup_.dataFolder(files_, bundle_) / "tiles";
  } catch (const FileError&) {
  }
  return std::filesystem::temp_directory_path() / "tavrin-tiles";
}

void LinuxPlatform::tellMakeshift(const std::string& reason) {
  Log(log_, "surface").info(reason);
  if (isNews(files_.stateFolder() / "tavrin" / "surface", reason))
    userNotifications().add({.identifier = "dev.quellby.Tavrin.surface",
                             .title = translated("Tavrin's widgets"),
                             .body = reason + " " + translated("`tavrin doctor` says more.")});
}

Bus* LinuxPlatform::systemBus() {
  if (!systemBus_) {
    systemBus_ = Bus::system();
    followReturn(systemBus_->get(), &Bus::system);
  }
  return systemBus_->get();
}

UserDefaults& LinuxPlatform::userDefaults() {
  return lazily(defaults_, [this] {
    std::filesystem::path file;
    try {
      file = files_.configurationFolder() / "tavrin" / (identifier() + ".json");
    } catch (const FileError& error) {
      Log(log_, "defaults").error(error.what());
    }
    return std::make_unique<JSONUserDefaults>(file, log_, *runLoop_);
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

HTTPClient& LinuxPlatform::http() {
  return lazily(http_, [this]() -> std::unique_ptr<HTTPClient> {
    std::string error;
    const auto make = modules_.find<HTTPClient*()>("http", "tavrinMakeHTTPClient", error);
    if (make != nullptr)
      return std::unique_ptr<HTTPClient>(make());
    Log(log_, "http").error(failure("load the module http", error));
    return std::make_unique<UnavailableHTTPClient>(*runLoop_);
  });
}

/// A compositor's own clipboard where it shows that to programs; beside it XWayland's is a copy
/// that is renewed as windows come to the front.
Pasteboard& LinuxPlatform::pasteboard() {
  return lazily(pasteboard_, [this]() -> std::unique_ptr<Pasteboard> {
    if (!files_.environment("WAYLAND_DISPLAY").value_or("").empty()) {
      const auto make =
          onWayland<Pasteboard*(RunLoop&)>("tavrinMakeWaylandPasteboard", "pasteboard");
      if (auto* board = make == nullptr ? nullptr : make(*runLoop_))
        return std::unique_ptr<Pasteboard>(board);
    }
    return std::make_unique<X11Pasteboard>(*runLoop_);
  });
}

ApplicationLibrary& LinuxPlatform::applications() {
  return lazily(applications_, [this] {
    return std::make_unique<LinuxApplicationLibrary>(files_, *runLoop_, bus_.get(), modules_);
  });
}

} // namespace

std::unique_ptr<Platform> makePlatform(int& argc, char**& argv, ProgramSetup setup) {
  if (setup.prepare && !joinFamily(argc, argv, setup.prepare))
    return nullptr;
  if (runInputGuardIfAsked(argc, argv) || showNoticeIfAsked(argc, argv))
    return nullptr;
  if (setup.needsDisplay && !showsWindows(LinuxFileManager()))
    throw NoDisplay();
  // One arena: the few short-lived threads of a slot do not need heaps of their own.
  mallopt(M_ARENA_MAX, 1);
  // Pictures and files go back to the system with their last use; left to itself the library would
  // take room for them from the heap once the first has been freed, and keep it.
  mallopt(M_MMAP_THRESHOLD, 128 * 1024);
  auto platform = std::make_unique<LinuxPlatform>(argc, argv, std::move(setup));
  if (!platform->isFirst())
    return nullptr;
  return platform;
}

int runEventLoop(Platform& platform, const std::function<void()>& launched) {
  if (launched)
    launched();
  return static_cast<LinuxPlatform&>(platform).run();
}

} // namespace tavrin

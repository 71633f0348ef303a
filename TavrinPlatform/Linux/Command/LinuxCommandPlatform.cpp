#include "TavrinPlatform/Linux/Command/LinuxCommandPlatform.h"

#include "TavrinPlatform/Files/SharedLibrary.h"
#include "TavrinPlatform/Linux/Command/LinuxDesktopReport.h"
#include "TavrinPlatform/POSIX/Module.h"
#include "TavrinPlatform/POSIX/ProgramPath.h"

#include <QEventLoop>
#include <QTimer>
#include <cstdlib>
#include <fstream>

namespace tavrin {
namespace {

constexpr const char* busVariable = "DBUS_SESSION_BUS_ADDRESS";

bool isSet(const std::optional<std::string>& text) {
  return text && !text->empty();
}

} // namespace

LinuxCommandPlatform::LinuxCommandPlatform() : mainBundle_(programPath()) {}

void LinuxCommandPlatform::startEventLoop() {
  if (runLoop_)
    return;
  static int count = 1;
  static char name[] = "tavrin";
  static char* arguments[] = {name, nullptr};
  // A program with windows has made its own.
  if (QCoreApplication::instance() == nullptr)
    eventLoop_ = std::make_unique<QCoreApplication>(count, arguments);
  runLoop_ = std::make_unique<QtRunLoop>();
}

void LinuxCommandPlatform::adoptStoredBusAddress() {
  std::error_code error;
  const auto runtimeFolder = fileManager_.environment("XDG_RUNTIME_DIR");
  if (isSet(fileManager_.environment(busVariable)) ||
      (isSet(runtimeFolder) && std::filesystem::exists(*runtimeFolder + "/bus", error)))
    return;
  if (fileManager_.homeFolder().empty())
    return;
  std::string address;
  std::getline(std::ifstream(fileManager_.stateFolder() / "tavrin/session-bus"), address);
  if (!address.empty())
    setenv(busVariable, address.c_str(), 1);
}

Bus* LinuxCommandPlatform::bus() {
  if (hasLookedForBus_)
    return bus_.get();
  hasLookedForBus_ = true;
  startEventLoop();
  adoptStoredBusAddress();
  bus_ = Bus::session();
  return bus_.get();
}

DistributedNotificationCenter& LinuxCommandPlatform::notifications() {
  if (!notifications_) {
    auto* connection = bus();
    notifications_ = std::make_unique<BusNotificationCenter>(connection, *runLoop_);
  }
  return *notifications_;
}

RunningApplications& LinuxCommandPlatform::applications() {
  if (!applications_)
    applications_ = std::make_unique<LinuxRunningApplications>(bus());
  return *applications_;
}

DockServices& LinuxCommandPlatform::dockServices() {
  if (!dockServices_)
    dockServices_ = std::make_unique<LinuxDockServices>(
        fileManager_.homeFolder(),
        [this]() -> RunLoop& {
          startEventLoop();
          return *runLoop_;
        },
        [this] { return bus(); });
  return *dockServices_;
}

Autostart& LinuxCommandPlatform::autostart() {
  if (!autostart_)
    // The command, beside every program that has these services.
    autostart_ = std::make_unique<LinuxAutostart>(fileManager_.configurationFolder(),
                                                  program().replace_filename("tavrin"),
                                                  [this] { return bus(); });
  return *autostart_;
}

/// Where the slots find theirs: beside the bundles, installed or in the build tree.
std::filesystem::path LinuxCommandPlatform::modulesFolder() {
  if (const auto wish = fileManager_.environment("TAVRIN_MODULE_DIR"); isSet(wish))
    return *wish;
  if (const auto bundles = fileManager_.environment("TAVRIN_BUNDLES"); isSet(bundles))
    return std::filesystem::path(*bundles) / "modules";
  return modulesOfPrograms();
}

DesktopReport LinuxCommandPlatform::desktopReport() {
  auto* session = bus();
  const auto system = Bus::system();
  DesktopSurvey survey;
  survey.facts = readDisplays(fileManager_);
  survey.surfaceWish = fileManager_.environment("TAVRIN_SURFACE").value_or("");
  survey.session = readBusNames(session);
  survey.system = readBusNames(system.get());
  survey.modules = modulesFolder();
  int (*create)(void**) = nullptr;
  survey.hasSoundLibrary = SharedLibrary{"libcanberra.so.0"}.find(create, "ca_context_create");
  return makeDesktopReport(survey);
}

void LinuxCommandPlatform::wait(double seconds) {
  startEventLoop();
  QEventLoop moment;
  QTimer::singleShot(static_cast<int>(seconds * 1000), Qt::PreciseTimer, &moment,
                     &QEventLoop::quit);
  moment.exec();
}

void LinuxCommandPlatform::waitForEvent() {
  startEventLoop();
  QEventLoop().processEvents(QEventLoop::WaitForMoreEvents);
}

std::unique_ptr<CommandPlatform> makeCommandPlatform() {
  return std::make_unique<LinuxCommandPlatform>();
}

} // namespace tavrin

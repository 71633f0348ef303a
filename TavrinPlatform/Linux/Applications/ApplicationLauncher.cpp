#include "TavrinPlatform/Linux/Applications/ApplicationLauncher.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Linux/Applications/RunningWindow.h"
#include "TavrinPlatform/Linux/Slot/LinuxApplication.h"
#include "TavrinPlatform/Linux/Slot/StartupNotice.h"
#include "TavrinPlatform/POSIX/ChildProcess.h"
#include "TavrinPlatform/POSIX/LivingToken.h"
#include "TavrinPlatform/POSIX/Spawn.h"

#include <cctype>
#include <cerrno>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/wait.h>

namespace tavrin {
namespace {

constexpr double activationLimit = 25;
constexpr const char* applicationInterface = "org.freedesktop.Application";
constexpr const char* startupVariable = "DESKTOP_STARTUP_ID";
constexpr const char* activationVariable = "XDG_ACTIVATION_TOKEN";

/// Whether a line of the environment is this system's alone, or one that would have another program
/// load what is meant for a slot.
bool isOurOwn(const std::string& line) {
  return line.starts_with("TAVRIN_") || line.starts_with("LD_") ||
         line.starts_with("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT=");
}

/// What a program is run in that needs a terminal; empty where the user has none.
std::vector<std::string> terminalCommand(const FileManager& files) {
  if (isInstalled("xdg-terminal-exec"))
    return {"xdg-terminal-exec"};
  for (const auto& terminal : {files.environment("TERMINAL").value_or(""),
                               std::string("x-terminal-emulator"), std::string("xterm")})
    if (isInstalled(terminal))
      return {terminal, "-e"};
  return {};
}

} // namespace

/// One application on its way.
struct ApplicationLauncher::Launch {
  std::string id;
  std::string action;
  std::optional<FoundEntry> found;
  std::vector<std::string> words;
  std::string workingFolder;
  std::string startupID;
  /// It ran already, and its window was brought to the user.
  bool isRaised = false;
  pid_t process = 0;
  std::string reason;
  Answer answer;
  std::weak_ptr<void> asker;

  std::string name() const { return found ? found->entry.name : id; }
};

ApplicationLauncher::ApplicationLauncher(const FileManager& files, RunLoop& runLoop, Bus* session)
    : files_(files), runLoop_(runLoop), session_(session) {}
ApplicationLauncher::~ApplicationLauncher() = default;

TokenPtr ApplicationLauncher::launch(const std::string& id, const std::string& action,
                                     Answer answer) {
  auto token = std::make_unique<LivingToken>();
  const auto launch = std::make_shared<Launch>();
  launch->id = id;
  launch->action = action;
  launch->answer = std::move(answer);
  launch->asker = token->life();
  runLoop_.background([&files = files_, launch] { prepare(files, launch); }, alive_,
                      [this, launch] {
                        if (!launch->found)
                          finish(launch, translated("it is not installed"));
                        else if (!launch->reason.empty())
                          finish(launch, launch->reason);
                        else if (raise(*launch))
                          finish(launch, {});
                        else if (launch->found->entry.isActivatedOnBus && session_ != nullptr &&
                                 session_->isOpen())
                          activate(launch);
                        else
                          startProgram(launch);
                      });
  return token;
}

/// Whether the application runs already and can be brought to the user. One that is activated on
/// the bus does that itself.
bool ApplicationLauncher::raise(Launch& launch) {
  launch.isRaised = launch.action.empty() && !launch.found->entry.isActivatedOnBus &&
                    raiseWindowOf(*launch.found);
  return launch.isRaised;
}

/// Off the main thread: reads the entry, makes the command line, begins the notice.
void ApplicationLauncher::prepare(const FileManager& files, const std::shared_ptr<Launch>& launch) {
  launch->found = DesktopEntries::ofUser(files).application(launch->id);
  if (!launch->found)
    return;
  const DesktopEntry& entry = launch->found->entry;
  std::string exec = entry.exec;
  if (!launch->action.empty()) {
    const auto* action = entry.action(launch->action);
    if (action == nullptr) {
      launch->reason = fmt::format("it has no action \"{}\"", launch->action);
      return;
    }
    exec = action->exec;
  }
  launch->workingFolder =
      entry.workingFolder.empty() ? files.homeFolder().string() : entry.workingFolder;
  launch->words = execWords(exec, {entry.name, entry.icon, launch->found->file.string()});
  if (entry.runsInTerminal && !launch->words.empty()) {
    auto terminal = terminalCommand(files);
    if (terminal.empty()) {
      launch->reason = translated("it needs a terminal, and none is installed");
      return;
    }
    launch->words.insert(launch->words.begin(), terminal.begin(), terminal.end());
  }
  // A program that says so itself needs no notice; one that says nothing ends it by its window.
  if (entry.notifiesStartup.value_or(!entry.startupClass.empty() || entry.isActivatedOnBus))
    launch->startupID = beginStartupNotice(
        files.environment("DISPLAY").value_or(""),
        {entry.name, entry.icon, launch->words.empty() ? std::string() : launch->words.front(),
         entry.startupClass, launch->found->file.string()});
}

void ApplicationLauncher::activate(const std::shared_ptr<Launch>& launch) {
  std::string name = launch->found->id;
  name.resize(name.size() - std::string_view(".desktop").size());
  if (sd_bus_service_name_is_valid(name.c_str()) <= 0) {
    startProgram(launch);
    return;
  }
  const std::string path = objectPath(name);
  BusMessage message = session_->method({name.c_str(), path.c_str(), applicationInterface},
                                        launch->action.empty() ? "Activate" : "ActivateAction");
  if (!launch->action.empty())
    message.append("sav", launch->action.c_str(), 0);
  if (launch->startupID.empty())
    message.append("a{sv}", 0);
  else
    message.append("a{sv}", 2, "desktop-startup-id", "s", launch->startupID.c_str(),
                   "activation-token", "s", launch->startupID.c_str());
  session_->call(
      message,
      [this, launch, weak = alive_.watch()](sd_bus_message* reply, const std::string& error) {
        if (weak.expired())
          return;
        if (reply != nullptr) {
          finish(launch, {});
        } else if (!launch->words.empty() && error != SD_BUS_ERROR_NO_REPLY &&
                   error != SD_BUS_ERROR_TIMEOUT) {
          // Not on this bus: its command line is there for that.
          startProgram(launch);
        } else {
          finish(launch, translated("it does not answer"));
        }
      },
      activationLimit);
}

void ApplicationLauncher::startProgram(const std::shared_ptr<Launch>& launch) {
  if (launch->words.empty()) {
    finish(launch, translated("its desktop entry has no command"));
    return;
  }
  runLoop_.background([launch] { launch->process = started(*launch); }, alive_,
                      [this, launch] {
                        const bool isStarted = launch->process > 0;
                        if (isStarted) {
                          buryAtItsEnd(launch->process);
                          moveToScope(*launch);
                        }
                        finish(launch,
                               isStarted ? std::string() : translated("its program cannot be run"));
                      });
}

/// Off the main thread: the number of the program's process; below zero where it cannot be run.
pid_t ApplicationLauncher::started(const Launch& launch) {
  std::map<std::string, std::string> additions;
  for (const char* variable : {startupVariable, activationVariable})
    additions[variable] = launch.startupID;
  const Descriptor nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
  SpawnRequest request{.program = launch.words.front(),
                       .arguments = {launch.words.begin() + 1, launch.words.end()},
                       .environment = environmentWith(additions),
                       .input = nothing.number(),
                       .output = nothing.number(),
                       .errors = nothing.number(),
                       .workingFolder = launch.workingFolder,
                       .leadsSession = true};
  std::erase_if(*request.environment, isOurOwn);
  // An empty variable would be an identifier to some.
  if (launch.startupID.empty())
    std::erase_if(*request.environment, [](const std::string& line) {
      return line == std::string(startupVariable) + "=" ||
             line == std::string(activationVariable) + "=";
    });
  return spawn(request);
}

/// A process that ended stays in the table until its parent has waited for it.
void ApplicationLauncher::buryAtItsEnd(pid_t process) {
  Running running{exitOf(process), nullptr};
  if (!running.end)
    return;
  running.notifier = std::make_unique<QSocketNotifier>(running.end.number(), QSocketNotifier::Read);
  QObject::connect(running.notifier.get(), &QSocketNotifier::activated, [this, process] {
    while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
    const auto ended = running_.find(process);
    ended->second.notifier->setEnabled(false);
    ended->second.notifier.release()->deleteLater(); // it is what called
    running_.erase(ended);
  });
  running_.insert_or_assign(process, std::move(running));
}

/// A user's systemd ends with a unit what the unit started; in a scope of its own the application
/// outlives this slot's.
void ApplicationLauncher::moveToScope(const Launch& launch) {
  if (session_ == nullptr || !session_->isOpen())
    return;
  std::string name;
  for (const char c : launch.found->id.substr(0, 100))
    name += std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '.' ? c : '_';
  const std::string scope = fmt::format("app-tavrin-{}-{}.scope", name, launch.process);
  BusMessage message = session_->method(serviceManager, "StartTransientUnit");
  message.append("ssa(sv)a(sa(sv))", scope.c_str(), "fail", 2, "PIDs", "au", 1,
                 static_cast<std::uint32_t>(launch.process), "CollectMode", "s",
                 "inactive-or-failed", 0);
  if (message)
    sd_bus_message_set_auto_start(message.get(), 0);
  session_->call(message, [](sd_bus_message*, const std::string&) {});
}

void ApplicationLauncher::finish(const std::shared_ptr<Launch>& launch, const std::string& reason) {
  if ((!reason.empty() || launch->isRaised) && !launch->startupID.empty())
    runLoop_.background([id = launch->startupID, display = files_.environment("DISPLAY").value_or(
                                                     "")] { endStartupNotice(display, id); },
                        alive_, [] {});
  if (!launch->asker.expired())
    launch->answer(reason.empty()
                       ? std::string()
                       : failure(translated("open {name}", {{"name", launch->name()}}), reason));
}

} // namespace tavrin

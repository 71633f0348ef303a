#include "TavrinPlatform/Linux/Applications/ApplicationLauncher.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/Linux/Slot/LinuxApplication.h"
#include "TavrinPlatform/Linux/Slot/StartupNotice.h"

#include <QProcess>
#include <cctype>
#include <fmt/format.h>

namespace tavrin {
namespace {

constexpr double activationLimit = 25;
constexpr const char* applicationInterface = "org.freedesktop.Application";
constexpr const char* startupVariable = "DESKTOP_STARTUP_ID";
constexpr const char* activationVariable = "XDG_ACTIVATION_TOKEN";
const BusAddress manager{"org.freedesktop.systemd1", "/org/freedesktop/systemd1",
                         "org.freedesktop.systemd1.Manager"};

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

QStringList texts(const std::vector<std::string>& words, std::size_t first) {
  QStringList list;
  for (std::size_t i = first; i < words.size(); ++i)
    list << QString::fromStdString(words[i]);
  return list;
}

} // namespace

/// One application on its way.
struct ApplicationLauncher::Launch {
  std::string id;
  std::string action;
  std::optional<FoundEntry> found;
  std::vector<std::string> words;
  std::string startupID;
  bool isStarted = false;
  qint64 process = 0;
  std::string reason;
  Answer answer;
  std::weak_ptr<int> asker;

  std::string name() const { return found ? found->entry.name : id; }
};

ApplicationLauncher::ApplicationLauncher(const FileManager& files, RunLoop& runLoop, Bus* session)
    : files_(files), runLoop_(runLoop), session_(session) {}

TokenPtr ApplicationLauncher::launch(const std::string& id, const std::string& action,
                                     Answer answer) {
  struct Asker final : Token {
    std::shared_ptr<int> alive = std::make_shared<int>();
  };
  auto token = std::make_unique<Asker>();
  const auto launch = std::make_shared<Launch>();
  launch->id = id;
  launch->action = action;
  launch->answer = std::move(answer);
  launch->asker = token->alive;
  runLoop_.background([&files = files_, launch] { prepare(files, launch); }, alive_,
                      [this, launch] {
                        if (!launch->found)
                          finish(launch, "it is not installed");
                        else if (!launch->reason.empty())
                          finish(launch, launch->reason);
                        else if (launch->found->entry.isActivatedOnBus && session_ != nullptr &&
                                 session_->isOpen())
                          activate(launch);
                        else
                          startProgram(launch);
                      });
  return token;
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
  launch->words = execWords(exec, {entry.name, entry.icon, launch->found->file.string()});
  if (entry.runsInTerminal && !launch->words.empty()) {
    auto terminal = terminalCommand(files);
    if (terminal.empty()) {
      launch->reason = "it needs a terminal, and none is installed";
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
      [this, launch, weak = std::weak_ptr(alive_)](sd_bus_message* reply,
                                                   const std::string& error) {
        if (weak.expired())
          return;
        if (reply != nullptr) {
          launch->isStarted = true;
          finish(launch, {});
        } else if (!launch->words.empty() && error != SD_BUS_ERROR_NO_REPLY &&
                   error != SD_BUS_ERROR_TIMEOUT) {
          // Not on this bus: its command line is there for that.
          startProgram(launch);
        } else {
          finish(launch, "it does not answer");
        }
      },
      activationLimit);
}

void ApplicationLauncher::startProgram(const std::shared_ptr<Launch>& launch) {
  if (launch->words.empty()) {
    finish(launch, "its desktop entry has no command");
    return;
  }
  runLoop_.background(
      [launch] {
        QProcess process;
        process.setProgram(QString::fromStdString(launch->words.front()));
        process.setArguments(texts(launch->words, 1));
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const char* variable : {startupVariable, activationVariable}) {
          environment.remove(QLatin1String(variable));
          if (!launch->startupID.empty())
            environment.insert(QLatin1String(variable), QString::fromStdString(launch->startupID));
        }
        process.setProcessEnvironment(environment);
        const auto& folder = launch->found->entry.workingFolder;
        if (!folder.empty())
          process.setWorkingDirectory(QString::fromStdString(folder));
        process.setStandardInputFile(QProcess::nullDevice());
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        // In a session of its own, and nobody's child.
        launch->isStarted = process.startDetached(&launch->process);
      },
      alive_,
      [this, launch] {
        if (launch->isStarted)
          moveToScope(*launch);
        finish(launch, launch->isStarted ? std::string() : "its program cannot be run");
      });
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
  BusMessage message = session_->method(manager, "StartTransientUnit");
  message.append("ssa(sv)a(sa(sv))", scope.c_str(), "fail", 2, "PIDs", "au", 1,
                 static_cast<std::uint32_t>(launch.process), "CollectMode", "s",
                 "inactive-or-failed", 0);
  if (message)
    sd_bus_message_set_auto_start(message.get(), 0);
  session_->call(message, [](sd_bus_message*, const std::string&) {});
}

void ApplicationLauncher::finish(const std::shared_ptr<Launch>& launch, const std::string& reason) {
  if (!reason.empty() && !launch->startupID.empty())
    runLoop_.background([id = launch->startupID, display = files_.environment("DISPLAY").value_or(
                                                     "")] { endStartupNotice(display, id); },
                        alive_, [] {});
  if (const auto asker = launch->asker.lock())
    launch->answer(reason.empty() ? std::string() : failure("open " + launch->name(), reason));
}

} // namespace tavrin

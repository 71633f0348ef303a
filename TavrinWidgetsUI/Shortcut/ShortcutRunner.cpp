#include "TavrinWidgetsUI/Shortcut/ShortcutRunner.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Kinds/Shortcut/ShortcutSettings.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>

namespace tavrin {
namespace {

using State = ShortcutResult::State;

constexpr double freshTime = 4;
/// Output is shown at most so often.
constexpr double gatheringTime = 0.2;

} // namespace

DesktopActionName DesktopActionName::parse(const std::string& text) {
  constexpr std::string_view ending = ".desktop/";
  const std::string name(trimmed(text));
  if (const auto end = name.rfind(ending); end != std::string::npos)
    return {name.substr(0, end + ending.size() - 1), name.substr(end + ending.size())};
  const auto slash = name.find('/');
  if (name.starts_with('/') || slash == std::string::npos)
    return {name, {}};
  return {name.substr(0, slash), name.substr(slash + 1)};
}

ShortcutRunner::ShortcutRunner(Services services, DockWidget widget)
    : services_(services), widget_(std::move(widget)) {}

QString ShortcutRunner::title() const {
  const auto own = settings().title;
  return QString::fromStdString(trimmed(own).empty() ? widget_.name : own);
}

std::string ShortcutRunner::subject() const {
  const auto settings = this->settings();
  if (const auto command = settings.command.value_or(""); !trimmed(command).empty())
    return command;
  return std::string(trimmed(settings.desktopAction.value_or("")));
}

double ShortcutRunner::elapsed() const {
  return isRunning() ? std::max(services_.clock.now().since(result_.startedAt), 0.0)
                     : result_.duration;
}

std::optional<double> ShortcutRunner::progress() const {
  return isRunning() && limit_ > 0 ? std::optional(std::min(elapsed() / limit_, 1.0))
                                   : std::nullopt;
}

void ShortcutRunner::run() {
  if (isRunning() || !hasAction())
    return;
  const auto settings = this->settings();
  result_ = {.state = State::running, .startedAt = services_.clock.now(), .trouble = {}};
  output_.clear();
  fresh_.reset();
  tick_ = services_.runLoop.repeat(1, [this] { changed(); });
  if (!trimmed(settings.command.value_or("")).empty())
    runCommand(settings);
  else
    runDesktopAction(settings);
  changed();
}

void ShortcutRunner::runCommand(const ShortcutSettings& settings) {
  limit_ = std::clamp(settings.timeLimit, 1, 3600);
  ProcessRequest request;
  request.program = services_.files.environment("SHELL").value_or("");
  if (!request.program.starts_with('/'))
    request.program = "/bin/sh";
  request.arguments = {"-c", *settings.command};
  request.timeLimit = limit_;
  request.outputLimit = 0;
  std::string folder = settings.workingFolder.value_or("");
  const std::string home = services_.files.homeFolder().string();
  if (folder == "~" || folder.starts_with("~/"))
    folder = home + folder.substr(1);
  request.workingFolder = folder.empty() ? home : folder;
  request.onOutput = [this](std::string_view bytes) {
    output_.append(bytes);
    if (!gathering_)
      gathering_ = services_.runLoop.after(gatheringTime, [this] {
        const TokenPtr ended = std::move(gathering_);
        changed();
      });
  };
  run_ = services_.processes.run(std::move(request),
                                 [this](const ProcessResult& result) { ended(result); });
}

void ShortcutRunner::ended(const ProcessResult& result) {
  const TokenPtr ended = std::move(run_);
  switch (result.outcome) {
  case ProcessResult::Outcome::exited:
    finish(result.status == 0 ? State::done : State::failed, result.status);
    break;
  case ProcessResult::Outcome::signalled:
    finish(State::failed, result.status, true);
    break;
  case ProcessResult::Outcome::timedOut:
    finish(State::timedOut);
    break;
  case ProcessResult::Outcome::failedToStart:
    result_.trouble =
        failure("run the command", settings().workingFolder ? "its folder or the shell is missing"
                                                            : "the shell cannot be started");
    finish(State::failed);
    break;
  }
}

void ShortcutRunner::runDesktopAction(const ShortcutSettings& settings) {
  limit_ = 0;
  const auto name = DesktopActionName::parse(*settings.desktopAction);
  run_ = services_.applications.launch(name.application, name.action,
                                       [this](const std::string& trouble) {
                                         const TokenPtr ended = std::move(run_);
                                         result_.trouble = trouble;
                                         finish(trouble.empty() ? State::done : State::failed);
                                       });
}

void ShortcutRunner::finish(State state, int status, bool isSignal) {
  result_.duration = elapsed();
  result_.state = state;
  result_.status = status;
  result_.isSignal = isSignal;
  tick_.reset();
  gathering_.reset();
  if (state == State::done)
    fresh_ = services_.runLoop.after(freshTime, [this] {
      const TokenPtr ended = std::move(fresh_);
      changed();
    });
  changed();
}

void ShortcutRunner::stop() {
  if (!isRunning())
    return;
  run_.reset();
  finish(State::stopped);
}

void ShortcutRunner::changed() const {
  if (onChange)
    onChange();
}

} // namespace tavrin

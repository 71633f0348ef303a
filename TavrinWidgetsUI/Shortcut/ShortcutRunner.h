#pragma once

#include "TavrinCore/Kinds/Shortcut/ShortcutOutput.h"
#include "TavrinCore/Kinds/Shortcut/ShortcutSettings.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/ApplicationLibrary.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/ProcessRunner.h"

#include <QString>
#include <functional>

namespace tavrin {

/// How the action went that ran last.
struct ShortcutResult {
  enum class State { none, running, done, failed, timedOut, stopped };
  State state = State::none;
  Date startedAt;
  /// Seconds.
  double duration = 0;
  /// A command's exit status, or the number of the signal that ended it.
  int status = 0;
  bool isSignal = false;
  /// The whole sentence of what kept it from starting.
  std::string trouble;
  bool operator==(const ShortcutResult&) const = default;
};

/// The application and the action that a desktop action's name means.
struct DesktopActionName {
  std::string application;
  /// Empty for the application itself.
  std::string action;
  /// "org.gnome.Terminal.desktop/new-window", or a path in its place.
  static DesktopActionName parse(const std::string& text);
  bool operator==(const DesktopActionName&) const = default;
};

/// Runs the widget's action, one run at a time, and keeps what it wrote last. When it goes, a
/// command that still runs is told to end, and with it all it has started.
class ShortcutRunner {
public:
  struct Services {
    ProcessRunner& processes;
    ApplicationLibrary& applications;
    FileManager& files;
    Clock& clock;
    RunLoop& runLoop;
  };
  ShortcutRunner(Services services, DockWidget widget);
  ShortcutRunner(const ShortcutRunner&) = delete;
  ShortcutRunner& operator=(const ShortcutRunner&) = delete;

  const DockWidget& widget() const { return widget_; }
  /// A run goes on as it was begun. Does not call `onChange`.
  void setWidget(const DockWidget& widget) { widget_ = widget; }
  ShortcutSettings settings() const { return widget_.kind.settings<ShortcutSettings>(); }
  /// The action's name.
  QString title() const;
  /// What it does, in the user's own words: the command or the desktop action.
  std::string subject() const;
  bool hasAction() const { return !subject().empty(); }

  bool isRunning() const { return result_.state == ShortcutResult::State::running; }
  const ShortcutResult& result() const { return result_; }
  const ShortcutOutput& output() const { return output_; }
  /// Seconds that the run has taken so far, or took.
  double elapsed() const;
  /// Share of the time limit that is used up; no value while nothing runs.
  std::optional<double> progress() const;
  /// A run has just gone well: shown on the tile for a moment.
  bool isFresh() const { return fresh_ != nullptr; }

  /// Does nothing while a run is under way, or where there is no action.
  void run();
  void stop();

  /// Something of the above differs; while a command runs, also each second.
  std::function<void()> onChange;

private:
  void runCommand(const ShortcutSettings& settings);
  void runDesktopAction(const ShortcutSettings& settings);
  void ended(const ProcessResult& result);
  void finish(ShortcutResult::State state, int status = 0, bool isSignal = false);
  void changed() const;

  Services services_;
  DockWidget widget_;
  ShortcutResult result_;
  ShortcutOutput output_;
  double limit_ = 0;
  TokenPtr run_;
  TokenPtr tick_;
  TokenPtr gathering_;
  TokenPtr fresh_;
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinHost/Dock/DockLibrary.h"
#include "TavrinPlatform/RunLoop.h"
#include "TavrinSettings/Editing/History.h"

#include <functional>
#include <future>
#include <memory>

namespace tavrin {

/// Changes of the Dock itself, which restarts for it: they run off the main thread, one at a time,
/// and are steps of the history.
class DockJob {
public:
  DockJob(HostContext& context, History& history, RunLoop& runLoop)
      : context_(context), history_(history), runLoop_(runLoop) {}
  /// Waits for the change that is under way: it stands on the context. A Dock takes seconds.
  ~DockJob();

  bool isRunning() const { return isRunning_; }
  /// Whether a Dock runs here. Where none does, a layout is written to the preferences that a Dock
  /// reads when it starts, and nothing is restarted.
  bool hasDock() const;

  /// Puts a profile into the Dock and makes it the active one; the active one is put there anew.
  /// Without `restarts` a Dock that runs takes it when it next starts.
  void apply(const Profile& profile, bool restarts = true);
  /// Puts a layout by its name, such as a backup's, into the Dock.
  void restore(const std::string& layout);

  enum class Stage { begun, done, stepped, unchanged, failed };
  /// It began, or ended: then `sentence` says how. What is done can be undone; what is stepped was
  /// undone or done again.
  std::function<void(const std::string& sentence, Stage)> onProgress;

private:
  class Step;

  struct Outcome {
    bool isWritten = false;
    std::string trouble;
    /// The Dock before, where it was written.
    std::string backup;
  };
  using Work = std::function<bool(DockLibrary& library)>;

  /// What is said at the end, where a Dock runs and where none does.
  struct Ended {
    std::string inDock;
    std::string written;
  };
  /// `done` is called on the main thread where nothing failed.
  void run(const Ended& endings, Work work, std::function<void(const Outcome&)> done,
           bool mayRestart);

  HostContext& context_;
  History& history_;
  RunLoop& runLoop_;
  bool isRunning_ = false;
  std::future<void> end_;
  Lifetime alive_;
};

} // namespace tavrin

#include "TavrinSettings/Dock/DockJob.h"
#include "TavrinCore/Text/Texts.h"

#include <fmt/format.h>

namespace tavrin {
namespace {

std::string newestBackup(DockLibrary& library) {
  const auto newest = library.backups().latestBackup();
  return newest ? newest->filename().string() : std::string();
}

} // namespace

/// The Dock before and the active profile before come back, and the other way round.
class DockJob::Step final : public HistoryStep {
public:
  Step(DockJob& job, std::string title, std::string before, std::optional<UUID> activeBefore,
       Work again, bool restarts)
      : job_(job), title_(std::move(title)), before_(std::move(before)),
        activeBefore_(activeBefore), again_(std::move(again)), restarts_(restarts) {}

  std::string title() const override { return title_; }
  bool tellsItself() const override { return true; }
  std::vector<std::string> undo() override {
    const auto said = translated("Undone: {step}.", {{"step", title_}});
    job_.run(
        {said, said},
        [before = before_, active = activeBefore_](DockLibrary& library) {
          const bool isWritten = !before.empty() && library.put(library.layout(before));
          library.profiles().setActive(active);
          return isWritten;
        },
        {}, restarts_);
    return {};
  }
  std::vector<std::string> redo() override {
    const auto said = translated("Done again: {step}.", {{"step", title_}});
    job_.run({said, said}, again_, {}, restarts_);
    return {};
  }

private:
  DockJob& job_;
  std::string title_;
  /// Empty where only another profile became the active one.
  std::string before_;
  std::optional<UUID> activeBefore_;
  Work again_;
  bool restarts_;
};

void DockJob::apply(const Profile& profile, bool restarts) {
  const auto title = translated("Apply {name}", {{"name", profile.name}});
  const Work work = [id = profile.id](DockLibrary& library) { return library.put(id); };
  const auto active = DockLibrary(context_).profiles().file().activeProfileId;
  run(
      {translated("“{name}” is in the Dock.", {{"name", profile.name}}),
       translated("“{name}” is written, for a Dock that starts.", {{"name", profile.name}})},
      work,
      [this, title, active, work, restarts, id = profile.id](const Outcome& outcome) {
        if (!outcome.backup.empty() || active != id)
          history_.add(
              std::make_unique<Step>(*this, title, outcome.backup, active, work, restarts));
      },
      restarts);
}

void DockJob::restore(const std::string& layout) {
  const Work work = [layout](DockLibrary& library) { return library.put(library.layout(layout)); };
  const auto active = DockLibrary(context_).profiles().file().activeProfileId;
  run(
      {translated("The Dock is as it was then."),
       translated("The Dock's preferences are as they were then.")},
      work,
      [this, active, work](const Outcome& outcome) {
        if (!outcome.backup.empty())
          history_.add(std::make_unique<Step>(*this, translated("Restore the Dock"), outcome.backup,
                                              active, work, true));
      },
      true);
}

DockJob::~DockJob() {
  if (end_.valid())
    end_.wait();
}

bool DockJob::hasDock() const {
  return context_.platform().dockServices().dockProcess().running().has_value();
}

void DockJob::run(const Ended& endings, Work work, std::function<void(const Outcome&)> done,
                  bool mayRestart) {
  if (isRunning_)
    throw HostError(ExitCode::failed, translated("The Dock is being changed already"));
  // Made here: the services it stands on are made when they are first asked for.
  const bool restarts = mayRestart && hasDock();
  const auto ended = restarts ? endings.inDock : endings.written;
  auto library = std::make_shared<DockLibrary>(context_, restarts);
  library->keepQuiet();
  isRunning_ = true;
  if (onProgress)
    onProgress(restarts ? translated("The Dock restarts…") : translated("The layout is written…"),
               Stage::begun);
  auto outcome = std::make_shared<Outcome>();
  const auto end = std::make_shared<std::promise<void>>();
  end_ = end->get_future();
  runLoop_.background(
      [library = std::move(library), outcome, end, work = std::move(work)]() mutable {
        try {
          const auto before = newestBackup(*library);
          outcome->isWritten = work(*library);
          outcome->backup = newestBackup(*library);
          if (outcome->backup == before)
            outcome->backup.clear();
        } catch (const std::exception& error) {
          outcome->trouble = error.what();
        }
        library.reset();
        end->set_value();
      },
      alive_,
      [this, outcome, ended, done = std::move(done)] {
        isRunning_ = false;
        if (outcome->trouble.empty() && done)
          done(*outcome);
        if (!onProgress)
          return;
        if (!outcome->trouble.empty())
          onProgress(outcome->trouble + ".", Stage::failed);
        else if (!done)
          onProgress(ended, Stage::stepped);
        else if (outcome->isWritten)
          onProgress(ended, Stage::done);
        else
          onProgress(translated("Nothing was written: the Dock shows it already."),
                     Stage::unchanged);
      });
}

} // namespace tavrin

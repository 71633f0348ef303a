#include "TavrinWidgetsUI/GitHub/GitHubModel.h"

#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"

namespace tavrin {

GitHubModel::GitHubModel(Clock& clock, RunLoop& runLoop, Workspace& workspace, GitHubSource source,
                         DockWidget widget)
    : clock_(clock), runLoop_(runLoop), workspace_(workspace), source_(std::move(source)),
      widget_(std::move(widget)), lowPower_(workspace.observeLowPowerMode([this] { schedule(); })),
      wake_(workspace.observeWake([this] { refresh(); })) {
  schedule();
  refresh();
}

void GitHubModel::setWidget(const DockWidget& widget) {
  const GitHubSettings before = settings();
  widget_ = widget;
  if (settings() == before)
    return;
  if (settings().shows != before.shows) {
    items_.clear();
    contributions_.reset();
    trouble_.reset();
    hasRead_ = false;
  }
  load_.reset();
  refresh();
}

void GitHubModel::schedule() {
  timer_ = runLoop_.repeat(savesEnergy() ? savingInterval : refreshInterval, [this] { refresh(); });
}

void GitHubModel::refresh() {
  if (isLoading())
    return;
  load_ = source_.load(settings(), [this](const GitHubSource::Result& result) { show(result); });
  changed();
}

void GitHubModel::show(const GitHubSource::Result& result) {
  const TokenPtr ended = std::move(load_);
  if (result.hasData) {
    items_ = result.items;
    contributions_ = result.contributions;
    hasRead_ = true;
  } else if (result.trouble && result.trouble->kind != GitHubSource::Trouble::Kind::failed) {
    items_.clear();
    contributions_.reset();
    hasRead_ = false;
  }
  trouble_ = result.trouble;
  changed();
}

void GitHubModel::changed() const {
  if (onChange)
    onChange();
}

} // namespace tavrin

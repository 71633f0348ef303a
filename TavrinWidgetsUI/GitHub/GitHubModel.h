#pragma once

#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/Workspace.h"
#include "TavrinWidgetsUI/GitHub/GitHubSource.h"

#include <functional>

namespace tavrin {

/// What GitHub has for the user, as tile and panel show it: asked at the start, when the settings
/// change, after waking, and every two minutes, or five while the desktop saves energy.
class GitHubModel {
public:
  static constexpr double refreshInterval = 120;
  static constexpr double savingInterval = 300;

  GitHubModel(Clock& clock, RunLoop& runLoop, Workspace& workspace, GitHubSource source,
              DockWidget widget);
  GitHubModel(const GitHubModel&) = delete;
  GitHubModel& operator=(const GitHubModel&) = delete;

  const DockWidget& widget() const { return widget_; }
  /// Other settings are asked for at once. Does not call `onChange`.
  void setWidget(const DockWidget& widget);
  /// Those of the widget; the defaults when it is of another kind.
  GitHubSettings settings() const { return widget_.kind.settings<GitHubSettings>(); }

  /// What GitHub had last: kept while it cannot be reached.
  const std::vector<GitHubItem>& items() const { return items_; }
  const std::optional<GitHubContributions>& contributions() const { return contributions_; }
  const std::optional<GitHubSource::Trouble>& trouble() const { return trouble_; }
  /// Items and contributions were read at least once.
  bool hasRead() const { return hasRead_; }
  /// A question is under way: "Asking GitHub".
  bool isLoading() const { return load_ != nullptr; }
  bool savesEnergy() const { return workspace_.isLowPowerMode(); }
  Date now() const { return clock_.now(); }

  /// Asks now; does nothing while a question is under way.
  void refresh();

  /// Something of the above differs.
  std::function<void()> onChange;

private:
  void schedule();
  void show(const GitHubSource::Result& result);
  void changed() const;

  Clock& clock_;
  RunLoop& runLoop_;
  Workspace& workspace_;
  GitHubSource source_;
  DockWidget widget_;
  std::vector<GitHubItem> items_;
  std::optional<GitHubContributions> contributions_;
  std::optional<GitHubSource::Trouble> trouble_;
  bool hasRead_ = false;
  TokenPtr timer_;
  TokenPtr lowPower_;
  TokenPtr wake_;
  TokenPtr load_;
};

} // namespace tavrin

#pragma once

#include "TavrinWidgetsUI/GitHub/GitHubViews.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include <functional>

namespace tavrin {

class GitHubModel;
class PanelEmptyState;
class PanelList;
class PanelText;
class ViewWidget;

/// What GitHub has for the user: a list whose rows open in the browser, or a year's contributions.
class GitHubPanelView final : public PanelView {
public:
  /// `onOpen` gets an item's address.
  GitHubPanelView(const PanelAppearance& appearance, GitHubModel& model,
                  std::function<void(const std::string& url)> onOpen, std::function<void()> onEdit);
  void refresh() override;

private:
  void showList();
  void showContributions();
  void showState();

  GitHubModel& model_;
  PanelEmptyState* state_;
  PanelList* list_;
  ViewWidget* grid_;
  ViewWidget* figures_;
  PanelText* remark_;
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include <functional>

namespace tavrin {

class ClaudeUsageModel;
class PanelButton;
class PanelEmptyState;
class PanelFigure;
class PanelSegments;
class PanelText;
class ViewWidget;

/// The tokens of a period, what they were used for and where, and how much of the plan is left.
class ClaudeUsagePanelView final : public PanelView {
public:
  /// `onScope`: the user chose another period.
  ClaudeUsagePanelView(const PanelAppearance& appearance, ClaudeUsageModel& model,
                       std::function<void(ClaudeUsageScope)> onScope, std::function<void()> onEdit);
  void refresh() override;

private:
  class Projects;

  void showTotals();
  void showDays();
  void showLimits();

  ClaudeUsageModel& model_;
  PanelEmptyState* empty_;
  QWidget* content_;
  PanelSegments* scopes_;
  PanelFigure* tokens_;
  PanelText* messages_;
  ViewWidget* budget_;
  ViewWidget* kinds_;
  PanelText* daysTitle_;
  ViewWidget* days_;
  PanelText* projectsTitle_;
  Projects* projects_;
  PanelText* limitsTitle_;
  ViewWidget* limits_;
  PanelText* noLimits_;
  PanelButton* connect_;
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Kinds/Runs/StopwatchRun.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

namespace tavrin {

class PanelButton;
class PanelFigure;
class PanelList;
class ViewWidget;

/// What a stopwatch's panel shows and asks for. All must be set; what they refer to must outlive
/// the panel.
struct StopwatchPanelHost {
  std::function<QString()> name;
  std::function<const StopwatchRun&()> run;
  /// The moment to show.
  std::function<Date()> now;
  std::function<void()> toggle;
  std::function<void()> lap;
  std::function<void()> reset;
  std::function<void()> edit;
};

/// Shows tenths of a second: to be refreshed ten times a second while it is open and runs.
class StopwatchPanelView final : public PanelView {
public:
  StopwatchPanelView(const PanelAppearance& appearance, StopwatchPanelHost host);

  void refresh() override;

protected:
  void appearanceChanged() override { refresh(); }

private:
  void refreshLaps();

  StopwatchPanelHost host_;
  ViewWidget* dial_;
  PanelFigure* time_;
  PanelButton* primary_;
  PanelButton* lap_;
  PanelButton* reset_;
  PanelList* laps_;
  std::vector<double> shownLaps_;
};

} // namespace tavrin

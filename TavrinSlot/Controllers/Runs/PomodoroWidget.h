#pragma once

#include "TavrinSlot/Controllers/Runs/RunWidgetController.h"
#include "TavrinWidgetsUI/Runs/PomodoroModel.h"
#include "TavrinWidgetsUI/Runs/PomodoroViews.h"

namespace tavrin {

class PomodoroWidgetController final : public RunWidgetController {
public:
  static constexpr const char* runKey = "pomodoroRun";

  PomodoroWidgetController(const SlotContext& context, const DockWidget& widget);

private:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override;
  void panelWillOpen() override;

  bool isRunning() const override { return model_.run().isRunning(); }
  Shown shown() const override;
  End end() const override;
  void saveRun() override;
  void readClock() override { model_.tick(); }
  bool finishIfOver() override;
  void timeJumped() override;

  void ring(PomodoroPhase ended);

  PomodoroModel model_;
  PomodoroActions actions_;
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinSlot/Controllers/Runs/RunWidgetController.h"
#include "TavrinWidgetsUI/Runs/PomodoroModel.h"
#include "TavrinWidgetsUI/Runs/PomodoroViews.h"

namespace tavrin {

class PomodoroWidgetController final
    : public KindController<PomodoroSettings, RunWidgetController> {
public:
  static constexpr const char* runKey = "pomodoroRun";

  PomodoroWidgetController(const SlotContext& context, const DockWidget& widget)
      : KindController(context, widget, std::string("pomodoro"), std::string("phaseEnded")) {}

private:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override;
  void panelWillOpen() override;

  bool isRunning() const override { return model_->run().isRunning(); }
  Shown shown() const override;
  End end() const override;
  void saveRun() override;
  void readClock() override { model_->tick(); }
  bool finishIfOver() override;
  void timeJumped() override;

  void ring(PomodoroPhase ended);

  std::optional<PomodoroModel> model_;
  PomodoroActions actions_{[this] { model_->toggle(); }, [this] { model_->skip(); }};
};

} // namespace tavrin

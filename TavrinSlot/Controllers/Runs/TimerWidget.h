#pragma once

#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinSlot/Controllers/Runs/RunWidgetController.h"
#include "TavrinWidgetsUI/Runs/TimerModel.h"
#include "TavrinWidgetsUI/Runs/TimerViews.h"

namespace tavrin {

class TimerWidgetController final : public KindController<TimerSettings, RunWidgetController> {
public:
  static constexpr const char* runKey = "timerRun";

  TimerWidgetController(const SlotContext& context, const DockWidget& widget)
      : KindController(context, widget, std::string("timer"), std::string("finished")) {}

private:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override { return model_->tint(); }
  void widgetChanged() override;

  bool isRunning() const override { return model_->run().isRunning(); }
  Shown shown() const override;
  End end() const override { return {model_->run().endDate(), translated("Time's up")}; }
  void saveRun() override;
  void readClock() override { model_->tick(); }
  bool finishIfOver() override;

  std::optional<TimerModel> model_;
  TimerActions actions_{[this] { model_->toggle(); }, [this] { model_->reset(); }};
};

} // namespace tavrin

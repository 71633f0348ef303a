#pragma once

#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/Weather/WeatherModel.h"
#include "TavrinWidgetsUI/Weather/WeatherViews.h"

namespace tavrin {

class WeatherWidgetController final : public KindController<WeatherSettings> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override { return weatherTint; }
  void widgetChanged() override { model_->setSettings(settings()); }
  void panelDidClose() override { search_->clear(); }

private:
  /// The chosen place becomes the widget's.
  void choose(const WeatherPlace& place);
  WeatherSnapshot snapshot() const;

  std::optional<WeatherFetch> fetch_;
  std::optional<WeatherModel> model_;
  std::optional<WeatherSearch> search_;
};

} // namespace tavrin

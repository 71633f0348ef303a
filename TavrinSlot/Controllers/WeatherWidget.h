#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/Weather/WeatherModel.h"
#include "TavrinWidgetsUI/Weather/WeatherViews.h"

namespace tavrin {

class WeatherWidgetController final : public BasicWidgetController {
public:
  WeatherWidgetController(const SlotContext& context, const DockWidget& widget);

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override { return weatherTint; }
  void widgetChanged() override { model_.setSettings(settings()); }
  void panelDidClose() override { search_.clear(); }

private:
  /// The chosen place becomes the widget's.
  void save(const WeatherPlace& place);
  const WeatherSettings& settings() const;
  WeatherSnapshot snapshot() const;

  WeatherFetch fetch_;
  WeatherModel model_;
  WeatherSearch search_;
};

} // namespace tavrin

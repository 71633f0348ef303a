#include "TavrinSlot/Controllers/WeatherWidget.h"

#include "TavrinPlatform/HTTPClient.h"
#include "TavrinWidgetsUI/Weather/WeatherPanelView.h"

namespace tavrin {
namespace {

std::filesystem::path cacheFile(Platform& platform, const DockWidget& widget) {
  return platform.fileManager().cachesFolder() / "tavrin" /
         ("weather-" + widget.id.text() + ".json");
}

} // namespace

WeatherWidgetController::WeatherWidgetController(const SlotContext& context,
                                                 const DockWidget& widget)
    : BasicWidgetController(context, widget),
      fetch_(platform().http(), platform().clock(), platform().fileManager()),
      model_(platform().clock(), platform().runLoop(), platform().workspace(), fetch_,
             WeatherCache(cacheFile(platform(), widget)), settings()),
      search_(platform().runLoop(), fetch_) {
  model_.onChange = [this] { refresh(); };
  search_.onChange = [this] { refreshPanel(); };
  renderTile();
  model_.start();
}

const WeatherSettings& WeatherWidgetController::settings() const {
  static const WeatherSettings none;
  const auto* settings = widget().kind.get<WeatherSettings>();
  return settings != nullptr ? *settings : none;
}

void WeatherWidgetController::save(const WeatherPlace& place) {
  WeatherSettings chosen = settings();
  chosen.cityName = place.name;
  chosen.latitude = place.latitude;
  chosen.longitude = place.longitude;
  search_.clear();
  BasicWidgetController::save(chosen);
  model_.setRegion(place.region);
  model_.refresh();
  refresh();
}

WeatherSnapshot WeatherWidgetController::snapshot() const {
  return {model_.settings(), model_.reading(), model_.isLoading(),
          model_.failed(),   model_.isStale(), model_.now()};
}

AnyView WeatherWidgetController::tileView(const TileSize& size) const {
  return size.isWide() ? weatherWideTile(snapshot(), size) : weatherTileIcon(snapshot(), size);
}

PanelView* WeatherWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new WeatherPanelView(
      appearance, {[this] { return widget().name; }, [this] { return snapshot(); },
                   [this] { return model_.region(); }, [this] { model_.refresh(); }, search_,
                   [this](const WeatherPlace& place) { save(place); },
                   [this](const std::string& address) { platform().workspace().open(address); },
                   context().onEdit});
}

} // namespace tavrin

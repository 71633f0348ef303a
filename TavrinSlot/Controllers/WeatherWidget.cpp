#include "TavrinSlot/Controllers/WeatherWidget.h"

#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinPlatform/HTTPClient.h"
#include "TavrinWidgetsUI/Weather/WeatherPanelView.h"

namespace tavrin {
namespace {

std::filesystem::path cacheFile(Platform& platform, const DockWidget& widget) {
  return platform.fileManager().cachesFolder() / "tavrin" /
         ("weather-" + widget.id.text() + ".json");
}

} // namespace

void WeatherWidgetController::start() {
  fetch_.emplace(platform().http(), platform().clock(), platform().fileManager());
  model_.emplace(platform().clock(), platform().runLoop(), platform().workspace(), *fetch_,
                 WeatherCache(cacheFile(platform(), widget())), settings());
  search_.emplace(platform().runLoop(), *fetch_);
  model_->onChange = [this] { refresh(); };
  search_->onChange = [this] { refreshPanel(); };
  model_->start();
}

void WeatherWidgetController::stop() {
  search_.reset();
  model_.reset();
  fetch_.reset();
}

void WeatherWidgetController::choose(const WeatherPlace& place) {
  WeatherSettings chosen = settings();
  chosen.cityName = place.name;
  chosen.latitude = place.latitude;
  chosen.longitude = place.longitude;
  search_->clear();
  save(chosen);
  model_->setRegion(place.region);
  model_->refresh();
  refresh();
}

WeatherSnapshot WeatherWidgetController::snapshot() const {
  return {model_->settings(), model_->reading(), model_->isLoading(),
          model_->failed(),   model_->isStale(), model_->now()};
}

AnyView WeatherWidgetController::tileView(const TileSize& size) {
  return size.isWide() ? weatherWideTile(snapshot(), size) : weatherTileIcon(snapshot(), size);
}

PanelView* WeatherWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new WeatherPanelView(
      appearance, {[this] { return widget().name; }, [this] { return snapshot(); },
                   [this] { return model_->region(); }, [this] { model_->refresh(); }, *search_,
                   [this](const WeatherPlace& place) { choose(place); },
                   [this](const std::string& address) { platform().workspace().open(address); },
                   context().onEdit});
}

} // namespace tavrin

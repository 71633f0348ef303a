#include "TavrinSlot/Controllers/ConverterWidget.h"

#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinWidgetsUI/Converter/ConverterPanelView.h"

namespace tavrin {

void ConverterWidgetController::start() {
  recorded_ = settings();
  settings_ = recorded_;
}

void ConverterWidgetController::stop() {
  saveNow();
}

void ConverterWidgetController::widgetChanged() {
  if (settings() == recorded_)
    return;
  // Set from elsewhere: that was the user too, and later.
  recorded_ = settings();
  settings_ = recorded_;
  pendingSave_.reset();
}

void ConverterWidgetController::change(const ConverterSettings& settings) {
  if (settings == settings_)
    return;
  settings_ = settings;
  pendingSave_ = platform().runLoop().after(savePause, [this] { saveNow(); });
  refresh();
}

void ConverterWidgetController::saveNow() {
  if (!pendingSave_)
    return;
  pendingSave_.reset();
  recorded_ = settings_;
  save(settings_);
}

AnyView ConverterWidgetController::tileView(const TileSize& size) {
  return size.isWide() ? converterWideTile(settings_, notation_, size, swap_)
                       : converterTileIcon(settings_, notation_, size);
}

PanelView* ConverterWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new ConverterPanelView(
      appearance, {.name = [this] { return widget().name; },
                   .settings = [this] { return settings_; },
                   .change = [this](const ConverterSettings& settings) { change(settings); },
                   .copy = [this](const auto& text) { platform().pasteboard().writeText(text); },
                   .edit = context().onEdit,
                   .notation = notation_});
}

} // namespace tavrin

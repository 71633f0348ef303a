#pragma once

#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/Converter/ConverterViews.h"

namespace tavrin {

/// What is typed shows at once, and is saved when the typing pauses or the panel closes.
class ConverterWidgetController final : public KindController<ConverterSettings> {
public:
  static constexpr double savePause = 0.8;

  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override { return converterTint; }
  void widgetChanged() override;
  void panelDidClose() override { saveNow(); }

private:
  void change(const ConverterSettings& settings);
  void saveNow();

  NumberNotation notation_;
  /// What is shown, and what the widget's record said when it was read last.
  ConverterSettings settings_;
  ConverterSettings recorded_;
  TokenPtr pendingSave_;
  std::function<void()> swap_ = [this] {
    change(swapped(settings_));
    saveNow();
  };
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Kinds/Water/WaterSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinStorage/WaterStore.h"
#include "TavrinWidgetsUI/Water/WaterViews.h"

namespace tavrin {

class WaterWidgetController final : public KindController<WaterSettings> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override { return waterTint; }
  void widgetChanged() override;
  void panelWillOpen() override { tick(); }

private:
  void openStore();
  void observe();
  /// Pours told of in quick succession are shown together.
  void logChangedSoon();
  /// Somebody poured, here or elsewhere, or it is another day.
  void logChanged();
  /// The tank has drained a little.
  void tick();
  void drink();
  void undo();
  template <class Change> void change(const Change& change);

  WaterReading reading() const;
  bool animates() const;

  std::unique_ptr<WaterStore> store_;
  std::optional<WaterTankLayerHost> tank_;
  std::function<void()> drink_ = [this] { drink(); };
  /// The day shown last.
  std::string renderedDay_;
  /// Zone and locale as they were last told to be.
  Calendar calendar_;
  TokenPtr clock_;
  TokenPtr burst_;
  bool isBurst_ = false;
  std::vector<TokenPtr> observations_;
};

} // namespace tavrin

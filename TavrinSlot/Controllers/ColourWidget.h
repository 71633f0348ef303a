#pragma once

#include "TavrinCore/Kinds/Colour/ColourPickerSettings.h"
#include "TavrinSlot/Base/HeldStore.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinStorage/ColourStore.h"

namespace tavrin {

class ColourWidgetController final : public KindController<ColourPickerSettings> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { bindShortcut(); }

private:
  /// Somebody picked, here or elsewhere.
  void historyChanged();
  /// Registers the shortcut of the settings, and tells nobody where there is none.
  void bindShortcut();
  void shortcutRefused(const std::string& reason);
  /// Has the user pick a colour of the screen; the panel makes way.
  void pick();
  void picked(const ColourSample& sample);
  void copy(const PickedColour& colour, ColourFormat format);
  void copyNewest();
  template <class Change> void change(const Change& change);
  void choose(ColourFormat format);
  const ColourHistory& history() const;

  std::optional<HeldStore<ColourStore>> store_;
  TokenPtr changed_;
  TokenPtr picking_;
  std::optional<Hotkey> hotkey_;
  std::string shortcutTrouble_;
  std::function<void()> pick_ = [this] { pick(); };
  std::function<void()> copyNewest_ = [this] { copyNewest(); };
};

} // namespace tavrin

#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinSlot/HeldStore.h"
#include "TavrinStorage/ColourStore.h"

namespace tavrin {

class ColourWidgetController final : public BasicWidgetController {
public:
  ColourWidgetController(const SlotContext& context, const DockWidget& widget);
  ~ColourWidgetController() override;

protected:
  AnyView tileView(const TileSize& size) const override;
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
  template <class Change> void change(const Change& change);
  void save(ColourFormat format);
  ColourPickerSettings settings() const;
  const ColourHistory& history() const;

  HeldStore<ColourStore> store_;
  TokenPtr changed_;
  TokenPtr picking_;
  std::optional<Hotkey> hotkey_;
  std::string shortcutTrouble_;
  std::function<void()> pick_;
  std::function<void()> copyNewest_;
};

} // namespace tavrin

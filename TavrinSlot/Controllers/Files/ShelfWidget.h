#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/Files/FileActions.h"
#include "TavrinWidgetsUI/Files/ShelfModel.h"

namespace tavrin {

class ShelfWidgetController final : public BasicWidgetController {
public:
  ShelfWidgetController(const SlotContext& context, const DockWidget& widget);

  /// The shelf as this controller has it; empty where the widget is no shelf.
  ShelfSettings settings() const;
  /// Keeps another shelf and tells everybody.
  void write(const ShelfSettings& settings) { save(settings); }

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { model_.setSettings(settings()); }
  void panelWillOpen() override { model_.refresh(); }

private:
  /// Does `action` and closes the panel, whose work is done.
  template <class Action> void finish(const Action& action);

  /// Pictures are asked for where they are to be drawn.
  mutable ShelfModel model_;
  FileActions actions_;
};

} // namespace tavrin

#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardModel.h"

namespace tavrin {

class ClipboardWidgetController final : public BasicWidgetController {
public:
  ClipboardWidgetController(const SlotContext& context, const DockWidget& widget);

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { model_.setWidget(widget()); }
  void panelWillOpen() override;
  void panelDidClose() override;

private:
  void historyChanged();
  void copy(const ClipboardItem& item);

  LinkPreviewSource ogSource_;
  ClipboardSource source_;
  ClipboardModel model_;
};

} // namespace tavrin

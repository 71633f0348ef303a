#pragma once

#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardModel.h"

namespace tavrin {

class ClipboardWidgetController final : public KindController<ClipboardSettings> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override { model_->setWidget(widget()); }
  void panelWillOpen() override;
  void panelDidClose() override;

private:
  void historyChanged();
  void copy(const ClipboardItem& item);

  std::optional<LinkPreviewSource> ogSource_;
  std::optional<ClipboardSource> source_;
  std::optional<ClipboardModel> model_;
};

} // namespace tavrin

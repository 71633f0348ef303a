#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/Note/NoteModel.h"

namespace tavrin {

class NoteWidgetController final : public BasicWidgetController {
public:
  NoteWidgetController(const SlotContext& context, const DockWidget& widget);
  /// What was typed last is saved.
  ~NoteWidgetController() override;

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override;
  void panelDidClose() override { model_.flush(); }

private:
  /// Writes the text into the widget, unless another text was written there meanwhile: then the
  /// model gets that one.
  void save(const std::string& text);
  bool adoptsOtherText(const std::string& text);
  DockWidget::Kind kindWith(const std::string& text) const;
  const NoteSettings& settings() const;

  NoteModel model_;
};

} // namespace tavrin

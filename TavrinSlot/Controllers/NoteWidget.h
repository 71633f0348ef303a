#pragma once

#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/Note/NoteModel.h"

namespace tavrin {

class NoteWidgetController final : public KindController<NoteSettings> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override;
  void panelDidClose() override { model_->flush(); }

private:
  /// Writes the text into the widget, unless another text was written there meanwhile: then the
  /// model gets that one.
  void saveText(const std::string& text);
  bool adoptsOtherText(const std::string& text);

  std::optional<NoteModel> model_;
  TokenPtr drawing_;
};

} // namespace tavrin

#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinSlot/HeldStore.h"
#include "TavrinStorage/EmojiStore.h"
#include "TavrinWidgetsUI/Emoji/EmojiModel.h"

namespace tavrin {

class EmojiWidgetController final : public BasicWidgetController {
public:
  EmojiWidgetController(const SlotContext& context, const DockWidget& widget);

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void panelWillOpen() override;
  void panelDidClose() override;

private:
  /// Somebody used an emoji, here or elsewhere.
  void recentsChanged();
  /// Puts it on the pasteboard in the chosen tone; the panel's work is done.
  void copy(const Emoji& emoji);
  void save(EmojiSkinTone tone);
  void clear();
  EmojiSettings settings() const;
  std::vector<Emoji> recents() const;

  HeldStore<EmojiStore> store_;
  mutable EmojiModel model_;
  TokenPtr changed_;
  std::function<void(const Emoji&)> copy_;
};

} // namespace tavrin

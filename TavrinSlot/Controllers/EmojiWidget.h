#pragma once

#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinSlot/Base/HeldStore.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinStorage/EmojiStore.h"
#include "TavrinWidgetsUI/Emoji/EmojiModel.h"

namespace tavrin {

class EmojiWidgetController final : public KindController<EmojiSettings> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void panelWillOpen() override;
  void panelDidClose() override;

private:
  /// Somebody used an emoji, here or elsewhere.
  void recentsChanged();
  /// Puts it on the pasteboard in the chosen tone; the panel's work is done.
  void copy(const Emoji& emoji);
  void choose(EmojiSkinTone tone);
  void clear();
  /// As far as it can be read, and within its bounds.
  EmojiHistory history() const;

  std::optional<HeldStore<EmojiStore>> store_;
  std::optional<EmojiModel> model_;
  TokenPtr changed_;
  std::function<void(const Emoji&)> copy_ = [this](const Emoji& emoji) { copy(emoji); };
};

} // namespace tavrin

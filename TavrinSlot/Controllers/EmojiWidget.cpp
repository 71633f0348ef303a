#include "TavrinSlot/Controllers/EmojiWidget.h"

#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinCore/Text/SystemLocale.h"
#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinStorage/StoragePath.h"
#include "TavrinWidgetsUI/Emoji/EmojiPanelView.h"
#include "TavrinWidgetsUI/Emoji/EmojiViews.h"

namespace tavrin {
namespace {

EmojiSources sources(const FileManager& files) {
  return {files.unicodeFolder(), systemLocaleID("LC_MESSAGES")};
}

} // namespace

void EmojiWidgetController::start() {
  // Before the file is read, here and in other kinds: what is written after that is told.
  changed_ = platform().notifications().observe(EmojiStore::changedNotification,
                                                [this](const auto&) { recentsChanged(); });
  store_.emplace(platform(), [this] {
    return StoragePath(platform().fileManager(), platform().mainBundle()).emojiFileURL();
  });
  model_.emplace(platform().runLoop(), sources(platform().fileManager()));
  model_->onChange = [this] { refreshPanel(); };
}

void EmojiWidgetController::stop() {
  changed_.reset();
  model_.reset();
  store_.reset();
}

void EmojiWidgetController::recentsChanged() {
  store_->reload();
  refresh();
}

void EmojiWidgetController::copy(const Emoji& emoji) {
  platform().pasteboard().writeText(emoji.inTone(settings().skinTone));
  store_->change([&](EmojiStore& store) { store.add(emoji, settings().recentsLimit); });
  refresh();
  context().panel.closeIfShown();
}

void EmojiWidgetController::clear() {
  store_->change([](EmojiStore& store) { store.clear(); });
  refresh();
}

void EmojiWidgetController::choose(EmojiSkinTone tone) {
  auto changed = settings();
  changed.skinTone = tone;
  save(changed);
}

EmojiHistory EmojiWidgetController::history() const {
  const EmojiStore* store = store_->get();
  EmojiHistory history = store != nullptr ? store->history() : EmojiHistory{};
  history.repair();
  return history;
}

void EmojiWidgetController::panelWillOpen() {
  model_->load();
}

void EmojiWidgetController::panelDidClose() {
  model_->release();
}

QColor EmojiWidgetController::tint() const {
  return emojiTint;
}

AnyView EmojiWidgetController::tileView(const TileSize& size) {
  const EmojiSkinTone tone = settings().skinTone;
  return size.isWide() ? emojiWideTile(history().recents, tone, model_->glyphs(), size, copy_)
                       : emojiTileIcon(history().recents, tone, model_->glyphs(), size);
}

PanelView* EmojiWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new EmojiPanelView(appearance, *model_,
                            {.name = [this] { return widget().name; },
                             .recents = [this] { return history().recents; },
                             .uses = [this] { return history().uses; },
                             .settings = [this] { return settings(); },
                             .trouble = [this] { return store_->trouble(); },
                             .copy = copy_,
                             .setTone = [this](EmojiSkinTone tone) { choose(tone); },
                             .clear = [this] { clear(); },
                             .edit = context().onEdit});
}

} // namespace tavrin

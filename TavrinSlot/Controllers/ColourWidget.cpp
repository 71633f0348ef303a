#include "TavrinSlot/Controllers/ColourWidget.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Kinds/Colour/ColourPickerSettings.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinStorage/StoragePath.h"
#include "TavrinWidgetsUI/Colour/ColourPanelView.h"
#include "TavrinWidgetsUI/Colour/ColourViews.h"

namespace tavrin {
namespace {

constexpr const char* pickShortcut = "pick-colour";

} // namespace

void ColourWidgetController::start() {
  changed_ = platform().notifications().observe(ColourStore::changedNotification,
                                                [this](const auto&) { historyChanged(); });
  store_.emplace(platform(), [this] {
    return StoragePath(platform().fileManager(), platform().mainBundle()).coloursFileURL();
  });
  bindShortcut();
}

void ColourWidgetController::stop() {
  changed_.reset();
  picking_.reset();
  if (hotkey_) {
    auto& shortcuts = platform().globalShortcuts();
    shortcuts.onRefused = nullptr;
    shortcuts.bind({}, nullptr);
  }
  hotkey_.reset();
  shortcutTrouble_.clear();
  store_.reset();
}

void ColourWidgetController::bindShortcut() {
  const auto wanted = settings().hotkey;
  if (wanted == hotkey_)
    return;
  hotkey_ = wanted;
  shortcutTrouble_.clear();
  auto& shortcuts = platform().globalShortcuts();
  std::vector<GlobalShortcuts::Shortcut> all;
  shortcuts.onRefused = nullptr;
  if (wanted) {
    all.push_back({pickShortcut, translated("Pick a colour"), *wanted});
    shortcuts.onRefused = [this](const auto& refusal) {
      shortcutRefused(refusal.reason);
      refresh();
    };
  }
  for (const auto& refusal : shortcuts.bind(all, [this](const auto&) { pick(); }))
    shortcutRefused(refusal.reason);
}

void ColourWidgetController::shortcutRefused(const std::string& reason) {
  shortcutTrouble_ = failure("register the shortcut", reason);
  Log(platform().log(), "slot").error(shortcutTrouble_);
}

void ColourWidgetController::historyChanged() {
  store_->reload();
  refresh();
}

void ColourWidgetController::pick() {
  store_->setTrouble({});
  context().panel.closeIfShown();
  picking_ = platform().colourSampler().pick([this](const ColourSample& sample) {
    const auto ended = std::move(picking_);
    picked(sample);
  });
}

void ColourWidgetController::picked(const ColourSample& sample) {
  if (sample.outcome == ColourSample::Outcome::unavailable) {
    store_->setTrouble(translated(
        "Failed to pick a colour because this desktop does not show the screen to programs"));
    refresh();
    return;
  }
  if (sample.outcome != ColourSample::Outcome::picked)
    return;
  const PickedColour colour{UUID::random(),           sample.red, sample.green, sample.blue,
                            platform().clock().now(), false};
  if (settings().copiesOnPick)
    copy(colour, settings().format);
  change([&](ColourStore& store) { store.add(colour, settings().historyLimit); });
}

void ColourWidgetController::copy(const PickedColour& colour, ColourFormat format) {
  platform().pasteboard().writeText(colour.text(format));
}

void ColourWidgetController::copyNewest() {
  if (!history().colours.empty())
    copy(history().colours.front(), settings().format);
}

template <class Change> void ColourWidgetController::change(const Change& change) {
  store_->change(change);
  refresh();
}

void ColourWidgetController::choose(ColourFormat format) {
  auto changed = settings();
  changed.format = format;
  save(changed);
}

const ColourHistory& ColourWidgetController::history() const {
  static const ColourHistory none;
  return store_->get() != nullptr ? store_->get()->history() : none;
}

QColor ColourWidgetController::tint() const {
  return colourPickerTint;
}

AnyView ColourWidgetController::tileView(const TileSize& size) {
  return size.isWide() ? colourWideTile(history(), settings(), size, pick_, copyNewest_)
                       : colourTileIcon(history(), settings(), size);
}

PanelView* ColourWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new ColourPanelView(
      appearance,
      {.name = [this] { return widget().name; },
       .history = [this]() -> const ColourHistory& { return history(); },
       .settings = [this] { return settings(); },
       .trouble =
           [this] { return store_->trouble().empty() ? shortcutTrouble_ : store_->trouble(); },
       .pick = pick_,
       .copy = [this](const auto& colour, ColourFormat format) { copy(colour, format); },
       .togglePin =
           [this](const UUID& id) {
             change([&](ColourStore& store) { store.togglePin(id, settings().historyLimit); });
           },
       .remove = [this](const UUID& id) { change([&](ColourStore& store) { store.remove(id); }); },
       .clearUnpinned = [this] { change([](ColourStore& store) { store.clearUnpinned(); }); },
       .setFormat = [this](ColourFormat format) { choose(format); },
       .edit = context().onEdit});
}

} // namespace tavrin

#include "TavrinSlot/Controllers/NoteWidget.h"

#include "TavrinPlatform/Platform.h"
#include "TavrinWidgetsUI/Note/NotePanelView.h"
#include "TavrinWidgetsUI/Note/NoteViews.h"

namespace tavrin {

NoteWidgetController::NoteWidgetController(const SlotContext& context, const DockWidget& widget)
    : BasicWidgetController(context, widget),
      model_(platform().clock(), platform().runLoop(), settings()) {
  model_.onSave = [this](const std::string& text) { save(text); };
  model_.onChange = [this] { refresh(); };
  renderTile();
}

NoteWidgetController::~NoteWidgetController() {
  // The panel is gone already: nothing may be drawn.
  model_.onChange = nullptr;
  model_.onSave = [this](const std::string& text) {
    if (adoptsOtherText(text))
      return;
    saveQuietly(kindWith(text));
    model_.settingsChanged({text, settings().colorHex});
  };
  model_.flush();
  model_.flush(); // both texts, where another one was found
}

const NoteSettings& NoteWidgetController::settings() const {
  static const NoteSettings none;
  const auto* note = widget().kind.get<NoteSettings>();
  return note != nullptr ? *note : none;
}

DockWidget::Kind NoteWidgetController::kindWith(const std::string& text) const {
  NoteSettings note = settings();
  note.text = text;
  return note;
}

void NoteWidgetController::save(const std::string& text) {
  if (adoptsOtherText(text))
    refresh();
  else
    BasicWidgetController::save(kindWith(text));
}

bool NoteWidgetController::adoptsOtherText(const std::string& text) {
  const auto stored = storedWidget();
  const auto* note = stored ? stored->kind.get<NoteSettings>() : nullptr;
  if (note == nullptr || note->text == model_.savedText() || note->text == text)
    return false;
  model_.settingsChanged(*note);
  return true;
}

void NoteWidgetController::widgetChanged() {
  model_.settingsChanged(settings());
}

AnyView NoteWidgetController::tileView(const TileSize& size) const {
  return size.isWide() ? noteWideTile(model_.note(), size) : noteTileIcon(model_.note(), size);
}

PanelView* NoteWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new NotePanelView(
      appearance, model_, [this] { return widget().name; }, context().onEdit);
}

QColor NoteWidgetController::tint() const {
  return notePaper(settings().colorHex);
}

} // namespace tavrin

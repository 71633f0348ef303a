#include "TavrinSlot/Controllers/NoteWidget.h"

#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinWidgetsUI/Note/NotePanelView.h"
#include "TavrinWidgetsUI/Note/NoteViews.h"

namespace tavrin {

void NoteWidgetController::start() {
  model_.emplace(platform().clock(), platform().runLoop(), settings());
  model_->onSave = [this](const std::string& text) { saveText(text); };
  // Letters that came while the process had to wait are drawn once.
  model_->onChange = [this] {
    if (!drawing_)
      drawing_ = platform().runLoop().after(0, [this] {
        drawing_.reset();
        refresh();
      });
  };
}

void NoteWidgetController::stop() {
  model_->flush();
  model_->flush(); // both texts, where another one was found
  drawing_.reset();
  model_.reset();
}

void NoteWidgetController::saveText(const std::string& text) {
  if (adoptsOtherText(text))
    refresh();
  else
    save({text, settings().colorHex});
}

bool NoteWidgetController::adoptsOtherText(const std::string& text) {
  const auto stored = storedWidget();
  const auto* note = stored ? stored->kind.get<NoteSettings>() : nullptr;
  if (note == nullptr || note->text == model_->savedText() || note->text == text)
    return false;
  model_->settingsChanged(*note);
  return true;
}

void NoteWidgetController::widgetChanged() {
  model_->settingsChanged(settings());
}

AnyView NoteWidgetController::tileView(const TileSize& size) {
  return size.isWide() ? noteWideTile(model_->note(), size) : noteTileIcon(model_->note(), size);
}

PanelView* NoteWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new NotePanelView(
      appearance, *model_, [this] { return widget().name; }, context().onEdit);
}

QColor NoteWidgetController::tint() const {
  return notePaper(settings().colorHex);
}

} // namespace tavrin

#include "TavrinWidgetsUI/Note/NoteModel.h"

#include <algorithm>

namespace tavrin {

NoteModel::NoteModel(Clock& clock, RunLoop& runLoop, NoteSettings settings)
    : clock_(clock), runLoop_(runLoop), saved_(std::move(settings)), text_(saved_.text) {}

void NoteModel::edit(const std::string& text) {
  if (text == text_)
    return;
  text_ = text;
  saveSoon();
  if (onChange)
    onChange();
}

void NoteModel::saveSoon() {
  if (!isUnsaved() && !other_) {
    timer_.reset();
    unsavedSince_.reset();
    return;
  }
  const Date now = clock_.now();
  if (!unsavedSince_)
    unsavedSince_ = now;
  if (other_) // the user is being asked
    return;
  const double waited = std::max(0.0, now.since(*unsavedSince_));
  timer_ = runLoop_.after(std::clamp(longestWait - waited, 0.0, rest), [this] { save(); });
}

void NoteModel::save() {
  timer_.reset();
  unsavedSince_.reset();
  if (!isUnsaved())
    return;
  if (onSave)
    onSave(std::string(text_));
}

void NoteModel::settingsChanged(const NoteSettings& settings) {
  const bool wasUnsaved = isUnsaved();
  const bool isOther = settings.text != saved_.text;
  saved_ = settings;
  if (settings.text == text_) {
    other_.reset();
    timer_.reset();
    unsavedSince_.reset();
  } else if (isOther && (wasUnsaved || other_)) {
    other_ = settings.text;
    timer_.reset();
  } else if (isOther) {
    text_ = settings.text;
  }
}

void NoteModel::keepMine() {
  resolve(text_);
}

void NoteModel::takeOther() {
  if (other_)
    resolve(std::string(*other_));
}

void NoteModel::keepBoth() {
  if (other_)
    resolve(text_.empty() ? *other_ : other_->empty() ? text_ : text_ + "\n\n" + *other_);
}

void NoteModel::resolve(const std::string& text) {
  other_.reset();
  text_ = text;
  save();
  if (onChange)
    onChange();
}

void NoteModel::flush() {
  if (other_)
    keepBoth();
  else
    save();
}

} // namespace tavrin

#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include <functional>

namespace tavrin {

class NoteModel;
class PanelText;
class PanelTextEdit;

/// The paper to write on. When the note was changed elsewhere while something was being typed, a
/// question above the footer asks which text is to stay.
class NotePanelView final : public PanelView {
public:
  /// `name` is the widget's name, asked at each refresh.
  NotePanelView(const PanelAppearance& appearance, NoteModel& model,
                std::function<std::string()> name, std::function<void()> onEdit);
  void refresh() override;

private:
  QWidget* makeQuestion();

  NoteModel& model_;
  std::function<std::string()> name_;
  PanelTextEdit* paper_;
  PanelText* other_ = nullptr;
  QWidget* question_;
};

} // namespace tavrin

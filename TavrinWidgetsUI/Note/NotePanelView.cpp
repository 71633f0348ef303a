#include "TavrinWidgetsUI/Note/NotePanelView.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/Note/NoteModel.h"
#include "TavrinWidgetsUI/Note/NoteViews.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tavrin {
namespace {

constexpr int paperLines = 11;

} // namespace

NotePanelView::NotePanelView(const PanelAppearance& appearance, NoteModel& model,
                             std::function<std::string()> name, std::function<void()> onEdit)
    : PanelView(appearance, Width::lists), model_(model), name_(std::move(name)),
      paper_(new PanelTextEdit(worded("Note"), worded(emptyNoteText))), question_(makeQuestion()) {
  paper_->setLines(paperLines);
  paper_->onChange = [this](const QString& text) { model_.edit(text.toStdString()); };
  add(paper_);
  add(question_);
  setEditButton(worded("Edit Note…"), std::move(onEdit));
  refresh();
}

QWidget* NotePanelView::makeQuestion() {
  auto* box = new QWidget;
  auto* column = new QVBoxLayout(box);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(
      new PanelText(worded("This note was changed elsewhere while you were writing.")));
  other_ = new PanelText({}, PanelTextStyle::secondary);
  other_->setSingleLine(true);
  column->addWidget(other_);
  auto* row = new QHBoxLayout;
  const auto answer = [&](const QString& title, std::function<void()> choose) {
    row->addWidget(new PanelButton(PanelButton::Kind::quiet, title, std::move(choose)));
  };
  answer(worded("Keep Mine"), [this] { model_.keepMine(); });
  answer(worded("Take Other"), [this] { model_.takeOther(); });
  answer(worded("Keep Both"), [this] { model_.keepBoth(); });
  column->addLayout(row);
  return box;
}

void NotePanelView::refresh() {
  const auto note = model_.note();
  setTitle(QString::fromStdString(name_()));
  paper_->setPaper(notePaper(note.colorHex));
  paper_->setText(QString::fromStdString(note.text));
  question_->setVisible(model_.otherText().has_value());
  if (const auto& other = model_.otherText())
    other_->setWords(other->empty() ? worded("The other text is empty.")
                                    : QString::fromStdString(*other).simplified());
}

} // namespace tavrin

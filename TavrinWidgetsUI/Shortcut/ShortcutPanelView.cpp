#include "TavrinWidgetsUI/Shortcut/ShortcutPanelView.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/Shortcut/ShortcutViews.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <QSignalBlocker>

namespace tavrin {
namespace {

using Outcome = ShortcutResult::State;

constexpr int outputLines = 9;

} // namespace

ShortcutPanelView::ShortcutPanelView(const PanelAppearance& appearance, ShortcutRunner& runner,
                                     Requests requests)
    : PanelView(appearance, Width::lists), runner_(runner),
      empty_(new PanelEmptyState("bolt.fill", worded("Nothing to run yet"))),
      action_(new PanelText({}, PanelTextStyle::heading)),
      subject_(new PanelText({}, PanelTextStyle::caption)),
      run_(new PanelButton(PanelButton::Kind::prominent, worded("Run"))),
      result_(new PanelText({}, PanelTextStyle::secondary)),
      trouble_(new PanelText({}, PanelTextStyle::trouble)),
      output_(new PanelTextEdit(worded("Output"), worded("The command has written nothing"))) {
  empty_->setHint(worded("Give it a command, or an application's action."));
  empty_->setStep(worded("Edit Shortcut…"), requests.edit);
  add(empty_);
  action_->setSingleLine(true);
  subject_->setSingleLine(true);
  add(action_);
  add(subject_);
  run_->setAction([this] { runner_.isRunning() ? runner_.stop() : runner_.run(); });
  add(run_);
  add(result_);
  add(trouble_);
  output_->setReadOnly(true);
  output_->setLines(outputLines);
  output_->setLineWrapMode(QPlainTextEdit::WidgetWidth);
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setPixelSize(11);
  output_->setFont(font);
  add(output_);
  setEditButton(worded("Edit Shortcut…"), requests.edit);
  copy_ =
      new PanelButton(PanelButton::Kind::faint, worded("Copy Output"),
                      [this, copy = std::move(requests.copy)] { copy(runner_.output().text()); });
  addFooterButton(copy_);
  refresh();
}

void ShortcutPanelView::showOutput() {
  const auto text = QString::fromStdString(runner_.output().text());
  if (output_->toPlainText() == text)
    return;
  auto* bar = output_->verticalScrollBar();
  const bool isAtEnd = bar->value() >= bar->maximum();
  const int place = bar->value();
  const QSignalBlocker blocker(output_);
  output_->setPlainText(text);
  // What the user has scrolled to stays; who looks at the end sees the new end.
  bar->setValue(isAtEnd ? bar->maximum() : place);
}

void ShortcutPanelView::refresh() {
  const auto settings = runner_.settings();
  const auto& result = runner_.result();
  const bool hasAction = runner_.hasAction();
  const bool isRunning = runner_.isRunning();
  setTitle(QString::fromStdString(runner_.widget().name));
  const bool isTrouble = result.state == Outcome::failed || result.state == Outcome::timedOut;
  setState(isRunning                       ? worded("Running")
           : result.state == Outcome::none ? QString()
           : isTrouble                     ? worded("Failed")
           : result.state == Outcome::done ? worded("Done")
                                           : worded("Stopped"),
           isTrouble   ? PanelView::State::trouble
           : isRunning ? PanelView::State::active
                       : PanelView::State::plain);
  empty_->setVisible(!hasAction);
  for (QWidget* each : {static_cast<QWidget*>(action_), static_cast<QWidget*>(subject_),
                        static_cast<QWidget*>(run_)})
    each->setVisible(hasAction || isRunning);
  action_->setWords(runner_.title());
  subject_->setWords(QString::fromStdString(runner_.subject()).simplified());
  run_->setTitle(isRunning                       ? worded("Stop")
                 : result.state == Outcome::none ? worded("Run")
                                                 : worded("Run Again"));
  run_->setSymbol(isRunning ? "stop.fill" : "play.fill");
  ShortcutResult shown = result;
  shown.duration = runner_.elapsed();
  result_->setWords(isRunning
                        ? worded("Running for {seconds} s", {{"seconds", qRound(shown.duration)}})
                        : shortcutResultText(shown));
  result_->setVisible(result.state != Outcome::none && result.trouble.empty());
  trouble_->setWords(QString::fromStdString(result.trouble));
  trouble_->setVisible(!result.trouble.empty());
  const bool hasOutput = settings.showsOutput && !runner_.output().isEmpty();
  output_->setVisible(hasOutput);
  copy_->setVisible(hasOutput);
  if (hasOutput)
    showOutput();
}

} // namespace tavrin

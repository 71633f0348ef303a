#include "TavrinSettings/Base/FootLine.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <algorithm>
#include <utility>

namespace tavrin {
namespace {

/// Milliseconds: what it takes to see that something is there, and to read a letter of it slowly.
constexpr int toBeSeen = 4000;
constexpr int aLetter = 60;
constexpr int shortestTrouble = 15'000;
/// A trouble is not talked over for so long.
constexpr int undisturbed = 5000;
constexpr int lookAgain = 1000;

int readingTime(const QString& sentence) {
  return toBeSeen + aLetter * static_cast<int>(sentence.size());
}

} // namespace

FootLine::FootLine(std::function<void()> undo, QWidget* parent)
    : QWidget(parent), words_(new PanelText({}, PanelTextStyle::caption, this)),
      undo_(new PanelButton(PanelButton::Kind::plain, worded("Undo"), std::move(undo), this)),
      ends_(new QTimer(this)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(panel::grid);
  row->addWidget(words_, 1);
  row->addWidget(undo_);
  words_->setSingleLine(true);
  // The line keeps its height, with and without the button.
  setFixedHeight(undo_->sizeHint().height());
  undo_->hide();
  ends_->setSingleShot(true);
  connect(ends_, &QTimer::timeout, this, [this] { goOn(); });
}

void FootLine::put(const QString& sentence, bool isTrouble, bool isOffer, int milliseconds) {
  next_.clear();
  isTrouble_ = isTrouble;
  isProgress_ = milliseconds == 0 && !isOffer && !sentence.isEmpty();
  words_->setStyle(isTrouble ? PanelTextStyle::trouble : PanelTextStyle::caption);
  words_->setWords(sentence);
  undo_->setVisible(isOffer);
  if (milliseconds > 0)
    ends_->start(milliseconds);
  else
    ends_->stop();
  if (sentence.isEmpty())
    return;
  QAccessibleEvent said(words_, QAccessible::Alert);
  QAccessible::updateAccessibility(&said);
}

void FootLine::say(const QString& sentence, bool isTrouble) {
  const int shown = ends_->interval() - ends_->remainingTime();
  if (!isTrouble && isTrouble_ && ends_->isActive() && shown < undisturbed) {
    next_ = sentence;
    ends_->start(undisturbed - shown);
    return;
  }
  const int time = readingTime(sentence);
  put(sentence, isTrouble, false, isTrouble ? std::max(time, shortestTrouble) : time);
}

void FootLine::offerUndo(const QString& sentence) {
  put(sentence, false, true, 0);
}

void FootLine::sayProgress(const QString& sentence) {
  put(sentence, false, false, 0);
}

void FootLine::withdraw() {
  if (!isProgress_)
    put({}, false, false, 0);
}

void FootLine::goOn() {
  if (underMouse() || undo_->hasFocus()) {
    ends_->start(lookAgain);
    return;
  }
  const QString next = std::exchange(next_, {});
  put(next, false, false, next.isEmpty() ? 0 : readingTime(next));
}

} // namespace tavrin

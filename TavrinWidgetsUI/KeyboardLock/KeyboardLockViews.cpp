#include "TavrinWidgetsUI/KeyboardLock/KeyboardLockViews.h"

#include "TavrinCore/Kinds/Runs/TimerRun.h"
#include "TavrinCore/Text/ComputerWords.h"
#include "TavrinWidgetsUI/KeyboardLock/KeyboardLock.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr QColor lockedGround{0x0B, 0x2C, 0x55};
constexpr QColor screenGround{0x0C, 0x0D, 0x11};
constexpr double pictureHeight = 72;

QString timeText(int seconds) {
  return QString::fromStdString(TimerRun::format(seconds));
}

QString countdown(const KeyboardLockStatus& status) {
  return status.secondsLeft
             ? worded("Unlocks by itself in {time}", {{"time", timeText(*status.secondsLeft)}})
             : QString();
}

QString lockedText() {
  return utf8(
      localSentence(translated("Nothing you press reaches the {Mac}. Clean at your own pace.")));
}

QString stateText(const KeyboardLockStatus& status) {
  return status.isLocked ? worded("Locked") : worded("Unlocked");
}

/// A keyboard with a lock at its corner, on a ground that shows between the two.
AnyView lockMark(bool isLocked, const QColor& ink, const QColor& ground, double side) {
  const double badge = side * 0.5;
  const AnyView keyboard = symbol("keyboard").colour(ink).size(side);
  if (!isLocked)
    return keyboard;
  const AnyView lock =
      zstack({circle().fill(ground).frame(badge * 1.32, badge * 1.32),
              symbol("lock.fill").colour(withContrast(keyboardLockTint, ground)).size(badge)});
  return keyboard.overlay(lock.offset(badge * 0.3, badge * 0.34), Alignment::bottomTrailing);
}

Text line(const QString& string, double points, const QColor& colour) {
  return text(string).size(points).colour(colour).align(TextAlignment::centre);
}

} // namespace

KeyboardLockStatus KeyboardLockStatus::of(const KeyboardLock& lock) {
  KeyboardLockStatus status;
  const Date now = lock.now();
  status.isLocked = lock.isLocked();
  status.locksPointer = lock.settings().locksPointer;
  status.holdSeconds = lock.holdSeconds();
  status.holdProgress = lock.hold().progress(now);
  if (const auto end = lock.unlocksAt())
    status.secondsLeft = static_cast<int>(std::ceil(std::max(end->since(now), 0.0)));
  return status;
}

QString keyboardLockDescription(bool locksPointer) {
  return locksPointer ? worded("Holds the keyboard and the trackpad while you clean them.")
                      : worded("Holds the keyboard while you clean it.");
}

QString holdHint(int holdSeconds) {
  return wordedPlural("Hold a click for {count} second to unlock.",
                      "Hold a click for {count} seconds to unlock.", holdSeconds);
}

AnyView keyboardLockTileIcon(const KeyboardLockStatus& status, const TileSize& size) {
  const QColor ground = status.isLocked ? lockedGround : palette::ground;
  return tile(ground,
              lockMark(status.isLocked, palette::figure(ground), ground, size.body() * 0.56), size)
      .accessibility(worded("Keyboard Lock"), stateText(status));
}

AnyView keyboardLockWideTile(const QString& name, const KeyboardLockStatus& status,
                             const TileSize& size, const std::function<void()>& toggle) {
  WideTileContent content;
  content.ground = status.isLocked ? lockedGround : palette::ground;
  content.tint = keyboardLockTint;
  content.mark =
      lockMark(status.isLocked, palette::figure(content.ground), content.ground, size.body() * 0.5);
  content.caption = name;
  content.middle =
      vstack({text(name)
                  .size(size.words(0.17))
                  .weight(FontWeight::medium)
                  .colour(palette::caption(content.ground)),
              text(status.isLocked && status.secondsLeft ? timeText(*status.secondsLeft)
                                                         : stateText(status))
                  .size(size.words(0.25))
                  .weight(FontWeight::semibold)
                  .colour(palette::figure(content.ground))})
          .align(Alignment::leading)
          .spacing(size.body() * 0.05);
  content.actions = {{{status.isLocked ? "unlock" : "lock", toggle},
                      status.isLocked ? "lock.open.fill" : "lock.fill",
                      status.isLocked ? worded("Unlock") : worded("Lock"),
                      true}};
  content.label = name;
  content.value = stateText(status);
  return wideTile(content, size);
}

AnyView keyboardLockScreen(const KeyboardLockStatus& status, const QSizeF& size,
                           const std::function<void()>& unlock) {
  const double unit = std::clamp(std::min(size.width(), size.height()) / 40, 10.0, 22.0);
  const QColor ink = palette::figure(screenGround);
  const QColor quiet = palette::caption(screenGround);
  const double side = unit * 9;
  const AnyView gauge =
      ring(status.holdProgress)
          .tint(withContrast(keyboardLockTint, screenGround, 3))
          .track(status.locksPointer ? palette::track : QColor(0, 0, 0, 0))
          .thickness(unit * 0.5)
          .overlay(
              symbol(status.locksPointer ? "lock.fill" : "keyboard").colour(ink).size(side * 0.4))
          .frame(side, side);
  std::vector<AnyView> lines{
      gauge,
      line(status.locksPointer ? worded("Keyboard and trackpad locked") : worded("Keyboard locked"),
           unit * 1.7, ink)
          .weight(FontWeight::semibold)
          .padding({0, unit, 0, 0}),
      line(lockedText(), unit, quiet)};
  if (status.secondsLeft)
    lines.push_back(line(countdown(status), unit, ink).widest(widestDigits(countdown(status))));
  if (status.locksPointer)
    lines.push_back(line(holdHint(status.holdSeconds), unit, quiet));
  else
    lines.push_back(line(worded("Unlock"), unit, palette::white)
                        .weight(FontWeight::semibold)
                        .padding(unit * 1.6, unit * 0.6)
                        .background(capsule().fill(QColor(0x0A, 0x6B, 0xD6)))
                        .button({"unlock", unlock}, worded("Unlock")));
  return vstack(std::move(lines))
      .spacing(unit * 0.7)
      .frame(size.width(), size.height())
      .background(rectangle().fill(screenGround));
}

KeyboardLockPanelView::KeyboardLockPanelView(const PanelAppearance& appearance,
                                             const KeyboardLock& lock, Actions actions)
    : PanelView(appearance), lock_(lock), actions_(std::move(actions)),
      picture_(new ViewWidget(QSizeF(pictureHeight, pictureHeight))), description_(new PanelText),
      hint_(new PanelText({}, PanelTextStyle::secondary)),
      trouble_(new PanelText({}, PanelTextStyle::trouble)),
      button_(new PanelButton(PanelButton::Kind::prominent, worded("Lock"))) {
  for (PanelText* words : {description_, hint_, trouble_})
    words->setAlignment(Qt::AlignHCenter);
  button_->setAction([this] { (lock_.isLocked() ? actions_.unlock : actions_.lock)(); });
  add(picture_, Qt::AlignHCenter);
  add(description_);
  add(hint_);
  add(trouble_);
  addSpace(4);
  add(button_);
  setEditButton(worded("Edit Keyboard Lock…"), actions_.edit);
  refresh();
}

void KeyboardLockPanelView::refresh() {
  const auto status = KeyboardLockStatus::of(lock_);
  setTitle(actions_.name());
  setState(status.isLocked ? worded("Locked") : QString(),
           status.isLocked ? State::active : State::plain);
  // The lock hangs over the keyboard's lower edge.
  picture_->setView(
      lockMark(status.isLocked, colours().text, colours().ground, pictureHeight * 0.82)
          .frame(pictureHeight, pictureHeight));
  picture_->setName(stateText(status));
  description_->setWords(status.isLocked ? lockedText()
                                         : keyboardLockDescription(status.locksPointer));
  hint_->setWords(status.isLocked && status.secondsLeft ? countdown(status)
                  : !actions_.lock      ? worded("The keyboard is locked from Tavrin's own Dock.")
                  : status.locksPointer ? holdHint(status.holdSeconds)
                                        : QString());
  hint_->setVisible(!hint_->text().isEmpty());
  trouble_->setWords(QString::fromStdString(lock_.trouble()));
  trouble_->setVisible(!lock_.trouble().empty());
  button_->setVisible(actions_.lock || status.isLocked);
  button_->setTitle(status.isLocked ? worded("Unlock") : worded("Lock"));
  button_->setEnabled(!lock_.isLocking());
}

} // namespace tavrin

#include "TavrinSettings/Form/ShortcutRecorder.h"

#include "TavrinCore/Settings/HotkeyText.h"
#include "TavrinCore/Settings/SettingError.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <fmt/format.h>

namespace tavrin {
namespace {

/// With Shift, or on some keyboards without it, a digit's key says another sign. X11 and Wayland
/// number the keys from 1 to 0 from 10 on.
std::string digitName(const QKeyEvent& event) {
  constexpr quint32 keyOfOne = 10;
  const quint32 index = event.nativeScanCode() - keyOfOne;
  return index < 10 ? std::string(1, "1234567890"[index]) : std::string();
}

/// How the house names the key, as `hotkeyFromText` reads it.
std::string keyName(const QKeyEvent& event) {
  switch (event.key()) {
  case Qt::Key_Space:
    return "space";
  case Qt::Key_Return:
  case Qt::Key_Enter:
    return "return";
  case Qt::Key_Tab:
  case Qt::Key_Backtab:
    return "tab";
  case Qt::Key_Left:
    return "left";
  case Qt::Key_Right:
    return "right";
  case Qt::Key_Minus:
    return "minus";
  case Qt::Key_Equal:
    return "equal";
  case Qt::Key_Comma:
    return "comma";
  case Qt::Key_Period:
    return "period";
  case Qt::Key_Slash:
    return "slash";
  case Qt::Key_QuoteLeft:
    return "grave";
  default:
    break;
  }
  if (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F12)
    return fmt::format("f{}", event.key() - Qt::Key_F1 + 1);
  if ((event.key() >= Qt::Key_A && event.key() <= Qt::Key_Z) ||
      (event.key() >= Qt::Key_0 && event.key() <= Qt::Key_9))
    return {static_cast<char>(event.key())};
  return digitName(event);
}

bool isModifier(int key) {
  return key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Shift ||
         key == Qt::Key_Meta || key == Qt::Key_AltGr || key == Qt::Key_Super_L ||
         key == Qt::Key_Super_R;
}

} // namespace

ShortcutRecorder::ShortcutRecorder(const QString& name, QString none, QWidget* parent)
    : QWidget(parent), none_(std::move(none)),
      button_(new PanelButton(PanelButton::Kind::quiet, {}, [this] { listen(!isListening_); })),
      clear_(PanelButton::icon(QStringLiteral("xmark"), worded("Take the shortcut away"), [this] {
        if (onChange)
          onChange({});
      })) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(button_);
  row->addWidget(clear_);
  button_->setAccessibleName(name);
  button_->installEventFilter(this);
  show();
}

void ShortcutRecorder::setHotkey(const std::optional<Hotkey>& hotkey) {
  hotkey_ = hotkey;
  show();
}

void ShortcutRecorder::setNone(const QString& none) {
  none_ = none;
  show();
}

void ShortcutRecorder::show() {
  const QString words = isListening_ ? worded("Press the keys…")
                        : hotkey_    ? QString::fromStdString(hotkeyText(*hotkey_))
                                     : none_;
  const QString name = button_->accessibleName();
  button_->setTitle(words);
  button_->setAccessibleName(name);
  button_->setAccessibleDescription(words);
  clear_->setVisible(hotkey_ && !isListening_);
}

void ShortcutRecorder::listen(bool on) {
  if (on == isListening_)
    return;
  isListening_ = on;
  // A shortcut that works everywhere is somebody else's grab, and would not come here.
  if (on)
    button_->grabKeyboard();
  else
    button_->releaseKeyboard();
  show();
  if (on)
    button_->setFocus(Qt::OtherFocusReason);
}

void ShortcutRecorder::take(const QKeyEvent& event) {
  std::string words;
  for (const auto& [modifier, name] :
       {std::pair{Qt::ControlModifier, "ctrl+"}, std::pair{Qt::AltModifier, "alt+"},
        std::pair{Qt::ShiftModifier, "shift+"}, std::pair{Qt::MetaModifier, "super+"}})
    if (event.modifiers().testFlag(modifier))
      words += name;
  const auto key = keyName(event);
  try {
    const auto hotkey = hotkeyFromText(words + key);
    listen(false);
    if (onChange)
      onChange(hotkey);
  } catch (const SettingError& error) {
    if (onTrouble)
      onTrouble(key.empty() ? worded("That key cannot be a shortcut")
                            : QString::fromUtf8(error.what()));
  }
}

bool ShortcutRecorder::eventFilter(QObject*, QEvent* event) {
  if (!isListening_)
    return false;
  if (event->type() == QEvent::FocusOut)
    listen(false);
  // Also what would otherwise be a shortcut of the window itself.
  if (event->type() == QEvent::ShortcutOverride) {
    event->accept();
    return true;
  }
  if (event->type() != QEvent::KeyPress)
    return false;
  const auto& key = static_cast<const QKeyEvent&>(*event);
  // Tab leads on from here as from everywhere.
  const bool isTab = key.key() == Qt::Key_Tab && key.modifiers() == Qt::NoModifier;
  if (isTab || (key.key() == Qt::Key_Backtab && key.modifiers() == Qt::ShiftModifier)) {
    listen(false);
    return false;
  }
  if (key.key() == Qt::Key_Escape && key.modifiers() == Qt::NoModifier)
    listen(false);
  else if (!isModifier(key.key()))
    take(key);
  return true;
}

} // namespace tavrin

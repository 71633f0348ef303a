#pragma once

#include "TavrinCore/Base/Hotkey.h"

#include <QWidget>
#include <functional>
#include <optional>

class QKeyEvent;

namespace tavrin {

class PanelButton;

/// A shortcut, set by pressing it: a button that shows it and, pressed, waits for the keys; and one
/// that takes it away. Escape, and leaving the button, also by Tab, end the waiting.
class ShortcutRecorder : public QWidget {
public:
  /// `none` is shown where there is no shortcut.
  ShortcutRecorder(const QString& name, QString none, QWidget* parent = nullptr);

  /// What is shown where there is no shortcut.
  void setNone(const QString& none);
  void setHotkey(const std::optional<Hotkey>& hotkey);
  PanelButton* button() { return button_; }

  /// What was pressed, or no value where it was taken away. Whoever takes it calls `setHotkey`.
  std::function<void(const std::optional<Hotkey>& hotkey)> onChange;
  /// Why what was pressed is no shortcut.
  std::function<void(const QString& sentence)> onTrouble;

  bool eventFilter(QObject* object, QEvent* event) override;

private:
  void listen(bool on);
  void show();
  void take(const QKeyEvent& event);

  QString none_;
  std::optional<Hotkey> hotkey_;
  bool isListening_ = false;
  PanelButton* button_;
  PanelButton* clear_;
};

} // namespace tavrin

#pragma once

#include "TavrinSettings/Dock/LayoutPane.h"

#include <QPointer>

namespace tavrin {

class DropButton;
class FormRow;
class PanelList;
class PanelSwitch;
class PickerPopup;

/// Whether shortcuts and Focus are followed, how, and what leads to which layout.
class FollowPane : public QWidget {
public:
  explicit FollowPane(DockServicesOfPage& services, QWidget* parent = nullptr);

  void refresh();

private:
  void chooseNumbered();

  DockServicesOfPage& services_;
  PanelSwitch* isOn_;
  PanelText* state_;
  PanelButton* session_;
  DropButton* numbered_;
  FormRow* interval_;
  PanelList* list_;
  PanelText* none_;
  QPointer<PickerPopup> picker_;
};

/// "Ctrl+Alt+1 to Ctrl+Alt+9"; "None" without modifiers.
QString numberedTitle(HotkeyModifiers modifiers);

/// Of a layout that a shortcut or a Focus leads to: whether anything follows them, and what can be
/// done about it.
struct FollowState {
  QString sentence;
  /// What the button is called; empty where there is nothing to do.
  QString remedy;
  std::function<void()> act;
};
FollowState followState(DockServicesOfPage& services);

} // namespace tavrin

#pragma once

#include "TavrinHost/Dock/DockItems.h"
#include "TavrinSettings/Form/FormPopup.h"

class QLineEdit;
class QVBoxLayout;

namespace tavrin {

class PanelButton;

/// What can be set of one item of a Dock layout, dropped down from its tile: its name, how a
/// folder is sorted, looks and opens, how wide a spacer is; and to move, replace and remove it.
class ItemEditor : public FormPopup {
public:
  ItemEditor(QWidget* tile, PlacedDockItem placed);

  /// The item as it is to be. False where it could not be; `field` names what is typed into, so
  /// that letters of one name are one step.
  std::function<bool(const DockItem& changed, const std::string& field)> onChange;
  /// One place towards the Dock's beginning, -1, or its end, 1.
  std::function<void(int towards)> onMove;
  std::function<void()> onReplace;
  std::function<void()> onRemove;

  void open();
  const PlacedDockItem& placed() const { return placed_; }
  /// What stands there by now; closes where that is another item.
  void follow(const DockItem& item);
  /// The keyboard to the button that moves it that way.
  void focusMove(int towards);

private:
  void makeHead(QVBoxLayout* column);
  void makeName(QVBoxLayout* column);
  void makeFolder(QVBoxLayout* column);
  void makeSpacer(QVBoxLayout* column);
  void makeActions(QVBoxLayout* column);
  void change(const DockItem& changed, const std::string& field = {});

  PlacedDockItem placed_;
  QLineEdit* name_ = nullptr;
  PanelButton* back_ = nullptr;
  PanelButton* on_ = nullptr;
  /// The look is shown, not set.
  bool isShowing_ = false;
  std::function<void()> showLook_;
};

} // namespace tavrin

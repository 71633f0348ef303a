#pragma once

#include "TavrinPlatform/Linux/Base/Bus.h"

class QAccessibleInterface;

namespace tavrin {

class StripWindow;

/// The tile as assistive technology sees it: a button with the widget's name and its value.
QAccessibleInterface* accessibleTile(StripWindow* window);
void announceTileChange(StripWindow& window, bool isNameChanged);

/// Starts the toolkit's accessibility when assistive technology runs, now or later: it brings a
/// bus connection and a thread along, which a tile nobody asks about can do without. (A panel
/// starts it in any case.)
class AccessibilitySwitch {
public:
  AccessibilitySwitch(Bus& bus, StripWindow& window);

private:
  void ask();
  void turnOn();

  Bus& bus_;
  StripWindow& window_;
  TokenPtr changes_;
};

} // namespace tavrin

#pragma once

class QAccessibleInterface;

namespace tavrin {

class StripWindow;

/// The tile as assistive technology sees it: a button with the widget's name and its value.
QAccessibleInterface* accessibleTile(StripWindow* window);
void announceTileChange(StripWindow& window, bool isNameChanged);

} // namespace tavrin

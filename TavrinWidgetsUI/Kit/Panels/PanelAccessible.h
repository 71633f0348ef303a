#pragma once

#include <functional>

class QAccessibleInterface;
class QListView;
class QModelIndex;

namespace tavrin {

/// Tells assistive technology the roles of the panel's own widgets. Once; later calls do nothing.
void installPanelAccessibility();

/// A list, or a grid, and its items. The toolkit's own calls the current item focused wherever the
/// keyboard is, and items showing that stand on a hidden page. `press` is what a press of an item
/// does.
QAccessibleInterface* makeAccessibleItems(QListView* view,
                                          std::function<void(const QModelIndex& item)> press);

} // namespace tavrin

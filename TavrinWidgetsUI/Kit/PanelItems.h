#pragma once

class QListView;

namespace tavrin {

/// What lists and grids in panels have in common: no frame and no ground of their own, one Tab
/// stop, scrolling by points, hover.
void setUpPanelItems(QListView& view);

} // namespace tavrin

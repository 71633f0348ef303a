#pragma once

#include "TavrinSettings/Dock/LayoutPane.h"

namespace tavrin {

class DockItemRow;

/// The Dock as it is, to be read: its items, where each leads, and which layouts keep the same.
class DockNowPane : public QWidget {
public:
  explicit DockNowPane(DockServicesOfPage& services, QWidget* parent = nullptr);

  void refresh();

private:
  /// What there is to be said of what it shows.
  QString words(const DockSnapshot& dock) const;

  DockServicesOfPage& services_;
  PanelText* about_;
  DockItemRow* row_;
};

} // namespace tavrin

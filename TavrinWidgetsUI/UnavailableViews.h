#pragma once

#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinWidgetsUI/Kit/PanelView.h"
#include "TavrinWidgetsUI/Kit/TileLayout.h"

#include <functional>

namespace tavrin {

class PanelEmptyState;

/// A widget whose kind this build does not have: its kind's symbol, dimmed, and its name.
AnyView unavailableTile(const DockWidget& widget, const TileSize& size);

/// "The Weather widget is not in this build."
QString unavailableSentence(const DockWidget& widget);

/// Says that the kind is not in this build.
class UnavailablePanelView final : public PanelView {
public:
  /// `widget` answers for as long as the panel lives.
  UnavailablePanelView(const PanelAppearance& appearance, std::function<const DockWidget&()> widget,
                       std::function<void()> onEdit);
  void refresh() override;

private:
  std::function<const DockWidget&()> widget_;
  std::function<void()> onEdit_;
  PanelEmptyState* message_;
};

} // namespace tavrin

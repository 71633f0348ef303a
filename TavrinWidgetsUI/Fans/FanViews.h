#pragma once

#include "TavrinCore/Kinds/Fans/FanControl.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <functional>

namespace tavrin {

class FanSwitch;
class PanelButton;
class PanelEmptyState;
class PanelList;
class PanelSwitch;
class PanelText;

inline constexpr QColor fanTint = palette::teal;

struct FanStatus {
  bool hasFans = false;
  bool hasRead = false;
  bool isFull = false;
  /// Of the fastest fan, revolutions per minute.
  double speed = 0;
  /// Of its maximum, 0...1; none where that is not known.
  std::optional<double> share = {};

  static FanStatus of(const FanSwitch& fans);
  bool operator==(const FanStatus&) const = default;
};

/// Blades within a ring of the fastest fan's speed.
AnyView fanTileIcon(const FanStatus& status, const TileSize& size);
AnyView fanWideTile(const QString& name, const FanStatus& status, const TileSize& size,
                    const std::function<void()>& toggle);

class FanPanelView final : public PanelView {
public:
  /// Where full speed is switched: by this panel, or from Tavrin's own Dock alone.
  enum class Control { here, ownDock };

  FanPanelView(const PanelAppearance& appearance, FanSwitch& fans, std::function<QString()> name,
               std::function<void()> onEdit, Control control = Control::here);
  void refresh() override;

private:
  FanSwitch& fans_;
  std::function<QString()> name_;
  Control control_;
  PanelList* list_;
  PanelSwitch* full_;
  PanelText* words_;
  PanelText* trouble_;
  PanelButton* settings_;
  PanelEmptyState* none_;
};

} // namespace tavrin

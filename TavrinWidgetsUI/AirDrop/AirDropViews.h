#pragma once

#include "TavrinWidgetsUI/AirDrop/AirDropModel.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

namespace tavrin {

inline constexpr QColor airDropTint{0x3D, 0xA9, 0xFC};

/// What the tile shows of a sending.
struct AirDropTileState {
  AirDropModel::State state = AirDropModel::State::idle;
  std::size_t fileCount = 0;
  QString deviceName;
  std::optional<double> share;
  bool isHandedOver = false;

  static AirDropTileState of(const AirDropModel& model);
};

AnyView airDropTileIcon(const AirDropTileState& state, const TileSize& size);
AnyView airDropWideTile(const AirDropTileState& state, const TileSize& size,
                        const std::function<void()>& cancel);

/// "3 files", "One file".
QString fileCountText(std::size_t count);
/// What is going on, in a few words.
QString airDropWord(const AirDropTileState& state);

} // namespace tavrin

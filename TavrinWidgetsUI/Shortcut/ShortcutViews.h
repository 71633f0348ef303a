#pragma once

#include "TavrinCore/Kinds/Shortcut/ShortcutSettings.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"
#include "TavrinWidgetsUI/Shortcut/ShortcutRunner.h"

#include <functional>

namespace tavrin {

/// What the tile shows of a run.
struct ShortcutTileState {
  QString title;
  bool hasAction = true;
  ShortcutResult result;
  std::optional<double> progress;
  bool isFresh = false;
  /// What the command wrote last.
  QString line;

  static ShortcutTileState of(const ShortcutRunner& runner);
};

QColor shortcutColour(const ShortcutSettings& settings);
std::string shortcutSymbol(const ShortcutSettings& settings);
/// "Done in 3 s", "Ended with status 2", "Stopped after its time limit".
QString shortcutResultText(const ShortcutResult& result);

AnyView shortcutTileIcon(const ShortcutTileState& state, const ShortcutSettings& settings,
                         const TileSize& size);
AnyView shortcutWideTile(const ShortcutTileState& state, const ShortcutSettings& settings,
                         const TileSize& size, const std::function<void()>& run,
                         const std::function<void()>& stop);

} // namespace tavrin

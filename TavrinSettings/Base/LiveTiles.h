#pragma once

#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/Application.h"
#include "TavrinPlatform/DockTile.h"
#include "TavrinPlatform/RunLoop.h"

#include <map>
#include <set>
#include <span>

namespace tavrin {

/// The tiles of the strip as their slot applications show them. Pictures belong to widgets: one
/// that moves to another slot has its own until that slot has drawn it.
class LiveTiles {
public:
  LiveTiles(Application& application, RunLoop& runLoop)
      : application_(application), runLoop_(runLoop) {}

  enum class State {
    /// Its slot application may be starting.
    awaited,
    live,
    /// No slot application shows it.
    still,
  };

  /// Follows the tiles of the widgets that have slots, and no others, in pictures of that height.
  void follow(std::span<const DockWidget> strip, int pixelsHigh);
  /// Follows none until `follow`.
  void pause();

  State state(const UUID& widget) const;
  /// Null where it is not live.
  const QImage* picture(const UUID& widget) const;

  /// The picture or the state of a widget is another one.
  std::function<void(const UUID& widget)> onChange;

private:
  struct Followed {
    UUID widget;
    TokenPtr watch;
  };

  void shows(int slot, const TilePicture* picture);
  void await(const UUID& widget);
  void giveUp(const UUID& widget);

  Application& application_;
  RunLoop& runLoop_;
  int pixelsHigh_ = 0;
  /// Whether what was there before this following is known.
  bool hasFollowed_ = false;
  std::map<int, Followed> slots_;
  std::map<UUID, QImage> pictures_;
  /// With a timer where it may be starting; with none until it is known whether it runs.
  std::map<UUID, TokenPtr> awaited_;
};

} // namespace tavrin

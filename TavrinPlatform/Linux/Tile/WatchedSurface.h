#pragma once

#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/Qt/TileSurface.h"

#include <QTimer>
#include <map>

namespace tavrin {

/// The tile for those who watch it over the bus (`tileInterface`). Unwatched it draws nothing and
/// keeps nothing. The tile counts as visible while it is watched.
class WatchedSurface final : public TileSurface {
public:
  WatchedSurface(Bus& bus, const std::string& identifier);

  DockTile::Format format() const override { return {}; }
  void setSubject(const std::string& subject) override { next_ = subject; }
  void display(const QImage& image) override;
  bool isVisible() const override { return isWatched_; }

private:
  struct Request {
    BusMessage message;
    int pixelsHigh = 0;
  };

  static const sd_bus_vtable vtable[];
  static int picture(sd_bus_message* message, void* self, sd_bus_error* error);
  void answer(const Request& request);
  void setWatched(bool isWatched);

  Bus& bus_;
  std::string next_;
  std::string subject_;
  /// Counts what was displayed.
  std::uint64_t serial_ = 0;
  /// By the connection that waits.
  std::map<std::string, Request> waiting_;
  bool isWatched_ = false;
  /// Runs from an answer on, until somebody asks again.
  QTimer patience_;
  TokenPtr service_;
};

} // namespace tavrin

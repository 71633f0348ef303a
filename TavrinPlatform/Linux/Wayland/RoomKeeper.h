#pragma once

#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/Linux/Wayland/ClearSurface.h"
#include "TavrinPlatform/Linux/Wayland/Outputs.h"

#include <QSocketNotifier>
#include <QTimer>
#include <filesystem>
#include <optional>

namespace tavrin {

/// A part along an output's edge that other windows are kept off.
struct KeptRoom {
  std::string output;
  Qt::Edge edge = Qt::BottomEdge;
  /// In points; 0 for none.
  int depth = 0;
  bool operator==(const KeptRoom&) const = default;
};

/// The surface that keeps the room, on a connection of its own.
class RoomSurface {
public:
  explicit RoomSurface(const KeptRoom& room);
  /// Handles what the compositor says. False when the room is no longer kept.
  bool read();
  int descriptor() const { return connection_.descriptor(); }
  std::uint32_t layerNumber() const { return surface_ ? surface_->layerNumber() : 0; }
  bool isKept() const { return surface_ && surface_->isShown() && !surface_->isClosed(); }

private:
  WaylandConnection connection_;
  std::unique_ptr<Outputs> outputs_;
  std::unique_ptr<ClearSurface> surface_;
};

/// Keeps the room once for all slots of a session. One of them, who has the lock in the runtime
/// folder, makes the surface and hands its connection's socket to the others: a compositor takes
/// the surface away with the last of its holders, so that the room stays as it is when the first
/// ends, however that ends. Whoever gets the lock then goes on from what it was handed.
class RoomKeeper {
public:
  RoomKeeper();
  ~RoomKeeper();

  void keep(const KeptRoom& room);
  bool isHolder() const { return listening_.number() >= 0; }
  /// Told when this process becomes the one that answers for the room.
  std::function<void()> onHold;

private:
  struct Peer {
    Descriptor socket;
    std::unique_ptr<QSocketNotifier> notifier;
  };

  void begin();
  Descriptor openHeirs() const;
  /// Whether somebody has the room in hand.
  bool hasHeirs() const;
  bool hold();
  bool follow();
  /// Reads what the compositor says on another's connection. False when its room is gone.
  bool readHanded();
  void heardHolder();
  void accept();
  /// Makes the surface anew unless what is there keeps the wanted room.
  void provide();
  void watchConnection();
  int connection() const;
  bool send(const Descriptor& socket) const;

  const std::filesystem::path path_;
  std::optional<KeptRoom> wanted_;
  Descriptor lock_;
  Descriptor listening_;
  std::unique_ptr<QSocketNotifier> newcomers_;
  std::vector<Peer> peers_;
  Descriptor holder_;
  std::unique_ptr<QSocketNotifier> holderNotifier_;
  std::unique_ptr<RoomSurface> surface_;
  /// Another's connection, with the room that its surface keeps.
  Descriptor handed_;
  /// A lock that all have in common to whom the room was handed.
  Descriptor heirs_;
  std::optional<KeptRoom> handedRoom_;
  std::uint32_t handedLayer_ = 0;
  std::string heard_;
  int tries_ = 0;
  std::unique_ptr<QSocketNotifier> connectionNotifier_;
  QTimer again_;
};

} // namespace tavrin

#pragma once

#include "TavrinPlatform/Linux/Pasteboard/SelectionConnection.h"
#include "TavrinPlatform/Pasteboard.h"

#include <chrono>
#include <optional>

namespace tavrin {

/// Owns the selection and hands out what it holds, in pieces where it is long.
class SelectionOffer {
public:
  using Time = std::chrono::steady_clock::time_point;

  explicit SelectionOffer(SelectionConnection& connection) : connection_(connection) {}

  /// Becomes the owner as soon as the server has told the time.
  void take(std::vector<Pasteboard::Format> formats);
  void handle(const xcb_selection_request_event_t& event);
  void handle(const xcb_selection_clear_event_t& event);
  void handle(const xcb_property_notify_event_t& event);
  /// When `expire` is due.
  std::optional<Time> deadline() const;
  /// Drops transfers whose receivers stopped reading.
  void expire();

private:
  struct Transfer {
    xcb_window_t window;
    xcb_atom_t property;
    xcb_atom_t type;
    std::shared_ptr<const Data> data;
    std::size_t sent = 0;
    Time deadline;
  };

  std::vector<xcb_atom_t> targets();
  std::shared_ptr<const Data> dataFor(xcb_atom_t target);
  bool put(xcb_window_t window, xcb_atom_t target, xcb_atom_t property);
  bool putMultiple(xcb_window_t window, xcb_atom_t property);
  void putBytes(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                std::shared_ptr<const Data> data);
  void sendPiece(Transfer& transfer);

  SelectionConnection& connection_;
  std::vector<Pasteboard::Format> waiting_;
  bool isWaiting_ = false;
  std::vector<Pasteboard::Format> formats_;
  xcb_timestamp_t since_ = XCB_CURRENT_TIME;
  std::vector<Transfer> transfers_;
};

} // namespace tavrin

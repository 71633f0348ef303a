#pragma once

#include "TavrinPlatform/Linux/Pasteboard/CapturePlan.h"
#include "TavrinPlatform/Linux/Pasteboard/SelectionConnection.h"
#include "TavrinPlatform/Pasteboard.h"

#include <chrono>
#include <map>
#include <optional>
#include <set>
#include <string_view>

namespace tavrin {

/// Reads what another program offers, without trusting it: an owner that does not answer, dribbles,
/// or sends without end costs its own copy and nothing else. One target is asked for after the
/// other, as there are programs that answer only the first of several questions. Of an owner that
/// copies again, what it has offered before is asked for at once, so that each of its copies is
/// read in one turn of it.
class SelectionReader {
public:
  using Time = std::chrono::steady_clock::time_point;

  SelectionReader(SelectionConnection& connection, std::function<void(Pasteboard::Capture)> done);
  ~SelectionReader();

  void setLimits(const Pasteboard::Limits& limits) { limits_ = limits; }
  /// Reads anew, for the change `changeCount` at the server's `time`; what was being read is
  /// dropped. `done` is told what was found.
  void begin(std::int64_t changeCount, std::string copyName, xcb_window_t owner,
             xcb_timestamp_t time);
  void abandon();
  /// Whoever owns the selection next is another program, whatever its window's number.
  void forgetOwner() { owner_ = XCB_NONE; }

  void handle(const xcb_selection_notify_event_t& event);
  void handle(const xcb_property_notify_event_t& event);
  /// When `expire` is due; none while nothing is read.
  std::optional<Time> deadline() const {
    return isReading_ ? std::optional(deadline_) : std::nullopt;
  }
  /// Gives up what did not come in time.
  void expire();

private:
  /// What is known of one property's value; the value itself only up to a bound.
  struct Value {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::size_t size = 0;
    std::string bytes;
    bool isInteger = false;
  };

  /// A target that has been asked for, by a window of its own: programs keep one transfer a window.
  struct Asked {
    xcb_window_t window = XCB_NONE;
    xcb_atom_t property = XCB_ATOM_NONE;
    /// The answer's property, once there is one; XCB_ATOM_NONE for a refusal.
    std::optional<xcb_atom_t> answer = {};
  };

  Asked ask(const std::string& target);
  void request(const std::string& target);
  void answered(xcb_atom_t property);
  void next();
  void arrived(Value value);
  void targetsArrived(const Value& value);
  void finish();
  Value take(xcb_atom_t property, std::size_t longest);
  std::size_t bound() const;
  void extend();

  SelectionConnection& connection_;
  std::function<void(Pasteboard::Capture)> done_;
  Pasteboard::Limits limits_;
  CapturePlan plan_;
  bool isReading_ = false;
  bool isIncremental_ = false;
  xcb_timestamp_t time_ = XCB_CURRENT_TIME;
  xcb_window_t window_ = XCB_NONE;
  xcb_atom_t target_ = XCB_ATOM_NONE;
  xcb_atom_t property_ = XCB_ATOM_NONE;
  std::map<std::string, Asked> asked_;
  xcb_window_t owner_ = XCB_NONE;
  /// What the owner has offered so far, of that which is wanted.
  std::set<std::string> offered_;
  unsigned requests_ = 0;
  bool hasTargets_ = false;
  std::string bytes_;
  std::size_t size_ = 0;
  std::size_t announced_ = 0;
  Time deadline_;
  Time formatEnd_;
};

} // namespace tavrin

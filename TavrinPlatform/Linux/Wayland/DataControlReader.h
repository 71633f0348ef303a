#pragma once

#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/Linux/Pasteboard/CapturePlan.h"
#include "TavrinPlatform/Linux/Wayland/Proxies.h"

#include <chrono>
#include <deque>
#include <functional>
#include <poll.h>

namespace tavrin {

/// Reads what other programs have copied, without trusting them: an owner that does not answer,
/// dribbles, or sends without end costs its own copy and nothing else. All that is wanted of a copy
/// is asked for at once, since its owner may be gone with the next copy; and what was asked for is
/// read on when that comes. Captures are told in the order of the copies.
class DataControlReader {
public:
  using Time = std::chrono::steady_clock::time_point;

  explicit DataControlReader(std::function<void(Pasteboard::Capture)> done)
      : done_(std::move(done)) {}

  void setLimits(const Pasteboard::Limits& limits) { limits_ = limits; }
  /// Begins to read `offer` for the change `changeCount`.
  void begin(std::int64_t changeCount, zwlr_data_control_offer_v1* offer,
             std::vector<std::string> types, bool isDoubtful);
  /// Tells a capture that needs no reading, after those that are being read.
  void add(Pasteboard::Capture capture);
  void abandon() { readings_.clear(); }

  void watch(std::vector<pollfd>& descriptors) const;
  /// Reads what there is, and gives up what did not come in time.
  void proceed();
  /// When `proceed` is due though nothing came.
  std::optional<Time> deadline() const;

private:
  /// The bytes of one wish, in the order of the plan's wishes.
  struct Stream {
    Descriptor end;
    std::size_t bound;
    bool isImage;
    std::string bytes;
    std::size_t size = 0;
    Time deadline;
    Time last;
    bool isLate = false;
  };
  struct Reading {
    CapturePlan plan;
    std::deque<Stream> streams;
    /// Set where nothing is read.
    std::optional<Pasteboard::Capture> known;
  };

  static void read(Stream& stream);
  /// Whether all that is wanted of it is here, or given up.
  static bool advance(Reading& reading);

  std::function<void(Pasteboard::Capture)> done_;
  Pasteboard::Limits limits_;
  std::deque<Reading> readings_;
};

} // namespace tavrin

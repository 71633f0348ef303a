#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <functional>

namespace tavrin {

/// What the user took from the screen. Channels 0...255, sRGB.
struct ColourSample {
  enum class Outcome { picked, cancelled, unavailable };
  Outcome outcome = Outcome::cancelled;
  int red = 0;
  int green = 0;
  int blue = 0;
  bool operator==(const ColourSample&) const = default;
};

/// Lets the user take the colour of a point of the screen.
class ColourSampler {
public:
  virtual ~ColourSampler() = default;
  /// Calls `done` once, on the main thread, unless the token goes first; then picking ends.
  /// `unavailable` where this desktop lets no program see the screen.
  [[nodiscard]] virtual TokenPtr pick(std::function<void(const ColourSample&)> done) = 0;
};

} // namespace tavrin

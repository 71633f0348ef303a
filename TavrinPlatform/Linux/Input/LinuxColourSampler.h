#pragma once

#include "TavrinPlatform/ColourSampler.h"

namespace tavrin {

class Bus;

/// The desktop portal's own picker; where the portal has none, one of ours on the X server.
class LinuxColourSampler final : public ColourSampler {
public:
  /// `session` may be null.
  explicit LinuxColourSampler(Bus* session) : session_(session) {}
  [[nodiscard]] TokenPtr pick(std::function<void(const ColourSample&)> done) override;

private:
  Bus* session_;
};

} // namespace tavrin

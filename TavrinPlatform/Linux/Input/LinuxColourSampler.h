#pragma once

#include "TavrinPlatform/ColourSampler.h"

namespace tavrin {

class Bus;

/// The desktop portal's own picker; where the portal has none, one of ours on the screen.
class LinuxColourSampler final : public ColourSampler {
public:
  /// Picks from the screen itself; null where no program sees it.
  using ScreenPick = std::function<TokenPtr(std::function<void(const ColourSample&)>)>;
  /// On an X server, but not on a compositor's: no window but those of other X programs is to be
  /// seen there.
  static TokenPtr pickOnX11(std::function<void(const ColourSample&)> done);

  /// `session` may be null.
  explicit LinuxColourSampler(Bus* session, ScreenPick onScreen = pickOnX11)
      : session_(session), onScreen_(std::move(onScreen)) {}
  [[nodiscard]] TokenPtr pick(std::function<void(const ColourSample&)> done) override;

private:
  Bus* session_;
  ScreenPick onScreen_;
};

} // namespace tavrin

#include "TavrinPlatform/Linux/Input/LinuxColourSampler.h"

#include "TavrinPlatform/Linux/Base/PortalRequest.h"
#include "TavrinPlatform/Linux/Base/X11.h"
#include "TavrinPlatform/Linux/Input/X11ColourPick.h"

#include <algorithm>
#include <cmath>

namespace tavrin {

namespace {

using Outcome = ColourSample::Outcome;

int channel(double share) {
  return std::isfinite(share) ? static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * 255))
                              : 0;
}

ColourSample sampleOf(sd_bus_message* results) {
  ColourSample sample{Outcome::unavailable, 0, 0, 0};
  eachPortalEntry(results, [&](const std::string& name) {
    double red = 0;
    double green = 0;
    double blue = 0;
    if (name != "color" || sd_bus_message_read(results, "v", "(ddd)", &red, &green, &blue) <= 0)
      return false;
    sample = {Outcome::picked, channel(red), channel(green), channel(blue)};
    return true;
  });
  return sample;
}

class Picking final : public Token {
public:
  Picking(Bus* session, LinuxColourSampler::ScreenPick onScreen,
          std::function<void(const ColourSample&)> done)
      : onScreen_(std::move(onScreen)), done_(std::move(done)) {
    if (session != nullptr && session->isOpen())
      askPortal(*session);
    else
      pickOnScreen();
  }

private:
  void askPortal(Bus& session);
  void pickOnScreen();
  void finish(const ColourSample& sample);

  const LinuxColourSampler::ScreenPick onScreen_;
  std::function<void(const ColourSample&)> done_;
  TokenPtr request_;
  TokenPtr screenPick_;
};

void Picking::askPortal(Bus& session) {
  request_ = std::make_unique<PortalRequest>(
      session, "org.freedesktop.portal.Screenshot", "PickColor",
      [](BusMessage& call, const char* token) {
        call.append("sa{sv}", "", 1, "handle_token", "s", token);
      },
      [this](PortalRequest::Outcome outcome, sd_bus_message* results) {
        if (outcome == PortalRequest::Outcome::unavailable)
          pickOnScreen();
        else if (outcome == PortalRequest::Outcome::declined)
          finish({});
        else
          finish(results != nullptr ? sampleOf(results)
                                    : ColourSample{Outcome::unavailable, 0, 0, 0});
      });
}

void Picking::pickOnScreen() {
  screenPick_ = onScreen_([this](const ColourSample& sample) { finish(sample); });
  if (!screenPick_)
    finish({Outcome::unavailable, 0, 0, 0});
}

void Picking::finish(const ColourSample& sample) {
  // The callee may drop this token.
  const auto done = std::exchange(done_, nullptr);
  if (done)
    done(sample);
}

} // namespace

TokenPtr LinuxColourSampler::pickOnX11(std::function<void(const ColourSample&)> done) {
  if (x11::connection() == nullptr)
    return nullptr;
  return std::make_unique<X11ColourPick>(std::move(done));
}

TokenPtr LinuxColourSampler::pick(std::function<void(const ColourSample&)> done) {
  return std::make_unique<Picking>(session_, onScreen_, std::move(done));
}

} // namespace tavrin

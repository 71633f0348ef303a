#include "TavrinPlatform/macOS/Input/MacColourSampler.h"

#include "TavrinPlatform/POSIX/LivingToken.h"

#import <AppKit/AppKit.h>

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

int channel(CGFloat part) {
  return static_cast<int>(std::lround(std::clamp(double{part}, 0.0, 1.0) * 255));
}

ColourSample sampleOf(NSColor* colour) {
  // A colour of another space has no channels to ask for.
  NSColor* converted = [colour colorUsingColorSpace:NSColorSpace.sRGBColorSpace];
  if (converted == nil)
    return {};
  return {ColourSample::Outcome::picked, channel(converted.redComponent),
          channel(converted.greenComponent), channel(converted.blueComponent)};
}

class MacColourSampler final : public ColourSampler {
public:
  TokenPtr pick(std::function<void(const ColourSample&)> done) override {
    auto token = std::make_unique<LivingToken>();
    const auto life = token->life();
    [[[NSColorSampler alloc] init] showSamplerWithSelectionHandler:^(NSColor* colour) {
      if (!life.expired())
        done(sampleOf(colour));
    }];
    return token;
  }
};

} // namespace

std::unique_ptr<ColourSampler> makeMacColourSampler() {
  return std::make_unique<MacColourSampler>();
}

} // namespace tavrin

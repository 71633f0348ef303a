#include "TavrinPlatform/macOS/Desktop/MacSoundPlayer.h"

#include "TavrinPlatform/macOS/Base/MacText.h"

#import <AppKit/AppKit.h>

namespace tavrin {
namespace {

class MacSoundPlayer final : public SoundPlayer {
public:
  void play(const std::string& name) override {
    // One object a name, which does not begin anew while it plays.
    NSSound* sound = [NSSound soundNamed:toNSString(name)];
    if (sound.playing)
      [sound stop];
    // A sound that is let go of falls silent.
    playing_ = sound;
    [sound play];
  }

private:
  NSSound* playing_ = nil;
};

} // namespace

std::unique_ptr<SoundPlayer> makeMacSoundPlayer() {
  return std::make_unique<MacSoundPlayer>();
}

} // namespace tavrin

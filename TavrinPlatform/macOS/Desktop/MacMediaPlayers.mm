#include "TavrinPlatform/macOS/Desktop/MacMediaPlayers.h"

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/POSIX/HandlerList.h"
#include "TavrinPlatform/macOS/Base/MacObservation.h"
#include "TavrinPlatform/macOS/Base/MacText.h"
#include "TavrinPlatform/macOS/Desktop/PlayerEvents.h"

#import <AppKit/AppKit.h>

#include <algorithm>
#include <array>
#include <list>

/// Hears what players tell everybody, though this application is inactive.
@interface TavrinPlayerObserver : NSObject
@property(nonatomic) std::function<void(NSNotification*)> heard;
- (void)notice:(NSNotification*)notification;
@end

@implementation TavrinPlayerObserver
- (void)notice:(NSNotification*)notification {
  if (self.heard)
    self.heard(notification);
}
@end

namespace tavrin {
namespace {

struct Known {
  const char* name;
  const char* title;
  const char* identifier;
  const char* notice;
  /// The notice's name for the track's length, in milliseconds.
  const char* length;
  PlayerScript script;
};

constexpr std::array knownPlayers = {
    Known{"music", "Music", "com.apple.Music", "com.apple.Music.playerInfo", "Total Time",
          {fourLetters("hook"), fourLetters("PlPs"), fourLetters("Next"), fourLetters("Prev"), 1}},
    Known{"spotify", "Spotify", "com.spotify.client", "com.spotify.client.PlaybackStateChanged",
          "Duration", {fourLetters("spfy"), fourLetters("PlPs"), fourLetters("Next"), fourLetters("Prev"), 1000}}};

constexpr double microseconds = 1e6;

const Known* knownNamed(const std::string& name) {
  const auto found = std::ranges::find(knownPlayers, name, &Known::name);
  return found != knownPlayers.end() ? &*found : nullptr;
}

NSRunningApplication* applicationOf(const Known& known) {
  return [NSRunningApplication
             runningApplicationsWithBundleIdentifier:toNSString(known.identifier)]
      .firstObject;
}

std::string textIn(NSDictionary* info, NSString* key) {
  id value = info[key];
  return [value isKindOfClass:NSString.class] ? toText((NSString*)value) : std::string();
}

std::optional<double> numberIn(NSDictionary* info, NSString* key) {
  id value = info[key];
  if (![value isKindOfClass:NSNumber.class])
    return std::nullopt;
  return ((NSNumber*)value).doubleValue;
}

class MacMediaPlayers final : public MediaPlayers {
public:
  MacMediaPlayers(RunLoop& runLoop, Clock& clock) : runLoop_(runLoop), clock_(clock) {
    observer_.heard = [this](NSNotification* notice) { heard(notice); };
  }
  ~MacMediaPlayers() override {
    observer_.heard = nullptr;
    [[NSDistributedNotificationCenter defaultCenter] removeObserver:observer_];
  }

  const std::vector<MediaPlayer>& players() const override { return players_; }
  bool isAvailable() const override { return true; }

  void refresh() override {
    const auto before = players_.size();
    std::erase_if(players_, [](const MediaPlayer& player) {
      return applicationOf(*knownNamed(player.name)) == nil;
    });
    for (const Known& known : knownPlayers)
      if (NSRunningApplication* application = applicationOf(known))
        ask(known, application.processIdentifier);
    if (players_.size() != before)
      changes_.call();
  }

  void playPause(const std::string& name) override {
    tell(name, [](const Known& known, const PlayerEvents& events) {
      events.command(known.script.playPause);
    });
  }
  void next(const std::string& name) override {
    tell(name, [](const Known& known, const PlayerEvents& events) {
      events.command(known.script.next);
    });
  }
  void previous(const std::string& name) override {
    tell(name, [](const Known& known, const PlayerEvents& events) {
      events.command(known.script.previous);
    });
  }
  void seek(const std::string& name, double seconds) override {
    tell(name, [seconds](const Known&, const PlayerEvents& events) {
      events.setPosition(std::max(seconds, 0.0));
    });
  }
  void setVolume(const std::string& name, double volume) override {
    tell(name, [volume](const Known&, const PlayerEvents& events) {
      events.setVolume(std::clamp(volume, 0.0, 1.0));
    });
  }
  void raise(const std::string& name) override {
    if (const Known* known = knownNamed(name))
      [applicationOf(*known) activateWithOptions:NSApplicationActivateAllWindows];
  }

  TokenPtr observe(std::function<void()> handler) override {
    watch();
    return changes_.add(std::move(handler));
  }

private:
  void watch() {
    if (!watches_.empty())
      return;
    NSNotificationCenter* center = NSWorkspace.sharedWorkspace.notificationCenter;
    for (NSNotificationName name in @[
           NSWorkspaceDidLaunchApplicationNotification,
           NSWorkspaceDidTerminateApplicationNotification
         ])
      watches_.emplace_back(center, name, [this] { refresh(); });
    for (const Known& known : knownPlayers)
      [[NSDistributedNotificationCenter defaultCenter]
                 addObserver:observer_
                    selector:@selector(notice:)
                        name:toNSString(known.notice)
                      object:nil
          suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
    refresh();
  }

  /// What a notice says needs no permission; what it leaves out is asked for.
  void heard(NSNotification* notice) {
    const auto found = std::ranges::find(knownPlayers, toText(notice.name), &Known::notice);
    NSRunningApplication* application =
        found != knownPlayers.end() ? applicationOf(*found) : nil;
    if (application == nil) // its last words
      return refresh();
    NSDictionary* info = notice.userInfo;
    PlayerAnswer answer;
    answer.state = textIn(info, @"Player State");
    answer.title = textIn(info, @"Name");
    answer.artist = textIn(info, @"Artist");
    answer.album = textIn(info, @"Album");
    answer.position = numberIn(info, @"Playback Position");
    if (const auto length = numberIn(info, toNSString(found->length)))
      answer.duration = *length / 1000;
    take(*found, answer, false);
    ask(*found, application.processIdentifier);
  }

  void ask(const Known& known, int process) {
    queue().run([this, &runLoop = runLoop_, life = alive_.watch(), &known, process] {
      const PlayerAnswer answer = PlayerEvents(known.script, process).ask();
      runLoop.post([this, life, &known, answer] {
        if (!life.expired())
          take(known, answer, true);
      });
    });
  }

  void tell(const std::string& name,
            std::function<void(const Known&, const PlayerEvents&)> command) {
    const Known* known = knownNamed(name);
    NSRunningApplication* application = known != nullptr ? applicationOf(*known) : nil;
    if (application == nil)
      return;
    moveToFront(name);
    const int process = application.processIdentifier;
    queue().run([known, process, command = std::move(command)] {
      command(*known, PlayerEvents(known->script, process));
    });
    ask(*known, process);
  }

  /// `isAnswer` where the player was asked, and did not speak by itself.
  void take(const Known& known, const PlayerAnswer& answer, bool isAnswer) {
    // It may have quit while it was asked.
    if (applicationOf(known) == nil)
      return;
    auto place = std::ranges::find(players_, known.name, &MediaPlayer::name);
    const bool isNew = place == players_.end();
    if (isNew) {
      MediaPlayer player;
      player.name = known.name;
      player.title = known.title;
      place = players_.insert(players_.end(), std::move(player));
    }
    const MediaPlayer before = *place;
    if (isAnswer)
      place->isAnswering = answer.error == 0;
    place->canPlay = place->canPause = place->canGoNext = place->canGoPrevious = place->canSeek =
        place->isAnswering;
    const bool begins = answer.state == "Playing" && !place->playback.isPlaying();
    if (answer.error == 0)
      update(*place, answer);
    const bool isOther = *place != before;
    if (begins)
      moveToFront(known.name);
    if (isNew || isOther)
      changes_.call();
  }

  void update(MediaPlayer& player, const PlayerAnswer& answer) {
    const Date now = clock_.now();
    MusicMetadata metadata;
    metadata.title = answer.title;
    metadata.album = answer.album;
    if (!answer.artist.empty())
      metadata.artists = {answer.artist};
    if (answer.duration)
      metadata.length = *answer.duration * microseconds;
    player.playback.track = MusicTrack::of(metadata);
    player.playback.setStatus(playbackStatus(answer.state), now);
    if (answer.position)
      player.playback.setPosition(*answer.position, now);
    if (answer.volume)
      player.volume = answer.volume;
  }

  void moveToFront(const std::string& name) {
    const auto place = std::ranges::find(players_, name, &MediaPlayer::name);
    if (place != players_.end())
      std::rotate(players_.begin(), place, place + 1);
  }

  SerialQueue& queue() {
    if (!queue_)
      queue_ = runLoop_.makeSerialQueue();
    return *queue_;
  }

  RunLoop& runLoop_;
  Clock& clock_;
  std::vector<MediaPlayer> players_;
  HandlerList changes_;
  TavrinPlayerObserver* observer_ = [[TavrinPlayerObserver alloc] init];
  std::list<MacObservation> watches_;
  Lifetime alive_;
  std::unique_ptr<SerialQueue> queue_;
};

} // namespace

std::unique_ptr<MediaPlayers> makeMacMediaPlayers(RunLoop& runLoop, Clock& clock) {
  return std::make_unique<MacMediaPlayers>(runLoop, clock);
}

} // namespace tavrin

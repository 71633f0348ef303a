#include "Tests/macOS/Objc/MacTest.h"

#include "TavrinPlatform/macOS/Desktop/MacMediaPlayers.h"
#include "TavrinPlatform/macOS/Dock/MacFocusStatus.h"
#include "TavrinPlatform/macOS/FanHelper/FanDaemon.h"
#include "TavrinPlatform/macOS/FanHelper/FanHelperProtocol.h"
#include "TavrinPlatform/macOS/FanHelper/MacFanHelper.h"
#include "Tests/Support/FakeHardware.h"

#import <Foundation/NSXPCConnection.h>
#import <dispatch/dispatch.h>

namespace tavrin::test {
namespace {

class MacPlayersTest : public MacTest {
protected:
  MacPlayersTest() {
    appKit.running = {{"com.apple.Music", 71}};
    music().codes["pPlS"] = "kPSP";
    music().numbers = {{"pPos", 12.5}, {"pVol", 40}, {"pTrk.pDur", 180.5}};
    music().texts = {{"pTrk.pnam", "Song"}, {"pTrk.pArt", "Somebody"}, {"pTrk.pAlb", "Album"}};
    clock_.set(Date{1000});
  }
  FakePlayer& music() { return services.players[71]; }
  FakePlayer& spotify() {
    appKit.running["com.spotify.client"] = 72;
    return services.players[72];
  }
  const std::vector<MediaPlayer>& all() {
    runLoop_.runBackground();
    return players_->players();
  }
  std::string order() {
    std::string names;
    for (const auto& player : all())
      names += player.name + " ";
    return names;
  }
  void tell(NSString* name, NSDictionary* info) {
    [[NSDistributedNotificationCenter defaultCenter] post:name object:nil info:info];
  }

  std::unique_ptr<MediaPlayers> players_ = makeMacMediaPlayers(runLoop_, clock_);
  int told_ = 0;
  TokenPtr token_;
  void watch() {
    token_ = players_->observe([this] { ++told_; });
    runLoop_.runBackground();
    calls.clear();
  }
};

TEST_F(MacPlayersTest, APlayerAnswersInItsOwnUnits) {
  watch();
  ASSERT_EQ(all().size(), 1U);
  const MediaPlayer& player = all()[0];
  EXPECT_EQ(player.title, "Music");
  EXPECT_TRUE(player.canPlay && player.canPause && player.canGoNext && player.canGoPrevious &&
              player.canSeek && player.isAnswering);
  EXPECT_EQ(player.playback.status, PlaybackStatus::playing);
  EXPECT_EQ(player.playback.elapsed(Date{1001}), 13.5);
  EXPECT_EQ(player.playback.track.title, "Song");
  EXPECT_EQ(player.playback.track.artist, "Somebody");
  EXPECT_EQ(player.playback.track.album, "Album");
  EXPECT_EQ(player.playback.track.length, 180.5);
  EXPECT_EQ(player.volume, 0.4);
  EXPECT_EQ(told_, 1);
  // The other one has milliseconds.
  spotify().codes["pPlS"] = "kPSp";
  spotify().numbers["pTrk.pDur"] = 240'000;
  players_->refresh();
  ASSERT_EQ(order(), "music spotify ");
  EXPECT_EQ(all()[1].playback.status, PlaybackStatus::paused);
  EXPECT_EQ(all()[1].playback.track.length, 240);
  EXPECT_EQ(all()[1].volume, std::nullopt);
}

TEST_F(MacPlayersTest, CommandsGoToTheProcessInItsWords) {
  spotify();
  watch();
  players_->playPause("music");
  players_->next("music");
  players_->previous("music");
  players_->seek("music", -3);
  players_->setVolume("music", 0.555);
  players_->playPause("spotify");
  players_->playPause("somebody else");
  EXPECT_EQ(called(), Calls{}) << "the main thread waits for no player";
  runLoop_.runBackground();
  EXPECT_EQ(called(), (Calls{"to 71: hook PlPs", "to 71: hook Next", "to 71: hook Prev",
                             "to 71: core setd pPos = 0.000000", "to 71: core setd pVol = 56.000000",
                             "to 72: spfy PlPs"}));
  players_->raise("music");
  EXPECT_EQ(called(), Calls{"activate 71 with 1"});
}

TEST_F(MacPlayersTest, OneThatRefusesIsShownAsNotAnswering) {
  for (const bool isReply : {false, true}) {
    (isReply ? music().replyError : music().sendError) = -1743;
    players_->refresh();
    ASSERT_EQ(order(), "music ");
    EXPECT_FALSE(all()[0].isAnswering || all()[0].canPlay || all()[0].canSeek);
    music().replyError = music().sendError = 0;
    players_->refresh();
    EXPECT_TRUE(all()[0].isAnswering && all()[0].canPlay);
    EXPECT_EQ(all()[0].playback.track.title, "Song");
  }
}

TEST_F(MacPlayersTest, WhatIsToldNeedsNoAnswerAndBringsToTheFront) {
  spotify().codes["pPlS"] = "kPSp";
  watch();
  EXPECT_EQ(order(), "music spotify ");
  told_ = 0;
  spotify().sendError = -1743;
  tell(@"com.spotify.client.PlaybackStateChanged", @{
    @"Player State" : @"Playing",
    @"Name" : @"Other",
    @"Artist" : @4,
    @"Playback Position" : @7,
    @"Duration" : @60000
  });
  const MediaPlayer& first = players_->players().front();
  EXPECT_EQ(first.name, "spotify");
  EXPECT_EQ(first.playback.track.title, "Other");
  EXPECT_EQ(first.playback.track.artist, "");
  EXPECT_EQ(first.playback.track.length, 60);
  EXPECT_EQ(first.playback.elapsed(Date{1000}), 7);
  EXPECT_EQ(told_, 1);
  EXPECT_EQ(order(), "spotify music ");
  EXPECT_EQ(all()[0].playback.track.title, "Other") << "a refusal takes nothing away";
  EXPECT_FALSE(all()[0].isAnswering);
}

TEST_F(MacPlayersTest, OneThatQuitIsGoneThoughItWasBeingAsked) {
  watch();
  players_->refresh();
  appKit.running.clear();
  services.players.clear();
  told_ = 0;
  postNotice(NSWorkspace.sharedWorkspace.notificationCenter,
             NSWorkspaceDidTerminateApplicationNotification);
  EXPECT_EQ(order(), "");
  EXPECT_EQ(told_, 1);
  players_->playPause("music");
  runLoop_.runBackground();
  EXPECT_EQ(called(), Calls{});
  // And one whose adapter has.
  appKit.running = {{"com.apple.Music", 71}};
  players_->refresh();
  token_.reset();
  players_.reset();
  runLoop_.runBackground();
}

using MacFocusTest = MacTest;

TEST_F(MacFocusTest, TellsOnlyWhatTheSystemLetsItKnow) {
  (void)INFocusStatusCenter.defaultCenter;
  tavrin_snapshot();
  const auto focus = makeMacFocusStatus();
  EXPECT_FALSE(focus->isAuthorized());
  EXPECT_EQ(focus->isFocused(), std::nullopt);
  for (const auto access : {INFocusStatusAuthorizationStatusRestricted,
                            INFocusStatusAuthorizationStatusDenied}) {
    services.focusAccess = access;
    EXPECT_FALSE(focus->isAuthorized());
  }
  services.focusAccess = INFocusStatusAuthorizationStatusAuthorized;
  services.isFocused = @NO;
  EXPECT_TRUE(focus->isAuthorized());
  EXPECT_EQ(focus->isFocused(), false);
  services.isFocused = @YES;
  EXPECT_EQ(focus->isFocused(), true);
}

} // namespace
} // namespace tavrin::test

/// The helper as its client sees it.
@interface RemoteHelper : NSObject <TavrinFanHelper>
@property(nonatomic, copy) NSString* refusal;
@end
@implementation RemoteHelper
- (void)setFull:(BOOL)full reply:(void (^)(NSString*))reply {
  note(full ? "full" : "automatic");
  reply(self.refusal);
}
@end

namespace tavrin::test {
namespace {

class MacFanTest : public MacTest {
protected:
  FanHelperClient::Reply reply() {
    return [this](const auto& refusal) { replies_.push_back(refusal ? refusal->message : "done"); };
  }
  Calls replies() {
    runLoop_.runPosts();
    return std::exchange(replies_, {});
  }
  std::unique_ptr<FanHelperClient> client_ = makeMacFanHelper(runLoop_, "dev.quellby.Tavrin.Slot3", "ABCDE12345");
  Calls replies_;
};

TEST_F(MacFanTest, RegistersWaitsForTheUserAndUnregisters) {
  int told = 0;
  const auto token = client_->observe([&] { ++told; });
  using Status = FanHelperClient::Status;
  EXPECT_EQ(client_->status(), Status::notRegistered);
  services.afterRegistering = SMAppServiceStatusRequiresApproval;
  services.registerError = kSMErrorLaunchDeniedByUser;
  client_->registerHelper(reply());
  EXPECT_EQ(replies_, Calls{}) << "before the call has returned";
  EXPECT_EQ(replies(), Calls{"done"}) << "approval to come is no failure";
  EXPECT_EQ(client_->status(), Status::needsApproval);
  client_->openApprovalSettings();
  EXPECT_EQ(called(), (Calls{"register dev.quellby.Tavrin.Slot3.fan-helper.plist", "login items"}));
  services.helper = SMAppServiceStatusEnabled;
  runLoop_.advance(2);
  EXPECT_EQ(client_->status(), Status::ready);
  EXPECT_EQ(told, 2);
  EXPECT_EQ(runLoop_.activeTimers(), 0U) << "nobody looks any more";
  client_->unregisterHelper(reply());
  EXPECT_EQ(replies(), Calls{});
  services.helper = SMAppServiceStatusNotRegistered;
  services.unregistered(nil);
  EXPECT_EQ(replies(), Calls{"done"});
  EXPECT_EQ(told, 3);
  client_->unregisterHelper(reply());
  services.unregistered([NSError errorWithDomain:NSCocoaErrorDomain code:kSMErrorJobNotFound userInfo:@{}]);
  client_->unregisterHelper(reply());
  services.unregistered([NSError errorWithDomain:NSCocoaErrorDomain code:2 userInfo:@{}]);
  EXPECT_EQ(replies(), (Calls{"done", "Failed to reach the fan helper because it went wrong"}));
  services.afterRegistering = SMAppServiceStatusNotFound;
  services.registerError = kSMErrorInvalidSignature;
  client_->registerHelper(reply());
  services.registerError = kSMErrorAlreadyRegistered;
  client_->registerHelper(reply());
  EXPECT_EQ(replies(), (Calls{"Failed to reach the fan helper because it went wrong", "done"}));
}

TEST_F(MacFanTest, EveryRequestIsAnsweredOnTheMainThread) {
  client_->setFull(true, reply());
  EXPECT_EQ(replies(), Calls{"Failed to reach the fan helper"});
  EXPECT_EQ(called(), (Calls{"connect dev.quellby.Tavrin.Slot3.fan-helper privileged",
                             "activate connection"}));
  RemoteHelper* helper = [[RemoteHelper alloc] init];
  services.remote = helper;
  client_->setFull(true, reply());
  EXPECT_EQ(replies_, Calls{}) << "it came on the connection's queue";
  EXPECT_EQ(replies(), Calls{"done"});
  helper.refusal = @"No fans.";
  client_->setFull(false, reply());
  EXPECT_EQ(replies(), Calls{"No fans."});
  EXPECT_EQ(called(), (Calls{"full", "automatic"})) << "one connection for all";
  helper.refusal = nil;
  // The end of a former connection comes late.
  client_->unregisterHelper(reply());
  client_->setFull(true, reply());
  replies();
  EXPECT_EQ(called(), (Calls{"invalidate", "unregister dev.quellby.Tavrin.Slot3.fan-helper.plist",
                             "connect dev.quellby.Tavrin.Slot3.fan-helper privileged",
                             "activate connection", "full"}));
  client_->setFull(false, reply());
  EXPECT_EQ(called(), Calls{"automatic"}) << "the new one is kept";
  client_.reset();
  EXPECT_EQ(called(), Calls{"invalidate"});
  EXPECT_EQ(replies(), Calls{"done"}) << "though nobody is there to use it";
}

TEST_F(MacFanTest, WithoutATeamThereIsNoHelper) {
  client_ = makeMacFanHelper(runLoop_, "dev.quellby.Tavrin.Slot3", "");
  client_->registerHelper(reply());
  client_->setFull(true, reply());
  const std::string sentence =
      "Failed to reach the fan helper because this build is not signed by a team";
  EXPECT_EQ(replies(), (Calls{sentence, sentence}));
  EXPECT_EQ(called(), Calls{});
}

/// The helper's own side.
class MacFanDaemonTest : public MacTest {
protected:
  MacFanDaemonTest() {
    (void)dispatch_get_main_queue();
    tavrin_snapshot();
    smc_.addFans(1);
    daemon_ = [[TavrinFanDaemon alloc] initWithControl:&control_];
  }
  ~MacFanDaemonTest() override {
    runQueues();
    daemon_ = nil;
  }
  NSXPCConnection* connect() {
    NSXPCConnection* connection = [[NSXPCConnection alloc] initWithMachServiceName:@"caller" options:0];
    EXPECT_TRUE([daemon_ listener:(NSXPCListener*)nil shouldAcceptNewConnection:connection]);
    EXPECT_NE(connection.exportedInterface, nil);
    EXPECT_EQ(called(), (Calls{"connect caller", "activate connection"}));
    return connection;
  }
  std::string ask(NSXPCConnection* connection, bool full) {
    __block std::string answer = "none";
    [(id<TavrinFanHelper>)connection.exportedObject setFull:full
                                                      reply:^(NSString* refusal) {
                                                        answer = refusal != nil ? refusal.UTF8String : "done";
                                                      }];
    EXPECT_EQ(answer, "none") << "fans are changed on the main queue alone";
    runQueues();
    return answer;
  }
  bool isFull() { return smc_.values.at("F0Md").number() == 1; }

  FakeSMC smc_;
  FanControl control_{smc_, [](double) {}};
  TavrinFanDaemon* daemon_ = nil;
};

TEST_F(MacFanDaemonTest, HoldsWhileAnybodyWantsItAndIsThere) {
  smc_.set("F0Md", 1, "ui8 ");
  [daemon_ begin];
  EXPECT_FALSE(isFull()) << "what a former helper left";
  @autoreleasepool {
    NSXPCConnection* one = connect();
    NSXPCConnection* two = connect();
    EXPECT_EQ(ask(one, true), "done");
    EXPECT_EQ(ask(two, true), "done");
    EXPECT_EQ(ask(one, false), "done");
    EXPECT_TRUE(isFull());
    [daemon_ sleepChanged:YES];
    EXPECT_FALSE(isFull());
    [daemon_ sleepChanged:NO];
    EXPECT_TRUE(isFull());
    [two invalidate];
    EXPECT_TRUE(isFull()) << "not on the connection's queue";
    runQueues();
    EXPECT_FALSE(isFull()) << "its caller was killed";
    EXPECT_EQ(ask(one, true), "done");
    [daemon_ end];
    EXPECT_FALSE(isFull());
    [one invalidate];
    runQueues();
  }
  calls.clear();
}

TEST_F(MacFanDaemonTest, ARefusalIsToldAndHoldsNothing) {
  NSXPCConnection* caller = nil;
  @autoreleasepool {
    caller = connect();
    smc_.refusing["F0Tg"] = 1;
    EXPECT_EQ(ask(caller, true), "Failed to write fan value F0Tg because the SMC returned 130");
    EXPECT_EQ(called(), Calls{"log 16 Failed to write fan value F0Tg because the SMC returned 130"});
    EXPECT_FALSE(isFull());
    [daemon_ sleepChanged:YES];
    [daemon_ sleepChanged:NO];
    EXPECT_FALSE(isFull()) << "nobody holds it";
    EXPECT_EQ(ask(caller, true), "done");
  }
  daemon_ = nil;
  EXPECT_EQ(ask(caller, true), "Failed to reach the fan helper");
  [caller invalidate];
  runQueues();
  calls.clear();
}

} // namespace
} // namespace tavrin::test

#import "TavrinPlatform/macOS/FanHelper/FanDaemon.h"

#import "TavrinPlatform/macOS/FanHelper/FanHelperProtocol.h"

#include "TavrinPlatform/macOS/Base/MacText.h"

#include <dispatch/dispatch.h>
#include <os/log.h>

using tavrin::FanHold;

/// What one connection's messages go to.
@interface TavrinFanCaller : NSObject <TavrinFanHelper>
@property(weak, nullable) TavrinFanDaemon* daemon;
@property int holder;
@end

@interface TavrinFanDaemon ()
/// Nil where it was done, else a whole sentence. On the main queue.
- (nullable NSString*)request:(BOOL)full from:(int)holder;
- (void)drop:(int)holder;
- (nullable NSString*)apply:(FanHold::Change)change;
@end

@implementation TavrinFanCaller
- (void)setFull:(BOOL)full reply:(void (^)(NSString* _Nullable refusal))reply {
  TavrinFanDaemon* daemon = self.daemon;
  const int holder = self.holder;
  dispatch_async(dispatch_get_main_queue(), ^{
    reply(daemon != nil ? [daemon request:full from:holder] : @"Failed to reach the fan helper");
  });
}
@end

@implementation TavrinFanDaemon {
  tavrin::FanControl* control_;
  FanHold hold_;
  int lastHolder_;
}

- (instancetype)initWithControl:(tavrin::FanControl*)control {
  self = [super init];
  if (self != nil)
    control_ = control;
  return self;
}

- (void)begin {
  [self apply:FanHold::Change::automatic];
}

- (void)end {
  hold_.abandon();
  [self apply:FanHold::Change::automatic];
}

- (BOOL)listener:(NSXPCListener*)listener shouldAcceptNewConnection:(NSXPCConnection*)connection {
  TavrinFanCaller* caller = [[TavrinFanCaller alloc] init];
  __weak TavrinFanDaemon* daemon = self;
  const int holder = ++lastHolder_;
  caller.daemon = self;
  caller.holder = holder;
  connection.exportedInterface = [NSXPCInterface interfaceWithProtocol:@protocol(TavrinFanHelper)];
  connection.exportedObject = caller;
  connection.invalidationHandler = ^{
    dispatch_async(dispatch_get_main_queue(), ^{
      [daemon drop:holder];
    });
  };
  [connection activate];
  return YES;
}

- (NSString*)request:(BOOL)full from:(int)holder {
  const auto change = hold_.request(full != NO, holder);
  NSString* trouble = change ? [self apply:*change] : nil;
  if (trouble != nil)
    [self drop:holder];
  return trouble;
}

- (void)drop:(int)holder {
  if (const auto change = hold_.drop(holder))
    [self apply:*change];
}

- (void)sleepChanged:(BOOL)isGoingToSleep {
  const auto change = isGoingToSleep ? hold_.willSleep() : hold_.didWake();
  // Full speed that cannot be kept up is nobody's any more.
  if (change && [self apply:*change] != nil && *change == FanHold::Change::full)
    hold_.abandon();
}

- (NSString*)apply:(FanHold::Change)change {
  try {
    if (change == FanHold::Change::full)
      control_->setFull();
    else
      control_->setAuto();
    return nil;
  } catch (const std::exception& error) {
    os_log_error(OS_LOG_DEFAULT, "%{public}s", error.what());
    return tavrin::toNSString(error.what());
  }
}
@end

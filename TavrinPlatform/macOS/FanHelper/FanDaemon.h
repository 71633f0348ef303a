#pragma once

#include "TavrinCore/Kinds/Fans/FanControl.h"

#import <Foundation/Foundation.h>

/// The helper's side: each connection has one hold, which ends with it. The fans are changed on the
/// main queue alone, one request after the other.
@interface TavrinFanDaemon : NSObject <NSXPCListenerDelegate>
/// `control` outlives this.
- (nonnull instancetype)initWithControl:(tavrin::FanControl* _Nonnull)control;
/// Hands back what a former helper left forced.
- (void)begin;
/// Gives all fans back; for the end, whatever brought it about.
- (void)end;
/// The system is about to sleep, or woke up.
- (void)sleepChanged:(BOOL)isGoingToSleep;
@end

#pragma once

#import <Foundation/Foundation.h>

/// What the helper exports. The reply carries a whole sentence where it was refused, else nil.
@protocol TavrinFanHelper
- (void)setFull:(BOOL)full reply:(void (^_Nonnull)(NSString* _Nullable refusal))reply;
@end

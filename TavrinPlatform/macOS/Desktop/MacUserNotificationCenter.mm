#include "TavrinPlatform/macOS/Base/MacText.h"
#include "TavrinPlatform/macOS/Desktop/MacNotifications.h"

#import <UserNotifications/UserNotifications.h>

#include <algorithm>

/// Without it nothing is shown while the application is active.
@interface TavrinUserNotificationDelegate : NSObject <UNUserNotificationCenterDelegate>
@end

@implementation TavrinUserNotificationDelegate
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions options))answer {
  (void)center;
  (void)notification;
  answer(UNNotificationPresentationOptionBanner | UNNotificationPresentationOptionList |
         UNNotificationPresentationOptionSound);
}

- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)(void))done {
  (void)center;
  (void)response;
  done();
}
@end

namespace tavrin {
namespace {

/// The center throws for a process that is no bundle's executable.
bool isInBundle() {
  return NSBundle.mainBundle.bundleIdentifier != nil &&
         toPath(NSBundle.mainBundle.bundleURL).extension() == ".app";
}

class MacUserNotificationCenter final : public UserNotificationCenter {
public:
  MacUserNotificationCenter() {
    if (isInBundle())
      center_ = [UNUserNotificationCenter currentNotificationCenter];
    // Which keeps it weakly.
    center_.delegate = delegate_;
  }

  void requestAuthorization(std::function<void(bool granted)> answer) override {
    if (center_ == nil) {
      answer(false);
      return;
    }
    [center_ requestAuthorizationWithOptions:UNAuthorizationOptionAlert | UNAuthorizationOptionSound
                           completionHandler:^(BOOL granted, NSError*) {
                             answer(granted);
                           }];
  }

  void add(const UserNotificationRequest& request) override {
    UNMutableNotificationContent* content = [[UNMutableNotificationContent alloc] init];
    content.title = toNSString(request.title);
    content.body = toNSString(request.body);
    content.sound = UNNotificationSound.defaultSound;
    UNTimeIntervalNotificationTrigger* trigger =
        [UNTimeIntervalNotificationTrigger triggerWithTimeInterval:std::max(request.delay, 1.0)
                                                           repeats:NO];
    [center_ addNotificationRequest:[UNNotificationRequest
                                        requestWithIdentifier:toNSString(request.identifier)
                                                      content:content
                                                      trigger:trigger]
              withCompletionHandler:nil];
  }

  void removePending(const std::string& identifier) override {
    [center_ removePendingNotificationRequestsWithIdentifiers:@[ toNSString(identifier) ]];
  }

private:
  UNUserNotificationCenter* center_ = nil;
  TavrinUserNotificationDelegate* delegate_ = [[TavrinUserNotificationDelegate alloc] init];
};

} // namespace

std::unique_ptr<UserNotificationCenter> makeMacUserNotificationCenter() {
  return std::make_unique<MacUserNotificationCenter>();
}

} // namespace tavrin

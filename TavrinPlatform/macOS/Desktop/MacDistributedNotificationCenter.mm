#include "TavrinPlatform/macOS/Base/MacText.h"
#include "TavrinPlatform/macOS/Desktop/MacNotifications.h"

/// The selector form alone can say that notices are not to wait while the application is inactive.
@interface TavrinNoticeObserver : NSObject
- (instancetype)initWithName:(NSString*)name
                     handler:(tavrin::DistributedNotificationCenter::Handler)handler;
- (void)heard:(NSNotification*)notification;
- (void)end;
@end

@implementation TavrinNoticeObserver {
  std::shared_ptr<tavrin::DistributedNotificationCenter::Handler> _handler;
}

- (instancetype)initWithName:(NSString*)name
                     handler:(tavrin::DistributedNotificationCenter::Handler)handler {
  self = [super init];
  if (self != nil) {
    _handler =
        std::make_shared<tavrin::DistributedNotificationCenter::Handler>(std::move(handler));
    [[NSDistributedNotificationCenter defaultCenter]
               addObserver:self
                  selector:@selector(heard:)
                      name:name
                    object:nil
        suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
  }
  return self;
}

- (void)heard:(NSNotification*)notification {
  // The handler may end this observation.
  const auto handler = _handler;
  id object = notification.object;
  if (handler)
    (*handler)([object isKindOfClass:NSString.class]
                   ? std::optional(tavrin::toText((NSString*)object))
                   : std::nullopt);
}

- (void)end {
  [[NSDistributedNotificationCenter defaultCenter] removeObserver:self];
  _handler.reset();
}
@end

namespace tavrin {
namespace {

class NoticeToken final : public Token {
public:
  NoticeToken(const std::string& name, DistributedNotificationCenter::Handler handler)
      : observer_([[TavrinNoticeObserver alloc] initWithName:toNSString(name)
                                                     handler:std::move(handler)]) {}
  ~NoticeToken() override { [observer_ end]; }

private:
  TavrinNoticeObserver* observer_;
};

class MacDistributedNotificationCenter final : public DistributedNotificationCenter {
public:
  void post(const std::string& name, const std::optional<std::string>& object) override {
    [[NSDistributedNotificationCenter defaultCenter]
        postNotificationName:toNSString(name)
                      object:object ? toNSString(*object) : nil
                    userInfo:nil
          deliverImmediately:YES];
  }
  TokenPtr observe(const std::string& name, Handler handler) override {
    return std::make_unique<NoticeToken>(name, std::move(handler));
  }
};

} // namespace

std::unique_ptr<DistributedNotificationCenter> makeMacDistributedNotificationCenter() {
  return std::make_unique<MacDistributedNotificationCenter>();
}

} // namespace tavrin

#include "TavrinPlatform/macOS/Desktop/MacNearbyDevices.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/POSIX/LivingToken.h"
#include "TavrinPlatform/macOS/Base/MacText.h"

#import <AppKit/AppKit.h>

/// Told of the end of one sending.
@interface TavrinSharingDelegate : NSObject <NSSharingServiceDelegate>
@property(nonatomic) std::function<void(NSError*)> ended;
@end

@implementation TavrinSharingDelegate
- (void)sharingService:(NSSharingService*)service didShareItems:(NSArray*)items {
  (void)service;
  (void)items;
  if (self.ended)
    self.ended(nil);
}

- (void)sharingService:(NSSharingService*)service
    didFailToShareItems:(NSArray*)items
                  error:(NSError*)error {
  (void)service;
  (void)items;
  if (self.ended)
    self.ended(error);
}
@end

namespace tavrin {
namespace {

constexpr const char* what = "send the files";
/// NSUserCancelledError
constexpr NSInteger userCancelled = 3072;

std::string troubleOf(NSError* error) {
  if (error == nil)
    return {};
  const bool isCancelled =
      error.code == userCancelled && [error.domain isEqualToString:NSCocoaErrorDomain];
  return failure(what, isCancelled ? "it was cancelled" : toText(error.localizedDescription));
}

/// The service keeps neither itself nor its delegate.
class Sending final : public Token {
public:
  Sending(RunLoop& runLoop, std::function<void(const SendingResult&)> done) {
    const auto life = alive_.watch();
    tell_ = [&runLoop, life, done = std::move(done)](std::string trouble) {
      runLoop.post([life, done, trouble = std::move(trouble)] {
        if (!life.expired())
          done({trouble, false});
      });
    };
    delegate_.ended = [tell = tell_](NSError* error) { tell(troubleOf(error)); };
  }
  ~Sending() override { delegate_.ended = nullptr; }

  void begin(const std::vector<std::filesystem::path>& files) {
    NSMutableArray<NSURL*>* items = [NSMutableArray array];
    for (const auto& file : files)
      [items addObject:toFileURL(file)];
    service_ = [NSSharingService sharingServiceNamed:NSSharingServiceNameSendViaAirDrop];
    if (service_ == nil || ![service_ canPerformWithItems:items]) {
      tell_(failure(what, "AirDrop is not available"));
      return;
    }
    service_.delegate = delegate_;
    [service_ performWithItems:items];
  }

private:
  Lifetime alive_;
  std::function<void(std::string)> tell_;
  NSSharingService* service_ = nil;
  TavrinSharingDelegate* delegate_ = [[TavrinSharingDelegate alloc] init];
};

class MacNearbyDevices final : public NearbyDevices {
public:
  explicit MacNearbyDevices(RunLoop& runLoop) : runLoop_(runLoop) {
    if (isAvailable())
      devices_.push_back(
          {"airdrop", "AirDrop", NearbyDevice::Kind::other, "AirDrop"});
  }

  const std::vector<NearbyDevice>& devices() const override { return devices_; }
  bool isAvailable() const override {
    return [NSSharingService sharingServiceNamed:NSSharingServiceNameSendViaAirDrop] != nil;
  }
  Advice advice() const override {
    const char* words = "Switch AirDrop on in the Finder, under Go.";
    return {words, words};
  }
  void refresh() override {}
  TokenPtr observe(std::function<void()>) override { return std::make_unique<Token>(); }

  TokenPtr send(const NearbyDevice&, std::vector<std::filesystem::path> files,
                std::function<void(const SendingProgress&)>,
                std::function<void(const SendingResult&)> done) override {
    auto sending = std::make_unique<Sending>(runLoop_, std::move(done));
    sending->begin(files);
    return sending;
  }

private:
  RunLoop& runLoop_;
  std::vector<NearbyDevice> devices_;
};

} // namespace

std::unique_ptr<NearbyDevices> makeMacNearbyDevices(RunLoop& runLoop) {
  return std::make_unique<MacNearbyDevices>(runLoop);
}

} // namespace tavrin

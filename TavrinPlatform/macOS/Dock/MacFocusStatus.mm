#include "TavrinPlatform/macOS/Dock/MacFocusStatus.h"

#import <Intents/Intents.h>

namespace tavrin {
namespace {

class MacFocusStatus final : public FocusStatusProvider {
public:
  std::optional<bool> isFocused() override {
    @autoreleasepool {
      NSNumber* flag = INFocusStatusCenter.defaultCenter.focusStatus.isFocused;
      return flag != nil ? std::optional(flag.boolValue != NO) : std::nullopt;
    }
  }
  bool isAuthorized() override {
    @autoreleasepool {
      return INFocusStatusCenter.defaultCenter.authorizationStatus ==
             INFocusStatusAuthorizationStatusAuthorized;
    }
  }
};

} // namespace

std::unique_ptr<FocusStatusProvider> makeMacFocusStatus() {
  return std::make_unique<MacFocusStatus>();
}

} // namespace tavrin

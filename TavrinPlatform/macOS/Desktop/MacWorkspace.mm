#include "TavrinPlatform/macOS/Desktop/MacWorkspace.h"

#include "TavrinPlatform/POSIX/HandlerList.h"
#include "TavrinPlatform/macOS/Base/MacObservation.h"
#include "TavrinPlatform/macOS/Base/MacText.h"

#import <AppKit/AppKit.h>

#include <list>
#include <set>
#include <unicode/timezone.h>

static NSString* const appearanceKey = @"effectiveAppearance";

@interface TavrinAppearanceObserver : NSObject
- (instancetype)initWithHandler:(std::function<void()>)handler;
- (void)end;
@end

@implementation TavrinAppearanceObserver {
  std::function<void()> _handler;
}

- (instancetype)initWithHandler:(std::function<void()>)handler {
  self = [super init];
  if (self != nil) {
    _handler = std::move(handler);
    [NSApplication.sharedApplication addObserver:self
                                      forKeyPath:appearanceKey
                                         options:NSKeyValueObservingOptions{}
                                         context:nullptr];
  }
  return self;
}

- (void)end {
  [NSApplication.sharedApplication removeObserver:self forKeyPath:appearanceKey context:nullptr];
}

- (void)observeValueForKeyPath:(NSString*)path
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
  if ([path isEqualToString:appearanceKey])
    _handler();
  else
    [super observeValueForKeyPath:path ofObject:object change:change context:context];
}
@end

namespace tavrin {
namespace {

class MacWorkspace final : public Workspace {
public:
  explicit MacWorkspace(const FileManager& files) {
    const auto wish = files.environment("TAVRIN_APPEARANCE");
    if (wish == "dark" || wish == "light")
      wishesDark_ = wish == "dark";
  }
  ~MacWorkspace() override { [appearanceObserver_ end]; }

  std::optional<RunningApplication> frontmostApplication() const override {
    NSRunningApplication* front = NSWorkspace.sharedWorkspace.frontmostApplication;
    if (front == nil)
      return std::nullopt;
    return RunningApplication{front.processIdentifier, toText(front.bundleIdentifier),
                              toText(front.localizedName)};
  }

  void open(const std::string& target) override {
    NSURL* url = target.starts_with('/') ? toFileURL(target) : nil;
    if (url == nil)
      url = [NSURL URLWithString:toNSString(target)];
    if (url != nil)
      [NSWorkspace.sharedWorkspace openURL:url];
  }

  bool openActivityMonitor() override {
    NSURL* monitor = [NSWorkspace.sharedWorkspace
        URLForApplicationWithBundleIdentifier:@"com.apple.ActivityMonitor"];
    return monitor != nil && [NSWorkspace.sharedWorkspace openURL:monitor];
  }

  TokenPtr observeWake(std::function<void()> handler) override {
    watch(NSWorkspace.sharedWorkspace.notificationCenter, NSWorkspaceDidWakeNotification,
          [this] { wake_.call(); });
    return wake_.add(std::move(handler));
  }

  TokenPtr observeDayChange(std::function<void()> handler) override {
    watch(NSNotificationCenter.defaultCenter, NSCalendarDayChangedNotification,
          [this] { day_.call(); });
    return day_.add(std::move(handler));
  }

  TokenPtr observeClockChange(std::function<void()> handler) override {
    NSNotificationCenter* center = NSNotificationCenter.defaultCenter;
    watch(center, NSSystemClockDidChangeNotification, [this] { clock_.call(); });
    watch(center, NSSystemTimeZoneDidChangeNotification, [this] {
      // Both libraries keep the zone they began with.
      [NSTimeZone resetSystemTimeZone];
      icu::TimeZone::adoptDefault(icu::TimeZone::detectHostTimeZone());
      clock_.call();
    });
    return clock_.add(std::move(handler));
  }

  bool isLowPowerMode() const override { return NSProcessInfo.processInfo.lowPowerModeEnabled; }
  TokenPtr observeLowPowerMode(std::function<void()> handler) override {
    watch(NSNotificationCenter.defaultCenter, NSProcessInfoPowerStateDidChangeNotification,
          [this] { power_.call(); });
    return power_.add(std::move(handler));
  }

  bool prefersReducedMotion() const override {
    return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
  }
  bool prefersDarkAppearance() const override {
    if (wishesDark_)
      return *wishesDark_;
    NSAppearanceName best = [NSApplication.sharedApplication.effectiveAppearance
        bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
    return best != nil && [best isEqualToString:NSAppearanceNameDarkAqua];
  }
  std::optional<std::string> interfaceFontFamily() const override { return std::nullopt; }

  TokenPtr observeAppearance(std::function<void()> handler) override {
    watch(NSWorkspace.sharedWorkspace.notificationCenter,
          NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification,
          [this] { appearance_.call(); });
    if (appearanceObserver_ == nil)
      appearanceObserver_ =
          [[TavrinAppearanceObserver alloc] initWithHandler:[this] { appearance_.call(); }];
    return appearance_.add(std::move(handler));
  }

private:
  /// The first observer of a notice brings it about that it is listened to.
  void watch(NSNotificationCenter* center, NSNotificationName name, std::function<void()> heard) {
    if (watched_.insert(toText(name)).second)
      observations_.emplace_back(center, name, std::move(heard));
  }

  std::optional<bool> wishesDark_;
  HandlerList wake_;
  HandlerList day_;
  HandlerList clock_;
  HandlerList power_;
  HandlerList appearance_;
  std::set<std::string> watched_;
  std::list<MacObservation> observations_;
  TavrinAppearanceObserver* appearanceObserver_ = nil;
};

} // namespace

std::unique_ptr<Workspace> makeMacWorkspace(const FileManager& files) {
  return std::make_unique<MacWorkspace>(files);
}

} // namespace tavrin

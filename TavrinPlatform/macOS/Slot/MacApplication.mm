#include "TavrinPlatform/macOS/Slot/MacApplication.h"

#include "TavrinPlatform/macOS/Base/MacText.h"
#include "TavrinPlatform/macOS/Desktop/ApplicationRequest.h"
#include "TavrinPlatform/macOS/Desktop/MacNotifications.h"

#import <AppKit/AppKit.h>
#include <QCoreApplication>
#include <optional>
#include <sys/resource.h>

@interface TavrinApplicationDelegate : NSObject <NSApplicationDelegate>
@property(nonatomic) tavrin::MacApplication::Parts* parts;
@end

namespace tavrin {

struct MacApplication::Parts {
  explicit Parts(MacApplication& application) : application(application) {}

  MacApplication& application;
  TavrinApplicationDelegate* delegate = nil;
  std::optional<NSInteger> attention;
  std::function<void()> launched;
  bool isLaunched = false;
  bool isTerminated = false;
  /// Files that came before the launch was over.
  std::vector<std::filesystem::path> early;
  /// What other applications ask for, as words; those too that came before the launch was over.
  std::vector<std::string> asked;
  TokenPtr requests;

  void hearRequests();
  void ask(const std::string& word);
  void didLaunch();
  void reopen();
  bool open(const std::vector<std::filesystem::path>& files);
};

MacApplication::MacApplication(std::vector<std::string> arguments)
    : arguments_(std::move(arguments)), parts_(std::make_unique<Parts>(*this)) {
  // Else the toolkit takes the focus at every start, also at one that is only to show the tile.
  qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
  parts_->delegate = [[TavrinApplicationDelegate alloc] init];
  parts_->delegate.parts = parts_.get();
  NSApplication* application = NSApplication.sharedApplication;
  application.delegate = parts_->delegate;
  [application setActivationPolicy:NSApplicationActivationPolicyRegular];
}

MacApplication::~MacApplication() {
  parts_->delegate.parts = nullptr;
}

int MacApplication::run(std::function<void()> launched) {
  if (parts_->isTerminated)
    return 0;
  parts_->launched = std::move(launched);
  if (onAction)
    parts_->hearRequests();
  return QCoreApplication::exec();
}

void MacApplication::Parts::hearRequests() {
  asked = application.arguments_;
  const std::string identifier = toText(NSBundle.mainBundle.bundleIdentifier);
  if (!identifier.empty())
    requests = makeMacDistributedNotificationCenter()->observe(
        requestNotification(identifier), [this](const auto& word) {
          if (isLaunched)
            ask(word.value_or(""));
          else
            asked.push_back(word.value_or(""));
        });
}

void MacApplication::Parts::ask(const std::string& word) {
  if (const auto request = requestIn(word))
    application.onAction(request->first, request->second);
}

void MacApplication::Parts::didLaunch() {
  if (isLaunched)
    return;
  isLaunched = true;
  if (launched)
    launched();
  if (!early.empty() && application.onOpenFiles)
    application.onOpenFiles(early);
  early.clear();
  for (const auto& word : std::exchange(asked, {}))
    ask(word);
}

void MacApplication::Parts::reopen() {
  if (application.hasJustClosedPanel && application.hasJustClosedPanel())
    return;
  if (application.onReopen)
    application.onReopen();
}

bool MacApplication::Parts::open(const std::vector<std::filesystem::path>& files) {
  if (isLaunched)
    return application.onOpenFiles && application.onOpenFiles(files);
  early.insert(early.end(), files.begin(), files.end());
  return true;
}

void MacApplication::terminate() {
  // The toolkit's loop ends and `main` goes on; -[NSApplication terminate:] would end the process.
  parts_->isTerminated = true;
  QCoreApplication::quit();
}

void MacApplication::requestUserAttention() {
  cancelUserAttention();
  parts_->attention = [NSApplication.sharedApplication requestUserAttention:NSCriticalRequest];
}

void MacApplication::cancelUserAttention() {
  if (parts_->attention)
    [NSApplication.sharedApplication cancelUserAttentionRequest:*parts_->attention];
  parts_->attention.reset();
}

void MacApplication::request(const std::string& identifier, const std::string& action,
                             const std::string& object) {
  @autoreleasepool {
    if (NSURL* bundle = bundleOfApplication(identifier))
      [NSWorkspace.sharedWorkspace openApplicationAtURL:bundle
                                          configuration:openingWith(identifier, action, object)
                                      completionHandler:nil];
  }
}

/// Other programs of the user need the system's leave to read this one's memory as it is.
void MacApplication::keepMemoryPrivate() {
  const rlimit none{0, 0};
  ::setrlimit(RLIMIT_CORE, &none);
}

} // namespace tavrin

@implementation TavrinApplicationDelegate
- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  (void)notification;
  if (self.parts != nullptr)
    self.parts->didLaunch();
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)flag {
  (void)sender;
  (void)flag;
  if (self.parts != nullptr)
    self.parts->reopen();
  // The system is not to open or raise a window by itself.
  return NO;
}

- (void)applicationDidResignActive:(NSNotification*)notification {
  (void)notification;
  if (self.parts != nullptr && self.parts->application.onResignActive)
    self.parts->application.onResignActive();
}

- (void)application:(NSApplication*)sender openFiles:(NSArray<NSString*>*)names {
  std::vector<std::filesystem::path> files;
  for (NSString* name in names)
    files.emplace_back(name.fileSystemRepresentation);
  const bool isTaken = self.parts != nullptr && self.parts->open(files);
  [sender replyToOpenOrPrint:isTaken ? NSApplicationDelegateReplySuccess
                                     : NSApplicationDelegateReplyFailure];
}

- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)app {
  (void)app;
  return YES;
}
@end

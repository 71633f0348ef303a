#include "TavrinPlatform/macOS/Files/MacUserFiles.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinPlatform/macOS/Base/MacText.h"

#import <AppKit/AppKit.h>

namespace tavrin {
namespace {

class MacUserFiles final : public UserFiles {
public:
  std::filesystem::path homeFolder() const override {
    return toPath(NSFileManager.defaultManager.homeDirectoryForCurrentUser);
  }
  std::filesystem::path downloadsFolder() const override {
    return folder(NSDownloadsDirectory, "Downloads");
  }
  std::filesystem::path screenshotFolder() const override {
    @autoreleasepool {
      NSUserDefaults* program =
          [[NSUserDefaults alloc] initWithSuiteName:@"com.apple.screencapture"];
      const auto chosen = pathOfText(toText([program stringForKey:@"location"]), homeFolder());
      return chosen ? *chosen : folder(NSDesktopDirectory, "Desktop");
    }
  }

  bool moveToTrash(const std::filesystem::path& file) override {
    @autoreleasepool {
      return [NSFileManager.defaultManager trashItemAtURL:toFileURL(file)
                                         resultingItemURL:nil
                                                    error:nil];
    }
  }

  void open(const std::filesystem::path& file) override {
    [NSWorkspace.sharedWorkspace openURL:toFileURL(file)];
  }
  void reveal(const std::filesystem::path& file) override {
    [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ toFileURL(file) ]];
  }

private:
  std::filesystem::path folder(NSSearchPathDirectory which, const char* usualName) const {
    @autoreleasepool {
      const auto found = toPath([NSFileManager.defaultManager URLsForDirectory:which
                                                                     inDomains:NSUserDomainMask]
                                    .firstObject);
      return found.empty() ? homeFolder() / usualName : found;
    }
  }
};

} // namespace

std::unique_ptr<UserFiles> makeMacUserFiles() {
  return std::make_unique<MacUserFiles>();
}

} // namespace tavrin

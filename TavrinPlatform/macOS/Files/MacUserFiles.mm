#include "TavrinPlatform/macOS/Files/MacUserFiles.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinPlatform/macOS/Base/MacText.h"

#import <AppKit/AppKit.h>

#include <map>
#include <mutex>

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
      NSURL* place = nil;
      if (![NSFileManager.defaultManager trashItemAtURL:toFileURL(file)
                                       resultingItemURL:&place
                                                  error:nil])
        return false;
      const std::lock_guard lock(mutex_);
      inTrash_[file] = toPath(place);
      return true;
    }
  }
  /// What this process put there: nobody else tells where it lies.
  bool restoreFromTrash(const std::filesystem::path& file) override {
    @autoreleasepool {
      const std::lock_guard lock(mutex_);
      const auto found = inTrash_.find(file);
      // Something in its place is not overwritten.
      if (found == inTrash_.end() ||
          ![NSFileManager.defaultManager moveItemAtURL:toFileURL(found->second)
                                                 toURL:toFileURL(file)
                                                 error:nil])
        return false;
      inTrash_.erase(found);
      return true;
    }
  }

  void open(const std::filesystem::path& file) override {
    [NSWorkspace.sharedWorkspace openURL:toFileURL(file)];
  }
  void reveal(const std::filesystem::path& file) override {
    [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ toFileURL(file) ]];
  }

private:
  std::mutex mutex_;
  /// Where what was moved there lies, by where it was.
  std::map<std::filesystem::path, std::filesystem::path> inTrash_;

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

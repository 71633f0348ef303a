#include "TavrinPlatform/macOS/Applications/MacApplicationLibrary.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/POSIX/HandlerList.h"
#include "TavrinPlatform/macOS/Applications/IconImage.h"
#include "TavrinPlatform/POSIX/LivingToken.h"
#include "TavrinPlatform/macOS/Base/MacText.h"

#import <AppKit/AppKit.h>

#include <algorithm>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> applicationFolders() {
  std::vector<fs::path> folders;
  for (NSURL* url in [NSFileManager.defaultManager URLsForDirectory:NSAllApplicationsDirectory
                                                          inDomains:NSAllDomainsMask])
    folders.push_back(toPath(url));
  return folders;
}

/// An application that no such folder has.
constexpr const char* finder = "/System/Library/CoreServices/Finder.app";

std::string infoText(NSBundle* bundle, NSString* key) {
  id value = [bundle objectForInfoDictionaryKey:key];
  return [value isKindOfClass:NSString.class] ? toText((NSString*)value) : std::string();
}

/// No value for what is no application.
std::optional<ApplicationInfo> infoOf(const fs::path& path) {
  NSURL* url = toFileURL(path);
  NSBundle* bundle = path.extension() == ".app" ? [NSBundle bundleWithURL:url] : nil;
  if (bundle == nil || bundle.bundleIdentifier == nil || bundle.executableURL == nil)
    return std::nullopt;
  ApplicationInfo info;
  info.id = toText(bundle.bundleIdentifier);
  info.path = path.native();
  info.icon = info.path;
  info.name = toText([NSFileManager.defaultManager displayNameAtPath:toNSString(info.path)]);
  if (info.name.ends_with(".app"))
    info.name.resize(info.name.size() - 4);
  info.comment = infoText(bundle, @"CFBundleGetInfoString");
  return info;
}

std::vector<ApplicationInfo> listed() {
  std::vector<ApplicationInfo> found;
  if (auto info = infoOf(finder))
    found.push_back(std::move(*info));
  for (const auto& folder : applicationFolders()) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error))
      if (auto info = infoOf(entry.path()))
        found.push_back(std::move(*info));
  }
  std::ranges::sort(found, [](const auto& a, const auto& b) {
    const NSComparisonResult order =
        [toNSString(a.name) localizedCaseInsensitiveCompare:toNSString(b.name)];
    return order != NSOrderedSame ? order == NSOrderedAscending : a.path < b.path;
  });
  // The first of two with one identifier is the one that is started by it.
  std::vector<ApplicationInfo> once;
  for (auto& info : found)
    if (std::ranges::find(once, info.id, &ApplicationInfo::id) == once.end())
      once.push_back(std::move(info));
  return once;
}

std::optional<ApplicationInfo> identified(const std::string& identifier) {
  NSURL* url = [NSWorkspace.sharedWorkspace
      URLForApplicationWithBundleIdentifier:toNSString(identifier)];
  return url != nil ? infoOf(toPath(url)) : std::nullopt;
}

std::optional<ApplicationInfo> located(const AppEntry& app) {
  if (auto info = infoOf(app.path))
    return info;
  const std::string id = app.bundleIdentifier.value_or(app.path);
  if (id.empty() || id.starts_with('/'))
    return std::nullopt;
  // An identifier may end like a bundle's name.
  if (auto info = identified(id))
    return info;
  return id.ends_with(".app") ? identified(id.substr(0, id.size() - 4)) : std::nullopt;
}

class MacApplicationLibrary final : public ApplicationLibrary {
public:
  MacApplicationLibrary(RunLoop& runLoop, FolderWatch& folders)
      : runLoop_(runLoop), folders_(folders) {}

  TokenPtr list(std::function<void(std::vector<ApplicationInfo>)> answer) override {
    return answerLater<std::vector<ApplicationInfo>>(
        runLoop_,
        [] {
          @autoreleasepool {
            return listed();
          }
        },
        std::move(answer));
  }

  TokenPtr
  find(std::vector<AppEntry> entries,
       std::function<void(std::vector<std::optional<ApplicationInfo>>)> answer) override {
    return answerLater<std::vector<std::optional<ApplicationInfo>>>(
        runLoop_,
        [entries = std::move(entries)] {
          @autoreleasepool {
            std::vector<std::optional<ApplicationInfo>> found;
            for (const auto& entry : entries)
              found.push_back(located(entry));
            return found;
          }
        },
        std::move(answer));
  }

  TokenPtr icon(const std::string& icon, int points, int scale,
                std::function<void(QImage)> answer) override {
    return answerLater<QImage>(
        runLoop_,
        [icon, pixels = points * scale] {
          @autoreleasepool {
            // The system has a picture for everything, also for what is not there.
            if (![NSFileManager.defaultManager fileExistsAtPath:toNSString(icon)])
              return QImage();
            return makeImage([NSWorkspace.sharedWorkspace iconForFile:toNSString(icon)], pixels);
          }
        },
        std::move(answer));
  }

  TokenPtr launch(const std::string& id, const std::string&,
                  std::function<void(const std::string& trouble)> answer) override {
    auto token = std::make_unique<LivingToken>();
    RunLoop* runLoop = &runLoop_;
    const auto life = token->life();
    const std::string what = "start \"" + id + "\"";
    const auto tell = [runLoop, life, answer = std::move(answer)](std::string trouble) {
      postAnswer<std::string>(*runLoop, life, answer, std::move(trouble));
    };
    NSURL* url =
        [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:toNSString(id)];
    if (url == nil) {
      tell(failure(what, "it is not installed"));
      return token;
    }
    [NSWorkspace.sharedWorkspace
        openApplicationAtURL:url
               configuration:[NSWorkspaceOpenConfiguration configuration]
           completionHandler:^(NSRunningApplication*, NSError* error) {
             tell(error != nil ? failure(what, toText(error.localizedDescription)) : "");
           }];
    return token;
  }

  TokenPtr observe(std::function<void()> handler) override {
    if (!follower_) {
      FolderRequest request;
      request.folders = applicationFolders();
      request.includesFolders = true;
      request.classify = [](std::string_view name) {
        return name.ends_with(".app") ? FolderEntry::wanted : FolderEntry::ignored;
      };
      request.limit = 1000;
      // What it tells first is how it was.
      follower_ = folders_.follow(std::move(request), [this](const FolderListing&) {
        if (std::exchange(hasListed_, true))
          changes_.call();
      });
    }
    return changes_.add(std::move(handler));
  }

private:
  RunLoop& runLoop_;
  FolderWatch& folders_;
  HandlerList changes_;
  std::unique_ptr<FolderFollower> follower_;
  bool hasListed_ = false;
};

} // namespace

std::unique_ptr<ApplicationLibrary> makeMacApplicationLibrary(RunLoop& runLoop,
                                                              FolderWatch& folders) {
  return std::make_unique<MacApplicationLibrary>(runLoop, folders);
}

} // namespace tavrin

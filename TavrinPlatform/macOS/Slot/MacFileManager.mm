#include "TavrinPlatform/macOS/Slot/MacFileManager.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/macOS/Base/MacText.h"

namespace tavrin {
namespace {

class MacFileManager final : public FileManager {
public:
  explicit MacFileManager(std::map<std::string, std::string> environment)
      : environment_(std::move(environment)) {}

  std::filesystem::path homeFolder() const override {
    return toPath(NSFileManager.defaultManager.homeDirectoryForCurrentUser);
  }
  std::filesystem::path applicationSupportFolder() const override {
    return folder(NSApplicationSupportDirectory, "Application Support");
  }
  std::filesystem::path cachesFolder() const override { return folder(NSCachesDirectory, "Caches"); }
  /// Where command-line programs keep theirs here too.
  std::filesystem::path stateFolder() const override { return homeFolder() / ".local/state"; }
  std::optional<std::string> environment(const std::string& name) const override {
    const auto found = environment_.find(name);
    return found != environment_.end() ? std::optional(found->second) : std::nullopt;
  }
  std::vector<std::filesystem::path> toolFolders() const override {
    return {"/opt/homebrew/bin", "/usr/local/bin", "/opt/local/bin", homeFolder() / ".local/bin"};
  }
  /// The system has none of its own.
  std::filesystem::path unicodeFolder() const override {
    return environment("TAVRIN_UNICODE_DIR").value_or("/opt/homebrew/share/unicode");
  }

private:
  static std::filesystem::path folder(NSSearchPathDirectory which, const char* name) {
    const auto path = toPath(
        [NSFileManager.defaultManager URLsForDirectory:which inDomains:NSUserDomainMask].firstObject);
    if (path.empty())
      throw FileError(failure(std::string("find the ") + name + " folder", "this user has none"));
    return path;
  }

  std::map<std::string, std::string> environment_;
};

} // namespace

std::unique_ptr<FileManager> makeMacFileManager() {
  std::map<std::string, std::string> environment;
  NSDictionary<NSString*, NSString*>* now = NSProcessInfo.processInfo.environment;
  for (NSString* name in now.allKeys)
    environment.emplace(toText(name), toText(now[name]));
  return makeMacFileManager(std::move(environment));
}

std::unique_ptr<FileManager> makeMacFileManager(std::map<std::string, std::string> environment) {
  return std::make_unique<MacFileManager>(std::move(environment));
}

} // namespace tavrin

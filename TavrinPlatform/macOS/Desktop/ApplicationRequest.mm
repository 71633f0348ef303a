#include "TavrinPlatform/macOS/Desktop/ApplicationRequest.h"

#include "TavrinPlatform/macOS/Base/MacText.h"
#include "TavrinPlatform/macOS/Desktop/MacNotifications.h"

namespace tavrin {

std::string requestWord(const std::string& action, const std::string& object) {
  return "--" + action + "=" + object;
}

std::optional<std::pair<std::string, std::string>> requestIn(const std::string& word) {
  const auto equals = word.find('=');
  if (!word.starts_with("--") || equals == std::string::npos || equals == 2)
    return std::nullopt;
  return std::pair(word.substr(2, equals - 2), word.substr(equals + 1));
}

std::string requestNotification(const std::string& identifier) {
  return identifier + ".request";
}

NSURL* bundleOfApplication(const std::string& identifier) {
  NSString* wanted = toNSString(identifier);
  const auto own = toPath(NSBundle.mainBundle.bundleURL);
  std::error_code error;
  if (own.extension() == ".app")
    for (const auto& entry : std::filesystem::directory_iterator(own.parent_path(), error)) {
      NSURL* url = entry.path().extension() == ".app" ? toFileURL(entry.path()) : nil;
      NSBundle* bundle = url != nil ? [NSBundle bundleWithURL:url] : nil;
      if ([bundle.bundleIdentifier isEqualToString:wanted])
        return url;
    }
  return [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:wanted];
}

NSWorkspaceOpenConfiguration* openingWith(const std::string& identifier, const std::string& action,
                                          const std::string& object) {
  const std::string word = requestWord(action, object);
  NSWorkspaceOpenConfiguration* configuration = [NSWorkspaceOpenConfiguration configuration];
  NSArray<NSRunningApplication*>* running =
      [NSRunningApplication runningApplicationsWithBundleIdentifier:toNSString(identifier)];
  // Arguments reach only a process that begins.
  if (running.count > 0)
    makeMacDistributedNotificationCenter()->post(requestNotification(identifier), word);
  else
    configuration.arguments = @[ toNSString(word) ];
  return configuration;
}

} // namespace tavrin

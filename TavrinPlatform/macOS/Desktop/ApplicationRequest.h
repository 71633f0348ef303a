#pragma once

#import <AppKit/AppKit.h>

#include <optional>
#include <string>
#include <utility>

namespace tavrin {

/// What an application is asked to do with something, as a word of its command line: an
/// application that starts finds it among its arguments, one that runs hears it as the object of
/// the notification `requestNotification`.
std::string requestWord(const std::string& action, const std::string& object);
/// The action and the object; no value for other words.
std::optional<std::pair<std::string, std::string>> requestIn(const std::string& word);
/// By the application's identifier.
std::string requestNotification(const std::string& identifier);

/// The bundle of the application: the one that lies beside this process's own bundle, which the
/// system may not know of yet; else the one that the system knows. Nil where there is none.
NSURL* _Nullable bundleOfApplication(const std::string& identifier);

/// How to open an application so that it gets the request: one that runs is told here, and then
/// only comes to the front.
NSWorkspaceOpenConfiguration* _Nonnull openingWith(const std::string& identifier,
                                                   const std::string& action,
                                                   const std::string& object);

} // namespace tavrin

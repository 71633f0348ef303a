#pragma once

#include <string>

namespace tavrin {

/// What a start-up notice says of the program that is being started.
struct StartupNotice {
  std::string name;
  std::string icon;
  /// The program's own.
  std::string binary;
  /// The class of the window that ends the notice; may be empty.
  std::string windowClass;
  /// The desktop entry's file.
  std::string file;
};

/// Tells the window manager and the panels of an X server that a program is being started, after
/// the Startup Notification Protocol (freedesktop.org): they show that until its window comes.
/// On a connection of its own, from any thread. The notice's id, for DESKTOP_STARTUP_ID; empty
/// where there is no such server.
std::string beginStartupNotice(const std::string& display, const StartupNotice& notice);
/// The program will not come, or needs no notice.
void endStartupNotice(const std::string& display, const std::string& id);

/// A value of a notice's message, in quotes and escaped.
std::string quotedNoticeValue(const std::string& value);

} // namespace tavrin

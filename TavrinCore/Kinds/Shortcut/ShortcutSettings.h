#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// One action of the user's own.
struct ShortcutSettings {
  /// The action's name; empty shows the widget's own.
  std::string title;
  /// A command line for the user's shell.
  std::optional<std::string> command;
  /// A desktop entry, with an action of it after a slash: org.gnome.Terminal.desktop/new-window.
  /// Used where there is no command.
  std::optional<std::string> desktopAction;
  /// Where the command runs; none is the home folder.
  std::optional<std::string> workingFolder;
  std::string symbolName = "bolt.fill";
  std::string colorHex = "#5E5CE6";
  /// Seconds after which a command is stopped.
  int timeLimit = 60;
  bool showsOutput = true;

  static constexpr auto fields() {
    return std::tuple{
        optional("title", &ShortcutSettings::title).titled("Title"),
        optional("command", &ShortcutSettings::command).titled("Command"),
        optional("desktopAction", &ShortcutSettings::desktopAction).titled("Desktop action"),
        optional("workingFolder", &ShortcutSettings::workingFolder).titled("Folder"),
        optional("symbolName", &ShortcutSettings::symbolName).titled("Symbol"),
        optional("colorHex", &ShortcutSettings::colorHex).titled("Colour"),
        optional("timeLimit", &ShortcutSettings::timeLimit)
            .titled("Time limit")
            .in("s")
            .ranging(1, 3600),
        optional("showsOutput", &ShortcutSettings::showsOutput).titled("Show the output")};
  }
  bool operator==(const ShortcutSettings&) const = default;
};

} // namespace tavrin

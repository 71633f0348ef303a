#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// One action of the user's own.
struct ShortcutSettings {
  static constexpr std::string_view kindKey = "shortcut";

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
        optional("title", &ShortcutSettings::title)
            .titled("Title")
            .helped("The action's name on the tile.")
            .absentAs("The widget's name"),
        optional("command", &ShortcutSettings::command)
            .titled("Command")
            .helped("A line for your shell, run when the tile is clicked.")
            .grouped("Action")
            .as(FieldRole::command)
            .absentAs("None"),
        optional("desktopAction", &ShortcutSettings::desktopAction)
            .titled("Desktop action")
            .helped("An application, or one of its actions, started where there is no command.")
            .grouped("Action")
            .as(FieldRole::applicationAction)
            .absentAs("None")
            .enabledWhen("command", "null"),
        optional("workingFolder", &ShortcutSettings::workingFolder)
            .titled("Folder")
            .helped("Where the command runs.")
            .grouped("Action")
            .as(FieldRole::folder)
            .absentAs("Home folder")
            .enabledUnless("command", "null"),
        optional("symbolName", &ShortcutSettings::symbolName)
            .titled("Symbol")
            .helped("The mark on the tile.")
            .as(FieldRole::symbol),
        optional("colorHex", &ShortcutSettings::colorHex)
            .titled("Colour")
            .helped("The ground of the mark.")
            .as(FieldRole::colour),
        optional("timeLimit", &ShortcutSettings::timeLimit)
            .titled("Time limit")
            .helped("After which a command is stopped.")
            .grouped("Action")
            .enabledUnless("command", "null")
            .in("s")
            .ranging(1, 3600),
        optional("showsOutput", &ShortcutSettings::showsOutput)
            .titled("Show the output")
            .helped("What the command wrote, in the panel.")
            .grouped("Action")
            .enabledUnless("command", "null")};
  }
  bool operator==(const ShortcutSettings&) const = default;
};

} // namespace tavrin

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// An application as its file describes it, in the desktop entry format 1.5 of freedesktop.org.
/// Texts are UTF-8 in the user's language where the file has it.
struct DesktopEntry {
  /// One more thing the application can be asked to do.
  struct Action {
    std::string id;
    std::string name;
    std::string icon;
    std::string exec;
    bool operator==(const Action&) const = default;
  };

  /// A file with more bytes is not worth reading.
  static constexpr std::size_t maximumSize = 512 * 1024;

  std::string type;
  std::string name;
  std::string genericName;
  std::string comment;
  std::string icon;
  /// The command line, its escapes undone and its quotes and field codes as they were.
  std::string exec;
  std::string tryExec;
  std::string workingFolder;
  std::string startupClass;
  std::vector<std::string> keywords;
  std::vector<std::string> categories;
  std::vector<std::string> onlyShowIn;
  std::vector<std::string> notShowIn;
  std::vector<Action> actions;
  /// As good as not there.
  bool isHidden = false;
  /// Works, and is not shown in menus.
  bool isNoDisplay = false;
  bool runsInTerminal = false;
  bool isActivatedOnBus = false;
  /// Whether it ends the start-up notice itself; no value where the file does not say.
  std::optional<bool> notifiesStartup;

  /// No value for a text without the group "Desktop Entry". `locale` as in LC_MESSAGES:
  /// "de_AT.UTF-8@euro".
  static std::optional<DesktopEntry> parse(std::string_view text, std::string_view locale);

  /// Something one can start, whether or not it belongs in menus.
  bool isApplication() const;
  /// Whether menus of the desktops show it. Their names as in XDG_CURRENT_DESKTOP: "ubuntu:GNOME".
  bool isShownIn(std::string_view desktops) const;
  bool hasCategory(std::string_view category) const;
  /// Whether it belongs to one of the desktops, shown in that alone or filed under its name.
  bool isMadeFor(std::string_view desktops) const;
  /// Null when there is no such action.
  const Action* action(std::string_view id) const;

  bool operator==(const DesktopEntry&) const = default;
};

/// What stands for the field codes of a command line.
struct ExecFields {
  std::string name;
  std::string icon;
  /// The entry's own path.
  std::string file;
};

/// The words of a command line of `DesktopEntry::exec`: quotes and their escapes undone, the codes
/// of `fields` filled in, those for files and the outdated ones dropped. Empty where there is no
/// command.
std::vector<std::string> execWords(std::string_view exec, const ExecFields& fields = {});

/// The endings of localised keys for a locale, the best first: "de_AT@euro", "de_AT", "de@euro",
/// "de". None for "C" and "POSIX".
std::vector<std::string> localeKeys(std::string_view locale);

} // namespace tavrin

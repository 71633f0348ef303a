#pragma once

#include "TavrinCore/Dock/DockItem.h"
#include "TavrinPlatform/RunLoop.h"

#include <QImage>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tavrin {

/// An application of this desktop, its texts in the user's language.
struct ApplicationInfo {
  /// One more thing it can be asked to do, such as opening a private window.
  struct Action {
    std::string id;
    std::string name;
    bool operator==(const Action&) const = default;
  };

  /// The desktop's own name for it: "org.gnome.Terminal.desktop".
  std::string id;
  /// The file that describes it.
  std::string path;
  std::string name;
  /// What it is, such as "Web Browser"; may be empty.
  std::string genericName;
  std::string comment;
  /// Further words it may be looked for by.
  std::vector<std::string> keywords;
  /// Names its picture; for `icon`.
  std::string icon;
  std::vector<Action> actions;
  bool operator==(const ApplicationInfo&) const = default;
};

/// The desktop's own list of applications. Files are read and pictures decoded off the main
/// thread; every answer comes on it, not before the call returns, unless its token goes first.
class ApplicationLibrary {
public:
  virtual ~ApplicationLibrary() = default;

  /// The applications that menus show, by name.
  [[nodiscard]] virtual TokenPtr list(std::function<void(std::vector<ApplicationInfo>)> answer) = 0;
  /// One answer for each entry: no value for an application that is not installed. An entry names
  /// its application by the path of its file, or by its desktop name, in `path` or as the bundle
  /// identifier, with or without its ending.
  [[nodiscard]] virtual TokenPtr
  find(std::vector<AppEntry> entries,
       std::function<void(std::vector<std::optional<ApplicationInfo>>)> answer) = 0;
  /// The picture `icon` of the user's theme, a square of `points` times `scale` pixels; a null
  /// image where there is none.
  [[nodiscard]] virtual TokenPtr icon(const std::string& icon, int points, int scale,
                                      std::function<void(QImage)> answer) = 0;
  /// Starts the application, or has it do the action `action` where that is not empty, with the
  /// desktop's start-up notice and in a session of its own. `answer` gets the whole sentence of
  /// what went wrong, or nothing.
  [[nodiscard]] virtual TokenPtr launch(const std::string& id, const std::string& action,
                                        std::function<void(const std::string& trouble)> answer) = 0;
  /// Applications or the icon theme may have changed.
  [[nodiscard]] virtual TokenPtr observe(std::function<void()> handler) = 0;
};

} // namespace tavrin

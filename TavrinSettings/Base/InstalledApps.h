#pragma once

#include "TavrinPlatform/ApplicationLibrary.h"
#include "TavrinWidgetsUI/Kit/Pictures/AppIcons.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace tavrin {

/// The applications of Dock layouts and collections as this computer has them, each looked for once.
class InstalledApps {
public:
  explicit InstalledApps(ApplicationLibrary& library);

  struct App {
    /// Null while it is being read, and where there is none.
    QImage icon;
    /// Known not to be installed.
    bool isGone = false;
  };
  /// Its icon a square of `points` times `scale` pixels.
  App app(const AppEntry& entry, int points, double scale);

  /// More is known of one than was.
  std::function<void()> onLoad;

private:
  struct Found {
    /// No value until it is known; in it none for an application that is not installed.
    std::optional<std::optional<std::string>> icon;
    TokenPtr asking;
  };

  ApplicationLibrary& library_;
  AppIcons icons_;
  /// By path and bundle identifier.
  std::map<std::pair<std::string, std::string>, Found> found_;
  TokenPtr changes_;
};

} // namespace tavrin

#pragma once

#include "TavrinPlatform/ApplicationLibrary.h"
#include "TavrinSettings/Form/FormServices.h"
#include "TavrinWidgetsUI/Kit/Pictures/AppIcons.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tavrin {

/// The applications of Dock layouts and collections as this computer has them, each looked for
/// once.
class InstalledApps {
public:
  explicit InstalledApps(ApplicationLibrary& library);

  /// Its icon a square of `points` times `scale` pixels.
  InstalledApp app(const AppEntry& entry, int points, double scale);
  /// Calls `changed` when more is known of one than was. For the main thread; the token goes before
  /// this does.
  [[nodiscard]] TokenPtr observe(std::function<void()> changed);

private:
  struct Found {
    /// No value until it is known; in it none for an application that is not installed.
    std::optional<std::optional<std::string>> icon;
    TokenPtr asking;
  };

  struct Observer;
  void tell();

  ApplicationLibrary& library_;
  std::vector<Observer*> observers_;
  AppIcons icons_;
  /// By path and bundle identifier.
  std::map<std::pair<std::string, std::string>, Found> found_;
  TokenPtr changes_;
};

} // namespace tavrin

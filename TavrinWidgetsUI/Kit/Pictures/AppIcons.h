#pragma once

#include "TavrinPlatform/ApplicationLibrary.h"

#include <functional>
#include <map>

namespace tavrin {

/// Pictures of applications at the sizes they are shown, each asked for once.
class AppIcons {
public:
  explicit AppIcons(ApplicationLibrary& library) : library_(library) {}
  AppIcons(const AppIcons&) = delete;
  AppIcons& operator=(const AppIcons&) = delete;

  /// A square of `points` times `scale` pixels. Null while it is being read, and where there is
  /// none.
  QImage image(const std::string& icon, int points, int scale);
  /// All are asked for again when they are wanted next; until then the old ones stand.
  void refresh();

  /// A picture has come.
  std::function<void()> onLoad;

private:
  struct Key {
    std::string icon;
    int points = 0;
    int scale = 1;
    auto operator<=>(const Key&) const = default;
  };
  struct Kept {
    QImage image;
    bool isStale = true;
    TokenPtr asking;
  };

  ApplicationLibrary& library_;
  std::map<Key, Kept> kept_;
};

} // namespace tavrin

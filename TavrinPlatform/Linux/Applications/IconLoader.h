#pragma once

#include "TavrinCore/Desktop/IconTheme.h"
#include "TavrinPlatform/POSIX/Module.h"

#include <QImage>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace tavrin {

/// Finds icons in the theme and decodes them at the size they are shown. For one thread at a time.
class IconLoader {
public:
  /// `icons` hold themes, `loose` pictures without one. Drawn vector pictures are kept in `cache`.
  struct Places {
    std::vector<std::filesystem::path> icons;
    std::vector<std::filesystem::path> loose;
    std::filesystem::path cache;
  };
  IconLoader(Places places, ModuleFolder modules);

  /// A square of `points` times `scale` pixels; null where there is no such picture.
  QImage load(const std::string& name, int points, int scale, const std::string& theme);
  /// Themes are read again.
  void forget() { themes_.clear(); }

private:
  std::optional<IconTheme> readTheme(const std::string& name);
  QImage drawVector(const std::filesystem::path& file, int pixels);

  Places places_;
  ModuleFolder modules_;
  std::map<std::string, std::optional<IconTheme>> themes_;
};

/// A picture of pixels in `file` as a square of that side, its proportions kept; null for what is
/// no picture, or one too large to decode.
QImage readSquare(const std::filesystem::path& file, int pixels);

} // namespace tavrin

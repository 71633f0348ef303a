#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// An icon theme's list of folders, in the index format 0.13 of freedesktop.org.
/// Sizes are points.
struct IconTheme {
  struct Folder {
    enum class Type { fixed, scalable, threshold };
    /// Below the theme's folder.
    std::string path;
    Type type = Type::threshold;
    int size = 0;
    int scale = 1;
    int minimumSize = 0;
    int maximumSize = 0;
    int threshold = 2;

    /// Whether its pictures are made for `points` at `scale` pixels a point.
    bool suits(int points, int pixelsPerPoint) const;
    /// By how many pixels its pictures miss that size.
    int distance(int points, int pixelsPerPoint) const;
    bool operator==(const Folder&) const = default;
  };

  static constexpr std::size_t maximumSize = 512 * 1024;

  std::vector<std::string> inherits;
  std::vector<Folder> folders;

  /// Of a file "index.theme"; what is wrong in it is left out.
  static IconTheme parse(std::string_view text);
  bool operator==(const IconTheme&) const = default;
};

/// Where pictures are looked for: the folders that hold themes, and what is on the disk.
struct IconSources {
  /// The base folders, the user's own first. Pictures without a theme lie right in them.
  std::vector<std::filesystem::path> folders;
  std::function<std::optional<IconTheme>(const std::string& theme)> theme;
  std::function<bool(const std::filesystem::path&)> exists;
};

/// The best file for the icon `name` at `points` and `scale`: from `theme`, from those it inherits,
/// from "hicolor", from outside all themes. A name that is an absolute path is that file. No value
/// where there is none.
std::optional<std::filesystem::path> findIcon(const std::string& name, int points, int scale,
                                              const std::string& theme, const IconSources& sources);

} // namespace tavrin

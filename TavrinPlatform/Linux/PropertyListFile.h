#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <plist/plist.h>
#include <string>

namespace tavrin {

/// A property list file read once, XML or binary, whose root is a dictionary.
class PropertyListFile {
public:
  /// No value when the file is missing, too long, or no property list with such a root.
  static std::optional<PropertyListFile> read(const std::filesystem::path& path);

  std::optional<std::string> string(const std::string& key) const;
  /// The entry when it is a whole number.
  std::optional<long> integer(const std::string& key) const;
  /// The entry when it is a number of either sort.
  std::optional<double> number(const std::string& key) const;
  std::optional<bool> boolean(const std::string& key) const;

private:
  struct Free {
    void operator()(void* node) const { plist_free(node); }
  };
  explicit PropertyListFile(plist_t root) : root_(root) {}
  plist_t entry(const std::string& key) const;

  std::unique_ptr<void, Free> root_;
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Dock/PropertyList.h"

#include <filesystem>
#include <memory>
#include <optional>
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
  explicit PropertyListFile(std::shared_ptr<const PropertyList> root) : root_(std::move(root)) {}

  std::shared_ptr<const PropertyList> root_;
};

} // namespace tavrin

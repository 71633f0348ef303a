#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tavrin {

/// The application bundle this process was started from, and its information dictionary.
class MainBundle {
public:
  virtual ~MainBundle() = default;
  /// The `.app` folder; no value for a program outside a bundle.
  virtual std::optional<std::filesystem::path> path() const = 0;
  /// "CFBundleIdentifier"; no value where the dictionary has none.
  virtual std::optional<std::string> identifier() const = 0;
  /// The entry when it is a text.
  virtual std::optional<std::string> string(const std::string& key) const = 0;
  /// The entry when it is a whole number.
  virtual std::optional<long> integer(const std::string& key) const = 0;
};

} // namespace tavrin

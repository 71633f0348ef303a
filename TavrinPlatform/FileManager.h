#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tavrin {

/// The user's places, and the process environment as it was at start.
class FileManager {
public:
  virtual ~FileManager() = default;
  virtual std::filesystem::path homeFolder() const = 0;
  /// Throws FileError where the user has none.
  virtual std::filesystem::path applicationSupportFolder() const = 0;
  virtual std::filesystem::path cachesFolder() const = 0;
  virtual std::optional<std::string> environment(const std::string& name) const = 0;
};

} // namespace tavrin

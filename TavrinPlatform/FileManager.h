#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tavrin {

/// The user's places, and the process environment as it was at start.
class FileManager {
public:
  virtual ~FileManager() = default;
  virtual std::filesystem::path homeFolder() const = 0;
  /// Throws FileError where the user has none.
  virtual std::filesystem::path applicationSupportFolder() const = 0;
  virtual std::filesystem::path cachesFolder() const = 0;
  /// Where logs and what else outlives a start, but is no document, goes.
  virtual std::filesystem::path stateFolder() const = 0;
  virtual std::optional<std::string> environment(const std::string& name) const = 0;

  /// Where people's command-line tools are put, the likelier folder first.
  virtual std::vector<std::filesystem::path> toolFolders() const { return {}; }
  /// The folder of the Unicode character data ("emoji/emoji-test.txt" and, below "cldr", the
  /// annotations); empty where the system has none.
  virtual std::filesystem::path unicodeFolder() const { return {}; }
};

} // namespace tavrin

#pragma once

#include "TavrinPlatform/FileManager.h"

#include <map>

namespace tavrin {

/// The XDG base folders (XDG_DATA_HOME and its like). A variable that holds no absolute path
/// counts as unset.
class LinuxFileManager final : public FileManager {
public:
  using Environment = std::map<std::string, std::string, std::less<>>;

  /// With the environment of this process as it is now.
  LinuxFileManager();
  explicit LinuxFileManager(Environment environment);

  std::filesystem::path homeFolder() const override;
  std::filesystem::path applicationSupportFolder() const override;
  std::filesystem::path cachesFolder() const override;
  std::filesystem::path stateFolder() const override;
  std::optional<std::string> environment(const std::string& name) const override;
  std::vector<std::filesystem::path> toolFolders() const override;
  /// TAVRIN_UNICODE_DIR, where it is set.
  std::filesystem::path unicodeFolder() const override;

  /// Where settings belong. Throws FileError where the user has no such place.
  std::filesystem::path configurationFolder() const;

private:
  std::filesystem::path folder(const char* variable, const char* underHome) const;

  Environment environment_;
};

} // namespace tavrin

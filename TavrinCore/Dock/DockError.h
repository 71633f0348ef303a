#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace tavrin {

/// What can go wrong between Tavrin and the Dock. `what()` is the whole sentence for the user.
class DockError : public std::runtime_error {
public:
  enum class Case {
    plistNotFound,
    plistReadFailed,
    plistMalformed,
    plistWriteFailed,
    unsupportedItemType,
    dockReloadFailed,
    fileNotFound,
    profileNotFound,
    noBackupAvailable,
  };

  static DockError plistNotFound(const std::filesystem::path& file);
  static DockError plistReadFailed(const std::filesystem::path& file, std::string underlying);
  static DockError plistMalformed(const std::filesystem::path& file, std::string underlying);
  static DockError plistWriteFailed(const std::filesystem::path& file, std::string underlying);
  static DockError unsupportedItemType(std::string type);
  static DockError dockReloadFailed(std::string reason);
  static DockError fileNotFound(const std::filesystem::path& path);
  /// Also stands for a widget that is not in the widgets file, with the widget's identifier.
  static DockError profileNotFound(std::string id);
  static DockError noBackupAvailable();

  Case kind() const { return case_; }
  /// The file the error is about; empty for the cases without one.
  const std::filesystem::path& file() const { return file_; }
  /// The same about one tile of a Dock: its section's key, its number from 1 and its label.
  DockError ofTile(std::string_view section, std::size_t number, std::string_view label) const;

  /// Which tile it is about: "tile 3 of persistent-apps, "Mail""; empty for none in particular. No
  /// part of the sentence.
  const std::string& tile() const { return tile_; }
  /// The reason, tile type or identifier; empty for the cases without one.
  const std::string& detail() const { return detail_; }

  bool operator==(const DockError& other) const {
    return case_ == other.case_ && file_ == other.file_ && detail_ == other.detail_;
  }

private:
  DockError(Case kind, const std::filesystem::path& file, std::string detail,
            const std::string& sentence);

  Case case_;
  std::filesystem::path file_;
  std::string detail_;
  std::string tile_;
};

} // namespace tavrin

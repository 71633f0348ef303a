#pragma once

#include "TavrinCore/Desktop/DesktopEntry.h"
#include "TavrinPlatform/FileManager.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tavrin {

/// A desktop entry and where it was found.
struct FoundEntry {
  /// The entry's desktop file ID: the path below "applications", "/" as "-".
  std::string id;
  std::filesystem::path file;
  DesktopEntry entry;
};

/// The desktop's entries in the user's data folder and the system's, the user's own first.
class DesktopEntries {
public:
  /// `folders` are those named "applications", the first one hiding the others' files of the same
  /// id; `locale` as DesktopEntry takes it.
  DesktopEntries(std::vector<std::filesystem::path> folders, std::string locale);
  static DesktopEntries ofUser(const FileManager& files);

  const std::vector<std::filesystem::path>& folders() const { return folders_; }
  /// All that can be read, hidden ones too, folder by folder in the order of their ids.
  std::vector<FoundEntry> all() const;
  /// By id, with or without ".desktop", or by the absolute path of a file. No value for one that
  /// is hidden, is no application or lacks its program.
  std::optional<FoundEntry> application(const std::string& name) const;

  /// The first application that is called so, or whose program is, case aside: "xterm" where the
  /// entry is "debian-xterm.desktop". Reads all entries.
  std::optional<FoundEntry> applicationCalled(std::string_view name) const;

private:
  std::optional<FoundEntry> read(std::string id, const std::filesystem::path& file) const;
  std::optional<std::filesystem::path> fileOf(const std::string& id) const;

  std::vector<std::filesystem::path> folders_;
  std::string locale_;
};

/// The user's data folder, then the system's.
std::vector<std::filesystem::path> dataFolders(const FileManager& files);
/// Whether a program of that name or path can be run.
bool isInstalled(const std::string& program);
/// Whether the entry's program is there, and the one it names to be tested for.
bool hasProgram(const DesktopEntry& entry);

} // namespace tavrin

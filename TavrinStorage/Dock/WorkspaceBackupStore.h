#pragma once

#include "TavrinCore/Profiles/Profile.h"
#include "TavrinCore/Widgets/WidgetsFile.h"

#include <filesystem>
#include <functional>

namespace tavrin {

/// A copy of the files that make up the whole set-up, in a folder of its own.
struct WorkspaceBackup {
  enum class Reason { launch, quit, restore };

  std::filesystem::path url;
  Date date;
  Reason reason = Reason::launch;

  std::string id() const { return url.filename().string(); }
  bool operator==(const WorkspaceBackup&) const = default;
};

template <> struct EnumNames<WorkspaceBackup::Reason> {
  static constexpr std::array names = {
      std::pair{WorkspaceBackup::Reason::launch, std::string_view("launch")},
      std::pair{WorkspaceBackup::Reason::quit, std::string_view("quit")},
      std::pair{WorkspaceBackup::Reason::restore, std::string_view("restore")}};
};

/// What "info.json" in a backup's folder says.
struct WorkspaceBackupInfo {
  /// ISO 8601, to the second.
  std::string date;
  WorkspaceBackup::Reason reason = WorkspaceBackup::Reason::launch;

  static constexpr auto fields() {
    return std::tuple{required("date", &WorkspaceBackupInfo::date),
                      required("reason", &WorkspaceBackupInfo::reason)};
  }

  /// Throws JSONError and CodingError.
  static WorkspaceBackupInfo parse(std::string_view text);
};

/// Makes, lists and restores backups of the data folder's profiles and widgets. Throws FileError.
class WorkspaceBackupStore {
public:
  static constexpr std::size_t defaultLimit = 40;
  static constexpr std::string_view directoryName = "workspace-backups";
  static constexpr std::array<std::string_view, 2> fileNames = {"profiles.json", "widgets.json"};

  struct Contents {
    ProfilesFile profiles;
    WidgetsFile widgets;
  };

  explicit WorkspaceBackupStore(std::filesystem::path dataDirectory,
                                std::size_t limit = defaultLimit);

  const std::filesystem::path& directory() const { return directory_; }

  /// Copies the files as they are. No value when there are none, or when the newest backup holds
  /// the same bytes. Deletes the oldest beyond the limit, never the one just made.
  std::optional<WorkspaceBackup> backUp(WorkspaceBackup::Reason reason, Date moment);
  /// Newest first. A folder without a readable "info.json" is none.
  std::vector<WorkspaceBackup> list() const;
  /// A file that the backup lacks reads as an empty one.
  Contents contents(const WorkspaceBackup& backup) const;
  /// Backs up the files as they are, then puts the backup's in their place, each whole. What the
  /// backup lacks stays. Whoever calls announces the change.
  void restore(const WorkspaceBackup& backup, Date moment);

  /// Told by `restore`, before it writes, of the backup that holds the files as they are.
  std::function<void(const WorkspaceBackup&)> didKeepCurrent;

private:
  using Files = std::vector<std::pair<std::string, std::string>>;

  static Files read(const std::filesystem::path& folder);
  std::optional<WorkspaceBackup> backUp(WorkspaceBackup::Reason reason, Date moment,
                                        const std::vector<std::filesystem::path>& spared);
  std::filesystem::path makeFolder(WorkspaceBackup::Reason reason, Date moment) const;
  void prune(const std::vector<std::filesystem::path>& spared) const;

  std::filesystem::path dataDirectory_;
  std::filesystem::path directory_;
  std::size_t limit_;
};

} // namespace tavrin

#include "TavrinStorage/Dock/BackupManager.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"
#include "TavrinStorage/Timestamp.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>
#include <system_error>
#include <tuple>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view prefix = "dock-";
constexpr std::string_view extension = ".plist";

/// "dock-<stamp>-001.plist" in its parts. Counters are compared as numbers: as texts the first
/// file of a moment, which has none, would sort after the others.
struct BackupName {
  std::string stamp;
  int counter = 0;

  static BackupName of(const fs::path& file) {
    const auto stem = file.stem().string().substr(prefix.size());
    BackupName name{stem};
    if (stem.size() > fileStampLength + 1 && stem[fileStampLength] == '-') {
      const char* digits = stem.data() + fileStampLength + 1;
      const char* end = stem.data() + stem.size();
      if (std::from_chars(digits, end, name.counter).ptr == end)
        name.stamp.resize(fileStampLength);
      else
        name.counter = 0;
    }
    return name;
  }

  std::string fileName() const {
    return counter == 0 ? fmt::format("{}{}{}", prefix, stamp, extension)
                        : fmt::format("{}{}-{:03}{}", prefix, stamp, counter, extension);
  }

  auto operator<=>(const BackupName&) const = default;
};

void makeFolder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error)
    throw FileError(failure(translated("make the folder {folder}", {{"folder", folder.string()}}),
                            error.message()),
                    error.message());
}

} // namespace

fs::path BackupManager::snapshot(Date now) const {
  const DockTiles tiles = source->readTiles();
  makeFolder(directory);
  BackupName name{fileStamp(now)};
  if (const auto latest = latestBackup()) {
    const auto last = BackupName::of(*latest);
    if (last.stamp >= name.stamp && last.stamp.size() == fileStampLength)
      name = {last.stamp, last.counter + 1};
  }
  const auto file = directory / name.fileName();
  PlistFileBackend(file).writeTiles(tiles);
  return file;
}

std::vector<fs::path> BackupManager::listBackups() const {
  std::error_code error;
  fs::directory_iterator entry(directory, error);
  if (error == std::errc::no_such_file_or_directory)
    return {};
  std::vector<std::pair<BackupName, fs::path>> found;
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const auto& path = entry->path();
    if (path.extension() == extension && path.filename().string().starts_with(prefix))
      found.emplace_back(BackupName::of(path), path);
  }
  if (error)
    throw FileError(
        failure(translated("list the folder {folder}", {{"folder", directory.string()}}),
                error.message()),
        error.message());
  std::sort(found.begin(), found.end());
  std::vector<fs::path> files;
  for (auto& [unused, path] : found)
    files.push_back(std::move(path));
  return files;
}

std::optional<fs::path> BackupManager::latestBackup() const {
  auto backups = listBackups();
  return backups.empty() ? std::nullopt : std::optional(std::move(backups.back()));
}

std::optional<Date> BackupManager::dateOf(const fs::path& backup) {
  if (!backup.filename().string().starts_with(prefix))
    return std::nullopt;
  return dateFromFileStamp(BackupName::of(backup).stamp);
}

void BackupManager::prune(std::size_t count) const {
  const auto backups = listBackups();
  for (std::size_t i = 0; i + count < backups.size(); ++i) {
    std::error_code error;
    if (!fs::remove(backups[i], error) && error)
      throw FileError(
          failure(translated("delete {file}", {{"file", backups[i].string()}}), error.message()),
          error.message());
  }
}

} // namespace tavrin

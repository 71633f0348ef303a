#include "TavrinStorage/Dock/WorkspaceBackupStore.h"

#include "TavrinCore/Base/ISO8601.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinPlatform/Files/DocumentLock.h"
#include "TavrinStorage/Timestamp.h"

#include <algorithm>
#include <fmt/format.h>
#include <system_error>
#include <tuple>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view infoName = "info.json";

[[noreturn]] void fail(std::string_view what, const fs::path& path, const std::string& reason) {
  throw FileError(failure(translated(what, {{"path", path.string()}}), reason), reason);
}

std::optional<WorkspaceBackup> backupIn(const fs::path& folder) {
  try {
    const auto text = readFile(folder / infoName, 64 * 1024);
    if (!text)
      return std::nullopt;
    const auto info = WorkspaceBackupInfo::parse(*text);
    return WorkspaceBackup{folder, *dateFromISO8601(info.date), info.reason};
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

/// Orders the backups of one second by their folders' names: time, then counter.
std::pair<std::string, std::string> nameOrder(const WorkspaceBackup& backup) {
  const auto name = backup.id();
  const auto rest = name.size() > fileStampLength ? name.substr(fileStampLength) : std::string();
  const bool hasCounter = rest.size() > 1 && rest[1] >= '0' && rest[1] <= '9';
  return {name.substr(0, fileStampLength), hasCounter ? rest : std::string()};
}

template <class Document> Document decodeFile(const fs::path& file) {
  const auto json = readJSONFile(file);
  try {
    return json ? decode<Document>(*json) : Document();
  } catch (const CodingError& error) {
    fail(marked("read {path}"), file, error.what());
  }
}

/// The note goes first: whatever ends this halfway, what is left is no backup.
void deleteBackup(const fs::path& folder) {
  std::error_code error;
  fs::remove(folder / infoName, error);
  if (!error)
    fs::remove_all(folder, error);
  if (error)
    fail(marked("delete {path}"), folder, error.message());
}

} // namespace

WorkspaceBackupInfo WorkspaceBackupInfo::parse(std::string_view text) {
  auto info = decode<WorkspaceBackupInfo>(JSONValue::parse(text));
  if (!dateFromISO8601(info.date))
    throw CodingError("date", "must be a date");
  return info;
}

WorkspaceBackupStore::WorkspaceBackupStore(fs::path dataDirectory, std::size_t limit)
    : dataDirectory_(std::move(dataDirectory)), directory_(dataDirectory_ / directoryName),
      limit_(limit) {}

WorkspaceBackupStore::Files WorkspaceBackupStore::read(const fs::path& folder) {
  Files files;
  for (const auto name : fileNames)
    if (auto bytes = readFile(folder / name))
      files.emplace_back(name, std::move(*bytes));
  return files;
}

std::optional<WorkspaceBackup> WorkspaceBackupStore::backUp(WorkspaceBackup::Reason reason,
                                                            Date moment) {
  return backUp(reason, moment, {});
}

std::optional<WorkspaceBackup> WorkspaceBackupStore::backUp(WorkspaceBackup::Reason reason,
                                                            Date moment,
                                                            const std::vector<fs::path>& spared) {
  const Files files = read(dataDirectory_);
  if (files.empty())
    return std::nullopt;
  const auto backups = list();
  if (!backups.empty() && std::all_of(files.begin(), files.end(), [&](const auto& file) {
        return readFile(backups.front().url / file.first) == file.second;
      }))
    return std::nullopt;
  const fs::path folder = makeFolder(reason, moment);
  for (const auto& [name, bytes] : files)
    writeFileAtomically(folder / name, bytes);
  const WorkspaceBackupInfo info{iso8601(moment), reason};
  writeJSONFile(folder / infoName, encode(info));
  auto keep = spared;
  keep.push_back(folder);
  prune(keep);
  return WorkspaceBackup{folder, *dateFromISO8601(info.date), reason};
}

fs::path WorkspaceBackupStore::makeFolder(WorkspaceBackup::Reason reason, Date moment) const {
  const auto stamp = fileStamp(moment);
  fs::path folder = directory_ / fmt::format("{}-{}", stamp, nameOf(reason));
  std::error_code error;
  fs::create_directories(directory_, error);
  // Made, not looked for: another process may make one at the same moment.
  for (int counter = 1; !error && !fs::create_directory(folder, error); ++counter) {
    if (error == std::errc::file_exists)
      error.clear();
    folder = directory_ / fmt::format("{}-{:03}-{}", stamp, counter, nameOf(reason));
  }
  if (error)
    fail(marked("make the folder {path}"), folder, error.message());
  return folder;
}

std::vector<WorkspaceBackup> WorkspaceBackupStore::list() const {
  std::error_code error;
  fs::directory_iterator entry(directory_, error);
  if (error == std::errc::no_such_file_or_directory)
    return {};
  std::vector<WorkspaceBackup> backups;
  for (; !error && entry != fs::directory_iterator(); entry.increment(error))
    if (auto backup = backupIn(entry->path()))
      backups.push_back(std::move(*backup));
  if (error)
    fail(marked("list the folder {path}"), directory_, error.message());
  std::sort(backups.begin(), backups.end(), [](const auto& one, const auto& other) {
    return std::tuple(one.date, nameOrder(one)) > std::tuple(other.date, nameOrder(other));
  });
  return backups;
}

void WorkspaceBackupStore::prune(const std::vector<fs::path>& spared) const {
  auto backups = list();
  for (std::size_t left = backups.size(); left > limit_ && !backups.empty(); backups.pop_back()) {
    const auto& oldest = backups.back().url;
    if (std::find(spared.begin(), spared.end(), oldest) != spared.end())
      continue;
    deleteBackup(oldest);
    --left;
  }
}

WorkspaceBackupStore::Contents WorkspaceBackupStore::contents(const WorkspaceBackup& backup) const {
  return {decodeFile<ProfilesFile>(backup.url / fileNames[0]),
          decodeFile<WidgetsFile>(backup.url / fileNames[1])};
}

void WorkspaceBackupStore::restore(const WorkspaceBackup& backup, Date moment) {
  const Files files = read(backup.url);
  // In the order of the names, and from before the copy is made: what others say they wrote is in
  // the copy or comes after the restoring.
  std::vector<DocumentLock> locks;
  locks.reserve(fileNames.size());
  for (const auto name : fileNames)
    if (locks.emplace_back(dataDirectory_ / name).isTaken())
      fail(marked("replace {path}"), dataDirectory_ / name,
           translated("another process is changing it"));
  auto kept = backUp(WorkspaceBackup::Reason::restore, moment, {backup.url});
  if (!kept && !read(dataDirectory_).empty())
    kept = list().front();
  if (kept && didKeepCurrent)
    didKeepCurrent(*kept);
  for (const auto& [name, bytes] : files)
    writeFileAtomically(dataDirectory_ / name, bytes);
}

} // namespace tavrin

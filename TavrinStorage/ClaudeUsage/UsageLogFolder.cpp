#include "TavrinStorage/ClaudeUsage/UsageLogFolder.h"

#include "TavrinPlatform/Files/FileTimes.h"
#include "TavrinPlatform/Files/OpenFolder.h"

#include <algorithm>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tavrin {
namespace {

constexpr int mostLevels = 8;
constexpr std::string_view extension = ".jsonl";
constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
/// File systems stamp changes with a clock that moves a few times in this long.
constexpr double clockStep = 0.05;

Date modificationDate(const struct stat& info) {
  return Date::fromUnixSeconds(static_cast<double>(modificationTime(info).tv_sec) +
                               static_cast<double>(modificationTime(info).tv_nsec) * 1e-9);
}

UsageLogState state(const struct stat& info) {
  return {info.st_dev, info.st_ino, S_ISREG(info.st_mode) ? info.st_size : -1,
          modificationDate(info)};
}

} // namespace

UsageLogFolder::UsageLogFolder(const std::filesystem::path& folder, IsProject isProject)
    : isProject_(std::move(isProject)), root_{folder.string(), {}} {}

void UsageLogFolder::forEachLog(const Found& found) {
  visit(root_, ::open(root_.path.c_str(), folderFlags), 0, found);
}

/// Closes the descriptor.
void UsageLogFolder::visit(Folder& folder, int descriptor, int level, const Found& found) {
  if (descriptor < 0)
    return;
  const auto now = usageLogState(descriptor);
  if (!folder.isSettled || now != folder.state) {
    folder.state = now;
    folder.isSettled = readNames(folder, descriptor, level) && isSettled(now.modified);
  }
  for (const auto& log : folder.logs) {
    struct stat info {};
    if (::fstatat(descriptor, log.name.c_str(), &info, 0) == 0 && S_ISREG(info.st_mode))
      found(log.path, folder.project, tavrin::state(info));
  }
  for (auto& below : folder.folders)
    visit(
        below,
        ::openat(descriptor, below.path.c_str() + folder.path.size() + 1, folderFlags | O_NOFOLLOW),
        level + 1, found);
  ::close(descriptor);
}

/// False where they cannot be read.
bool UsageLogFolder::readNames(Folder& folder, int descriptor, int level) {
  auto before = std::exchange(folder.folders, {});
  folder.logs.clear();
  const int own = ::openat(descriptor, ".", folderFlags);
  const OpenFolder entries(own < 0 ? nullptr : ::fdopendir(own));
  if (!entries) {
    if (own >= 0)
      ::close(own);
    return false;
  }
  while (const auto* entry = ::readdir(entries.get())) {
    const std::string_view name = entry->d_name;
    const auto path = folder.path + "/" + entry->d_name;
    if (name.ends_with(extension) && name.size() > extension.size()) {
      folder.logs.push_back({entry->d_name, path});
    } else if (name != "." && name != ".." && level < mostLevels &&
               (entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN)) {
      const auto known = std::find_if(before.begin(), before.end(),
                                      [&](const Folder& one) { return one.path == path; });
      if (known != before.end())
        folder.folders.push_back(std::move(*known));
      else
        folder.folders.push_back({path, isProject_(name) ? std::string(name) : folder.project});
    }
  }
  return true;
}

UsageLogState usageLogState(int descriptor) {
  struct stat info {};
  return ::fstat(descriptor, &info) == 0 ? state(info) : UsageLogState{0, 0, -1, {}};
}

bool isSettled(Date modified) {
  // The system's clock, which also stamps files.
  timespec now{};
  std::timespec_get(&now, TIME_UTC);
  const Date date = Date::fromUnixSeconds(static_cast<double>(now.tv_sec) +
                                          static_cast<double>(now.tv_nsec) * 1e-9);
  return date.since(modified) > clockStep;
}

} // namespace tavrin

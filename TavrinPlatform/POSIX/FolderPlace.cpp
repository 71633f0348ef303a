#include "TavrinPlatform/POSIX/FolderPlace.h"

#include "TavrinPlatform/Files/FileTimes.h"
#include "TavrinPlatform/Files/OpenFolder.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace tavrin {

namespace {

constexpr std::size_t mostUnfinished = 1000;

double seconds(const timespec& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

bool isSame(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

OpenFolder openFolder(const std::filesystem::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0)
    return nullptr;
  DIR* folder = ::fdopendir(descriptor);
  if (folder == nullptr)
    ::close(descriptor);
  return OpenFolder(folder);
}

} // namespace

bool FolderPlace::isWanted(const struct stat& info) const {
  return S_ISREG(info.st_mode) || (request_.includesFolders && S_ISDIR(info.st_mode));
}

void FolderPlace::put(const std::string& name, const struct stat& info, bool isKnownNew) {
  FolderFile file;
  file.path = folder_ / name;
  // Nobody can set the change time, so it bounds the one that anybody can.
  const double changed = seconds(statusChangeTime(info));
  file.date = Date::fromUnixSeconds(request_.order == FolderRequest::Order::arrival
                                        ? changed
                                        : std::min(changed, seconds(modificationTime(info))));
  file.isFolder = S_ISDIR(info.st_mode);
  file.size = file.isFolder ? 0 : static_cast<std::uint64_t>(info.st_size);
  if (isKnownNew)
    files_.add(std::move(file));
  else
    files_.put(std::move(file));
}

void FolderPlace::scan(const std::function<bool()>& isStopped) {
  files_.clear();
  unfinished_.clear();
  touched.clear();
  needsScan = false;
  scanned_ = {};
  const OpenFolder folder = openFolder(folder_);
  if (!folder || ::fstat(::dirfd(folder.get()), &scanned_) != 0) {
    const bool isMissing = errno == ENOENT || errno == ENOTDIR || errno == ELOOP;
    state_ = isMissing ? FolderListing::State::missing : FolderListing::State::unreadable;
    return;
  }
  state_ = FolderListing::State::listed;
  while (const dirent* entry = ::readdir(folder.get())) {
    if (isStopped())
      return;
    const unsigned char type = entry->d_type;
    const bool canBeWanted = type == DT_REG || type == DT_LNK || type == DT_UNKNOWN ||
                             (type == DT_DIR && request_.includesFolders);
    const std::string name = entry->d_name;
    if (!canBeWanted || name == "." || name == "..")
      continue;
    const FolderEntry kind = request_.classify ? request_.classify(name) : FolderEntry::wanted;
    if (kind == FolderEntry::unfinished && unfinished_.size() < mostUnfinished)
      unfinished_.insert(name);
    struct stat info {};
    if (kind == FolderEntry::wanted &&
        ::fstatat(::dirfd(folder.get()), name.c_str(), &info, 0) == 0 && isWanted(info))
      put(name, info, true);
  }
}

void FolderPlace::look(const std::string& name) {
  const FolderEntry kind = request_.classify ? request_.classify(name) : FolderEntry::wanted;
  if (kind == FolderEntry::ignored)
    return;
  struct stat info {};
  const bool isThere = ::stat((folder_ / name).c_str(), &info) == 0 && isWanted(info);
  if (kind == FolderEntry::unfinished) {
    if (!isThere)
      unfinished_.erase(name);
    else if (unfinished_.size() < mostUnfinished)
      unfinished_.insert(name);
  } else if (isThere) {
    put(name, info, false);
  } else {
    files_.remove(folder_ / name);
  }
  needsScan = needsScan || files_.isShort();
}

bool FolderPlace::isSameFolder() const {
  struct stat info {};
  return ::stat(folder_.c_str(), &info) == 0 && info.st_dev == scanned_.st_dev &&
         info.st_ino == scanned_.st_ino;
}

bool FolderPlace::isUnchanged() const {
  struct stat info {};
  if (::stat(folder_.c_str(), &info) != 0)
    return state_ == FolderListing::State::missing;
  return info.st_dev == scanned_.st_dev && info.st_ino == scanned_.st_ino &&
         isSame(modificationTime(info), modificationTime(scanned_)) &&
         isSame(statusChangeTime(info), statusChangeTime(scanned_));
}

} // namespace tavrin

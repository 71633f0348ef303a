#include "TavrinPlatform/Files/DocumentLock.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/Files/FileTimes.h"
#include "TavrinPlatform/POSIX/SymbolicLinks.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>

namespace tavrin {
namespace {

namespace fs = std::filesystem;
using std::chrono::steady_clock;

constexpr std::chrono::microseconds shortestPause{500};
constexpr std::chrono::microseconds longestPause{10'000};

/// Beside the file that is replaced, so that all names of a document lead to one lock.
fs::path lockFileFor(const fs::path& document) {
  fs::path target = document;
  try {
    target = followLinks(document);
  } catch (const FileError&) {
    // The write says what is wrong.
  }
  return folderOf(target) / ("." + target.filename().string() + ".lock");
}

/// Whether `path` still names the open file: a holder removes it while others wait for it.
bool isStillThere(const Descriptor& file, const fs::path& path) {
  struct stat open {};
  struct stat named {};
  return ::fstat(file.number(), &open) == 0 && ::lstat(path.c_str(), &named) == 0 &&
         open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

/// Tells one holder's file from the next one's, which may have its number again.
struct HolderMark {
  std::uintmax_t number = 0;
  std::int64_t seconds = 0;
  std::int64_t nanoseconds = 0;
  bool operator==(const HolderMark&) const = default;
};

HolderMark holderMark(const Descriptor& file) {
  struct stat open {};
  if (::fstat(file.number(), &open) != 0)
    return {};
  const auto made = modificationTime(open);
  return {open.st_ino, made.tv_sec, made.tv_nsec};
}

enum class Attempt { held, taken, impossible };

Attempt tryToHold(const fs::path& path, Descriptor& file) {
  while (true) {
    file = Descriptor(
        ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    if (!file)
      return errno == EINTR ? Attempt::taken : Attempt::impossible;
    if (::flock(file.number(), LOCK_EX | LOCK_NB) != 0) {
      if (errno == EWOULDBLOCK || errno == EINTR)
        return Attempt::taken;
      // A lock that nobody can have is nobody's to remove but ours.
      ::unlink(path.c_str());
      return Attempt::impossible;
    }
    if (isStillThere(file, path))
      return Attempt::held;
  }
}

} // namespace

struct DocumentLock::Held {
  fs::path path;
  Descriptor file;

  Held(fs::path lockFile, Descriptor open) : path(std::move(lockFile)), file(std::move(open)) {}
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  /// Removed before it is released: whoever waits for this file finds it gone and makes another.
  ~Held() { ::unlink(path.c_str()); }
};

DocumentLock::DocumentLock(const fs::path& document) {
  const auto path = lockFileFor(document);
  const auto end = steady_clock::now() + std::chrono::duration<double>(longestWait);
  Descriptor file;
  std::optional<HolderMark> holder;
  for (auto pause = shortestPause;; pause = std::min(pause * 3 / 2, longestPause)) {
    const auto attempt = tryToHold(path, file);
    if (attempt == Attempt::held)
      held_ = std::make_unique<Held>(path, std::move(file));
    isTaken_ = attempt == Attempt::taken;
    if (isTaken_ && file) {
      const auto mark = holderMark(file);
      hasPassedOn_ |= holder && *holder != mark;
      holder = mark;
    }
    if (!isTaken_ || steady_clock::now() + pause >= end)
      return;
    std::this_thread::sleep_for(pause);
  }
}

DocumentLock::~DocumentLock() = default;
DocumentLock::DocumentLock(DocumentLock&&) noexcept = default;

} // namespace tavrin

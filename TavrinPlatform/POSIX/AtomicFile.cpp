#include "TavrinPlatform/Files/AtomicFile.h"

#include "TavrinCore/Base/UUID.h"
#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/Files/FileTimes.h"
#include "TavrinPlatform/POSIX/Flush.h"
#include "TavrinPlatform/POSIX/SymbolicLinks.h"

#include <cerrno>
#include <sys/stat.h>
#include <system_error>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view temporaryPrefix = ".tavrin-";
constexpr std::string_view temporarySuffix = ".tmp";
/// A temporary file this much older than a new one belongs to a process that was killed.
constexpr std::time_t abandonedAfterSeconds = 3600;

/// `action` has a place for the file.
[[noreturn]] void fail(const char* action, const fs::path& file, std::string_view reason) {
  throw FileError(failure(translated(action, {{"file", file.string()}}), reason), reason);
}

[[noreturn]] void failWithErrno(const char* action, const fs::path& file) {
  fail(action, file, std::generic_category().message(errno));
}

/// Removes the file when it goes, unless it was kept.
class TemporaryFile {
public:
  explicit TemporaryFile(fs::path path) : path_(std::move(path)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!isKept_)
      ::unlink(path_.c_str());
  }
  const fs::path& path() const { return path_; }
  void keep() { isKept_ = true; }

private:
  fs::path path_;
  bool isKept_ = false;
};

/// The permissions the new file gets; none leaves them as the process's mask makes them.
std::optional<mode_t> permissions(const fs::path& file, FileAccess access) {
  struct stat info {};
  const bool isThere = ::lstat(file.c_str(), &info) == 0;
  if (isThere && !S_ISREG(info.st_mode))
    fail(marked("replace {file}"), file, translated("it is not a regular file"));
  if (access == FileAccess::ownerOnly)
    return S_IRUSR | S_IWUSR;
  return isThere ? std::optional<mode_t>(info.st_mode & 0777) : std::nullopt;
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR)
      continue;
    if (written < 0)
      return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

void writeContents(const fs::path& temporary, const fs::path& file, std::string_view bytes,
                   std::optional<mode_t> mode, int descriptor) {
  if (mode && ::fchmod(descriptor, *mode) != 0)
    failWithErrno(marked("set the permissions of {file}"), temporary);
  if (!writeAll(descriptor, bytes))
    failWithErrno(marked("write the new contents of {file}"), file);
  if (!flushToDisk(descriptor))
    failWithErrno(marked("flush to disk {file}"), file);
}

void flushFolder(const fs::path& folder, const fs::path& file) {
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // A file system that cannot flush a folder says EINVAL; a folder may be writable but not
  // readable.
  if (!descriptor ? errno != EACCES : ::fsync(descriptor.number()) != 0 && errno != EINVAL)
    failWithErrno(marked("flush the folder of {file}"), file);
}

/// Removes what killed processes left in `folder`, judged by the file system's own clock.
void removeAbandoned(const fs::path& folder, std::time_t now) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const auto name = entry->path().filename().string();
    struct stat info {};
    if (name.starts_with(temporaryPrefix) && name.ends_with(temporarySuffix) &&
        ::lstat(entry->path().c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
        now - info.st_mtime > abandonedAfterSeconds)
      ::unlink(entry->path().c_str());
  }
}

std::string checkedText(const fs::path& file, const JSONValue& document) {
  std::string text = document.prettyPrinted();
  if (text.size() > JSONValue::maximumSize)
    fail(
        marked("write {file}"), file,
        translated("it would hold more than {number} bytes", {{"number", JSONValue::maximumSize}}));
  return text;
}

bool replaceFile(const fs::path& file, std::string_view bytes, FileAccess access,
                 const FileStamp* seen) {
  const fs::path target = followLinks(file);
  const fs::path folder = folderOf(target);
  const auto mode = permissions(target, access);
  const fs::path path = folder / (std::string(temporaryPrefix) + UUID::random().text() +
                                  std::string(temporarySuffix));
  const Descriptor descriptor(::open(path.c_str(),
                                     O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                                     access == FileAccess::ownerOnly ? 0600 : 0666));
  if (!descriptor)
    failWithErrno(marked("make a temporary file for {file}"), target);
  TemporaryFile temporary(path);
  writeContents(path, target, bytes, mode, descriptor.number());
  struct stat written {};
  ::fstat(descriptor.number(), &written);
  if (seen != nullptr && fileStamp(target) != *seen)
    return false;
  if (::rename(path.c_str(), target.c_str()) != 0)
    failWithErrno(marked("replace {file}"), target);
  temporary.keep();
  flushFolder(folder, target);
  removeAbandoned(folder, written.st_mtime);
  return true;
}

} // namespace

FileStamp fileStamp(const fs::path& file) {
  struct stat info {};
  if (::stat(file.c_str(), &info) != 0)
    return {};
  const timespec& changed = modificationTime(info);
  return {info.st_ino, std::int64_t{changed.tv_sec} * 1'000'000'000 + changed.tv_nsec,
          info.st_size};
}

void writeFileAtomically(const fs::path& file, std::string_view bytes, FileAccess access) {
  replaceFile(file, bytes, access, nullptr);
}

bool writeFileIfUnchanged(const fs::path& file, std::string_view bytes, const FileStamp& seen,
                          FileAccess access) {
  return replaceFile(file, bytes, access, &seen);
}

std::optional<std::string> readFile(const fs::path& file, std::size_t maximumSize) {
  constexpr std::size_t spareRoom = 64;
  // Without O_NONBLOCK a pipe in the file's place would wait for a writer.
  const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!descriptor) {
    if (errno == ENOENT)
      return std::nullopt;
    failWithErrno(marked("open {file}"), file);
  }
  struct stat info {};
  if (::fstat(descriptor.number(), &info) != 0)
    failWithErrno(marked("read {file}"), file);
  if (!S_ISREG(info.st_mode))
    fail(marked("read {file}"), file, translated("it is not a regular file"));
  std::string bytes;
  std::string buffer(64 * 1024, '\0');
  if (static_cast<std::uintmax_t>(info.st_size) <= maximumSize)
    // Parsers read a little beyond the end.
    bytes.reserve(static_cast<std::size_t>(info.st_size) + spareRoom);
  while (static_cast<std::uintmax_t>(info.st_size) <= maximumSize && bytes.size() <= maximumSize) {
    const ssize_t count = ::read(descriptor.number(), buffer.data(), buffer.size());
    if (count == 0)
      return bytes;
    if (count < 0 && errno != EINTR)
      failWithErrno(marked("read {file}"), file);
    if (count > 0)
      bytes.append(buffer, 0, static_cast<std::size_t>(count));
  }
  fail(marked("read {file}"), file,
       translated("it holds more than {number} bytes", {{"number", maximumSize}}));
}

std::optional<JSONValue> readJSONFile(const fs::path& file, std::size_t maximumSize) {
  const auto bytes = readFile(file, maximumSize);
  if (!bytes)
    return std::nullopt;
  try {
    return JSONValue::parse(*bytes);
  } catch (const JSONError& error) {
    fail(marked("read {file}"), file, error.what());
  }
}

void writeJSONFile(const fs::path& file, const JSONValue& document, FileAccess access) {
  writeFileAtomically(file, checkedText(file, document), access);
}

bool writeJSONFileIfUnchanged(const fs::path& file, const JSONValue& document,
                              const FileStamp& seen) {
  return writeFileIfUnchanged(file, checkedText(file, document), seen);
}

} // namespace tavrin

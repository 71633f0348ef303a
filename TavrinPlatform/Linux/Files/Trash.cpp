#include "TavrinPlatform/Linux/Files/Trash.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Base/FileURL.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinPlatform/Files/Descriptor.h"

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {

namespace {

namespace fs = std::filesystem;

constexpr int mostOfOneName = 1000;

std::optional<dev_t> deviceOf(const fs::path& path) {
  struct stat info {};
  return ::lstat(path.c_str(), &info) == 0 ? std::optional(info.st_dev) : std::nullopt;
}

/// The folder itself, made where it is missing; false for another's folder, and for a link.
bool isOwnFolder(const fs::path& folder) {
  ::mkdir(folder.c_str(), 0700);
  struct stat info {};
  return ::lstat(folder.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == ::getuid();
}

/// The highest folder above `file` that is on the same disk.
fs::path topFolder(const fs::path& file, dev_t device) {
  fs::path top = file.parent_path();
  while (top.has_relative_path() && deviceOf(top.parent_path()) == device)
    top = top.parent_path();
  return top;
}

std::string trashInfo(const fs::path& path) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  char date[32] = {};
  std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
  constexpr std::size_t schemeLength = std::string_view("file://").size();
  std::string text = "[Trash Info]\nPath=";
  text.append(fileURL(path.native()), schemeLength, std::string::npos)
      .append("\nDeletionDate=")
      .append(date);
  return text.append(1, '\n');
}

/// Whether the file was made, which takes the name for us alone.
bool writeNew(const fs::path& file, const std::string& text) {
  const Descriptor descriptor(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!descriptor)
    return false;
  const bool isWritten =
      ::write(descriptor.number(), text.data(), text.size()) == static_cast<ssize_t>(text.size());
  if (!isWritten)
    ::unlink(file.c_str());
  return isWritten;
}

fs::path numbered(const fs::path& name, int number) {
  fs::path result = name;
  if (number > 0)
    result.concat(".").concat(std::to_string(number));
  return result;
}

bool moveInto(const fs::path& trash, const fs::path& file) {
  const fs::path files = trash / "files";
  const fs::path infos = trash / "info";
  if (!isOwnFolder(trash) || !isOwnFolder(files) || !isOwnFolder(infos))
    return false;
  const std::string info = trashInfo(file);
  for (int i = 0; i < mostOfOneName; ++i) {
    const fs::path name = numbered(file.filename(), i);
    const fs::path infoFile = infos / (name.native() + ".trashinfo");
    if (deviceOf(files / name) || deviceOf(infoFile))
      continue;
    if (!writeNew(infoFile, info))
      return false;
    if (::renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, (files / name).c_str(), RENAME_NOREPLACE) ==
        0)
      return true;
    const bool isTaken = errno == EEXIST;
    ::unlink(infoFile.c_str());
    if (!isTaken)
      return false;
  }
  return false;
}

/// The trash for what lies in that file's folder, which is on `device`.
fs::path trashFor(const fs::path& file, dev_t device, const fs::path& homeTrash) {
  std::error_code error;
  fs::create_directories(homeTrash.parent_path(), error);
  if (isOwnFolder(homeTrash) && deviceOf(homeTrash) == device)
    return homeTrash;
  std::string name = ".Trash-";
  name.append(std::to_string(::getuid()));
  return topFolder(file, device) / name;
}

constexpr std::string_view dateKey = "\nDeletionDate=";

/// The date in the note `info` where it tells of `file`.
std::optional<std::string> deletionDate(const fs::path& info, const fs::path& file) {
  try {
    const std::string note = readFile(info).value_or("");
    const std::string own = trashInfo(file);
    const std::string start = own.substr(0, own.find(dateKey) + dateKey.size());
    return note.starts_with(start) ? std::optional(note.substr(start.size())) : std::nullopt;
  } catch (const FileError&) {
    return std::nullopt;
  }
}

} // namespace

bool moveToTrash(const fs::path& file, const fs::path& homeTrash) {
  const auto device = deviceOf(file);
  if (!device || !file.is_absolute() || !file.has_filename())
    return false;
  return moveInto(trashFor(file, *device, homeTrash), file);
}

bool restoreFromTrash(const fs::path& file, const fs::path& homeTrash) {
  const auto device = deviceOf(file.parent_path());
  if (!device || !file.is_absolute() || !file.has_filename())
    return false;
  const fs::path trash = trashFor(file, *device, homeTrash);
  std::optional<std::string> newest;
  int found = 0;
  for (int i = 0; i < mostOfOneName; ++i) {
    const fs::path info = trash / "info" / (numbered(file.filename(), i).native() + ".trashinfo");
    const auto date = deviceOf(info) ? deletionDate(info, file) : std::nullopt;
    // Of one second the last.
    if (date && (!newest || *date >= *newest)) {
      newest = date;
      found = i;
    }
  }
  const fs::path name = numbered(file.filename(), found);
  if (!newest || ::renameat2(AT_FDCWD, (trash / "files" / name).c_str(), AT_FDCWD, file.c_str(),
                             RENAME_NOREPLACE) != 0)
    return false;
  ::unlink((trash / "info" / (name.native() + ".trashinfo")).c_str());
  return true;
}

} // namespace tavrin

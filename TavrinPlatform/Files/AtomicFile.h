#pragma once

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Base/JSONValue.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// Who may read a file. `shared` keeps the permissions of a file that is there and leaves those of
/// a new one to the process's mask; `ownerOnly` is 0600 either way.
enum class FileAccess { shared, ownerOnly };

/// Replaces the contents of `file` so that a reader sees the old ones or the new ones, whatever
/// kills this process or the machine and whenever. Where `file` is a symbolic link, the file that
/// it leads to is replaced. Throws FileError, with the old contents in place unless only the last
/// step, flushing the folder, failed.
void writeFileAtomically(const std::filesystem::path& file, std::string_view bytes,
                         FileAccess access = FileAccess::shared);

/// Which state of a file was seen: any replacement gives another one. Two that were not there are
/// equal.
struct FileStamp {
  std::uint64_t inode = 0;
  std::int64_t modifiedNanoseconds = 0;
  std::int64_t size = -1;
  bool operator==(const FileStamp&) const = default;
};
FileStamp fileStamp(const std::filesystem::path& file);

/// `writeFileAtomically` where `file` still is as it was when `seen` was taken; false, with
/// nothing written, where it is not. No lock: who replaces it in the few microseconds between the
/// look and the replacement is written over.
bool writeFileIfUnchanged(const std::filesystem::path& file, std::string_view bytes,
                          const FileStamp& seen, FileAccess access = FileAccess::shared);

/// The bytes of `file`, no value when there is no such file. Throws FileError for one that cannot
/// be read, is no regular file, or holds more than `maximumSize` bytes.
std::optional<std::string> readFile(const std::filesystem::path& file,
                                    std::size_t maximumSize = JSONValue::maximumSize);

/// The JSON document in `file`, no value when there is no such file. Throws FileError.
std::optional<JSONValue> readJSONFile(const std::filesystem::path& file,
                                      std::size_t maximumSize = JSONValue::maximumSize);

/// Writes `document` pretty-printed. Throws FileError, also for a document that `readJSONFile`
/// would refuse.
void writeJSONFile(const std::filesystem::path& file, const JSONValue& document,
                   FileAccess access = FileAccess::shared);

/// The same as `writeFileIfUnchanged` does it.
bool writeJSONFileIfUnchanged(const std::filesystem::path& file, const JSONValue& document,
                              const FileStamp& seen);

} // namespace tavrin

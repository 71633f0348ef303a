#include "TavrinStorage/ClaudeUsage/UsageLogFile.h"

#include "TavrinCore/Text/ByteSearch.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace tavrin {
namespace {

/// Half of what a core's second-level cache commonly holds: what was just read is searched there.
constexpr std::size_t piece = 256 << 10;

} // namespace

UsageLogFile::UsageLogFile()
    : bytes_(new char[2 * piece + ClaudeUsageLineReader::padding]), capacity_(2 * piece) {
  std::memset(bytes_.get() + capacity_, 0, ClaudeUsageLineReader::padding);
}

/// Calls `handle` for each entry of `lines`, which are complete.
template <class Handler>
void UsageLogFile::forEachEntry(std::string_view lines, const Handler& handle) {
  std::size_t from = 0;
  while (true) {
    const auto hit = findBytes(lines, ClaudeUsageLineReader::marker, from);
    if (hit == std::string_view::npos)
      return;
    const auto before = findLastByte(lines.substr(from, hit - from), '\n');
    const auto begin = before == std::string_view::npos ? from : from + before + 1;
    const auto end = std::min(lines.find('\n', hit), lines.size());
    if (end - begin <= longestLine)
      if (auto entry = lineReader_.entry(lines.substr(begin, end - begin)))
        handle(*entry);
    from = std::min(end + 1, lines.size());
  }
}

/// Fills `count` bytes at `at` from the file's `offset`; fewer where the file ends.
std::size_t UsageLogFile::read(int descriptor, std::size_t at, std::size_t count,
                               std::int64_t offset) {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t got = ::pread(descriptor, bytes_.get() + at + done, count - done,
                                offset + static_cast<std::int64_t>(done));
    if (got < 0 && errno == EINTR)
      continue;
    if (got <= 0)
      break;
    done += static_cast<std::size_t>(got);
  }
  bytesRead_ += done;
  return done;
}

void UsageLogFile::grow(std::size_t needed, bool keepsEnd) {
  if (needed <= capacity_)
    return;
  const std::size_t capacity = std::max(needed, capacity_ * 2);
  std::unique_ptr<char[]> bytes(new char[capacity + ClaudeUsageLineReader::padding]);
  std::memcpy(bytes.get() + (keepsEnd ? capacity - capacity_ : 0), bytes_.get(), capacity_);
  std::memset(bytes.get() + capacity, 0, ClaudeUsageLineReader::padding);
  bytes_ = std::move(bytes);
  capacity_ = capacity;
}

std::int64_t UsageLogFile::readForwards(int descriptor, std::int64_t offset, std::int64_t end,
                                        std::vector<ClaudeUsageEntry>& entries) {
  std::int64_t lineStart = offset;
  std::size_t held = 0; // bytes of the line that has begun, at the buffer's front
  bool isTooLong = false;
  while (offset < end) {
    grow(held + piece, false);
    const auto wanted =
        static_cast<std::size_t>(std::min(static_cast<std::int64_t>(piece), end - offset));
    const std::size_t got = read(descriptor, held, wanted, offset);
    if (got == 0)
      break;
    offset += static_cast<std::int64_t>(got);
    std::string_view text(bytes_.get(), held + got);
    auto complete = findLastByte(text.substr(held), '\n');
    if (complete == std::string_view::npos) {
      held += got;
      isTooLong |= held > longestLine;
      held = isTooLong ? 0 : held;
      continue;
    }
    complete += held + 1;
    const auto begin = isTooLong ? text.find('\n') + 1 : 0;
    isTooLong = false;
    forEachEntry(text.substr(begin, complete - begin),
                 [&](ClaudeUsageEntry& entry) { entries.push_back(std::move(entry)); });
    held = text.size() - complete;
    lineStart = offset - static_cast<std::int64_t>(held);
    std::memmove(bytes_.get(), bytes_.get() + complete, held);
  }
  return lineStart;
}

std::int64_t UsageLogFile::readBackwards(int descriptor, std::int64_t end, Date since,
                                         std::vector<ClaudeUsageEntry>& entries) {
  std::int64_t lastLineEnd = 0;
  std::size_t held = 0; // bytes of the line whose start is still to come, at the buffer's end
  bool isCut = true;    // what follows the last newline belongs to a line that is not for reading
  for (std::int64_t offset = end; offset > 0;) {
    grow(held + piece, true);
    const auto wanted =
        static_cast<std::size_t>(std::min(static_cast<std::int64_t>(piece), offset));
    const std::size_t at = capacity_ - held - wanted;
    offset -= static_cast<std::int64_t>(wanted);
    if (read(descriptor, at, wanted, offset) < wanted)
      break; // shorter than it was
    std::string_view text(bytes_.get() + at, wanted + held);
    if (isCut) {
      const auto last = findLastByte(text, '\n');
      if (last == std::string_view::npos)
        continue;
      text = text.substr(0, last + 1);
      lastLineEnd = std::max(lastLineEnd, offset + static_cast<std::int64_t>(text.size()));
      isCut = false;
    }
    // The newline at the end of the front line, which begins further ahead.
    const auto begin = offset == 0 ? 0 : text.find('\n') + 1;
    if (!collect(text.substr(begin), since, entries))
      break;
    isCut = begin > longestLine;
    held = isCut ? 0 : begin;
    std::memmove(bytes_.get() + capacity_ - held, text.data(), held);
  }
  return lastLineEnd;
}

/// False when there was an older one; then only what stands after the last such is kept.
bool UsageLogFile::collect(std::string_view lines, Date since,
                           std::vector<ClaudeUsageEntry>& entries) {
  const auto before = static_cast<std::ptrdiff_t>(entries.size());
  bool isOlder = false;
  forEachEntry(lines, [&](ClaudeUsageEntry& entry) {
    if (entry.timestamp < since) {
      entries.erase(entries.begin() + before, entries.end());
      isOlder = true;
    } else {
      entries.push_back(std::move(entry));
    }
  });
  return !isOlder;
}

} // namespace tavrin

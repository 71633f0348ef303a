#pragma once

#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageLine.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace tavrin {

/// Reads lines with usage out of log files, in large pieces and with one buffer for all files: a
/// line is looked at whole only when it has the marker, and only one that goes over the end of a
/// piece is moved. One object is for one thread.
///
/// The lengths of files are those the caller saw; a file that is shorter by now, or cannot be
/// read, ends where it ends.
class UsageLogFile {
public:
  /// Lines beyond this are passed over unread.
  static constexpr std::size_t longestLine = 4 << 20;

  UsageLogFile();

  /// Appends the entries of the complete lines from `offset`, which is the start of a line, to
  /// `end`. Gives the end of the last complete line, from where to go on when there is more.
  std::int64_t readForwards(int descriptor, std::int64_t offset, std::int64_t end,
                            std::vector<ClaudeUsageEntry>& entries);

  /// Appends the entries of the complete lines before `end`, from the last one back to the first
  /// that is older than `since`. Gives the end of the last complete line.
  std::int64_t readBackwards(int descriptor, std::int64_t end, Date since,
                             std::vector<ClaudeUsageEntry>& entries);

  /// Bytes read so far.
  std::uint64_t bytesRead() const { return bytesRead_; }

private:
  template <class Handler> void forEachEntry(std::string_view lines, const Handler& handle);
  bool collect(std::string_view lines, Date since, std::vector<ClaudeUsageEntry>& entries);
  std::size_t read(int descriptor, std::size_t at, std::size_t count, std::int64_t offset);
  void grow(std::size_t needed, bool keepsEnd);

  /// `capacity_` bytes, and after them what the line reader wants to be readable.
  std::unique_ptr<char[]> bytes_;
  std::size_t capacity_;
  std::uint64_t bytesRead_ = 0;
  ClaudeUsageLineReader lineReader_;
};

} // namespace tavrin

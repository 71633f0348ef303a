#pragma once

#include "TavrinCore/Base/Date.h"

#include <compare>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// Which message a log line belongs to: a 128-bit digest of its message id and request id, which
/// all lines of one message share; of the line's own uuid where it has neither; of nothing where
/// it has none of the three, and then it is a message of its own.
struct ClaudeUsageID {
  std::uint64_t high = 0;
  std::uint64_t low = 0;

  static ClaudeUsageID of(std::string_view messageID, std::string_view requestID,
                          std::string_view uuid);
  bool isKnown() const { return (high | low) != 0; }
  auto operator<=>(const ClaudeUsageID&) const = default;
};

/// A project's name, held once for all its entries; null for none.
using ClaudeUsageProjectName = std::shared_ptr<const std::string>;

/// One line of a log that tells what a message used.
struct ClaudeUsageEntry {
  ClaudeUsageID id;
  Date timestamp;
  ClaudeUsageProjectName project;
  std::int64_t inputTokens = 0;
  std::int64_t outputTokens = 0;
  std::int64_t cacheCreationTokens = 0;
  std::int64_t cacheReadTokens = 0;

  std::int64_t tokens() const {
    return inputTokens + outputTokens + cacheCreationTokens + cacheReadTokens;
  }
};

/// The most tokens of one kind that one line can tell: more is taken for this many. Keeps sums of
/// any number of lines in range.
inline constexpr std::int64_t mostTokensPerLine = 1'000'000'000'000;

/// Messages, each once. Of several lines of one message the latest counts, as a message that is
/// still being written is logged with what it has used so far; of equally late ones that with the
/// most tokens, then that of the first project by name. So the outcome does not depend on the
/// order of adding, nor on whether lines before some moment were left away first.
class ClaudeUsageEntries {
public:
  void add(const ClaudeUsageEntry& entry);
  void clear();
  void reserve(std::size_t count);

  std::size_t size() const { return entries_.size(); }
  bool isEmpty() const { return entries_.empty(); }
  auto begin() const { return entries_.begin(); }
  auto end() const { return entries_.end(); }

private:
  std::size_t place(const ClaudeUsageID& id) const;
  void rehash(std::size_t capacity);

  std::vector<ClaudeUsageEntry> entries_;
  /// Open addressing by the digest: an entry's index + 1, 0 for none.
  std::vector<std::uint32_t> table_;
};

} // namespace tavrin

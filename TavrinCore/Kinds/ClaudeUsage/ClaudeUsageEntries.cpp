#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageEntries.h"

#include <algorithm>
#include <bit>
#include <tuple>

namespace tavrin {
namespace {

/// Two lanes of multiply and rotate over 8 bytes at a time, finished with MurmurHash3's mixer.
class Digest {
public:
  void add(std::string_view text) {
    for (; text.size() >= 8; text.remove_prefix(8))
      addWord(word(text));
    addWord(word(text) ^ (static_cast<std::uint64_t>(text.size()) + 1) << 56);
  }
  ClaudeUsageID finished() const { return {mixed(first_ + second_), mixed(second_ ^ 0x5bd1e995)}; }

private:
  static std::uint64_t word(std::string_view text) {
    std::uint64_t value = 0;
    std::copy_n(text.begin(), std::min<std::size_t>(text.size(), 8),
                reinterpret_cast<char*>(&value));
    return value;
  }
  static std::uint64_t mixed(std::uint64_t value) {
    value = (value ^ value >> 33) * 0xff51afd7ed558ccd;
    value = (value ^ value >> 33) * 0xc4ceb9fe1a85ec53;
    return value ^ value >> 33;
  }
  void addWord(std::uint64_t value) {
    first_ = std::rotl(first_ ^ value * 0x87c37b91114253d5, 27) * 5 + 0x52dce729;
    second_ = std::rotl(second_ ^ mixed(value + first_), 31) * 0x9e3779b97f4a7c15;
  }

  std::uint64_t first_ = 0x243f6a8885a308d3;
  std::uint64_t second_ = 0x13198a2e03707344;
};

bool countsBefore(const ClaudeUsageEntry& entry, const ClaudeUsageEntry& other) {
  const auto rank = [](const ClaudeUsageEntry& e) {
    return std::tuple(e.timestamp, e.tokens(), e.outputTokens, e.inputTokens,
                      e.cacheCreationTokens);
  };
  if (const auto order = rank(entry) <=> rank(other); order != 0)
    return order > 0;
  if (!entry.project || !other.project)
    return entry.project && !other.project;
  return *entry.project < *other.project;
}

} // namespace

ClaudeUsageID ClaudeUsageID::of(std::string_view messageID, std::string_view requestID,
                                std::string_view uuid) {
  Digest digest;
  if (!messageID.empty() || !requestID.empty()) {
    digest.add(messageID);
    digest.add(requestID);
  } else if (!uuid.empty()) {
    digest.add(uuid);
  } else {
    return {};
  }
  auto id = digest.finished();
  id.low |= static_cast<std::uint64_t>(!id.isKnown());
  return id;
}

void ClaudeUsageEntries::add(const ClaudeUsageEntry& entry) {
  if (!entry.id.isKnown()) {
    entries_.push_back(entry);
    return;
  }
  if ((entries_.size() + 1) * 2 > table_.size())
    rehash(std::max<std::size_t>(64, std::bit_ceil((entries_.size() + 1) * 3)));
  const std::size_t at = place(entry.id);
  if (table_[at] == 0) {
    entries_.push_back(entry);
    table_[at] = static_cast<std::uint32_t>(entries_.size());
  } else if (auto& known = entries_[table_[at] - 1]; countsBefore(entry, known)) {
    known = entry;
  }
}

void ClaudeUsageEntries::clear() {
  entries_.clear();
  std::fill(table_.begin(), table_.end(), 0);
}

void ClaudeUsageEntries::reserve(std::size_t count) {
  entries_.reserve(count);
  if (count * 2 > table_.size())
    rehash(std::bit_ceil(count * 2));
}

std::size_t ClaudeUsageEntries::place(const ClaudeUsageID& id) const {
  const std::size_t mask = table_.size() - 1;
  std::size_t at = id.high & mask;
  while (table_[at] != 0 && entries_[table_[at] - 1].id != id)
    at = (at + 1) & mask;
  return at;
}

void ClaudeUsageEntries::rehash(std::size_t capacity) {
  table_.assign(capacity, 0);
  for (std::size_t i = 0; i < entries_.size(); ++i)
    if (entries_[i].id.isKnown())
      table_[place(entries_[i].id)] = static_cast<std::uint32_t>(i + 1);
}

} // namespace tavrin

#include "TavrinCore/Kinds/Clipboard/ClipboardBoard.h"

#include "TavrinCore/Base/Wipe.h"
#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "TavrinCore/Text/Text.h"

#include <algorithm>
#include <cstring>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>

namespace tavrin {
namespace {

bool isASCII(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

std::string lowered(std::string_view text) {
  if (isASCII(text))
    return asciiLowered(text);
  std::string out;
  // A few characters are longer in lower case; what moved would leave a copy behind.
  out.reserve(text.size() / 2 * 3);
  icu::StringByteSink<std::string> sink(&out);
  UErrorCode status = U_ZERO_ERROR;
  icu::CaseMap::utf8ToLower("", 0, {text.data(), static_cast<std::int32_t>(text.size())}, sink,
                            nullptr, status);
  return out;
}

bool equalsLowered(const char* text, std::string_view wanted) {
  for (std::size_t i = 0; i < wanted.size(); ++i)
    if (lower(text[i]) != wanted[i])
      return false;
  return true;
}

/// Whether ASCII `text` contains `wanted`, which is in lower case, whatever the case of `text`.
bool containsLowered(std::string_view text, std::string_view wanted) {
  if (wanted.size() > text.size())
    return false;
  const char low = wanted.front();
  const char high = low >= 'a' && low <= 'z' ? static_cast<char>(low - 32) : low;
  const char* const end = text.data() + (text.size() - wanted.size() + 1);
  const auto next = [end](const char* from, char c) {
    const void* found = std::memchr(from, c, static_cast<std::size_t>(end - from));
    return found != nullptr ? static_cast<const char*>(found) : end;
  };
  const char* lowAt = next(text.data(), low);
  const char* highAt = high == low ? end : next(text.data(), high);
  while (lowAt != end || highAt != end) {
    const char* at = std::min(lowAt, highAt);
    if (equalsLowered(at, wanted))
      return true;
    (at == lowAt ? lowAt : highAt) = next(at + 1, *at);
  }
  return false;
}

bool contains(const ClipboardEntry& entry, std::string_view wanted) {
  if (!entry.searchKey.empty())
    return entry.searchKey.find(wanted) != std::string::npos;
  return entry.item.text && containsLowered(*entry.item.text, wanted);
}

} // namespace

ClipboardEntry::ClipboardEntry(ClipboardItem&& contents) : item(std::move(contents)) {
  if (item.fileURL) {
    const SecretText name(item.fileName());
    searchKey = lowered(name.text());
  } else if (item.text && !isASCII(*item.text))
    searchKey = lowered(*item.text);
}

ClipboardEntry::~ClipboardEntry() {
  item.wipeTexts();
  wipe(searchKey);
}

ClipboardList ClipboardBoard::search(std::string_view query, const ClipboardList& list) {
  const auto bare = trimmed(query);
  if (bare.empty())
    return list;
  const std::string wanted = lowered(bare);
  ClipboardList found;
  std::ranges::copy_if(list, std::back_inserter(found),
                       [&](const auto& entry) { return contains(*entry, wanted); });
  return found;
}

ClipboardList ClipboardBoard::retained(const ClipboardList& list, const ClipboardSettings& settings,
                                       Date now) {
  const Date cutoff = now - settings.retentionDays * 86'400.0;
  const auto pinned = static_cast<std::size_t>(
      std::ranges::count_if(list, [](const auto& entry) { return entry->item.isPinned; }));
  const auto limit = static_cast<std::size_t>(std::max(0, settings.historyLimit));
  std::size_t room = limit > pinned ? limit - pinned : 0;
  ClipboardList kept;
  for (const auto& entry : list) {
    if (entry->item.isPinned) {
      kept.push_back(entry);
    } else if (entry->item.capturedAt.date >= cutoff && room > 0) {
      kept.push_back(entry);
      --room;
    }
  }
  return kept;
}

ClipboardTrace ClipboardBoard::traceOf(const ClipboardList& list) {
  ClipboardTrace trace;
  for (const auto& entry : list)
    trace.emplace(entry->item.id, entry);
  return trace;
}

ClipboardList ClipboardBoard::merged(const ClipboardTrace& base, const ClipboardList& mine,
                                     const ClipboardList& theirs) {
  const auto equal = [](const ClipboardEntryPtr& a, const ClipboardEntryPtr& b) {
    return a == b || (a && b && a->item == b->item);
  };
  const auto here = traceOf(mine);
  const auto there = traceOf(theirs);
  ClipboardList all;
  for (const auto& entry : mine) {
    const auto then = base.find(entry->item.id);
    const auto other = there.find(entry->item.id);
    if (then != base.end() && other == there.end())
      continue;
    const bool isOld = then != base.end() && equal(entry, then->second.lock());
    const auto theirsNow = isOld ? other->second.lock() : entry;
    all.push_back(equal(entry, theirsNow) ? entry : theirsNow);
  }
  std::size_t place = 0;
  for (const auto& entry : theirs) {
    if (here.contains(entry->item.id) || base.contains(entry->item.id))
      continue;
    while (place < all.size() && all[place]->item.capturedAt.date >= entry->item.capturedAt.date)
      ++place;
    all.insert(all.begin() + static_cast<std::ptrdiff_t>(place++), entry);
  }
  return all;
}

} // namespace tavrin

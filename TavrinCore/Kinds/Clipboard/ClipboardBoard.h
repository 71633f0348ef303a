#pragma once

#include "TavrinCore/Kinds/Clipboard/ClipboardItem.h"
#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"

#include <map>

namespace tavrin {

/// An item that does not change any more, with what searching wants to know of it beforehand.
/// A changed item is another entry. Its texts are overwritten when it goes.
struct ClipboardEntry {
  explicit ClipboardEntry(const ClipboardItem& contents)
      : ClipboardEntry(ClipboardItem(contents)) {}
  explicit ClipboardEntry(ClipboardItem&& contents);
  ~ClipboardEntry();
  ClipboardEntry(const ClipboardEntry&) = delete;
  ClipboardEntry& operator=(const ClipboardEntry&) = delete;

  ClipboardItem item;
  /// What is searched, in lower case; empty where the item's own text serves, being ASCII.
  std::string searchKey;
};
using ClipboardEntryPtr = std::shared_ptr<const ClipboardEntry>;
/// Newest first.
using ClipboardList = std::vector<ClipboardEntryPtr>;
/// Which entries a list had, and how each was for as long as somebody still has it: keeps none.
using ClipboardTrace = std::map<UUID, std::weak_ptr<const ClipboardEntry>>;

/// What the lists of the clipboard's views are made by.
namespace ClipboardBoard {

/// The entries whose text or file name contains `query`, both in lower case; all for a blank one.
ClipboardList search(std::string_view query, const ClipboardList& list);

/// The list without unpinned entries older than the settings allow, and without the oldest
/// unpinned ones beyond the limit.
ClipboardList retained(const ClipboardList& list, const ClipboardSettings& settings, Date now);

/// `mine` with what became of `base` in `theirs`: entries of `base` that are missing there go,
/// those that were changed there and not here are as they are there, and those that neither `base`
/// nor `mine` have stand by when they were captured. Entries that equal those of `mine` are those
/// of `mine`.
ClipboardList merged(const ClipboardTrace& base, const ClipboardList& mine,
                     const ClipboardList& theirs);
ClipboardTrace traceOf(const ClipboardList& list);

} // namespace ClipboardBoard

/// The list as the JSON text that is kept: an array of items.
std::string encodeClipboard(const ClipboardList& list);
/// Throws CodingError or JSONError. Room of 64 bytes behind the text saves a copy.
ClipboardList decodeClipboard(const std::string& json);

} // namespace tavrin

#include "TavrinCore/Dock/DockChangeDetector.h"

#include <algorithm>
#include <unordered_set>

namespace tavrin {
namespace {

struct KeyedItem {
  std::string key;
  const DockItem* item;
};

std::string keyOf(const DockItem& item) {
  if (const auto* app = item.app())
    return "app:" + app->path;
  if (const auto* file = item.file())
    return "file:" + file->path;
  if (const auto* url = item.url())
    return "url:" + url->url;
  return "spacer:" + std::string(nameOf(*item.spacer()));
}

std::vector<KeyedItem> keyed(const DockSnapshot& snapshot) {
  std::vector<KeyedItem> items;
  for (const auto& item : snapshot.apps)
    items.push_back({"apps:" + keyOf(item), &item});
  for (const auto& item : snapshot.others)
    items.push_back({"others:" + keyOf(item), &item});
  return items;
}

std::unordered_set<std::string> keys(const std::vector<KeyedItem>& items) {
  std::unordered_set<std::string> found;
  for (const auto& one : items)
    found.insert(one.key);
  return found;
}

/// Splits `items` into those whose key is in `known` (their keys, in order) and the others.
std::vector<std::string> common(const std::vector<KeyedItem>& items,
                                const std::unordered_set<std::string>& known,
                                std::vector<DockItem>& rest) {
  std::vector<std::string> shared;
  for (const auto& one : items) {
    if (known.contains(one.key))
      shared.push_back(one.key);
    else
      rest.push_back(*one.item);
  }
  return shared;
}

} // namespace

DockChangeDetector::Report DockChangeDetector::diff(const DockSnapshot& previous,
                                                    const DockSnapshot& current) {
  const auto before = keyed(previous);
  const auto after = keyed(current);
  Report report;
  const auto commonBefore = common(before, keys(after), report.removed);
  const auto commonAfter = common(after, keys(before), report.added);
  report.reordered = commonBefore != commonAfter;
  return report;
}

bool DockChangeDetector::holds(const DockSnapshot& current, const DockSnapshot& before,
                               const DockSnapshot& after) {
  const auto was = keyed(before);
  const auto wanted = keyed(after);
  const auto is = keys(keyed(current));
  const auto hasAll = [](const std::vector<KeyedItem>& some,
                         const std::unordered_set<std::string>& others) {
    return std::all_of(some.begin(), some.end(),
                       [&](const KeyedItem& one) { return others.contains(one.key); });
  };
  const auto without = [](std::vector<KeyedItem> some, const std::unordered_set<std::string>& all) {
    std::erase_if(some, [&](const KeyedItem& one) { return all.contains(one.key); });
    return some;
  };
  const auto gone = without(was, keys(wanted));
  return hasAll(without(wanted, keys(was)), is) && without(gone, is).size() == gone.size() &&
         !(diff(before, after).reordered && diff(after, current).reordered);
}

} // namespace tavrin

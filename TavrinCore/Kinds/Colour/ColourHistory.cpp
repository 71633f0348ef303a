#include "TavrinCore/Kinds/Colour/ColourHistory.h"

#include <algorithm>

namespace tavrin {

void ColourHistory::add(PickedColour colour, int limit) {
  const auto same = std::ranges::find(colours, colour.packed(), &PickedColour::packed);
  if (same != colours.end())
    colour.isPinned = same->isPinned;
  std::erase_if(colours, [&](const auto& entry) { return entry.packed() == colour.packed(); });
  colours.insert(colours.begin(), colour);
  trim(limit);
}

void ColourHistory::trim(int limit) {
  const auto most = static_cast<std::size_t>(std::clamp(limit, leastLimit, mostLimit));
  for (auto entry = colours.end(); entry != colours.begin() && colours.size() > most;) {
    --entry;
    if (!entry->isPinned)
      entry = colours.erase(entry);
  }
}

void ColourHistory::togglePin(const UUID& id, int limit) {
  const auto found = std::ranges::find(colours, id, &PickedColour::id);
  if (found != colours.end())
    found->isPinned = !found->isPinned;
  trim(limit);
}

void ColourHistory::remove(const UUID& id) {
  std::erase_if(colours, [&](const auto& entry) { return entry.id == id; });
}

void ColourHistory::clearUnpinned() {
  std::erase_if(colours, [](const auto& entry) { return !entry.isPinned; });
}

const PickedColour* ColourHistory::find(const UUID& id) const {
  const auto found = std::ranges::find(colours, id, &PickedColour::id);
  return found == colours.end() ? nullptr : &*found;
}

} // namespace tavrin

#include "TavrinStorage/ColourStore.h"

namespace tavrin {

void ColourStore::add(PickedColour colour, int limit) {
  file_.change([&](ColourHistory& history) { history.add(colour, limit); });
}

void ColourStore::togglePin(UUID id, int limit) {
  file_.change([&](ColourHistory& history) { history.togglePin(id, limit); });
}

void ColourStore::remove(UUID id) {
  file_.change([&](ColourHistory& history) { history.remove(id); });
}

void ColourStore::clearUnpinned() {
  file_.change([](ColourHistory& history) { history.clearUnpinned(); });
}

} // namespace tavrin

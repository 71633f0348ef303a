#include "TavrinSettings/Editing/StripOrder.h"

#include "TavrinCore/Widgets/DockSlot.h"

#include <algorithm>

namespace tavrin {
namespace {

/// What the slots show, in their order.
struct Line {
  std::vector<int> slots;
  std::vector<UUID> widgets;

  explicit Line(const WidgetsFile& file) {
    for (const auto& [slot, widget] : file.placedWidgets()) {
      slots.push_back(slot);
      widgets.push_back(widget->id);
    }
  }

  void give(WidgetStore& store) const {
    for (std::size_t i = 0; i < slots.size(); ++i)
      store.change(widgets[i], [&](DockWidget& widget) {
        return std::exchange(widget.slot, slots[i]) != slots[i];
      });
  }
};

template <class Value> void insertAt(std::vector<Value>& list, std::size_t place, Value value) {
  list.insert(list.begin() + static_cast<std::ptrdiff_t>(std::min(place, list.size())),
              std::move(value));
}

/// A slot that makes the `place` without anybody moving.
std::optional<int> freeSlotAt(const WidgetsFile& file, const Line& line, std::size_t place) {
  const int end = place < line.slots.size() ? line.slots[place] : DockSlot::count + 1;
  const auto taken = file.takenSlots();
  for (int slot = place == 0 ? 1 : line.slots[place - 1] + 1; slot < end; ++slot)
    if (!taken.contains(slot))
      return slot;
  return std::nullopt;
}

} // namespace

std::vector<DockWidget> stripOf(const WidgetsFile& file) {
  std::vector<DockWidget> strip;
  for (const auto& [unused, widget] : file.placedWidgets())
    strip.push_back(*widget);
  return strip;
}

std::vector<DockWidget> keptOffStrip(const WidgetsFile& file) {
  std::vector<DockWidget> kept;
  for (const auto& widget : file.widgets)
    if (!isOnStrip(file, widget.id))
      kept.push_back(widget);
  return kept;
}

bool isOnStrip(const WidgetsFile& file, const UUID& id) {
  return std::ranges::any_of(file.placedWidgets(),
                             [&](const auto& placed) { return placed.second->id == id; });
}

int freePlaces(const WidgetsFile& file) {
  const auto taken = file.takenSlots();
  int count = 0;
  for (int slot = 1; slot <= DockSlot::count; ++slot)
    count += taken.contains(slot) ? 0 : 1;
  return count;
}

bool isStripFull(const WidgetsFile& file) {
  return freePlaces(file) == 0;
}

void moveInStrip(WidgetStore& store, const UUID& id, std::size_t place) {
  Line line(store.file());
  const auto found = std::ranges::find(line.widgets, id);
  if (found == line.widgets.end())
    return;
  line.widgets.erase(found);
  insertAt(line.widgets, place, id);
  line.give(store);
}

bool insertInStrip(WidgetStore& store, const UUID& id, std::size_t place) {
  // One whose slot shows another widget is freed of it first.
  store.releaseSlot(id);
  Line line(store.file());
  place = std::min(place, line.slots.size());
  const auto near = freeSlotAt(store.file(), line, place);
  const auto slot = near ? near : store.file().freeSlot();
  if (!slot)
    return false;
  insertAt(line.widgets, place, id);
  line.slots.insert(std::ranges::lower_bound(line.slots, *slot), *slot);
  line.give(store);
  return true;
}

} // namespace tavrin

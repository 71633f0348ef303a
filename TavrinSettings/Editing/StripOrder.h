#pragma once

#include "TavrinStorage/WidgetStore.h"

#include <vector>

namespace tavrin {

/// The widgets that the strip shows, from its beginning. Places are counted from 0 along it; slots
/// are only what makes the order.
std::vector<DockWidget> stripOf(const WidgetsFile& file);
/// The widgets that no slot shows, in file order.
std::vector<DockWidget> keptOffStrip(const WidgetsFile& file);
bool isOnStrip(const WidgetsFile& file, const UUID& id);
/// How many places of the strip nobody has.
int freePlaces(const WidgetsFile& file);
/// Whether no slot is free.
bool isStripFull(const WidgetsFile& file);

/// Brings a widget of the strip to `place`: those between move up by one, and the slots in use stay
/// the same, so that no slot application ends or begins. Within a transaction of `store`.
void moveInStrip(WidgetStore& store, const UUID& id, std::size_t place);
/// Gives a widget that is not on the strip the `place`. Others keep their slots where one is free
/// just there. False when all slots are taken. Within a transaction of `store`.
bool insertInStrip(WidgetStore& store, const UUID& id, std::size_t place);

} // namespace tavrin

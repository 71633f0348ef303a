#pragma once

#include "TavrinPlatform/Linux/Modules/CalendarObjects.h"

namespace tavrin {

/// Finds the time zone that a calendar object names.
struct CalendarZones {
  ECalRecurResolveTimezoneCb find = nullptr;
  gpointer data = nullptr;
  /// Of times that name none; may be null.
  ICalTimezone* standard = nullptr;
  GCancellable* cancellable = nullptr;
};

/// The server's queries that together deliver whatever may be seen in `range`, each object once.
///
/// By its own range query alone the server leaves out events of zones that it does not know, for
/// it places those by UTC, and instances that were moved since it started, for its index does not
/// learn of them. So the range is asked for a day wider, and the series are all asked for with
/// their moved instances.
std::vector<std::string> queriesFor(DateInterval range);

/// What `components` (of ICalComponent, of one calendar) come to within `range`, series expanded
/// and each moved instance in the place of the one it replaces. In no order.
std::vector<CalendarEvent> instancesOf(const GSList* components, DateInterval range,
                                       const std::optional<std::string>& colorHex,
                                       const CalendarZones& zones);

} // namespace tavrin

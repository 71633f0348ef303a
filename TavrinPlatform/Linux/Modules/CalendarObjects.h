#pragma once

#include "TavrinCore/Kinds/Calendar/CalendarEvent.h"
#include "TavrinCore/Kinds/Calendar/Reminder.h"

#include <libecal/libecal.h>
#include <memory>

namespace tavrin {

/// Owns one reference to an object of GLib's kind.
struct Unref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <class Object> using GOwned = std::unique_ptr<Object, Unref>;

/// The point in time that `time` names. A date is its midnight in the process's zone, and so is a
/// time without a zone.
Date dateOf(ICalTime* time);

/// One instance of an event; none for one that was called off. An end before the start counts as
/// the start; an all-day event is a day long at least.
std::optional<CalendarEvent> eventFrom(ICalComponent* component, ICalTime* start, ICalTime* end,
                                       const std::optional<std::string>& colorHex);
/// None for an object without an identifier.
std::optional<Reminder> reminderFrom(ICalComponent* component, const std::string& listID);

} // namespace tavrin

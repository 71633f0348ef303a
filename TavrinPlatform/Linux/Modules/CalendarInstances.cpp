#include "TavrinPlatform/Linux/Modules/CalendarInstances.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace tavrin {
namespace {

/// Of one calendar; a week has a hundredth of it.
constexpr std::size_t mostInstances = 20'000;
/// Of one object: every hour of two months has fewer.
constexpr std::size_t mostOfOne = 2'000;
/// No zone is further from UTC.
constexpr double widestOffset = 86'400;

/// By identifier, the starts of the instances of a series that stand elsewhere.
using MovedStarts = std::multimap<std::string, Date>;

struct Gathering {
  std::vector<CalendarEvent> events;
  const std::optional<std::string>& colorHex;
  DateInterval range;
  const MovedStarts& moved;
  std::size_t count = 0;
  std::size_t countOfOne = 0;
};

std::string uidOf(ICalComponent* component) {
  const char* uid = i_cal_component_get_uid(component);
  return uid != nullptr ? uid : "";
}

/// The start that an instance of a series had before it was moved; none for any other object.
std::optional<Date> formerStart(ICalComponent* component, const CalendarZones& zones) {
  const GOwned<ICalProperty> property(
      i_cal_component_get_first_property(component, I_CAL_RECURRENCEID_PROPERTY));
  if (!property)
    return std::nullopt;
  const GOwned<ICalTime> time(i_cal_property_get_recurrenceid(property.get()));
  if (!time || i_cal_time_is_null_time(time.get()))
    return std::nullopt;
  gchar* zoneID = i_cal_property_get_parameter_as_string(property.get(), "TZID");
  if (zoneID != nullptr && zones.find != nullptr) {
    auto* zone = zones.find(zoneID, zones.data, zones.cancellable, nullptr);
    if (zone != nullptr)
      i_cal_time_set_timezone(time.get(), zone);
  }
  g_free(zoneID);
  return dateOf(time.get());
}

bool isMoved(const MovedStarts& moved, ICalComponent* component, ICalTime* start) {
  if (moved.empty() || e_cal_util_component_is_instance(component))
    return false;
  const auto [first, last] = moved.equal_range(uidOf(component));
  return std::any_of(first, last,
                     [date = dateOf(start)](const auto& entry) { return entry.second == date; });
}

gboolean gather(ICalComponent* component, ICalTime* start, ICalTime* end, gpointer data,
                GCancellable*, GError**) {
  auto& gathering = *static_cast<Gathering*>(data);
  if (isMoved(gathering.moved, component, start))
    return TRUE;
  auto event = eventFrom(component, start, end, gathering.colorHex);
  if (event && event->start < gathering.range.end &&
      (event->end > gathering.range.start || event->start == gathering.range.start))
    gathering.events.push_back(std::move(*event));
  return ++gathering.countOfOne < mostOfOne && ++gathering.count < mostInstances;
}

/// A series whose instances last for years overlaps itself thousands of times on any day, and its
/// ends, far ahead, have the library compute its zone anew for each: minutes for one object.
bool isEndless(ICalComponent* component) {
  if (!e_cal_util_component_has_recurrences(component))
    return false;
  const GOwned<ICalTime> start(i_cal_component_get_dtstart(component));
  const GOwned<ICalTime> end(i_cal_component_get_dtend(component));
  return start && end && i_cal_time_get_year(end.get()) - i_cal_time_get_year(start.get()) > 1;
}

DateInterval widened(DateInterval range) {
  return {range.start + -widestOffset, range.end + widestOffset};
}

time_t secondsOf(Date date) {
  return static_cast<time_t>(std::floor(date.unixSeconds()));
}

GOwned<ICalTime> icalTime(Date date) {
  return GOwned<ICalTime>(i_cal_time_new_from_timet_with_zone(secondsOf(date), FALSE,
                                                              i_cal_timezone_get_utc_timezone()));
}

} // namespace

std::vector<std::string> queriesFor(DateInterval range) {
  const DateInterval wide = widened(range);
  gchar* start = isodate_from_time_t(secondsOf(wide.start));
  gchar* end = isodate_from_time_t(secondsOf(wide.end));
  const std::string within = std::string("(occur-in-time-range? (make-time \"") + start +
                             "\") (make-time \"" + end + "\"))";
  g_free(start);
  g_free(end);
  return {"(and " + within + " (not (has-recurrences?)))", "(has-recurrences?)"};
}

std::vector<CalendarEvent> instancesOf(const GSList* components, DateInterval range,
                                       const std::optional<std::string>& colorHex,
                                       const CalendarZones& zones) {
  MovedStarts moved;
  for (const GSList* link = components; link != nullptr; link = link->next)
    if (const auto start = formerStart(I_CAL_COMPONENT(link->data), zones))
      moved.emplace(uidOf(I_CAL_COMPONENT(link->data)), *start);
  Gathering gathering{{}, colorHex, range, moved};
  const DateInterval wide = widened(range);
  const auto from = icalTime(wide.start);
  const auto to = icalTime(wide.end);
  for (const GSList* link = components; link != nullptr && gathering.count < mostInstances;
       link = link->next) {
    if (isEndless(I_CAL_COMPONENT(link->data)))
      continue;
    gathering.countOfOne = 0;
    e_cal_recur_generate_instances_sync(I_CAL_COMPONENT(link->data), from.get(), to.get(), gather,
                                        &gathering, zones.find, zones.data, zones.standard,
                                        zones.cancellable, nullptr);
  }
  return std::move(gathering.events);
}

} // namespace tavrin

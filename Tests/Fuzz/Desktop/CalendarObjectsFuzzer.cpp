#include "TavrinCore/Kinds/Calendar/ReminderSettings.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinPlatform/Linux/Modules/CalendarInstances.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

using namespace tavrin;

namespace {

/// The first week of May 2026, in Berlin.
constexpr Date start = Date::fromUnixSeconds(1'777'586'400);
constexpr DateInterval week{start, start + 7 * 86'400};

const Calendar& berlin() {
  static const Calendar calendar("Europe/Berlin", "en_GB");
  return calendar;
}

ICalTimezone* zoneByName(const gchar* id, gpointer, GCancellable*, GError**) {
  return i_cal_timezone_get_builtin_timezone(id);
}

GSList* childrenOf(ICalComponent* parent, ICalComponentKind kind) {
  GSList* children = nullptr;
  for (auto* child = i_cal_component_get_first_component(parent, kind); child != nullptr;
       child = i_cal_component_get_next_component(parent, kind))
    children = g_slist_prepend(children, child);
  return children;
}

void checkEvents(ICalComponent* parent) {
  GSList* components = childrenOf(parent, I_CAL_VEVENT_COMPONENT);
  auto events = instancesOf(components, week, "#3584e4",
                            {zoneByName, nullptr, i_cal_timezone_get_utc_timezone(), nullptr});
  g_slist_free_full(components, g_object_unref);
  for (const auto& event : events)
    if (event.end < event.start || event.start >= week.end || event.end < week.start ||
        !isUTF8(event.title) || !isUTF8(event.id) || !isUTF8(event.location.value_or("")))
      std::abort();
  UpNext::sort(events, start, berlin());
  for (const auto& event : UpNext::select(events, start, 60))
    UpNext::minutesUntil(event, start);
}

void checkReminders(ICalComponent* parent) {
  GSList* components = childrenOf(parent, I_CAL_VTODO_COMPONENT);
  std::vector<Reminder> reminders;
  for (GSList* link = components; link != nullptr; link = link->next)
    if (auto reminder = reminderFrom(I_CAL_COMPONENT(link->data), "list")) {
      if (reminder->id.empty() || !isUTF8(reminder->title) || reminder->priority < 0 ||
          reminder->priority > 9)
        std::abort();
      reminders.push_back(std::move(*reminder));
    }
  g_slist_free_full(components, g_object_unref);
  ReminderSettings settings;
  settings.showsCompleted = true;
  for (const auto& reminder : selectReminders(std::move(reminders), settings, start, berlin()))
    displayTitle(reminder);
}

} // namespace

/// Whatever stands in a calendar, what is made of it can be shown.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(bytes), size);
  ICalComponent* parent = i_cal_parser_parse_string(text.c_str());
  if (parent == nullptr)
    return 0;
  checkEvents(parent);
  checkReminders(parent);
  g_object_unref(parent);
  return 0;
}

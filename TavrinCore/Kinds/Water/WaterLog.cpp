#include "TavrinCore/Kinds/Water/WaterLog.h"

#include "TavrinCore/Kinds/Water/WaterSettings.h"
#include "TavrinCore/Text/Numbers.h"

#include <algorithm>
#include <fmt/format.h>
#include <limits>

namespace tavrin {
namespace {

template <class Days> auto entry(Days& days, const std::string& key) {
  return std::find_if(days.begin(), days.end(), [&](const auto& day) { return day.day == key; });
}

bool hasReachedGoal(int total, const WaterSettings& settings) {
  return settings.goal >= 1 && total >= settings.goal;
}

} // namespace

std::string WaterLog::key(Date date, const Calendar& calendar) {
  const auto parts = calendar.components(date);
  return fmt::format("{:04}-{:02}-{:02}", parts.year, parts.month, parts.day);
}

int WaterLog::total(Date date, const Calendar& calendar) const {
  const auto found = entry(days, key(date, calendar));
  return found == days.end() ? 0 : found->millilitres;
}

void WaterLog::add(int millilitres, Date date, const Calendar& calendar) {
  const auto day = key(date, calendar);
  auto found = entry(days, day);
  if (found == days.end())
    found = days.insert(days.end(), WaterDay{day, 0});
  found->millilitres = boundedCount(std::int64_t{found->millilitres} + millilitres);
  tidy();
  if (millilitres > 0)
    lastPour = date;
  if (days.size() > historyLength)
    days.erase(days.begin(), days.end() - static_cast<std::ptrdiff_t>(historyLength));
}

void WaterLog::remove(int millilitres, Date date, const Calendar& calendar) {
  add(boundedCount(millilitres) * -1, date, calendar);
}

void WaterLog::clear(Date date, const Calendar& calendar) {
  std::erase_if(days, [day = key(date, calendar)](const auto& entry) { return entry.day == day; });
}

std::array<WaterDay, 7> WaterLog::week(Date date, const Calendar& calendar) const {
  std::array<WaterDay, 7> week;
  for (std::size_t i = 0; i < week.size(); ++i) {
    const Date day = calendar.addingDays(static_cast<int>(i) - 6, date);
    week[i] = {key(day, calendar), total(day, calendar)};
  }
  return week;
}

double WaterLog::tankLevel(Date now, const WaterSettings& settings,
                           const Calendar& calendar) const {
  const int drunk = total(now, calendar);
  if (drunk == 0 || !lastPour || !calendar.isSameDay(*lastPour, now))
    return 0;
  if (hasReachedGoal(drunk, settings))
    return 1;
  return std::clamp(1 - now.since(*lastPour) / settings.refillInterval(), 0.0, 1.0);
}

std::optional<Date> WaterLog::nextGlass(Date now, const WaterSettings& settings,
                                        const Calendar& calendar) const {
  if (hasReachedGoal(total(now, calendar), settings) || tankLevel(now, settings, calendar) <= 0)
    return std::nullopt;
  return *lastPour + settings.refillInterval();
}

void WaterLog::tidy() {
  std::ranges::stable_sort(days, {}, &WaterDay::day);
  // Not std::ranges::unique: clang 14, which builds the fuzzers, cannot read its library's.
  days.erase(std::unique(days.begin(), days.end(),
                         [](const auto& a, const auto& b) { return a.day == b.day; }),
             days.end());
  for (auto& day : days)
    day.millilitres = boundedCount(day.millilitres);
}

} // namespace tavrin

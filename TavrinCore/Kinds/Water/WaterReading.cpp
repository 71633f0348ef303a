#include "TavrinCore/Kinds/Water/WaterReading.h"

#include "TavrinCore/Kinds/Water/WaterSettings.h"
#include "TavrinCore/Text/ClockText.h"
#include "TavrinCore/Text/DecimalText.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace tavrin {

std::string format(WaterUnit unit, int millilitres) {
  return unit == WaterUnit::ounces
             ? translated("{amount} oz",
                          {{"amount", decimalText(millilitres / millilitresPerOunce, 1)}})
             : translated("{amount} ml", {{"amount", millilitres}});
}

WaterReading WaterReading::of(const WaterLog& log, const WaterSettings& settings, Date now,
                              const Calendar& calendar) {
  return {log.total(now, calendar),
          settings,
          log.tankLevel(now, settings, calendar),
          log.nextGlass(now, settings, calendar),
          now,
          log.week(now, calendar)};
}

double WaterReading::fill() const {
  return settings.goal < 1 ? 0 : std::min(1.0, millilitres / static_cast<double>(settings.goal));
}

int WaterReading::glasses() const {
  return settings.glass < 1 ? 0 : millilitres / settings.glass;
}

std::string WaterReading::count() const {
  return fmt::format("{}/{}", glasses(), std::max(settings.glassesInGoal(), 1));
}

std::optional<std::string> WaterReading::timeLeft() const {
  if (!next)
    return std::nullopt;
  return durationText(std::max<std::int64_t>(wholeSeconds(std::ceil(next->since(now) / 60)), 1));
}

FieldDisplay waterDisplay(const JSONValue& settings) {
  const auto* unit = settings.member("unit");
  const bool isOunces =
      unit != nullptr && unit->string() != nullptr && *unit->string() == nameOf(WaterUnit::ounces);
  return isOunces ? FieldDisplay{symbol(WaterUnit::ounces), millilitresPerOunce}
                  : FieldDisplay{symbol(WaterUnit::millilitres), 1};
}

} // namespace tavrin

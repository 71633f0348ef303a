#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageLimits.h"

#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace tavrin {
namespace {

constexpr double farthestReset = 1e11;

std::optional<double> number(const JSONValue& object, std::string_view key) {
  const auto* value = object.member(key);
  return value ? value->doubleValue() : std::nullopt;
}

std::optional<ClaudeUsageWindow> window(const JSONValue& limits, std::string_view key) {
  const auto* object = limits.member(key);
  if (object == nullptr)
    return std::nullopt;
  auto used = number(*object, "used_percentage");
  if (!used)
    used = number(*object, "utilization");
  if (!used)
    return std::nullopt;
  ClaudeUsageWindow window{*used, std::nullopt};
  if (const auto reset = number(*object, "resets_at"); reset && std::abs(*reset) < farthestReset)
    window.resetsAt = Date::fromUnixSeconds(*reset);
  return window;
}

} // namespace

std::optional<ClaudeUsageLimits> ClaudeUsageLimitsFormat::limits(std::string_view payload,
                                                                 Date readAt) {
  JSONValue document;
  try {
    document = JSONValue::parse(payload);
  } catch (const JSONError&) {
    return std::nullopt;
  }
  if (document.object() == nullptr)
    return std::nullopt;
  ClaudeUsageLimits limits;
  limits.readAt = readAt;
  if (const auto* rates = document.member("rate_limits")) {
    limits.fiveHour = window(*rates, "five_hour");
    limits.sevenDay = window(*rates, "seven_day");
  }
  for (const auto key : {"subscription_type", "subscriptionType"})
    if (const auto* type = document.member(key);
        type != nullptr && type->string() != nullptr && !limits.subscriptionType)
      limits.subscriptionType = *type->string();
  return limits;
}

std::optional<std::string> ClaudeUsageLimitsFormat::untilReset(const std::optional<Date>& date,
                                                               Date now) {
  if (!date || *date <= now)
    return std::nullopt;
  const auto minutes =
      std::max<std::int64_t>(1, static_cast<std::int64_t>(std::min(date->since(now), 1e12) / 60));
  if (minutes < 60)
    return translated("{minutes}m", {{"minutes", minutes}});
  if (minutes < 24 * 60)
    return translated("{hours}h {minutes}m", {{"hours", minutes / 60}, {"minutes", minutes % 60}});
  return translated("{days}d {hours}h",
                    {{"days", minutes / (24 * 60)}, {"hours", minutes / 60 % 24}});
}

} // namespace tavrin

#pragma once

#include "TavrinCore/Base/Coding.h"

#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// One window of a plan's rate limit.
struct ClaudeUsageWindow {
  /// 0 to 100.
  double usedPercentage = 0;
  std::optional<Date> resetsAt;

  /// The percentage at `now`: nothing once the window has been reset.
  double usedAt(Date now) const { return resetsAt && *resetsAt <= now ? 0 : usedPercentage; }

  static constexpr auto fields() {
    return std::tuple{required("usedPercentage", &ClaudeUsageWindow::usedPercentage),
                      optional("resetsAt", &ClaudeUsageWindow::resetsAt)};
  }
  bool operator==(const ClaudeUsageWindow&) const = default;
};

struct ClaudeUsageLimits {
  std::optional<ClaudeUsageWindow> fiveHour;
  std::optional<ClaudeUsageWindow> sevenDay;
  std::optional<std::string> subscriptionType;
  Date readAt;

  static constexpr auto fields() {
    return std::tuple{optional("fiveHour", &ClaudeUsageLimits::fiveHour),
                      optional("sevenDay", &ClaudeUsageLimits::sevenDay),
                      optional("subscriptionType", &ClaudeUsageLimits::subscriptionType),
                      required("readAt", &ClaudeUsageLimits::readAt)};
  }
  bool operator==(const ClaudeUsageLimits&) const = default;
};

namespace ClaudeUsageLimitsFormat {

/// What a status line command is handed on its standard input, as JSON. No value when it is no
/// JSON object; a window that is missing or has no number is left away.
std::optional<ClaudeUsageLimits> limits(std::string_view payload, Date readAt);

/// "42m", "2h 13m", "3d 4h", at least "1m"; no value without a date or for one that has passed.
std::optional<std::string> untilReset(const std::optional<Date>& date, Date now);

} // namespace ClaudeUsageLimitsFormat

} // namespace tavrin

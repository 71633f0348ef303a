#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageEntries.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

struct ClaudeUsageProject {
  std::string name;
  std::int64_t tokens = 0;
  bool operator==(const ClaudeUsageProject&) const = default;
};

/// What was used in a period. `tokens` is the sum of the four kinds.
struct ClaudeUsageTotals {
  std::int64_t tokens = 0;
  std::int64_t inputTokens = 0;
  std::int64_t outputTokens = 0;
  std::int64_t cacheCreationTokens = 0;
  std::int64_t cacheReadTokens = 0;
  std::int64_t messages = 0;
  std::optional<Date> lastActivity;
  /// Busiest first, by name where two are equal. Messages of no known project are in none.
  std::vector<ClaudeUsageProject> projects;
  bool operator==(const ClaudeUsageTotals&) const = default;
};

using ClaudeUsageByScope = std::map<ClaudeUsageScope, ClaudeUsageTotals>;

/// The first moment of a scope's period: five hours back, today's start, or the start of the day
/// six days before today.
Date start(ClaudeUsageScope scope, Date now, const Calendar& calendar);
/// The earliest of all scopes' starts.
Date earliestStart(Date now, const Calendar& calendar);
inline std::string_view id(ClaudeUsageScope scope) {
  return nameOf(scope);
}

namespace ClaudeUsage {

/// The messages at or after the scope's start.
ClaudeUsageTotals totals(const ClaudeUsageEntries& entries, ClaudeUsageScope scope, Date now,
                         const Calendar& calendar);
/// The totals of every scope.
ClaudeUsageByScope totalsByScope(const ClaudeUsageEntries& entries, Date now,
                                 const Calendar& calendar);
/// The messages of a period.
ClaudeUsageTotals totals(const ClaudeUsageEntries& entries, const DateInterval& period);
/// The totals of the periods that begin at `starts`, which ascend: each reaches to the next one's
/// start, and the last has no end. All are made in one pass.
std::vector<ClaudeUsageTotals> totalsBetween(const ClaudeUsageEntries& entries,
                                             const std::vector<Date>& starts);

/// The days of a chart.
inline constexpr int chartDays = 30;
/// The starts of so many days, the last of them today's.
std::vector<Date> dayStarts(Date now, const Calendar& calendar, int days);

/// "999", "12.3k", "250k", "3.4M", "12M".
std::string shortTokens(std::int64_t tokens);

/// A project by the name of its folder of logs, which is the project's path with everything but
/// letters and digits written as "-". What leads to a user's home is left away: "-home-ann-app"
/// and "-Users-ann-app" are "app", a home itself is "~". No value for a folder that is not named
/// after a path.
std::optional<std::string> projectName(std::string_view folder);

} // namespace ClaudeUsage

} // namespace tavrin

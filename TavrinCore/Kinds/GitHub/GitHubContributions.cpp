#include "TavrinCore/Kinds/GitHub/GitHubContributions.h"

#include "TavrinCore/Base/ISO8601.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace tavrin {
namespace {

/// 0 for Sunday; no value for a text that is no date.
std::optional<std::size_t> weekday(const std::string& date) {
  const auto noon = dateFromISO8601(date + "T12:00:00Z");
  if (!noon)
    return std::nullopt;
  const std::chrono::sys_seconds time(
      std::chrono::seconds(static_cast<std::int64_t>(noon->unixSeconds())));
  return std::chrono::weekday(std::chrono::floor<std::chrono::days>(time)).c_encoding();
}

} // namespace

GitHubContributions::GitHubContributions(std::vector<GitHubContributionDay> allDays, int sum)
    : days(std::move(allDays)), total(sum) {
  std::vector<int> counts;
  for (const auto& day : days)
    if (day.count > 0)
      counts.push_back(day.count);
  if (counts.empty())
    return;
  std::sort(counts.begin(), counts.end());
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const double share = 0.25 * static_cast<double>(i + 1);
    steps[i] = counts[static_cast<std::size_t>(
        std::lround(share * static_cast<double>(counts.size() - 1)))];
  }
}

int GitHubContributions::level(int count) const {
  if (count <= 0)
    return 0;
  return 1 + static_cast<int>(std::count_if(steps.begin(), steps.end(),
                                            [&](int step) { return count >= step; }));
}

std::vector<GitHubContributions::Column> GitHubContributions::columns(int weeks) const {
  std::vector<Column> columns;
  std::size_t last = 7;
  for (const auto& day : days) {
    const auto place = weekday(day.date);
    if (!place)
      continue;
    if (columns.empty() || *place <= last)
      columns.emplace_back();
    last = *place;
    columns.back()[*place] = day;
  }
  const auto wanted = static_cast<std::size_t>(std::max(weeks, 0));
  if (columns.size() > wanted)
    columns.erase(columns.begin(), columns.end() - static_cast<std::ptrdiff_t>(wanted));
  return columns;
}

int GitHubContributions::streak() const {
  auto day = days.rbegin();
  if (day != days.rend() && day->count <= 0)
    ++day;
  int streak = 0;
  for (; day != days.rend() && day->count > 0; ++day)
    ++streak;
  return streak;
}

std::optional<GitHubContributionDay> GitHubContributions::busiest() const {
  const auto most = std::max_element(
      days.rbegin(), days.rend(), [](const auto& a, const auto& b) { return a.count < b.count; });
  return most == days.rend() || most->count <= 0 ? std::nullopt : std::optional(*most);
}

} // namespace tavrin

#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsage.h"

#include "TavrinCore/Text/DecimalText.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <limits>

namespace tavrin {
namespace {

constexpr double blockSeconds = 18'000;

/// Sums by project. Entries of one project share their name, so most are told by its address;
/// names that are held twice come together at the end.
class ProjectSums {
public:
  void add(const ClaudeUsageProjectName& project, std::int64_t tokens) {
    if (!project)
      return;
    auto found = sums_.size();
    if (last_ < sums_.size() && sums_[last_].first == project.get())
      found = last_;
    for (std::size_t i = 0; found == sums_.size() && i < sums_.size(); ++i)
      if (sums_[i].first == project.get())
        found = i;
    if (found == sums_.size())
      sums_.emplace_back(project.get(), 0);
    sums_[found].second += tokens;
    last_ = found;
  }

  std::vector<ClaudeUsageProject> busiestFirst() const {
    std::map<std::string_view, std::int64_t> byName;
    for (const auto& [name, tokens] : sums_)
      byName[*name] += tokens;
    std::vector<ClaudeUsageProject> projects;
    for (const auto& [name, tokens] : byName)
      projects.push_back({std::string(name), tokens});
    std::stable_sort(projects.begin(), projects.end(),
                     [](const auto& a, const auto& b) { return a.tokens > b.tokens; });
    return projects;
  }

private:
  std::vector<std::pair<const std::string*, std::int64_t>> sums_;
  std::size_t last_ = 0;
};

class Sums {
public:
  void add(const ClaudeUsageEntry& entry) {
    totals_.inputTokens += entry.inputTokens;
    totals_.outputTokens += entry.outputTokens;
    totals_.cacheCreationTokens += entry.cacheCreationTokens;
    totals_.cacheReadTokens += entry.cacheReadTokens;
    ++totals_.messages;
    if (!totals_.lastActivity || *totals_.lastActivity < entry.timestamp)
      totals_.lastActivity = entry.timestamp;
    projects_.add(entry.project, entry.tokens());
  }
  ClaudeUsageTotals totals() const {
    auto totals = totals_;
    totals.tokens = totals.inputTokens + totals.outputTokens + totals.cacheCreationTokens +
                    totals.cacheReadTokens;
    totals.projects = projects_.busiestFirst();
    return totals;
  }

private:
  ClaudeUsageTotals totals_;
  ProjectSums projects_;
};

} // namespace

Date start(ClaudeUsageScope scope, Date now, const Calendar& calendar) {
  switch (scope) {
  case ClaudeUsageScope::block:
    return now - blockSeconds;
  case ClaudeUsageScope::today:
    return calendar.startOfDay(now);
  case ClaudeUsageScope::week:
    return calendar.startOfDay(calendar.addingDays(-6, calendar.startOfDay(now)));
  }
  return now;
}

Date earliestStart(Date now, const Calendar& calendar) {
  Date earliest = now;
  for (const auto scope : allCases<ClaudeUsageScope>())
    earliest = std::min(earliest, start(scope, now, calendar));
  return earliest;
}

ClaudeUsageTotals ClaudeUsage::totals(const ClaudeUsageEntries& entries, ClaudeUsageScope scope,
                                      Date now, const Calendar& calendar) {
  return totals(entries, {start(scope, now, calendar), {std::numeric_limits<double>::infinity()}});
}

ClaudeUsageByScope ClaudeUsage::totalsByScope(const ClaudeUsageEntries& entries, Date now,
                                              const Calendar& calendar) {
  std::vector<std::pair<Date, Sums>> scopes;
  for (const auto scope : allCases<ClaudeUsageScope>())
    scopes.emplace_back(start(scope, now, calendar), Sums());
  for (const auto& entry : entries)
    for (auto& [from, sums] : scopes)
      if (from <= entry.timestamp)
        sums.add(entry);
  ClaudeUsageByScope byScope;
  auto sums = scopes.begin();
  for (const auto scope : allCases<ClaudeUsageScope>())
    byScope.emplace(scope, (sums++)->second.totals());
  return byScope;
}

ClaudeUsageTotals ClaudeUsage::totals(const ClaudeUsageEntries& entries,
                                      const DateInterval& period) {
  Sums sums;
  for (const auto& entry : entries)
    if (period.contains(entry.timestamp))
      sums.add(entry);
  return sums.totals();
}

std::vector<ClaudeUsageTotals> ClaudeUsage::totalsBetween(const ClaudeUsageEntries& entries,
                                                          const std::vector<Date>& starts) {
  std::vector<Sums> sums(starts.size());
  std::size_t last = 0; // neighbours are mostly of one period
  for (const auto& entry : entries) {
    if (starts.empty() || entry.timestamp < starts.front())
      continue;
    const bool isSame = starts[last] <= entry.timestamp &&
                        (last + 1 == starts.size() || entry.timestamp < starts[last + 1]);
    if (!isSame)
      last = static_cast<std::size_t>(
          std::upper_bound(starts.begin(), starts.end(), entry.timestamp) - starts.begin() - 1);
    sums[last].add(entry);
  }
  std::vector<ClaudeUsageTotals> totals;
  totals.reserve(sums.size());
  for (const auto& one : sums)
    totals.push_back(one.totals());
  return totals;
}

std::vector<Date> ClaudeUsage::dayStarts(Date now, const Calendar& calendar, int days) {
  const Date today = calendar.startOfDay(now);
  std::vector<Date> starts{calendar.startOfDay(calendar.addingDays(1 - days, today))};
  while (starts.back() < today)
    starts.push_back(calendar.startOfDay(calendar.addingDays(1, starts.back())));
  return starts;
}

std::string ClaudeUsage::shortTokens(std::int64_t tokens) {
  if (tokens < 1000)
    return std::to_string(tokens);
  if (tokens < 100'000)
    return decimalText(static_cast<double>(tokens) / 1000, 1) + "k";
  if (tokens < 1'000'000)
    return fmt::format("{}k", tokens / 1000);
  if (tokens < 10'000'000)
    return decimalText(static_cast<double>(tokens) / 1e6, 1) + "M";
  return fmt::format("{}M", tokens / 1'000'000);
}

std::optional<std::string> ClaudeUsage::projectName(std::string_view folder) {
  if (folder.size() < 2 || folder.front() != '-' ||
      folder.find_first_not_of('-') == std::string_view::npos)
    return std::nullopt;
  folder.remove_prefix(1);
  for (const std::string_view homes : {"home-", "Users-"}) {
    if (!folder.starts_with(homes) || folder.size() == homes.size())
      continue;
    const auto inHome = folder.find('-', homes.size());
    if (inHome == std::string_view::npos || inHome + 1 == folder.size())
      return "~";
    return std::string(folder.substr(inHome + 1));
  }
  return std::string(folder);
}

} // namespace tavrin

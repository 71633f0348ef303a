#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tavrin {

struct GitHubContributionDay {
  /// As GitHub sends it, 2026-03-29.
  std::string date;
  int count = 0;
  bool operator==(const GitHubContributionDay&) const = default;
};

/// A year of contributions, day by day.
struct GitHubContributions {
  /// From Sunday; days before the first and after the last one are missing.
  using Column = std::array<std::optional<GitHubContributionDay>, 7>;

  std::vector<GitHubContributionDay> days;
  int total = 0;
  /// The counts at a quarter, a half and three quarters of the days that have any; 0 where none
  /// has.
  std::array<int, 3> steps = {0, 0, 0};

  GitHubContributions() = default;
  GitHubContributions(std::vector<GitHubContributionDay> days, int total);

  /// How strongly a day is coloured: 0 for no contributions, then 1 to 4 by the steps it reaches.
  int level(int count) const;
  /// The last `weeks` weeks, fewer where there are fewer.
  std::vector<Column> columns(int weeks) const;
  /// Days with contributions one after the other up to the latest. The latest itself is today and
  /// not over: without contributions it does not end them.
  int streak() const;
  /// The latest of the days with the highest count; no value where all are 0.
  std::optional<GitHubContributionDay> busiest() const;

  bool operator==(const GitHubContributions&) const = default;
};

} // namespace tavrin

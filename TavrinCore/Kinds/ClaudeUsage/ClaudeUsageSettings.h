#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

/// What the tile shows.
enum class ClaudeUsageShows { fiveHourLimit, weeklyLimit, tokens };

template <> struct EnumNames<ClaudeUsageShows> {
  static constexpr auto names = std::to_array<std::pair<ClaudeUsageShows, std::string_view>>(
      {{ClaudeUsageShows::fiveHourLimit, "fiveHourLimit"},
       {ClaudeUsageShows::weeklyLimit, "weeklyLimit"},
       {ClaudeUsageShows::tokens, "tokens"}});
};

template <> struct EnumTitles<ClaudeUsageShows> {
  static constexpr auto titles = std::to_array<std::string_view>(
      {marked("Five-hour limit"), marked("Weekly limit"), marked("Tokens")});
};

/// The period over which tokens are counted.
enum class ClaudeUsageScope { block, today, week };

template <> struct EnumNames<ClaudeUsageScope> {
  static constexpr auto names = std::to_array<std::pair<ClaudeUsageScope, std::string_view>>(
      {{ClaudeUsageScope::block, "block"},
       {ClaudeUsageScope::today, "today"},
       {ClaudeUsageScope::week, "week"}});
};

template <> struct EnumTitles<ClaudeUsageScope> {
  static constexpr auto titles = std::to_array<std::string_view>(
      {marked("Last 5 hours"), marked("Today"), marked("Last 7 days")});
};

struct ClaudeUsageSettings {
  static constexpr std::string_view kindKey = "claudeUsage";

  /// Tokens need no connection first.
  ClaudeUsageShows shows = ClaudeUsageShows::tokens;
  ClaudeUsageScope scope = ClaudeUsageScope::today;
  /// Tokens against which the tile shows a fraction.
  std::optional<std::int64_t> budget;

  static constexpr auto fields() {
    return std::tuple{optional("shows", &ClaudeUsageSettings::shows)
                          .titled("Tile")
                          .helped("What stands on the tile; the limits need a connection first."),
                      optional("scope", &ClaudeUsageSettings::scope)
                          .titled("Period")
                          .helped("Over what time tokens are counted."),
                      optional("budget", &ClaudeUsageSettings::budget)
                          .titled("Token budget")
                          .helped("The tile shows how much of it is used.")
                          .absentAs("No budget")
                          .stepping(100'000)
                          .ranging(1, 1e12)};
  }
  bool operator==(const ClaudeUsageSettings&) const = default;
};

} // namespace tavrin

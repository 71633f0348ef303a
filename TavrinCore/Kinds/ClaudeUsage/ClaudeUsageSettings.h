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

/// The period over which tokens are counted.
enum class ClaudeUsageScope { block, today, week };

template <> struct EnumNames<ClaudeUsageScope> {
  static constexpr auto names = std::to_array<std::pair<ClaudeUsageScope, std::string_view>>(
      {{ClaudeUsageScope::block, "block"},
       {ClaudeUsageScope::today, "today"},
       {ClaudeUsageScope::week, "week"}});
};

struct ClaudeUsageSettings {
  /// Tokens need no connection first.
  ClaudeUsageShows shows = ClaudeUsageShows::tokens;
  ClaudeUsageScope scope = ClaudeUsageScope::today;
  /// Tokens against which the tile shows a fraction.
  std::optional<std::int64_t> budget;

  static constexpr auto fields() {
    return std::tuple{
        optional("shows", &ClaudeUsageSettings::shows).titled("Tile"),
        optional("scope", &ClaudeUsageSettings::scope).titled("Period"),
        optional("budget", &ClaudeUsageSettings::budget).titled("Token budget").ranging(1, 1e12)};
  }
  bool operator==(const ClaudeUsageSettings&) const = default;
};

} // namespace tavrin

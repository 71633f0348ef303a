#pragma once

#include "TavrinCore/Kinds/GitHub/GitHubBoard.h"
#include "TavrinCore/Kinds/GitHub/GitHubContributions.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// What is asked of GitHub's GraphQL interface, and what it answers.
namespace GitHubQuery {

/// `text` as a GraphQL string literal.
std::string quoted(std::string_view text);

/// The searches for what a widget shows; none for contributions.
std::vector<std::string> searches(GitHubShows shows);
/// Results asked for per search: twice the limit, so that there is something to choose from, in
/// 10...50.
int first(int limit);

/// The words after `gh` that ask for what the settings show.
std::vector<std::string> arguments(const GitHubSettings& settings);

/// An answer, as far as it goes: GitHub may send a part of what was asked for and say what went
/// wrong with the rest.
struct Answer {
  std::vector<GitHubItem> items;
  std::optional<GitHubContributions> contributions;
  /// Whether anything that was asked for is there, an empty list included.
  bool hasData = false;
  /// The first error's message; empty where there is none.
  std::string error;
};

/// No value when it is no JSON object. Nodes that lack something are left away.
std::optional<Answer> answer(std::string_view response);

} // namespace GitHubQuery

} // namespace tavrin

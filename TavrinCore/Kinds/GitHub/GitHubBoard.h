#pragma once

#include "TavrinCore/Base/Date.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// The state of a pull request's checks, most urgent first: lists are sorted by it.
enum class GitHubChecks { failing, running, passing, none };

/// A rollup's state as GitHub names it; absent or of another name reads as `none`.
GitHubChecks reading(const std::optional<std::string>& rollup);
/// The badge's colour, "#RRGGBB".
std::string_view colorHex(GitHubChecks checks);
/// "Failing", "Running", "Passing"; empty for none.
std::string_view title(GitHubChecks checks);

/// A pull request or an issue.
struct GitHubItem {
  std::int64_t number = 0;
  std::string title;
  /// As owner/name.
  std::string repository;
  std::string url;
  GitHubChecks checks = GitHubChecks::none;
  bool isDraft = false;
  bool isIssue = false;
  Date updatedAt;
  bool operator==(const GitHubItem&) const = default;
};

namespace GitHubBoard {

/// Those of the listed repositories (in any case; all where none is listed), drafts only where
/// wanted; the most urgent checks first, then the latest; no more than the settings' limit and at
/// least one.
std::vector<GitHubItem> select(std::vector<GitHubItem> items, const GitHubSettings& settings);
GitHubChecks worstChecks(const std::vector<GitHubItem>& items);
std::int64_t failing(const std::vector<GitHubItem>& items);

} // namespace GitHubBoard

} // namespace tavrin

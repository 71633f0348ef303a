#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

enum class GitHubShows { myPullRequests, waitingOnYou, contributions };

template <> struct EnumNames<GitHubShows> {
  static constexpr auto names = std::to_array<std::pair<GitHubShows, std::string_view>>(
      {{GitHubShows::myPullRequests, "myPullRequests"},
       {GitHubShows::waitingOnYou, "waitingOnYou"},
       {GitHubShows::contributions, "contributions"}});
};

struct GitHubSettings {
  GitHubShows shows = GitHubShows::myPullRequests;
  /// As owner/name; empty means all.
  std::vector<std::string> repositories;
  bool includesDrafts = true;
  /// The most items listed.
  int limit = 8;

  static constexpr auto fields() {
    return std::tuple{
        optional("shows", &GitHubSettings::shows).titled("Show"),
        optional("repositories", &GitHubSettings::repositories).titled("Repositories"),
        optional("includesDrafts", &GitHubSettings::includesDrafts).titled("Include drafts"),
        optional("limit", &GitHubSettings::limit).titled("Items").ranging(1, 50)};
  }
  bool operator==(const GitHubSettings&) const = default;
};

} // namespace tavrin

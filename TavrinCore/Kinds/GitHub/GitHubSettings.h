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

template <> struct EnumTitles<GitHubShows> {
  static constexpr auto titles = std::to_array<std::string_view>(
      {marked("My pull requests"), marked("Waiting on you"), marked("Contributions")});
};

struct GitHubSettings {
  static constexpr std::string_view kindKey = "github";

  GitHubShows shows = GitHubShows::myPullRequests;
  /// As owner/name; empty means all.
  std::vector<std::string> repositories;
  bool includesDrafts = true;
  /// The most items listed.
  int limit = 8;

  static constexpr auto fields() {
    return std::tuple{optional("shows", &GitHubSettings::shows)
                          .titled("Show")
                          .helped("What is asked of GitHub, through its command-line tool."),
                      optional("repositories", &GitHubSettings::repositories)
                          .titled("Repositories")
                          .helped("Only what belongs to these, each written owner/name.")
                          .as(FieldRole::repository)
                          .absentAs("All repositories")
                          .enabledUnless("shows", "\"contributions\""),
                      optional("includesDrafts", &GitHubSettings::includesDrafts)
                          .titled("Include drafts")
                          .helped("Also lists pull requests that are not ready for review.")
                          .enabledUnless("shows", "\"contributions\""),
                      optional("limit", &GitHubSettings::limit)
                          .titled("Items")
                          .helped("The most items listed.")
                          .enabledUnless("shows", "\"contributions\"")
                          .ranging(1, 50)};
  }
  bool operator==(const GitHubSettings&) const = default;
};

} // namespace tavrin

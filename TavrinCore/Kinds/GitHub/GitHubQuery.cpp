#include "TavrinCore/Kinds/GitHub/GitHubQuery.h"

#include "TavrinCore/Base/ISO8601.h"
#include "TavrinCore/Base/JSONValue.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinCore/Text/Numbers.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <limits>

namespace tavrin {
namespace {

constexpr std::string_view nodeSelection =
    "nodes { __typename ... on PullRequest { number title url isDraft updatedAt repository { "
    "nameWithOwner } commits(last: 1) { nodes { commit { statusCheckRollup { state } } } } } ... "
    "on Issue { number title url updatedAt repository { nameWithOwner } } }";
constexpr std::string_view viewerQuery =
    "viewer { contributionsCollection { contributionCalendar { totalContributions weeks { "
    "contributionDays { date contributionCount } } } } }";

/// Follows `keys` into objects; null where one is missing.
const JSONValue* at(const JSONValue* value, std::initializer_list<std::string_view> keys) {
  for (const auto key : keys)
    value = value == nullptr ? nullptr : value->member(key);
  return value;
}

std::optional<std::string> text(const JSONValue* value) {
  return value != nullptr && value->string() != nullptr ? std::optional(*value->string())
                                                        : std::nullopt;
}
std::optional<std::int64_t> number(const JSONValue* value) {
  return value == nullptr ? std::nullopt : value->integerValue();
}
const JSONValue::Array& list(const JSONValue* value) {
  static const JSONValue::Array none;
  return value != nullptr && value->array() != nullptr ? *value->array() : none;
}

GitHubChecks checks(const JSONValue& node) {
  const auto& commits = list(at(&node, {"commits", "nodes"}));
  return commits.empty()
             ? GitHubChecks::none
             : reading(text(at(&commits.back(), {"commit", "statusCheckRollup", "state"})));
}

std::optional<GitHubItem> item(const JSONValue& node) {
  const auto itemNumber = number(node.member("number"));
  const auto title = text(node.member("title"));
  const auto url = text(node.member("url"));
  const auto repository = text(at(&node, {"repository", "nameWithOwner"}));
  const auto updatedAt = dateFromISO8601(text(node.member("updatedAt")).value_or(""));
  if (!itemNumber || !title || !url || !repository || !updatedAt)
    return std::nullopt;
  const auto* draft = node.member("isDraft");
  return GitHubItem{*itemNumber,
                    *title,
                    *repository,
                    *url,
                    checks(node),
                    draft != nullptr && draft->boolean() != nullptr && *draft->boolean(),
                    text(node.member("__typename")) == "Issue",
                    *updatedAt};
}

std::optional<GitHubContributions> contributions(const JSONValue* calendar) {
  if (calendar == nullptr || calendar->object() == nullptr)
    return std::nullopt;
  std::vector<GitHubContributionDay> days;
  for (const auto& week : list(calendar->member("weeks")))
    for (const auto& day : list(week.member("contributionDays")))
      if (auto date = text(day.member("date")))
        days.push_back(
            {std::move(*date), boundedCount(number(day.member("contributionCount")).value_or(0))});
  return GitHubContributions(
      std::move(days), boundedCount(number(calendar->member("totalContributions")).value_or(0)));
}

std::string searchQuery(const std::vector<std::string>& searches, int first) {
  std::string query = "query {\n";
  for (std::size_t i = 0; i < searches.size(); ++i)
    query += fmt::format("s{}: search(query: {}, type: ISSUE, first: {}) {{ {} }}\n", i,
                         GitHubQuery::quoted(searches[i]), first, nodeSelection);
  return query + "}";
}

} // namespace

std::string GitHubQuery::quoted(std::string_view text) {
  std::string literal = "\"";
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (character == '"' || character == '\\')
      literal += {'\\', character};
    else if (byte < 0x20 || byte == 0x7f)
      literal += fmt::format("\\u{:04x}", byte);
    else
      literal += character;
  }
  return literal + "\"";
}

std::vector<std::string> GitHubQuery::searches(GitHubShows shows) {
  switch (shows) {
  case GitHubShows::myPullRequests:
    return {"is:open is:pr author:@me archived:false"};
  case GitHubShows::waitingOnYou:
    return {"is:open is:pr review-requested:@me archived:false",
            "is:open is:issue assignee:@me archived:false"};
  case GitHubShows::contributions:
    return {};
  }
  return {};
}

int GitHubQuery::first(int limit) {
  return std::clamp(std::min(limit, 50) * 2, 10, 50);
}

std::vector<std::string> GitHubQuery::arguments(const GitHubSettings& settings) {
  const std::string query = settings.shows == GitHubShows::contributions
                                ? fmt::format("query {{ {} }}", viewerQuery)
                                : searchQuery(searches(settings.shows), first(settings.limit));
  return {"api", "graphql", "-f", "query=" + query};
}

std::optional<GitHubQuery::Answer> GitHubQuery::answer(std::string_view response) {
  JSONValue document;
  try {
    document = JSONValue::parse(response);
  } catch (const JSONError&) {
    return std::nullopt;
  }
  if (document.object() == nullptr)
    return std::nullopt;
  Answer answer;
  if (const auto* data = document.member("data"); data != nullptr && data->object() != nullptr)
    for (const auto& [alias, found] : *data->object()) {
      const auto* nodes = found.member("nodes");
      answer.hasData |= nodes != nullptr && nodes->array() != nullptr;
      for (const auto& node : list(nodes))
        if (auto made = item(node))
          answer.items.push_back(std::move(*made));
    }
  answer.contributions = contributions(
      at(&document, {"data", "viewer", "contributionsCollection", "contributionCalendar"}));
  answer.hasData |= answer.contributions.has_value();
  if (const auto& errors = list(document.member("errors")); !errors.empty())
    answer.error = text(errors.front().member("message")).value_or("GitHub answered with an error");
  else if (const auto message = text(document.member("message")); message && !answer.hasData)
    answer.error = *message;
  return answer;
}

} // namespace tavrin

#include "TavrinCore/Kinds/GitHub/GitHubBoard.h"

#include <algorithm>

namespace tavrin {
namespace {

char lowered(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                              : character;
}

bool isSameName(std::string_view first, std::string_view second) {
  return std::equal(first.begin(), first.end(), second.begin(), second.end(),
                    [](char a, char b) { return lowered(a) == lowered(b); });
}

} // namespace

GitHubChecks reading(const std::optional<std::string>& rollup) {
  if (rollup == "SUCCESS")
    return GitHubChecks::passing;
  if (rollup == "FAILURE" || rollup == "ERROR")
    return GitHubChecks::failing;
  if (rollup == "PENDING" || rollup == "EXPECTED")
    return GitHubChecks::running;
  return GitHubChecks::none;
}

std::string_view colorHex(GitHubChecks checks) {
  switch (checks) {
  case GitHubChecks::failing:
    return "#F85149";
  case GitHubChecks::running:
    return "#D29922";
  case GitHubChecks::passing:
    return "#3FB950";
  case GitHubChecks::none:
    return "#8B949E";
  }
  return {};
}

std::string_view title(GitHubChecks checks) {
  switch (checks) {
  case GitHubChecks::failing:
    return translation("Failing");
  case GitHubChecks::running:
    return translation("Running");
  case GitHubChecks::passing:
    return translation("Passing");
  case GitHubChecks::none:
    return "";
  }
  return {};
}

std::vector<GitHubItem> GitHubBoard::select(std::vector<GitHubItem> items,
                                            const GitHubSettings& settings) {
  std::erase_if(items, [&](const GitHubItem& item) {
    const auto& listed = settings.repositories;
    const bool isListed =
        listed.empty() || std::any_of(listed.begin(), listed.end(), [&](const auto& name) {
          return isSameName(name, item.repository);
        });
    return !isListed || (item.isDraft && !settings.includesDrafts);
  });
  std::stable_sort(items.begin(), items.end(), [](const GitHubItem& a, const GitHubItem& b) {
    return a.checks != b.checks ? a.checks < b.checks : a.updatedAt > b.updatedAt;
  });
  items.resize(std::min(items.size(), static_cast<std::size_t>(std::max(1, settings.limit))));
  return items;
}

GitHubChecks GitHubBoard::worstChecks(const std::vector<GitHubItem>& items) {
  GitHubChecks worst = GitHubChecks::none;
  for (const auto& item : items)
    worst = std::min(worst, item.checks);
  return worst;
}

std::int64_t GitHubBoard::failing(const std::vector<GitHubItem>& items) {
  return std::count_if(items.begin(), items.end(),
                       [](const GitHubItem& item) { return item.checks == GitHubChecks::failing; });
}

} // namespace tavrin

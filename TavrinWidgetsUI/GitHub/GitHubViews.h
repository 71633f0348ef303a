#pragma once

#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinWidgetsUI/GitHub/GitHubSource.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

namespace tavrin {

inline constexpr QColor gitHubTint{0x57, 0xA6, 0xFF};

/// What tile and panel show.
struct GitHubReading {
  GitHubSettings settings;
  std::vector<GitHubItem> items;
  std::optional<GitHubContributions> contributions;
  std::optional<GitHubSource::Trouble> trouble;
  bool hasRead = false;
  bool isLoading = false;
};

/// The words for a trouble, short for tiles.
QString shortText(const GitHubSource::Trouble& trouble);
/// What an empty list says.
inline constexpr const char* nothingText = marked("Nothing waiting on you");
/// "3 failing ".
QString failingText(std::int64_t failing);
/// "Failing · owner/name #12".
QString itemText(const GitHubItem& item);
/// How long ago, in its largest unit: "now", "5m", "3h", "12d".
QString agoText(Date date, Date now);
QColor checksColour(GitHubChecks checks);

/// The squares of a contribution calendar, a column a week.
struct ContributionGrid {
  /// From the oldest week, top to bottom: 0 to 4, -1 where there is no day.
  std::vector<std::array<int, 7>> columns;
  QColor empty;
  QColor ground;
  bool operator==(const ContributionGrid&) const = default;

  static ContributionGrid of(const GitHubContributions& contributions, int weeks,
                             const QColor& empty, const QColor& ground);
  /// As large as offered, squares with gaps of a fifth of their side.
  AnyView view() const;
};

AnyView gitHubTileIcon(const GitHubReading& reading, const TileSize& size);
/// `open`: an item was clicked.
AnyView gitHubWideTile(const GitHubReading& reading, Date now, const TileSize& size,
                       const std::function<void(const std::string& url)>& open);

} // namespace tavrin

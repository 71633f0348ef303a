#pragma once

#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsage.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageLimits.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

namespace tavrin {

inline constexpr QColor claudeUsageTint{0xE0, 0x7B, 0x56};

/// What the tile shows, read at one moment.
struct ClaudeUsageReading {
  ClaudeUsageSettings settings;
  ClaudeUsageTotals totals;
  std::optional<ClaudeUsageLimits> limits;
  bool isConnected = false;
  bool isAvailable = true;
  bool hasRead = false;
};

/// The part of a window that is used at `now`, 0 to 1: a window that was reset begins anew.
double usedFraction(const ClaudeUsageWindow& window, Date now);
/// The tint, or a warning colour for a limit or budget that is nearly or wholly used.
QColor claudeUsageLevelTint(double fraction);
/// "Last 5 hours", "Today", "Last 7 days".
QString scopeTitle(ClaudeUsageScope scope);
/// "1,204 messages" in the user's digits and separators.
QString messagesText(std::int64_t messages);
/// What is to be said in place of limits that are not there.
QString missingLimitsText(bool isConnected);

AnyView claudeUsageTileIcon(const ClaudeUsageReading& reading, Date now, const TileSize& size);
AnyView claudeUsageWideTile(const ClaudeUsageReading& reading, Date now, const TileSize& size);

} // namespace tavrin

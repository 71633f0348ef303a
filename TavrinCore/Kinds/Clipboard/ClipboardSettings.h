#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct ClipboardSettings {
  /// The most items kept; pinned ones count but are never dropped.
  int historyLimit = 200;
  /// Unpinned items older than this are dropped.
  int retentionDays = 30;
  bool persistAcrossRestarts = true;
  bool showLastPreviewOnTile = false;
  /// Skips copies that are marked as transient.
  bool ignorePasswordManagers = true;
  int maxImageBytes = 2'000'000;
  bool fetchWebsitePreviews = true;

  static constexpr auto fields() {
    return std::tuple{optional("historyLimit", &ClipboardSettings::historyLimit)
                          .titled("Items kept")
                          .ranging(1, 1000),
                      optional("retentionDays", &ClipboardSettings::retentionDays)
                          .titled("Keep for")
                          .in("d")
                          .ranging(1, 365),
                      optional("persistAcrossRestarts", &ClipboardSettings::persistAcrossRestarts)
                          .titled("Keep across restarts"),
                      optional("showLastPreviewOnTile", &ClipboardSettings::showLastPreviewOnTile)
                          .titled("Show the newest item on the tile"),
                      optional("ignorePasswordManagers", &ClipboardSettings::ignorePasswordManagers)
                          .titled("Ignore password managers"),
                      optional("maxImageBytes", &ClipboardSettings::maxImageBytes)
                          .titled("Largest image")
                          .in("B")
                          .ranging(0, 64'000'000),
                      optional("fetchWebsitePreviews", &ClipboardSettings::fetchWebsitePreviews)
                          .titled("Fetch previews of links")};
  }
  bool operator==(const ClipboardSettings&) const = default;
};

} // namespace tavrin

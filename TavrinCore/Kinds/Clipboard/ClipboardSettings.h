#pragma once

#include "TavrinCore/Base/Coding.h"

namespace tavrin {

struct ClipboardSettings {
  static constexpr std::string_view kindKey = "clipboard";

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
    return std::tuple{
        optional("historyLimit", &ClipboardSettings::historyLimit)
            .titled("Items kept")
            .grouped("History")
            .helped("The most items in the history; pinned ones count but are never dropped.")
            .stepping(10)
            .ranging(1, 1000),
        optional("retentionDays", &ClipboardSettings::retentionDays)
            .titled("Keep for")
            .grouped("History")
            .helped("Items older than this are dropped, unless they are pinned.")
            .in("d")
            .ranging(1, 365),
        optional("persistAcrossRestarts", &ClipboardSettings::persistAcrossRestarts)
            .titled("Keep across restarts")
            .grouped("History")
            .helped("Writes the history to an encrypted file; otherwise it ends with the widget."),
        optional("showLastPreviewOnTile", &ClipboardSettings::showLastPreviewOnTile)
            .titled("Show the newest item on the tile")
            .grouped("Tile")
            .helped("Anybody who sees the screen can read it there."),
        optional("ignorePasswordManagers", &ClipboardSettings::ignorePasswordManagers)
            .titled("Ignore password managers")
            .grouped("Privacy")
            .helped("Skips what other programs mark as secret or passing."),
        optional("maxImageBytes", &ClipboardSettings::maxImageBytes)
            .titled("Largest image")
            .grouped("History")
            .helped("Images larger than this are not kept.")
            .shownIn("MB", 1'000'000)
            .stepping(500'000)
            .in("B")
            .ranging(0, 64'000'000),
        optional("fetchWebsitePreviews", &ClipboardSettings::fetchWebsitePreviews)
            .titled("Fetch previews of links")
            .grouped("Privacy")
            .helped("Asks the sites of copied links for their title and picture.")};
  }
  bool operator==(const ClipboardSettings&) const = default;
};

} // namespace tavrin

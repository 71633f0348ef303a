#pragma once

#include "TavrinCore/Widgets/DockWidget.h"

#include <set>
#include <span>

namespace tavrin {

/// Slots are numbered 1 to `count`; each has one slot application.
struct DockSlot {
  static constexpr int count = 12;
  static constexpr std::string_view widgetsChangedNotification =
      "dev.quellby.tavrin.widgetsChanged";
  static constexpr std::string_view editWidgetNotification = "dev.quellby.tavrin.editWidget";

  /// The identifier of the application in which widgets are set up, and its action that opens a
  /// widget's settings.
  static constexpr std::string_view hostIdentifier = "dev.quellby.Tavrin";
  static constexpr std::string_view editAction = "edit";

  /// "dev.quellby.Tavrin.Slot3"
  static std::string bundleIdentifier(int slot);
  /// "dev.quellby.Tavrin.Widget." and the identifier in upper case.
  static std::string widgetBundleIdentifier(const UUID& id);
  /// "Tavrin Slot 3.app"
  static std::string bundleName(int slot);
  static std::optional<UUID> widgetID(std::string_view bundleIdentifier);
  static std::optional<int> slot(std::string_view bundleIdentifier);
  /// Whether the identifier is one of Tavrin's own.
  static bool isTavrin(std::string_view bundleIdentifier);

  /// The lowest slot that no widget uses; none when all are taken.
  static std::optional<int> freeSlot(std::span<const DockWidget> widgets);
  /// The lowest slot that is not in `taken`.
  static std::optional<int> lowestFree(const std::set<int>& taken);
};

} // namespace tavrin

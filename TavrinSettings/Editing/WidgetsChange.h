#pragma once

#include "TavrinStorage/WidgetStore.h"

#include <optional>
#include <string>
#include <vector>

namespace tavrin {

/// What one step did to the widgets: each as it was and as it became. Carried out on whatever
/// stands in the file by then, so that a step can be taken back, and done again, without undoing
/// what others did since.
struct WidgetsChange {
  struct Entry {
    /// No value for a widget that was made.
    std::optional<DockWidget> before;
    /// No value for a widget that was removed.
    std::optional<DockWidget> after;
    bool operator==(const Entry&) const = default;
  };
  std::vector<Entry> entries;

  static WidgetsChange between(const WidgetsFile& before, const WidgetsFile& after);

  bool isEmpty() const { return entries.empty(); }
  WidgetsChange inverse() const;
  /// This change and then `next` as one.
  WidgetsChange followedBy(const WidgetsChange& next) const;

  /// Makes the change within a transaction of `store`: of a widget name, width, place and each
  /// setting that the change touched, where they stand as the change found them. What somebody else
  /// changed since stays; a sentence for each such widget comes back. A place that was given away
  /// meanwhile becomes the first free one.
  std::vector<std::string> apply(WidgetStore& store) const;

  bool operator==(const WidgetsChange&) const = default;
};

} // namespace tavrin

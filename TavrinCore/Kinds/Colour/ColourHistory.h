#pragma once

#include "TavrinCore/Kinds/Colour/PickedColour.h"

namespace tavrin {

/// The picked colours that all colour pickers of a user share, newest first.
struct ColourHistory {
  static constexpr int leastLimit = 4;
  static constexpr int mostLimit = 60;

  int version = 1;
  std::vector<PickedColour> colours;

  /// Puts `colour` at the front in place of every entry of the same colour; it is pinned when the
  /// first of those was.
  void add(PickedColour colour, int limit);
  /// Drops the oldest unpinned entries until `limit` (4 to 60) are left in all. Pinned ones count
  /// and stay, also beyond the limit.
  void trim(int limit);
  void togglePin(const UUID& id, int limit);
  void remove(const UUID& id);
  void clearUnpinned();

  const PickedColour* find(const UUID& id) const;

  static constexpr auto fields() {
    return std::tuple{optional("version", &ColourHistory::version),
                      required("colours", &ColourHistory::colours)};
  }
  bool operator==(const ColourHistory&) const = default;
};

} // namespace tavrin

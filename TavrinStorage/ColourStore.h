#pragma once

#include "TavrinCore/Kinds/ColourHistory.h"
#include "TavrinPlatform/DistributedNotificationCenter.h"

#include <filesystem>

namespace tavrin {

/// The picked colours' file, shared by the colour pickers of all processes. Every change begins by
/// reading the file again, so that what others picked is kept, and is announced once it is written.
///
/// A failed read or write throws FileError; after a failed read nothing is changed or written.
class ColourStore {
public:
  static constexpr const char* changedNotification = "dev.quellby.tavrin.colours-changed";

  ColourStore(std::filesystem::path url, DistributedNotificationCenter& notifications);

  const std::filesystem::path& url() const { return url_; }
  const ColourHistory& history() const { return history_; }

  /// A file that is not there reads as an empty history.
  void reload();

  void add(PickedColour colour, int limit);
  /// By value: the history that the id may be taken from is read anew first.
  void togglePin(UUID id, int limit);
  void remove(UUID id);
  void clearUnpinned();

private:
  template <class Change> void change(const Change& change);

  std::filesystem::path url_;
  DistributedNotificationCenter& notifications_;
  ColourHistory history_;
};

} // namespace tavrin

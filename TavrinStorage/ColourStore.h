#pragma once

#include "TavrinCore/Kinds/Colour/ColourHistory.h"
#include "TavrinStorage/SharedRecord.h"

namespace tavrin {

/// The picked colours' file, shared by the colour pickers of all processes.
class ColourStore {
public:
  static constexpr const char* changedNotification = "dev.quellby.tavrin.colours-changed";

  ColourStore(std::filesystem::path url, DistributedNotificationCenter& notifications)
      : file_(std::move(url), changedNotification, notifications) {}

  const std::filesystem::path& url() const { return file_.url(); }
  const ColourHistory& history() const { return file_.value(); }

  void reload() { file_.reload(); }

  void add(PickedColour colour, int limit);
  /// By value: the history that the id may be taken from is read anew first.
  void togglePin(UUID id, int limit);
  void remove(UUID id);
  void clearUnpinned();

private:
  SharedRecord<ColourHistory> file_;
};

} // namespace tavrin

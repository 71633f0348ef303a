#pragma once

#include "TavrinCore/Kinds/Water/WaterLog.h"
#include "TavrinStorage/SharedRecord.h"

namespace tavrin {

/// The drinking log's file, shared by the water widgets of all processes: what others poured is
/// kept, and each change is announced once it is written.
///
/// A failed read or write throws FileError; nothing is changed then, in the file or here.
class WaterStore {
public:
  static constexpr const char* changedNotification = "dev.quellby.tavrin.water-changed";

  WaterStore(std::filesystem::path url, DistributedNotificationCenter& notifications);

  const std::filesystem::path& url() const { return file_.url(); }
  const WaterLog& log() const { return file_.value(); }

  /// A file that is not there reads as an empty log.
  void reload() { file_.reload(); }

  /// On the user's day of `date`.
  void add(int millilitres, Date date);
  void remove(int millilitres, Date date);
  void clear(Date date);
  /// Writes the log that is in the file again, tidy, and announces it.
  void save();

private:
  template <class Change> void change(const Change& change);

  SharedRecord<WaterLog> file_;
};

} // namespace tavrin

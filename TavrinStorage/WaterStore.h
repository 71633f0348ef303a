#pragma once

#include "TavrinCore/Kinds/Water/WaterLog.h"
#include "TavrinPlatform/DistributedNotificationCenter.h"

#include <filesystem>

namespace tavrin {

/// The drinking log's file, shared by the water widgets of all processes. Every change begins by
/// reading the file again, so that what others poured is kept, and is announced once it is written.
/// A file that others replaced meanwhile is read again and the change made anew. There is no lock:
/// of two changes at the same instant one can still be lost.
///
/// A failed read or write throws FileError; after a failed read nothing is changed or written.
class WaterStore {
public:
  static constexpr const char* changedNotification = "dev.quellby.tavrin.water-changed";

  WaterStore(std::filesystem::path url, DistributedNotificationCenter& notifications);

  const std::filesystem::path& url() const { return url_; }
  const WaterLog& log() const { return log_; }

  /// A file that is not there reads as an empty log.
  void reload();

  /// On the user's day of `date`.
  void add(int millilitres, Date date);
  void remove(int millilitres, Date date);
  void clear(Date date);
  /// Writes the log as it is, whatever the file holds by now, and announces it.
  void save();

private:
  template <class Change> void change(const Change& change);

  std::filesystem::path url_;
  DistributedNotificationCenter& notifications_;
  WaterLog log_;
};

} // namespace tavrin

#pragma once

#include "TavrinPlatform/DistributedNotificationCenter.h"
#include "TavrinStorage/SharedDocument.h"

#include <string>

namespace tavrin {

/// A small record that several processes change; each change is announced once it is written.
///
/// A failed read or write throws FileError; after a failed read nothing is changed or written.
template <Record R> class SharedRecord {
public:
  static constexpr std::size_t maximumSize = 1024 * 1024;

  SharedRecord(std::filesystem::path url, std::string notification,
               DistributedNotificationCenter& notifications, std::size_t largest = maximumSize)
      : document_(std::move(url), largest), notification_(std::move(notification)),
        notifications_(notifications) {
    reload();
  }

  const std::filesystem::path& url() const { return document_.url(); }
  const R& value() const { return document_.value(); }

  /// A file that is not there reads as a new record.
  void reload() { document_.reload(); }

  /// `change` gets the record as it stands in the file now.
  template <class Change> void change(const Change& change) {
    if (document_.change(change))
      notifications_.post(notification_);
  }
  void dropUnsaved() { document_.dropUnsaved(); }

private:
  SharedDocument<R> document_;
  std::string notification_;
  DistributedNotificationCenter& notifications_;
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Base/Coding.h"
#include "TavrinPlatform/DistributedNotificationCenter.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <filesystem>

namespace tavrin {

/// One record in a file that several processes change. Every change begins by reading the file
/// again, so that what others wrote is kept, and is announced once it is written.
///
/// A failed read or write throws FileError; after a failed read nothing is changed or written.
template <Record R> class SharedRecord {
public:
  SharedRecord(std::filesystem::path url, std::string notification,
               DistributedNotificationCenter& notifications)
      : url_(std::move(url)), notification_(std::move(notification)),
        notifications_(notifications) {
    reload();
  }

  const std::filesystem::path& url() const { return url_; }
  const R& value() const { return value_; }

  /// A file that is not there reads as a new record.
  void reload() {
    constexpr std::size_t maximumSize = 1024 * 1024;
    const auto text = readFile(url_, maximumSize);
    try {
      value_ = text ? decode<R>(JSONValue::parse(*text)) : R{};
    } catch (const std::runtime_error& error) {
      throw FileError(failure("read " + url_.string(), error.what()));
    }
  }

  /// `change` gets the record as it stands in the file now.
  template <class Change> void change(const Change& change) {
    reload();
    change(value_);
    writeJSONFile(url_, encode(value_));
    notifications_.post(notification_);
  }

private:
  std::filesystem::path url_;
  std::string notification_;
  DistributedNotificationCenter& notifications_;
  R value_;
};

} // namespace tavrin

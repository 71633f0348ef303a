#include "TavrinStorage/WaterStore.h"

#include "TavrinPlatform/Files/AtomicFile.h"

namespace tavrin {
namespace {

/// Sixty days take a hundredth of it.
constexpr std::size_t maximumSize = 512 * 1024;
/// Of a change that others keep overtaking.
constexpr int mostAttempts = 8;

} // namespace

WaterStore::WaterStore(std::filesystem::path url, DistributedNotificationCenter& notifications)
    : url_(std::move(url)), notifications_(notifications) {
  reload();
}

void WaterStore::reload() {
  const auto text = readFile(url_, maximumSize);
  try {
    auto log = text ? decode<WaterLog>(JSONValue::parse(*text)) : WaterLog{};
    log.tidy();
    log_ = std::move(log);
  } catch (const std::runtime_error& error) {
    throw FileError(failure("read " + url_.string(), error.what()));
  }
}

template <class Change> void WaterStore::change(const Change& change) {
  for (int attempt = 1;; ++attempt) {
    const auto seen = fileStamp(url_);
    reload();
    change(log_);
    if (attempt == mostAttempts) {
      save();
      return;
    }
    if (writeFileIfUnchanged(url_, encode(log_).prettyPrinted(), seen))
      break;
  }
  notifications_.post(changedNotification);
}

void WaterStore::save() {
  writeFileAtomically(url_, encode(log_).prettyPrinted());
  notifications_.post(changedNotification);
}

void WaterStore::add(int millilitres, Date date) {
  change([=](WaterLog& log) { log.add(millilitres, date, Calendar()); });
}

void WaterStore::remove(int millilitres, Date date) {
  change([=](WaterLog& log) { log.remove(millilitres, date, Calendar()); });
}

void WaterStore::clear(Date date) {
  change([=](WaterLog& log) { log.clear(date, Calendar()); });
}

} // namespace tavrin

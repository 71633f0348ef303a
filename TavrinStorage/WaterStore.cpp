#include "TavrinStorage/WaterStore.h"

#include "TavrinStorage/AtomicFile.h"

namespace tavrin {
namespace {

/// Sixty days take a hundredth of it.
constexpr std::size_t maximumSize = 512 * 1024;

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

void WaterStore::add(int millilitres, Date date) {
  reload();
  log_.add(millilitres, date, Calendar());
  save();
}

void WaterStore::remove(int millilitres, Date date) {
  reload();
  log_.remove(millilitres, date, Calendar());
  save();
}

void WaterStore::clear(Date date) {
  reload();
  log_.clear(date, Calendar());
  save();
}

void WaterStore::save() {
  writeJSONFile(url_, encode(log_));
  notifications_.post(changedNotification);
}

} // namespace tavrin

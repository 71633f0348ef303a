#include "TavrinStorage/WaterStore.h"

namespace tavrin {
namespace {

/// Sixty days take a hundredth of it.
constexpr std::size_t longestWaterLog = 512 * 1024;

} // namespace

WaterStore::WaterStore(std::filesystem::path url, DistributedNotificationCenter& notifications)
    : file_(std::move(url), changedNotification, notifications, longestWaterLog) {}

/// A pour that is not in the file was not drunk: shown, it would be gone with the next reading.
template <class Change> void WaterStore::change(const Change& change) {
  try {
    file_.change(change);
  } catch (...) {
    file_.dropUnsaved();
    throw;
  }
}

void WaterStore::save() {
  change([](WaterLog&) {});
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

#include "TavrinStorage/ColourStore.h"

#include "TavrinStorage/AtomicFile.h"

namespace tavrin {
namespace {

/// Sixty colours take a hundredth of it.
constexpr std::size_t maximumSize = 1024 * 1024;

} // namespace

ColourStore::ColourStore(std::filesystem::path url, DistributedNotificationCenter& notifications)
    : url_(std::move(url)), notifications_(notifications) {
  reload();
}

void ColourStore::reload() {
  const auto text = readFile(url_, maximumSize);
  try {
    history_ = text ? decode<ColourHistory>(JSONValue::parse(*text)) : ColourHistory{};
  } catch (const std::runtime_error& error) {
    throw FileError(failure("read " + url_.string(), error.what()));
  }
}

template <class Change> void ColourStore::change(const Change& change) {
  reload();
  change(history_);
  writeJSONFile(url_, encode(history_));
  notifications_.post(changedNotification);
}

void ColourStore::add(PickedColour colour, int limit) {
  change([&](ColourHistory& history) { history.add(colour, limit); });
}

void ColourStore::togglePin(UUID id, int limit) {
  change([&](ColourHistory& history) { history.togglePin(id, limit); });
}

void ColourStore::remove(UUID id) {
  change([&](ColourHistory& history) { history.remove(id); });
}

void ColourStore::clearUnpinned() {
  change([](ColourHistory& history) { history.clearUnpinned(); });
}

} // namespace tavrin

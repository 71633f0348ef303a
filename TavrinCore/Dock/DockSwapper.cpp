#include "TavrinCore/Dock/DockSwapper.h"

#include "TavrinCore/Dock/DockChangeDetector.h"
#include "TavrinCore/Dock/DockTileMapping.h"

namespace tavrin {
namespace {

/// The layout as it reads once written: a relative path becomes one from the root, and an
/// application right of the divider a plain file.
DockSnapshot asRead(const DockSnapshot& target) {
  DockSnapshot read{.apps = {}, .others = {}, .capturedAt = target.capturedAt};
  for (const auto& item : target.apps)
    read.apps.push_back(decodeItem(encodeItem(item), DockSection::apps, {}));
  for (const auto& item : target.others)
    read.others.push_back(decodeItem(encodeItem(item), DockSection::others, {}));
  return read;
}

} // namespace

DockSwapper DockSwapper::over(std::shared_ptr<DockPreferencesBackend> backend,
                              std::shared_ptr<DockReloader> reloader) {
  return {{backend}, {backend}, std::move(reloader)};
}

void DockSwapper::swap(const DockSnapshot& target) const {
  constexpr int attempts = 2;
  const DockSnapshot expected = asRead(target);
  for (int attempt = 0; attempt < attempts; ++attempt) {
    reloader->waitUntilSettled();
    writer.write(target);
    reloader->reload();
    if (!DockChangeDetector::diff(expected, reader.read(target.capturedAt)).hasChanges())
      return;
  }
  throw DockError::dockReloadFailed("the Dock kept its previous items; try again");
}

} // namespace tavrin

#include "TavrinCore/Dock/DockSwapper.h"

#include "TavrinCore/Dock/DockChangeDetector.h"

namespace tavrin {

DockSwapper DockSwapper::over(std::shared_ptr<DockPreferencesBackend> backend,
                              std::shared_ptr<DockReloader> reloader) {
  return {{backend}, {backend}, std::move(reloader)};
}

void DockSwapper::swap(const DockSnapshot& target) const {
  constexpr int attempts = 2;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    reloader->waitUntilSettled();
    writer.write(target);
    reloader->reload();
    if (!DockChangeDetector::diff(target, reader.read(target.capturedAt)).hasChanges())
      return;
  }
  throw DockError::dockReloadFailed("the Dock kept its previous items; try again");
}

} // namespace tavrin

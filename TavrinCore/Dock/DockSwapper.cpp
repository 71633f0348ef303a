#include "TavrinCore/Dock/DockSwapper.h"

#include "TavrinCore/Dock/DockChangeDetector.h"
#include "TavrinCore/Dock/DockTileMapping.h"
#include "TavrinCore/Text/Texts.h"

namespace tavrin {
namespace {

constexpr int mostAttempts = 2;

} // namespace

DockSnapshot asRead(const DockSnapshot& layout) {
  DockSnapshot read{.apps = {}, .others = {}, .capturedAt = layout.capturedAt};
  for (const auto& item : layout.apps)
    read.apps.push_back(decodeItem(encodeItem(item), DockSection::apps, {}));
  for (const auto& item : layout.others)
    read.others.push_back(decodeItem(encodeItem(item), DockSection::others, {}));
  return read;
}

DockSwapper DockSwapper::over(std::shared_ptr<DockPreferencesBackend> backend,
                              std::shared_ptr<DockReloader> reloader) {
  return {{backend}, {backend}, std::move(reloader)};
}

void DockSwapper::swap(const DockSnapshot& target) const {
  change([&] { return std::optional(target); });
}

bool DockSwapper::change(const Plan& plan) const {
  for (int attempt = 0;; ++attempt) {
    if (attempt < mostAttempts)
      reloader->waitUntilSettled();
    auto access = writer.backend->exclusiveAccess();
    const auto target = plan();
    if (!target)
      return attempt > 0;
    if (attempt == mostAttempts)
      throw DockError::dockReloadFailed(translated("the Dock kept its previous items; try again"));
    const DockSnapshot expected = asRead(*target);
    writer.write(*target);
    // Nobody waits for a Dock that restarts; where none does, nobody comes between.
    if (reloader->restarts())
      access.reset();
    reloader->reload();
    if (!DockChangeDetector::diff(expected, reader.read(target->capturedAt)).hasChanges())
      return true;
  }
}

} // namespace tavrin

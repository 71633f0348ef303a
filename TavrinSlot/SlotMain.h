#pragma once

#include "TavrinPlatform/Files/TextsFile.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinSlot/SlotApp.h"
#include "TavrinStorage/StoragePath.h"

namespace tavrin {

/// What a slot's program does, from the arguments of `main` to its exit status. `prepare` does what
/// all slots that are started together have in common.
inline int slotMain(int argc, char** argv, std::function<void()> prepare = {}) {
  loadTexts();
  const auto platform = makePlatform(
      argc, argv, {.prepare = std::move(prepare), .dataFolder = StoragePath::directoryOf});
  if (!platform)
    return 0;
  SlotApp app(*platform);
  auto& application = platform->application();
  application.onReopen = [&] { app.applicationShouldHandleReopen(false); };
  application.onResignActive = [&] { app.applicationDidResignActive(); };
  application.takesFiles = [&] { return app.applicationTakesFiles(); };
  application.onOpenFiles = [&](const auto& paths) { return app.applicationOpenFiles(paths); };
  return runEventLoop(*platform, [&] { app.applicationDidFinishLaunching(); });
}

} // namespace tavrin

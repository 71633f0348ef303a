#include "TavrinPlatform/Files/TextsFile.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinSlot/SlotApp.h"
#include "TavrinStorage/StoragePath.h"

/// What the program in every slot's bundle calls.
extern "C" __attribute__((visibility("default"))) int tavrinSlotMain(int argc, char** argv) {
  tavrin::loadTexts();
  const auto platform =
      tavrin::makePlatform(argc, argv, {.dataFolder = tavrin::StoragePath::directoryOf});
  if (!platform)
    return 0;
  tavrin::SlotApp app(*platform);
  auto& application = platform->application();
  application.onReopen = [&] { app.applicationShouldHandleReopen(false); };
  application.onResignActive = [&] { app.applicationDidResignActive(); };
  application.takesFiles = [&] { return app.applicationTakesFiles(); };
  application.onOpenFiles = [&](const auto& paths) { return app.applicationOpenFiles(paths); };
  return tavrin::runEventLoop(*platform, [&] { app.applicationDidFinishLaunching(); });
}

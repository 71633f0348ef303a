#include "TavrinPlatform/macOS/MacPlatform.h"
#include "TavrinSlot/SlotApp.h"

/// What the program in every slot's bundle calls.
extern "C" __attribute__((visibility("default"))) int tavrinSlotMain(int argc, char** argv) {
  const auto platform = tavrin::makePlatform(argc, argv);
  if (!platform)
    return 0;
  tavrin::SlotApp app(*platform);
  auto& application = platform->application();
  application.onReopen = [&] { app.applicationShouldHandleReopen(false); };
  application.onResignActive = [&] { app.applicationDidResignActive(); };
  application.onOpenFiles = [&](const auto& paths) { return app.applicationOpenFiles(paths); };
  return tavrin::runEventLoop(*platform, [&] { app.applicationDidFinishLaunching(); });
}

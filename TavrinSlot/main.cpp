#include "TavrinPlatform/Linux/LinuxPlatform.h"
#include "TavrinSlot/SlotApp.h"

int main(int argc, char** argv) {
  const auto platform = tavrin::makePlatform(argc, argv);
  if (!platform)
    return 0;
  tavrin::SlotApp app(*platform);
  auto& application = platform->application();
  application.onReopen = [&] { app.applicationShouldHandleReopen(false); };
  application.onResignActive = [&] { app.applicationDidResignActive(); };
  application.onOpenFiles = [&](const auto& paths) { return app.applicationOpenFiles(paths); };
  app.applicationDidFinishLaunching();
  return tavrin::runEventLoop(*platform);
}

#include "TavrinPlatform/Linux/LinuxPlatform.h"
#include "TavrinSlot/SlotApp.h"

int main(int argc, char** argv) {
  auto platform = tavrin::makePlatform(argc, argv);
  tavrin::SlotApp app(*platform);
  auto& application = platform->application();
  application.onReopen = [&] { app.applicationShouldHandleReopen(false); };
  application.onResignActive = [&] { app.applicationDidResignActive(); };
  application.onOpenFiles = [&](const auto& paths) { return app.applicationOpenFiles(paths); };
  return application.run([&] { app.applicationDidFinishLaunching(); });
}

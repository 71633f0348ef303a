#include "TavrinCore/Kinds/System/ClockFormat.h"
#include "TavrinPlatform/Linux/Base/ProcessFamily.h"
#include "TavrinPlatform/Linux/LinuxPlatform.h"
#include "TavrinSlot/SlotApp.h"

namespace {

/// Formatting a time loads the locale's data.
void prepare() {
  const tavrin::ClockFormat format({}, tavrin::Calendar());
  format.time({});
  format.dayCaption({});
}

} // namespace

int main(int argc, char** argv) {
  if (!tavrin::joinFamily(argc, argv, prepare))
    return 0;
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

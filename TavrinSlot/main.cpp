#include "TavrinCore/Kinds/System/ClockFormat.h"
#include "TavrinPlatform/Files/TextsFile.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinSlot/SlotApp.h"
#include "TavrinStorage/StoragePath.h"

namespace {

/// Formatting a time loads the locale's data.
void prepare() {
  const tavrin::ClockFormat format({}, tavrin::Calendar());
  format.time({});
  format.dayCaption({});
}

} // namespace

int main(int argc, char** argv) {
  tavrin::loadTexts();
  const auto platform = tavrin::makePlatform(
      argc, argv, {.prepare = prepare, .dataFolder = tavrin::StoragePath::directoryOf});
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

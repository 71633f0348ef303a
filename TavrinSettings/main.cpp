#include "TavrinCore/Desktop/NoDisplay.h"
#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinPlatform/CommandPlatform.h"
#include "TavrinPlatform/Files/TextsFile.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinSettings/Window/SettingsApp.h"
#include "TavrinStorage/StoragePath.h"

#include <cstdio>

namespace {

int run(int argc, char** argv) {
  const auto platform =
      tavrin::makePlatform(argc, argv,
                           {.dataFolder = tavrin::StoragePath::directoryOf,
                            .identifier = std::string(tavrin::DockSlot::hostIdentifier),
                            .needsDisplay = true});
  if (!platform)
    return 0;
  const auto host = tavrin::makeCommandPlatform();
  tavrin::SettingsApp app(*platform, *host);
  auto& application = platform->application();
  application.onReopen = [&] { app.show(); };
  application.onAction = [&](const std::string& action, const std::string& object) {
    if (action != tavrin::DockSlot::editAction)
      return false;
    app.edit(object);
    return true;
  };
  return tavrin::runEventLoop(*platform, [&] { app.show(); });
}

} // namespace

/// tavrin-settings [--edit=WIDGET]
int main(int argc, char** argv) {
  tavrin::loadTexts();
  try {
    return run(argc, argv);
  } catch (const tavrin::NoDisplay& error) {
    std::fprintf(stderr, "tavrin-settings: %s\n", error.what());
    return 1;
  }
}

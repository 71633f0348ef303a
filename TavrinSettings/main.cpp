#include "TavrinCore/Text/Texts.h"
#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinPlatform/CommandPlatform.h"
#include "TavrinPlatform/Files/TextsFile.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinSettings/Window/SettingsApp.h"
#include "TavrinStorage/StoragePath.h"

#include <QGuiApplication>
#include <cstdio>

namespace {

/// Where no display answers the toolkit draws for nobody; who asks it for that by name wants it so.
bool showsWindows() {
  return QGuiApplication::platformName() != QLatin1String("offscreen") ||
         qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

} // namespace

/// tavrin-settings [--edit=WIDGET]
int main(int argc, char** argv) {
  tavrin::loadTexts();
  const auto platform =
      tavrin::makePlatform(argc, argv,
                           {.dataFolder = tavrin::StoragePath::directoryOf,
                            .identifier = std::string(tavrin::DockSlot::hostIdentifier)});
  if (!platform)
    return 0;
  // A bus that knows of no display may have started it; the next one may see one.
  if (!showsWindows()) {
    std::fprintf(stderr, "tavrin-settings: %s\n",
                 tavrin::translated("There is no display to open the window on.").c_str());
    return 1;
  }
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

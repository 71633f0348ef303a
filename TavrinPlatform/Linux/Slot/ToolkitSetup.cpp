#include "TavrinPlatform/Linux/Slot/ToolkitSetup.h"

#include "TavrinPlatform/Linux/Base/SurfaceChoice.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QOpenGLContext>
#include <cstdlib>

namespace tavrin {

ToolkitSetup::ToolkitSetup(const FileManager& files, const DesktopFacts& displays) {
  const auto wish = files.environment("TAVRIN_SURFACE").value_or("");
  const bool hasLayers = chooseSurface(displays, wish).arrangement == StripArrangement::layers;
  if (!files.environment("QT_QPA_PLATFORM")) {
    // The toolkit would end the process where it finds no display.
    set("QT_QPA_PLATFORM", hasLayers && displays.hasX11 ? "wayland;xcb"
                           : displays.hasX11            ? "xcb"
                           : displays.hasWayland        ? "wayland;offscreen"
                                                        : "offscreen");
  }
  setDefault("QT_XCB_GL_INTEGRATION", "none");
  setDefault("QT_NO_GLIB", "1");
  // A tile is small; shared memory would answer each picture with an event, a wake-up or two.
  setDefault("QT_XCB_NO_MITSHM", "1");
  // Nothing is drawn by a graphics card, whose driver is ten megabytes of each process.
  setDefault("QT_WAYLAND_CLIENT_BUFFER_INTEGRATION", "none");
  // On a compositor the toolkit asks for its input method, and composes where there is none.
  if (!hasLayers)
    setDefault("QT_IM_MODULE", "compose");
  if (!files.environment("QT_QPA_PLATFORMTHEME"))
    set("XDG_CURRENT_DESKTOP", "none");
}

ToolkitSetup::~ToolkitSetup() {
  if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
    // It looks for the driver, and complains that there is none, when it is first asked.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.qpa.wayland.warning=false"));
    QOpenGLContext::supportsThreadedOpenGL();
    QLoggingCategory::setFilterRules({});
  }
  for (const auto& [name, value] : previous_) {
    if (value)
      setenv(name.c_str(), value->c_str(), 1);
    else
      unsetenv(name.c_str());
  }
}

void ToolkitSetup::set(const char* name, const char* value) {
  const char* old = std::getenv(name);
  previous_.emplace(name, old == nullptr ? std::nullopt : std::optional<std::string>(old));
  setenv(name, value, 1);
}

void ToolkitSetup::setDefault(const char* name, const char* value) {
  if (std::getenv(name) == nullptr)
    set(name, value);
}

} // namespace tavrin

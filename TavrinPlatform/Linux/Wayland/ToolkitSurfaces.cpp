#include "TavrinPlatform/Linux/Wayland/ToolkitSurfaces.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

namespace tavrin::toolkit {

wl_display* display() {
  if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
    return nullptr;
  return static_cast<wl_display*>(
      QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display"));
}

wl_surface* surface(QWindow& window) {
  return static_cast<wl_surface*>(
      QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", &window));
}

wl_output* output(QScreen& screen) {
  return static_cast<wl_output*>(
      QGuiApplication::platformNativeInterface()->nativeResourceForScreen("output", &screen));
}

void leaveToOthers(QWindow& window) {
  // Looked at each time that a window is shown. Programs that are started must not see it.
  constexpr const char* name = "QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT";
  window.setFlag(Qt::BypassWindowManagerHint);
  if (qEnvironmentVariableIsSet(name))
    return;
  qputenv(name, "1");
  QTimer::singleShot(0, qGuiApp, [] { qunsetenv(name); });
}

} // namespace tavrin::toolkit

#include "TavrinPlatform/Linux/Wayland/ToolkitSurfaces.h"

#include <QDrag>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <private/qdnd_p.h>
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

QObject* drag() {
  return QDragManager::self()->object();
}

bool isDragPicture(const QWindow& window) {
  return window.inherits("QShapedPixmapWindow");
}

void leaveToOthers(QWindow& window) {
  // Looked at whenever such a window is shown or drawn, so that it has to stay.
  qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
  window.setFlag(Qt::BypassWindowManagerHint);
}

} // namespace tavrin::toolkit

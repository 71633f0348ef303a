#include "TavrinPlatform/Linux/Tile/LinuxDockGeometry.h"

#include "TavrinPlatform/Linux/Base/X11.h"
#include "TavrinPlatform/POSIX/PropertyListFile.h"
#include "TavrinPlatform/Qt/TileSurface.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace tavrin {

namespace {

/// While every output is off the toolkit shows a screen of its own invention.
bool isReal(const QScreen& screen) {
  return !screen.name().startsWith(QLatin1Char(':'));
}

ScreenFrames frames(const QScreen& screen) {
  return {screenRect(screen.geometry()), screenRect(screen.availableGeometry())};
}

const QScreen* screenOfActiveWindow() {
  const QRect frame = x11::frame(x11::activeWindow());
  const QScreen* primary = QGuiApplication::primaryScreen();
  if (frame.isEmpty() || primary == nullptr)
    return primary;
  const QScreen* found = QGuiApplication::screenAt(frame.center() / primary->devicePixelRatio());
  return found == nullptr ? primary : found;
}

} // namespace

std::filesystem::path dockPreferencesFile(const std::filesystem::path& home) {
  return home / "Library" / "Preferences" / "com.apple.dock.plist";
}

DockPreferences readDockPreferences(const std::filesystem::path& home) {
  DockPreferences preferences;
  const auto file = PropertyListFile::read(dockPreferencesFile(home));
  if (!file)
    return preferences;
  preferences.orientation = file->string("orientation").value_or(preferences.orientation);
  if (const auto entry = file->number("tilesize"))
    preferences.setTileSize(*entry);
  preferences.magnification = file->boolean("magnification").value_or(false);
  preferences.autohide = file->boolean("autohide").value_or(false);
  return preferences;
}

DockPreferences LinuxDockGeometry::preferences() const {
  DockPreferences preferences = readDockPreferences(home_);
  if (const auto fitted = sources_.stripTileSize()) {
    preferences.tileSize = *fitted;
    // The strip's tiles always stand at their resting places.
    preferences.magnification = false;
  }
  return preferences;
}

std::optional<Point> LinuxDockGeometry::ownTileCenter() const {
  const auto frame = sources_.tileFrame();
  if (!frame)
    return std::nullopt;
  return Point{frame->x + frame->width / 2, frame->y + frame->height / 2};
}

Point LinuxDockGeometry::pointer() const {
  if (const auto anchor = sources_.tileAnchor())
    return *anchor;
  return screenPoint(QCursor::pos());
}

std::vector<ScreenFrames> LinuxDockGeometry::screens() const {
  std::vector<ScreenFrames> all;
  for (const QScreen* screen : QGuiApplication::screens()) {
    if (!isReal(*screen))
      continue;
    const bool isFirst = screen == QGuiApplication::primaryScreen();
    all.insert(isFirst ? all.begin() : all.end(), frames(*screen));
  }
  return all;
}

std::optional<ScreenFrames> LinuxDockGeometry::mainScreen() const {
  const QScreen* screen = screenOfActiveWindow();
  if (screen == nullptr || !isReal(*screen))
    return std::nullopt;
  return frames(*screen);
}

} // namespace tavrin

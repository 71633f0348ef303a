#include "TavrinWidgetsUI/KeyboardLock/KeyboardLockOverlay.h"

#include "TavrinWidgetsUI/KeyboardLock/KeyboardLockViews.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QGuiApplication>
#include <QScreen>

namespace tavrin {

/// The window's own button may be what ends the lock.
void KeyboardLockOverlay::Later::operator()(ViewWidget* window) const {
  window->hide();
  window->deleteLater();
}

KeyboardLockOverlay::KeyboardLockOverlay(std::function<KeyboardLockStatus()> status,
                                         std::function<void()> unlock)
    : status_(std::move(status)), unlock_(std::move(unlock)) {
  for (QScreen* screen : QGuiApplication::screens())
    cover(screen);
  connect(qApp, &QGuiApplication::screenAdded, this, [this](QScreen* screen) { cover(screen); });
  connect(qApp, &QGuiApplication::screenRemoved, this,
          [this](QScreen* screen) { windows_.erase(screen); });
}

KeyboardLockOverlay::~KeyboardLockOverlay() = default;

void KeyboardLockOverlay::cover(QScreen* screen) {
  std::unique_ptr<ViewWidget, Later> window(new ViewWidget(screen->size()));
  window->setWindowTitle(worded("Tavrin Keyboard Lock"));
  // Above panels and full-screen windows, and nothing for a window manager to place.
  window->setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                         Qt::WindowDoesNotAcceptFocus | Qt::BypassWindowManagerHint);
  window->setAttribute(Qt::WA_ShowWithoutActivating);
  window->setAttribute(Qt::WA_QuitOnClose, false);
  window->setCursor(status_().locksPointer ? Qt::BlankCursor : Qt::ArrowCursor);
  window->setScreen(screen);
  window->setGeometry(screen->geometry());
  auto* shown = window.get();
  windows_[screen] = std::move(window);
  connect(screen, &QScreen::geometryChanged, shown, [this, shown](const QRect& geometry) {
    shown->setGeometry(geometry);
    refresh();
  });
  refresh();
  // A client of Wayland cannot place itself, but can ask for a whole screen.
  if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
    shown->showFullScreen();
  else
    shown->show();
  shown->raise();
}

void KeyboardLockOverlay::refresh() {
  const auto status = status_();
  for (const auto& [screen, window] : windows_) {
    const QSizeF size = screen->size();
    window->setViewSize(size);
    window->setView(keyboardLockScreen(status, size, unlock_));
  }
}

} // namespace tavrin

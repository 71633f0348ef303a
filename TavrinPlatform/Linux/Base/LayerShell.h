#pragma once

#include <QRect>
#include <functional>
#include <vector>

class QImage;
class QScreen;
class QWindow;

namespace tavrin {

/// The toolkit's windows as surfaces of a Wayland compositor's layer shell: each stands where it
/// is put, and no window manager's rules are asked. Rectangles are in points of the toolkit's
/// desktop. Popups and tooltips of such windows become surfaces of their own by themselves.
class LayerShell {
public:
  /// Within a level compositors differ in what they lay above what.
  enum class Level { top, overlay };
  struct Place {
    QRect frame;
    Level level = Level::top;
    /// Has the keyboard to itself for as long as it is there.
    bool takesKeys = false;
  };

  virtual ~LayerShell() = default;
  /// Gives a window its place, before it is shown or while it is.
  virtual void put(QWindow& window, const Place& place) = 0;
  /// The output's pixels for a point of a screen, also where the toolkit knows whole numbers alone.
  /// Asks the compositor.
  virtual double scale(const QScreen& screen) = 0;
  /// Shows what `paint` draws, on a clear picture of the output's own pixels, in place of what the
  /// toolkit draws. False, and nothing of it, where the toolkit's pixels are the output's. To be
  /// called while the toolkit draws.
  virtual bool draw(QWindow& window, const std::function<void(QImage&)>& paint) = 0;
  /// Takes the place back; to be called before the window is hidden.
  virtual void withdraw(QWindow& window) = 0;
  /// Keeps other windows `depth` points off an edge of a screen, for as long as one of the
  /// processes runs that have asked for the same; 0 for none.
  virtual void keepRoom(const QScreen& screen, Qt::Edge edge, int depth) = 0;
  /// Tells of the next press of a button on whatever there is, but for presses within `spared`, and
  /// of another process that begins to watch. An empty function ends it.
  virtual void watchPresses(const std::vector<QRect>& spared, std::function<void()> pressed) = 0;
};

} // namespace tavrin

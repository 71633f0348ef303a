#pragma once

struct wl_display;
struct wl_output;
struct wl_surface;
class QObject;
class QScreen;
class QWindow;

/// What is the toolkit's own and is needed all the same: the only part that depends on more of the
/// toolkit than it promises to keep.
namespace tavrin::toolkit {

/// Null where the toolkit shows its windows elsewhere.
wl_display* display();
/// Null where the window has none at the moment.
wl_surface* surface(QWindow& window);
wl_output* output(QScreen& screen);
/// What the user drags out of a window of this process, for as long as it lasts; else null.
QObject* drag();
/// The picture under the pointer of that, whose surface has a role of its own.
bool isDragPicture(const QWindow& window);
/// Keeps the toolkit from making an ordinary window of one whose surface is another's to place.
void leaveToOthers(QWindow& window);

} // namespace tavrin::toolkit

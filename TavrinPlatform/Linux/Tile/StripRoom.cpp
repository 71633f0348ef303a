#include "TavrinPlatform/Linux/Tile/StripRoom.h"

#include "TavrinPlatform/Linux/Base/X11.h"

#include <QCoreApplication>
#include <QScreen>
#include <QTimerEvent>
#include <algorithm>
#include <cmath>
#include <limits>

namespace tavrin {

namespace {

constexpr std::size_t strutLength = 12;
constexpr const char* tileMark = "_TAVRIN_STRIP";
/// A panel tells its strut a little after its window has come.
constexpr int settling = 500;

bool isUpright(StripEdge edge) {
  return edge != StripEdge::bottom;
}

QRect pixels(const QScreen& screen) {
  // The toolkit keeps a screen's corner in pixels.
  return {screen.geometry().topLeft(),
          (QSizeF(screen.geometry().size()) * screen.devicePixelRatio()).toSize()};
}

/// Of _NET_WM_STRUT_PARTIAL, or else of the older _NET_WM_STRUT.
Strut strutFrom(Strut partial, Strut plain) {
  if (partial.size() == strutLength)
    return partial;
  if (plain.size() != 4)
    return {};
  for (int edge = 0; edge < 4; ++edge)
    plain.insert(plain.end(), {0, std::numeric_limits<std::uint16_t>::max()});
  return plain;
}

/// How far the work area stays from that edge of its screen, in points.
int toolkitDepth(const QScreen& screen, StripEdge edge) {
  const QRect whole = screen.geometry();
  const QRect free = screen.availableGeometry();
  switch (edge) {
  case StripEdge::left:
    return free.left() - whole.left();
  case StripEdge::right:
    return whole.right() - free.right();
  case StripEdge::bottom:
    return whole.bottom() - free.bottom();
  }
  return 0;
}

} // namespace

QRect rootPixels(const QRect& points, const QScreen& screen) {
  const double scale = screen.devicePixelRatio();
  const QPointF corner = QPointF(points.topLeft() - screen.geometry().topLeft()) * scale;
  return {screen.geometry().topLeft() + corner.toPoint(), (QSizeF(points.size()) * scale).toSize()};
}

int depthOfStrut(const Strut& strut, StripEdge edge, const QRect& screen, const QSize& root) {
  if (strut.size() != strutLength)
    return 0;
  const auto place = static_cast<std::size_t>(edge);
  const auto reach = static_cast<int>(std::min<std::uint32_t>(strut[place], 0xFFFF));
  const auto start = static_cast<int>(std::min<std::uint32_t>(strut[4 + 2 * place], 0xFFFF));
  const auto end = static_cast<int>(std::min<std::uint32_t>(strut[5 + 2 * place], 0xFFFF));
  const int first = isUpright(edge) ? screen.top() : screen.left();
  const int last = isUpright(edge) ? screen.bottom() : screen.right();
  if (reach == 0 || end < first || start > last)
    return 0;
  int depth = 0;
  if (edge == StripEdge::left)
    depth = reach - screen.left();
  else if (edge == StripEdge::right)
    depth = screen.right() + 1 - (root.width() - reach);
  else
    depth = screen.bottom() + 1 - (root.height() - reach);
  const int across = isUpright(edge) ? screen.width() : screen.height();
  return depth < 0 || depth >= across ? 0 : depth;
}

Strut strutOfTile(const QRect& tile, StripEdge edge, const QRect& screen, const QSize& root) {
  int reach = 0;
  if (edge == StripEdge::left && screen.left() == 0)
    reach = tile.right() + 1;
  else if (edge == StripEdge::right && screen.right() + 1 == root.width())
    reach = root.width() - tile.left();
  else if (edge == StripEdge::bottom && screen.bottom() + 1 == root.height())
    reach = root.height() - tile.top();
  const int start = isUpright(edge) ? tile.top() : tile.left();
  const int end = isUpright(edge) ? tile.bottom() : tile.right();
  if (reach <= 0 || start < 0 || end < start)
    return {};
  Strut strut(strutLength);
  const auto place = static_cast<std::size_t>(edge);
  strut[place] = static_cast<std::uint32_t>(reach);
  strut[4 + 2 * place] = static_cast<std::uint32_t>(start);
  strut[5 + 2 * place] = static_cast<std::uint32_t>(end);
  return strut;
}

StripRoom::StripRoom(bool doesReserve, std::function<void()> onChange)
    : doesReserve_(doesReserve), onChange_(std::move(onChange)) {
  if (x11::connection() != nullptr)
    QCoreApplication::instance()->installNativeEventFilter(this);
}

StripRoom::~StripRoom() {
  if (auto* application = QCoreApplication::instance())
    application->removeNativeEventFilter(this);
}

QRectF StripRoom::available(const QScreen& screen, StripEdge edge) {
  QRectF room = screen.availableGeometry();
  if (x11::connection() == nullptr)
    return room;
  look(true);
  const QRectF whole = screen.geometry();
  const double kept = depth(screen, edge) / screen.devicePixelRatio();
  if (edge == StripEdge::left)
    room.setLeft(whole.left() + kept);
  else if (edge == StripEdge::right)
    room.setRight(whole.right() - kept);
  else
    room.setBottom(whole.bottom() - kept);
  return room;
}

int StripRoom::depth(const QScreen& screen, StripEdge edge) {
  const QRect area = pixels(screen);
  const QSize root = x11::frame(x11::root()).size();
  int panels = 0;
  std::optional<int> told;
  for (const auto& [window, listed] : listed_) {
    if (listed.hidden)
      told = std::max(told.value_or(0), *listed.hidden);
    else
      panels = std::max(panels, depthOfStrut(listed.strut, edge, area, root));
  }
  // The work area says what the window manager's own panels take only until a tile has reserved
  // its room too; then the tiles pass it on.
  if (reserved_ != edge) {
    const auto toolkit =
        static_cast<int>(std::lround(toolkitDepth(screen, edge) * screen.devicePixelRatio()));
    hidden_ = told.value_or(toolkit > panels ? toolkit : 0);
  }
  return std::max(panels, hidden_);
}

void StripRoom::reserve(xcb_window_t window, const QRect& tile, const QScreen& screen,
                        StripEdge edge) {
  if (!doesReserve_ || x11::connection() == nullptr)
    return;
  Strut strut;
  if (!tile.isEmpty())
    strut =
        strutOfTile(rootPixels(tile, screen), edge, pixels(screen), x11::frame(x11::root()).size());
  reserved_ = edge;
  if (strut == strut_)
    return;
  strut_ = std::move(strut);
  const Strut numbers = strut_.empty() ? Strut(strutLength) : strut_;
  // The mark first: who sees the strut must know whose it is.
  x11::setNumbers(window, tileMark, XCB_ATOM_CARDINAL, {static_cast<std::uint32_t>(hidden_)});
  x11::setNumbers(window, "_NET_WM_STRUT", XCB_ATOM_CARDINAL,
                  {numbers.begin(), numbers.begin() + 4});
  x11::setNumbers(window, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, numbers);
}

bool StripRoom::look(bool atAll) {
  std::map<xcb_window_t, Listed> now;
  std::vector<xcb_window_t> asked;
  for (const xcb_window_t window : x11::numbers(x11::root(), "_NET_CLIENT_LIST", 1024)) {
    const auto old = listed_.find(window);
    // What had no strut when it came is an ordinary window, most likely.
    if (atAll || old == listed_.end() || !old->second.strut.empty())
      asked.push_back(window);
    else
      now.emplace(window, Listed());
  }
  // Of all at once: there may be a hundred windows, and this is looked at whenever a tile moves.
  auto partial = x11::numbers(asked, "_NET_WM_STRUT_PARTIAL", strutLength);
  auto plain = x11::numbers(asked, "_NET_WM_STRUT", 4);
  const auto marks = x11::numbers(asked, tileMark, 1);
  bool isChanged = false;
  for (std::size_t i = 0; i < asked.size(); ++i) {
    const xcb_window_t window = asked[i];
    const auto old = listed_.find(window);
    Listed listed;
    listed.strut = strutFrom(std::move(partial[i]), std::move(plain[i]));
    if (!listed.strut.empty() && !marks[i].empty())
      listed.hidden = static_cast<int>(std::min<std::uint32_t>(marks[i].front(), 0xFFFF));
    const bool isPanel = !listed.strut.empty() && !listed.hidden;
    isChanged |= isPanel && (old == listed_.end() || old->second.strut != listed.strut);
    now.emplace(window, std::move(listed));
  }
  for (const auto& [window, listed] : listed_)
    isChanged |= !listed.strut.empty() && !listed.hidden && !now.contains(window);
  listed_ = std::move(now);
  return isChanged;
}

bool StripRoom::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  if ((event->response_type & 0x7F) != XCB_PROPERTY_NOTIFY)
    return false;
  const auto* change = reinterpret_cast<const xcb_property_notify_event_t*>(event);
  if (change->window == x11::root() && change->atom == x11::atom("_NET_CLIENT_LIST"))
    soon_.start(settling, this);
  return false;
}

void StripRoom::timerEvent(QTimerEvent*) {
  soon_.stop();
  if (look(false))
    onChange_();
}

} // namespace tavrin

#include "TavrinPlatform/Linux/Tile/TraySurface.h"

#include "TavrinCore/Text/ForeignText.h"
#include "TavrinCore/Widgets/DockTileGeometry.h"

#include <QGuiApplication>
#include <QScreen>
#include <QtEndian>
#include <cmath>
#include <cstring>
#include <vector>

namespace tavrin {

namespace {

constexpr const char* path = "/StatusNotifierItem";
constexpr const char* interface = "org.kde.StatusNotifierItem";
const BusAddress watcher{"org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                         "org.kde.StatusNotifierWatcher"};
constexpr double tileSize = 64;
/// Code points of a name or value that go over the bus.
constexpr std::size_t longestLabel = 500;

/// The tile's body alone: panels put their own margin around an icon.
QImage body(const QImage& image) {
  const int side = std::min(image.width(), image.height());
  const int size = static_cast<int>(std::lround(side * DockTileGeometry::iconBodyRatio));
  const QRect part((image.width() - size) / 2, (image.height() - size) / 2, size, size);
  return image.copy(part).convertToFormat(QImage::Format_ARGB32);
}

} // namespace

const sd_bus_vtable TraySurface::vtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("Category", "s", &TraySurface::property, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Id", "s", &TraySurface::property, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Title", "s", &TraySurface::property, 0, 0),
    SD_BUS_PROPERTY("Status", "s", &TraySurface::property, 0, 0),
    SD_BUS_PROPERTY("IconName", "s", &TraySurface::property, 0, 0),
    SD_BUS_PROPERTY("IconPixmap", "a(iiay)", &TraySurface::property, 0, 0),
    SD_BUS_PROPERTY("AttentionIconName", "s", &TraySurface::property, 0, 0),
    SD_BUS_PROPERTY("AttentionIconPixmap", "a(iiay)", &TraySurface::property, 0, 0),
    SD_BUS_PROPERTY("OverlayIconName", "s", &TraySurface::property, 0, 0),
    SD_BUS_PROPERTY("ToolTip", "(sa(iiay)ss)", &TraySurface::property, 0, 0),
    SD_BUS_PROPERTY("ItemIsMenu", "b", &TraySurface::property, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_METHOD("Activate", "ii", "", &TraySurface::activate, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("SecondaryActivate", "ii", "", &TraySurface::activate,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("ContextMenu", "ii", "", &TraySurface::activate, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Scroll", "is", "", &TraySurface::scroll, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_SIGNAL("NewTitle", "", 0),
    SD_BUS_SIGNAL("NewIcon", "", 0),
    SD_BUS_SIGNAL("NewToolTip", "", 0),
    SD_BUS_SIGNAL("NewStatus", "s", 0),
    SD_BUS_VTABLE_END};

TraySurface::TraySurface(Bus& bus, std::string identifier)
    : bus_(bus), identifier_(std::move(identifier)) {
  item_ = bus_.serve(path, interface, vtable, this);
  watcher_ = bus_.match("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',"
                        "arg0='org.kde.StatusNotifierWatcher'",
                        [this](sd_bus_message*) { registerItem(); });
  registerItem();
}

DockTile::Format TraySurface::format() const {
  DockTile::Format format;
  format.tileSize = tileSize;
  if (const QScreen* screen = QGuiApplication::primaryScreen())
    format.scale = screen->devicePixelRatio();
  return format;
}

void TraySurface::setLabel(const std::string& name, const std::string& value) {
  using Change = TileLabel<std::string>::Change;
  const Change change = label_.set(plainText(name, longestLabel), plainText(value, longestLabel));
  if (change == Change::name)
    tell("NewTitle");
  if (change != Change::none)
    tell("NewToolTip");
}

void TraySurface::display(const QImage& image) {
  QImage icon = body(image);
  if (icon == icon_)
    return;
  icon_ = std::move(icon);
  tell("NewIcon");
}

void TraySurface::setAttention(bool isWanted) {
  wantsAttention_ = isWanted;
  BusMessage message = bus_.signal(path, interface, "NewStatus");
  bus_.send(message.append("s", isWanted ? "NeedsAttention" : "Active"));
}

void TraySurface::registerItem() {
  BusMessage message = bus_.method(watcher, "RegisterStatusNotifierItem");
  sd_bus_message_set_auto_start(message.get(), 0);
  message.append("s", path);
  bus_.call(message, [this](sd_bus_message* reply, const std::string&) {
    if (std::exchange(isRegistered_, reply != nullptr) != isRegistered_ && events.visibilityChanged)
      events.visibilityChanged();
  });
}

void TraySurface::tell(const char* member) {
  bus_.send(bus_.signal(path, interface, member));
}

int TraySurface::property(sd_bus*, const char*, const char*, const char* name,
                          sd_bus_message* reply, void* self, sd_bus_error*) {
  const auto& item = *static_cast<TraySurface*>(self);
  const std::string_view property = name;
  if (property == "IconPixmap" || property == "AttentionIconPixmap")
    return item.appendIcon(reply);
  if (property == "ToolTip")
    return item.appendToolTip(reply);
  if (property == "ItemIsMenu")
    return sd_bus_message_append(reply, "b", 0);
  const char* text = "";
  if (property == "Category")
    text = "ApplicationStatus";
  else if (property == "Id")
    text = item.identifier_.c_str();
  else if (property == "Title")
    text = item.label_.name.c_str();
  else if (property == "Status")
    text = item.wantsAttention_ ? "NeedsAttention" : "Active";
  return sd_bus_message_append(reply, "s", text);
}

int TraySurface::appendIcon(sd_bus_message* reply) const {
  // Bytes in the order alpha, red, green, blue.
  std::vector<quint32> pixels;
  pixels.reserve(static_cast<std::size_t>(icon_.width()) *
                 static_cast<std::size_t>(icon_.height()));
  for (int y = 0; y < icon_.height(); ++y) {
    const auto* row = reinterpret_cast<const quint32*>(icon_.constScanLine(y));
    for (int x = 0; x < icon_.width(); ++x)
      pixels.push_back(qToBigEndian(row[x]));
  }
  sd_bus_message_open_container(reply, 'a', "(iiay)");
  if (!icon_.isNull()) {
    sd_bus_message_open_container(reply, 'r', "iiay");
    sd_bus_message_append(reply, "ii", icon_.width(), icon_.height());
    sd_bus_message_append_array(reply, 'y', pixels.data(), pixels.size() * sizeof(quint32));
    sd_bus_message_close_container(reply);
  }
  return sd_bus_message_close_container(reply);
}

int TraySurface::appendToolTip(sd_bus_message* reply) const {
  // Hosts show the title as it is, and the description as markup.
  return sd_bus_message_append(reply, "(sa(iiay)ss)", "", 0, label_.name.c_str(),
                               markupEscaped(label_.value).c_str());
}

int TraySurface::activate(sd_bus_message* message, void* self, sd_bus_error*) {
  int x = 0;
  int y = 0;
  sd_bus_message_read(message, "ii", &x, &y);
  const int answered = sd_bus_reply_method_return(message, "");
  // Some hosts know no place and say the corner.
  const bool isKnown = x != 0 || y != 0;
  double scale = 1;
  if (const QScreen* screen = QGuiApplication::primaryScreen())
    scale = screen->devicePixelRatio();
  const QPointF place(x / scale, y / scale);
  static_cast<TraySurface*>(self)->events.clicked(
      std::nullopt, isKnown ? std::optional(screenPoint(place)) : std::nullopt);
  return answered < 0 ? answered : 1;
}

int TraySurface::scroll(sd_bus_message* message, void*, sd_bus_error*) {
  return sd_bus_reply_method_return(message, "");
}

} // namespace tavrin

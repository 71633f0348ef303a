#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinWidgetsUI/Bookmarks/BookmarkPanelView.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "Tools/Gallery/Gallery.h"

#include <QLineEdit>
#include <QPainter>
#include <QTimer>
#include <memory>

namespace tavrin {
namespace {

BookmarkSettings few() {
  BookmarkSettings settings;
  settings.bookmarks = {{"News", "https://news.example.com/"},
                        {"", "https://www.wetter.example/berlin"},
                        {"A title that is much too long for the width that there is",
                         "https://docs.example.org/a/very/long/path?with=parts#and-more"}};
  return settings;
}

BookmarkSettings many() {
  BookmarkSettings settings = few();
  settings.folders = {
      {"Work", {{"Board", "https://board.example"}, {"Mail", "https://mail.example"}}},
      {"Reading", {{"Ägypten", "https://xn--gypten-bua.example"}}}};
  for (int i = 0; i < 9; ++i)
    settings.bookmarks.push_back({"", "https://site" + std::to_string(i) + ".example"});
  settings.bookmarks.push_back({"Broken", "no address"});
  return settings;
}

/// Some sites have an icon.
QImage icon(const std::string& url) {
  if (url.find("news") == url.npos && url.find("board") == url.npos)
    return {};
  static const QImage made = [] {
    QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor(0x24, 0x6B, 0xCE));
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(2, 2, 44, 44);
    painter.setBrush(Qt::white);
    painter.drawRect(14, 14, 20, 6);
    painter.drawRect(14, 26, 12, 6);
    return image;
  }();
  return made;
}

/// `act` is done once the panel is shown.
GalleryPanel panelOf(const char* name, const BookmarkSettings& settings,
                     const std::function<void(QWidget*)>& act = {}) {
  return {name, bookmarkTint, [=](const PanelAppearance& look) {
            const auto current = std::make_shared<BookmarkSettings>(settings);
            const auto shown = std::make_shared<BookmarkPanelView*>();
            auto* panel = *shown =
                new BookmarkPanelView(look, {.name = [] { return std::string("Bookmarks"); },
                                             .settings = [current] { return *current; },
                                             .icon = icon,
                                             .open = [](const std::vector<std::string>&) {},
                                             .copy = [](const std::string&) {},
                                             .change =
                                                 [current, shown](const BookmarkSettings& changed) {
                                                   *current = changed;
                                                   (*shown)->refresh();
                                                 },
                                             .added = [](const std::string&) {},
                                             .remove = [](const BookmarkPlace&) {},
                                             .removed = [] { return std::string(); },
                                             .restore = [] { return std::nullopt; },
                                             .edit = [] {}});
            if (act)
              QTimer::singleShot(0, panel, [act, panel] { act(panel); });
            return panel;
          }};
}

std::function<void(QWidget*)> typing(const char* words) {
  return [words](QWidget* panel) { panel->findChild<QLineEdit*>()->setText(words); };
}

PanelList* listOf(QWidget* panel) {
  for (auto* view : panel->findChildren<QListView*>())
    if (auto* list = dynamic_cast<PanelList*>(view))
      return list;
  return nullptr;
}

} // namespace

GallerySheet bookmarkGallery() {
  GallerySheet sheet;
  const auto show = [&](const char* name, const BookmarkSettings& settings) {
    for (const int span : {1, 2, 3, 4})
      sheet.push_back({name, span, [=](const TileSize& size) {
                         return size.isWide() ? bookmarkWideTile(settings, size, icon,
                                                                 [](const std::string&) {})
                                              : bookmarkTileIcon(settings, size);
                       }});
  };
  show("none", {});
  show("few", few());
  show("many", many());
  return sheet;
}

GalleryPanels bookmarkPanels() {
  return {panelOf("none", {}),
          panelOf("few", few()),
          panelOf("many", many()),
          panelOf("found", many(), typing("site")),
          panelOf("to be added", many(), typing("work.example/new")),
          panelOf("nothing found", many(), typing("no such thing")),
          panelOf("folder", many(), [](QWidget* panel) { listOf(panel)->onOpen(0); }),
          panelOf("removed", few(), [](QWidget* panel) { listOf(panel)->onRemove(1); }),
          panelOf("broken", {{{"Broken", "no address"}}, {}, true})};
}

const GalleryEntry bookmarkEntries[] = {{"bookmarks", bookmarkGallery},
                                        {"bookmarks-panels", bookmarkPanels}};

} // namespace tavrin

#include "TavrinSlot/Controllers/BookmarkWidget.h"

#include "TavrinSlot/DockPanelPresenter.h"
#include "TavrinWidgetsUI/Bookmarks/BookmarkPanelView.h"

namespace tavrin {

BookmarkWidgetController::BookmarkWidgetController(const SlotContext& context,
                                                   const DockWidget& widget)
    : BasicWidgetController(context, widget),
      icons_({platform().runLoop(), platform().clock(),
              [this]() -> HTTPClient& { return platform().http(); },
              platform().fileManager().cachesFolder() / "tavrin" / "icons"}),
      open_([this](const std::string& url) { open(url); }) {
  icons_.setEnabled(settings().showsIcons);
  icons_.onChange = [this] { refresh(); };
  renderTile();
}

BookmarkSettings BookmarkWidgetController::settings() const {
  const auto* found = widget().kind.get<BookmarkSettings>();
  return found != nullptr ? *found : BookmarkSettings{};
}

void BookmarkWidgetController::widgetChanged() {
  icons_.setEnabled(settings().showsIcons);
}

void BookmarkWidgetController::open(const std::string& url) {
  if (const auto address = WebAddress::from(url))
    platform().workspace().open(address->url);
}

QColor BookmarkWidgetController::tint() const {
  return bookmarkTint;
}

AnyView BookmarkWidgetController::tileView(const TileSize& size) const {
  return size.isWide() ? bookmarkWideTile(
                             settings(), size,
                             [this](const std::string& url) { return icons_.icon(url); }, open_)
                       : bookmarkTileIcon(settings(), size);
}

PanelView* BookmarkWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new BookmarkPanelView(
      appearance,
      {.name = [this] { return widget().name; },
       .settings = [this] { return settings(); },
       .icon = [this](const std::string& url) { return icons_.icon(url); },
       .open =
           [this](const std::vector<std::string>& urls) {
             for (const auto& url : urls)
               open(url);
             context().panel.closeIfShown();
           },
       .copy = [this](const std::string& url) { platform().pasteboard().writeText(url); },
       .change = [this](const BookmarkSettings& changed) { save(changed); },
       .edit = context().onEdit});
}

} // namespace tavrin

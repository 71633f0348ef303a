#pragma once

#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinCore/Kinds/Bookmarks/Bookmarks.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/Bookmarks/BookmarkIcons.h"
#include "TavrinWidgetsUI/Bookmarks/BookmarkNames.h"

namespace tavrin {

class BookmarkWidgetController final : public KindController<BookmarkSettings> {
public:
  using KindController::KindController;

protected:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override;

private:
  /// A link was added by hand: there is no need to bring it back, but a name may be wanted.
  void added(const std::string& url);
  void remove(const BookmarkPlace& place);
  std::optional<BookmarkPlace> restore();
  /// In the browser; what is no address of the web is left alone.
  void open(const std::string& url);

  /// Gives a link that has none the name that its page told.
  void call(const std::string& url, const std::string& name);

  std::optional<BookmarkIcons> icons_;
  std::optional<BookmarkNames> names_;
  /// The newest last; kept while the panel is closed.
  std::vector<RemovedBookmark> removed_;
  std::function<void(const std::string&)> open_ = [this](const auto& url) { open(url); };
};

} // namespace tavrin

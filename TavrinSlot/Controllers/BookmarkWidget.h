#pragma once

#include "TavrinSlot/BasicWidgetController.h"
#include "TavrinWidgetsUI/Bookmarks/BookmarkIcons.h"

namespace tavrin {

class BookmarkWidgetController final : public BasicWidgetController {
public:
  BookmarkWidgetController(const SlotContext& context, const DockWidget& widget);

protected:
  AnyView tileView(const TileSize& size) const override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override;

private:
  /// In the browser; what is no address of the web is left alone.
  void open(const std::string& url);
  BookmarkSettings settings() const;

  mutable BookmarkIcons icons_;
  std::function<void(const std::string&)> open_;
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinSlot/Base/KindController.h"
#include "TavrinWidgetsUI/GitHub/GitHubModel.h"

namespace tavrin {

class GitHubWidgetController final : public KindController<GitHubSettings> {
public:
  using KindController::KindController;

private:
  void start() override;
  void stop() override;
  AnyView tileView(const TileSize& size) override;
  PanelView* makePanelView(const PanelAppearance& appearance) override;
  QColor tint() const override;
  void widgetChanged() override;
  void panelWillOpen() override { model_->refresh(); }

  /// Opens an item in the browser; addresses of other kinds are not opened.
  void open(const std::string& url) const;

  std::optional<GitHubModel> model_;
};

} // namespace tavrin

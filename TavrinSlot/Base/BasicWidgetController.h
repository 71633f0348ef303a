#pragma once

#include "TavrinPlatform/DockTile.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinSlot/Base/SlotContext.h"
#include "TavrinSlot/Base/WidgetController.h"
#include "TavrinStorage/WidgetStore.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <memory>
#include <optional>

namespace tavrin {

/// What all controllers do. A kind's controller (see `KindController`) adds its model, which it
/// makes in `start` and drops in `stop`, its views, and when to draw:
///
///     class NoteWidgetController final : public KindController<NoteSettings> {
///       void start() override { model_.emplace(...); }
///       void stop() override { model_->flush(); model_.reset(); }
///       AnyView tileView(const TileSize& size) override;
///       PanelView* makePanelView(const PanelAppearance& look) override;
///     };
///
/// The panel view is made when the panel first opens and kept until `leave`, so it never outlives
/// the model.
class BasicWidgetController : public WidgetController {
public:
  BasicWidgetController(const SlotContext& context, DockWidget widget);

  void update(const DockWidget& widget) final;
  void togglePanel() override;
  void begin() final;
  void leave() final;
  void redraw() final;
  bool openFiles(const std::vector<std::filesystem::path>&) override { return false; }

protected:
  /// Whether a record of this kind can be this controller's.
  virtual bool serves(const DockWidget::Kind& kind) const = 0;
  /// Makes the model for `widget()`, subscribes and begins to read. The first drawing follows.
  virtual void start() {}
  /// Undoes `start`: what is unsaved is saved, what is held is given back. The panel view is gone,
  /// and nothing is drawn any more.
  virtual void stop() {}

  /// The tile as it is to look now; the wide form when `size.isWide()`. Only between `start` and
  /// `stop`.
  virtual AnyView tileView(const TileSize& size) = 0;
  virtual PanelView* makePanelView(const PanelAppearance& appearance) = 0;
  /// The kind's tint, from which the panel's accent is made.
  virtual QColor tint() const { return palette::blue; }
  /// `widget()` is another value now: hand it to the model. Drawing follows by itself.
  virtual void widgetChanged() {}
  /// The tile will be drawn, whatever asked for it.
  virtual void tileWillBeDrawn() {}
  /// The tile will be drawn in another format than before, or for the first time.
  virtual void formatChanged() {}
  /// Just before the panel opens.
  virtual void panelWillOpen() {}
  /// The panel closed, whoever closed it, or is another widget's from now on.
  virtual void panelDidClose() {}

  const DockWidget& widget() const { return widget_; }
  const SlotContext& context() const { return context_; }
  Platform& platform() const { return context_.platform; }

  void renderTile();
  /// Brings an open panel up to date and resizes it to its content.
  void refreshPanel();
  /// Both.
  void refresh();

  /// Writes changed settings into the own widget's record, draws, and tells every process. Where
  /// the widgets file cannot be opened or written the change shows here, is not saved and not
  /// announced; the same where the widget has become another kind meanwhile.
  void save(const DockWidget::Kind& kind);
  /// The widget as it stands in the file now; no value where that cannot be read or lacks it.
  std::optional<DockWidget> storedWidget();
  /// Another panel view is due: it is made when the panel is shown or refreshed next.
  void discardPanelView();

private:
  void appearanceChanged();
  /// Whether that is another font or size than before.
  bool takeInterfaceText();
  void showContent();
  PanelAppearance appearance() const;
  WidgetStore& freshStore();
  bool write(const DockWidget::Kind& kind);
  void announce();

  SlotContext context_;
  DockWidget widget_;
  /// The settings that those of `widget_` were made of, as the file has or had them: what differs
  /// was changed here.
  DockWidget::Kind filed_;
  bool isLive_ = false;
  std::optional<DockTile::Format> drawnFormat_;
  PanelView* panelView_ = nullptr;
  std::unique_ptr<WidgetStore> store_;
  TokenPtr appearanceChanged_;
};

} // namespace tavrin

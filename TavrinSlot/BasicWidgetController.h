#pragma once

#include "TavrinPlatform/Platform.h"
#include "TavrinSlot/SlotContext.h"
#include "TavrinSlot/WidgetController.h"
#include "TavrinStorage/WidgetStore.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Kit/Views/TileLayout.h"

#include <memory>
#include <optional>

namespace tavrin {

/// What all controllers do. A kind's controller adds its model, its views and when to draw:
///
///     class NoteWidgetController final : public BasicWidgetController {
///       AnyView tileView(const TileSize& size) const override;
///       PanelView* makePanelView(const PanelAppearance& look) override;
///     };
///
/// The panel view is made when the panel first opens and kept; it must not outlive the controller,
/// so `SlotApp` takes it out of the presenter before it drops a controller.
class BasicWidgetController : public WidgetController {
public:
  ~BasicWidgetController() override;
  void update(const DockWidget& widget) override;
  void togglePanel() override;

protected:
  BasicWidgetController(const SlotContext& context, DockWidget widget);

  /// The tile as it is to look now; the wide form when `size.isWide()`.
  virtual AnyView tileView(const TileSize& size) const = 0;
  virtual PanelView* makePanelView(const PanelAppearance& appearance) = 0;
  /// The kind's tint, from which the panel's accent is made.
  virtual QColor tint() const { return palette::blue; }
  /// `widget()` is another value now: hand it to the model. Drawing follows by itself.
  virtual void widgetChanged() {}
  /// Just before the panel opens.
  virtual void panelWillOpen() {}
  /// The panel closed, whoever closed it.
  virtual void panelDidClose() {}

  const DockWidget& widget() const { return widget_; }
  const SlotContext& context() const { return context_; }
  Platform& platform() const { return context_.platform; }

  void renderTile();
  /// Brings an open panel up to date and resizes it to its content.
  void refreshPanel();
  /// Both.
  void refresh();

  /// Writes changed settings of the own widget, draws, and tells every process. Where the widgets
  /// file cannot be opened or written the change shows here, is not saved and not announced.
  void save(const DockWidget::Kind& kind);
  /// The same without drawing, for a controller that is going. Nothing is written when the widget
  /// has become another kind meanwhile.
  void saveQuietly(const DockWidget::Kind& kind);
  /// The widget as it stands in the file now; no value where that cannot be read or lacks it.
  std::optional<DockWidget> storedWidget();
  /// Another panel view is due: it is made when the panel is shown or refreshed next.
  void discardPanelView();

private:
  void appearanceChanged();
  /// Whether that is another font than before.
  bool takeInterfaceFont();
  void showContent();
  PanelAppearance appearance() const;
  WidgetStore& freshStore();
  bool write(const DockWidget::Kind& kind);
  void announce();

  SlotContext context_;
  DockWidget widget_;
  PanelView* panelView_ = nullptr;
  std::unique_ptr<WidgetStore> store_;
  TokenPtr appearanceChanged_;
};

} // namespace tavrin

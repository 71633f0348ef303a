#include "TavrinSlot/Controllers/AirDropWidget.h"

#include "TavrinSlot/DockPanelPresenter.h"
#include "TavrinWidgetsUI/AirDrop/AirDropPanelView.h"
#include "TavrinWidgetsUI/AirDrop/AirDropViews.h"

#include <QFileDialog>
#include <QUrl>

namespace tavrin {

AirDropWidgetController::AirDropWidgetController(const SlotContext& context,
                                                 const DockWidget& widget)
    : BasicWidgetController(context, widget),
      model_(platform().nearbyDevices(), platform().runLoop(), widget) {
  model_.onChange = [this] { refresh(); };
  model_.onTaken = [this] {
    if (!this->context().panel.isShown())
      togglePanel();
  };
  renderTile();
}

AirDropWidgetController::~AirDropWidgetController() = default;

QColor AirDropWidgetController::tint() const {
  return airDropTint;
}

AnyView AirDropWidgetController::tileView(const TileSize& size) const {
  const auto state = AirDropTileState::of(model_);
  auto& model = const_cast<AirDropModel&>(model_);
  return size.isWide() ? airDropWideTile(state, size, [&model] { model.cancel(); })
                       : airDropTileIcon(state, size);
}

PanelView* AirDropWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new AirDropPanelView(appearance, model_,
                              {.chooseFiles = [this] { chooseFiles(); }, .edit = context().onEdit});
}

void AirDropWidgetController::chooseFiles() {
  context().panel.closeIfShown();
  auto* dialog = new QFileDialog(nullptr, QStringLiteral("Send Files"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::ExistingFiles);
  QObject::connect(dialog, &QFileDialog::urlsSelected,
                   [this, weak = std::weak_ptr(alive_)](const QList<QUrl>& urls) {
                     if (weak.expired())
                       return;
                     std::vector<std::string> addresses;
                     for (const QUrl& url : urls)
                       addresses.push_back(url.toEncoded().toStdString());
                     model_.take(addresses);
                   });
  dialog->open();
}

} // namespace tavrin

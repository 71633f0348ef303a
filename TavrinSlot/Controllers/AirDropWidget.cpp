#include "TavrinSlot/Controllers/AirDropWidget.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinWidgetsUI/AirDrop/AirDropPanelView.h"
#include "TavrinWidgetsUI/AirDrop/AirDropViews.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QFileDialog>
#include <QUrl>

namespace tavrin {

void AirDropWidgetController::start() {
  alive_.renew();
  model_.emplace(platform().nearbyDevices(), platform().runLoop(), widget());
  model_->onChange = [this] { refresh(); };
  model_->onTaken = [this] {
    if (!context().panel.isShown())
      togglePanel();
  };
}

void AirDropWidgetController::stop() {
  alive_.end();
  model_.reset();
}

bool AirDropWidgetController::openFiles(const std::vector<std::filesystem::path>& paths) {
  std::vector<std::string> addresses;
  for (const auto& path : paths)
    addresses.push_back(fileURL(path.native()));
  model_->take(addresses);
  return true;
}

QColor AirDropWidgetController::tint() const {
  return airDropTint;
}

AnyView AirDropWidgetController::tileView(const TileSize& size) {
  const auto state = AirDropTileState::of(*model_);
  return size.isWide() ? airDropWideTile(state, size, [this] { model_->cancel(); })
                       : airDropTileIcon(state, size);
}

PanelView* AirDropWidgetController::makePanelView(const PanelAppearance& appearance) {
  return new AirDropPanelView(appearance, *model_,
                              {.chooseFiles = [this] { chooseFiles(); }, .edit = context().onEdit});
}

void AirDropWidgetController::chooseFiles() {
  context().panel.closeIfShown();
  auto* dialog = new QFileDialog(nullptr, worded("Send Files"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::ExistingFiles);
  QObject::connect(dialog, &QFileDialog::urlsSelected,
                   [this, weak = alive_.watch()](const QList<QUrl>& urls) {
                     if (weak.expired())
                       return;
                     std::vector<std::string> addresses;
                     for (const QUrl& url : urls)
                       addresses.push_back(url.toEncoded().toStdString());
                     model_->take(addresses);
                   });
  dialog->open();
}

} // namespace tavrin

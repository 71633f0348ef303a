#pragma once

#include "TavrinSettings/Base/PageServices.h"

#include <QWidget>

namespace tavrin {

/// A widget's tile, large, and its wide tile, on a ground such as the desktop's.
class TilePreview : public QWidget {
public:
  explicit TilePreview(PageServices& services, QWidget* parent = nullptr);

  void setRecord(const DockWidget& widget);
  /// One below the other, instead of side by side.
  void setUpright(bool isUpright);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  TileSize wideSize() const;
  void tick();

  PageServices& services_;
  DockWidget widget_;
  bool isUpright_ = false;
  AnyView painted_;
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Settings/SettingEdit.h"
#include "TavrinSettings/Base/PageServices.h"

#include <QWidget>

class QBoxLayout;
class QScrollArea;

namespace tavrin {

class PanelButton;
class PanelText;
class TilePreview;
class WidgetForm;

/// One widget: what it looks like, and all its settings.
class WidgetPage : public QWidget {
public:
  explicit WidgetPage(PageServices& services, QWidget* parent = nullptr);

  /// Shows the widget, or what became of it. False where it is gone.
  bool show(const UUID& id);
  const UUID& shown() const { return id_; }
  /// What is half typed is taken as if its control had been left.
  void commit();
  void setAppearance();
  /// The first setting gets the keyboard.
  void focusForm();
  /// The tiles' pictures have come.
  void refreshTiles();

  std::function<void()> onBack;

protected:
  void resizeEvent(QResizeEvent* event) override;

private:
  void makeHeader(QBoxLayout* column);
  std::string set(const std::vector<SettingValue>& values);
  void place();
  void remove();

  PageServices& services_;
  UUID id_;
  PanelText* title_;
  PanelText* kind_;
  PanelButton* back_;
  PanelButton* place_;
  PanelButton* delete_;
  QBoxLayout* body_;
  TilePreview* preview_;
  QScrollArea* scroll_;
  WidgetForm* form_;
};

} // namespace tavrin

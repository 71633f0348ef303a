#pragma once

#include "TavrinSettings/Base/PageServices.h"

#include <QWidget>

class QStackedWidget;

namespace tavrin {

class GalleryView;
class PanelButton;
class PanelText;
class StripView;
class WidgetPage;

/// The strip, and below it the gallery or the widget that was chosen.
class WidgetsPage : public QWidget {
public:
  explicit WidgetsPage(PageServices& services, QWidget* parent = nullptr);

  /// Shows what the editor says.
  void refresh();
  /// Opens the settings of a widget with the keyboard in the first of them. False where there is
  /// no such widget.
  bool enter(const UUID& id);
  void showGallery();
  /// Leads to what can be put at the first free place, which is marked until that is done.
  void seek();
  void focusSearch();
  /// What is half typed is taken.
  void commit();
  void setAppearance();
  /// The tiles' pictures have come.
  void refreshTiles();

protected:
  /// Escape leads from a widget's page back, wherever the keyboard is.
  void keyPressEvent(QKeyEvent* event) override;

private:
  QWidget* makeTools();
  void leaveWidget();
  /// A widget came onto the strip.
  void wasPlaced(const UUID& id);
  /// The keyboard stays where it is.
  bool open(const UUID& id);
  void choose(const UUID& id, bool isOpened);
  void endSeeking();
  void refreshTools();
  const DockWidget* chosenOnStrip(int& place) const;

  PageServices& services_;
  StripView* strip_;
  PanelText* hint_;
  PanelButton* moveLeft_;
  PanelButton* moveRight_;
  PanelButton* narrower_;
  PanelButton* wider_;
  PanelButton* settings_;
  PanelButton* takeOff_;
  QStackedWidget* below_;
  GalleryView* gallery_;
  WidgetPage* widget_;
  std::optional<UUID> chosen_;
  bool isSeeking_ = false;
};

} // namespace tavrin

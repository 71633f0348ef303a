#pragma once

#include "TavrinSettings/Base/PageServices.h"

#include <QWidget>

class QStackedWidget;

namespace tavrin {

class FootLine;
class PanelButton;
class PanelEmptyState;
class PanelSegments;
class WidgetsPage;

/// The window: its pages, undo and redo above them, and a line for what there is to be said.
class SettingsWindow : public QWidget {
public:
  using Maker = std::function<QWidget*(PageServices&, QWidget* parent)>;
  /// The pages that stand on more than the others.
  struct Makers {
    Maker dockPage;
    Maker computerPage;
  };

  SettingsWindow(History& history, const PanelAppearance& appearance);

  /// Makes the pages on what the editor says.
  void setUp(WidgetsEditor& editor, TileStage& stage, LiveTiles& live, const FormServices& forms,
             Makers makers);
  /// Says why there is nothing to be shown, in place of the pages.
  void showTrouble(const QString& sentence, std::function<void()> tryAgain);
  void refresh();
  void setAppearance(const PanelAppearance& appearance);
  /// Opens a widget's settings; says so where there is no such widget.
  void open(const UUID& id);
  void tell(const QString& sentence, bool isTrouble);
  /// Pictures of applications have come, for the tiles and for what shows Dock items.
  void refreshPictures();

  std::function<void()> onClose;

protected:
  /// Return presses the button that has the keyboard, as Space does.
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

private:
  QWidget* makeTop();
  void orderTabs();
  void showPage(int page);
  void commit();
  void step(bool isBack);
  void refreshHistory();
  void followScreen();
  /// No larger than the screen has room for.
  void fitScreen();

  History& history_;
  PanelAppearance appearance_;
  TileDrag drag_;
  std::optional<PageServices> services_;
  PanelSegments* pages_;
  PanelButton* undo_;
  PanelButton* redo_;
  QStackedWidget* stack_;
  WidgetsPage* widgets_ = nullptr;
  /// Made when it is first looked at.
  QWidget* dock_ = nullptr;
  QWidget* computer_ = nullptr;
  Makers makers_;
  PanelEmptyState* trouble_ = nullptr;
  FootLine* foot_;
  bool isFollowingScreen_ = false;
  std::vector<QMetaObject::Connection> screen_;
};

} // namespace tavrin

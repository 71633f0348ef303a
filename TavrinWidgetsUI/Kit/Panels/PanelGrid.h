#pragma once

#include <QAbstractListModel>
#include <QColor>
#include <QImage>
#include <QListView>
#include <filesystem>
#include <functional>
#include <vector>

namespace tavrin {

/// One square of a grid: the first that is there of image, colour, symbol and text.
struct PanelCell {
  /// What it is, for tooltips and assistive technology.
  QString name = {};
  /// An emoji, a letter.
  QString text = {};
  QString symbol = {};
  QColor colour = {};
  QImage image = {};
  bool isChecked = false;
  /// On the ground of what is chosen, without a check: for tabs.
  bool isChosen = false;
  /// Words below the square; where one cell has them, every cell has room for them.
  QString caption = {};
  /// The caption is a file's name: cut in its middle, so that its extension stays.
  bool isFileName = false;
  bool isEnabled = true;
  bool operator==(const PanelCell&) const = default;
};

/// Squares in rows. The arrow keys move, Return or Space chooses; made for thousands.
class PanelGrid : public QListView {
public:
  /// The role under which a model gives the PanelCell.
  static constexpr int cellRole = Qt::UserRole + 2;

  /// `name` is the accessible name. The squares fill the width in `columns`.
  PanelGrid(const QString& name, int columns, QWidget* parent = nullptr);

  void setCells(std::vector<PanelCell> cells);
  void setCells(int count, std::function<PanelCell(int)> cell);
  int count() const;
  PanelCell cell(int index) const;
  void setCurrentCell(int index);
  int currentCell() const { return currentIndex().row(); }
  /// As Return on the square.
  void press(const QModelIndex& index);
  /// The grid asks for no more than so many rows' height and then scrolls.
  void setMaximumVisibleRows(int rows);
  /// As many rows' height, however few there are.
  void setVisibleRows(int rows);
  int columns() const { return columns_; }
  /// How many lines a caption may have; 1 at first.
  void setCaptionLines(int lines);
  int captionHeight() const;
  /// A click makes a square the current one, which is then seen; a double click opens it.
  void setOpensOnDoubleClick(bool opens);
  bool opensOnDoubleClick() const { return opensOnDoubleClick_; }
  /// What can be done with a square, in its menu.
  void setActions(QStringList names) { actions_ = std::move(names); }

  /// A square was clicked, or Return or Space pressed on it.
  std::function<void(int index)> onOpen;
  /// Another square is the current one; -1 for none.
  std::function<void(int index)> onCurrentChange;
  /// Of `setActions`.
  std::function<void(int index, int action)> onAction;
  /// Delete was pressed on a square.
  std::function<void(int index)> onRemove;
  /// Copying was asked for by the keyboard.
  std::function<void(int index)> onCopy;
  /// The files a square stands for, when it is dragged; without it squares cannot be dragged.
  std::function<std::vector<std::filesystem::path>(int index)> onDrag;
  /// The menu of a square is asked for, by a right click or the menu key; in place of one of
  /// `setActions`.
  std::function<void(int index, QPoint place)> onMenu;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void focusInEvent(QFocusEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  int side(int width) const;
  int cellHeight(int width) const;
  void applySide();

  int columns_;
  int leastRows_ = 0;
  int maximumRows_ = 6;
  bool opensOnDoubleClick_ = false;
  QStringList actions_;
  QPersistentModelIndex pressed_;
  QPoint pressedAt_;
  bool hasCaptions_ = false;
  int captionLines_ = 1;
};

} // namespace tavrin

#pragma once

#include <QAbstractListModel>
#include <QColor>
#include <QImage>
#include <QListView>
#include <filesystem>
#include <functional>
#include <vector>

namespace tavrin {

/// One thing one can do with a row, as a small button at its end.
struct PanelRowAction {
  /// By its name in Symbols.h.
  QString symbol = {};
  /// What it does, for tooltips, the context menu and assistive technology.
  QString name = {};
  /// Shown always, not only when the row is under the pointer or has the focus. These stand last,
  /// so that nothing moves when the others come.
  bool stays = false;
  bool operator==(const PanelRowAction&) const = default;
};

/// What one row of a list shows. Everything but the title may be missing. At the left the first
/// that is there of image, colour, symbol and emoji.
struct PanelRow {
  /// Keeps the row the current one when the rows change around it.
  QString id = {};
  QString title = {};
  QString subtitle = {};
  /// At the right end, and a quieter unit after it.
  QString trailing = {};
  QString unit = {};
  QString symbol = {};
  /// A text mark at the left: an emoji, a number.
  QString mark = {};
  QColor dot = {};
  QImage image = {};
  std::vector<PanelRowAction> actions = {};
  /// Chosen, with a check at the right.
  bool isChecked = false;
  /// What it leads to stands beside the list: on the ground of a chosen one, without a check.
  bool isShown = false;
  /// Done with: struck through and quieter.
  bool isDone = false;
  /// Not seen yet: a dot of the accent before the title.
  bool isNew = false;
  bool isEnabled = true;
  /// A file's name: cut in its middle, so that its extension stays.
  bool isFileName = false;
  bool operator==(const PanelRow&) const = default;
};

/// Rows by number. Either the rows themselves, or how many and a function that makes the one
/// asked for, for thousands.
class PanelRowModel : public QAbstractListModel {
public:
  /// The role under which a model gives the PanelRow. A model of another make must give it too.
  static constexpr int rowRole = Qt::UserRole + 1;

  using QAbstractListModel::QAbstractListModel;
  void setRows(std::vector<PanelRow> rows);
  void setRows(int count, std::function<PanelRow(int)> row);
  PanelRow row(int index) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
  std::vector<PanelRow> rows_;
  int count_ = 0;
  std::function<PanelRow(int)> make_;
};

/// Rows under each other, 36 points high, or 44 with subtitles. The whole width of a row can be
/// clicked; Up and Down move, Return or Space opens, Right and Left go over its buttons, Delete
/// removes, the menu key lists what can be done.
class PanelList : public QListView {
public:
  /// `name` is the accessible name, such as "Laps".
  explicit PanelList(const QString& name, QWidget* parent = nullptr);

  /// The rows as a value; the current row stays by its id.
  void setRows(std::vector<PanelRow> rows);
  /// As many rows as wanted, made when they come into sight.
  void setRows(int count, std::function<PanelRow(int)> row);
  void setModel(QAbstractItemModel* model) override;
  int count() const;
  PanelRow row(int index) const;
  /// -1 for none.
  int currentRow() const { return currentIndex().row(); }
  void setCurrentRow(int row);
  /// As a click on the row.
  void press(const QModelIndex& index);

  /// Rows that are only read: no hover, no focus, no clicks.
  void setReadOnly(bool readOnly);
  /// Rows of 44 points, also those without a subtitle.
  void setTall(bool tall);
  /// The list asks for no more than so many rows' height and then scrolls; 0 for no bound but the
  /// panel's.
  void setMaximumVisibleRows(int rows);

  /// A row was clicked, or Return or Space pressed on it.
  std::function<void(int row)> onOpen;
  /// The button with that number of that row was pressed.
  std::function<void(int row, int action)> onAction;
  /// Delete was pressed on a row.
  std::function<void(int row)> onRemove;
  /// Space was pressed on a row; without it Space is as Return.
  std::function<void(int row)> onSpace;
  /// Copying was asked for by the keyboard.
  std::function<void(int row)> onCopy;
  /// The menu of a row is asked for, by a right click or the menu key; in place of one of its
  /// actions.
  std::function<void(int row, QPoint place)> onMenu;
  /// The files a row stands for, when it is dragged; without it rows cannot be dragged.
  std::function<std::vector<std::filesystem::path>(int row)> onDrag;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  /// The button of a row that has the keyboard, -1 when it is the row itself.
  int currentAction() const { return action_; }
  /// The button under this point of the row, -1 for none. `row` in the viewport's coordinates.
  int actionAt(const QModelIndex& index, const QPoint& point) const;
  /// The row's words, without their mark, to the row's end: for what is put in their place. In the
  /// viewport's coordinates.
  QRect wordsRect(int row) const;
  bool isReadOnly() const { return readOnly_; }
  bool isPressed(const QModelIndex& index) const { return pressed_.isValid() && pressed_ == index; }
  int rowHeight() const;

protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  bool viewportEvent(QEvent* event) override;

private:
  void open(const QModelIndex& index);
  void trigger(const QModelIndex& index, int action);
  void rowsChanged();

  int action_ = -1;
  QPersistentModelIndex pressed_;
  int pressedAction_ = -1;
  QPoint pressedAt_;
  bool readOnly_ = false;
  bool tall_ = false;
  bool hasSubtitles_ = false;
  int maximumRows_ = 0;
};

} // namespace tavrin

#pragma once

#include <QAbstractItemDelegate>
#include <QRectF>
#include <map>

namespace tavrin {

class PanelList;
struct PanelRow;

/// Paints one row of a list, and knows where its buttons are.
class PanelRowDelegate : public QAbstractItemDelegate {
public:
  explicit PanelRowDelegate(PanelList* list);

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  /// Whether the title was too long for its row when that was painted last.
  bool isCut(const QModelIndex& index) const;
  /// Where the row's button with that number stands inside `rect`, the row's.
  static QRectF actionRect(const PanelRow& row, int action, const QRectF& rect,
                           Qt::LayoutDirection direction);

  /// Where the row's words begin, from the row's leading edge.
  double wordsInset(const PanelRow& row) const;

private:
  PanelList* list_;
  mutable std::map<int, bool> cut_;
};

} // namespace tavrin

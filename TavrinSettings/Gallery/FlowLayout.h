#pragma once

#include <QLayout>
#include <vector>

namespace tavrin {

/// Items of one size in as many columns as there is room for, all columns equally wide.
class FlowLayout : public QLayout {
public:
  /// A column is at least `columnWidth` points wide, where there is so much at all.
  FlowLayout(int columnWidth, int spacing, QWidget* parent = nullptr);
  ~FlowLayout() override;

  void addItem(QLayoutItem* item) override;
  int count() const override { return static_cast<int>(items_.size()); }
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  Qt::Orientations expandingDirections() const override { return {}; }
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;
  QSize minimumSize() const override;
  void setGeometry(const QRect& rect) override;
  int columns() const { return columnsIn(geometry().width()); }

private:
  int columnsIn(int width) const;
  int lay(const QRect& rect, bool isReal) const;

  int columnWidth_;
  std::vector<QLayoutItem*> items_;
};

} // namespace tavrin

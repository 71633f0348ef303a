#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"

#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QStringList>

namespace tavrin {

namespace {

QString spoken(const PanelRow& row) {
  QStringList words{row.title, row.subtitle};
  if (!row.trailing.isEmpty())
    words.append(row.unit.isEmpty() ? row.trailing : row.trailing + QLatin1Char(' ') + row.unit);
  if (row.isNew)
    words.append(worded("new"));
  return plainWords(joinedFacts(std::move(words)));
}

} // namespace

void PanelRowModel::setRows(std::vector<PanelRow> rows) {
  const bool sameCount = !make_ && rows.size() == rows_.size();
  if (!sameCount) {
    beginResetModel();
    make_ = nullptr;
    rows_ = std::move(rows);
    count_ = static_cast<int>(rows_.size());
    endResetModel();
    return;
  }
  for (int i = 0; i < count_; ++i) {
    const auto at = static_cast<std::size_t>(i);
    if (rows_[at] == rows[at])
      continue;
    rows_[at] = std::move(rows[at]);
    dataChanged(index(i), index(i));
  }
}

void PanelRowModel::setRows(int count, std::function<PanelRow(int)> row) {
  beginResetModel();
  rows_.clear();
  rows_.shrink_to_fit();
  count_ = count;
  make_ = std::move(row);
  endResetModel();
}

PanelRow PanelRowModel::row(int index) const {
  if (index < 0 || index >= count_)
    return {};
  return make_ ? make_(index) : rows_[static_cast<std::size_t>(index)];
}

int PanelRowModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count_;
}

QVariant PanelRowModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid())
    return {};
  switch (role) {
  case rowRole:
    return QVariant::fromValue(row(index.row()));
  case Qt::DisplayRole:
    return plainWords(row(index.row()).title);
  case Qt::AccessibleTextRole:
    return spoken(row(index.row()));
  default:
    return {};
  }
}

Qt::ItemFlags PanelRowModel::flags(const QModelIndex& index) const {
  if (!index.isValid())
    return {};
  const bool enabled = make_ || rows_[static_cast<std::size_t>(index.row())].isEnabled;
  return enabled ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

} // namespace tavrin

#include "TavrinWidgetsUI/Kit/Panels/PanelAccessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QListView>
#include <QPointer>
#include <map>

namespace tavrin {
namespace {

using Press = std::function<void(const QModelIndex& item)>;

class AccessibleItem final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
  AccessibleItem(QListView* view, const QModelIndex& index, Press press)
      : view_(view), index_(index), press_(std::move(press)) {}

  const QPersistentModelIndex& index() const { return index_; }

  bool isValid() const override { return view_ && index_.isValid(); }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return view_ ? view_->window()->windowHandle() : nullptr; }
  QAccessibleInterface* parent() const override {
    return view_ ? QAccessible::queryAccessibleInterface(view_) : nullptr;
  }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QAccessible::Role role() const override { return QAccessible::ListItem; }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? index_.data(Qt::AccessibleTextRole).toString() : QString();
  }
  void setText(QAccessible::Text, const QString&) override {}

  QRect rect() const override {
    if (!isValid())
      return {};
    const QRect inside = view_->visualRect(index_);
    return {view_->viewport()->mapToGlobal(inside.topLeft()), inside.size()};
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    if (!isValid()) {
      state.invalid = true;
      return state;
    }
    state.disabled = !canPress();
    state.focusable = canPress() && view_->focusPolicy() != Qt::NoFocus;
    state.focused = view_->hasFocus() && view_->currentIndex() == index_;
    state.invisible = !view_->isVisible();
    state.offscreen = !view_->viewport()->rect().intersects(view_->visualRect(index_));
    // What has been scrolled away does not show either.
    if (state.offscreen)
      state.invisible = true;
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
  }
  QStringList actionNames() const override {
    return canPress() ? QStringList(pressAction()) : QStringList();
  }
  void doAction(const QString& name) override {
    if (name == pressAction() && canPress())
      press_(index_);
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
  bool canPress() const {
    return isValid() && view_->isEnabled() && index_.flags().testFlag(Qt::ItemIsEnabled);
  }

  QPointer<QListView> view_;
  QPersistentModelIndex index_;
  Press press_;
};

class AccessibleItems final : public QAccessibleWidget {
public:
  AccessibleItems(QListView* view, Press press)
      : QAccessibleWidget(view, QAccessible::List), press_(std::move(press)) {}
  ~AccessibleItems() override {
    for (const auto& [row, id] : items_)
      QAccessible::deleteAccessibleInterface(id);
  }

  int childCount() const override { return model() == nullptr ? 0 : model()->rowCount(); }
  QAccessibleInterface* child(int row) const override {
    if (row < 0 || row >= childCount())
      return nullptr;
    if (const auto kept = items_.find(row); kept != items_.end()) {
      auto* item = static_cast<AccessibleItem*>(QAccessible::accessibleInterface(kept->second));
      if (item != nullptr && item->isValid() && item->index().row() == row)
        return item;
      forgetGone();
    }
    auto* item = new AccessibleItem(view(), model()->index(row, 0), press_);
    items_[row] = QAccessible::registerAccessibleInterface(item);
    return item;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    const auto* item = dynamic_cast<const AccessibleItem*>(child);
    return item != nullptr && item->parent() == this ? item->index().row() : -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    return child(view()->indexAt(view()->viewport()->mapFromGlobal(QPoint(x, y))).row());
  }
  QAccessibleInterface* focusChild() const override {
    return view()->hasFocus() ? child(view()->currentIndex().row()) : nullptr;
  }

private:
  QListView* view() const { return static_cast<QListView*>(widget()); }
  QAbstractItemModel* model() const { return view()->model(); }
  /// Items that stand elsewhere by now, or nowhere, are other ones.
  void forgetGone() const {
    std::erase_if(items_, [](const auto& kept) {
      auto* item = static_cast<AccessibleItem*>(QAccessible::accessibleInterface(kept.second));
      if (item != nullptr && item->isValid() && item->index().row() == kept.first)
        return false;
      if (item != nullptr)
        QAccessible::deleteAccessibleInterface(kept.second);
      return true;
    });
  }

  Press press_;
  mutable std::map<int, QAccessible::Id> items_;
};

} // namespace

QAccessibleInterface* makeAccessibleItems(QListView* view, Press press) {
  return new AccessibleItems(view, std::move(press));
}

} // namespace tavrin

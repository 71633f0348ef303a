#include "TavrinWidgetsUI/Kit/Panels/PanelAccessible.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace tavrin {

namespace {

/// In a window that has its name, a panel is no second dialogue in the dialogue.
class AccessiblePanel final : public QAccessibleWidget {
public:
  explicit AccessiblePanel(QWidget* panel) : QAccessibleWidget(panel, QAccessible::Dialog) {}

  QAccessible::Role role() const override {
    return isNamedByWindow() ? QAccessible::Grouping : QAccessible::Dialog;
  }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name && isNamedByWindow() ? QString()
                                                          : QAccessibleWidget::text(kind);
  }

private:
  bool isNamedByWindow() const {
    return !widget()->isWindow() &&
           widget()->window()->accessibleName() == widget()->accessibleName();
  }
};

/// A picture, or what is pressed where one can press it.
class AccessibleView final : public QAccessibleWidget {
public:
  explicit AccessibleView(ViewWidget* view)
      : QAccessibleWidget(view, QAccessible::Graphic), view_(view) {}

  QAccessible::Role role() const override {
    return view_->hasButtons() ? QAccessible::Button : QAccessible::Graphic;
  }
  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (view_->hasButtons() && view_->isEnabled())
      names.prepend(pressAction());
    return names;
  }
  void doAction(const QString& name) override {
    if (name == pressAction() && view_->isEnabled())
      view_->press();
    else
      QAccessibleWidget::doAction(name);
  }

private:
  ViewWidget* view_;
};

/// Later: whoever asked is told of the item once this has returned, and it may be gone by then.
template <class Items> QAccessibleInterface* itemsOf(Items* view) {
  return makeAccessibleItems(view, [view](const QModelIndex& item) {
    QMetaObject::invokeMethod(
        view, [view, kept = QPersistentModelIndex(item)] { view->press(kept); },
        Qt::QueuedConnection);
  });
}

// No names here: one given now would hide later ones. What else derives from one
// of Qt's controls has its role already.
QAccessibleInterface* make(const QString&, QObject* object) {
  if (!object || !object->isWidgetType())
    return nullptr;
  auto* widget = static_cast<QWidget*>(object);
  if (dynamic_cast<PanelView*>(widget))
    return new AccessiblePanel(widget);
  if (dynamic_cast<PanelSegments*>(widget) || dynamic_cast<PanelField*>(widget) ||
      dynamic_cast<PanelEmptyState*>(widget))
    return new QAccessibleWidget(widget, QAccessible::Grouping);
  if (auto* view = dynamic_cast<ViewWidget*>(widget))
    return new AccessibleView(view);
  if (auto* list = dynamic_cast<PanelList*>(widget))
    return itemsOf(list);
  if (auto* grid = dynamic_cast<PanelGrid*>(widget))
    return itemsOf(grid);
  if (dynamic_cast<PanelDivider*>(widget))
    return new QAccessibleWidget(widget, QAccessible::Separator);
  return nullptr;
}

} // namespace

void installPanelAccessibility() {
  // Qt keeps a list; the same function in it twice would be asked twice.
  QAccessible::removeFactory(make);
  QAccessible::installFactory(make);
}

} // namespace tavrin

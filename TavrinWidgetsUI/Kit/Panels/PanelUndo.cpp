#include "TavrinWidgetsUI/Kit/Panels/PanelUndo.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QShortcut>

namespace tavrin {

PanelUndo::PanelUndo(std::function<void()> undo, QWidget* parent)
    : PanelButton(Kind::faint, worded("Undo"), std::move(undo), parent) {
  auto* keys = new QShortcut(QKeySequence::Undo, this);
  connect(keys, &QShortcut::activated, this, [this] { click(); });
  hide();
}

void PanelUndo::setWhat(const QString& name) {
  setVisible(!name.isEmpty());
  setPlainToolTip(this,
                  name.isEmpty() ? QString() : worded("Brings {name} back", {{"name", name}}));
}

} // namespace tavrin

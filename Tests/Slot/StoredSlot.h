#pragma once

#include "TavrinStorage/StoragePath.h"
#include "TavrinStorage/WidgetStore.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/PanelWords.h"
#include "Tests/Support/SlotRig.h"

namespace tavrin::test {

/// A slot's surfaces, and a widget that is written down in a data folder of its own.
struct StoredSlot : SlotRig {
  StoredSlot() {
    platform.files.variables["TAVRIN_APP_SUPPORT_DIR"] = folder.path().string();
    changed = platform.center.observe("dev.quellby.tavrin.widgetsChanged", [this](const auto&) {
      if (controller)
        controller->update(*store().widget(id));
    });
  }
  ~StoredSlot() { drop(); }

  template <class Controller> void show(DockWidget::Kind kind) {
    auto opened = store();
    id = opened.create("Mine", std::move(kind)).id;
    opened.claimSlot(id);
    controller = begun<Controller>(context(), *opened.widget(id));
  }
  /// As the slot does when its widget goes.
  void drop() {
    changed.reset();
    controller.reset();
  }
  WidgetStore store() {
    return WidgetStore(StoragePath(platform.files, platform.bundle).widgetsFileURL());
  }
  /// As somebody else does who tells of it.
  void setKind(DockWidget::Kind kind) {
    auto opened = store();
    auto widget = *opened.widget(id);
    widget.kind = std::move(kind);
    opened.update(widget);
    platform.center.post("dev.quellby.tavrin.widgetsChanged");
  }
  template <class View> View* panelAs() { return dynamic_cast<View*>(panel.rootView()); }
  bool says(const QString& words) { return shows(*panel.rootView(), words); }

  TemporaryFolder folder;
  UUID id;
  Living<WidgetController> controller;
  TokenPtr changed;
};

} // namespace tavrin::test

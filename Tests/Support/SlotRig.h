#pragma once

#include "TavrinSlot/Base/DockPanelPresenter.h"
#include "TavrinSlot/Base/DockTileRenderer.h"
#include "TavrinSlot/Base/SlotContext.h"
#include "TavrinSlot/Base/WidgetController.h"
#include "Tests/Support/FakePlatform.h"

#include <QAbstractButton>
#include <gtest/gtest.h>
#include <memory>

namespace tavrin::test {

/// A controller that has begun, and leaves before it is destroyed, as the slot sees to.
struct LeavesFirst {
  void operator()(WidgetController* controller) const {
    controller->leave();
    delete controller;
  }
};
template <class Controller> using Living = std::unique_ptr<Controller, LeavesFirst>;
template <class Controller>
Living<Controller> begun(const SlotContext& context, const DockWidget& widget) {
  Living<Controller> controller(new Controller(context, widget));
  controller->begin();
  return controller;
}

/// A slot's surfaces on fakes, for one controller at a time.
class SlotRig {
public:
  explicit SlotRig(Date now = {800'000'000}) : platform(now) {
    platform.bundle.strings["CFBundleIdentifier"] = "dev.quellby.Tavrin.Slot3";
  }
  SlotContext context() {
    return {platform, tile, panel, [this] { ++edits; }};
  }
  Date now() const { return platform.fakeClock.now(); }
  void pass(double seconds) { platform.loop.advance(seconds); }

  /// Presses the panel's button with that title, or that accessible name.
  void press(const QString& title) {
    ASSERT_NE(panel.rootView(), nullptr);
    for (auto* button : panel.rootView()->findChildren<QAbstractButton*>())
      if (!button->isHidden() && (button->text() == title || button->accessibleName() == title)) {
        ASSERT_TRUE(button->isEnabled()) << title.toStdString();
        button->click();
        return;
      }
    ADD_FAILURE() << "no button " << title.toStdString();
  }

  FakePlatform platform;
  DockTileRenderer tile{platform.tile};
  DockPanelPresenter panel{platform.fakePopover, platform.geometry};
  int edits = 0;
};

} // namespace tavrin::test

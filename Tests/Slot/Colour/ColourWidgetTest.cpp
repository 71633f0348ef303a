#include "TavrinCore/Kinds/Colour/ColourPickerSettings.h"
#include "TavrinSlot/Controllers/ColourWidget.h"

#include "TavrinStorage/StoragePath.h"
#include "TavrinWidgetsUI/Colour/ColourPanelView.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/SlotRig.h"

#include <QComboBox>
#include <QLabel>
#include <QListView>
#include <algorithm>

namespace tavrin::test {
namespace {

using Outcome = ColourSample::Outcome;

class ColourWidget : public testing::Test {
protected:
  void SetUp() override {
    rig_.platform.files.variables["TAVRIN_APP_SUPPORT_DIR"] = folder_.path().string();
    const StoragePath path(rig_.platform.files, rig_.platform.bundle);
    WidgetStore store(path.widgetsFileURL());
    widget_ = store.create("Colours", ColourPickerSettings{});
    controller_ = begun<ColourWidgetController>(rig_.context(), widget_);
  }
  void answer(const ColourSample& sample) { rig_.platform.fakeSampler.done(sample); }
  void pick(int red, int green, int blue) {
    if (!rig_.panel.isShown())
      controller_->togglePanel();
    rig_.press("Pick Colour");
    answer({Outcome::picked, red, green, blue});
  }
  ColourHistory history() {
    Silent silent;
    return ColourStore(folder_ / "colours.json", silent).history();
  }
  struct Silent final : DistributedNotificationCenter {
    void post(const std::string&, const std::optional<std::string>&) override {}
    TokenPtr observe(const std::string&, Handler) override { return nullptr; }
  };
  std::string copied() { return rig_.platform.fakePasteboard.writtenText(); }

  TemporaryFolder folder_;
  SlotRig rig_;
  DockWidget widget_;
  Living<ColourWidgetController> controller_;
};

TEST_F(ColourWidget, PickingMakesWayThenCopiesAndKeeps) {
  EXPECT_EQ(rig_.platform.tile.displays, 1);
  controller_->togglePanel();
  rig_.press("Pick Colour");
  EXPECT_FALSE(rig_.panel.isShown()) << "the panel is not to stand in the picture";
  answer({Outcome::picked, 255, 128, 0});
  EXPECT_EQ(copied(), "#FF8000");
  EXPECT_EQ(history().colours.size(), 1U);
  EXPECT_EQ(rig_.platform.tile.displays, 2);
  EXPECT_EQ(rig_.platform.center.count("dev.quellby.tavrin.colours-changed"), 1);
  controller_->togglePanel();
  rig_.press("Pick Colour");
  answer({Outcome::cancelled, 0, 0, 0});
  EXPECT_EQ(history().colours.size(), 1U);
}

TEST_F(ColourWidget, TheChosenFormatIsSavedAndUsed) {
  pick(255, 128, 0);
  controller_->togglePanel();
  auto* format = rig_.panel.rootView()->findChild<QComboBox*>();
  ASSERT_EQ(format->count(), 7);
  format->activated(static_cast<int>(ColourFormat::hsl));
  const StoragePath path(rig_.platform.files, rig_.platform.bundle);
  const auto stored = *WidgetStore(path.widgetsFileURL()).widget(widget_.id);
  EXPECT_EQ(stored.kind.get<ColourPickerSettings>()->format, ColourFormat::hsl);
  EXPECT_EQ(rig_.platform.center.count("dev.quellby.tavrin.widgetsChanged"), 1);
  auto* grid = dynamic_cast<PanelGrid*>(rig_.panel.rootView()->findChild<QListView*>());
  ASSERT_NE(grid, nullptr);
  grid->onOpen(0);
  EXPECT_EQ(copied(), "hsl(30, 100%, 50%)");
}

TEST_F(ColourWidget, FollowsOtherSlotsAndTheChosenSwatch) {
  pick(255, 0, 0);
  pick(0, 0, 255);
  {
    ColourStore elsewhere(folder_ / "colours.json", rig_.platform.center);
    elsewhere.add({UUID::random(), 0, 255, 0, {3}, false}, 24);
  }
  controller_->togglePanel();
  auto* view = dynamic_cast<ColourPanelView*>(rig_.panel.rootView());
  EXPECT_EQ(view->chosen()->packed(), 0x00FF00);
  dynamic_cast<PanelGrid*>(view->findChild<QListView*>())->onOpen(2);
  EXPECT_EQ(view->chosen()->packed(), 0xFF0000);
  rig_.press("Pin");
  EXPECT_TRUE(history().colours[2].isPinned);
  rig_.press("Clear");
  EXPECT_EQ(history().colours.size(), 1U);
  rig_.press("Remove");
  EXPECT_TRUE(history().colours.empty());
}

TEST_F(ColourWidget, SaysWhyThereIsNoColour) {
  controller_->togglePanel();
  rig_.press("Pick Colour");
  answer({Outcome::unavailable, 0, 0, 0});
  controller_->togglePanel();
  bool isTold = false;
  for (auto* label : rig_.panel.rootView()->findChildren<QLabel*>())
    isTold |= label->text().startsWith("Failed to pick a colour");
  EXPECT_TRUE(isTold);
  std::filesystem::remove(folder_ / "colours.json");
  std::filesystem::create_directory(folder_ / "colours.json");
  pick(1, 2, 3);
  EXPECT_EQ(copied(), "#010203") << "a file that cannot be written keeps nobody from copying";
}

TEST_F(ColourWidget, TheShortcutPicksWhateverIsInFront) {
  auto& shortcuts = rig_.platform.fakeShortcuts;
  EXPECT_EQ(shortcuts.binds, 0) << "without one nothing is registered";
  ColourPickerSettings settings;
  settings.hotkey = Hotkey{8, HotkeyModifiers::command | HotkeyModifiers::shift};
  const auto set = [&] {
    widget_.kind = settings;
    controller_->update(widget_);
  };
  set();
  ASSERT_EQ(shortcuts.bound.size(), 1u);
  EXPECT_EQ(shortcuts.bound[0].hotkey, settings.hotkey);
  shortcuts.pressed(shortcuts.bound[0].id);
  answer({Outcome::picked, 1, 2, 3});
  EXPECT_EQ(copied(), "#010203");
  set();
  EXPECT_EQ(shortcuts.binds, 1) << "the same shortcut stays registered";
  settings.hotkey.reset();
  set();
  EXPECT_TRUE(shortcuts.bound.empty());
}

TEST_F(ColourWidget, ARefusedShortcutIsToldInThePanel) {
  auto& shortcuts = rig_.platform.fakeShortcuts;
  shortcuts.refusals = {{"pick-colour", "the keys are taken"}};
  ColourPickerSettings settings;
  const auto set = [&](std::uint16_t key, HotkeyModifiers modifiers) {
    settings.hotkey = Hotkey{key, modifiers};
    widget_.kind = settings;
    controller_->update(widget_);
  };
  const auto isTold = [&](const QString& sentence) {
    const auto labels = rig_.panel.rootView()->findChildren<QLabel*>();
    return std::ranges::any_of(labels, [&](const QLabel* label) {
      return !label->isHidden() && label->text().contains(sentence);
    });
  };
  controller_->togglePanel();
  set(8, HotkeyModifiers::command);
  EXPECT_TRUE(isTold("Failed to register the shortcut because the keys are taken"));
  shortcuts.refusals.clear();
  set(9, HotkeyModifiers::command);
  EXPECT_FALSE(isTold("Failed to register"));
  shortcuts.onRefused({"pick-colour", "the user declined it"});
  EXPECT_TRUE(isTold("Failed to register the shortcut because the user declined it"));
  set(9, HotkeyModifiers::shift);
  EXPECT_TRUE(shortcuts.bound.empty());
  EXPECT_TRUE(isTold("because it lacks a modifier key other than Shift"));
}

} // namespace
} // namespace tavrin::test

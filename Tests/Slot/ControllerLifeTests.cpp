#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinCore/Kinds/Fans/FanSettings.h"
#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/Runs/StopwatchSettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Kinds/System/NetworkSettings.h"
#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinSlot/Controllers/NoteWidget.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "Tests/Slot/SlotFixture.h"
#include "Tests/Support/Keys.h"
#include "Tests/Support/SlotRig.h"

#include <QLineEdit>
#include <fmt/format.h>
#include <fstream>

namespace tavrin::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

/// Widgets of many kinds in one file, shown by turns in the slots of one folder.
class ControllerLife : public SlotTest {
protected:
  struct Slot {
    explicit Slot(int number) : number(number) {}
    int number;
    FakePlatform platform;
    std::unique_ptr<SlotApp> app;

    PanelView* panel() const { return dynamic_cast<PanelView*>(platform.fakePopover.content()); }
    bool isOpen() const { return platform.fakePopover.shown; }
    void setOpen(bool isOpen) {
      if (isOpen != this->isOpen())
        app->applicationShouldHandleReopen(false);
    }
    void announce() { platform.center.post("dev.quellby.tavrin.widgetsChanged", std::nullopt); }
  };

  void TearDown() override {
    slots_.clear();
    SlotTest::TearDown();
  }
  std::filesystem::path file() const { return folder_ / "widgets.json"; }
  WidgetsFile stored() const { return decode<WidgetsFile>(*readJSONFile(file())); }
  DockWidget stored(const UUID& id) const {
    const auto all = stored().widgets;
    return *std::ranges::find(all, id, &DockWidget::id);
  }
  /// What other programs do: they change who is where, and nothing else.
  void place(const std::map<UUID, std::pair<int, int>>& slotsAndSpans) {
    WidgetsFile changed = stored();
    for (auto& widget : changed.widgets) {
      widget.slot.reset();
      if (const auto found = slotsAndSpans.find(widget.id); found != slotsAndSpans.end())
        widget = {widget.id, widget.name, found->second.first, widget.kind, found->second.second};
    }
    std::ofstream(file()) << encode(changed).compact();
    announceToAll();
  }
  void announceToAll() {
    for (auto& slot : slots_)
      slot.announce();
  }
  Slot& startSlot(int number) {
    Slot& slot = slots_.emplace_back(number);
    slot.platform.files = platform_.files;
    slot.platform.bundle.integers["TavrinSlot"] = number;
    slot.platform.fakeApplication.args = {"TavrinSlot", "--background"};
    slot.app = std::make_unique<SlotApp>(slot.platform);
    slot.app->applicationDidFinishLaunching();
    return slot;
  }

  static PanelTextEdit* noteText(const Slot& slot) {
    return slot.panel()->findChild<PanelTextEdit*>();
  }
  static QLineEdit* converterValue(const Slot& slot) {
    for (auto* field : slot.panel()->findChildren<QLineEdit*>())
      if (field->accessibleName() == "Value")
        return field;
    return nullptr;
  }
  /// Types into an open panel what can be typed there; it is not saved yet.
  static void type(const Slot& slot, int number) {
    const auto& kind = slot.app->widget()->kind;
    if (kind.get<NoteSettings>() != nullptr)
      noteText(slot)->setPlainText(QString::number(number));
    if (kind.get<ConverterSettings>() != nullptr) {
      converterValue(slot)->selectAll();
      typeText(converterValue(slot), QString::number(number));
    }
  }
  /// Whether the widget's record says what was typed, where it is of a kind that takes typing.
  static bool says(const DockWidget& widget, int number) {
    if (const auto* note = widget.kind.get<NoteSettings>())
      return note->text == std::to_string(number);
    if (const auto* converter = widget.kind.get<ConverterSettings>())
      return converter->value == number;
    return true;
  }
  static void expectToShow(const Slot& slot, const DockWidget& widget, bool isOpen) {
    EXPECT_EQ(slot.app->widget()->id, widget.id);
    EXPECT_EQ(slot.platform.tile.place.span, widget.span);
    EXPECT_EQ(slot.isOpen(), isOpen);
    if (!isOpen)
      return;
    ASSERT_NE(slot.panel(), nullptr);
    const bool hasOwnTitle = widget.kind.get<NetworkSettings>() != nullptr;
    EXPECT_EQ(slot.panel()->title().toStdString(), hasOwnTitle ? "Network Activity" : widget.name);
    EXPECT_GT(slot.platform.fakePopover.size.height(), 60);
  }

  std::list<Slot> slots_;
};

/// Every kind becomes every other one and back again, with the panel open or closed.
class EveryKindToEveryOther : public ControllerLife, public testing::WithParamInterface<bool> {};

TEST_P(EveryKindToEveryOther, LosesNothing) {
  const bool isOpen = GetParam();
  WidgetsFile all;
  for (const auto& info : allKinds())
    all.widgets.emplace_back(UUID::random(), std::string(info.title) + " of mine", std::nullopt,
                             *freshKind(info.key, platform_.fakeClock.now()), 1);
  all.widgets.front().slot = 3;
  writeJSONFile(file(), encode(all));
  Slot& slot = startSlot(3);

  int number = 0;
  const auto become = [&](const DockWidget& from, const DockWidget& to, int span) {
    SCOPED_TRACE(fmt::format("{} to {}, span {}", from.kind.key(), to.kind.key(), span));
    ++number;
    slot.setOpen(isOpen || from.kind.get<NoteSettings>() || from.kind.get<ConverterSettings>());
    type(slot, number);
    slot.setOpen(isOpen);
    place({{to.id, {3, span}}});
    EXPECT_TRUE(says(stored(from.id), number));
    expectToShow(slot, stored(to.id), isOpen);
    slot.platform.tile.onFormatChange();
  };
  // There and back at equal spans, and at different ones.
  for (const auto& one : all.widgets) {
    place({{one.id, {3, 1}}});
    for (const auto& other : all.widgets) {
      if (other.id <= one.id)
        continue;
      const int otherWide = other.kind.maxSpan();
      become(one, other, 1);
      become(other, one, otherWide > 1 ? 1 : one.kind.maxSpan());
      become(one, other, otherWide);
      become(other, one, 1);
    }
  }
  EXPECT_EQ(slot.platform.fakeApplication.terminations, 0);
  EXPECT_EQ(stored().widgets.size(), all.widgets.size());
}

INSTANTIATE_TEST_SUITE_P(Panel, EveryKindToEveryOther, testing::Bool(),
                         [](const auto& info) { return info.param ? "Open" : "Closed"; });

TEST_F(ControllerLife, TwoOfAKindSwapSlotsAndKeepWhatIsTheirs) {
  for (const auto& info : allKinds()) {
    SCOPED_TRACE(info.key);
    const auto kind = *freshKind(info.key, platform_.fakeClock.now());
    const DockWidget one(UUID::random(), "One", 3, kind, 1);
    const DockWidget two(UUID::random(), "Two", 4, kind, info.maxSpan);
    writeJSONFile(file(), encode(WidgetsFile{1, {one, two}, {}}));
    slots_.clear();
    Slot& left = startSlot(3);
    Slot& right = startSlot(4);
    const auto* controller = left.app->controller();
    left.setOpen(true);
    right.setOpen(true);
    type(left, 1);
    type(right, 2);
    place({{one.id, {4, one.span}}, {two.id, {3, two.span}}});
    announceToAll(); // what one slot saved the other one hears
    EXPECT_TRUE(says(stored(one.id), 1)) << "typed in the left slot, now shown in the right one";
    EXPECT_TRUE(says(stored(two.id), 2));
    expectToShow(left, stored(two.id), true);
    expectToShow(right, stored(one.id), true);
    EXPECT_EQ(left.app->controller(), controller) << "one kind, one controller";
    if (kind.get<NoteSettings>() != nullptr) {
      EXPECT_EQ(noteText(left)->toPlainText(), "2");
    }
    if (kind.get<ConverterSettings>() != nullptr) {
      EXPECT_EQ(converterValue(right)->text(), "1");
    }
    type(left, 3);
    type(right, 4);
    for (Slot* slot : {&left, &right})
      slot->setOpen(false);
    EXPECT_TRUE(says(stored(two.id), 3));
    EXPECT_TRUE(says(stored(one.id), 4));
  }
}

TEST_F(ControllerLife, AnOpenPanelIsToldThatItOpensAndTheOldOneThatItClosed) {
  start(ClockSettings{});
  click();
  write(EmojiSettings{});
  announce();
  platform_.loop.runBackground();
  EXPECT_THAT(words(), Not(Contains("Loading emoji")));
  write(FanSettings{});
  announce();
  platform_.loop.runBackground();
  EXPECT_EQ(platform_.loop.activeTimers(), 1U);
  const int before = platform_.loop.firings;
  platform_.loop.advance(20);
  EXPECT_EQ(platform_.loop.firings - before, 10) << "every 2 seconds while the panel is open";
  write(StopwatchSettings{});
  announce();
  write(ClockSettings{});
  announce();
  EXPECT_TRUE(platform_.fakePopover.shown);
  EXPECT_EQ(platform_.fakePopover.closings, 0);
}

TEST_F(ControllerLife, FansAreHandedBackWhateverHasBeenAnswered) {
  for (const bool isAnswered : {true, false}) {
    platform_.fans.asked.clear();
    platform_.fans.replies.clear();
    platform_.fakeSMC.addFans(2);
    start(FanSettings{});
    platform_.loop.runBackground();
    click();
    all<PanelSwitch>().front()->click();
    ASSERT_THAT(platform_.fans.asked, ElementsAre(true));
    if (isAnswered)
      platform_.fans.answer();
    write(ClockSettings{});
    announce();
    EXPECT_THAT(platform_.fans.asked, ElementsAre(true, false));
    platform_.fans.answer();
    platform_.fakePopover.close();
    app_.reset();
    EXPECT_THAT(platform_.fans.asked, ElementsAre(true, false))
        << "a clock has nothing to hand back";
  }
}

TEST_F(ControllerLife, AForecastIsKeptUnderTheWidgetThatAskedForIt) {
  WeatherSettings settings;
  settings.cityName = "Berlin";
  settings.latitude = 52.52;
  settings.longitude = 13.405;
  const auto cache = [&] {
    return platform_.files.cachesFolder() / "tavrin" / ("weather-" + id_.text() + ".json");
  };
  const auto answer = [&] {
    return platform_.fakeHTTP.answer("/v1/forecast", {200, R"({"timezone":"Europe/Berlin",
          "current":{"temperature_2m":21.5,"apparent_temperature":-0.4,"weather_code":3,"is_day":1},
          "daily":{"time":["2026-05-08"],"weather_code":[0],"temperature_2m_max":[22],
                   "temperature_2m_min":[12]}})"});
  };
  start(settings);
  const auto first = cache();
  id_ = UUID::random();
  write(settings);
  announce();
  ASSERT_TRUE(answer());
  EXPECT_FALSE(std::filesystem::exists(first));
  EXPECT_TRUE(std::filesystem::exists(cache()));
}

TEST_F(ControllerLife, WhoTakesFilesIsWhoTheTableSays) {
  for (const auto& info : allKinds()) {
    start(*freshKind(info.key, platform_.fakeClock.now()));
    EXPECT_EQ(app_->applicationTakesFiles(), info.takesFiles) << info.key;
    EXPECT_EQ(app_->applicationOpenFiles({"/tmp/a"}), info.takesFiles) << info.key;
    EXPECT_EQ(app_->controller()->openFiles({"/tmp/b"}), info.takesFiles) << info.key;
    platform_.fakePopover.close();
  }
}

TEST(WidgetController, TakesNoOtherRecordThanItsOwn) {
  SlotRig rig;
  const DockWidget note(UUID::random(), "Note", 3, NoteSettings{"Milk", "#FBBF24"}, 1);
  const auto controller = begun<NoteWidgetController>(rig.context(), note);
  EXPECT_EQ(rig.platform.tile.value, "Milk");
  controller->update({note.id, "Clock", 3, ClockSettings{}, 1});
  controller->update({UUID::random(), "Other", 3, NoteSettings{"Bread", "#FBBF24"}, 1});
  rig.platform.tile.current.span = 3;
  controller->redraw();
  EXPECT_EQ(rig.platform.tile.value, "Milk");
  EXPECT_THROW(NoteWidgetController(rig.context(), {note.id, "Clock", 3, ClockSettings{}, 1}),
               std::invalid_argument);

  controller->leave();
  const int drawn = rig.platform.tile.displays;
  controller->redraw();
  controller->togglePanel();
  rig.platform.fakeWorkspace.appearance.call();
  EXPECT_EQ(rig.platform.tile.displays, drawn);
  EXPECT_FALSE(rig.panel.isShown());
  controller->update({UUID::random(), "Other", 3, NoteSettings{"Bread", "#FBBF24"}, 1});
  controller->begin();
  EXPECT_EQ(rig.platform.tile.value, "Bread");
}

} // namespace
} // namespace tavrin::test

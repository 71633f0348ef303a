#include "TavrinCore/Kinds/AirDrop/AirDropSettings.h"
#include "TavrinCore/Kinds/Collection/CollectionSettings.h"
#include "TavrinCore/Kinds/Colour/ColourPickerSettings.h"
#include "TavrinCore/Kinds/Fans/FanSettings.h"
#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinCore/Kinds/Runs/StopwatchSettings.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinCore/Kinds/Water/WaterSettings.h"
#include "TavrinCore/Widgets/DockWidget.h"

#include <gtest/gtest.h>
#include <set>

namespace tavrin {
namespace {

constexpr Date now{800'000'000};
constexpr const char* id = "6B29FC40-CA47-1067-B31D-00DD010662DA";

DockWidget::Kind fresh(std::string_view key) {
  return freshKind(key, now).value();
}

DockWidget decodeText(const std::string& text) {
  return decode<DockWidget>(JSONValue::parse(text));
}

std::string widgetText(const std::string& kind, const std::string& more = "") {
  return R"({"id":")" + std::string(id) + R"(","name":"N","kind":)" + kind + more + "}";
}

struct SpanCase {
  const char* key;
  int defaultSpan;
  int maxSpan;
};

TEST(KindTable, SpansOfEveryKind) {
  constexpr SpanCase cases[] = {
      {"collection", 1, 4},   {"timer", 1, 3},        {"pomodoro", 2, 3},    {"music", 2, 4},
      {"calendar", 2, 4},     {"battery", 1, 2},      {"clock", 1, 4},       {"stopwatch", 1, 4},
      {"countdown", 1, 4},    {"timeProgress", 1, 4}, {"activity", 1, 4},    {"network", 1, 2},
      {"note", 2, 4},         {"reminders", 2, 4},    {"shortcut", 1, 4},    {"airdrop", 1, 4},
      {"weather", 2, 4},      {"claudeUsage", 2, 2},  {"github", 3, 4},      {"pet", 1, 4},
      {"colourPicker", 2, 2}, {"clipboard", 1, 1},    {"bookmarks", 3, 4},   {"emoji", 2, 4},
      {"screenshots", 3, 4},  {"files", 3, 4},        {"shelf", 3, 4},       {"water", 3, 4},
      {"converter", 2, 2},    {"fans", 1, 4},         {"keyboardLock", 1, 4}};
  ASSERT_EQ(allKinds().size(), std::size(cases));
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(allKinds()[i].key, cases[i].key);
    const auto kind = fresh(cases[i].key);
    EXPECT_EQ(kind.key(), cases[i].key);
    EXPECT_EQ(kind.defaultSpan(), cases[i].defaultSpan) << cases[i].key;
    EXPECT_EQ(kind.maxSpan(), cases[i].maxSpan) << cases[i].key;
  }
}

TEST(KindTable, SpansThatFollowTheStyle) {
  const std::tuple<const char*, const char*, const char*, int> cases[] = {
      {"calendar", "style", "nextEvent", 2},  {"calendar", "style", "agenda", 3},
      {"calendar", "style", "date", 1},       {"reminders", "style", "next", 2},
      {"reminders", "style", "list", 3},      {"reminders", "style", "count", 1},
      {"weather", "style", "current", 2},     {"weather", "style", "conditions", 2},
      {"weather", "style", "forecast", 3},    {"github", "shows", "myPullRequests", 3},
      {"github", "shows", "waitingOnYou", 3}, {"github", "shows", "contributions", 4},
  };
  for (const auto& [key, field, style, span] : cases) {
    const auto text = widgetText(R"({")" + std::string(key) + R"(":{"_0":{")" + field + R"(":")" +
                                 style + R"("}}})");
    EXPECT_EQ(decodeText(text).span, span) << text;
  }
}

TEST(DockWidget, SpanIsBroughtIntoTheKindsBounds) {
  const std::tuple<const char*, const char*, int> cases[] = {
      {"clipboard", "9", 1},      {"timer", "9", 3},          {"timer", "0", 1},
      {"timer", "-5", 1},         {"battery", "2", 2},        {"battery", "3", 2},
      {"collection", "4", 4},     {"water", "null", 3},       {"timer", "2.0", 2},
      {"timer", "5000000000", 3}, {"timer", "-5000000000", 1}};
  for (const auto& [key, span, expected] : cases) {
    const auto kind = encode(fresh(key)).compact();
    EXPECT_EQ(decodeText(widgetText(kind, std::string(R"(,"span":)") + span)).span, expected)
        << key << " " << span;
  }
}

TEST(DockWidget, JSONShapes) {
  const std::pair<DockWidget::Kind, const char*> cases[] = {
      {StopwatchSettings{}, R"({"stopwatch":{}})"},
      {AirDropSettings{}, R"({"airdrop":{}})"},
      {FanSettings{}, R"({"fans":{}})"},
      {NoteSettings{"hi"}, R"({"note":{"_0":{"colorHex":"#FBBF24","text":"hi"}}})"},
      {TimerSettings{{60.5}, "#0A84FF"},
       R"({"timer":{"_0":{"presets":[60.5],"tintHex":"#0A84FF"}}})"},
      {CollectionSettings{{{"/a", "b", std::nullopt, Data::fromText("x")}},
                          CollectionLayout::vertical},
       R"({"collection":{"apps":[{"bundleIdentifier":"b","path":"/a","tile":"eA=="}],"layout":"vertical"}})"},
  };
  for (const auto& [kind, text] : cases) {
    EXPECT_EQ(encode(kind).compact(), text);
    EXPECT_EQ(decode<DockWidget::Kind>(JSONValue::parse(text)), kind);
  }
  const auto placed = decodeText(widgetText(R"({"fans":{}})", R"(,"slot":4)"));
  EXPECT_EQ(
      encode(placed).compact(),
      R"({"id":"6B29FC40-CA47-1067-B31D-00DD010662DA","kind":{"fans":{}},"name":"N","slot":4,"span":1})");
  EXPECT_EQ(encode(decodeText(widgetText(R"({"fans":{}})", R"(,"slot":null)"))).member("slot"),
            nullptr);
}

TEST(DockWidget, EveryKindSurvivesItsJSON) {
  for (const auto& info : allKinds()) {
    const auto kind = fresh(info.key);
    const auto text = encode(kind).prettyPrinted();
    EXPECT_EQ(decode<DockWidget::Kind>(JSONValue::parse(text)), kind) << text;
    EXPECT_EQ(withSettings(kind, settingsJSON(kind)), kind);
  }
}

TEST(DockWidget, TheFirstKindInDecodingOrderCounts) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {R"("clock":{"_0":{}})", R"("battery":{"_0":{}})", "battery"},
      {R"("fans":{})", R"("airdrop":{})", "airdrop"},
      {R"("fans":{})", R"("weather":{"_0":{}})", "fans"},
      {R"("keyboardLock":{"_0":{}})", R"("converter":{"_0":{}})", "keyboardLock"},
      {R"("fans":{})", R"("keyboardLock":{"_0":{}})", "fans"},
      {R"("weather":{"_0":{}})", R"("keyboardLock":{"_0":{}})", "keyboardLock"},
      {R"("shortcut":{"_0":{}})", R"("airdrop":{})", "shortcut"},
      {R"("aNewKind":{"_0":{}})", R"("water":{"_0":{}})", "water"},
  };
  for (const auto& [one, other, expected] : cases)
    for (const auto& text : {std::string(one) + "," + other, std::string(other) + "," + one})
      EXPECT_EQ(decode<DockWidget::Kind>(JSONValue::parse("{" + text + "}")).key(), expected)
          << text;
  // A kind that is there but broken is not passed over for a later one.
  EXPECT_THROW(decode<DockWidget::Kind>(JSONValue::parse(R"({"timer":null,"water":{"_0":{}}})")),
               CodingError);
}

TEST(DockWidget, FaultsAreNamedByTheirPath) {
  const std::pair<std::string, const char*> cases[] = {
      {R"({"name":"N","kind":{"fans":{}}})", "\"id\" is missing"},
      {R"({"id":null,"name":"N","kind":{"fans":{}}})", "\"id\" must be a text"},
      {widgetText(R"({"hologram":{}})"), "Unknown widget kind"},
      {widgetText("{}"), "Unknown widget kind"},
      {widgetText(R"({"timer":{}})"), "\"kind.timer._0\" is missing"},
      {widgetText(R"({"timer":{"_0":{"presets":[1,"2"]}}})"),
       "\"kind.timer._0.presets.1\" must be a number"},
      {widgetText(R"({"countdown":{"_0":{"target":1}}})"),
       "\"kind.countdown._0.countsUpAfter\" is missing"},
      {widgetText(R"({"countdown":{"_0":{"target":null,"countsUpAfter":true}}})"),
       "\"kind.countdown._0.target\" is missing"},
      {widgetText(R"({"collection":{"layout":"grid"}})"), "\"kind.collection.apps\" is missing"},
      {widgetText(R"({"water":{"_0":{"unit":"pints"}}})"),
       "\"kind.water._0.unit\" must be one of millilitres, ounces"},
      {widgetText(R"({"fans":{}})", R"(,"slot":"5")"), "\"slot\" must be a whole number"},
      {widgetText(R"({"fans":{}})", R"(,"slot":99999999999)"),
       "\"slot\" must be a whole number in range"},
  };
  for (const auto& [text, fault] : cases) {
    try {
      decodeText(text);
      ADD_FAILURE() << text;
    } catch (const CodingError& error) {
      EXPECT_EQ(std::string(error.what()), fault) << text;
    }
  }
}

TEST(DockWidget, WhatThisBuildDoesNotKnowIsWrittenBack) {
  for (const char* kind :
       {R"({"stopwatch":{"x":1}})", R"({"airdrop":{"a":{"b":[null]}}})", R"({"fans":{"y":1.0}})"}) {
    const auto widget = decode<DockWidget>(JSONValue::parse(widgetText(kind)));
    EXPECT_EQ(encode(widget.kind), JSONValue::parse(kind));
  }
  const auto hotkey = JSONValue::parse(R"({"keyCode":1,"modifiers":6,"side":"left"})");
  EXPECT_EQ(encode(decode<Hotkey>(hotkey)), hotkey);
  EXPECT_EQ(decode<Hotkey>(hotkey), (Hotkey{1, {6}})) << "the keys alone count";
}

TEST(DockWidget, WholeNumbersBeyondWhatASettingHoldsAreTheNearest) {
  const auto text = widgetText(R"({"water":{"_0":{"goal":5000000000,"glass":-5000000000}}})");
  const auto water = *decode<DockWidget>(JSONValue::parse(text)).kind.get<WaterSettings>();
  EXPECT_EQ(water.goal, std::numeric_limits<int>::max());
  EXPECT_EQ(water.glass, std::numeric_limits<int>::min());
}

TEST(KindSettings, MissingAndNullKeysTakeTheDefault) {
  for (const auto& info : allKinds()) {
    if (info.key == "countdown" || info.key == "collection")
      continue;
    const auto kind = fresh(info.key);
    EXPECT_EQ(withSettings(kind, JSONValue::Object{}), kind) << info.key;
    JSONValue::Object nulls;
    for (const auto& field : describeSettings(kind))
      nulls.emplace(field.key, nullptr);
    EXPECT_EQ(withSettings(kind, nulls), kind) << info.key;
  }
}

TEST(KindSettings, DefaultsThatTheUserSees) {
  EXPECT_EQ(fresh("pomodoro"), DockWidget::Kind(PomodoroSettings{1500, 300, 900, 4, true, true}));
  EXPECT_EQ(fresh("timer"),
            DockWidget::Kind(TimerSettings{{300, 600, 900, 1500, 2700}, "#FF9F0A"}));
  EXPECT_EQ(fresh("countdown"), DockWidget::Kind(CountdownSettings{now + 604'800, false}));
  EXPECT_EQ(
      settingsJSON(fresh("water")).compact(),
      R"({"glass":250,"goal":2000,"refillMinutes":45,"showsCountOnTile":true,"style":"tank","unit":"millilitres"})");
  EXPECT_EQ(
      settingsJSON(fresh("clipboard")).compact(),
      R"({"fetchWebsitePreviews":true,"historyLimit":200,"ignorePasswordManagers":true,"maxImageBytes":2000000,"persistAcrossRestarts":true,"retentionDays":30,"showLastPreviewOnTile":false})");
  EXPECT_EQ(settingsJSON(fresh("keyboardLock")).compact(),
            R"({"autoUnlockMinutes":2,"holdSeconds":3,"locksPointer":true,"playsSound":true})");
  EXPECT_EQ(freshKind("hologram", now), std::nullopt);
}

TEST(KindSettings, EveryLineHasATitleAndItsOwnKey) {
  for (const auto& info : allKinds()) {
    std::set<std::string> keys;
    std::set<std::string> titles;
    for (const auto& field : describeSettings(fresh(info.key))) {
      EXPECT_NE(field.title, field.key) << info.key;
      EXPECT_TRUE(keys.insert(field.key).second) << info.key << " " << field.key;
      EXPECT_TRUE(titles.insert(std::string(field.title)).second) << info.key << " " << field.title;
      EXPECT_EQ(field.type == FieldType::choice, field.choices.size() >= 2)
          << info.key << " " << field.key;
    }
  }
}

TEST(KindSettings, RangesAreForEditorsAndChangeNothingThatIsRead) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"pomodoro", "focus", "0.5"},
      {"pomodoro", "cyclesBeforeLongBreak", "9"},
      {"water", "goal", "100"},
      {"timer", "presets", "[60,0]"},
      {"weather", "latitude", "91"},
      {"claudeUsage", "budget", "0"},
      {"clipboard", "retentionDays", "-1"}};
  for (const auto& [kind, key, value] : cases) {
    const auto settings = JSONValue::Object{{key, JSONValue::parse(value)}};
    EXPECT_EQ(settingsJSON(withSettings(fresh(kind), settings)).member(key)->compact(), value);
  }
}

TEST(KindSettings, ColoursKeptAreClampedWhenRead) {
  const std::pair<const char*, int> cases[] = {{"2", 4},          {"4", 4},    {"24", 24},
                                               {"60", 60},        {"100", 60}, {"5000000000", 60},
                                               {"-5000000000", 4}};
  for (const auto& [text, expected] : cases) {
    const auto kind = withSettings(
        ColourPickerSettings{}, JSONValue::parse(std::string(R"({"historyLimit":)") + text + "}"));
    EXPECT_EQ(kind.get<ColourPickerSettings>()->historyLimit, expected);
  }
}

TEST(WaterSettings, DerivedAmounts) {
  const std::tuple<int, int, int> glasses[] = {
      {2000, 250, 8}, {2001, 250, 9},
      {500, 1000, 1}, {2000, 0, 0},
      {2000, -1, 0},  {std::numeric_limits<int>::max(), 1, std::numeric_limits<int>::max()}};
  for (const auto& [goal, glass, count] : glasses) {
    WaterSettings settings;
    settings.goal = goal;
    settings.glass = glass;
    EXPECT_EQ(settings.glassesInGoal(), count) << goal << "/" << glass;
  }
  WaterSettings settings;
  EXPECT_EQ(settings.refillInterval(), 2700);
  settings.refillMinutes = 0;
  EXPECT_EQ(settings.refillInterval(), 60);
}

TEST(Hotkey, ModifiersAreABitSet) {
  using M = HotkeyModifiers;
  const std::tuple<M, const char*, bool> cases[] = {
      {M{}, "", false},       {M::shift, "⇧", false},  {M::command, "⌘", true},
      {M::option, "⌥", true}, {M::control, "⌃", true}, {M::shift | M::command, "⇧⌘", true},
      {M{15}, "⌃⌥⇧⌘", true},  {M{16}, "", false}};
  for (const auto& [modifiers, symbols, isValid] : cases) {
    EXPECT_EQ(modifiers.displaySymbols(), symbols);
    EXPECT_EQ(modifiers.isValidForGlobalHotkey(), isValid) << symbols;
  }
  EXPECT_EQ(encode(Hotkey{12, M::command | M::shift}).compact(), R"({"keyCode":12,"modifiers":9})");
  EXPECT_EQ(decode<Hotkey>(JSONValue::parse(R"({"keyCode":12,"modifiers":9})")),
            (Hotkey{12, M::command | M::shift}));
  EXPECT_THROW(decode<Hotkey>(JSONValue::parse(R"({"keyCode":65536,"modifiers":0})")), CodingError);
}

TEST(CollectionLayout, Columns) {
  const std::tuple<CollectionLayout, int, int> cases[] = {
      {CollectionLayout::grid, 5, 3},       {CollectionLayout::grid, 0, 1},
      {CollectionLayout::grid, -3, 1},      {CollectionLayout::grid, 1, 1},
      {CollectionLayout::grid, 2, 2},       {CollectionLayout::grid, 9, 3},
      {CollectionLayout::grid, 10, 4},      {CollectionLayout::horizontal, 6, 6},
      {CollectionLayout::horizontal, 0, 1}, {CollectionLayout::vertical, 6, 1}};
  for (const auto& [layout, count, expected] : cases)
    EXPECT_EQ(columns(layout, count), expected) << nameOf(layout) << " " << count;
}

} // namespace
} // namespace tavrin

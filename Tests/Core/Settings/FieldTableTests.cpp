#include "TavrinCore/Settings/FieldControl.h"
#include "TavrinCore/Settings/SettingEdit.h"
#include "TavrinCore/Settings/SettingText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

/// What a table says too little of: a visible field without a title, a help sentence, a control, or
/// titles of its choices.
void findGaps(const std::vector<FieldInfo>& fields, const std::string& path,
              std::vector<std::string>& gaps) {
  for (const auto& field : fields) {
    const auto here = path + field.key;
    if (field.isHidden)
      continue;
    if (field.title.empty() || field.title == field.key)
      gaps.push_back(here + ": title");
    if (field.help.empty() || field.help.back() != '.')
      gaps.push_back(here + ": help");
    const auto control = controlFor(field);
    if (!control)
      gaps.push_back(here + ": control");
    for (const auto& word : field.choiceTitles)
      if (word.empty() || std::ranges::count(field.choices, word) > 0)
        gaps.push_back(here + ": title of " + word);
    if (field.isNullable && field.absent.empty() && !isCoveredByAnother(field))
      gaps.push_back(here + ": meaning of no value");
    if (!field.condition.key.empty() &&
        std::ranges::count(fields, field.condition.key, &FieldInfo::key) == 0)
      gaps.push_back(here + ": condition");
    if (control == FieldControl::record || control == FieldControl::records)
      findGaps(field.fields, here + ".", gaps);
  }
}

TEST(FieldTable, EveryVisibleFieldHasWordsAndAControl) {
  std::vector<std::string> gaps;
  int fields = 0;
  for (const auto& kind : allKinds()) {
    const auto described = describeSettings(*freshKind(kind.key, {}));
    fields += static_cast<int>(described.size());
    findGaps(described, std::string(kind.key) + ".", gaps);
  }
  EXPECT_THAT(gaps, testing::IsEmpty());
  EXPECT_GT(fields, 80);
}

TEST(FieldTable, WhatDependsOnOtherSettingsFollowsThem) {
  const auto line = [](std::string_view kind, std::string_view key) {
    const auto fields = describeSettings(*freshKind(kind, {}));
    return *std::ranges::find(fields, key, &FieldInfo::key);
  };
  const auto from = line("converter", "from");
  EXPECT_THAT(from.choicesIn(JSONValue::Object{{"category", "temperature"}}),
              testing::Contains(FieldChoice{"°F", "°F (degrees Fahrenheit)"}));
  EXPECT_THAT(from.choicesIn(JSONValue::Object{{"category", "length"}}),
              testing::Not(testing::Contains(testing::Field(&FieldChoice::value, "°F"))));
  const auto goal = line("water", "goal");
  EXPECT_EQ(goal.displayIn(JSONValue::Object{{"unit", "millilitres"}}).unit, "ml");
  EXPECT_EQ(goal.displayIn(JSONValue::Object{{"unit", "ounces"}}).unit, "oz");
  EXPECT_EQ(line("pomodoro", "focus").displayIn({}), (FieldDisplay{"min", 60}));
  const auto folder = line("shortcut", "workingFolder").condition;
  EXPECT_FALSE(folder.holds(JSONValue::Object{}));
  EXPECT_TRUE(folder.holds(JSONValue::Object{{"command", "ls"}}));
  EXPECT_TRUE(line("files", "seenUntil").isHidden);
}

TEST(FieldTable, LinesOfWhichEachBeginningIsAnotherAreTakenWhole) {
  std::vector<std::string> whole;
  const auto add = [&](const std::vector<FieldInfo>& fields, const std::string& path) {
    for (const auto& field : fields)
      if (controlFor(field) == FieldControl::text || controlFor(field) == FieldControl::path ||
          controlFor(field) == FieldControl::colour)
        if (isTakenWhole(field))
          whole.push_back(path + field.key);
  };
  for (const auto& kind : allKinds()) {
    const auto fields = describeSettings(*freshKind(kind.key, {}));
    add(fields, std::string(kind.key) + ".");
    for (const auto& field : fields)
      if (controlFor(field) == FieldControl::records)
        add(field.fields, std::string(kind.key) + "." + field.key + ".");
  }
  EXPECT_THAT(whole, testing::UnorderedElementsAre("bookmarks.bookmarks.url", "shortcut.command",
                                                   "shortcut.workingFolder", "screenshots.folder"));
}

DockWidget fresh(std::string_view kind) {
  return {UUID(), "W", {}, *freshKind(kind, {}), 1};
}

std::string refusal(const DockWidget& widget, const std::vector<SettingValue>& values) {
  SettingSystem system;
  system.isTimeZone = [](const std::string& id) { return id == "Asia/Tokyo"; };
  system.isSymbol = [](std::string_view name) { return name == "bolt.fill"; };
  try {
    withValues(widget, values, system);
    return {};
  } catch (const SettingError& error) {
    return error.what();
  }
}

TEST(SettingEdit, TakesAllValuesOrNone) {
  auto widget = fresh("clock");
  widget = withValues(
      widget, {{"name", " Tokyo "}, {"span", 2}, {"timeZoneID", "Asia/Tokyo"}, {"isAnalog", true}},
      {});
  EXPECT_EQ(widget.name, "Tokyo");
  EXPECT_EQ(widget.span, 2);
  EXPECT_EQ(valueAt(widget, "timeZoneID"), JSONValue("Asia/Tokyo"));
  EXPECT_EQ(valueAt(withValues(widget, {{"timeZoneID", {}}}, {}), "timeZoneID"), JSONValue());
  const auto calendar =
      withValues(fresh("calendar"), {{"calendars.accountIDs", JSONValue::Array{"a"}}}, {});
  EXPECT_EQ(valueAt(calendar, "calendars.accountIDs").compact(), R"(["a"])");
  EXPECT_EQ(valueAt(calendar, "calendars.none"), JSONValue());

  EXPECT_EQ(refusal(fresh("clock"), {{"timeZoneID", "Mars/Olympus"}}),
            "\"timeZoneID\" must be a time zone such as Europe/Berlin, or null, not "
            "\"Mars/Olympus\"");
  EXPECT_EQ(refusal(fresh("clock"), {{"timeZoneID", "Asia/Tokyo"}}), "");
  EXPECT_EQ(refusal(fresh("shortcut"), {{"symbolName", "bolt.fill"}}), "");
  for (const auto& [kind, value] : std::vector<std::pair<const char*, SettingValue>>{
           {"clock", {"name", " "}},
           {"clock", {"span", 5}},
           {"clock", {"isAnalog", "yes"}},
           {"clock", {"isAnalog", {}}},
           {"clock", {"zone", "x"}},
           {"clock", {"isAnalog.x", true}},
           {"pomodoro", {"focus", 30}},
           {"shortcut", {"symbolName", "nosuchsymbol"}},
           {"timer", {"tintHex", "purple"}},
           {"weather", {"cityName", "Paris"}},
           {"files", {"folders", JSONValue::Array{"Downloads"}}},
           {"github", {"repositories", JSONValue::Array{"notarepo"}}}})
    EXPECT_NE(refusal(fresh(kind), {value}), "") << kind << " " << value.path;
}

TEST(SettingEdit, WhatAnotherEditorChangedMeanwhileIsNotLost) {
  const auto stored = withValues(
      fresh("timer"), {{"presets", JSONValue::Array{300, 900, 60}}, {"tintHex", "#30D158"}}, {});
  const auto presets = [&](const JSONValue::Array& before, const JSONValue::Array& after) {
    return valueAt(withValues(stored, {{"presets", after, JSONValue(before)}}, {}), "presets")
        .compact();
  };
  // Theirs: 600 taken out, 60 added. Its own: 120 added; 300 taken out; another order.
  EXPECT_EQ(presets({300, 600, 900}, {300, 600, 900, 120}), "[300,900,120,60]");
  EXPECT_EQ(presets({300, 600, 900}, {600, 900}), "[900,60]");
  EXPECT_EQ(presets({300, 900, 60}, {60, 300, 900}), "[60,300,900]");

  EXPECT_EQ(
      valueAt(withValues(stored, {{"tintHex", "#0A84FF", JSONValue("#30D158")}}, {}), "tintHex"),
      JSONValue("#0A84FF"));
  EXPECT_THROW(withValues(stored, {{"tintHex", "#0A84FF", JSONValue("#FF9F0A")}}, {}),
               SettingError);
  // What an editor wrote is stored another way: without blanks, from the root.
  const auto spaced = withValues(fresh("timer"), {{"name", "Green "}}, {});
  EXPECT_EQ(withValues(spaced, {{"name", "Green t", JSONValue("Green ")}}, {}).name, "Green t");
  SettingSystem system;
  system.home = "/home/ann";
  const auto foldered = withValues(fresh("screenshots"), {{"folder", "~/Pictures/"}}, system);
  EXPECT_EQ(
      valueAt(withValues(foldered, {{"folder", "~/Pictures/x", JSONValue("~/Pictures/")}}, system),
              "folder"),
      JSONValue("/home/ann/Pictures/x"));
  // A bookmark without its title is the same as one with an empty one.
  const auto bookmarks = withValues(
      fresh("bookmarks"), {{"bookmarks", JSONValue::parse(R"([{"url":"https://a.b"}])")}}, {});
  EXPECT_EQ(valueAt(withValues(bookmarks,
                               {{"bookmarks", JSONValue::parse(R"([{"url":"https://a.c"}])"),
                                 JSONValue::parse(R"([{"url":"https://a.b"}])")}},
                               {}),
                    "bookmarks")
                .compact(),
            R"([{"title":"","url":"https://a.c"}])");
}

TEST(SettingEdit, AFolderThatIsNotThereIsMarkedAndTaken) {
  SettingSystem system;
  system.home = "/home/ann";
  system.isFolder = [](const std::filesystem::path& path) { return path == "/home/ann/here"; };
  const auto fields = describeSettings(*freshKind("files", {}));
  EXPECT_EQ(settingWarning(fields.front(), JSONValue::Array{"~/here"}, system), "");
  EXPECT_EQ(settingWarning(fields.front(), JSONValue::Array{"~/here", "/gone"}, system),
            "There is no folder \"/gone\"");
}

} // namespace
} // namespace tavrin

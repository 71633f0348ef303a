#include "TavrinCore/Kinds/Calendar/CalendarSettings.h"
#include "TavrinCore/Kinds/Calendar/ReminderSettings.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsageSettings.h"
#include "TavrinCore/Kinds/Collection/CollectionSettings.h"
#include "TavrinCore/Kinds/Colour/ColourPickerSettings.h"
#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinCore/Kinds/Music/MusicSettings.h"
#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinCore/Kinds/Shortcut/ShortcutSettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinCore/Kinds/System/NetworkSettings.h"
#include "TavrinCore/Kinds/Water/WaterSettings.h"
#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "Tests/Form/FormRig.h"

#include "TavrinCore/Settings/FieldControl.h"
#include "TavrinCore/Settings/HotkeyText.h"
#include "TavrinSettings/Form/FormRow.h"
#include "TavrinSettings/Form/Picker.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"

#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QRadioButton>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace test {

QString FormRig::words() {
  QStringList found;
  for (const auto* text : all<PanelText>(&form))
    if (text->isVisibleTo(&form))
      found.append(text->text());
  return found.join(QLatin1Char('\n'));
}

} // namespace test

namespace {

using test::FormRig;
using test::kind;

FormPopup* shownPopup(FormRig& rig) {
  for (auto* popup : test::all<FormPopup>(rig.form.window()))
    if (popup->isVisible())
      return popup;
  return nullptr;
}

/// A popup that a picker opened, and its list.
PanelList* openPicker(FormRig& rig, const QString& name, const QString& words = {}) {
  auto* button = rig.control<PanelButton>(name);
  if (button == nullptr)
    return nullptr;
  button->click();
  QApplication::processEvents();
  auto* popup = shownPopup(rig);
  if (popup == nullptr)
    return nullptr;
  if (!words.isEmpty())
    FormRig::type(test::first<QLineEdit>(popup), words);
  return test::first<PanelList>(popup);
}

std::vector<std::string> titles(const PanelList* list) {
  std::vector<std::string> found;
  for (int i = 0; list != nullptr && i < list->count(); ++i)
    found.push_back(list->row(i).title.toStdString());
  return found;
}

// What assistive technology finds, by the field's own title, with a role that says what it is.
TEST(WidgetForm, EveryVisibleFieldOfEveryKindHasAControlOfItsName) {
  for (const auto& info : allKinds()) {
    FormRig rig(*freshKind(info.key, {}));
    for (const auto& field : describeSettings(rig.widget.kind)) {
      if (field.isHidden || isCoveredByAnother(field))
        continue;
      const auto name = utf8(field.title);
      const auto controls = rig.form.findChildren<QWidget*>();
      const bool isThere = std::ranges::any_of(controls, [&](QWidget* control) {
        auto* accessible = QAccessible::queryAccessibleInterface(control);
        return accessible != nullptr && control->accessibleName() == name &&
               accessible->role() != QAccessible::StaticText &&
               accessible->role() != QAccessible::NoRole;
      });
      // A line that adds to a list is named after what it adds.
      const bool isList = field.type == FieldType::list;
      EXPECT_TRUE(isThere || isList) << info.key << "." << field.key;
    }
    EXPECT_NE(rig.control<QLineEdit>("Name"), nullptr) << info.key;
    EXPECT_TRUE(rig.edits.empty()) << info.key << " sets " << rig.edits.front() << " by itself";
  }
}

TEST(WidgetForm, TextIsTakenLetterByLetterAndRefusedWhereItStands) {
  FormRig rig(kind<TimerSettings>());
  auto* name = rig.control<QLineEdit>("Name");
  name->selectAll();
  name->setFocus();
  FormRig::type(name, "Tea");
  EXPECT_EQ(rig.widget.name, "Tea");
  EXPECT_THAT(rig.edits, testing::ElementsAre("name", "name", "name"));
  FormRig::type(name, " for two");
  EXPECT_EQ(name->text(), "Tea for two");
  EXPECT_EQ(rig.widget.name, "Tea for two");
  EXPECT_THAT(rig.words().toStdString(), testing::Not(testing::HasSubstr("elsewhere")));

  auto* colour = rig.control<QLineEdit>("Colour");
  colour->selectAll();
  FormRig::type(colour, "purple");
  EXPECT_EQ(rig.value("tintHex"), JSONValue(TimerSettings::defaultTintHex));
  EXPECT_EQ(colour->text(), "purple");
  EXPECT_THAT(rig.words().toStdString(),
              testing::HasSubstr("“Colour” must be a colour such as #FBBF24, not \"purple\""));
  EXPECT_FALSE(rig.form.commit());
  colour->selectAll();
  FormRig::type(colour, "#30d158");
  EXPECT_EQ(rig.value("tintHex"), JSONValue("#30d158"));
  EXPECT_THAT(rig.words().toStdString(), testing::Not(testing::HasSubstr("must be")));
  EXPECT_TRUE(rig.form.commit());
}

TEST(WidgetForm, WhatIsTypedOutlivesAChangeFromElsewhereWhichIsTold) {
  FormRig rig(kind<NoteSettings>());
  auto* colour = rig.control<QLineEdit>("Paper colour");
  colour->selectAll();
  FormRig::type(colour, "#12");
  auto other = withValues(rig.widget, {{"colorHex", "#0A84FF"}, {"text", "Milk"}}, {});
  rig.widget = other;
  rig.form.show(other);
  EXPECT_EQ(colour->text(), "#12");
  EXPECT_EQ(rig.control<QPlainTextEdit>("Text")->toPlainText(), "Milk");
  EXPECT_THAT(rig.words().toStdString(), testing::HasSubstr("Changed elsewhere to #0A84FF"));
  for (auto* button : test::all<PanelButton>(&rig.form))
    if (button->title() == "Show it" && button->isVisibleTo(&rig.form))
      button->click();
  EXPECT_EQ(colour->text(), "#0A84FF");
  EXPECT_THAT(rig.words().toStdString(), testing::Not(testing::HasSubstr("elsewhere")));
}

// The record has moved on before this form heard of it.
TEST(WidgetForm, AnEditOfWhatAnotherEditorJustChangedIsToldNotLost) {
  FormRig rig(kind<ClockSettings>());
  rig.widget.name = "Theirs";
  auto* name = rig.control<QLineEdit>("Name");
  name->selectAll();
  FormRig::type(name, "M");
  EXPECT_EQ(rig.widget.name, "Theirs");
  EXPECT_THAT(rig.words().toStdString(), testing::HasSubstr("changed elsewhere meanwhile"));
  rig.form.show(rig.widget);
  EXPECT_EQ(name->text(), "M");
  FormRig::type(name, "y");
  EXPECT_EQ(rig.widget.name, "My");
}

TEST(WidgetForm, NumbersStepInTheUnitTheyAreShownIn) {
  FormRig pomodoro(kind<PomodoroSettings>());
  auto* focus = pomodoro.control<QDoubleSpinBox>("Focus");
  EXPECT_EQ(focus->text(), "25 min");
  focus->stepUp();
  EXPECT_EQ(pomodoro.value("focus"), JSONValue(1800.0));

  FormRig water(kind<WaterSettings>());
  auto* goal = water.control<QDoubleSpinBox>("Daily goal");
  EXPECT_EQ(goal->text(), "2000 ml");
  for (auto* segment : water.control<PanelSegments>("Unit")->findChildren<QRadioButton*>())
    if (segment->accessibleName() == "Ounces")
      segment->click();
  QApplication::processEvents();
  EXPECT_EQ(water.value("unit"), JSONValue("ounces"));
  EXPECT_EQ(goal->text(), "67.6 oz");
  EXPECT_EQ(water.value("goal"), JSONValue(2000)) << "showing must not round what is stored";
  EXPECT_THAT(water.edits, testing::ElementsAre("unit"));

  FormRig usage(kind<ClaudeUsageSettings>());
  auto* budget = usage.control<QDoubleSpinBox>("Token budget");
  EXPECT_EQ(budget->text(), "No budget");
  budget->stepUp();
  EXPECT_EQ(usage.value("budget"), JSONValue(100'000));
  budget->stepDown();
  EXPECT_EQ(usage.value("budget"), JSONValue());
}

TEST(WidgetForm, ChoicesAndSwitchesOfEveryState) {
  FormRig rig(kind<ClockSettings>());
  rig.control<PanelSwitch>("Show seconds")->click();
  EXPECT_EQ(rig.value("showsSeconds"), JSONValue(true));
  const auto segments = rig.control<PanelSegments>("24-hour clock")->findChildren<QRadioButton*>();
  ASSERT_EQ(segments.size(), 3);
  segments[1]->click();
  EXPECT_EQ(rig.value("uses24Hour"), JSONValue(true));
  segments[0]->click();
  EXPECT_EQ(rig.value("uses24Hour"), JSONValue());

  FormRig converter(kind<ConverterSettings>());
  auto* categories = openPicker(converter, "Category");
  const auto known = titles(categories);
  const auto temperature = std::ranges::find(known, "Temperature");
  ASSERT_NE(temperature, known.end());
  categories->onOpen(static_cast<int>(temperature - known.begin()));
  QApplication::processEvents();
  EXPECT_EQ(converter.control<PanelButton>("Category")->title(), "Temperature");
  EXPECT_EQ(converter.value("from"), JSONValue("°C")) << "the units follow their category";
  EXPECT_THAT(titles(openPicker(converter, "From")), testing::Contains("K (kelvins)"));
}

TEST(WidgetForm, APopupStaysWhereItIsWhileOneTypesInIt) {
  FormRig rig(kind<ClockSettings>());
  // There is room above alone.
  rig.form.resize(440, rig.control<PanelButton>("Time zone")->geometry().bottom() + 420);
  openPicker(rig, "Time zone");
  const QRect before = shownPopup(rig)->geometry();
  auto* line = test::first<QLineEdit>(shownPopup(rig));
  for (const auto* letter : {"n", "e", "x"}) {
    FormRig::type(line, letter);
    EXPECT_EQ(shownPopup(rig)->geometry(), before);
    EXPECT_TRUE(rig.form.rect().contains(before));
  }
}

TEST(WidgetForm, ASearchThatFailedIsNotOneThatFoundNothing) {
  FormRig rig(kind<WeatherSettings>());
  std::string trouble;
  rig.services.cities = [&](const std::string&, auto answer) -> TokenPtr {
    answer({}, trouble);
    return nullptr;
  };
  openPicker(rig, "City", "Nowhere");
  EXPECT_THAT(rig.words().toStdString(), testing::HasSubstr("No city by that name."));
  shownPopup(rig)->close();
  trouble = "There is no network.";
  openPicker(rig, "City", "Nowhere");
  EXPECT_THAT(rig.words().toStdString(), testing::HasSubstr("There is no network."));
  EXPECT_THAT(rig.words().toStdString(), testing::Not(testing::HasSubstr("No city by that name.")));
}

TEST(WidgetForm, ADateIsSetToTheMinute) {
  FormRig rig(*freshKind("countdown", Date::fromUnixSeconds(1'772'362'800)));
  rig.control<QDateTimeEdit>("Date")->setDateTime(QDateTime(QDate(2026, 12, 24), QTime(18, 0)));
  EXPECT_EQ(rig.value("target").doubleValue(),
            Calendar().date({2026, 12, 24, 18, 0, 0, 1}).secondsSinceReferenceDate);
}

TEST(WidgetForm, ZonesAreFoundByCityAndOffset) {
  FormRig rig(kind<ClockSettings>());
  EXPECT_THAT(titles(openPicker(rig, "Time zone", "+5:30")), testing::ElementsAre("Kolkata"));
  shownPopup(rig)->close();
  EXPECT_THAT(titles(openPicker(rig, "Time zone", "mars")), testing::IsEmpty());
  shownPopup(rig)->close();
  auto* list = openPicker(rig, "Time zone", "new");
  ASSERT_THAT(titles(list), testing::ElementsAre("New York"));
  list->onOpen(0);
  EXPECT_EQ(rig.value("timeZoneID"), JSONValue("America/New_York"));
  list = openPicker(rig, "Time zone");
  ASSERT_EQ(titles(list).front(), "This computer's");
  list->onOpen(0);
  EXPECT_EQ(rig.value("timeZoneID"), JSONValue());
}

TEST(WidgetForm, ACityIsOneControlOverThreeFields) {
  FormRig rig(kind<WeatherSettings>());
  EXPECT_EQ(rig.control<QWidget>("Latitude"), nullptr);
  auto* list = openPicker(rig, "City", "Munich");
  ASSERT_THAT(titles(list), testing::ElementsAre("Munich"));
  list->onOpen(0);
  EXPECT_EQ(rig.value("cityName"), JSONValue("Munich"));
  EXPECT_EQ(rig.value("latitude"), JSONValue(48.1));
  EXPECT_EQ(rig.value("longitude"), JSONValue(11.6));
  list = openPicker(rig, "City");
  ASSERT_EQ(titles(list).front(), "Not chosen");
  list->onOpen(0);
  EXPECT_EQ(rig.value("latitude"), JSONValue());
}

TEST(WidgetForm, WhatTheSystemHasIsOffered) {
  FormRig music(kind<MusicSettings>());
  auto* list = openPicker(music, "Player");
  ASSERT_THAT(titles(list), testing::ElementsAre("The one last used", "VLC media player"));
  list->onOpen(1);
  EXPECT_EQ(music.value("player"), JSONValue("vlc"));
  FormRig network(kind<NetworkSettings>());
  list = openPicker(network, "Interface");
  ASSERT_THAT(titles(list), testing::ElementsAre("All of them", "eth0", "wlan0"));
  list->onOpen(2);
  EXPECT_EQ(network.value("interface"), JSONValue("wlan0"));
  FormRig reminders(kind<ReminderSettings>());
  list = openPicker(reminders, "List");
  ASSERT_THAT(titles(list), testing::ElementsAre("Default list", "Home", "Work"));
  list->onOpen(2);
  EXPECT_EQ(reminders.value("listID"), JSONValue("c2"));

  FormRig calendar(kind<CalendarSettings>());
  auto* calendars = calendar.control<PanelList>("Calendars");
  ASSERT_THAT(titles(calendars), testing::SizeIs(3));
  calendars->onOpen(2);
  EXPECT_EQ(calendar.value("calendars").compact(), R"({"accountIDs":[],"calendarIDs":["c2"]})");
  EXPECT_TRUE(calendars->row(2).isChecked);
}

TEST(WidgetForm, AShortcutsParts) {
  FormRig rig(kind<ShortcutSettings>());
  auto* row = rig.control<QLineEdit>("Folder")->parentWidget();
  EXPECT_FALSE(row->isEnabled());
  FormRig::type(rig.control<QLineEdit>("Command"), "ls");
  EXPECT_EQ(rig.value("command"), JSONValue("ls"));
  EXPECT_TRUE(row->isEnabled());
  FormRig::type(rig.control<QLineEdit>("Folder"), "/gone");
  EXPECT_EQ(rig.value("workingFolder"), JSONValue("/gone"));
  EXPECT_THAT(rig.words().toStdString(), testing::HasSubstr("There is no folder \"/gone\""));

  rig.control<PanelButton>("Symbol")->click();
  auto* grid = test::first<PanelGrid>(shownPopup(rig));
  FormRig::type(test::first<QLineEdit>(shownPopup(rig)), "bookmark");
  ASSERT_EQ(grid->cell(0).symbol, "bookmark.fill");
  grid->onOpen(0);
  EXPECT_EQ(rig.value("symbolName"), JSONValue("bookmark.fill"));
  rig.control<PanelButton>("Take from the screen")->click();
  EXPECT_EQ(rig.value("colorHex"), JSONValue("#FF8000"));

  rig.widget = withValues(rig.widget, {{"command", {}}}, {});
  rig.form.show(rig.widget);
  auto* list = openPicker(rig, "Desktop action", "message");
  ASSERT_THAT(titles(list), testing::ElementsAre("New Message"));
  EXPECT_FALSE(list->row(0).image.isNull());
  list->onOpen(0);
  EXPECT_EQ(rig.value("desktopAction"), JSONValue("org.example.Mail.desktop/compose"));
}

TEST(WidgetForm, AShortcutIsPressed) {
  FormRig rig(kind<ColourPickerSettings>());
  auto* button = rig.control<PanelButton>("Shortcut");
  button->click();
  FormRig::press(button, Qt::Key_P, "p", Qt::ShiftModifier);
  EXPECT_EQ(rig.value("hotkey"), JSONValue());
  EXPECT_THAT(rig.words().toStdString(), testing::HasSubstr("needs Ctrl, Alt or Super"));
  FormRig::press(button, Qt::Key_P, "p", Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(rig.value("hotkey").compact(), R"({"keyCode":35,"modifiers":6})");
  EXPECT_EQ(button->title(), QString::fromStdString(hotkeyText({35, {6}})));
  // The keyboard can leave while keys are waited for, and what is there stays.
  button->click();
  EXPECT_EQ(button->title(), "Press the keys…");
  FormRig::press(button, Qt::Key_Tab);
  EXPECT_NE(QApplication::focusWidget(), button);
  EXPECT_EQ(button->title(), QString::fromStdString(hotkeyText({35, {6}})));
  // With Shift the key of the 2 says another sign.
  button->click();
  QKeyEvent two(QEvent::KeyPress, Qt::Key_At, Qt::ControlModifier | Qt::ShiftModifier, 11, 0, 0,
                "@");
  QApplication::sendEvent(button, &two);
  EXPECT_EQ(rig.value("hotkey").compact(), R"({"keyCode":19,"modifiers":12})");
  rig.control<PanelButton>("Take the shortcut away")->click();
  EXPECT_EQ(rig.value("hotkey"), JSONValue());
}

TEST(WidgetForm, ListsAreAddedToOrderedAndTakenFrom) {
  FormRig rig(kind<TimerSettings>());
  auto* line = rig.control<QLineEdit>("Add preset");
  FormRig::type(line, "1h30m");
  EXPECT_FALSE(rig.control<PanelList>("Presets")->row(0).actions.empty());
  FormRig::press(line, Qt::Key_Return);
  EXPECT_EQ(rig.value("presets").compact(), "[300,600,900,1500,2700,5400]");
  EXPECT_EQ(line->text(), "");
  FormRig::type(line, "2d");
  EXPECT_FALSE(rig.form.commit());
  EXPECT_EQ(line->text(), "2d");
  EXPECT_THAT(rig.words().toStdString(), testing::HasSubstr("must be 1 s to 1 d"));
  auto* list = rig.control<PanelList>("Presets");
  list->onAction(1, 0);
  EXPECT_EQ(rig.value("presets").compact(), "[600,300,900,1500,2700,5400]");
  list->onRemove(0);
  EXPECT_EQ(rig.value("presets").compact(), "[300,900,1500,2700,5400]");

  FormRig github(kind<GitHubSettings>());
  auto* repository = github.control<QLineEdit>("Add repository");
  FormRig::type(repository, "notarepo");
  FormRig::press(repository, Qt::Key_Return);
  EXPECT_EQ(github.value("repositories").compact(), "[]");
  EXPECT_EQ(repository->text(), "notarepo");
  EXPECT_THAT(github.words().toStdString(), testing::HasSubstr("written owner/name"));

  FormRig collection(kind<CollectionSettings>());
  for (auto* button : test::all<PanelButton>(&collection.form))
    if (button->title() == "Add app…")
      button->click();
  test::first<PanelList>(shownPopup(collection))->onOpen(0);
  EXPECT_THAT(collection.value("apps").compact(), testing::HasSubstr("org.example.Mail.desktop"));

  CollectionSettings two;
  two.apps = {{"/usr/share/applications/mail.desktop", {}, "Mail", {}},
              {"/usr/share/applications/gone.desktop", {}, "Gone", {}}};
  FormRig known{DockWidget::Kind(two)};
  auto* rows = known.control<PanelList>("Apps");
  EXPECT_FALSE(rows->row(0).image.isNull());
  EXPECT_EQ(rows->row(0).trailing, "");
  EXPECT_EQ(rows->row(1).trailing, "Not installed");
}

// Both added one: neither is lost.
TEST(WidgetForm, AListThatAnotherEditorChangedIsMerged) {
  FormRig rig(kind<TimerSettings>());
  rig.widget = withValues(rig.widget, {{"presets", JSONValue::Array{300, 600, 900, 1500, 60}}}, {});
  auto* line = rig.control<QLineEdit>("Add preset");
  FormRig::type(line, "2m");
  FormRig::press(line, Qt::Key_Return);
  EXPECT_EQ(rig.value("presets").compact(), "[300,600,900,1500,120,60]");
}

} // namespace
} // namespace tavrin

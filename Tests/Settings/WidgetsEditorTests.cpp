#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinSettings/Editing/StepField.h"
#include "TavrinSettings/Editing/StripOrder.h"
#include "TavrinSettings/Editing/WidgetsEditor.h"
#include "Tests/Command/HostFixture.h"

#include <gmock/gmock.h>
#include <random>

namespace tavrin {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// The editor of a window, and the command beside it, over one data folder.
class WidgetsEditorTest : public test::HostTest {
protected:
  test::SilentContext context{platform};
  History history;
  WidgetsEditor editor{context, history};

  std::vector<std::string> strip() const {
    std::vector<std::string> names;
    for (const auto& widget : stripOf(stored()))
      names.push_back(widget.name);
    return names;
  }
  WidgetsFile stored() const { return WidgetStore(widgetsFile()).file(); }
  DockWidget stored(const UUID& id) const { return *WidgetStore(widgetsFile()).widget(id); }
  void rename(const UUID& id, const std::string& name) {
    editor.edit(id, "Rename", "name", [&](DockWidget& widget) { widget.name = name; });
  }
  void set(const UUID& id, std::function<void(NoteSettings&)> change) {
    editor.edit(id, "Text", "text",
                [&](DockWidget& widget) { change(*widget.kind.get<NoteSettings>()); });
  }
};

TEST_F(WidgetsEditorTest, WhatIsDoneIsStoredAtOnceAndSteppedBackAndForth) {
  const auto clock = editor.add("clock");
  const auto note = editor.add("note", 0);
  editor.add("timer");
  EXPECT_THAT(strip(), ElementsAre("Note", "Clock", "Timer"));
  editor.place(note, 2);
  editor.setSpan(clock, 9);
  editor.takeOff(clock);
  editor.remove(note);
  EXPECT_THAT(strip(), ElementsAre("Timer"));
  EXPECT_EQ(history.undoTitle(), "Delete Note");

  const auto after = stored();
  int steps = 0;
  for (; history.canUndo(); ++steps)
    EXPECT_THAT(history.undo(), IsEmpty());
  EXPECT_EQ(steps, 7);
  EXPECT_THAT(stored().widgets, IsEmpty());
  while (history.canRedo())
    EXPECT_THAT(history.redo(), IsEmpty());
  EXPECT_THAT(strip(), ElementsAre("Timer"));
  EXPECT_EQ(stored(clock), *WidgetsEditor(context, history).widget(clock));
  EXPECT_EQ(stored(clock).span, 4);
  EXPECT_EQ(stored().widgets.size(), after.widgets.size());

  history.undo();
  EXPECT_EQ(stored(note).name, "Note") << "a deleted widget comes back as itself";
  EXPECT_THAT(strip(), ElementsAre("Timer", "Note"));
}

TEST_F(WidgetsEditorTest, MovingKeepsTheSlotsThatRunAndInsertingMovesNobodyWhoNeedNotMove) {
  writeFile(R"({"version": 1, "widgets": [
    {"id": "00000000-0000-0000-0000-000000000001", "name": "A", "slot": 2, "kind": {"fans": {}}},
    {"id": "00000000-0000-0000-0000-000000000002", "name": "B", "slot": 5, "kind": {"fans": {}}},
    {"id": "00000000-0000-0000-0000-000000000003", "name": "C", "slot": 6, "kind": {"fans": {}}},
    {"name": "newer", "slot": 3, "kind": {"hologram": {}}}]})");
  editor.reload();
  std::set<int> fresh;
  editor.onNewSlots = [&](const std::set<int>& slots) { fresh = slots; };
  editor.place(*UUID::parse("00000000-0000-0000-0000-000000000003"), 0);
  EXPECT_THAT(strip(), ElementsAre("C", "A", "B"));
  EXPECT_THAT(fresh, IsEmpty());

  const auto between = editor.add("clock", 1);
  EXPECT_EQ(stored(between).slot, 4) << "free between 2 and 5, for 3 is a newer widget's";
  EXPECT_THAT(fresh, ElementsAre(4));
  EXPECT_THAT(strip(), ElementsAre("C", "Clock", "A", "B"));
  const auto crowded = editor.add("note", 3);
  EXPECT_THAT(strip(), ElementsAre("C", "Clock", "A", "Note", "B"));
  EXPECT_EQ(stored(crowded).slot, 5) << "the lowest free slot, 1, and all from there move down";
}

TEST_F(WidgetsEditorTest, AFullStripSaysWhatToDoAndMakesNothing) {
  for (int i = 0; i < 12; ++i)
    editor.add("clock");
  EXPECT_TRUE(isStripFull(editor.file()));
  try {
    editor.add("note");
    FAIL();
  } catch (const HostError& error) {
    EXPECT_THAT(error.what(), HasSubstr("Take a widget off"));
  }
  EXPECT_THAT(stored().widgets, SizeIs(12));
  EXPECT_EQ(history.undoTitle(), "Add Clock");
}

// Letters of one text are one step; what else is done to a list is one each.
TEST(StepField, TellsLettersFromElements) {
  const auto field = [](const char* before, const char* after) {
    return stepField({"links", JSONValue::parse(after), JSONValue::parse(before)});
  };
  EXPECT_EQ(stepField({"name", "Te", JSONValue("T")}), "name");
  EXPECT_EQ(stepField({"name", "Te", {}}), "name");
  EXPECT_EQ(field("null", R"([{"t":"a"}])"), "");
  EXPECT_EQ(field("[1,2]", "[1,2,3]"), "");
  EXPECT_EQ(field("[1,2]", "[2]"), "");
  EXPECT_EQ(field("[1,2]", "[2,1]"), "");
  const auto letter = field(R"([{"t":"a","u":"x"},{}])", R"([{"t":"ab","u":"x"},{}])");
  EXPECT_EQ(letter, field(R"([{"t":"ab","u":"x"},{}])", R"([{"t":"abc","u":"x"},{}])"));
  EXPECT_NE(letter, field(R"([{"t":"a","u":"x"},{}])", R"([{"t":"a","u":"y"},{}])"));
  EXPECT_NE(letter, field(R"([{},{"t":"a","u":"x"}])", R"([{},{"t":"ab","u":"x"}])"));
  EXPECT_EQ(field(R"([{"links":[1]}])", R"([{"links":[1,2]}])"), "") << "a list in a list";
}

TEST_F(WidgetsEditorTest, UndoLeavesWhatOthersDidSinceAndSaysSo) {
  const auto note = editor.add("note");
  set(note, [](NoteSettings& settings) { settings.text = "mine"; });
  history.seal();
  set(note, [](NoteSettings& settings) { settings.colorHex = "#0A84FF"; });
  ASSERT_EQ(run({"widgets", "set", "Note", "text=theirs"}), 0) << errors.str();
  ASSERT_EQ(run({"widgets", "rename", "Note", "Paper"}), 0);
  editor.reload();

  EXPECT_THAT(history.undo(), IsEmpty()) << "the colour is as it was left";
  EXPECT_EQ(stored(note).kind.settings<NoteSettings>().colorHex, NoteSettings().colorHex);
  EXPECT_THAT(history.undo(), ElementsAre(HasSubstr("\"Paper\" was changed elsewhere")));
  EXPECT_EQ(stored(note).kind.settings<NoteSettings>().text, "theirs");
  EXPECT_EQ(stored(note).name, "Paper");
  EXPECT_THAT(history.undo(), ElementsAre(HasSubstr("stays")));
  EXPECT_EQ(stored().widgets.size(), 1u) << "a widget that others changed is not unmade";
}

TEST_F(WidgetsEditorTest, ATakenPlaceIsExchangedForAFreeOneOnTheWayBack) {
  const auto note = editor.add("note");
  editor.takeOff(note);
  ASSERT_EQ(run({"widgets", "add", "clock", "--place"}), 0) << errors.str();
  editor.reload();
  EXPECT_THAT(history.undo(), IsEmpty());
  EXPECT_EQ(stored(note).slot, 2);
  history.redo();
  for (int i = 0; i < 11; ++i)
    ASSERT_EQ(run({"widgets", "add", "timer", "--place"}), 0);
  EXPECT_THAT(history.undo(), ElementsAre(HasSubstr("all twelve places are taken")));
  EXPECT_EQ(stored(note).slot, std::nullopt);
}

TEST_F(WidgetsEditorTest, LettersOfOneFieldAreOneStepUntilSomethingElseIsDone) {
  const auto note = editor.add("note");
  for (const char* text : {"M", "Mi", "Milk"})
    set(note, [&](NoteSettings& settings) { settings.text = text; });
  rename(note, "List");
  set(note, [](NoteSettings& settings) { settings.text = "Milk, bread"; });
  history.undo();
  EXPECT_EQ(stored(note).kind.settings<NoteSettings>().text, "Milk");
  history.undo();
  history.undo();
  EXPECT_EQ(stored(note).kind.settings<NoteSettings>().text, "");
  EXPECT_EQ(history.undoTitle(), "Add Note");
}

TEST_F(WidgetsEditorTest, ARefusedEditAndOneOfARemovedWidgetChangeNothing) {
  const auto note = editor.add("note");
  const auto before = fileText();
  EXPECT_THROW(editor.edit(note, "Text", "text",
                           [](DockWidget&) { throw HostError(ExitCode::refusedValue, "no"); }),
               HostError);
  EXPECT_EQ(fileText(), before);
  ASSERT_EQ(run({"widgets", "remove", "--yes", "Note"}), 0);
  EXPECT_THROW(rename(note, "x"), HostError);
  EXPECT_EQ(history.undoTitle(), "Add Note");
}

TEST_F(WidgetsEditorTest, TwoWindowsAndTheCommandLoseNothing) {
  History otherHistory;
  WidgetsEditor other(context, otherHistory);
  const auto shared = editor.add("note");
  std::mt19937 random(7);
  std::string text;
  std::string colour;
  std::string name = "Note";
  std::size_t made = 1;
  for (int i = 0; i < 40; ++i) {
    switch (random() % 4) {
    case 0:
      set(shared, [&](NoteSettings& settings) { settings.text = text = std::to_string(i); });
      break;
    case 1:
      other.edit(shared, "Colour", "colorHex", [&](DockWidget& widget) {
        widget.kind.get<NoteSettings>()->colorHex = colour = "#0000" + std::to_string(10 + i);
      });
      break;
    case 2:
      name = "Note" + std::to_string(i);
      ASSERT_EQ(run({"widgets", "rename", shared.text(), name}), 0);
      break;
    default:
      made += 1;
      if (i % 2 == 0)
        ASSERT_EQ(run({"widgets", "add", "fans"}), 0);
      else
        other.edit(shared, "", "", [](DockWidget&) {}), editor.addStarterSet(), made += 5;
    }
  }
  EXPECT_EQ(stored(shared).kind.settings<NoteSettings>().text, text);
  EXPECT_EQ(stored(shared).kind.settings<NoteSettings>().colorHex, colour);
  EXPECT_EQ(stored(shared).name, name);
  EXPECT_EQ(stored().widgets.size(), made);
}

} // namespace
} // namespace tavrin

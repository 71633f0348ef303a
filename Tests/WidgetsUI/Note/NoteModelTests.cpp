#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinWidgetsUI/Note/NoteModel.h"

#include "Tests/Support/ManualRunLoop.h"

#include <gtest/gtest.h>
#include <vector>

namespace tavrin::test {
namespace {

struct Bench {
  Bench() {
    model.onSave = [this](const std::string& text) {
      saves.push_back(text);
      model.settingsChanged({text, "#FBBF24"}); // as the controller answers
    };
  }
  void elsewhere(const std::string& text) { model.settingsChanged({text, "#FBBF24"}); }

  ManualClock clock{{800'000'000}};
  ManualRunLoop loop{clock};
  NoteModel model{clock, loop, {"Milk", "#FBBF24"}};
  std::vector<std::string> saves;
};

using Saves = std::vector<std::string>;

TEST(NoteModel, TypingIsSavedOnceItRests) {
  Bench bench;
  for (const char* text : {"Milk,", "Milk, b", "Milk, bread"}) {
    bench.model.edit(text);
    bench.loop.advance(0.3);
  }
  EXPECT_TRUE(bench.saves.empty());
  bench.loop.advance(NoteModel::rest);
  EXPECT_EQ(bench.saves, Saves{"Milk, bread"});
  EXPECT_EQ(bench.loop.activeTimers(), 0U);
}

TEST(NoteModel, EndlessTypingIsSavedNowAndThen) {
  Bench bench;
  std::string text = "Milk";
  for (int key = 0; key < 100; ++key) {
    bench.model.edit(text += 'k');
    bench.loop.advance(0.1);
  }
  EXPECT_GE(bench.saves.size(), 1U);
  EXPECT_LE(bench.saves.size(), 2U);
}

TEST(NoteModel, TypedAndTakenBackNeedsNoSave) {
  Bench bench;
  bench.model.edit("Milk!");
  bench.model.edit("Milk");
  bench.loop.advance(10);
  bench.model.flush();
  EXPECT_TRUE(bench.saves.empty());
}

TEST(NoteModel, FlushSavesAtOnceAndOnlyOnce) {
  Bench bench;
  bench.model.edit("Bread");
  bench.model.flush();
  bench.model.flush();
  bench.loop.advance(10);
  EXPECT_EQ(bench.saves, Saves{"Bread"});
}

TEST(NoteModel, AChangeElsewhereShowsWhenNothingIsTyped) {
  Bench bench;
  bench.elsewhere("Soap");
  EXPECT_EQ(bench.model.text(), "Soap");
  EXPECT_FALSE(bench.model.otherText());
  bench.loop.advance(10);
  EXPECT_TRUE(bench.saves.empty());
}

TEST(NoteModel, AnotherColourDoesNotTouchWhatIsTyped) {
  Bench bench;
  bench.model.edit("Milk, bread");
  bench.model.settingsChanged({"Milk", "#FF0000"});
  EXPECT_EQ(bench.model.note(), (NoteSettings{"Milk, bread", "#FF0000"}));
  EXPECT_FALSE(bench.model.otherText());
  bench.loop.advance(1);
  EXPECT_EQ(bench.saves, Saves{"Milk, bread"});
}

TEST(NoteModel, WhatIsTypedAndWhatWasWrittenElsewhereAreBothKeptUntilChosen) {
  struct Case {
    void (NoteModel::*choose)();
    std::string text;
  };
  const Case cases[] = {{&NoteModel::keepMine, "Mine"},
                        {&NoteModel::takeOther, "Other"},
                        {&NoteModel::keepBoth, "Mine\n\nOther"},
                        {&NoteModel::flush, "Mine\n\nOther"}};
  for (const auto& [choose, text] : cases) {
    Bench bench;
    bench.model.edit("Min");
    bench.elsewhere("Other");
    bench.model.edit("Mine");
    bench.loop.advance(60);
    EXPECT_TRUE(bench.saves.empty()) << "nothing is overwritten before the answer";
    EXPECT_EQ(bench.model.text(), "Mine");
    EXPECT_EQ(bench.model.otherText(), "Other");
    (bench.model.*choose)();
    EXPECT_EQ(bench.model.text(), text);
    EXPECT_FALSE(bench.model.otherText());
    EXPECT_EQ(bench.saves, text == "Other" ? Saves{} : Saves{text});
  }
}

TEST(NoteModel, TheSameTextWrittenElsewhereIsNoQuestion) {
  Bench bench;
  bench.model.edit("Bread");
  bench.elsewhere("Bread");
  EXPECT_FALSE(bench.model.otherText());
  bench.loop.advance(10);
  EXPECT_TRUE(bench.saves.empty());
}

TEST(NoteModel, EmptyTextsNeedNoGap) {
  Bench bench;
  bench.model.edit("");
  bench.elsewhere("Other");
  bench.model.keepBoth();
  EXPECT_EQ(bench.model.text(), "Other");
}

} // namespace
} // namespace tavrin::test

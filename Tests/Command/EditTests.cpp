#include "TavrinCommand/Widgets/EditForm.h"
#include "Tests/Command/HostFixture.h"

#include <gmock/gmock.h>

namespace tavrin::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class EditTest : public HostTest {
protected:
  EditTest() {
    isInteractive = true;
    run({"widgets", "add", "pomodoro", "Focus"});
    platform.center.posts.clear();
  }
  /// An editor that replaces one text by another at each of its openings.
  void edits(std::vector<std::pair<std::string, std::string>> steps) {
    platform.editor = [this, steps, opening = std::size_t{0}](const auto& words) mutable {
      const std::filesystem::path form = words.back();
      std::ifstream input(form);
      std::string text{std::istreambuf_iterator<char>(input), {}};
      forms.push_back(text);
      if (opening < steps.size()) {
        const auto& [from, to] = steps[opening++];
        const auto at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from << " in " << text;
        if (at != std::string::npos)
          text.replace(at, from.size(), to);
        std::ofstream(form) << text;
      }
      std::ofstream(form.string() + ".done") << "0\n";
      return 0;
    };
  }
  std::vector<std::string> forms;
};

TEST_F(EditTest, AFormIsCheckedSavedAndAnnounced) {
  edits({{"\"focus\": 1500", "\"focus\": \"50m\""}});
  EXPECT_EQ(run({"edit", "focus"}), 0) << errors.str();
  EXPECT_EQ(json({"widgets", "show", "Focus"}).member("settings")->member("focus")->compact(),
            "3000");
  EXPECT_EQ(platform.center.posts.size(), 1U);
  EXPECT_THAT(forms.front(), HasSubstr("1 min to 2 h"));
}

TEST_F(EditTest, AWrongFormCanBeEditedAgain) {
  edits({{"1500", "1"}, {"\"focus\": 1,", "\"focus\": 120,"}});
  EXPECT_EQ(run({"edit", "Focus"}, "y\n"), 0) << errors.str();
  EXPECT_THAT(forms.back(), HasSubstr("// NOT SAVED: \"focus\" must be 1 min to 2 h"));
  EXPECT_EQ(json({"widgets", "show", "Focus"}).member("settings")->member("focus")->compact(),
            "120");
}

TEST_F(EditTest, AFormThatIsGivenUpIsKept) {
  const auto before = fileText();
  edits({{"{", "{{"}});
  EXPECT_EQ(run({"edit", "Focus"}, "n\n"), 5);
  EXPECT_EQ(fileText(), before);
  EXPECT_THAT(errors.str(), HasSubstr("what you typed is in"));
  EXPECT_FALSE(std::filesystem::is_empty(folder / "state/tavrin"));
}

TEST_F(EditTest, TheEndOfTheInputGivesUp) {
  edits({{"{", "{{"}, {"{", "{{"}});
  EXPECT_EQ(run({"edit", "Focus"}, ""), 5);
  EXPECT_EQ(forms.size(), 1U);
}

TEST_F(EditTest, WhatIsLeftAloneStaysExactly) {
  struct Case {
    const char* settings;
    const char* key;
    const char* kept;
  };
  const Case cases[] = {
      {R"({"countdown":{"_0":{"target":856872605.123456,"countsUpAfter":false}}})", "target",
       "856872605.123456"},
      {R"({"countdown":{"_0":{"target":1e300,"countsUpAfter":false}}})", "target", "1e+300"},
      // Out of the range that is offered, but there already.
      {R"({"pomodoro":{"_0":{"focus":0.5}}})", "focus", "0.5"}};
  for (const auto& [settings, key, kept] : cases) {
    writeFile(std::string(R"({"version":1,"widgets":[{"id":)") +
              R"("6F9619FF-8B86-D011-B42D-00C04FC964FF","name":"Old","kind":)" + settings + "}]}");
    edits({{"\"Old\"", "\"New\""}});
    EXPECT_EQ(run({"edit", "Old"}), 0) << errors.str();
    EXPECT_EQ(json({"widgets", "show", "New"}).member("settings")->member(key)->compact(), kept);
  }
}

TEST_F(EditTest, AnUntouchedFormChangesNothing) {
  edits({});
  EXPECT_EQ(run({"edit", "Focus"}), 0);
  EXPECT_THAT(output.str(), HasSubstr("Nothing was changed"));
  EXPECT_TRUE(platform.center.posts.empty());
}

TEST_F(EditTest, TwoEditsOfOneWidgetHaveTheirOwnForms) {
  edits({{"1500", "3000"}, {"\"shortBreak\": 300", "\"shortBreak\": 600"}});
  auto editor = platform.editor;
  std::vector<std::string> places;
  platform.editor = [&](const auto& words) {
    places.push_back(words.back());
    if (places.size() == 1)
      run({"edit", "Focus"});
    return editor(words);
  };
  EXPECT_EQ(run({"edit", "Focus"}), 0) << errors.str();
  ASSERT_EQ(places.size(), 2U);
  EXPECT_NE(places[0], places[1]);
  const auto settings = json({"widgets", "show", "Focus"});
  EXPECT_EQ(settings.member("settings")->member("focus")->compact(), "3000");
  EXPECT_EQ(settings.member("settings")->member("shortBreak")->compact(), "600");
  EXPECT_TRUE(std::filesystem::is_empty(folder / "state/tavrin"));
}

TEST_F(EditTest, AFormThatWasGivenUpOutlivesTheNextEdit) {
  edits({{"{", "{{"}});
  EXPECT_EQ(run({"edit", "Focus"}, "n\n"), 5);
  edits({});
  EXPECT_EQ(run({"edit", "Focus"}), 0);
  EXPECT_FALSE(std::filesystem::is_empty(folder / "state/tavrin"));
}

TEST_F(EditTest, AnEditorThatEndsWithItsTerminalEndsTheEdit) {
  struct Case {
    bool hasBegun;
    bool hasTyped;
    const char* reason;
  };
  platform.isInFront = false; // a window of its own is opened
  for (const auto& c : {Case{true, false, "because its terminal was closed"},
                        Case{true, true, "because its terminal was closed"},
                        Case{false, false, "because no terminal could be started"}}) {
    platform.editor = [&](const auto& words) {
      EXPECT_EQ(words[1], "-e");
      if (c.hasTyped)
        std::ofstream(words.back()) << "typed";
      if (c.hasBegun)
        std::ofstream(words.back() + ".shell") << "4711\n";
      return 0;
    };
    platform.waited = 0;
    EXPECT_EQ(run({"edit", "Focus"}), 1);
    EXPECT_THAT(errors.str(), HasSubstr(c.reason));
    EXPECT_LT(platform.waited, 60);
    EXPECT_EQ(std::filesystem::is_empty(folder / "state/tavrin"), !c.hasTyped);
    std::filesystem::remove_all(folder / "state/tavrin");
  }
}

/// Runs the script around the editor with a real shell and a program that plays the editor.
class EditorScriptTest : public EditTest {
protected:
  /// What the script did: its words on the terminal, and the form's text afterwards.
  std::string runScript(const std::string& name, const std::string& body,
                        const std::string& typing) {
    const auto editor = folder / "bin" / name;
    std::filesystem::create_directories(editor.parent_path());
    std::ofstream(editor) << "#!/bin/sh\n" << body << "\n";
    std::filesystem::permissions(editor, std::filesystem::perms::owner_all);
    std::string words;
    platform.editor = [&](const auto& command) {
      const auto script = folder / "script";
      std::ofstream(script) << command[2];
      const auto line = "{ " + typing + "; } | DBUS_SESSION_BUS_ADDRESS=disabled: VISUAL= " +
                        "TAVRIN_APP_SUPPORT_DIR='" + (folder / "data").string() + "' EDITOR='" +
                        editor.string() + "' sh '" + script.string() + "' '" TAVRIN_PROGRAM "' '" +
                        command[5] + "' '" + command.back() + "' > '" +
                        (folder / "words").string() + "' 2>&1";
      return std::system(line.c_str()) == 0 ? 0 : 1;
    };
    status = run({"edit", "Focus"});
    std::ifstream file(folder / "words");
    return {std::istreambuf_iterator<char>(file), {}};
  }
  int status = 0;
  double focus() {
    return *json({"widgets", "show", "Focus"}).member("settings")->member("focus")->doubleValue();
  }
};

// A form that was typed into stays; one that was not leaves nothing behind, its marks neither.
TEST_F(EditorScriptTest, AnEditorThatFailsHasChangedNothingAndSaysSo) {
  struct Case {
    const char* body;
    const char* reason;
    bool staysBehind;
  };
  for (const auto& c : {Case{"exit 1", "the editor ended with status 1", false},
                        Case{"sed -i s/1500/3000/ \"$1\"; exit 3", "ended with status 3", true}}) {
    runScript("failing", c.body, ":");
    EXPECT_EQ(status, 1);
    EXPECT_THAT(errors.str(), HasSubstr(c.reason));
    EXPECT_THAT(output.str(), testing::Not(HasSubstr("Nothing was changed")));
    EXPECT_EQ(focus(), 1500);
    EXPECT_EQ(std::filesystem::is_empty(folder / "state/tavrin"), !c.staysBehind);
  }
}

// Nobody is there to say whether another window shows it.
TEST_F(EditorScriptTest, AnUntouchedFormThatAWindowMayShowGoesAfterAWeek) {
  runScript("handing", "true", ":");
  EXPECT_EQ(status, 1);
  const auto state = folder / "state/tavrin";
  for (const auto& entry : std::filesystem::directory_iterator(state))
    std::filesystem::last_write_time(entry.path(), std::filesystem::file_time_type::clock::now() -
                                                       std::chrono::hours(8 * 24));
  edits({});
  EXPECT_EQ(run({"edit", "Focus"}), 0) << errors.str();
  EXPECT_TRUE(std::filesystem::is_empty(state));
}

// Its window belongs to a process that runs already; what is saved there comes after the program
// has returned, and again later.
TEST_F(EditorScriptTest, AnEditorThatHandsTheFormOverIsWaitedFor) {
  // Within a minute: else the test would hang where the program has ended.
  const auto until = [](const std::string& pattern, const std::filesystem::path& file) {
    return "for each in $(seq 1200); do grep -q '" + pattern + "' '" + file.string() +
           "' && break; sleep 0.05; done; ";
  };
  const auto stored = [&](const std::string& seconds) {
    return until("\"focus\"[ :]*" + seconds, widgetsFile());
  };
  const auto told = [&](const std::string& words) { return until(words, folder / "words"); };
  const auto saves = [](const std::string& from, const std::string& to) {
    return "sed 's/\"focus\": " + from + "/\"focus\": " + to +
           "/' \"$1\" > \"$1.new\"; mv \"$1.new\" \"$1\"; ";
  };
  const auto words =
      runScript("handing",
                "(" + told("taken each time") + saves("1500", "3000") + stored("3000") +
                    saves("3000", "1") + told("must be") + saves("1", "2400") + ") &",
                stored("2400") + "echo");
  EXPECT_THAT(words, HasSubstr("you save there is taken each time"));
  EXPECT_THAT(words, HasSubstr("\"focus\" must be 1 min to 2 h"));
  EXPECT_EQ(status, 0) << words;
  EXPECT_EQ(focus(), 2400);
  EXPECT_TRUE(std::filesystem::is_empty(folder / "state/tavrin"));
}

TEST_F(EditorScriptTest, OneThatStaysInItsTerminalIsBelieved) {
  EXPECT_EQ(runScript("vi", "true", ":"), "");
  EXPECT_EQ(status, 0);
  EXPECT_THAT(output.str(), HasSubstr("Nothing was changed"));
}

TEST_F(EditorScriptTest, OneThatIsKnownToHandOverIsToldToWait) {
  const auto words = runScript("code", "echo \"$1\"; sed -i 's/1500/3000/' \"$2\"", ":");
  EXPECT_EQ(words, "--wait\n");
  EXPECT_EQ(focus(), 3000);
}

// Its terminal goes while the other window may still save: what comes later is not lost.
TEST_F(EditorScriptTest, TheFormStaysWhileAnotherWindowMayShowIt) {
  runScript("handing", "true", ":");
  bool isThere = false;
  for (const auto& entry : std::filesystem::directory_iterator(folder / "state/tavrin")) {
    if (entry.path().extension() != ".form")
      continue;
    isThere = true;
    std::ifstream input(entry.path());
    std::string text{std::istreambuf_iterator<char>(input), {}};
    text.replace(text.find("1500"), 4, "3000");
    std::ofstream(entry.path()) << text;
  }
  ASSERT_TRUE(isThere);
  edits({});
  EXPECT_EQ(run({"edit", "Focus"}, "y\n"), 0) << errors.str();
  EXPECT_EQ(focus(), 3000);
}

TEST_F(EditTest, ChangesMadeMeanwhileByOthersAreKept) {
  edits({{"1500", "3000"}});
  auto editor = platform.editor;
  platform.editor = [&, editor](const auto& words) {
    HostTest::run({"widgets", "set", "Focus", "shortBreak=10m", "name=Work"});
    return editor(words);
  };
  EXPECT_EQ(run({"edit", "Focus"}), 0) << errors.str();
  const auto settings = json({"widgets", "show", "Work"});
  EXPECT_EQ(settings.member("settings")->member("shortBreak")->compact(), "600");
  EXPECT_EQ(settings.member("settings")->member("focus")->compact(), "3000");
}

TEST_F(EditTest, EveryKindsFormReadsBackUnchanged) {
  const Date now = platform.time.date;
  for (const auto& kind : allKinds()) {
    const DockWidget widget(UUID::random(), "A \"b\" // c", 3, *freshKind(kind.key, now), 1);
    const auto read = widgetFromForm(widget, editForm(widget), now, {});
    EXPECT_EQ(read.name, widget.name);
    EXPECT_EQ(settingsJSON(read.kind).compact(), settingsJSON(widget.kind).compact()) << kind.key;
  }
}

} // namespace
} // namespace tavrin::test

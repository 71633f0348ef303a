#include "TavrinCore/Kinds/Shortcut/ShortcutSettings.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Shortcut/ShortcutRunner.h"
#include "Tests/Slot/SlotFixture.h"

namespace tavrin::test {
namespace {

using Outcome = ProcessResult::Outcome;

class ShortcutWidget : public SlotTest {
protected:
  static ShortcutSettings settings(const std::string& command) {
    ShortcutSettings settings;
    settings.title = "Back Up";
    settings.command = command;
    return settings;
  }
  ProcessRequest& request() { return platform_.fakeProcesses.requests.back(); }
  void answer(ProcessResult result) {
    platform_.fakeProcesses.result = std::move(result);
    button("Run") != nullptr ? button("Run")->click() : button("Run Again")->click();
    platform_.loop.runPosts();
  }
};

TEST_F(ShortcutWidget, ACommandRunsInTheUsersShellAndFolder) {
  platform_.files.variables["SHELL"] = "/bin/zsh";
  auto wanted = settings("echo hi");
  wanted.workingFolder = "~/work";
  wanted.timeLimit = 90;
  start(wanted);
  click();
  button("Run")->click();
  EXPECT_EQ(request().program, "/bin/zsh");
  EXPECT_EQ(request().arguments, (std::vector<std::string>{"-c", "echo hi"}));
  EXPECT_EQ(request().workingFolder, (folder_ / "home" / "work").string());
  EXPECT_EQ(request().timeLimit, 90);
  platform_.files.variables["SHELL"] = "zsh";
  platform_.loop.runPosts();
  button("Run Again")->click();
  EXPECT_EQ(request().program, "/bin/sh") << "not a path";
}

TEST_F(ShortcutWidget, OneRunAtATimeAndItsOutputAsItComes) {
  start(settings("make"));
  click();
  button("Run")->click();
  EXPECT_EQ(platform_.tile.value, "Running");
  request().onOutput("step one\nstep");
  request().onOutput(" two\n");
  platform_.loop.advance(0.0);
  EXPECT_EQ(platform_.fakeProcesses.requests.size(), 1U);
  EXPECT_EQ(platform_.tile.value, "step two") << "what it wrote last";
  EXPECT_TRUE(words().contains("Done in 0.0 s"));
  EXPECT_EQ(all<PanelTextEdit>().front()->toPlainText(), "step one\nstep two");
  button("Copy Output")->click();
  EXPECT_EQ(platform_.fakePasteboard.writtenText(), "step one\nstep two");
}

TEST_F(ShortcutWidget, EachWayToEndHasItsWords) {
  start(settings("x"));
  click();
  answer({Outcome::exited, 0, "", "", false});
  EXPECT_TRUE(words().contains("Done in 0.0 s"));
  answer({Outcome::exited, 3, "", "", false});
  EXPECT_TRUE(words().contains("Ended with status 3"));
  EXPECT_TRUE(words().contains("Failed"));
  answer({Outcome::signalled, 11, "", "", false});
  EXPECT_TRUE(words().contains("Ended by signal 11"));
  answer({Outcome::timedOut, -1, "", "", false});
  EXPECT_TRUE(words().contains("Stopped at its time limit"));
  answer({Outcome::failedToStart, -1, "", "", false});
  EXPECT_TRUE(words().contains("Failed to run the command because the shell cannot be started"));
}

TEST_F(ShortcutWidget, StopEndsTheRun) {
  start(settings("sleep 100"));
  click();
  button("Run")->click();
  button("Stop")->click();
  EXPECT_TRUE(words().contains("Stopped after 0.0 s"));
  platform_.loop.runPosts();
  EXPECT_TRUE(words().contains("Stopped after 0.0 s")) << "an answer that comes late is no answer";
}

TEST_F(ShortcutWidget, TheTileCountsAndSaysForAMomentThatItIsDone) {
  start(settings("x"));
  click();
  button("Run")->click();
  const int before = platform_.tile.displays;
  platform_.loop.runPosts();
  EXPECT_EQ(platform_.tile.displays, before + 1);
  platform_.loop.advance(10);
  EXPECT_EQ(platform_.tile.displays, before + 2) << "the check goes, and nothing ticks on";
}

TEST_F(ShortcutWidget, ADesktopActionIsOpenedThroughTheDesktop) {
  ShortcutSettings wanted;
  wanted.desktopAction = "term.desktop/new-window";
  start(wanted);
  click();
  button("Run")->click();
  platform_.loop.advance(1);
  EXPECT_THAT(platform_.library.launches, testing::ElementsAre("term.desktop/new-window"));
  EXPECT_TRUE(platform_.fakeProcesses.requests.empty());
  platform_.library.trouble = "Failed to open term.desktop because it is not installed";
  button("Run Again")->click();
  platform_.loop.advance(1);
  EXPECT_TRUE(words().contains(QString::fromStdString(platform_.library.trouble)));
}

TEST_F(ShortcutWidget, AWideTileKeepsItsSymbolAndAFailureItsMark) {
  const auto warnings = [this] {
    int count = 0;
    const QImage& picture = platform_.tile.last;
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x) {
        const QColor colour = picture.pixelColor(x, y);
        count += std::abs(colour.red() - palette::warning.red()) < 24 &&
                 std::abs(colour.green() - palette::warning.green()) < 24 &&
                 std::abs(colour.blue() - palette::warning.blue()) < 24;
      }
    return count;
  };
  for (const int span : {2, 3}) {
    auto wanted = settings("false");
    wanted.title = "A title of some length";
    wanted.symbolName = "heart.fill";
    start(wanted, span);
    const QImage heart = platform_.tile.last.copy();
    wanted.symbolName = "star.fill";
    write(wanted, span);
    announce();
    EXPECT_NE(platform_.tile.last, heart) << span;
    const int before = warnings();
    click();
    answer({Outcome::exited, 3, "", "", false});
    EXPECT_GT(warnings(), before + 10) << span;
    app_.reset();
  }
}

TEST_F(ShortcutWidget, WithoutAnActionItSaysWhatToDo) {
  auto wanted = settings("  ");
  start(wanted);
  click();
  EXPECT_TRUE(words().contains("Nothing to run yet"));
  EXPECT_EQ(platform_.tile.value, "Nothing to run yet");
  write(settings("true"));
  announce();
  EXPECT_TRUE(words().contains("Back Up")) << "set from outside while open";
  button("Run")->click();
  EXPECT_EQ(platform_.fakeProcesses.requests.size(), 1U);
}

TEST(DesktopActionName, PartsTheActionFromTheApplication) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"org.x.Term.desktop/new", "org.x.Term.desktop", "new"},
      {"term/new", "term", "new"},
      {"term", "term", ""},
      {" term.desktop ", "term.desktop", ""},
      {"/apps/a.desktop", "/apps/a.desktop", ""},
      {"/apps/a.desktop/new", "/apps/a.desktop", "new"},
      {"", "", ""},
  };
  for (const auto& [text, application, action] : cases)
    EXPECT_EQ(DesktopActionName::parse(text), (DesktopActionName{application, action})) << text;
}

} // namespace
} // namespace tavrin::test

#include "TavrinCore/Base/JSONValue.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

namespace tavrin {
namespace {

using testing::HasSubstr;
using testing::Not;

/// The built program in a scratch home, driven by shell scripts; `$T` is the program.
class ProgramTest : public testing::Test {
protected:
  ProgramTest() {
    std::string name = "/tmp/tavrin-program-XXXXXX";
    home = mkdtemp(name.data());
    for (int slot = 1; slot <= 12; ++slot) {
      const auto folder =
          home / ("bundles/Tavrin Slot " + std::to_string(slot) + ".app") / "Contents/MacOS";
      std::filesystem::create_directories(folder);
      std::filesystem::create_hard_link(fakeSlot(), folder / "TavrinSlot");
    }
  }
  ~ProgramTest() override { std::filesystem::remove_all(home); }

  /// A copy on the scratch folder's own file system, for the links.
  std::filesystem::path fakeSlot() {
    const auto copy = home / "fake-slot";
    if (!std::filesystem::exists(copy))
      std::filesystem::copy_file(TAVRIN_FAKE_SLOT, copy);
    return copy;
  }

  /// A terminal that runs its command, and an editor that makes a focus of 25 minutes one of 50.
  void makeEditor() const {
    std::ofstream(home / "terminal") << "#!/bin/sh\nshift\nexec \"$@\"\n";
    std::ofstream(home / "editor") << "#!/bin/sh\nsed -i 's/1500/3000/' \"$1\"\n";
    for (const char* program : {"terminal", "editor"})
      std::filesystem::permissions(home / program, std::filesystem::perms::owner_all);
  }

  int run(const std::string& script, bool withBus = false) {
    std::ofstream(home / "script") << script;
    const std::string environment =
        "env -u XDG_DATA_HOME -u XDG_STATE_HOME -u XDG_RUNTIME_DIR -u DISPLAY -u WAYLAND_DISPLAY "
        "-u DBUS_SESSION_BUS_ADDRESS HOME=" +
        home.string() + " T=" TAVRIN_PROGRAM " TAVRIN_BUNDLES=" + (home / "bundles").string() +
        " FAKE_SLOT_NOTES=" + (home / "notes").string();
    const int status = std::system((environment + (withBus ? " dbus-run-session --" : "") +
                                    " timeout 60 sh " + (home / "script").string() + " >" +
                                    (home / "out").string() + " 2>" + (home / "err").string())
                                       .c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  std::string text(const char* name) const {
    std::ifstream file(home / name);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::filesystem::path home;
};

TEST_F(ProgramTest, NeedsNeitherDisplayNorBus) {
  EXPECT_EQ(run("$T widgets add timer Tea --place && $T widgets list --json"), 0) << text("err");
  EXPECT_EQ(run("$T widgets list --json"), 0);
  EXPECT_EQ(JSONValue::parse(text("out")).member("widgets")->array()->size(), 1U);
  EXPECT_TRUE(std::filesystem::exists(home / ".local/share/Tavrin/widgets.json"));
  EXPECT_EQ(run("ldd $T"), 0);
  EXPECT_THAT(text("out"), testing::AllOf(Not(HasSubstr("Qt6Gui")), Not(HasSubstr("libX11"))));
}

TEST_F(ProgramTest, ExitStatusAndSentencesReachTheShell) {
  run("$T widgets add pomodoro Focus");
  EXPECT_EQ(run("$T widgets set Focus focus=3h"), 5);
  EXPECT_EQ(text("err"), "tavrin: \"focus\" must be 1 min to 2 h, not \"3h\"\n");
  EXPECT_EQ(run("$T widgets show Nobody"), 3);
  EXPECT_EQ(text("err"), "tavrin: no widget is called \"Nobody\"; there is \"Focus\"\n");
  for (const auto& [words, complaint] :
       {std::pair("frob", "there is no command \"frob\"\nSee `tavrin --help`."),
        std::pair("widgets frob", "there is no command \"frob\"\nSee `tavrin widgets --help`."),
        std::pair("--frob", "there is no option \"--frob\""),
        std::pair("backups", "A subcommand is required")}) {
    EXPECT_EQ(run(std::string("$T ") + words), 2);
    EXPECT_THAT(text("err"), HasSubstr(complaint)) << words;
  }
  EXPECT_EQ(run("rm -r .local/share/Tavrin 2>/dev/null; mkdir -p $HOME/.local/share; "
                "rm -rf $HOME/.local/share/Tavrin; echo > $HOME/.local/share/Tavrin; "
                "$T widgets list"),
            1);
  EXPECT_THAT(text("err"), HasSubstr("Failed to"));
}

TEST_F(ProgramTest, ChangesAreAnnouncedOnTheBus) {
  EXPECT_EQ(run(R"sh(
    dbus-monitor --profile "interface='dev.quellby.tavrin.Notifications'" > $HOME/signals &
    monitor=$!
    until grep -q NameLost $HOME/signals || grep -q NameAcquired $HOME/signals; do sleep 0.02; done
    $T widgets add clock
    $T widgets set Clock showsSeconds=yes
    $T widgets set Clock showsSeconds=maybe
    for i in $(seq 100); do [ "$(grep -c Posted $HOME/signals)" -ge 2 ] && break; sleep 0.02; done
    $T widgets list > /dev/null
    kill $monitor
    grep -c Posted $HOME/signals)sh",
                true),
            0)
      << text("err");
  EXPECT_THAT(text("out"), HasSubstr("\n2\n"));
}

TEST_F(ProgramTest, SlotsStartStandOpenAndStop) {
  EXPECT_EQ(run(R"sh(set -e
    $T start --starter > $HOME/started
    $T start > $HOME/again
    $T status --json > $HOME/status
    $T open Focus 2
    $T stop > $HOME/stopped
    $T status --json > $HOME/after)sh",
                true),
            0)
      << text("out") << text("err");
  const auto status = JSONValue::parse(text("status"));
  ASSERT_EQ(status.array()->size(), 6U);
  for (const auto& slot : *status.array())
    EXPECT_TRUE(*slot.member("isRunning")->boolean()) << slot.compact();
  EXPECT_EQ(text("notes"), "open 1\nopen 2\n");
  EXPECT_THAT(text("again"), HasSubstr("runs already"));
  const auto after = JSONValue::parse(text("after"));
  for (const auto& slot : *after.array())
    EXPECT_FALSE(*slot.member("isRunning")->boolean()) << slot.compact();
}

/// As an installation does while the slots run, by a rename or by putting the old file aside.
TEST_F(ProgramTest, SlotsWhoseProgramWasReplacedAreFoundAndStopped) {
  EXPECT_EQ(run(R"sh(set -e
    $T widgets add clock A --place; $T widgets add clock B --place
    for bus in "$DBUS_SESSION_BUS_ADDRESS" unix:path=/nowhere; do
      export DBUS_SESSION_BUS_ADDRESS=$bus
      $T start
      for slot in 1 2; do
        program="$HOME/bundles/Tavrin Slot $slot.app/Contents/MacOS/TavrinSlot"
        cp "$program" $HOME/new
        [ $slot = 1 ] || mv "$program" "$program.old"
        mv $HOME/new "$program"
        rm -f "$program.old"
      done
      $T status --json > $HOME/status
      $T stop > $HOME/stopped
      grep -c '"isRunning": true' $HOME/status
      grep -c ' stopped' $HOME/stopped
    done)sh",
                true),
            0)
      << text("status") << text("stopped") << text("err");
  std::istringstream counts(text("out"));
  std::string found;
  for (std::string line; std::getline(counts, line);)
    if (line == "2")
      found += line;
  EXPECT_EQ(found, "2222") << text("out");
}

TEST_F(ProgramTest, WithoutABusSlotsStartAndStopAllTheSame) {
  EXPECT_EQ(run("$T start --starter && $T status --json > $HOME/status && $T stop && ! $T stop "
                "| grep -v Nothing"),
            0)
      << text("out") << text("err");
  EXPECT_THAT(text("status"), Not(HasSubstr("\"isRunning\": false")));
}

TEST_F(ProgramTest, AFailingSlotGivesItsLastWords) {
  EXPECT_EQ(run("$T widgets add clock --place; FAKE_SLOT_FAULT=die $T start", true), 1);
  EXPECT_THAT(text("out"), HasSubstr("ended: slot 1: cannot draw"));
  EXPECT_EQ(run("rm \"$HOME/bundles/Tavrin Slot 1.app/Contents/MacOS/TavrinSlot\"; $T start"), 1);
  EXPECT_THAT(text("err"), HasSubstr("there is no \"Tavrin Slot 1.app\" in"));
}

TEST_F(ProgramTest, TheStoredBusIsFound) {
  EXPECT_EQ(run(R"sh(
    mkdir -p $HOME/.local/state/tavrin
    dbus-daemon --session --fork --nopidfile --print-address=1 --print-pid=1 > $HOME/bus
    sed -n 1p $HOME/bus > $HOME/.local/state/tavrin/session-bus
    $T widgets add clock --place && $T start && $T open Clock; status=$?
    $T stop; kill $(sed -n 2p $HOME/bus)
    exit $status)sh"),
            0)
      << text("err");
  EXPECT_EQ(text("notes"), "open 1\n");
}

TEST_F(ProgramTest, EditRequestsOpenTheEditorInATerminal) {
  makeEditor();
  EXPECT_EQ(run(R"sh(
    export TERMINAL=$HOME/terminal VISUAL=$HOME/editor
    $T widgets add pomodoro Focus
    id=$($T widgets show Focus --json | sed -n 's/^  "id": "\(.*\)",$/\1/p')
    $T edit > $HOME/edits & service=$!
    until grep -q Waiting $HOME/edits; do sleep 0.02; done
    $T edit | grep -q "there is nothing to do" || exit 9
    dbus-send --session --type=signal /dev/quellby/tavrin/Notifications \
      dev.quellby.tavrin.Notifications.Posted string:dev.quellby.tavrin.editWidget string:$id
    for i in $(seq 200); do $T widgets show Focus --json | grep -q '"focus": 3000' && break
      sleep 0.02; done
    kill $service
    $T widgets show Focus --json | grep -c '"focus": 3000')sh",
                true),
            0)
      << text("out") << text("err");
}

/// Each data folder has a service of its own; a request is for the one that has the widget.
TEST_F(ProgramTest, EditRequestsOfTwoDataFoldersGoToTheirOwn) {
  makeEditor();
  EXPECT_EQ(run(R"sh(
    export TERMINAL=$HOME/terminal VISUAL=$HOME/editor
    for folder in one two; do
      export TAVRIN_APP_SUPPORT_DIR=$HOME/$folder
      $T widgets add pomodoro Focus
      $T edit > $HOME/edits-$folder 2>&1 & services="$services $!"
      until grep -q Waiting $HOME/edits-$folder; do sleep 0.02; done
      $T edit > $HOME/second-$folder || exit 9
    done
    id=$($T widgets show Focus --json | sed -n 's/^  "id": "\(.*\)",$/\1/p')
    dbus-send --session --type=signal /dev/quellby/tavrin/Notifications \
      dev.quellby.tavrin.Notifications.Posted string:dev.quellby.tavrin.editWidget string:$id
    for i in $(seq 200); do $T widgets show Focus --json | grep -q '"focus": 3000' && break
      sleep 0.02; done
    kill $services
    $T widgets show Focus --json | grep -q '"focus": 3000' || exit 8
    cat $HOME/edits-one)sh",
                true),
            0)
      << text("out") << text("err");
  EXPECT_THAT(text("out"), Not(HasSubstr("tavrin:"))) << "the other's request is none of its own";
  EXPECT_THAT(text("second-two"), HasSubstr("answers edit requests already"));
}

TEST_F(ProgramTest, AClosedTerminalDoesNotHoldUpTheNextRequest) {
  // A terminal that hands its window over and ends; closing the window kills what is in it.
  std::ofstream(home / "terminal") << "#!/bin/sh\nshift\n\"$@\" &\n";
  std::ofstream(home / "editor") << "#!/bin/sh\n"
                                    "if mkdir $HOME/once 2>/dev/null; then kill -9 $PPID; sleep 1\n"
                                    "else sed -i 's/1500/3000/' \"$1\"; fi\n";
  EXPECT_EQ(run(R"sh(
    chmod +x $HOME/terminal $HOME/editor
    export TERMINAL=$HOME/terminal VISUAL=$HOME/editor
    $T widgets add pomodoro Focus
    id=$($T widgets show Focus --json | sed -n 's/^  "id": "\(.*\)",$/\1/p')
    $T edit > $HOME/edits 2>&1 & service=$!
    until grep -q Waiting $HOME/edits; do sleep 0.02; done
    ask() { dbus-send --session --type=signal /dev/quellby/tavrin/Notifications \
      dev.quellby.tavrin.Notifications.Posted string:dev.quellby.tavrin.editWidget string:$id; }
    ask
    for i in $(seq 300); do grep -q "terminal was closed" $HOME/edits && break; sleep 0.02; done
    ask
    for i in $(seq 300); do $T widgets show Focus --json | grep -q '"focus": 3000' && break
      sleep 0.02; done
    kill $service
    $T widgets show Focus --json | grep -c '"focus": 3000')sh",
                true),
            0)
      << text("edits") << text("err");
}

// The last writer wins, but every state in between is a whole file.
TEST_F(ProgramTest, ConcurrentEditorsLeaveAWholeFile) {
  run("for i in 1 2 3 4; do $T widgets add clock c$i; done");
  EXPECT_EQ(run(R"sh(
    for i in 1 2 3 4; do
      (for n in 1 2 3 4 5 6 7 8; do $T widgets set c$i span=$((n % 4 + 1)) || exit 1; done) &
      jobs="$jobs $!"
    done
    for job in $jobs; do wait $job || exit 1; done
    $T widgets list --json)sh"),
            0)
      << text("err");
  EXPECT_EQ(run("$T widgets list --json"), 0);
  EXPECT_EQ(JSONValue::parse(text("out")).member("widgets")->array()->size(), 4U);
}

} // namespace
} // namespace tavrin

#include "Tests/macOS/Objc/MacTest.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Dock/PropertyList.h"
#include "TavrinPlatform/CommandPlatform.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinPlatform/macOS/Applications/MacAutostart.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/macOS/Fakes/MachineFakes.h"

#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <thread>

namespace tavrin::test {
namespace {

namespace fs = std::filesystem;

class MacCommandTest : public MacTest {
protected:
  MacCommandTest() { settle([] { (void)INFocusStatusCenter.defaultCenter; }); }
  ~MacCommandTest() override { machine = {}; }
  std::unique_ptr<CommandPlatform> platform_ = makeCommandPlatform();
};

double secondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST_F(MacCommandTest, ItsTimeGoesToTheSystemsLoop) {
  std::vector<double> turns;
  int heard = 0;
  const auto token = platform_->notifications().observe("dev.quellby.test", [&](const auto&) { ++heard; });
  machine.loopTurn = [&](double seconds) {
    turns.push_back(seconds);
    if (turns.size() == 1)
      platform_->notifications().post("dev.quellby.test");
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return kCFRunLoopRunHandledSource;
  };
  EXPECT_GE(secondsOf([&] { platform_->wait(0.05); }), 0.05) << "an event does not cut it short";
  EXPECT_EQ(heard, 1);
  EXPECT_EQ(turns.at(0), 0.05);
  EXPECT_TRUE(std::ranges::is_sorted(turns, std::greater<>())) << "what is left of it";
  turns.clear();
  platform_->waitForEvent();
  EXPECT_EQ(turns, std::vector<double>{3600}) << "one event is enough";
  turns.clear();
  machine.loopTurn = [&](double seconds) {
    turns.push_back(seconds);
    return kCFRunLoopRunFinished;
  };
  EXPECT_GE(secondsOf([&] { platform_->wait(0.25); }), 0.25);
  EXPECT_LE(turns.size(), 4U) << "a loop with nothing to wait for is not spun";
}

TEST_F(MacCommandTest, OneEventLoopServesTheDockUntilASignal) {
  auto& dock = platform_->dockServices();
  EXPECT_EQ(&dock, &platform_->dockServices());
  EXPECT_EQ(&dock.runLoop(), &dock.runLoop());
  EXPECT_EQ(&dock.globalShortcuts(), &dock.globalShortcuts());
  EXPECT_EQ(&dock.focusStatus(), &dock.focusStatus());
  EXPECT_EQ(called(), Calls{}) << "a program with windows stays as it is";
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    dock.runUntilStopped([&] {
      note("started");
      QTimer::singleShot(0, [&] {
        note("served");
        std::raise(number);
      });
    });
    EXPECT_EQ(called(), (Calls{"started", "served"})) << number;
    EXPECT_EQ(std::signal(number, SIG_DFL), SIG_DFL) << number;
  }
  dock.log().write(LogLevel::error, "dev.quellby.tavrin", "dock", "words");
  EXPECT_EQ(called(), Calls{"log 16 words"});
}

TEST_F(MacCommandTest, TellsWhatThisSystemKeepsFromPrograms) {
  const auto stateOf = [&](const std::string& topic) {
    for (const auto& item : platform_->desktopReport().items)
      if (item.topic == topic)
        return std::string(name(item.state)) + (item.remedy.empty() ? "" : ", with a remedy");
    return std::string("nothing");
  };
  EXPECT_EQ(stateOf("surface"), "good");
  EXPECT_EQ(stateOf("players"), "limited");
  EXPECT_EQ(stateOf("airdrop"), "limited");
  EXPECT_EQ(stateOf("fanHelper"), "limited, with a remedy") << "no bundle is known";
  EXPECT_EQ(stateOf("focus"), "missing");
  appKit.installed.emplace()["dev.quellby.Tavrin.Slot1"] = "/Applications/Tavrin Slot 1.app";
  auto& bundle = foundation.bundles["/Applications/Tavrin Slot 1.app"];
  bundle.information["TavrinTeam"] = @"";
  EXPECT_EQ(stateOf("fanHelper"), "limited, with a remedy");
  bundle.information["TavrinTeam"] = @"AB12CD34EF";
  EXPECT_EQ(stateOf("fanHelper"), "good");
  services.focusAccess = INFocusStatusAuthorizationStatusAuthorized;
  EXPECT_EQ(stateOf("focus"), "good");
}

TEST_F(MacCommandTest, ALaunchAgentStartsTheWidgetsWithTheSession) {
  const TemporaryFolder home;
  const auto agent = home / "Library/LaunchAgents/dev.quellby.Tavrin.start.plist";
  MacAutostart autostart(home.path(), "/opt/tavrin & co/bin/tavrin");
  EXPECT_FALSE(autostart.status().isOn);
  EXPECT_TRUE(autostart.status().isAvailable);
  EXPECT_TRUE(autostart.set(true).isOn);
  EXPECT_NE(autostart.status().sentence.find(agent.string()), std::string::npos);
  const auto made = PropertyList::parse(readFile(agent).value_or(""));
  EXPECT_EQ(*made.entry("Label"), PropertyList("dev.quellby.Tavrin.start")) << "the file's own name";
  EXPECT_EQ(*made.entry("ProgramArguments"),
            (PropertyList::Array{"/opt/tavrin & co/bin/tavrin", "start"}));
  EXPECT_EQ(*made.entry("RunAtLoad"), PropertyList(true));
  ASSERT_NE(made.entry("LimitLoadToSessionType"), nullptr);
  EXPECT_EQ(*made.entry("LimitLoadToSessionType"), PropertyList("Aqua")) << "only where there is a Dock";
  EXPECT_EQ(made.entry("KeepAlive"), nullptr) << "it ends once the widgets are there";
  services.forbidden = {agent.string()};
  EXPECT_FALSE(autostart.status().isOn);
  EXPECT_NE(autostart.status().sentence.find("Login Items"), std::string::npos);
  services.forbidden.clear();
  EXPECT_FALSE(autostart.set(false).isOn);
  EXPECT_FALSE(fs::exists(agent));
  EXPECT_FALSE(autostart.set(false).isOn) << "twice is no failure";
  fs::remove_all(home / "Library");
  put(home / "Library", "a file");
  EXPECT_THROW(autostart.set(true), FileError);
}

TEST_F(MacCommandTest, TheSettingsBundleHasTheCommandOfItsTreeStarted) {
  const TemporaryFolder home, tree;
  fs::create_directory(tree / "bin");
  put(tree / "bin/tavrin", "the command");
  for (const char* bundles : {"lib/tavrin", "bundles"}) {
    MacAutostart autostart(home.path(), tree / bundles / "Tavrin Settings.app/Contents/MacOS/TavrinSettings");
    autostart.set(true);
    const auto made = PropertyList::parse(
        readFile(home / "Library/LaunchAgents/dev.quellby.Tavrin.start.plist").value_or(""));
    EXPECT_EQ(*made.entry("ProgramArguments"), (PropertyList::Array{(tree / "bin/tavrin").string(), "start"})) << bundles;
  }
}

} // namespace
} // namespace tavrin::test

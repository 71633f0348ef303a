#include "TavrinPlatform/Linux/Input/InputGrab.h"
#include "TavrinPlatform/Linux/Input/InputGuard.h"
#include "TavrinPlatform/Linux/Input/LinuxInputBlocker.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "Tests/Linux/Desk.h"
#include "Tests/Platform/InputBlockerContract.h"

#include <QCoreApplication>
#include <algorithm>
#include <csignal>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <xcb/xcb.h>
#include <xcb/xinput.h>

/// Input held on a real X server, with another program's window to tell what reaches it.
namespace {

/// Of all that were made here, the last.
xcb_connection_t* lastConnection = nullptr;

} // namespace

extern "C" xcb_connection_t* xcb_connect(const char* display, int* screen) {
  const auto connect = reinterpret_cast<decltype(&xcb_connect)>(::dlsym(RTLD_NEXT, "xcb_connect"));
  return lastConnection = connect(display, screen);
}

namespace tavrin {
namespace {

class Lock : public testing::Test {
protected:
  void SetUp() override {
    other_ = std::make_unique<Program>(
        "/usr/bin/xev", QStringList{"-geometry", "300x300+10+40", "-name", "elsewhere"});
    ASSERT_TRUE(eventually([&] {
      id_ = shell("xdotool search --onlyvisible --name '^elsewhere$' 2>/dev/null | head -1");
      return !id_.empty();
    }));
    shell("xdotool windowactivate --sync " + id_ + " mousemove 150 190");
    ASSERT_TRUE(reaches());
  }

  int presses() { return other_->number("KeyPress event") + other_->number("ButtonPress event"); }
  /// Whether keys and clicks reach the other window. To be sure that nothing came, something that
  /// comes in any case is waited for: the property that is set last.
  bool reaches(const std::string& what = "key a click 1") {
    const int before = presses();
    shell("xdotool " + what);
    const int marks = other_->number("PropertyNotify event");
    shell("xprop -id " + id_ + " -f TAVRIN_MARK 32c -set TAVRIN_MARK 1");
    EXPECT_TRUE(other_->says("PropertyNotify event", marks + 1));
    return presses() > before;
  }
  /// Seconds until keys reach the other window again.
  double freedAfter() {
    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(eventually([&] { return reaches("key a"); }));
    return static_cast<double>(timer.elapsed()) / 1000;
  }
  std::unique_ptr<Program> locker(const QString& how = "all,60") {
    auto program = std::make_unique<Program>(TILE_DOUBLE, QStringList{"--lock=" + how},
                                             QStringList{"TAVRIN_SURFACE=picture"});
    EXPECT_TRUE(program->says("hold "));
    return program;
  }
  static std::string guardOf(const Program& program) {
    return shell("pgrep -P " + std::to_string(program.id()));
  }

  std::unique_ptr<Program> other_;
  std::string id_;
};

TEST_F(Lock, NothingReachesAnotherWindowUntilItIsReleased) {
  auto program = locker();
  ASSERT_EQ(program->number("hold 0"), 1);
  EXPECT_FALSE(reaches());
  EXPECT_FALSE(reaches("key ctrl+alt+t key XF86AudioMute click 3 click 4 mousemove 100 100"));
  for (const char* type :
       {"input 10", "input 11", "input 1", "input 2", "input 3", "input 22", "input 5"})
    EXPECT_TRUE(program->says(type)) << type;
  program.reset();
  EXPECT_LT(freedAfter(), 1);
}

TEST_F(Lock, WithoutThePointerClicksPass) {
  const auto program = locker("keyboard,60");
  EXPECT_FALSE(reaches("key a"));
  EXPECT_TRUE(reaches("click 1"));
}

TEST_F(Lock, ACrashOfEitherProcessReleases) {
  auto program = locker();
  ::kill(static_cast<pid_t>(program->id()), SIGKILL);
  EXPECT_LT(freedAfter(), 1);
  program = locker();
  shell("kill -KILL " + guardOf(*program));
  EXPECT_LT(freedAfter(), 1);
  EXPECT_TRUE(program->says("hold ended"));
}

TEST_F(Lock, AProcessThatStandsStillReleases) {
  auto program = locker();
  ::kill(static_cast<pid_t>(program->id()), SIGSTOP);
  EXPECT_LT(freedAfter(), 5);
  ::kill(static_cast<pid_t>(program->id()), SIGCONT);
  EXPECT_TRUE(program->says("hold ended"));
  program = locker();
  shell("kill -STOP " + guardOf(*program));
  EXPECT_LT(freedAfter(), 5);
  EXPECT_TRUE(program->says("hold ended"));
}

TEST_F(Lock, AGuardThatStandsStillEndsWithItsSlot) {
  const auto program = locker();
  const std::string guard = guardOf(*program);
  ASSERT_FALSE(guard.empty());
  shell("kill -STOP " + guard);
  ::kill(static_cast<pid_t>(program->id()), SIGKILL);
  EXPECT_LT(freedAfter(), 2);
  // And where the slot has gone before the guard could ask to follow it.
  EXPECT_EQ(shell(std::string(TILE_DOUBLE) + " --input-guard all 60 1 </dev/null"), "");
}

TEST_F(Lock, LockKeysAreAsBefore) {
  const auto lights = [] {
    return shell("xset q | grep -o 'Caps Lock: *[onf]*\\|Num Lock: *[onf]*' | tr -d ' \n'");
  };
  const std::string off = "CapsLock:offNumLock:off";
  ASSERT_EQ(lights(), off);
  auto program = locker();
  for (const char* key : {"Caps_Lock", "Num_Lock", "Caps_Lock"}) {
    shell(std::string("xdotool key ") + key);
    EXPECT_TRUE(program->says("input 11"));
    EXPECT_TRUE(eventually([&] { return lights() == off; })) << key << " " << lights();
  }
  program.reset();
  EXPECT_LT(freedAfter(), 1);
  EXPECT_EQ(lights(), off);
  shell("xdotool key Caps_Lock");
  const std::string on = "CapsLock:onNumLock:off";
  ASSERT_EQ(lights(), on);
  program = locker();
  shell("xdotool key Caps_Lock key Num_Lock");
  EXPECT_TRUE(program->says("input 11", 2));
  EXPECT_TRUE(eventually([&] { return lights() == on; })) << lights();
  program.reset();
  shell("xdotool key Caps_Lock");
  EXPECT_EQ(lights(), off);
}

/// As the key for it does on a screen of its own, which this server without one does not know.
void giveUp(xcb_connection_t* connection) {
  constexpr std::uint16_t coreKeyboard = 3;
  xcb_input_xi_ungrab_device(connection, XCB_CURRENT_TIME, coreKeyboard);
  xcb_flush(connection);
}

TEST_F(Lock, GrabsThatTheServerGaveUpAreTakenAgain) {
  const auto grab = InputGrab::x11();
  ASSERT_EQ(grab->begin(true), InputGrab::Result::holding);
  xcb_connection_t* connection = lastConnection;
  EXPECT_FALSE(reaches());
  giveUp(connection);
  EXPECT_TRUE(eventually([&] { return reaches("key a"); }));
  EXPECT_TRUE(grab->renew());
  EXPECT_FALSE(reaches());
  EXPECT_TRUE(grab->renew());
  EXPECT_FALSE(reaches());
  std::vector<char> types;
  EXPECT_TRUE(grab->read(types));
  EXPECT_NE(std::ranges::find(types, 10), types.end());

  giveUp(connection);
  EXPECT_TRUE(eventually([&] { return reaches("key a"); }));
  const auto other = locker("keyboard,60");
  ASSERT_EQ(other->number("hold 0"), 1);
  EXPECT_FALSE(grab->renew()) << "another program has it";
}

TEST_F(Lock, EachScreenSaverCountsForItself) {
  const auto name = [](const char* saver) { return std::string("org.") + saver + ".ScreenSaver"; };
  const auto start = [&](const char* saver) {
    auto mock = std::make_unique<Program>("/usr/bin/python3",
                                          QStringList{"-m", "dbusmock", "--session",
                                                      QString::fromStdString(name(saver)),
                                                      QString("/org/%1/ScreenSaver").arg(saver),
                                                      QString::fromStdString(name(saver))});
    shell("gdbus wait --session --timeout 10 " + name(saver));
    return mock;
  };
  const auto set = [&](const char* saver, bool isActive) {
    shell("gdbus call --session -d " + name(saver) + " -o /org/" + saver +
          "/ScreenSaver -m org.freedesktop.DBus.Mock.EmitSignal " + name(saver) +
          " ActiveChanged b '[<" + (isActive ? "true" : "false") + ">]'");
  };
  auto gnome = start("gnome");
  const auto mate = start("mate");
  const auto program = locker();
  ASSERT_TRUE(eventually([&] {
    set("gnome", true);
    return program->number("no need") > 0;
  }));
  EXPECT_TRUE(program->says("locked 1"));
  set("mate", true);
  set("mate", false);
  set("gnome", true);
  EXPECT_EQ(program->number("locked 0"), 0) << "one that is over ends no other";
  gnome.reset();
  EXPECT_TRUE(program->says("locked 0")) << "one that has gone locks nothing";
}

TEST_F(Lock, TheGuardKnowsTheLimitItself) {
  const auto program = locker("all,1");
  EXPECT_TRUE(program->says("hold ended"));
  EXPECT_TRUE(reaches());
}

TEST_F(Lock, WhereAnotherHasTheKeyboardItIsNotTaken) {
  const auto first = locker();
  const auto second = locker();
  EXPECT_EQ(second->number("hold 2"), 1);
  EXPECT_FALSE(reaches());
}

TEST_F(Lock, LockedScreensAndSleepEndTheNeed) {
  const char* const events[] = {
      "gdbus emit --session -o /org/gnome/ScreenSaver -s org.gnome.ScreenSaver.ActiveChanged true",
      "gdbus call --system -d org.freedesktop.login1 -o /org/freedesktop/login1 -m "
      "org.freedesktop.DBus.Mock.EmitSignal org.freedesktop.login1.Manager PrepareForSleep b "
      "'[<true>]'"};
  for (const char* event : events) {
    const auto program = locker();
    ASSERT_TRUE(eventually([&] {
      shell(event);
      return program->number("no need") > 0;
    })) << event;
    EXPECT_LT(freedAfter(), 1);
  }
}

TEST_F(Lock, RoundsThatEndInEveryWay) {
  // The number of rounds; more of them on demand.
  const int rounds =
      qEnvironmentVariableIsSet("LOCK_ROUNDS") ? qEnvironmentVariableIntValue("LOCK_ROUNDS") : 6;
  double longest = 0;
  for (int round = 0; round < rounds; ++round) {
    auto program = locker();
    ASSERT_FALSE(reaches("key a")) << round;
    if (round % 4 == 1)
      ::kill(static_cast<pid_t>(program->id()), SIGKILL);
    else if (round % 4 == 3)
      ::kill(static_cast<pid_t>(program->id()), SIGSTOP);
    else
      program.reset();
    longest = std::max(longest, freedAfter());
    if (program)
      ::kill(static_cast<pid_t>(program->id()), SIGCONT);
  }
  RecordProperty("longestSeconds", std::to_string(longest));
  std::printf("%d rounds, freed after %.2f s at the latest\n", rounds, longest);
  EXPECT_LT(longest, 5);
}

TEST(LockWithoutADisplay, IsNotPermittedWhereNoDeviceMayBeOpened) {
  if (shell("ls /dev/input/event* 2>/dev/null") != "")
    GTEST_SKIP() << "there are devices here";
  Program program(TILE_DOUBLE, {"--lock=all,60"},
                  {"TAVRIN_SURFACE=picture", "DISPLAY=", "QT_QPA_PLATFORM=offscreen"});
  EXPECT_TRUE(program.says("hold "));
  EXPECT_EQ(program.number("hold 0"), 0);
}

} // namespace

namespace test {
namespace {

struct GuardedRig {
  InputBlocker& blocker() { return blocker_; }
  static void press() { shell("xdotool key a"); }
  void takeKeyboard() {
    other_ = InputGrab::x11();
    ASSERT_EQ(other_->begin(false), InputGrab::Result::holding);
  }
  static void lockScreen() {
    shell("gdbus emit --session -o /org/gnome/ScreenSaver -s org.gnome.ScreenSaver.ActiveChanged "
          "true");
  }
  static bool comesTrue(const std::function<bool()>& condition, int milliseconds = patience) {
    return eventually(
        [&] {
          QCoreApplication::processEvents();
          return condition();
        },
        milliseconds);
  }
  std::unique_ptr<InputGrab> other_;
  QtRunLoop loop_;
  std::unique_ptr<Bus> session_ = Bus::session();
  std::unique_ptr<Bus> system_ = Bus::system();
  LinuxInputBlocker blocker_{loop_, session_.get(), [this] { return system_.get(); }};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Guarded, InputBlockerContract, GuardedRig);

} // namespace
} // namespace test
} // namespace tavrin

int main(int argc, char** argv) {
  // A hold's guard is this program itself.
  if (const auto status = tavrin::runInputGuardIfAsked(argc, argv))
    return *status;
  testing::InitGoogleTest(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}

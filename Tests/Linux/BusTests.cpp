#include "TavrinPlatform/Linux/Desktop/BusNotificationCenter.h"
#include "TavrinPlatform/Linux/Desktop/LinuxFocusStatusProvider.h"
#include "TavrinPlatform/Linux/Desktop/LinuxWorkspace.h"
#include "TavrinPlatform/Linux/Files/LinuxFileManager.h"
#include "TavrinPlatform/Qt/PictureSurface.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "Tests/Linux/Desk.h"
#include "Tests/Platform/FocusStatusContract.h"
#include "Tests/Platform/NotificationCenterContract.h"

#include <QCoreApplication>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

/// What goes over the session bus: posts, identity, notices.
namespace tavrin {
namespace {

namespace fs = std::filesystem;

/// A bundle with a hard link of the program under test.
QString bundle(const std::string& identifier) {
  const fs::path contents = fs::path(std::getenv("HOME")) / (identifier + ".app/Contents");
  fs::create_directories(contents / "MacOS");
  std::ofstream(contents / "Info.plist")
      << "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>" << identifier
      << "</string></dict></plist>";
  const fs::path program = contents / "MacOS/TavrinSlot";
  fs::remove(program);
  std::error_code error;
  fs::create_hard_link(TILE_DOUBLE, program, error);
  // The home may lie on another file system.
  if (error)
    fs::copy_file(TILE_DOUBLE, program);
  return QString::fromStdString(program.string());
}

const QStringList picture = {"TAVRIN_SURFACE=picture"};

std::string callApplication(const std::string& method) {
  return shell("gdbus call --session -d dev.test.Slot1 -o /dev/test/Slot1 -m "
               "org.freedesktop.Application." +
               method + " 2>&1");
}

TEST(BusNotificationCenter, APostReachesEveryProcessWithItsObject) {
  QtRunLoop loop;
  const auto bus = Bus::session();
  ASSERT_TRUE(bus);
  BusNotificationCenter center(bus.get(), loop);
  std::vector<std::optional<std::string>> own;
  const auto token = center.observe("a.b", [&](const auto& object) { own.push_back(object); });
  int others = 0;
  const auto other = center.observe("a.c", [&](const auto&) { ++others; });
  Program program(TILE_DOUBLE, {"--observe=a.b"}, picture);
  ASSERT_TRUE(program.says("started"));
  // The other process has subscribed once it answers on the bus.
  ASSERT_TRUE(eventually([&] {
    center.post("a.b");
    QCoreApplication::processEvents();
    return program.number("posted") > 0;
  }));
  center.post("a.b", "mark");
  ASSERT_TRUE(untilTrue([&] { return !own.empty() && own.back() == "mark"; }));
  own.clear();
  center.post("a.b", "");
  center.post("a.b", "x y");
  center.post("a.b");
  EXPECT_TRUE(own.empty()) << "never inside of the post";
  ASSERT_TRUE(untilTrue([&] { return own.size() == 3; }));
  EXPECT_EQ(own, (std::vector<std::optional<std::string>>{"", "x y", std::nullopt}));
  EXPECT_TRUE(program.says("posted x y"));
  EXPECT_EQ(others, 0);
}

TEST(BusNotificationCenter, WithoutABusPostsReachThisProcess) {
  QtRunLoop loop;
  BusNotificationCenter center(nullptr, loop);
  std::vector<std::optional<std::string>> got;
  TokenPtr token;
  token = center.observe("n", [&](const auto& object) {
    got.push_back(object);
    token.reset();
  });
  center.post("n", "1");
  EXPECT_TRUE(got.empty()) << "never inside of the post";
  center.post("n", "2");
  ASSERT_TRUE(untilTrue([&] { return !got.empty(); }));
  QCoreApplication::processEvents();
  EXPECT_EQ(got.size(), 1U) << "the token went with the first";
}

TEST(Application, OneProcessForEachBundle) {
  const QString path = bundle("dev.test.Slot1");
  Program first(path, {"--background"}, picture);
  ASSERT_TRUE(first.says("started"));
  {
    Program quiet(path, {"--background"}, picture);
    ASSERT_TRUE(quiet.ends());
    EXPECT_EQ(quiet.exitCode(), 0);
    EXPECT_EQ(quiet.number("started"), 0);
    EXPECT_EQ(first.number("opened"), 0);
  }
  {
    Program second(path, {}, picture);
    ASSERT_TRUE(second.ends());
    EXPECT_EQ(second.number("started"), 0);
    EXPECT_TRUE(first.says("opened"));
  }
  Program third(path, {}, picture);
  ASSERT_TRUE(third.ends());
  EXPECT_EQ(callApplication("Activate '{}'"), "()");
  EXPECT_EQ(first.number("closed"), 0) << "only a click closes the panel";
  EXPECT_EQ(callApplication("ActivateAction toggle '[]' '{}'"), "()");
  EXPECT_TRUE(first.says("closed"));
  Program dropping(path, {"/tmp/a b.txt"}, picture);
  ASSERT_TRUE(dropping.ends());
  EXPECT_TRUE(first.says("open /tmp/a b.txt"));
  Program neighbour(bundle("dev.test.Slot2"), {"--background"}, picture);
  EXPECT_TRUE(neighbour.says("started"));
}

TEST(Application, AnswersTheDesktop) {
  Program program(bundle("dev.test.Slot1"), {"--background"}, picture);
  ASSERT_TRUE(program.says("started"));
  EXPECT_EQ(callApplication("Activate '{}'"), "()");
  EXPECT_TRUE(program.says("opened"));
  EXPECT_EQ(callApplication("ActivateAction open '[]' '{}'"), "()");
  EXPECT_EQ(callApplication("Open \"['file:///tmp/x%20y', 'https://h/']\" '{}'"), "()");
  EXPECT_TRUE(program.says("open /tmp/x y"));
  EXPECT_NE(callApplication("Open \"['file:///tmp/x.refused']\" '{}'").find("takes no such files"),
            std::string::npos);
  EXPECT_NE(callApplication("ActivateAction nothing '[]' '{}'").find("no such action"),
            std::string::npos);
  callApplication("ActivateAction quit '[]' '{}'");
  EXPECT_TRUE(program.says("ended"));
}

TEST(Application, SignalsEndTheLoopCleanly) {
  for (const char* signal : {"TERM", "INT", "HUP"}) {
    SCOPED_TRACE(signal);
    Program program(TILE_DOUBLE, {}, picture);
    ASSERT_TRUE(program.says("started"));
    shell(std::string("kill -") + signal + " " + std::to_string(program.id()));
    EXPECT_TRUE(program.says("ended"));
    EXPECT_TRUE(program.ends());
    EXPECT_EQ(program.exitCode(), 0);
  }
}

TEST(Application, NeedsNoBus) {
  Program program(bundle("dev.test.Slot1"), {"--observe=x"},
                  picture + QStringList{"DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere"});
  EXPECT_TRUE(program.says("started"));
  program.terminate();
  EXPECT_TRUE(program.says("ended"));
}

TEST(PictureSurface, TheFileChangesWithThePicture) {
  const std::string folder = std::string(std::getenv("HOME")) + "/tiles";
  Program program(bundle("dev.test.Slot1"), {"--tick"},
                  picture + QStringList{QString::fromStdString("TAVRIN_PICTURE_DIR=" + folder)});
  const std::string file = folder + "/dev.test.Slot1.png";
  ASSERT_TRUE(eventually([&] { return fs::exists(file); }));
  EXPECT_EQ(shell("identify -format '%m %w %h' " + file), "PNG 96 96");
  const std::string before = shell("md5sum < " + file);
  EXPECT_TRUE(eventually([&] { return shell("md5sum < " + file) != before; }));
  EXPECT_EQ(shell("ls " + folder), "dev.test.Slot1.png") << "nothing half written";
  program.terminate();
  EXPECT_TRUE(program.says("ended"));
  EXPECT_TRUE(program.ends());
  EXPECT_EQ(shell("ls " + folder), "") << "it would pass for a tile that lives";
}

TEST(PictureSurface, SaysWhyThereIsNoFile) {
  struct Sink final : LogSink {
    void write(LogLevel, std::string_view, std::string_view, std::string_view message) override {
      lines.emplace_back(message);
    }
    std::vector<std::string> lines;
  } log;
  const fs::path home = std::getenv("HOME");
  std::ofstream(home / "plain") << "x";
  fs::create_directories(home / "taken.png");
  const std::pair<fs::path, const char*> cases[] = {
      {home / "plain/tiles/a.png", "Not a directory"},
      {home / "taken.png", "Is a directory"},
      {"/proc/none/a.png", "No such file or directory"}};
  QImage image(4, 4, QImage::Format_ARGB32_Premultiplied);
  for (const auto& [file, reason] : cases) {
    PictureSurface surface(file, 48, log);
    log.lines.clear();
    for (const QColor colour : {Qt::red, Qt::green}) {
      image.fill(colour);
      errno = EBADF; // of something before
      surface.display(image);
    }
    ASSERT_EQ(log.lines.size(), 1U) << file;
    EXPECT_EQ(log.lines.front(), "Failed to write " + file.string() + " because " + reason);
  }
}

TEST(PictureSurface, APictureThatCouldNotBeWrittenIsWrittenOnceItCan) {
  struct Sink final : LogSink {
    void write(LogLevel, std::string_view, std::string_view, std::string_view) override {}
  } log;
  const fs::path inTheWay = fs::path(std::getenv("HOME")) / "in-the-way";
  std::ofstream(inTheWay) << "x";
  const fs::path file = inTheWay / "a.png";
  PictureSurface surface(file, 48, log);
  QImage image(4, 4, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::red);
  surface.display(image);
  image.fill(Qt::green); // The surface has the picture that it was given.
  fs::remove(inTheWay);
  ASSERT_TRUE(untilTrue([&] { return fs::exists(file); }));
  EXPECT_EQ(QImage(QString::fromStdString(file.string())).pixelColor(1, 1), QColor(Qt::red));
}

/// A desk without a settings portal.
TEST(Workspace, FollowsPlasmasColourSchemeByItself) {
  const fs::path home = fs::path(std::getenv("HOME")) / "plasma";
  fs::create_directories(home / ".config");
  const LinuxFileManager files({{"HOME", home.string()}});
  const auto bus = Bus::session();
  LinuxWorkspace workspace(files, bus.get(), [] { return nullptr; });
  int changes = 0;
  const auto observation = workspace.observeAppearance([&] { ++changes; });
  for (const char* ground : {"42,46,50", "239,240,241"}) {
    std::ofstream(home / ".config/kdeglobals")
        << "[Colors:Window]\nBackgroundNormal=" << ground << "\n";
    const int before = changes;
    EXPECT_TRUE(untilTrue([&] {
      shell("gdbus emit --session --object-path /KGlobalSettings --signal "
            "org.kde.KGlobalSettings.notifyChange 0 0");
      return changes > before;
    })) << ground;
    EXPECT_EQ(workspace.prefersDarkAppearance(), ground[0] == '4');
  }
}

std::string mockCalls(const std::string& method) {
  return shell("gdbus call --session -d org.freedesktop.systemd1 -o /org/freedesktop/systemd1 -m "
               "org.freedesktop.DBus.Mock.GetMethodCalls " +
               method);
}

TEST(UserNotifications, ADueNoticeIsHandedToTheUsersManager) {
  if (qEnvironmentVariable("DESK_KIND") != "systemd")
    GTEST_SKIP() << "there is no manager on this desk";
  const QString path = bundle("dev.test.Slot1");
  Program program(path, {"--notice=90"}, picture);
  ASSERT_TRUE(program.says("started"));
  ASSERT_TRUE(eventually(
      [&] { return mockCalls("StartTransientUnit").find("double.notice") != std::string::npos; }));
  const std::string call = mockCalls("StartTransientUnit");
  for (const std::string& wanted :
       {std::string("tavrin-notice-double.notice-"), std::string("OnCalendar"), std::string("UTC"),
        path.toStdString(), std::string("--notify"), std::string("'Body'")})
    EXPECT_NE(call.find(wanted), std::string::npos) << wanted << " in " << call;
}

TEST(UserNotifications, WithoutAManagerTheNoticeWaitsHere) {
  if (qEnvironmentVariable("DESK_KIND") == "systemd")
    GTEST_SKIP() << "there is a manager on this desk";
  Program monitor("/usr/bin/dbus-monitor",
                  {"--session", "interface='org.freedesktop.Notifications',member='Notify'"});
  ASSERT_TRUE(monitor.says("signal"));
  Program program(TILE_DOUBLE, {"--notice=1"}, picture);
  ASSERT_TRUE(program.says("started"));
  EXPECT_TRUE(monitor.says("   string \"Title\""));
  EXPECT_TRUE(monitor.says("   string \"Body\""));
}

/// What the notification server would tell about each of its notices.
void tellAll(const std::string& member, const std::string& argument) {
  for (const char* number : {"1", "2", "3", "4", "5", "6"})
    shell("gdbus emit --session --object-path /org/freedesktop/Notifications --signal "
          "org.freedesktop.Notifications." +
          member + " 'uint32 " + number + "' \"" + argument + "\"");
}

TEST(UserNotifications, TheProgramItselfShowsADueNoticeAndOpensOnAClick) {
  const QString path = bundle("dev.test.Slot1");
  const QStringList notice{"--notify", "id", "Done, $HOME", "Break"};
  Program monitor("/usr/bin/dbus-monitor",
                  {"--session", "interface='org.freedesktop.Notifications',member='Notify'"});
  ASSERT_TRUE(monitor.says("signal"));
  int count = 0;
  const auto repeatedly = [](const auto& signal, const auto& condition) {
    // The number is the server's count of notices; telling of those that are gone does nothing.
    return eventually([&] {
      signal();
      return condition();
    });
  };
  {
    Program closed(path, notice, picture);
    ASSERT_TRUE(monitor.says("   string \"Done, $HOME\"", ++count));
    EXPECT_TRUE(repeatedly([&] { tellAll("NotificationClosed", "uint32 2"); },
                           [&] { return closed.ends(); }));
    EXPECT_EQ(closed.number("started"), 0);
  }
  {
    Program clicked(path, notice, picture);
    ASSERT_TRUE(monitor.says("   string \"Done, $HOME\"", ++count));
    EXPECT_TRUE(repeatedly([&] { tellAll("ActionInvoked", "'default'"); },
                           [&] { return clicked.number("started") == 1; }))
        << "no slot runs: this becomes it";
  }
  Program slot(path, {"--background"}, picture);
  ASSERT_TRUE(slot.says("started"));
  Program clicked(path, notice, picture);
  ASSERT_TRUE(monitor.says("   string \"Done, $HOME\"", ++count));
  EXPECT_TRUE(repeatedly([&] { tellAll("ActionInvoked", "'default'"); },
                         [&] { return slot.number("opened") > 0; }));
  EXPECT_TRUE(clicked.ends());
  EXPECT_EQ(clicked.number("started"), 0);
}

} // namespace

namespace test {
namespace {

struct BusNoticesRig {
  DistributedNotificationCenter& center() { return center_; }
  /// Until a post of its own has come back, and with it all before it.
  void settle() {
    bool isBack = false;
    const auto token =
        center_.observe("dev.quellby.test.back", [&](const auto&) { isBack = true; });
    center_.post("dev.quellby.test.back");
    EXPECT_TRUE(untilTrue([&] { return isBack; }));
  }
  QtRunLoop loop_;
  std::unique_ptr<Bus> bus_ = Bus::session();
  BusNotificationCenter center_{bus_.get(), loop_};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Bus, NotificationCenterContract, BusNoticesRig);

/// A notification server that says whether it holds notices back.
struct BusFocusRig {
  BusFocusRig() { call("Reset"); }
  FocusStatusProvider& focus() { return focus_; }
  void set(bool flag) {
    const std::string value = flag ? "<true>" : "<false>";
    if (std::exchange(hasProperty_, true))
      call("UpdateProperties org.freedesktop.Notifications \"{'Inhibited': " + value + "}\"");
    else
      call("AddProperty org.freedesktop.Notifications Inhibited \"" + value + "\"");
  }

private:
  static void call(const std::string& method) {
    shell("gdbus call --session -d org.freedesktop.Notifications -o /org/freedesktop/Notifications "
          "-m org.freedesktop.DBus.Mock." +
          method);
  }
  LinuxFocusStatusProvider focus_;
  bool hasProperty_ = false;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Bus, FocusStatusContract, BusFocusRig);

} // namespace
} // namespace test
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}

#include "TavrinPlatform/Linux/Applications/LinuxApplicationLibrary.h"
#include "TavrinPlatform/Linux/Desktop/LinuxWorkspace.h"
#include "TavrinPlatform/Linux/Files/LinuxFileManager.h"
#include "TavrinPlatform/Linux/Input/LinuxColourSampler.h"
#include "TavrinPlatform/Linux/Input/LinuxGlobalShortcuts.h"
#include "TavrinPlatform/Linux/Slot/LinuxMainBundle.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "Tests/Linux/Desk.h"
#include "Tests/Platform/ApplicationLibraryContract.h"
#include "Tests/Platform/ColourSamplerContract.h"
#include "Tests/Platform/WorkspaceContract.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <QApplication>
#include <cstdlib>
#include <fmt/format.h>

/// The Linux adapters that want a desk, by the same suites as the others.
namespace tavrin::test {
namespace {

struct DeskRig {
  bool comesTrue(const std::function<bool()>& condition, int milliseconds = patience) {
    return eventually(
        [&] {
          QCoreApplication::processEvents();
          return condition();
        },
        milliseconds);
  }
  TemporaryFolder home_;
  LinuxFileManager files_{{{"HOME", home_.path().string()},
                           {"PATH", std::getenv("PATH")},
                           {"XDG_DATA_HOME", home_.path().string()},
                           {"XDG_CACHE_HOME", (home_ / "cache").string()},
                           {"XDG_DATA_DIRS", (home_ / "system").string()}}};
  QtRunLoop loop_;
  std::unique_ptr<Bus> session_ = Bus::session();
};

struct DesktopLibraryRig : DeskRig {
  ApplicationLibrary& library() { return library_; }
  ApplicationInfo install() {
    const auto folder = home_ / "applications";
    std::filesystem::create_directories(folder);
    ApplicationInfo app;
    app.id = "mail.desktop";
    app.path = (folder / app.id).string();
    app.name = "Mail";
    app.icon = (home_ / "mail.png").string();
    QImage picture(48, 48, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    picture.save(QString::fromStdString(app.icon));
    entry("/bin/true");
    return app;
  }
  void refuse() { entry("/nowhere/program"); }

private:
  void entry(const std::string& program) {
    put(home_ / "applications/mail.desktop",
        "[Desktop Entry]\nType=Application\nName=Mail\nExec=" + program + "\n");
  }
  LinuxMainBundle bundle_{"/nowhere/program"};
  LinuxApplicationLibrary library_{files_, loop_, session_.get(), ModuleFolder(files_, bundle_)};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, ApplicationLibraryContract, DesktopLibraryRig);

/// Where no portal picks, a click into the screen does.
struct ScreenSamplerRig : DeskRig {
  ColourSampler& sampler() { return sampler_; }
  static void take(const ColourSample& sample) {
    shell(fmt::format("xsetroot -solid '#{:02x}{:02x}{:02x}'; xdotool mousemove 700 500 click 1",
                      sample.red, sample.green, sample.blue));
  }
  static void cancel() { shell("xdotool click 3"); }
  LinuxColourSampler sampler_{nullptr};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Screen, ColourSamplerContract, ScreenSamplerRig);

/// A compositor's X server takes grabs that it never tells of while a Wayland window has the keys.
TEST(Shortcuts, AreRefusedWhereOnlyACompositorCouldGiveThem) {
  const std::vector<GlobalShortcuts::Shortcut> wanted{
      {"pick", "Pick", {8, HotkeyModifiers::command | HotkeyModifiers::control}}};
  EXPECT_TRUE(LinuxGlobalShortcuts(nullptr, "test", false).bind(wanted, {}).empty());
  const auto refused = LinuxGlobalShortcuts(nullptr, "test", true).bind(wanted, {});
  ASSERT_EQ(refused.size(), 1U);
  EXPECT_EQ(refused.front().id, "pick");
}

struct DesktopWorkspaceRig : DeskRig {
  DesktopWorkspaceRig() {
    setZone("Etc/GMT+12");
    // What is asked of a bus before it has answered once waits for the event loop.
    for (Bus* bus : {session_.get(), system_.get()}) {
      bool isThere = false;
      bus->call(bus->method(busDaemon, "GetId"), [&](auto*, const auto&) { isThere = true; });
      comesTrue([&] { return isThere; });
    }
  }
  ~DesktopWorkspaceRig() { setZone("Europe/Berlin"); }
  Workspace& workspace() { return workspace_; }
  static void wake() {
    shell("gdbus call --system -d org.freedesktop.login1 -o /org/freedesktop/login1 -m "
          "org.freedesktop.DBus.Mock.EmitSignal org.freedesktop.login1.Manager PrepareForSleep b "
          "'[<false>]'");
  }
  /// 26 hours further on it is another day.
  static void dayChange() {
    setZone("Etc/GMT-14");
    clockChange();
  }
  static void clockChange() {
    tell("/org/freedesktop/timedate1", "org.freedesktop.timedate1", "@a{sv} {}");
  }
  static void setLowPower(bool flag) {
    tell("/net/hadess/PowerProfiles", "net.hadess.PowerProfiles",
         std::string("{'ActiveProfile': <'") + (flag ? "power-saver" : "balanced") + "'>}");
  }
  static void setDark(bool flag) { set("color-scheme", flag); }
  static void setReducedMotion(bool flag) { set("reduced-motion", flag); }

private:
  static void setZone(const char* zone) {
    ::setenv("TZ", zone, 1);
    ::tzset();
  }
  static void tell(const std::string& path, const std::string& interface,
                   const std::string& changes) {
    shell("gdbus emit --system --object-path " + path +
          " --signal org.freedesktop.DBus.Properties.PropertiesChanged \"'" + interface + "'\" \"" +
          changes + "\" '@as []'");
  }
  static void set(const std::string& key, bool flag) {
    shell("gdbus emit --session --object-path /org/freedesktop/portal/desktop --signal "
          "org.freedesktop.portal.Settings.SettingChanged \"'org.freedesktop.appearance'\" \"'" +
          key + "'\" '<uint32 " + (flag ? "1" : "0") + ">'");
  }
  std::unique_ptr<Bus> system_ = Bus::system();
  LinuxWorkspace workspace_{files_, session_.get(), [this] { return system_.get(); }};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Desktop, WorkspaceContract, DesktopWorkspaceRig);

} // namespace
} // namespace tavrin::test

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}

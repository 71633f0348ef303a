#include "TavrinPlatform/Linux/Applications/LinuxApplicationLibrary.h"
#include "TavrinPlatform/Linux/Applications/RunningWindow.h"
#include "TavrinPlatform/Linux/Base/X11.h"
#include "TavrinPlatform/Linux/Files/LinuxFileManager.h"
#include "TavrinPlatform/Linux/Slot/LinuxMainBundle.h"
#include "TavrinPlatform/Linux/Slot/StartupNotice.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "Tests/Linux/Desk.h"
#include "Tests/Linux/SettingsManager.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <QApplication>
#include <algorithm>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <xcb/xcb.h>

/// The desktop's applications in a scratch data folder, started on a desk of their own.
namespace tavrin {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class Applications : public testing::Test {
protected:
  Applications() {
    fs::create_directories(folder("applications/sub"));
    fs::create_directories(folder("system/applications"));
    environment_ = {{"HOME", data_.path().string()},
                    {"PATH", std::getenv("PATH")},
                    {"LANG", "de_DE.UTF-8"},
                    {"XDG_CURRENT_DESKTOP", "XFCE"},
                    {"XDG_DATA_HOME", data_.path().string()},
                    {"XDG_CACHE_HOME", folder("cache").string()},
                    {"XDG_DATA_DIRS", folder("system").string()}};
    if (const char* display = std::getenv("DISPLAY"))
      environment_["DISPLAY"] = display;
  }
  fs::path folder(const std::string& name) const { return data_.path() / name; }
  void entry(const std::string& name, const std::string& lines,
             const std::string& exec = "/bin/true") {
    put(folder("applications/" + name),
        "[Desktop Entry]\nType=Application\nName=" + name.substr(0, name.find('.')) +
            "\nExec=" + exec + "\n" + lines);
  }
  LinuxApplicationLibrary& library() {
    if (!library_) {
      files_ = std::make_unique<LinuxFileManager>(environment_);
      bus_ = Bus::session();
      setenv("TAVRIN_MODULE_DIR", MODULE_FOLDER, 1);
      environment_["TAVRIN_MODULE_DIR"] = MODULE_FOLDER;
      modules_ = std::make_unique<LinuxFileManager>(environment_);
      library_ = std::make_unique<LinuxApplicationLibrary>(*files_, loop_, bus_.get(),
                                                           ModuleFolder(*modules_, bundle_));
    }
    return *library_;
  }
  bool until(const std::function<bool()>& condition) {
    return eventually([&] {
      QCoreApplication::processEvents();
      return condition();
    });
  }
  template <class Answer, class Ask> Answer answerOf(const Ask& ask) {
    std::optional<Answer> answer;
    const TokenPtr token = ask([&](Answer value) { answer = std::move(value); });
    EXPECT_FALSE(answer.has_value()) << "the answer came before the call returned";
    EXPECT_TRUE(until([&] { return answer.has_value(); }));
    return answer.value_or(Answer{});
  }
  std::vector<std::string> listed() {
    std::vector<std::string> names;
    for (const auto& info : answerOf<std::vector<ApplicationInfo>>(
             [&](auto answer) { return library().list(answer); }))
      names.push_back(info.name);
    return names;
  }
  std::string launch(const std::string& id, const std::string& action = {}) {
    return answerOf<std::string>([&](auto answer) { return library().launch(id, action, answer); });
  }
  QImage icon(const std::string& name, int points, int scale = 1) {
    return answerOf<QImage>(
        [&](auto answer) { return library().icon(name, points, scale, answer); });
  }

  TemporaryFolder data_;
  LinuxFileManager::Environment environment_;
  QtRunLoop loop_;
  std::unique_ptr<Bus> bus_;
  std::unique_ptr<LinuxFileManager> files_;
  std::unique_ptr<LinuxFileManager> modules_;
  LinuxMainBundle bundle_{"/nowhere/program"};
  std::unique_ptr<LinuxApplicationLibrary> library_;
};

TEST_F(Applications, TheListIsWhatMenusShow) {
  entry("zebra.desktop", "Name[de]=Ameise\n");
  entry("Hidden.desktop", "Hidden=true\n");
  entry("Quiet.desktop", "NoDisplay=true\n");
  entry("Kde.desktop", "OnlyShowIn=KDE;\n");
  entry("NotHere.desktop", "NotShowIn=XFCE;\n");
  entry("Tried.desktop", "TryExec=/nowhere/program\n");
  entry("Lost.desktop", "", "/nowhere/program");
  entry("sub/Nested.desktop", "");
  put(folder("applications/broken.desktop"), "\xFF\xFE not an entry");
  put(folder("applications/empty.desktop"), "");
  put(folder("applications/huge.desktop"),
      "[Desktop Entry]\nType=Application\nName=Huge\nExec=/bin/true\n#" +
          std::string(DesktopEntry::maximumSize, 'x'));
  fs::create_directory(folder("applications/folder.desktop"));
  fs::create_directory_symlink(folder("applications"), folder("applications/sub/loop"));
  ASSERT_EQ(shell("mkfifo " + folder("applications/pipe.desktop").string()), "");
  put(folder("system/applications/zebra.desktop"),
      "[Desktop Entry]\nType=Application\nName=System\nExec=/bin/true\n");
  const auto names = listed();
  EXPECT_THAT(std::vector<std::string>(names.begin(), names.begin() + 1), ElementsAre("Ameise"))
      << "in the user's language, and the user's own";
  EXPECT_EQ(std::ranges::count(names, "System"), 0);
  for (const char* name : {"Hidden", "Quiet", "Kde", "NotHere", "Tried", "Lost", "Huge"})
    EXPECT_EQ(std::ranges::count(names, name), 0) << name;
  EXPECT_EQ(std::ranges::count(names, "sub/Nested"), 1) << "links in a circle";
}

TEST_F(Applications, EntriesAreFoundByPathAndByName) {
  entry("org.example.One.desktop", "");
  entry("sub/two.desktop", "NoDisplay=true\n");
  entry("gone.desktop", "Hidden=true\n");
  const auto found = [&](AppEntry app) {
    const auto infos = answerOf<std::vector<std::optional<ApplicationInfo>>>(
        [&](auto answer) { return library().find({app}, answer); });
    return infos.at(0) ? infos[0]->id : std::string();
  };
  const std::string path = folder("applications/org.example.One.desktop").string();
  EXPECT_EQ(found({path, {}, {}, {}}), "org.example.One.desktop");
  EXPECT_EQ(found({"org.example.One", {}, {}, {}}), "org.example.One.desktop");
  EXPECT_EQ(found({"/old/place/org.example.One.desktop", {}, {}, {}}), "org.example.One.desktop");
  EXPECT_EQ(found({"/x", "org.example.One", {}, {}}), "org.example.One.desktop");
  EXPECT_EQ(found({"sub-two.desktop", {}, {}, {}}), "sub-two.desktop") << "not in menus, but there";
  entry("debian-tool.desktop", "", "/bin/true --x");
  entry("another.desktop", "NoDisplay=true\n", "/bin/true");
  entry("vim.desktop", "");
  EXPECT_EQ(found({"True", {}, {}, {}}), "debian-tool.desktop") << "by its program, in menus first";
  EXPECT_EQ(found({"vim", {}, {}, {}}), "vim.desktop");
  for (const char* name : {"", "gone.desktop", "../../etc/passwd", "/etc/passwd", "a\nb", "/", "."})
    EXPECT_EQ(found({name, {}, {}, {}}), "") << name;
}

TEST_F(Applications, ChangesAreTold) {
  library();
  int changes = 0;
  const auto token = library().observe([&] { ++changes; });
  entry("new.desktop", "");
  ASSERT_TRUE(until([&] { return changes == 1; }));
  EXPECT_THAT(listed(), testing::Contains("new"));
}

TEST_F(Applications, IconsComeAtTheSizeAskedFor) {
  fs::create_directories(folder("icons/hicolor/48x48/apps"));
  fs::create_directories(folder("icons/hicolor/scalable/apps"));
  fs::create_directories(folder("pixmaps"));
  put(folder("icons/hicolor/index.theme"),
      "[Icon Theme]\nDirectories=48x48/apps,scalable/apps\n[48x48/apps]\nSize=48\n"
      "[scalable/apps]\nSize=64\nMinSize=8\nMaxSize=512\nType=Scalable\n");
  QImage red(48, 24, QImage::Format_ARGB32);
  red.fill(Qt::red);
  ASSERT_TRUE(
      red.save(QString::fromStdString(folder("icons/hicolor/48x48/apps/wide.png").string())));
  ASSERT_TRUE(red.save(QString::fromStdString(folder("pixmaps/loose.png").string())));
  put(folder("icons/hicolor/scalable/apps/drawn.svg"),
      "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 10 10'>"
      "<rect width='10' height='5' fill='#00f'/></svg>");
  const std::string opened = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9 9'>";
  std::string nested = opened + "<defs><g id='g0'><rect width='9' height='9'/></g>";
  for (int i = 1; i < 40; ++i) {
    const auto use = fmt::format("<use href='#g{}'/>", i - 1);
    nested += fmt::format("<g id='g{}'>{}{}{}{}</g>", i, use, use, use, use);
  }
  for (const auto& [name, text] : {std::pair<const char*, std::string>("text", "no picture"),
                                   {"cut", opened},
                                   {"nested", nested + "</defs><use href='#g39'/></svg>"}})
    put(folder(std::string("icons/hicolor/scalable/apps/") + name + ".svg"), text);
  put(folder("pixmaps/nonsense.png"), "\x89PNG\r\n\x1A\nnonsense");
  const QImage wide = icon("wide", 32, 2);
  EXPECT_EQ(wide.size(), QSize(64, 64));
  EXPECT_EQ(wide.pixelColor(32, 32), QColor(Qt::red));
  EXPECT_EQ(wide.pixelColor(32, 2).alpha(), 0) << "its proportions are kept";
  EXPECT_EQ(icon("loose", 16).size(), QSize(16, 16));
  EXPECT_EQ(icon(folder("pixmaps/loose.png").string(), 16).size(), QSize(16, 16));
  const QImage drawn = icon("drawn", 40);
  ASSERT_EQ(drawn.size(), QSize(40, 40));
  EXPECT_EQ(drawn.pixelColor(20, 10), QColor(Qt::blue));
  EXPECT_EQ(drawn.pixelColor(20, 30).alpha(), 0);
  EXPECT_FALSE(fs::is_empty(folder("cache/tavrin/icons"))) << "drawn once";
  EXPECT_EQ(icon("drawn", 40), drawn);
  for (const char* name :
       {"nobody", "nonsense", "text", "cut", "nested", "", "../loose", "/dev/zero", "/"})
    EXPECT_TRUE(icon(name, 32).isNull()) << name;
}

TEST_F(Applications, IconsAreOfTheThemeThatTheDesktopTellsXPrograms) {
  for (const auto& [theme, colour] :
       {std::pair("First", Qt::red), {"Second", Qt::green}, {"Adwaita", Qt::blue}}) {
    const auto place = folder("icons") / theme;
    fs::create_directories(place / "apps");
    put(place / "index.theme", "[Icon Theme]\nDirectories=apps\n[apps]\nSize=16\n");
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(colour);
    ASSERT_TRUE(image.save(QString::fromStdString((place / "apps/app.png").string())));
  }
  const auto colour = [&] { return icon("app", 16).pixelColor(8, 8); };
  int changes = 0;
  library();
  const auto token = library().observe([&] { ++changes; });
  EXPECT_EQ(colour(), QColor(Qt::blue)) << "nobody tells";
  {
    SettingsManager manager;
    manager.tell("Net/IconThemeName", "First");
    ASSERT_TRUE(until([&] { return changes == 1; }));
    EXPECT_EQ(colour(), QColor(Qt::red));
    manager.tell("Net/IconThemeName", "Second");
    ASSERT_TRUE(until([&] { return changes == 2; }));
    EXPECT_EQ(colour(), QColor(Qt::green));
    // One that starts later is asked at once.
    library_.reset();
    EXPECT_EQ(colour(), QColor(Qt::green));
  }
  EXPECT_TRUE(until([&] { return colour() == QColor(Qt::blue); })) << "the manager is gone";
}

TEST_F(Applications, AProgramStartsInASessionOfItsOwn) {
  const auto out = folder("out");
  put(folder("tool"), "#!/bin/sh\n{ ps -o sid= -p $$; echo \"$DESKTOP_STARTUP_ID\"; pwd; "
                      "echo \"$@\"; } > " +
                          out.string() + ".new\nmv " + out.string() + ".new " + out.string() +
                          "\nexec sleep 30\n");
  fs::permissions(folder("tool"), fs::perms::owner_all);
  fs::create_directory(folder("work"));
  entry("tool.desktop",
        "StartupNotify=true\nPath=" + folder("work").string() +
            "\nActions=new;\n[Desktop Action new]\nName=New\nExec=" + folder("tool").string() +
            " --new %k\n",
        folder("tool").string() + " %c \"a b\" %U");
  ASSERT_EQ(launch("tool.desktop"), "");
  ASSERT_TRUE(until([&] { return fs::exists(out); }));
  std::istringstream lines(contents(out));
  long session = 0;
  std::string startup;
  std::string place;
  std::string arguments;
  lines >> session >> startup >> place >> std::ws;
  std::getline(lines, arguments);
  EXPECT_NE(session, getsid(0));
  EXPECT_TRUE(startup.starts_with("tavrin-") && startup.find("_TIME") != std::string::npos)
      << startup;
  EXPECT_EQ(place, folder("work").string());
  EXPECT_EQ(arguments, "tool a b");
  ::kill(-static_cast<pid_t>(session), SIGTERM);
  EXPECT_TRUE(until([&] { return ::kill(static_cast<pid_t>(session), 0) != 0; }))
      << "it stays in the table of processes";
  fs::remove(out);
  ASSERT_EQ(launch("tool.desktop", "new"), "");
  ASSERT_TRUE(until([&] { return fs::exists(out); }));
  EXPECT_NE(contents(out).find("--new " + folder("applications/tool.desktop").string()),
            std::string::npos);
  std::istringstream(contents(out)) >> session;
  ::kill(-static_cast<pid_t>(session), SIGTERM);
}

TEST_F(Applications, AProgramStartsAtHomeAndGetsNothingOfOurs) {
  const auto out = folder("out");
  const std::map<std::string, std::string> ours{{"TAVRIN_APP_SUPPORT_DIR", "/x"},
                                                {"LD_LIBRARY_PATH", "/nowhere"},
                                                {"LD_BIND_NOW", "1"},
                                                {"QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1"}};
  for (const auto& [name, value] : ours)
    setenv(name.c_str(), value.c_str(), 1);
  setenv("USERS_OWN", "kept", 1);
  put(folder("tool"), "#!/bin/sh\n{ pwd; env; } > " + out.string() + ".new\nmv " + out.string() +
                          ".new " + out.string() + "\n");
  fs::permissions(folder("tool"), fs::perms::owner_all);
  entry("tool.desktop", "", folder("tool").string());
  ASSERT_EQ(launch("tool.desktop"), "");
  ASSERT_TRUE(until([&] { return fs::exists(out); }));
  for (const auto& [name, value] : ours) {
    EXPECT_EQ(contents(out).find(name), std::string::npos) << name;
    unsetenv(name.c_str());
  }
  EXPECT_TRUE(contents(out).starts_with(data_.path().string() + "\n")) << contents(out);
  EXPECT_NE(contents(out).find("USERS_OWN=kept"), std::string::npos);
  EXPECT_EQ(contents(out).find("TAVRIN_"), std::string::npos);
}

/// A window of another program, under the desk's window manager.
class OthersWindow {
public:
  explicit OthersWindow(const std::string& windowClass)
      : connection_(xcb_connect(nullptr, nullptr)), window_(xcb_generate_id(connection_)) {
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen->root, 0, 0, 50, 50, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_CLASS,
                        XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(windowClass.size()),
                        windowClass.data());
    xcb_map_window(connection_, window_);
    xcb_flush(connection_);
  }
  ~OthersWindow() { xcb_disconnect(connection_); }
  bool isActive() const { return x11::activeWindow() == window_; }

private:
  xcb_connection_t* connection_;
  xcb_window_t window_;
};

TEST_F(Applications, OneThatRunsIsRaisedAndNotStartedAgain) {
  using namespace std::string_literals;
  const auto out = folder("started");
  put(folder("tool"), "#!/bin/sh\ntouch " + out.string() + "\n");
  fs::permissions(folder("tool"), fs::perms::owner_all);
  entry("debian-tool.desktop",
        "Actions=new;\n[Desktop Action new]\nName=New\nExec=" + folder("tool").string() + "\n",
        folder("tool").string());
  entry("classy.desktop", "StartupWMClass=Elsewhere\n", folder("tool").string());
  const OthersWindow tool("tool\0Tool\0"s);
  ASSERT_TRUE(until([&] { return tool.isActive(); }));
  const OthersWindow other("other\0Other\0"s);
  ASSERT_TRUE(until([&] { return other.isActive(); }));
  EXPECT_EQ(launch("debian-tool.desktop"), "");
  EXPECT_TRUE(until([&] { return tool.isActive(); }));
  EXPECT_FALSE(fs::exists(out));
  EXPECT_EQ(launch("debian-tool.desktop", "new"), "");
  EXPECT_TRUE(until([&] { return fs::exists(out); })) << "what it is asked to do beside that";
  fs::remove(out);
  EXPECT_EQ(launch("classy.desktop"), "");
  EXPECT_TRUE(until([&] { return fs::exists(out); })) << "its window is called otherwise";
}

TEST(RunningWindow, BelongsToTheApplicationItsClassNames) {
  using namespace std::string_literals;
  FoundEntry found{"org.example.Editor.desktop", "/x", {}};
  found.entry.exec = "/usr/bin/edit --new %U";
  EXPECT_TRUE(isWindowOf(found, "editor\0Editor\0"s));
  EXPECT_TRUE(isWindowOf(found, "edit\0"s));
  EXPECT_TRUE(isWindowOf(found, "x\0ORG.example.Editor\0"s));
  for (const auto& other : {""s, "\0\0"s, "edito\0"s, "xterm\0XTerm\0"s})
    EXPECT_FALSE(isWindowOf(found, other));
  found.entry.runsInTerminal = true;
  EXPECT_FALSE(isWindowOf(found, "edit\0"s)) << "its window is the terminal's";
  found.entry.startupClass = "Pad";
  EXPECT_TRUE(isWindowOf(found, "pad\0"s));
  EXPECT_FALSE(isWindowOf(found, "editor\0Editor\0"s));
}

TEST_F(Applications, WhatCannotBeStartedSaysWhy) {
  entry("text.desktop", "", folder("plain").string());
  put(folder("plain"), "no program");
  fs::permissions(folder("plain"), fs::perms::owner_all);
  entry("mine.desktop", "");
  EXPECT_EQ(launch("nobody.desktop"), "Failed to open nobody.desktop because it is not installed");
  EXPECT_EQ(launch("text.desktop"), "Failed to open text because its program cannot be run");
  EXPECT_EQ(launch("mine.desktop", "dance"),
            "Failed to open mine because it has no action \"dance\"");
}

TEST_F(Applications, ABusActivatedOneIsAskedOverTheBus) {
  const Program service(
      "/usr/bin/python3",
      {"-c", "import dbus, dbus.service, dbus.mainloop.glib\n"
             "from gi.repository import GLib\n"
             "dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)\n"
             "class App(dbus.service.Object):\n"
             "  @dbus.service.method('org.freedesktop.Application', in_signature='a{sv}')\n"
             "  def Activate(self, data): print('activated', *sorted(map(str, data)), flush=True)\n"
             "  @dbus.service.method('org.freedesktop.Application', in_signature='sava{sv}')\n"
             "  def ActivateAction(self, name, more, data): print('action', name, flush=True)\n"
             "bus = dbus.SessionBus()\n"
             "name = dbus.service.BusName('org.example.Bus-App', bus)\n"
             "app = App(bus, '/org/example/Bus_App')\n"
             "print('ready', flush=True)\n"
             "GLib.MainLoop().run()\n"});
  auto& program = const_cast<Program&>(service);
  ASSERT_TRUE(program.says("ready"));
  entry("org.example.Bus-App.desktop",
        "DBusActivatable=true\nActions=new;\n[Desktop Action new]\nName=New\n", "");
  EXPECT_EQ(launch("org.example.Bus-App.desktop"), "");
  EXPECT_TRUE(program.says("activated activation-token desktop-startup-id"));
  EXPECT_EQ(launch("org.example.Bus-App.desktop", "new"), "");
  EXPECT_TRUE(program.says("action new"));
  const auto out = folder("fallback");
  entry("org.example.Nobody.desktop", "DBusActivatable=true\n", "/usr/bin/touch " + out.string());
  EXPECT_EQ(launch("org.example.Nobody.desktop"), "");
  EXPECT_TRUE(until([&] { return fs::exists(out); })) << "its command line, where nobody answers";
}

/// The messages that clients of the server get from its root window, put together.
class NoticeListener {
public:
  NoticeListener() : connection_(xcb_connect(nullptr, nullptr)) {
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_, root, XCB_CW_EVENT_MASK, &mask);
    free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
  }
  ~NoticeListener() { xcb_disconnect(connection_); }
  const std::string& text() {
    while (auto* event = xcb_poll_for_event(connection_)) {
      if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE) {
        const auto* data = reinterpret_cast<const xcb_client_message_event_t*>(event)->data.data8;
        text_.append(reinterpret_cast<const char*>(data), 20);
      }
      free(event);
    }
    return text_;
  }

private:
  xcb_connection_t* connection_;
  std::string text_;
};

TEST_F(Applications, TheDesktopIsToldThatAProgramIsComing) {
  const std::string display = std::getenv("DISPLAY");
  NoticeListener listener;
  const auto id = beginStartupNotice(
      display, {"A \"quoted\" \\ name", "icon", "/bin/x", "Class", "/a.desktop"});
  ASSERT_FALSE(id.empty());
  const std::string wanted = "new: ID=\"" + id +
                             "\" SCREEN=0 NAME=\"A \\\"quoted\\\" \\\\ name\" BIN=\"/bin/x\" "
                             "ICON=\"icon\" WMCLASS=\"Class\" APPLICATION_ID=\"/a.desktop\"";
  EXPECT_TRUE(until([&] { return listener.text().find(wanted) != std::string::npos; }))
      << listener.text();
  endStartupNotice(display, id);
  EXPECT_TRUE(until(
      [&] { return listener.text().find("remove: ID=\"" + id + "\"") != std::string::npos; }));
  EXPECT_EQ(beginStartupNotice(":9999", {}), "");
  EXPECT_EQ(beginStartupNotice("", {}), "");
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "xcb");
  QApplication application(argc, argv);
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}

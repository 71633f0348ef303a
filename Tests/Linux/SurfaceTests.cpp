#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/Linux/Base/SurfaceChoice.h"
#include "TavrinPlatform/Linux/Command/LinuxDesktopReport.h"
#include "TavrinPlatform/Linux/Files/LinuxFileManager.h"
#include "TavrinPlatform/Linux/Slot/News.h"

#include <atomic>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

/// What shows the tiles on which desktop; rules and wire formats, which need no desktop.
namespace tavrin {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const WindowManager floating{"Openbox", true, true, true};
const WindowManager tiling{"i3", true, true, false};
const WindowManager oblivious{"wlroots wm", false, false, false};

TEST(SurfaceChoice, EachDesktopHasItsRowAndNoneIsLaidOver) {
  using Strings = std::vector<std::string>;
  struct Case {
    const char* row;
    DesktopFacts facts;
    Strings surfaces;
    StripArrangement arrangement;
    bool isMakeshift;
  };
  const auto on = [](bool x11, std::optional<WindowManager> manager, bool wayland, bool bus,
                     bool tray) {
    return DesktopFacts{x11, std::move(manager), wayland, {}, bus, tray};
  };
  constexpr auto docks = StripArrangement::docks;
  const std::vector<std::string> layered{"wl_compositor", layerShellGlobal};
  constexpr auto layers = StripArrangement::layers;
  const Case cases[] = {
      {"layer shell", {true, oblivious, true, layered, true, true}, {"strip"}, layers, false},
      {"layer shell", {true, floating, true, layered, true, true}, {"strip"}, layers, false},
      {"layer shell", {false, {}, true, layered, false, false}, {"strip"}, layers, false},
      {"docks", on(true, floating, false, true, true), {"strip"}, docks, false},
      {"no manager", on(true, {}, false, false, false), {"strip"}, docks, false},
      {"bar", on(true, tiling, false, true, true), {"strip"}, StripArrangement::bar, false},
      // One that tells nothing of itself.
      {"unmanaged",
       on(true, WindowManager{}, false, true, true),
       {"strip"},
       StripArrangement::unmanaged,
       false},
      {"docks through XWayland", on(true, floating, true, true, true), {"strip"}, docks, false},
      {"tray", on(true, oblivious, true, true, true), {"tray"}, docks, true},
      {"tray", on(true, tiling, true, true, true), {"tray"}, docks, true},
      {"tray to come", on(true, oblivious, true, true, false), {"tray", "picture"}, docks, true},
      {"tray", on(false, {}, true, true, true), {"tray"}, docks, true},
      {"picture", on(true, oblivious, true, false, false), {"picture"}, docks, true},
      {"picture", on(false, {}, false, true, false), {"picture"}, docks, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.row);
    const auto choice = chooseSurface(c.facts, "");
    EXPECT_EQ(choice.row, c.row);
    EXPECT_EQ(choice.surfaces, c.surfaces);
    EXPECT_EQ(choice.arrangement, c.arrangement);
    EXPECT_EQ(choice.isMakeshift, c.isMakeshift);
    EXPECT_THAT(choice.reason, testing::Not(HasSubstr("%")));
  }
  EXPECT_THAT(chooseSurface(on(true, tiling, false, true, true), "").reason, HasSubstr("\"i3\""));
}

TEST(SurfaceChoice, AWishOverridesTheTableButLaysNothingOverTheScreen) {
  const DesktopFacts sway{true, oblivious, true, {}, true, true};
  const auto choice = chooseSurface(sway, " Strip, picture,");
  EXPECT_THAT(choice.surfaces, ElementsAre("strip", "picture"));
  EXPECT_EQ(choice.arrangement, StripArrangement::unmanaged);
  EXPECT_FALSE(choice.isMakeshift);
  EXPECT_EQ(chooseSurface(sway, " , ").row, "tray");
}

/// A compositor that says what it was made with, once, to whoever connects.
class Compositor {
public:
  Compositor(std::string answer, bool hangsUp) : answer_(std::move(answer)) {
    std::string name = "/tmp/tavrin-wayland-XXXXXX";
    folder_ = mkdtemp(name.data());
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    (folder_ / "wayland-7").string().copy(address.sun_path, sizeof address.sun_path - 1);
    socket_ = Descriptor(::socket(AF_UNIX, SOCK_STREAM, 0));
    EXPECT_EQ(::bind(socket_.number(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(socket_.number(), 1), 0);
    thread_ = std::thread([this, hangsUp] {
      const Descriptor client(::accept(socket_.number(), nullptr, nullptr));
      char question[24];
      EXPECT_EQ(::recv(client.number(), question, sizeof question, MSG_WAITALL), 24);
      // In two parts, as it may come.
      const auto half = answer_.size() / 2;
      EXPECT_EQ(::send(client.number(), answer_.data(), half, MSG_NOSIGNAL),
                static_cast<ssize_t>(half));
      // Whoever asked may have heard enough by now, and be gone.
      [[maybe_unused]] const auto rest =
          ::send(client.number(), answer_.data() + half, answer_.size() - half, MSG_NOSIGNAL);
      // Else the one that asked ends it.
      if (!hangsUp && ::read(client.number(), question, 1) != 0)
        ADD_FAILURE() << "more was asked";
    });
  }
  ~Compositor() {
    thread_.join();
    std::filesystem::remove_all(folder_);
  }
  auto globals() const {
    return readWaylandGlobals(LinuxFileManager(
        {{"XDG_RUNTIME_DIR", folder_.string()}, {"WAYLAND_DISPLAY", "wayland-7"}}));
  }

private:
  std::string answer_;
  std::filesystem::path folder_;
  Descriptor socket_;
  std::thread thread_;
};

std::string words(std::initializer_list<std::uint32_t> values) {
  std::string bytes;
  for (const auto value : values)
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
  return bytes;
}

std::string global(std::uint32_t number, std::string name) {
  const auto length = static_cast<std::uint32_t>(name.size() + 1);
  name.resize((length + 3) / 4 * 4);
  const auto size = static_cast<std::uint32_t>(8 + 8 + name.size() + 4);
  return words({2, size << 16}) + words({number, length}) + name + words({1});
}

TEST(WaylandGlobals, AreReadToTheEndAndNoFurther) {
  const std::string done = words({3, 12U << 16, 1});
  EXPECT_THAT(
      Compositor(global(1, "wl_compositor") + global(2, "zwlr_layer_shell_v1") + done, false)
          .globals(),
      testing::Optional(ElementsAre("wl_compositor", "zwlr_layer_shell_v1")));
  // One that hangs up, that counts wrongly, that tells of a text longer than its message.
  EXPECT_EQ(Compositor(global(1, "wl_seat"), true).globals(), std::nullopt);
  EXPECT_EQ(Compositor(words({2, 4U << 16}) + done, true).globals(), std::nullopt);
  EXPECT_THAT(Compositor(words({2, 20U << 16, 1, 900, 0}) + done, false).globals(),
              testing::Optional(testing::IsEmpty()));
  EXPECT_EQ(readWaylandGlobals(LinuxFileManager(
                {{"XDG_RUNTIME_DIR", "/nowhere"}, {"WAYLAND_DISPLAY", "wayland-0"}})),
            std::nullopt);
}

TEST(DesktopReport, SaysWhatIsMissingForWhichKindsAndWhatToDo) {
  DesktopSurvey survey;
  survey.inputDevices = "/nowhere";
  survey.modules = "/nowhere";
  for (const auto& item : makeDesktopReport(survey).items) {
    SCOPED_TRACE(item.topic);
    EXPECT_THAT(item.sentence, testing::EndsWith("."));
    const bool isAllThere = item.state == DesktopReport::State::good;
    EXPECT_TRUE(isAllThere || testing::Value(item.remedy, testing::EndsWith(".")));
    for (const auto& kind : item.kinds)
      EXPECT_EQ(std::ranges::count(allKinds(), kind, &KindInfo::key), 1) << kind;
  }
  survey.facts = {true, tiling, true, {}, false, false};
  survey.session = {true, {"org.kde.StatusNotifierWatcher"}, {"org.freedesktop.secrets"}};
  std::map<std::string, DesktopReport::Item> items;
  for (const auto& item : makeDesktopReport(survey).items)
    items.emplace(item.topic, item);
  EXPECT_EQ(items.at("keyring").state, DesktopReport::State::good);
  EXPECT_EQ(items.at("tray").state, DesktopReport::State::good);
  EXPECT_EQ(items.at("surface").state, DesktopReport::State::limited);
  EXPECT_EQ(items.at("surface").sentence,
            chooseSurface({true, tiling, true, {}, true, true}, "").reason);
  EXPECT_EQ(items.at("calendars").state, DesktopReport::State::missing);
}

TEST(News, OneOfSeveralTellsAndOnlyWhatIsNew) {
  std::string name = "/tmp/tavrin-news-XXXXXX";
  const std::filesystem::path folder = mkdtemp(name.data());
  const auto file = folder / "state" / "surface";
  std::atomic<int> tellers = 0;
  std::vector<std::thread> asking;
  for (int i = 0; i < 6; ++i)
    asking.emplace_back([&] { tellers += isNews(file, "No strip here.") ? 1 : 0; });
  for (auto& thread : asking)
    thread.join();
  EXPECT_EQ(tellers, 1);
  EXPECT_FALSE(isNews(file, "No strip here."));
  EXPECT_TRUE(isNews(file, "No tray here."));
  std::filesystem::remove_all(folder);
  EXPECT_FALSE(isNews("/proc/none/surface", "Nobody can note it down."));
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}

#include "TavrinCore/Base/FileURL.h"
#include "TavrinPlatform/Linux/Command/LinuxAutostart.h"
#include "TavrinPlatform/Linux/Desktop/LinuxNotificationCenter.h"
#include "TavrinPlatform/Linux/Devices/LinuxHostStatistics.h"
#include "TavrinPlatform/Linux/Dock/FilePreferencesService.h"
#include "TavrinPlatform/Linux/Dock/LinuxDockProcess.h"
#include "TavrinPlatform/Linux/Files/LinuxFileManager.h"
#include "TavrinPlatform/Linux/Files/LinuxUserFiles.h"
#include "TavrinPlatform/Linux/Slot/LinuxMainBundle.h"
#include "TavrinPlatform/POSIX/ChildProcess.h"
#include "TavrinPlatform/POSIX/JSONUserDefaults.h"
#include "Tests/Platform/AutostartContract.h"
#include "Tests/Platform/DockProcessContract.h"
#include "Tests/Platform/FileManagerContract.h"
#include "Tests/Platform/HostStatisticsContract.h"
#include "Tests/Platform/MainBundleContract.h"
#include "Tests/Platform/PreferencesServiceContract.h"
#include "Tests/Platform/UserDefaultsContract.h"
#include "Tests/Platform/UserFilesContract.h"
#include "Tests/Platform/UserNotificationsContract.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/FakePlatform.h"
#include "Tests/Support/ManualRunLoop.h"

#include <algorithm>
#include <csignal>
#include <ctime>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <poll.h>
#include <sys/wait.h>

/// The Linux adapters, by the same suites as the others.
namespace tavrin::test {
namespace {

namespace fs = std::filesystem;

void writeText(const fs::path& file, const std::string& text) {
  fs::create_directories(file.parent_path());
  std::ofstream(file) << text;
}

struct LinuxPreferencesRig {
  PreferencesService& service() { return service_; }
  void store(const std::string& domain, const std::string& key, const PropertyList& value) {
    writeText(file(domain), PropertyList(PropertyList::Dictionary{{key, value}}).xml());
  }
  std::optional<PropertyList> stored(const std::string& domain, const std::string& key) {
    std::ifstream stream(file(domain));
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    if (text.empty())
      return std::nullopt;
    const auto root = PropertyList::parse(text);
    const auto* found = root.entry(key);
    return found != nullptr ? std::optional(*found) : std::nullopt;
  }
  void refuse() { fs::create_directories(file("com.apple.dock")); }
  fs::path file(const std::string& domain) const { return folder.path() / (domain + ".plist"); }

  TemporaryFolder folder;
  FilePreferencesService service_{folder.path()};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, PreferencesServiceContract, LinuxPreferencesRig);

struct LinuxStatisticsRig {
  HostStatistics& statistics() { return statistics_; }
  void set(const CPULoad& load) {
    writeText(folder.path() / "proc/stat",
              "cpu  " + std::to_string(load.user) + " " + std::to_string(load.nice) + " " +
                  std::to_string(load.system) + " " + std::to_string(load.idle) + "\n");
  }
  void set(const MemoryLoad& load) {
    writeText(folder.path() / "proc/meminfo",
              "MemTotal: " + std::to_string(load.physical / 1024) +
                  " kB\nMemFree: 1 kB\nMemAvailable: " +
                  std::to_string((load.physical - load.used) / 1024) + " kB\n");
  }
  void setLinks(const std::vector<LinkCounters>& links) {
    std::string text = "Inter-| Receive | Transmit\n face |bytes |bytes\n";
    for (const auto& link : links)
      text += "  " + link.name + ": " + std::to_string(link.received) + " 1 2 3 4 5 6 7 " +
              std::to_string(link.sent) + " 1 2 3 4 5 6 7\n";
    writeText(folder.path() / "proc/net/dev", text);
  }
  void fail() { fs::remove_all(folder.path() / "proc"); }
  TemporaryFolder folder;
  LinuxHostStatistics statistics_{folder.path()};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, HostStatisticsContract, LinuxStatisticsRig);

struct LinuxDockRig {
  DockProcess& process() { return process_; }
  void add(int number, const std::string& name, uid_t user, double age, bool hasEnded) {
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    const double ticks = std::max(0.0, (double(now.tv_sec) - age) * double(::sysconf(_SC_CLK_TCK)));
    const auto folder = proc / std::to_string(number);
    writeText(folder / "comm", name + "\n");
    writeText(folder / "status",
              "Name:\t" + name + "\nUid:\t" + std::to_string(user) + "\t0\t0\t0\n");
    std::string stat = std::to_string(number) + " (" + name + ") " + (hasEnded ? "Z" : "S");
    for (int field = 4; field < 22; ++field)
      stat += " 0";
    writeText(folder / "stat", stat + " " + std::to_string(static_cast<long>(ticks)) + " 0 0\n");
  }
  void script(const std::string& text) {
    fs::remove(killall);
    writeText(killall, text);
    fs::permissions(killall, fs::perms::owner_all);
  }
  TemporaryFolder folder;
  fs::path proc = folder.path() / "proc";
  fs::path killall = folder.path() / "killall";
  LinuxDockProcess process_{proc, killall};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, DockProcessContract, LinuxDockRig);

/// The file opens and its reading fails, as with a process that goes in between.
TEST(LinuxDockProcess, AProcessThatGoesWhileItIsReadIsNone) {
  namespace fs = std::filesystem;
  for (const char* gone : {"comm", "status", "stat"}) {
    TemporaryFolder proc;
    const fs::path folder = proc.path() / "7";
    fs::create_directories(folder);
    put(folder / "comm", "Dock\n");
    put(folder / "status", "Name:\tDock\nUid:\t" + std::to_string(getuid()) + "\t0\t0\t0\n");
    put(folder / "stat", "7 (Dock) S 1");
    LinuxDockProcess process(proc.path());
    ASSERT_TRUE(process.running());
    fs::remove(folder / gone);
    fs::create_symlink("/proc/self/mem", folder / gone);
    EXPECT_FALSE(process.running()) << gone;
  }
}

/// Its link in /proc stands, and what it says cannot be read.
TEST(LinuxHostStatistics, FilesThatFailWhileTheyAreReadAreNoReadings) {
  namespace fs = std::filesystem;
  TemporaryFolder root;
  fs::create_directories(root.path() / "proc/net");
  for (const char* file : {"stat", "meminfo", "net/dev"})
    fs::create_symlink("/proc/self/mem", root.path() / "proc" / file);
  LinuxHostStatistics statistics(root.path());
  EXPECT_FALSE(statistics.cpuLoad());
  EXPECT_FALSE(statistics.memoryLoad());
  int links = 0;
  statistics.eachLink([&](std::string_view, std::uint64_t, std::uint64_t) { ++links; });
  EXPECT_EQ(links, 0);
}

/// Without a manager a notice waits in its process, and without a bus only the log tells of it.
struct KeptNoticesRig {
  UserNotificationCenter& center() { return center_; }
  Titles shownAfter(double seconds) {
    loop_.advance(seconds);
    Titles titles;
    for (const auto& line : log_.lines)
      if (const auto begin = line.find('"'); begin != std::string::npos)
        titles.push_back(line.substr(begin + 1, line.rfind('"') - begin - 1));
    return titles;
  }
  FakeLog log_;
  ManualClock clock_{{}};
  ManualRunLoop loop_{clock_};
  LinuxNotificationCenter center_{nullptr, loop_, "/nowhere", log_};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, UserNotificationsContract, KeptNoticesRig);

struct LinuxBundleRig {
  LinuxBundleRig() {
    writeText(
        app_ / "Contents/Info.plist",
        PropertyList(PropertyList::Dictionary{{"CFBundleIdentifier", "dev.quellby.Tavrin.Slot3"},
                                              {"TavrinDataFolder", "TavrinDev"},
                                              {"TavrinSlot", 3},
                                              {"Flag", true},
                                              {"Half", 0.5}})
            .xml());
    writeText(app_ / "Contents/MacOS/program", "");
  }
  MainBundle& bundle() { return bundle_.emplace(app_ / "Contents/MacOS/program"); }
  MainBundle& bare() { return bundle_.emplace(folder_.path() / "bin/program"); }
  TemporaryFolder folder_;
  fs::path app_ = folder_.path() / "Tavrin Slot 3.app";
  std::optional<LinuxMainBundle> bundle_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, MainBundleContract, LinuxBundleRig);

struct LinuxFilesRig {
  UserFiles& files() { return files_; }
  fs::path home() const { return home_.path(); }
  void choose(const std::string& folder) {
    writeText(home() / ".config/xfce4/xfce4-screenshooter",
              "screenshot_dir=" + (home() / folder).string() + "\n");
  }
  fs::path opened() const {
    return workspace_.opened.empty()
               ? fs::path()
               : pathOfText(workspace_.opened.back(), home()).value_or("no path");
  }
  fs::path shown() const { return opened(); }
  TemporaryFolder home_;
  FakeWorkspace workspace_;
  LinuxFileManager manager_{
      {{"HOME", home_.path().string()}, {"XDG_CURRENT_DESKTOP", "XFCE"}}};
  LinuxUserFiles files_{manager_, nullptr, [this]() -> Workspace& { return workspace_; }};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, UserFilesContract, LinuxFilesRig);

struct FileDefaultsRig {
  UserDefaults& defaults() { return *now; }
  UserDefaults& again() { return *(now = std::make_unique<JSONUserDefaults>(file, log, loop)); }
  TemporaryFolder folder;
  FakeLog log;
  ManualClock clock{Date{}};
  ManualRunLoop loop{clock};
  std::filesystem::path file = folder.path() / "defaults.json";
  std::unique_ptr<JSONUserDefaults> now = std::make_unique<JSONUserDefaults>(file, log, loop);
};
INSTANTIATE_TYPED_TEST_SUITE_P(File, UserDefaultsContract, FileDefaultsRig);

struct LinuxManagerRig {
  std::unique_ptr<FileManager> files(LinuxFileManager::Environment environment) {
    environment["HOME"] = home().string();
    return std::make_unique<LinuxFileManager>(environment);
  }
  fs::path home() const { return "/home/ada"; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, FileManagerContract, LinuxManagerRig);

/// By the desktop's folder, where no manager runs the session.
struct LinuxAutostartRig {
  Autostart& autostart() {
    return now_.emplace(folder_.path(), "/opt/tavrin/bin/tavrin", [] { return nullptr; });
  }
  void refuse() { writeText(folder_ / "autostart", "in the way"); }
  TemporaryFolder folder_;
  std::optional<LinuxAutostart> now_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, AutostartContract, LinuxAutostartRig);

/// What stands in on a system without descriptors of processes and files in memory.
TEST(ChildProcess, AThreadTellsTheEndAndLeavesTheStatusToBeReadLater) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::pause();
    ::_exit(1);
  }
  const Descriptor ended = exitByThread(child);
  ASSERT_TRUE(ended);
  pollfd waiting{ended.number(), POLLIN, 0};
  EXPECT_EQ(::poll(&waiting, 1, 0), 0);
  ::kill(child, SIGKILL);
  EXPECT_EQ(::poll(&waiting, 1, 10'000), 1);
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, WNOHANG), child);
  EXPECT_TRUE(WIFSIGNALED(status));
}
TEST(ChildProcess, AShortAnswerIsWaitedForUpToALimit) {
  const auto answer = [](const char* script, std::chrono::milliseconds limit) {
    return outputOf({"/bin/sh", "-c", script}, limit);
  };
  constexpr std::chrono::milliseconds ample = std::chrono::minutes(1);
  EXPECT_EQ(answer("echo one; echo two >&2; echo three", ample), "one\nthree\n");
  EXPECT_EQ(answer("exec >&-; exec sleep 0.1", ample), "") << "it says no more before it ends";
  EXPECT_EQ(answer("echo one; exit 1", ample), std::nullopt);
  EXPECT_EQ(answer("echo one; exec sleep 600", std::chrono::milliseconds(50)), std::nullopt);
  EXPECT_EQ(outputOf({"/nowhere/tool"}, ample), std::nullopt);
}

TEST(ChildProcess, AFileWithoutANameHoldsWhatTheChildIsToRead) {
  for (const auto make : {fileOf, temporaryFileOf}) {
    const std::string bytes(100'000, 'x');
    const Descriptor file = make(bytes);
    std::string read(bytes.size() + 1, '\0');
    EXPECT_EQ(::read(file.number(), read.data(), read.size()), ssize_t(bytes.size()));
    char byte = 0;
    EXPECT_EQ(::read(make("").number(), &byte, 1), 0);
  }
}

} // namespace
} // namespace tavrin::test

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}

#include "TavrinPlatform/Linux/Applications/SystemMonitorEntry.h"
#include "TavrinPlatform/Linux/Devices/LinuxHostStatistics.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>

/// Recorded machines, this one, and files that hold nonsense.
namespace tavrin {
namespace {

namespace fs = std::filesystem;

struct Machine {
  void write(const std::string& file, const std::string& text) const {
    fs::create_directories((folder.path() / file).parent_path());
    std::ofstream(folder.path() / file) << text;
  }
  std::vector<std::string> links() {
    std::vector<std::string> found;
    statistics.eachLink([&](std::string_view name, std::uint64_t received, std::uint64_t sent) {
      found.push_back(std::string(name) + " " + std::to_string(received) + " " +
                      std::to_string(sent));
    });
    return found;
  }
  TemporaryFolder folder;
  LinuxHostStatistics statistics{folder.path()};
};

const std::string netHeader =
    "Inter-|   Receive                                                |  Transmit\n"
    " face |bytes    packets errs drop fifo frame compressed multicast|bytes    packets errs drop "
    "fifo colls carrier compressed\n";

std::string link(const std::string& name, const std::string& received, const std::string& sent) {
  return "  " + name + ": " + received + " 1 2 3 4 5 6 7 " + sent + " 1 2 3 4 5 6 7\n";
}

TEST(HostStatistics, AServerOfManyProcessors) {
  Machine machine;
  std::string stat = "cpu  1000 20 300 40000 500 6 70 8 900 10\n";
  for (int i = 0; i < 256; ++i)
    stat += "cpu" + std::to_string(i) + " 1 2 3 4 5 6 7 8 9 10\n";
  machine.write("proc/stat", stat + "intr 1 2 3\n");
  EXPECT_EQ(machine.statistics.cpuLoad(), (CPULoad{1000, 300 + 6 + 70 + 8, 40500, 20}));
}

TEST(HostStatistics, AnOldKernelTellsLess) {
  Machine machine;
  machine.write("proc/stat", "cpu  1 2 3 4\n");
  machine.write("proc/meminfo", "MemTotal:  1000 kB\nMemFree: 250 kB\nBuffers: 1 kB\n");
  EXPECT_EQ(machine.statistics.cpuLoad(), (CPULoad{1, 3, 4, 2}));
  EXPECT_EQ(machine.statistics.memoryLoad(), (MemoryLoad{750 * 1024, 1000 * 1024}));
}

TEST(HostStatistics, InUseIsWhatIsNotAvailable) {
  Machine machine;
  machine.write(
      "proc/meminfo",
      "MemTotal:       16303428 kB\nMemFree:          512 kB\nMemAvailable:   4303428 kB\n");
  EXPECT_EQ(machine.statistics.memoryLoad(),
            (MemoryLoad{12'000'000ULL * 1024, 16'303'428ULL * 1024}));
  machine.write("proc/meminfo", "MemTotal: 10 kB\nMemAvailable: 20 kB\n");
  EXPECT_EQ(machine.statistics.memoryLoad(), (MemoryLoad{0, 10 * 1024}));
}

TEST(HostStatistics, ADesktopWithTenLinks) {
  Machine machine;
  std::string text = netHeader + link("lo", "5", "5");
  for (int i = 0; i < 9; ++i)
    text += link("veth" + std::to_string(i), std::to_string(i), "18446744073709551615");
  machine.write("proc/net/dev", text + "eth0:12 0 0 0 0 0 0 0 34\n");
  const auto found = machine.links();
  ASSERT_EQ(found.size(), 11U);
  EXPECT_EQ(found[1], "veth0 0 18446744073709551615");
  EXPECT_EQ(found[10], "eth0 12 34");
}

TEST(HostStatistics, ManyLinksAreReadToTheLast) {
  Machine machine;
  std::string text = netHeader;
  for (int i = 0; i < 800; ++i)
    text += link("veth" + std::to_string(i), "1", "2");
  machine.write("proc/net/dev", text);
  EXPECT_EQ(machine.links().size(), 800U);
}

TEST(HostStatistics, WhatIsMissingOrUnreadableHasNoValue) {
  Machine machine;
  EXPECT_FALSE(machine.statistics.cpuLoad());
  EXPECT_FALSE(machine.statistics.memoryLoad());
  EXPECT_TRUE(machine.links().empty());
  fs::create_directories(machine.folder.path() / "proc/stat");
  ::mkfifo((machine.folder.path() / "proc/meminfo").c_str(), 0600);
  EXPECT_FALSE(machine.statistics.cpuLoad()) << "a folder";
  EXPECT_FALSE(machine.statistics.memoryLoad()) << "a pipe that nobody writes to";
}

TEST(HostStatistics, NonsenseHasNoValue) {
  for (const char* text : {"", "\n", "cpu", "cpu \n", "cpu  1 2 3\n", "cpu  a b c d\n",
                           "cpu  -1 2 3 4\n", "cpu  99999999999999999999999 2 3 4\n"}) {
    Machine machine;
    machine.write("proc/stat", text);
    EXPECT_FALSE(machine.statistics.cpuLoad()) << text;
  }
  for (const char* text : {"", "MemTotal: 1000 kB\n", "MemAvailable: 1000 kB\n", "MemTotal 3\n",
                           "MemTotal: 18446744073709551615 kB\nMemAvailable: 1 kB\n",
                           "MemTotal: x kB\nMemAvailable: 1 kB\n"}) {
    Machine machine;
    machine.write("proc/meminfo", text);
    EXPECT_FALSE(machine.statistics.memoryLoad()) << text;
  }
  for (const char* text : {"", ":\n", "  : 1 2 3 4 5 6 7 8 9\n", "eth0: 1 2 3\n", "eth0: x\n",
                           "eth0 1 2 3 4 5 6 7 8 9\n", "eth0: 1 2 3 4 5 6 7 8 -9\n"}) {
    Machine machine;
    machine.write("proc/net/dev", text);
    EXPECT_TRUE(machine.links().empty()) << text;
  }
}

TEST(HostStatistics, ThisMachine) {
  LinuxHostStatistics statistics;
  const auto cpu = statistics.cpuLoad();
  const auto memory = statistics.memoryLoad();
  ASSERT_TRUE(cpu && memory);
  EXPECT_GT(cpu->user + cpu->system + cpu->idle, 0U);
  EXPECT_GT(memory->used, 0U);
  EXPECT_LT(memory->used, memory->physical);
  int links = 0;
  statistics.eachLink([&](auto, auto, auto) { ++links; });
  EXPECT_GE(links, 1);
}


TEST(SystemMonitorEntry, TheDesktopsOwnComesFirst) {
  TemporaryFolder folder;
  TemporaryFolder system;
  const auto entry = [](const fs::path& at, const std::string& name, const std::string& lines) {
    std::ofstream(at / (name + ".desktop"))
        << "[Desktop Entry]\nType=Application\nName=Monitor\nCategories=GTK;System;Monitor;\n"
        << lines << "\n[Desktop Action x]\nExec=false\n";
  };
  const auto found = [&](const std::string& desktop) {
    const auto words = systemMonitorCommand({folder.path(), system.path()}, desktop);
    return words.empty() ? "" : words.back();
  };
  EXPECT_EQ(found("GNOME"), "");
  entry(system.path(), "a-top", "Exec=/bin/sh top\nTerminal=true");
  entry(system.path(), "b-gone", "Exec=/nowhere/monitor b");
  entry(system.path(), "c-hidden", "Exec=/bin/sh c\nNoDisplay=true");
  entry(system.path(), "d-try", "Exec=/bin/sh d\nTryExec=/nowhere/d");
  EXPECT_EQ(found("GNOME"), "");
  entry(system.path(), "e-any", "Exec=/bin/sh any\nNotShowIn=KDE;");
  entry(system.path(), "f-kde", "Exec=/bin/sh kde\nOnlyShowIn=KDE;");
  EXPECT_EQ(found("XFCE"), "any");
  EXPECT_EQ(found("ubuntu:KDE"), "kde");
  // The user's own entry of the same name hides the system's.
  entry(folder.path(), "f-kde", "Exec=/bin/sh mine\nOnlyShowIn=KDE;");
  EXPECT_EQ(found("KDE"), "mine");
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}

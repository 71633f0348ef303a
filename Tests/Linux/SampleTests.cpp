#include "TavrinCore/Kinds/System/ActivitySettings.h"
#include "TavrinCore/Kinds/System/BatterySettings.h"
#include "TavrinCore/Kinds/System/NetworkSettings.h"
#include "TavrinPlatform/Linux/Devices/LinuxHostStatistics.h"
#include "TavrinPlatform/Linux/Devices/SysfsFans.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/FakePlatform.h"
#include "Tests/Support/SystemServices.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <new>
#include <sys/prctl.h>
#include <sys/syscall.h>

/// What a sample may use: nothing that grows, and no child process.
namespace {

/// Of this thread.
thread_local long live = 0;
thread_local long made = 0;

} // namespace

void* operator new(std::size_t size) {
  ++live;
  ++made;
  if (void* memory = std::malloc(size))
    return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  live -= memory != nullptr ? 1 : 0;
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}

namespace tavrin {
namespace {

/// A model of one kind that reads this machine, over a loop that the test moves on.
struct Machine {
  explicit Machine(DockWidget::Kind kind) : services(test::servicesOf(platform)) {
    platform.power.sources = {{62, 100, false, false, 0, 90}};
    model.emplace(SystemWidgetModel::Services{services.clock, services.runLoop, services.workspace,
                                              host, services.power, services.devices},
                  DockWidget({}, "Sampled", 1, std::move(kind), 1));
    model->isPanelShown = [] { return true; };
    model->start();
  }
  void sample(int times) { platform.loop.advance(model->interval() * times); }

  test::FakePlatform platform;
  SystemWidgetModel::Services services;
  LinuxHostStatistics host;
  std::optional<SystemWidgetModel> model;
};

const DockWidget::Kind kinds[] = {BatterySettings{}, ActivitySettings{},
                                  NetworkSettings{{}, NetworkTileStyle::chart}};

TEST(Sample, NothingGrows) {
  for (const auto& kind : kinds) {
    Machine machine(kind);
    machine.sample(100); // until the history is full and the buffers are made
    const long before = live;
    const int firings = machine.platform.loop.firings;
    made = 0;
    machine.sample(1000);
    EXPECT_GE(machine.platform.loop.firings, firings + 999) << kind.index();
    EXPECT_EQ(live, before) << kind.index();
    std::printf("kind %zu: %.1f allocations a sample, all given back\n", kind.index(),
                static_cast<double>(made) / 1000);
  }
}

/// The process ends at any try to start another.
void forbidProcesses() {
  std::array<sock_filter, 8> program{
      sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_execve, 5, 0),
      sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_execveat, 4, 0),
      sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clone, 3, 0),
      sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clone3, 2, 0),
      sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_vfork, 1, 0),
      sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
      sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS)};
  const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
      ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0)
    ::_exit(9);
}

TEST(SampleDeathTest, StartsNoProcess) {
  const auto sampleAll = [] {
    forbidProcesses();
    for (const auto& kind : kinds)
      Machine(kind).sample(20);
    const SysfsFans fans;
    ::_exit(0);
  };
  EXPECT_EXIT(sampleAll(), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(
      {
        forbidProcesses();
        ::_exit(std::system("true"));
      },
      testing::KilledBySignal(SIGSYS), "");
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}

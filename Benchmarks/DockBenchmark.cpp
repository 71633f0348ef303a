#include "TavrinStorage/Dock/PlistFileBackend.h"
#include "TavrinStorage/Dock/WorkspaceBackupStore.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <fcntl.h>
#include <fmt/format.h>
#include <fstream>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

/// A home folder of the benchmark's own, with a Dock of 500 tiles.
class Home {
public:
  Home() {
    std::string name = "/tmp/tavrin-bench-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr)
      std::abort();
    path_ = name;
    DockSnapshot dock;
    for (int i = 0; i < 500; ++i)
      dock.apps.push_back(
          {AppEntry{fmt::format("/Applications/App{}.app", i), fmt::format("com.example.app{}", i),
                    fmt::format("App{}", i), std::nullopt}});
    dockPlistWriter(dockFile()).write(dock);
  }
  Home(const Home&) = delete;
  Home& operator=(const Home&) = delete;
  ~Home() { fs::remove_all(path_); }
  fs::path dockFile() const { return path_ / "dock.plist"; }
  const fs::path& path() const { return path_; }

private:
  fs::path path_;
};

/// Runs the program to its end; its output is dropped.
void run(benchmark::State& state, const Home& home, std::vector<std::string> words) {
  words.insert(words.begin(), TAVRIN_PROGRAM);
  std::vector<char*> arguments;
  for (auto& word : words)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);
  std::vector<std::string> settings = {"HOME=" + home.path().string(), "LC_ALL=C.UTF-8",
                                       "DBUS_SESSION_BUS_ADDRESS=disabled:"};
  std::vector<char*> environment;
  for (auto& setting : settings)
    environment.push_back(setting.data());
  environment.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  int status = -1;
  if (posix_spawn(&child, words.front().c_str(), &actions, nullptr, arguments.data(),
                  environment.data()) != 0 ||
      ::waitpid(child, &status, 0) != child || status != 0)
    state.SkipWithError("the program failed");
  posix_spawn_file_actions_destroy(&actions);
}

/// The whole process, from its start to its end.
void showDockOf500(benchmark::State& state) {
  const Home home;
  for (auto unused : state)
    run(state, home, {"dock", "show", "--file", home.dockFile().string()});
}
BENCHMARK(showDockOf500)->UseRealTime()->Unit(benchmark::kMillisecond);

void changeDockOf500(benchmark::State& state) {
  const Home home;
  bool isFirst = true;
  for (auto unused : state) {
    run(state, home,
        {"dock", "move", "App250", "--position", isFirst ? "last" : "first", "--file",
         home.dockFile().string()});
    isFirst = !isFirst;
  }
}
BENCHMARK(changeDockOf500)->UseRealTime()->Unit(benchmark::kMillisecond);

/// A backup of the workspace where forty are kept, the oldest deleted.
void backUpWithFortyKept(benchmark::State& state) {
  const Home home;
  WorkspaceBackupStore store(home.path());
  Date moment{};
  int generation = 0;
  const auto change = [&] {
    std::ofstream(home.path() / "profiles.json")
        << R"({"version":2,"profiles":[]})" << std::string(50'000, ' ') << ++generation;
    std::ofstream(home.path() / "widgets.json") << std::string(20'000, ' ') << generation;
    moment = moment + 1;
  };
  for (int i = 0; i < 40; ++i) {
    change();
    store.backUp(WorkspaceBackup::Reason::launch, moment);
  }
  for (auto unused : state) {
    state.PauseTiming();
    change();
    state.ResumeTiming();
    if (!store.backUp(WorkspaceBackup::Reason::launch, moment))
      state.SkipWithError("no backup was made");
  }
}
BENCHMARK(backUpWithFortyKept)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tavrin

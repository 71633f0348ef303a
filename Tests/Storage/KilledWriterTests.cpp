#include "TavrinStorage/WidgetStore.h"

#include "Tests/Storage/TemporaryFolder.h"

#include <csignal>
#include <ctime>
#include <gtest/gtest.h>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

/// All widgets of one generation bear its number, so that a mixture of two would show.
void saveGeneration(WidgetStore& store, int generation) {
  auto widget = store.file().widgets.front();
  NoteSettings note;
  note.text = std::string(static_cast<std::size_t>(generation * 7919 % 40'000), 'x');
  widget.name = std::to_string(generation) + ":" + std::to_string(note.text.size());
  widget.kind = std::move(note);
  store.update(widget);
}

/// Never returns: ends by being killed.
[[noreturn]] void saveForEver(const fs::path& url) {
  try {
    WidgetStore store(url);
    for (int generation = std::stoi(store.file().widgets.front().name) + 1;; ++generation)
      saveGeneration(store, generation);
  } catch (...) {
  }
  ::_exit(1);
}

void sleepMicroseconds(long microseconds) {
  timespec pause{microseconds / 1'000'000, microseconds % 1'000'000 * 1000};
  ::nanosleep(&pause, nullptr);
}

/// TAVRIN_KILL_ROUNDS sets the number of rounds.
TEST(KilledWriter, AlwaysLeavesAWholeFile) {
  const char* wanted = std::getenv("TAVRIN_KILL_ROUNDS");
  const int rounds = wanted != nullptr ? std::atoi(wanted) : 200;
  const TemporaryFolder folder;
  const auto url = folder / "widgets.json";
  {
    WidgetStore store(url);
    store.create("w", NoteSettings{});
    saveGeneration(store, 1);
  }
  std::mt19937 random(20'260'310);
  std::uniform_int_distribution<long> moment(0, 8000);
  int generation = 1;
  int advanced = 0;
  for (int round = 0; round < rounds; ++round) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0)
      saveForEver(url);
    sleepMicroseconds(moment(random));
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the writer failed by itself in round " << round;

    const WidgetStore store(url);
    ASSERT_EQ(store.file().widgets.size(), 1u) << "round " << round;
    const auto& widget = store.file().widgets.front();
    const int found = std::stoi(widget.name);
    ASSERT_GE(found, generation) << "an older file came back in round " << round;
    ASSERT_EQ(widget.name.substr(widget.name.find(':') + 1),
              std::to_string(widget.kind.get<NoteSettings>()->text.size()));
    advanced += found > generation ? 1 : 0;
    generation = found;
  }
  // Else nothing was being written when the writers died.
  EXPECT_GT(advanced, rounds / 20);
  RecordProperty("generations", generation);
}

} // namespace
} // namespace tavrin

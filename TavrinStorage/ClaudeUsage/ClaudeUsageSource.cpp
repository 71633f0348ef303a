#include "TavrinStorage/ClaudeUsage/ClaudeUsageSource.h"

#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsage.h"
#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinStorage/ClaudeUsage/UsageLogFile.h"

#include <algorithm>
#include <atomic>
#include <fcntl.h>
#include <future>
#include <memory>
#include <thread>
#include <unistd.h>

namespace tavrin {
namespace {

constexpr std::size_t tailLength = 64;
/// Less than this is read sooner than a thread is started.
constexpr std::int64_t worthThreads = 8 << 20;
constexpr unsigned mostThreads = 4;

Descriptor opened(const std::string& path) {
  // Without O_NONBLOCK a pipe that came in the file's place would wait for a writer.
  return Descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
}

/// The bytes just before `offset`.
std::string tailBefore(int descriptor, std::int64_t offset) {
  std::string tail(static_cast<std::size_t>(std::min<std::int64_t>(offset, tailLength)), '\0');
  const auto count = ::pread(descriptor, tail.data(), tail.size(),
                             offset - static_cast<std::int64_t>(tail.size()));
  tail.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  return tail;
}

} // namespace

ClaudeUsageSource::ClaudeUsageSource(std::filesystem::path root)
    : root_(std::move(root)), logs_(root_ / "projects", [](std::string_view name) {
        return ClaudeUsage::projectName(name).has_value();
      }) {}
ClaudeUsageSource::~ClaudeUsageSource() = default;

bool ClaudeUsageSource::isAvailable() const {
  std::error_code ignored;
  return std::filesystem::is_directory(root_, ignored);
}

const ClaudeUsageEntries& ClaudeUsageSource::entries(Date since) {
  if (since < since_) {
    cursors_.clear(); // they were not read back so far
    mustCountAll_ = true;
  }
  Jobs jobs = findChanges(since);
  dropMissing();
  readAll(jobs, since);
  if (since_ < since || !jobs.empty())
    dropOlder(since);
  since_ = since;
  count(jobs);
  return entries_;
}

/// Marks the cursors whose logs are there; gives those that have something to read.
ClaudeUsageSource::Jobs ClaudeUsageSource::findChanges(Date since) {
  Jobs jobs;
  for (auto& [unused, cursor] : cursors_)
    cursor.isThere = false;
  logs_.forEachLog(
      [&](const std::string& path, const std::string& folder, const UsageLogState& state) {
        if (state.modified < since)
          return;
        const auto [place, isNew] = cursors_.try_emplace(path);
        Cursor& cursor = place->second;
        cursor.isThere = true;
        if (isNew)
          cursor.project = projectName(folder);
        if (isNew || !cursor.isSettled || cursor.state != state) {
          if (!cursor.state.isSameFile(state))
            cursor.offset = -1;
          cursor.state = state;
          jobs.push_back(&*place);
        }
      });
  return jobs;
}

void ClaudeUsageSource::readAll(Jobs jobs, Date since) {
  std::int64_t amount = 0;
  for (const auto* job : jobs)
    amount += job->second.state.size - std::max<std::int64_t>(job->second.offset, 0);
  std::sort(jobs.begin(), jobs.end(), [](const auto* a, const auto* b) {
    return a->second.state.size > b->second.state.size;
  });
  std::atomic<std::size_t> next = 0;
  std::atomic<std::uint64_t> bytes = 0;
  const auto work = [&] {
    UsageLogFile file;
    for (std::size_t i = next++; i < jobs.size(); i = next++)
      read(jobs[i]->first, jobs[i]->second, file, since);
    bytes += file.bytesRead();
  };
  const auto cores = std::clamp(std::thread::hardware_concurrency(), 1U, mostThreads);
  const auto helpers = amount < worthThreads ? 0 : std::min<std::size_t>(cores, jobs.size()) - 1;
  // Each is waited for when it goes.
  std::vector<std::future<void>> threads;
  for (std::size_t i = 0; i < helpers; ++i)
    threads.push_back(std::async(std::launch::async, work));
  if (!jobs.empty())
    work();
  threads.clear();
  bytesRead_ += bytes;
}

void ClaudeUsageSource::read(const std::string& path, Cursor& cursor, UsageLogFile& file,
                             Date since) {
  const Descriptor descriptor = opened(path);
  const UsageLogState state = usageLogState(descriptor.number());
  const bool grew = cursor.offset >= 0 && state.isSameFile(cursor.state) &&
                    state.size >= cursor.offset &&
                    tailBefore(descriptor.number(), cursor.offset) == cursor.tail;
  const std::size_t before = grew ? cursor.entries.size() : 0;
  if (grew && state.size == cursor.offset) {
    cursor.state = state;
    cursor.isSettled = isSettled(state.modified);
    return;
  }
  if (grew) {
    cursor.offset =
        file.readForwards(descriptor.number(), cursor.offset, state.size, cursor.entries);
  } else {
    cursor.wasReplaced = cursor.counted > 0;
    cursor.entries.clear();
    cursor.counted = 0;
    cursor.offset = file.readBackwards(descriptor.number(), state.size, since, cursor.entries);
    cursor.entries.shrink_to_fit();
  }
  for (std::size_t i = before; i < cursor.entries.size(); ++i)
    cursor.entries[i].project = cursor.project;
  cursor.tail = tailBefore(descriptor.number(), cursor.offset);
  cursor.state = state;
  cursor.isSettled = isSettled(state.modified);
}

void ClaudeUsageSource::dropMissing() {
  std::erase_if(cursors_, [&](const auto& item) {
    const Cursor& cursor = item.second;
    if (!cursor.isThere)
      mustCountAll_ |= cursor.counted > 0;
    return !cursor.isThere;
  });
}

void ClaudeUsageSource::dropOlder(Date since) {
  for (auto& [unused, cursor] : cursors_) {
    const auto dropped = std::erase_if(
        cursor.entries, [&](const ClaudeUsageEntry& entry) { return entry.timestamp < since; });
    mustCountAll_ |= dropped > 0 && cursor.counted > 0;
  }
}

void ClaudeUsageSource::count(const Jobs& jobs) {
  for (auto* job : jobs)
    mustCountAll_ |= std::exchange(job->second.wasReplaced, false);
  const auto add = [&](Cursor& cursor) {
    for (std::size_t i = cursor.counted; i < cursor.entries.size(); ++i)
      entries_.add(cursor.entries[i]);
    cursor.counted = cursor.entries.size();
  };
  if (!std::exchange(mustCountAll_, false)) {
    for (auto* job : jobs)
      add(job->second);
    return;
  }
  std::size_t total = 0;
  for (const auto& [unused, cursor] : cursors_)
    total += cursor.entries.size();
  entries_.clear();
  entries_.reserve(total);
  for (auto& [unused, cursor] : cursors_) {
    cursor.counted = 0;
    add(cursor);
  }
}

ClaudeUsageProjectName ClaudeUsageSource::projectName(const std::string& folder) {
  auto& name = projectNames_[folder];
  if (!name)
    if (auto text = ClaudeUsage::projectName(folder))
      name = std::make_shared<const std::string>(std::move(*text));
  return name;
}

} // namespace tavrin

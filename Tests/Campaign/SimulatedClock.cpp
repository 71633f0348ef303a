// Loaded into the slots and the command by the campaign, before any other library. It does two
// things that a program cannot see:
//
// - The wall clock stands `offset` nanoseconds beside the machine's. The offset is the first eight
//   bytes of the file CAMPAIGN_CLOCK; writing them sets the clock of all processes at once, and
//   ends their waits for a change of it as the system does. The monotonic clocks go on as they are,
//   so a jump is what a process sees of a machine that slept, or whose clock somebody set.
// - It writes a line to the file CAMPAIGN_STALLS when the main thread took longer than a tenth of
//   a second from one wait of its event loop to the next: what it ran, and what it was blocked in
//   its own calls. Not counted is the time for which it could have run and other processes had the
//   processors; nor, of the time it was blocked, that for which other threads of the process or
//   the X server (CAMPAIGN_DISPLAY_PROCESS) could have run: a machine with other work must not
//   pass for a slow program, nor hide one.
#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/timerfd.h>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::int64_t second = 1'000'000'000;
constexpr std::int64_t limit = second / 10;

template <class Function> Function next(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

const std::int64_t* offsetInFile() {
  static const std::int64_t zero = 0;
  static const std::int64_t* const mapped = [] {
    const char* file = std::getenv("CAMPAIGN_CLOCK");
    const int descriptor = file == nullptr ? -1 : ::open(file, O_RDONLY | O_CLOEXEC);
    void* page = descriptor < 0
                     ? MAP_FAILED
                     : ::mmap(nullptr, sizeof zero, PROT_READ, MAP_SHARED, descriptor, 0);
    if (descriptor >= 0)
      ::close(descriptor);
    return page == MAP_FAILED ? &zero : static_cast<const std::int64_t*>(page);
  }();
  return mapped;
}

std::int64_t offset() {
  return __atomic_load_n(offsetInFile(), __ATOMIC_RELAXED);
}

std::int64_t nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * second + time.tv_nsec;
}

std::int64_t machineTime(clockid_t clock) {
  timespec time{};
  static const auto real = next<int (*)(clockid_t, timespec*)>("clock_gettime");
  real(clock, &time);
  return nanoseconds(time);
}

timespec asTime(std::int64_t count) {
  return {static_cast<std::time_t>(count / second), static_cast<long>(count % second)};
}

// Timers on the wall clock are a set of two: the machine's timer, and a watch of the clock's file.

struct WallTimer {
  std::atomic<int> set = -1;
  int timer = -1;
  int watch = -1;
};
std::array<WallTimer, 8> wallTimers;

WallTimer* wallTimer(int set) {
  if (set >= 0)
    for (auto& each : wallTimers)
      if (each.set == set)
        return &each;
  return nullptr;
}

void addTo(int set, int descriptor) {
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.fd = descriptor;
  epoll_ctl(set, EPOLL_CTL_ADD, descriptor, &event);
}

// The main thread's event loop.

struct Loop {
  pid_t process = 0;
  int schedule = -1;
  int serverSchedule = -1;
  bool isBusy = false;
  std::int64_t busySince = 0;
  std::int64_t processorThen = 0;
  std::int64_t waitThen = 0;
  std::int64_t threadsWaitThen = 0;
  std::int64_t serverWaitThen = 0;
  timer_t alarm{};
  std::array<void*, 48> frames{};
  volatile int frameCount = 0;
};
Loop loop;

/// What a thread has run, and what it has waited for a processor, in nanoseconds.
std::pair<std::int64_t, std::int64_t> scheduled(int schedule) {
  std::array<char, 80> text{};
  long long ran = 0;
  long long waited = 0;
  if (schedule >= 0 && ::pread(schedule, text.data(), text.size() - 1, 0) > 0)
    std::sscanf(text.data(), "%lld %lld", &ran, &waited);
  return {ran, waited};
}

/// The same for what all threads of this process have waited; the main one waits for others'
/// answers.
std::int64_t waitOfAllThreads() {
  std::int64_t sum = 0;
  DIR* const tasks = ::opendir("/proc/self/task");
  while (const dirent* entry = tasks == nullptr ? nullptr : ::readdir(tasks)) {
    std::array<char, 64> file{};
    std::snprintf(file.data(), file.size(), "/proc/self/task/%.16s/schedstat", entry->d_name);
    const int schedule = ::open(file.data(), O_RDONLY | O_CLOEXEC);
    sum += scheduled(schedule).second;
    if (schedule >= 0)
      ::close(schedule);
  }
  if (tasks != nullptr)
    ::closedir(tasks);
  return sum;
}

extern "C" void noteWhere(int) {
  const int error = errno;
  loop.frameCount = backtrace(loop.frames.data(), static_cast<int>(loop.frames.size()));
  errno = error;
}

void beginWatch() {
  loop.process = ::getpid();
  loop.isBusy = false;
  loop.schedule = ::open("/proc/thread-self/schedstat", O_RDONLY | O_CLOEXEC);
  if (const char* server = std::getenv("CAMPAIGN_DISPLAY_PROCESS")) {
    std::array<char, 64> file{};
    std::snprintf(file.data(), file.size(), "/proc/%.20s/schedstat", server);
    loop.serverSchedule = ::open(file.data(), O_RDONLY | O_CLOEXEC);
  }
  // The first call loads a library, which a signal's handler must not.
  void* frame = nullptr;
  backtrace(&frame, 1);
  struct sigaction action {};
  action.sa_handler = noteWhere;
  action.sa_flags = SA_RESTART;
  sigaction(SIGRTMAX - 1, &action, nullptr);
  sigevent event{};
  event.sigev_notify = SIGEV_THREAD_ID;
  event.sigev_signo = SIGRTMAX - 1;
  event._sigev_un._tid = loop.process;
  timer_create(CLOCK_MONOTONIC, &event, &loop.alarm);
}

void setAlarm(std::int64_t delay) {
  itimerspec time{};
  time.it_value = asTime(delay);
  timer_settime(loop.alarm, 0, &time, nullptr);
}

void report(std::int64_t held, std::int64_t wall, std::int64_t ran) {
  const char* file = std::getenv("CAMPAIGN_STALLS");
  const int descriptor =
      file == nullptr ? -1 : ::open(file, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
  if (descriptor < 0)
    return;
  std::array<char, 6000> line{};
  auto length = static_cast<std::size_t>(std::snprintf(
      line.data(), line.size(), "%d %.1f %.1f %.1f", loop.process, static_cast<double>(held) / 1e6,
      static_cast<double>(wall) / 1e6, static_cast<double>(ran) / 1e6));
  for (int i = 0; i < loop.frameCount && length < line.size() - 300; ++i) {
    void* const address = loop.frames[static_cast<std::size_t>(i)];
    Dl_info place{};
    dladdr(address, &place);
    const char* module = place.dli_fname == nullptr ? "?" : place.dli_fname;
    const auto base = static_cast<const char*>(place.dli_fbase);
    length +=
        static_cast<std::size_t>(std::snprintf(line.data() + length, 280, "\t%.200s+%#tx", module,
                                               static_cast<const char*>(address) - base));
  }
  line[length++] = '\n';
  [[maybe_unused]] const auto written = ::write(descriptor, line.data(), length);
  ::close(descriptor);
}

void endBusyTime() {
  if (!loop.isBusy)
    return;
  loop.isBusy = false;
  setAlarm(0);
  const auto wall = machineTime(CLOCK_MONOTONIC) - loop.busySince;
  if (wall <= limit)
    return;
  const auto [runAll, waitAll] = scheduled(loop.schedule);
  const auto ran = runAll - loop.processorThen;
  const auto waited = waitAll - loop.waitThen;
  const auto ofOthers = waitOfAllThreads() - loop.threadsWaitThen - waited +
                        scheduled(loop.serverSchedule).second - loop.serverWaitThen;
  const auto blocked = wall - ran - waited - std::max(ofOthers, std::int64_t{0});
  const auto held = ran + std::max(blocked, std::int64_t{0});
  if (held > limit)
    report(held, wall, ran);
}

void beginBusyTime() {
  if (loop.process != ::getpid())
    beginWatch();
  loop.isBusy = true;
  loop.frameCount = 0;
  std::tie(loop.processorThen, loop.waitThen) = scheduled(loop.schedule);
  loop.threadsWaitThen = waitOfAllThreads();
  loop.serverWaitThen = scheduled(loop.serverSchedule).second;
  loop.busySince = machineTime(CLOCK_MONOTONIC);
  setAlarm(limit);
}

/// Whether the main thread's own event loop waits, which lives in the toolkit's library.
bool isLoopsWait(const void* caller) {
  if (::syscall(SYS_gettid) != ::getpid())
    return false;
  Dl_info place{};
  return dladdr(caller, &place) != 0 && place.dli_fname != nullptr &&
         std::strstr(place.dli_fname, "Qt6Core") != nullptr;
}

} // namespace

extern "C" {

int clock_gettime(clockid_t clock, timespec* time) noexcept {
  static const auto real = next<int (*)(clockid_t, timespec*)>("clock_gettime");
  const int result = real(clock, time);
  if (result == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE))
    *time = asTime(nanoseconds(*time) + offset());
  return result;
}

std::time_t time(std::time_t* result) noexcept {
  const auto now = static_cast<std::time_t>((machineTime(CLOCK_REALTIME) + offset()) / second);
  if (result != nullptr)
    *result = now;
  return now;
}

int gettimeofday(timeval* time, void*) noexcept {
  const auto now = machineTime(CLOCK_REALTIME) + offset();
  *time = {static_cast<std::time_t>(now / second), static_cast<long>(now % second / 1000)};
  return 0;
}

int timerfd_create(clockid_t clock, int flags) noexcept {
  static const auto real = next<int (*)(clockid_t, int)>("timerfd_create");
  const char* file = std::getenv("CAMPAIGN_CLOCK");
  if (clock != CLOCK_REALTIME || file == nullptr)
    return real(clock, flags);
  for (auto& each : wallTimers) {
    int unused = -1;
    const int set = epoll_create1(EPOLL_CLOEXEC);
    if (!each.set.compare_exchange_strong(unused, set)) {
      ::close(set);
      continue;
    }
    each.timer = real(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK);
    each.watch = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    inotify_add_watch(each.watch, file, IN_MODIFY);
    addTo(set, each.timer);
    addTo(set, each.watch);
    return set;
  }
  errno = EMFILE;
  return -1;
}

int timerfd_settime(int descriptor, int flags, const itimerspec* wanted, itimerspec* old) noexcept {
  static const auto real =
      next<int (*)(int, int, const itimerspec*, itimerspec*)>("timerfd_settime");
  const auto* timer = wallTimer(descriptor);
  if (timer == nullptr)
    return real(descriptor, flags, wanted, old);
  itimerspec left = *wanted;
  if ((flags & TFD_TIMER_ABSTIME) != 0 && nanoseconds(wanted->it_value) != 0) {
    const auto now = machineTime(CLOCK_REALTIME) + offset();
    left.it_value = asTime(std::max(nanoseconds(wanted->it_value) - now, std::int64_t{1}));
  }
  return real(timer->timer, 0, &left, old);
}

ssize_t read(int descriptor, void* buffer, std::size_t size) {
  static const auto real = next<ssize_t (*)(int, void*, std::size_t)>("read");
  const auto* timer = wallTimer(descriptor);
  if (timer == nullptr)
    return real(descriptor, buffer, size);
  std::array<char, 1024> events{};
  bool hasChanged = false;
  while (real(timer->watch, events.data(), events.size()) > 0)
    hasChanged = true;
  if (!hasChanged)
    return real(timer->timer, buffer, size);
  errno = ECANCELED;
  return -1;
}

int close(int descriptor) {
  static const auto real = next<int (*)(int)>("close");
  if (auto* timer = wallTimer(descriptor)) {
    real(timer->timer);
    real(timer->watch);
    timer->set = -1;
  }
  return real(descriptor);
}

int poll(pollfd* descriptors, nfds_t count, int timeout) {
  static const auto real = next<int (*)(pollfd*, nfds_t, int)>("poll");
  const bool isWait = isLoopsWait(__builtin_return_address(0));
  if (isWait)
    endBusyTime();
  const int result = real(descriptors, count, timeout);
  const int error = errno;
  if (isWait)
    beginBusyTime();
  errno = error;
  return result;
}

int ppoll(pollfd* descriptors, nfds_t count, const timespec* timeout, const sigset_t* mask) {
  static const auto real =
      next<int (*)(pollfd*, nfds_t, const timespec*, const sigset_t*)>("ppoll");
  const bool isWait = isLoopsWait(__builtin_return_address(0));
  if (isWait)
    endBusyTime();
  const int result = real(descriptors, count, timeout, mask);
  const int error = errno;
  if (isWait)
    beginBusyTime();
  errno = error;
  return result;
}
}

#include "TavrinPlatform/Linux/Slot/ClockWatch.h"

#include <QSocketNotifier>
#include <cerrno>
#include <ctime>
#include <sys/timerfd.h>
#include <unistd.h>

namespace tavrin {

namespace {

tm localNow() {
  const std::time_t now = std::time(nullptr);
  tm local{};
  tzset();
  localtime_r(&now, &local);
  return local;
}

int dayNumber(const tm& local) {
  return local.tm_year * 1000 + local.tm_yday;
}

std::time_t nextMidnight() {
  tm local = localNow();
  local.tm_mday += 1;
  local.tm_hour = local.tm_min = local.tm_sec = 0;
  local.tm_isdst = -1;
  return std::mktime(&local);
}

} // namespace

ClockWatch::ClockWatch()
    : descriptor_(timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK)),
      day_(dayNumber(localNow())) {
  if (descriptor_ < 0)
    return;
  notifier_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read);
  connect(notifier_.get(), &QSocketNotifier::activated, this, &ClockWatch::expired);
  arm();
}

ClockWatch::~ClockWatch() {
  notifier_.reset();
  if (descriptor_ >= 0)
    ::close(descriptor_);
}

void ClockWatch::recheck() {
  if (descriptor_ >= 0)
    arm();
  const int today = dayNumber(localNow());
  if (std::exchange(day_, today) != today && onDayChange)
    onDayChange();
}

void ClockWatch::expired() {
  std::uint64_t count = 0;
  const auto got = ::read(descriptor_, &count, sizeof count);
  const bool isCancelled = got < 0 && errno == ECANCELED;
  if (isCancelled && onClockChange)
    onClockChange();
  recheck();
}

void ClockWatch::arm() {
  itimerspec time{};
  time.it_value.tv_sec = nextMidnight();
  timerfd_settime(descriptor_, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &time, nullptr);
}

} // namespace tavrin

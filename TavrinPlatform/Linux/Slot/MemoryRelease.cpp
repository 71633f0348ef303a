#include "TavrinPlatform/Linux/Slot/MemoryRelease.h"

#include "TavrinPlatform/Linux/Base/X11.h"

#include <cstdint>
#include <malloc.h>
#include <pthread.h>
#include <sys/mman.h>

namespace tavrin {
namespace {

constexpr int settledMilliseconds = 1'000;

void releaseUnusedMemory() {
  x11::forgetAnswered();
  malloc_trim(0);
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0)
    return;
  void* end = nullptr;
  std::size_t size = 0;
  pthread_attr_getstack(&attributes, &end, &size);
  pthread_attr_destroy(&attributes);
  constexpr std::uintptr_t page = 4096;
  // What lies below this frame is dead; some of it stays for the calls to come.
  const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  const auto lowest = reinterpret_cast<std::uintptr_t>(end);
  const auto limit = (here - 4 * page) & ~(page - 1);
  if (limit > lowest)
    madvise(end, limit - lowest, MADV_DONTNEED);
}

} // namespace

MemoryRelease::MemoryRelease() {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::CoarseTimer);
  timer_.setInterval(settledMilliseconds);
  QObject::connect(&timer_, &QTimer::timeout, releaseUnusedMemory);
}

} // namespace tavrin

#pragma once

#include <sys/stat.h>
#include <time.h>

namespace tavrin {

/// When a file's contents changed last, to the nanosecond: Unixes name the member differently.
inline const timespec& modificationTime(const struct stat& info) {
#ifdef __APPLE__
  return info.st_mtimespec;
#else
  return info.st_mtim;
#endif
}

/// When a file changed last in any way, its name and place included.
inline const timespec& statusChangeTime(const struct stat& info) {
#ifdef __APPLE__
  return info.st_ctimespec;
#else
  return info.st_ctim;
#endif
}

} // namespace tavrin

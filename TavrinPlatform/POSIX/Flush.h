#pragma once

#include <fcntl.h>
#include <unistd.h>

namespace tavrin {

/// Puts a file's contents on the disk itself, so that they outlive a power failure. Answers false
/// with the reason in errno.
inline bool flushToDisk(int descriptor) {
#ifdef F_FULLFSYNC
  // There fsync leaves the bytes in the disk's own memory. Not every file system knows the other.
  if (::fcntl(descriptor, F_FULLFSYNC) == 0)
    return true;
#endif
  return ::fsync(descriptor) == 0;
}

} // namespace tavrin

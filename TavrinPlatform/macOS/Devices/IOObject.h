#pragma once

#include <IOKit/IOKitLib.h>

#include <utility>

namespace tavrin {

/// A kernel object that this owns a right to; 0 where there is none. Connections are closed
/// otherwise and are none of these.
class IOObject {
public:
  IOObject() = default;
  explicit IOObject(io_object_t object) : object_(object) {}
  ~IOObject() {
    if (object_ != IO_OBJECT_NULL)
      IOObjectRelease(object_);
  }
  IOObject(IOObject&& other) noexcept : object_(std::exchange(other.object_, IO_OBJECT_NULL)) {}
  IOObject& operator=(IOObject&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  io_object_t get() const { return object_; }
  explicit operator bool() const { return object_ != IO_OBJECT_NULL; }

private:
  io_object_t object_ = IO_OBJECT_NULL;
};

} // namespace tavrin

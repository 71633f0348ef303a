#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <string>
#include <utility>

namespace tavrin {

/// A reference to an object of Core Foundation that this owns: what a "Create" or "Copy" function
/// gave. Let go of when it goes; null where there is none.
template <class Reference> class CFRef {
public:
  CFRef() = default;
  explicit CFRef(Reference owned) : object_(owned) {}
  ~CFRef() { reset(); }
  CFRef(CFRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  CFRef& operator=(CFRef&& other) noexcept {
    if (this != &other) {
      reset();
      object_ = std::exchange(other.object_, nullptr);
    }
    return *this;
  }
  Reference get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  /// Where a function puts the reference that it gives away.
  Reference* receive() {
    reset();
    return &object_;
  }

private:
  void reset() {
    if (object_ != nullptr)
      CFRelease(object_);
    object_ = nullptr;
  }

  Reference object_ = nullptr;
};

using CFText = CFRef<CFStringRef>;

/// Null for what is no UTF-8.
CFText toCFText(const std::string& text);

/// Values of an object that the caller keeps; no value for null and for another type. A number
/// that is not whole is no whole number.
std::optional<std::string> textFrom(CFTypeRef object);
std::optional<int> integerFrom(CFTypeRef object);
std::optional<bool> booleanFrom(CFTypeRef object);

} // namespace tavrin

#include "TavrinPlatform/Linux/Input/InputGrab.h"

#include "TavrinPlatform/Files/Descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <linux/input.h>
#include <optional>
#include <set>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tavrin {
namespace {

constexpr std::size_t keyBytes = KEY_MAX / 8 + 1;
using Bits = std::array<std::uint8_t, keyBytes>;

bool has(const Bits& bits, unsigned bit) {
  return (bits[bit / 8] >> (bit % 8) & 1U) != 0;
}

/// Codes from BTN_MISC up to KEY_OK are buttons.
bool isButton(unsigned code) {
  return code >= BTN_MISC && code < KEY_OK;
}

/// A finger or a pen on a surface, and with what.
bool isTouch(unsigned code) {
  return code >= BTN_DIGI && code < BTN_WHEEL;
}

/// Wiping a touchpad is no click: that has a button of its own. A touchscreen has none.
char typeOfKey(unsigned code, std::int32_t value, bool hasButton) {
  const bool isPress = value != 0;
  if (!isButton(code))
    return isPress ? 10 : 11;
  if (isTouch(code) && (hasButton || code != BTN_TOUCH))
    return 5;
  if (code == BTN_LEFT || code == BTN_TOUCH)
    return isPress ? 1 : 2;
  if (code == BTN_RIGHT)
    return isPress ? 3 : 4;
  return isPress ? 25 : 26;
}

class EvdevInputGrab final : public InputGrab {
public:
  explicit EvdevInputGrab(std::filesystem::path folder) : folder_(std::move(folder)) {}
  ~EvdevInputGrab() override { release(); }

  Result begin(bool locksPointer) override {
    locksPointer_ = locksPointer;
    const Attempt attempt = takeAll();
    const bool hasKeyboard =
        std::ranges::any_of(devices_, [](const Device& device) { return device.hasEnter; });
    if (attempt.result == Result::holding && hasKeyboard)
      return Result::holding;
    release();
    if (attempt.result != Result::holding)
      return attempt.result;
    return attempt.isDenied ? Result::notPermitted : Result::refused;
  }

  /// What cannot be had yet, as a key of it is down or its permissions are still being set, is
  /// tried again.
  bool renew() override {
    takeAll();
    return true;
  }

  std::vector<int> descriptors() const override {
    std::vector<int> descriptors;
    for (const auto& device : devices_)
      descriptors.push_back(device.descriptor.number());
    return descriptors;
  }

  bool read(std::vector<char>& eventTypes) override {
    std::erase_if(devices_, [&](const Device& device) { return !read(device, eventTypes); });
    return true;
  }

private:
  struct Device {
    Descriptor descriptor;
    bool hasButton;
    bool hasEnter;
    /// Of its file: another device may come by the same name.
    ino_t inode;
  };

  struct Attempt {
    /// `holding` where every device that may be opened could be had.
    Result result = Result::holding;
    bool isDenied = false;
  };

  /// Takes what is there and not taken yet. What hinders one device hinders none of the others.
  Attempt takeAll() {
    Attempt attempt;
    std::set<ino_t> others;
    std::error_code error;
    for (std::filesystem::directory_iterator file(folder_, error), end; !error && file != end;
         file.increment(error)) {
      struct stat status {};
      if (!file->path().filename().string().starts_with("event") ||
          ::stat(file->path().c_str(), &status) != 0 ||
          std::ranges::find(devices_, status.st_ino, &Device::inode) != devices_.end())
        continue;
      const auto result =
          others_.contains(status.st_ino) ? std::nullopt : take(file->path(), status.st_ino);
      if (!result)
        others.insert(status.st_ino);
      else if (*result == Result::notPermitted)
        attempt.isDenied = true;
      else if (*result != Result::holding)
        attempt.result = *result;
    }
    others_ = std::move(others);
    return attempt;
  }

  /// No value where it is nothing that is held.
  std::optional<Result> take(const std::filesystem::path& path, ino_t inode) {
    Descriptor device(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!device)
      return errno == EACCES || errno == EPERM ? std::optional(Result::notPermitted) : std::nullopt;
    Bits keys{};
    ::ioctl(device.number(), EVIOCGBIT(EV_KEY, keys.size()), keys.data());
    const bool isKeyboard = has(keys, KEY_ENTER) || has(keys, KEY_POWER) || has(keys, KEY_MUTE);
    const bool isPointer = has(keys, BTN_LEFT) || has(keys, BTN_TOUCH);
    const bool isWanted = isKeyboard || (isPointer && locksPointer_);
    const auto result = isWanted ? std::optional(grab(device.number())) : std::nullopt;
    if (result == Result::holding)
      devices_.push_back({std::move(device), has(keys, BTN_LEFT), has(keys, KEY_ENTER), inode});
    return result;
  }

  /// False for a device that was pulled out: it holds nothing back, and only stays readable.
  static bool read(const Device& device, std::vector<char>& eventTypes) {
    std::array<input_event, 64> events{};
    for (;;) {
      const ssize_t size = ::read(device.descriptor.number(), events.data(), sizeof events);
      if (size <= 0)
        return size == 0 || errno == EAGAIN || errno == EINTR;
      for (std::size_t i = 0; i < static_cast<std::size_t>(size) / sizeof(input_event); ++i)
        take(events[i], device.hasButton, eventTypes);
    }
  }

  /// A key that is down stays down for the others until its release, which they would not get.
  static Result grab(int device) {
    Bits pressed{};
    if (::ioctl(device, EVIOCGKEY(pressed.size()), pressed.data()) >= 0)
      for (const auto byte : pressed)
        if (byte != 0)
          return Result::busy;
    if (::ioctl(device, EVIOCGRAB, 1) == 0)
      return Result::holding;
    return errno == EBUSY ? Result::busy : Result::refused;
  }

  static void take(const input_event& event, bool hasButton, std::vector<char>& eventTypes) {
    if (event.type == EV_KEY)
      eventTypes.push_back(typeOfKey(event.code, event.value, hasButton));
    else if (event.type == EV_REL)
      eventTypes.push_back(event.code == REL_WHEEL || event.code == REL_HWHEEL ? 22 : 5);
    else if (event.type == EV_ABS)
      eventTypes.push_back(5);
  }

  void release() {
    devices_.clear();
    others_.clear();
  }

  std::filesystem::path folder_;
  std::vector<Device> devices_;
  /// Files of devices that are left alone.
  std::set<ino_t> others_;
  bool locksPointer_ = false;
};

} // namespace

std::unique_ptr<InputGrab> InputGrab::evdev(const std::filesystem::path& folder) {
  return std::make_unique<EvdevInputGrab>(folder);
}

} // namespace tavrin

#include "TavrinPlatform/Linux/Input/InputGrab.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <linux/input.h>
#include <sys/ioctl.h>
#include <unistd.h>

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
    bool isDenied = false;
    bool hasKeyboard = false;
    std::error_code error;
    for (std::filesystem::directory_iterator file(folder_, error), end; !error && file != end;
         file.increment(error)) {
      if (!file->path().filename().string().starts_with("event"))
        continue;
      const int device = ::open(file->path().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
      if (device < 0) {
        isDenied = isDenied || errno == EACCES || errno == EPERM;
        continue;
      }
      Bits keys{};
      ::ioctl(device, EVIOCGBIT(EV_KEY, keys.size()), keys.data());
      const bool isKeyboard = has(keys, KEY_ENTER) || has(keys, KEY_POWER) || has(keys, KEY_MUTE);
      const bool isPointer = has(keys, BTN_LEFT) || has(keys, BTN_TOUCH);
      if (!isKeyboard && !(isPointer && locksPointer)) {
        ::close(device);
        continue;
      }
      devices_.push_back({device, has(keys, BTN_LEFT)});
      const Result result = grab(device);
      if (result != Result::holding) {
        release();
        return result;
      }
      hasKeyboard = hasKeyboard || has(keys, KEY_ENTER);
    }
    if (hasKeyboard)
      return Result::holding;
    release();
    return isDenied ? Result::notPermitted : Result::refused;
  }

  std::vector<int> descriptors() const override {
    std::vector<int> descriptors;
    for (const auto& device : devices_)
      descriptors.push_back(device.descriptor);
    return descriptors;
  }

  bool read(std::vector<char>& eventTypes) override {
    std::array<input_event, 64> events{};
    for (const auto& device : devices_)
      for (;;) {
        const ssize_t size = ::read(device.descriptor, events.data(), sizeof events);
        if (size <= 0) {
          // A device that was pulled out holds nothing back; its descriptor only stays readable.
          if (size < 0 && errno != EAGAIN && errno != EINTR)
            return false;
          break;
        }
        for (std::size_t i = 0; i < static_cast<std::size_t>(size) / sizeof(input_event); ++i)
          take(events[i], device.hasButton, eventTypes);
      }
    return true;
  }

private:
  struct Device {
    int descriptor;
    bool hasButton;
  };

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
    for (const auto& device : devices_)
      ::close(device.descriptor);
    devices_.clear();
  }

  std::filesystem::path folder_;
  std::vector<Device> devices_;
};

} // namespace

std::unique_ptr<InputGrab> InputGrab::evdev(const std::filesystem::path& folder) {
  return std::make_unique<EvdevInputGrab>(folder);
}

} // namespace tavrin

#include "TavrinPlatform/Linux/Input/InputGrab.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/input.h>
#include <linux/uinput.h>
#include <map>
#include <poll.h>
#include <set>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

/// Exclusive use of input devices. The machine's own where it can make some (/dev/uinput); and in
/// any case named pipes in a folder, whose answers to the ioctls of input devices are given here,
/// exclusive use included: it belongs to an open file, as it does in the kernel.
namespace {

using Keys = std::vector<unsigned>;

struct Double {
  Keys keys;
  Keys pressed;
  /// Of the process and descriptor that use it exclusively; 0 for none.
  int owner = 0;
};

/// By the inode of the pipe.
std::map<ino_t, Double> doubles;

Double* doubleOf(int descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0)
    return nullptr;
  const auto found = doubles.find(status.st_ino);
  return found == doubles.end() ? nullptr : &found->second;
}

int answerBits(const Keys& keys, void* bits, std::size_t size) {
  std::memset(bits, 0, size);
  for (const unsigned key : keys)
    static_cast<unsigned char*>(bits)[key / 8] |= static_cast<unsigned char>(1U << key % 8);
  return static_cast<int>(size);
}

} // namespace

extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept {
  std::va_list list;
  va_start(list, request);
  void* argument = va_arg(list, void*);
  va_end(list);
  Double* device = doubleOf(descriptor);
  if (device == nullptr)
    return static_cast<int>(::syscall(SYS_ioctl, descriptor, request, argument));
  if (_IOC_NR(request) == _IOC_NR(EVIOCGBIT(EV_KEY, 0)))
    return answerBits(device->keys, argument, _IOC_SIZE(request));
  if (_IOC_NR(request) == _IOC_NR(EVIOCGKEY(0)))
    return answerBits(device->pressed, argument, _IOC_SIZE(request));
  if (request != EVIOCGRAB || device->owner != 0) {
    errno = request == EVIOCGRAB ? EBUSY : EINVAL;
    return -1;
  }
  device->owner = descriptor;
  return 0;
}

namespace tavrin {
namespace {

using Result = InputGrab::Result;
using testing::ElementsAre;

const Keys keyboard{KEY_ENTER, KEY_A, KEY_MUTE};
const Keys mouse{BTN_LEFT, BTN_RIGHT, BTN_MIDDLE};
const Keys touchpad{BTN_LEFT, BTN_TOUCH, BTN_TOOL_FINGER};
const Keys touchscreen{BTN_TOUCH};

class Evdev : public testing::Test {
protected:
  ~Evdev() override { doubles.clear(); }

  Double& add(const std::string& name, const Keys& keys, mode_t mode = 0600) {
    const auto file = folder_ / name;
    EXPECT_EQ(::mkfifo(file.c_str(), mode), 0);
    struct stat status {};
    ::stat(file.c_str(), &status);
    return doubles[status.st_ino] = {keys, {}, 0};
  }
  /// The device's events, or its end.
  int open(const std::string& name) {
    return ::open((folder_ / name).c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
  }
  static void send(int device, unsigned short type, unsigned short code, int value) {
    const input_event event{{}, type, code, value};
    ASSERT_EQ(::write(device, &event, sizeof event), static_cast<ssize_t>(sizeof event));
  }
  Result begin(bool locksPointer = true) { return grab_->begin(locksPointer); }
  std::vector<int> read() {
    std::vector<char> types;
    isHeld_ = grab_->read(types);
    return {types.begin(), types.end()};
  }

  TemporaryFolder folder_;
  std::unique_ptr<InputGrab> grab_ = InputGrab::evdev(folder_.path());
  bool isHeld_ = true;
};

TEST_F(Evdev, TakesKeyboardsAndPointersAndNothingElse) {
  const Double& keys = add("event0", keyboard);
  const Double& pointer = add("event1", mouse);
  const Double& lid = add("event2", {});
  const Double& media = add("event3", {KEY_MUTE});
  const Double& other = add("mouse0", mouse);
  ASSERT_EQ(begin(), Result::holding);
  EXPECT_TRUE(keys.owner != 0 && pointer.owner != 0 && media.owner != 0);
  EXPECT_TRUE(lid.owner == 0 && other.owner == 0);
  EXPECT_EQ(grab_->descriptors().size(), 3U);
}

TEST_F(Evdev, LeavesThePointerWhereOnlyKeysAreLocked) {
  add("event0", keyboard);
  const Double& pointer = add("event1", mouse);
  ASSERT_EQ(begin(false), Result::holding);
  EXPECT_EQ(pointer.owner, 0);
}

TEST_F(Evdev, TellsWhatWouldHaveBeenPressed) {
  struct Case {
    Keys device;
    unsigned short type;
    unsigned short code;
    int value;
    int told;
  };
  const Case cases[] = {
      {keyboard, EV_KEY, KEY_A, 1, 10},
      {keyboard, EV_KEY, KEY_A, 2, 10},
      {keyboard, EV_KEY, KEY_A, 0, 11},
      {keyboard, EV_KEY, KEY_MUTE, 1, 10},
      {mouse, EV_KEY, BTN_LEFT, 1, 1},
      {mouse, EV_KEY, BTN_LEFT, 0, 2},
      {mouse, EV_KEY, BTN_RIGHT, 1, 3},
      {mouse, EV_KEY, BTN_RIGHT, 0, 4},
      {mouse, EV_KEY, BTN_MIDDLE, 1, 25},
      {mouse, EV_KEY, BTN_MIDDLE, 0, 26},
      {mouse, EV_REL, REL_X, 4, 5},
      {mouse, EV_REL, REL_WHEEL, 1, 22},
      {touchpad, EV_ABS, ABS_X, 4, 5},
      {touchpad, EV_KEY, BTN_TOUCH, 1, 5},
      {touchpad, EV_KEY, BTN_TOOL_FINGER, 1, 5},
      {touchpad, EV_KEY, BTN_LEFT, 1, 1},
      {touchscreen, EV_KEY, BTN_TOUCH, 1, 1},
      {touchscreen, EV_KEY, BTN_TOUCH, 0, 2},
  };
  add("event0", keyboard);
  int number = 1;
  for (const auto& [device, type, code, value, told] : cases) {
    const std::string name = "event" + std::to_string(number++);
    add(name, device);
    grab_ = InputGrab::evdev(folder_.path());
    for (auto& [inode, each] : doubles)
      each.owner = 0;
    ASSERT_EQ(begin(), Result::holding);
    const int writer = open(name);
    send(writer, type, code, value);
    send(writer, EV_SYN, SYN_REPORT, 0);
    EXPECT_THAT(read(), ElementsAre(told)) << code << " " << value;
    ::close(writer);
  }
}

TEST_F(Evdev, TakesWhatComesLater) {
  add("event0", keyboard);
  ASSERT_EQ(begin(), Result::holding);
  const Double& pointer = add("event1", mouse);
  const Double& lid = add("event2", {});
  Double& keys = add("event3", keyboard);
  keys.pressed = {KEY_A};
  EXPECT_TRUE(grab_->renew());
  EXPECT_TRUE(pointer.owner != 0 && lid.owner == 0 && keys.owner == 0);
  keys.pressed.clear();
  EXPECT_TRUE(grab_->renew());
  EXPECT_NE(keys.owner, 0);
  EXPECT_EQ(grab_->descriptors().size(), 3U);
  const int writer = open("event3");
  send(writer, EV_KEY, KEY_A, 1);
  EXPECT_THAT(read(), ElementsAre(10));
  ::close(writer);
}

TEST_F(Evdev, WaitsForKeysThatAreDown) {
  const Double& pointer = add("event1", mouse);
  Double& keys = add("event0", keyboard);
  keys.pressed = {KEY_ENTER};
  EXPECT_EQ(begin(), Result::busy);
  EXPECT_TRUE(grab_->descriptors().empty());
  keys.pressed.clear();
  for (auto& [inode, each] : doubles)
    each.owner = 0; // closed with its descriptor
  EXPECT_EQ(begin(), Result::holding);
  EXPECT_NE(pointer.owner, 0);
}

TEST_F(Evdev, TellsWhyNot) {
  EXPECT_EQ(begin(), Result::refused); // nothing there
  add("event1", mouse);
  EXPECT_EQ(begin(), Result::refused); // no keyboard
  Double& keys = add("event0", keyboard);
  keys.owner = 99;
  EXPECT_EQ(begin(), Result::busy); // another program's
  EXPECT_TRUE(grab_->descriptors().empty());
}

TEST_F(Evdev, DevicesThatMayNotBeOpenedAreNoPermission) {
  add("event0", keyboard, 0);
  // Root may open anything: another user tries.
  const pid_t child = ::fork();
  if (child == 0) {
    if (::chmod(folder_.path().c_str(), 0755) != 0 || ::setgid(65534) != 0 || ::setuid(65534) != 0)
      ::_exit(9);
    ::_exit(InputGrab::evdev(folder_.path())->begin(true) == Result::notPermitted ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  if (::geteuid() != 0)
    GTEST_SKIP() << "another user cannot be tried";
  EXPECT_EQ(status, 0);
}

TEST_F(Evdev, AllDescriptorsAreGivenBack) {
  const auto count = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
  };
  add("event0", keyboard);
  add("event1", mouse);
  add("event2", {});
  const auto before = count();
  for (int round = 0; round < 20; ++round) {
    for (auto& [inode, each] : doubles)
      each.owner = 0;
    ASSERT_EQ(InputGrab::evdev(folder_.path())->begin(true), Result::holding);
  }
  EXPECT_EQ(count(), before);
}

/// A pipe nobody has open cannot be opened for writing: so it shows that a device is let go.
TEST_F(Evdev, AKilledProcessHasNothingOpen) {
  add("event0", keyboard);
  add("event1", mouse);
  const auto isOpen = [this](const std::string& name) {
    const int device = open(name);
    return device >= 0 && ::close(device) == 0;
  };
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    const bool isHolding = begin() == Result::holding;
    if (::write(ready[1], isHolding ? "y" : "n", 1) == 1)
      ::pause();
    ::_exit(1);
  }
  char answer = 0;
  ASSERT_EQ(::read(ready[0], &answer, 1), 1);
  EXPECT_EQ(answer, 'y');
  EXPECT_TRUE(isOpen("event0") && isOpen("event1"));
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  EXPECT_FALSE(isOpen("event0") || isOpen("event1"));
}

/// A keyboard of the kernel's.
class Uinput : public testing::Test {
protected:
  void SetUp() override {
    device_ = ::open("/dev/uinput", O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (device_ < 0)
      GTEST_SKIP() << "no input devices can be made here";
    uinput_setup setup{};
    setup.id.bustype = BUS_VIRTUAL;
    std::strcpy(setup.name, "tavrin-test");
    for (const int key : {KEY_ENTER, KEY_A})
      ::ioctl(device_, UI_SET_KEYBIT, key);
    ASSERT_EQ(::ioctl(device_, UI_SET_EVBIT, EV_KEY), 0);
    ASSERT_EQ(::ioctl(device_, UI_DEV_SETUP, &setup), 0);
    ASSERT_EQ(::ioctl(device_, UI_DEV_CREATE), 0);
  }
  ~Uinput() override { ::close(device_); }
  int device_ = -1;
};

TEST_F(Uinput, IsHeldUntilTheHoldingProcessIsKilled) {
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    const auto grab = InputGrab::evdev();
    const char answer = grab->begin(false) == Result::holding ? 'y' : 'n';
    const auto written = ::write(ready[1], &answer, 1);
    for (;;)
      ::pause();
    ::_exit(written == 1 ? 0 : 1);
  }
  char answer = 0;
  ASSERT_EQ(::read(ready[0], &answer, 1), 1);
  EXPECT_EQ(answer, 'y');
  EXPECT_EQ(InputGrab::evdev()->begin(false), Result::busy);
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  EXPECT_EQ(InputGrab::evdev()->begin(false), Result::holding);
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}

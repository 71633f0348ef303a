// Tells how long a window takes to stand on the screen, as an X client beside it sees it.
//
//   window-clock launch PROGRAM [ARGUMENT]...   from the start of a program to its first window
//   window-clock click X Y [TIMES]              from a press of the first button to a new window;
//                                               a second click closes it before the next round
//   window-clock place X Y                      the same, once, and nothing closes it
//   window-clock type KEYCODE[+KEYCODE] WINDOW X Y WIDTH HEIGHT [TIMES]
//   window-clock press PX PY WINDOW X Y WIDTH HEIGHT [TIMES]
//   window-clock drop WINDOW X Y WIDTH HEIGHT   from a key (of two, the first is held), a press of
//                                               the first button, or letting go of it, until
//                                               something is painted there in the window, or the
//                                               window goes
//
// Prints milliseconds, a line a round: until the window is mapped, where one comes, and until it
// holds more than one colour: a window is mapped before, or after, it is painted, as its program
// likes, and has the server's own ground till then. A launched program is ended; its line goes on
// with the processor time that it took, in the user's and the system's mode together.
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/damage.h>
#include <xcb/xtest.h>

namespace {

using Clock = std::chrono::steady_clock;

struct Times {
  double mapped = 0;
  double painted = 0;
};

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

class Watcher {
public:
  Watcher() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
      std::fputs("window-clock: there is no X server\n", stderr);
      std::exit(1);
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &mask);
    const auto* extension = xcb_get_extension_data(connection_, &xcb_damage_id);
    damageEvent_ = extension->first_event;
    std::free(xcb_damage_query_version_reply(connection_,
                                             xcb_damage_query_version(connection_, 1, 1), nullptr));
  }
  ~Watcher() { xcb_disconnect(connection_); }
  Watcher(const Watcher&) = delete;
  Watcher& operator=(const Watcher&) = delete;

  void click(int x, int y) {
    xcb_test_fake_input(connection_, XCB_MOTION_NOTIFY, 0, 0, root_, static_cast<std::int16_t>(x),
                        static_cast<std::int16_t>(y), 0);
    xcb_test_fake_input(connection_, XCB_BUTTON_PRESS, 1, 0, root_, 0, 0, 0);
    xcb_test_fake_input(connection_, XCB_BUTTON_RELEASE, 1, 0, root_, 0, 0, 0);
    xcb_flush(connection_);
  }

  /// The next new window that is mapped and painted; none within five seconds.
  std::optional<Times> nextWindow(Clock::time_point start) {
    Times times;
    xcb_window_t window = 0;
    while (millisecondsSince(start) < 5000) {
      auto* event = nextEvent();
      if (event == nullptr)
        continue;
      const int type = event->response_type & 0x7F;
      if (type == XCB_MAP_NOTIFY && window == 0) {
        window = reinterpret_cast<xcb_map_notify_event_t*>(event)->window;
        times.mapped = millisecondsSince(start);
        watch(window);
      } else if (type == damageEvent_ && window != 0 && isPainted(window)) {
        // Also what was painted before it was watched: the server begins with a report of that.
        times.painted = millisecondsSince(start);
        std::free(event);
        return times;
      }
      std::free(event);
    }
    return std::nullopt;
  }

  void press(int detail, int event) {
    xcb_test_fake_input(connection_, static_cast<std::uint8_t>(event),
                        static_cast<std::uint8_t>(detail), 0, root_, 0, 0, 0);
  }

  /// `held` is 0 for none.
  void type(int keyCode, int held) {
    if (held != 0)
      press(held, XCB_KEY_PRESS);
    press(keyCode, XCB_KEY_PRESS);
    press(keyCode, XCB_KEY_RELEASE);
    if (held != 0)
      press(held, XCB_KEY_RELEASE);
    xcb_flush(connection_);
  }

  void letGo() {
    press(1, XCB_BUTTON_RELEASE);
    xcb_flush(connection_);
  }

  void watch(xcb_window_t window) {
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &mask);
    xcb_damage_create(connection_, xcb_generate_id(connection_), window,
                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    watched_ = window;
    xcb_flush(connection_);
  }

  /// Until something is painted within `area` of a window that is watched, or it goes; none within
  /// five seconds.
  std::optional<double> paintedWithin(const xcb_rectangle_t& area, Clock::time_point start) {
    while (millisecondsSince(start) < 5000) {
      auto* event = nextEvent();
      if (event == nullptr)
        continue;
      const int type = event->response_type & 0x7F;
      bool isWithin = type == XCB_UNMAP_NOTIFY &&
                      reinterpret_cast<xcb_unmap_notify_event_t*>(event)->window == watched_;
      if (type == damageEvent_) {
        const auto& painted = reinterpret_cast<xcb_damage_notify_event_t*>(event)->area;
        isWithin = painted.x < area.x + area.width && area.x < painted.x + painted.width &&
                   painted.y < area.y + area.height && area.y < painted.y + painted.height;
      }
      std::free(event);
      if (isWithin)
        return millisecondsSince(start);
    }
    return std::nullopt;
  }

  /// Lets what is on its way arrive and be forgotten.
  void settle(int milliseconds) {
    const auto start = Clock::now();
    while (millisecondsSince(start) < milliseconds)
      std::free(nextEvent());
  }

private:
  bool isPainted(xcb_window_t window) {
    auto* place =
        xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr);
    if (place == nullptr)
      return false;
    auto* image = xcb_get_image_reply(connection_,
                                      xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, window,
                                                    0, 0, place->width, place->height, ~0U),
                                      nullptr);
    std::free(place);
    if (image == nullptr)
      return false;
    constexpr int pixel = 4;
    const auto* bytes = xcb_get_image_data(image);
    const int length = xcb_get_image_data_length(image);
    bool isOneColour = true;
    for (int i = pixel; isOneColour && i + pixel <= length; i += pixel)
      isOneColour = std::memcmp(bytes, bytes + i, 3) == 0;
    std::free(image);
    return !isOneColour;
  }

  xcb_generic_event_t* nextEvent() {
    if (auto* event = xcb_poll_for_event(connection_))
      return event;
    pollfd descriptor{xcb_get_file_descriptor(connection_), POLLIN, 0};
    poll(&descriptor, 1, 10);
    return xcb_poll_for_event(connection_);
  }

  xcb_connection_t* connection_;
  xcb_window_t root_ = 0;
  xcb_window_t watched_ = 0;
  int damageEvent_ = 0;
};

int report(const std::optional<Times>& times, std::optional<double> processor = {}) {
  if (!times) {
    std::fputs("window-clock: no window came\n", stderr);
    return 1;
  }
  std::printf("%.2f %.2f", times->mapped, times->painted);
  if (processor)
    std::printf(" %.2f", *processor);
  std::printf("\n");
  std::fflush(stdout);
  return 0;
}

int launch(char** command) {
  Watcher watcher;
  watcher.settle(50);
  const auto start = Clock::now();
  const pid_t process = fork();
  if (process == 0) {
    execvp(command[0], command);
    _exit(127);
  }
  const auto times = watcher.nextWindow(start);
  kill(process, SIGTERM);
  rusage usage{};
  wait4(process, nullptr, 0, &usage);
  const auto milliseconds = [](const timeval& time) {
    return double(time.tv_sec) * 1000 + double(time.tv_usec) / 1000;
  };
  return report(times, milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime));
}

int clicks(int x, int y, int times) {
  Watcher watcher;
  for (int round = 0; round < times; ++round) {
    watcher.settle(50);
    const auto start = Clock::now();
    watcher.click(x, y);
    if (report(watcher.nextWindow(start)) != 0)
      return 1;
    watcher.settle(350);
    watcher.click(x, y);
    watcher.settle(350);
  }
  return 0;
}

int place(int x, int y) {
  Watcher watcher;
  watcher.settle(50);
  const auto start = Clock::now();
  watcher.click(x, y);
  return report(watcher.nextWindow(start));
}

/// `WINDOW X Y WIDTH HEIGHT [TIMES]`, and what is done to have it painted there.
template <class Input> int paints(char** words, const Input& input) {
  Watcher watcher;
  watcher.watch(static_cast<xcb_window_t>(std::strtoul(words[0], nullptr, 0)));
  const auto number = [&](int index) { return std::atoi(words[index]); };
  const xcb_rectangle_t area{
      static_cast<std::int16_t>(number(1)), static_cast<std::int16_t>(number(2)),
      static_cast<std::uint16_t>(number(3)), static_cast<std::uint16_t>(number(4))};
  for (int round = words[5] != nullptr ? number(5) : 1; round > 0; --round) {
    watcher.settle(350);
    const auto start = Clock::now();
    input(watcher);
    const auto painted = watcher.paintedWithin(area, start);
    if (!painted) {
      std::fputs("window-clock: nothing was painted there\n", stderr);
      return 1;
    }
    std::printf("%.1f\n", *painted);
  }
  return 0;
}

} // namespace

int main(int argc, char** argv) {
  if (argc >= 3 && std::strcmp(argv[1], "launch") == 0)
    return launch(argv + 2);
  if (argc >= 4 && std::strcmp(argv[1], "click") == 0)
    return clicks(std::atoi(argv[2]), std::atoi(argv[3]), argc > 4 ? std::atoi(argv[4]) : 1);
  if (argc >= 8 && std::strcmp(argv[1], "type") == 0)
    return paints(argv + 3, [&](Watcher& watcher) {
      const char* second = std::strchr(argv[2], '+');
      if (second == nullptr)
        watcher.type(std::atoi(argv[2]), 0);
      else
        watcher.type(std::atoi(second + 1), std::atoi(argv[2]));
    });
  if (argc == 7 && std::strcmp(argv[1], "drop") == 0)
    return paints(argv + 2, [](Watcher& watcher) { watcher.letGo(); });
  if (argc == 4 && std::strcmp(argv[1], "place") == 0)
    return place(std::atoi(argv[2]), std::atoi(argv[3]));
  if (argc >= 9 && std::strcmp(argv[1], "press") == 0)
    return paints(argv + 4,
                  [&](Watcher& watcher) { watcher.click(std::atoi(argv[2]), std::atoi(argv[3])); });
  std::fputs(
      "usage: window-clock launch PROGRAM... | click X Y [TIMES] | place X Y\n"
      "       | type KEYCODE[+KEYCODE] AREA [TIMES] | press PX PY AREA [TIMES] | drop AREA,\n"
      "       where AREA is WINDOW X Y WIDTH HEIGHT\n",
      stderr);
  return 2;
}

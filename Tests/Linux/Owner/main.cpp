// A program that copies, in good and bad ways:
//   SelectionOwner series   copies another thing for each line of its input
//   SelectionOwner series COUNT MILLISECONDS   copies COUNT things, each so long after somebody has
//                          read the one before
//   SelectionOwner hang | mute | flood | dribble | empty | simple
//   SelectionOwner picture   sends an image without end, and tells no length
//   SelectionOwner public | refused | silent | listless   hints at a password: that it is none, not
//                          when asked, without an answer, in a list of targets in an unknown form
//   SelectionOwner turn    copies twice, and then answers what comes within a moment and no more
// Prints "copied" after each copy. Ends with its input.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <poll.h>
#include <string>
#include <time.h>
#include <unistd.h>
#include <vector>
#include <xcb/xcb.h>

namespace {

xcb_connection_t* x;
xcb_window_t window;
std::string mode;
bool hasAnswered = false;
/// Somebody has had what is offered, not the list of it alone.
bool isRead = false;
/// What is offered: target and bytes.
std::map<std::string, std::string> content;
constexpr const char* hint = "x-kde-passwordManagerHint";

/// Each is asked of the server once, as programs do.
xcb_atom_t atom(const std::string& name) {
  static std::map<std::string, xcb_atom_t> known;
  if (const auto found = known.find(name); found != known.end())
    return found->second;
  auto* reply = xcb_intern_atom_reply(
      x, xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.c_str()), nullptr);
  const xcb_atom_t found = reply->atom;
  std::free(reply);
  known.emplace(name, found);
  return found;
}

std::int64_t now() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return time.tv_sec * 1000 + time.tv_nsec / 1'000'000;
}

void copyNumber(int number) {
  const std::string words = "item " + std::to_string(number);
  content.clear();
  switch (number % 4) {
  case 0:
    content["UTF8_STRING"] = words;
    break;
  case 1:
    content["image/png"] = "\x89PNG\r\n\x1A\n" + words;
    content["UTF8_STRING"] = "beside the image";
    break;
  case 2:
    content["text/uri-list"] = "file:///tmp/item%20" + std::to_string(number) + "\r\n";
    content["UTF8_STRING"] = "beside the file";
    break;
  default:
    content[hint] = "secret";
    content["UTF8_STRING"] = words;
  }
}

void own() {
  xcb_set_selection_owner(x, window, atom("CLIPBOARD"), XCB_CURRENT_TIME);
  xcb_flush(x);
  std::puts("copied");
  std::fflush(stdout);
}

void sendEndless(xcb_window_t to, xcb_atom_t property, std::size_t piece) {
  const std::string bytes(piece, 'x');
  xcb_change_property(x, XCB_PROP_MODE_REPLACE, to, property, atom("UTF8_STRING"), 8,
                      static_cast<std::uint32_t>(piece), bytes.data());
  xcb_flush(x);
}

void answer(const xcb_selection_request_event_t& request) {
  if (mode == "hang")
    return;
  xcb_selection_notify_event_t notify{};
  notify.response_type = XCB_SELECTION_NOTIFY;
  notify.requestor = request.requestor;
  notify.selection = request.selection;
  notify.target = request.target;
  notify.time = request.time;
  if (request.target == atom("TARGETS") && mode != "simple") {
    std::vector<xcb_atom_t> targets{atom("TARGETS")};
    for (const auto& [target, bytes] : content)
      targets.push_back(atom(target));
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                        XCB_ATOM_ATOM, mode == "listless" ? 8 : 32,
                        static_cast<std::uint32_t>(targets.size()), targets.data());
    notify.property = request.property;
  }
  for (const auto& [target, bytes] : content) {
    if (request.target != atom(target))
      continue;
    if ((mode == "mute" && target == "image/png") || (mode == "silent" && target == hint))
      return;
    if (mode == "refused" && target == hint)
      continue;
    const bool isEndless =
        mode == "picture" || ((mode == "flood" || mode == "dribble") && target == "UTF8_STRING");
    if (isEndless) {
      const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
      xcb_change_window_attributes(x, request.requestor, XCB_CW_EVENT_MASK, &events);
    }
    const std::uint32_t size = mode == "picture" ? 1 : 1 << 30;
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                        isEndless ? atom("INCR") : atom(target), isEndless ? 32 : 8,
                        isEndless ? 1 : static_cast<std::uint32_t>(bytes.size()),
                        isEndless ? static_cast<const void*>(&size) : bytes.data());
    notify.property = request.property;
    isRead = true;
  }
  xcb_send_event(x, 0, request.requestor, 0, reinterpret_cast<const char*>(&notify));
  xcb_flush(x);
}

void handle(xcb_generic_event_t* event) {
  const int type = event->response_type & 0x7F;
  if (type == XCB_SELECTION_REQUEST)
    answer(*reinterpret_cast<xcb_selection_request_event_t*>(event));
  if (type == XCB_PROPERTY_NOTIFY) {
    const auto& change = *reinterpret_cast<xcb_property_notify_event_t*>(event);
    if (change.window != window && change.state == XCB_PROPERTY_DELETE) {
      if (mode == "dribble")
        usleep(300'000);
      sendEndless(change.window, change.atom, mode == "dribble" ? 1 : 256 * 1024);
    }
  }
  std::free(event);
}

} // namespace

int main(int argc, char** argv) {
  mode = argc > 1 ? argv[1] : "";
  int count = mode == "series" ? 0 : mode == "turn" ? 2 : 1;
  if (mode == "series" && argc > 2)
    count = std::atoi(argv[2]);
  const int interval = argc > 3 ? std::atoi(argv[3]) : 600;
  const bool waitsForReader = argc > 3;
  x = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(x) != 0)
    return 1;
  const auto root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
  window = xcb_generate_id(x);
  xcb_create_window(x, 0, window, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, 0, 0, nullptr);
  content = {{"UTF8_STRING", mode == "empty" ? "" : "good words \xFF"}};
  if (mode == "mute" || mode == "empty" || mode == "picture")
    content["image/png"] = "";
  if (mode == "public" || mode == "refused" || mode == "silent" || mode == "listless")
    content[hint] = mode == "public" ? mode : "secret";
  int copies = 0;
  const auto mayCopy = [&] { return copies < count && (!waitsForReader || copies == 0 || isRead); };
  for (std::int64_t next = now();;) {
    if (mayCopy() && now() >= next) {
      if (mode == "series")
        copyNumber(copies);
      own();
      ++copies;
      hasAnswered = false;
      isRead = false;
      // Never closer together, however late this one was.
      next = now() + interval;
    }
    const bool isHasty = mode == "turn" && copies == count;
    while (auto* event = xcb_poll_for_event(x)) {
      if (isHasty)
        usleep(20'000);
      hasAnswered = true;
      handle(event);
      if (isRead)
        next = now() + interval;
    }
    if (isHasty && hasAnswered)
      mode = "hang";
    pollfd watched[] = {{xcb_get_file_descriptor(x), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
    const auto wait = mayCopy() ? static_cast<int>(std::max<std::int64_t>(0, next - now())) : -1;
    poll(watched, 2, wait);
    if ((watched[1].revents & POLLIN) != 0) {
      char lines[256];
      const auto got = read(STDIN_FILENO, lines, sizeof lines);
      count += static_cast<int>(std::count(lines, lines + std::max<ssize_t>(got, 0), '\n'));
      next = now();
    } else if ((watched[1].revents & POLLHUP) != 0) {
      return 0;
    }
    if (xcb_connection_has_error(x) != 0)
      return 0;
  }
}

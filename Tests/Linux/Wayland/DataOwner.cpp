// A program that copies by data control, in good and bad ways, until its input ends:
//   DataOwner plain        text, at once
//   DataOwner hang         never answers, and keeps the pipe
//   DataOwner empty        closes the pipe without a word
//   DataOwner flood        text without end
//   DataOwner dribble      a letter every 300 ms, without end
//   DataOwner picture      an image without end, beside text that is never sent
//   DataOwner names        more types than anybody has use for
//   DataOwner public | secret | refused | silent   hints at a password: that it is none, that it is
//                          one, not when asked, without an answer
//   DataOwner again        offers the same once more, as another source
// Prints "copied" after each copy.
#include "TavrinPlatform/Linux/Wayland/WaylandConnection.h"

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <string>
#include <time.h>
#include <unistd.h>

using namespace tavrin;

namespace {

constexpr const char* hint = "x-kde-passwordManagerHint";
constexpr const char* words = "good words";

struct Owner {
  std::string mode;
  std::map<std::string, std::string> content;
  std::vector<int> held;
  std::vector<int> endless;

  void send(const std::string& type, int end) {
    const bool isHint = type == hint;
    if (mode == "hang" || (mode == "silent" && isHint) ||
        (mode == "picture" && type != "image/png")) {
      held.push_back(end);
      return;
    }
    if (mode == "flood" || mode == "dribble" || mode == "picture") {
      ::fcntl(end, F_SETFL, O_NONBLOCK);
      endless.push_back(end);
      return;
    }
    if (mode != "empty" && !(mode == "refused" && isHint)) {
      const auto& bytes = content[type];
      [[maybe_unused]] const auto count = ::write(end, bytes.data(), bytes.size());
    }
    ::close(end);
  }
  void feed() const {
    static const std::string piece(mode == "dribble" ? 1 : 64 * 1024, 'x');
    for (const int end : endless)
      [[maybe_unused]] const auto count = ::write(end, piece.data(), piece.size());
  }
};

void copy(const WaylandConnection& connection, zwlr_data_control_manager_v1* manager,
          zwlr_data_control_device_v1* device, Owner& owner) {
  auto* source = zwlr_data_control_manager_v1_create_data_source(manager);
  static const zwlr_data_control_source_v1_listener listener{
      [](void* self, zwlr_data_control_source_v1*, const char* type, std::int32_t end) {
        static_cast<Owner*>(self)->send(type, end);
      },
      [](void*, zwlr_data_control_source_v1* gone) { zwlr_data_control_source_v1_destroy(gone); }};
  zwlr_data_control_source_v1_add_listener(source, &listener, &owner);
  for (const auto& [type, bytes] : owner.content)
    zwlr_data_control_source_v1_offer(source, type.c_str());
  zwlr_data_control_device_v1_set_selection(device, source);
  wl_display_flush(connection.display());
  std::puts("copied");
  std::fflush(stdout);
}

} // namespace

int main(int count, char** words_) {
  ::signal(SIGPIPE, SIG_IGN);
  Owner owner{count > 1 ? words_[1] : "plain", {{"text/plain;charset=utf-8", words}}, {}, {}};
  if (owner.mode == "picture")
    owner.content["image/png"] = "";
  if (owner.mode == "public")
    owner.content[hint] = "public";
  if (owner.mode == "secret" || owner.mode == "refused" || owner.mode == "silent")
    owner.content[hint] = "secret";
  if (owner.mode == "names")
    for (int i = 0; i < 3000; ++i)
      owner.content["x-name/" + std::to_string(i)] = "";
  WaylandConnection connection;
  if (!connection.isOpen())
    return 1;
  const ProxyPtr<zwlr_data_control_manager_v1> manager(
      connection.registry().bind<zwlr_data_control_manager_v1>(
          zwlr_data_control_manager_v1_interface, 1));
  const ProxyPtr<wl_seat> seat(connection.registry().bind<wl_seat>(wl_seat_interface, 1));
  if (!manager || !seat)
    return 2;
  auto* device = zwlr_data_control_manager_v1_get_data_device(manager.get(), seat.get());
  copy(connection, manager.get(), device, owner);
  if (owner.mode == "again")
    copy(connection, manager.get(), device, owner);
  while (connection.isOpen()) {
    std::vector<pollfd> watched{{0, POLLIN, 0}};
    connection.wait(watched, owner.endless.empty() ? -1 : owner.mode == "dribble" ? 300 : 1);
    if (watched[0].revents != 0)
      return 0;
    owner.feed();
  }
  return 3;
}

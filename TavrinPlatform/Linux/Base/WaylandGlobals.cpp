#include "TavrinPlatform/Linux/Base/DesktopFacts.h"
#include "TavrinPlatform/Files/Descriptor.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tavrin {

namespace {

/// For how long a compositor may take over one answer, in milliseconds.
constexpr int answerLimit = 1000;
/// Words of a message: the object, then its length and its number, then the arguments.
constexpr std::uint32_t display = 1;
constexpr std::uint32_t registry = 2;
constexpr std::uint32_t callback = 3;
constexpr std::size_t headLength = 8;
constexpr std::size_t greatestMessage = 64 * 1024;

std::uint32_t wordAt(const std::string& bytes, std::size_t place) {
  std::uint32_t word = 0;
  std::memcpy(&word, bytes.data() + place, sizeof word);
  return word;
}

Descriptor connectTo(const std::string& path) {
  Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path)
    return Descriptor();
  std::memcpy(address.sun_path, path.data(), path.size());
  if (::connect(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
    return Descriptor();
  return socket;
}

/// More of what the compositor says; false when it says nothing in time, or has hung up.
bool readMore(int socket, std::string& bytes) {
  pollfd waiting{socket, POLLIN, 0};
  if (::poll(&waiting, 1, answerLimit) <= 0)
    return false;
  std::array<char, 4096> part{};
  const auto count = ::read(socket, part.data(), part.size());
  if (count <= 0)
    return false;
  bytes.append(part.data(), static_cast<std::size_t>(count));
  return true;
}

} // namespace

std::optional<std::vector<std::string>> readWaylandGlobals(const FileManager& files) {
  const auto name = files.environment("WAYLAND_DISPLAY").value_or("");
  const auto folder = files.environment("XDG_RUNTIME_DIR").value_or("");
  if (name.empty() || (name.front() != '/' && folder.empty()))
    return std::nullopt;
  const Descriptor socket = connectTo(name.front() == '/' ? name : folder + "/" + name);
  if (socket.number() < 0)
    return std::nullopt;
  // wl_display.get_registry, then wl_display.sync, whose answer comes after all globals.
  constexpr std::array<std::uint32_t, 6> questions{display, 12U << 16 | 1, registry,
                                                   display, 12U << 16 | 0, callback};
  if (::send(socket.number(), questions.data(), sizeof questions, MSG_NOSIGNAL) != sizeof questions)
    return std::nullopt;
  std::vector<std::string> globals;
  for (std::string bytes;;) {
    while (bytes.size() >= headLength) {
      const std::uint32_t object = wordAt(bytes, 0);
      const std::size_t length = wordAt(bytes, 4) >> 16;
      if (length < headLength || length > greatestMessage)
        return std::nullopt;
      if (bytes.size() < length)
        break;
      if (object == callback)
        return globals;
      // wl_registry.global: a number, a text with its length and a closing zero, a version.
      constexpr std::size_t textPlace = headLength + 8;
      if (object == registry && length > textPlace) {
        const std::size_t count = wordAt(bytes, headLength + 4);
        if (count > 0 && textPlace + count <= length)
          globals.push_back(bytes.substr(textPlace, count - 1));
      }
      bytes.erase(0, length);
    }
    if (!readMore(socket.number(), bytes))
      return std::nullopt;
  }
}

} // namespace tavrin

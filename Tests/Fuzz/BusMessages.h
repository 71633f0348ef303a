#pragma once

#include <cstdint>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <systemd/sd-bus.h>

namespace tavrin::fuzz {

/// Two ends of one connection without a bus between them, both served by the caller.
class Connection {
public:
  Connection() {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) != 0)
      std::abort();
    first = open(ends[0], false);
    second = open(ends[1], true);
    serve([](sd_bus_message*) {});
  }
  ~Connection() {
    sd_bus_close_unref(first);
    sd_bus_close_unref(second);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// The second goes; the first is told so for all that it still waits for.
  void hangUp() const {
    sd_bus_close(second);
    while (sd_bus_process(first, nullptr) >= 0) {
    }
  }
  /// Serves both until nothing is left to do; `take` is handed what arrives at the second.
  template <class Take> void serve(const Take& take) const {
    for (bool worked = true; worked;) {
      worked = sd_bus_process(first, nullptr) > 0;
      sd_bus_message* message = nullptr;
      worked = sd_bus_process(second, &message) > 0 || worked;
      if (message != nullptr)
        take(message);
      sd_bus_message_unref(message);
    }
  }

  sd_bus* first = nullptr;
  sd_bus* second = nullptr;

private:
  static sd_bus* open(int descriptor, bool isServer) {
    sd_bus* bus = nullptr;
    if (sd_bus_new(&bus) < 0 || sd_bus_set_fd(bus, descriptor, descriptor) < 0 ||
        sd_bus_set_anonymous(bus, 1) < 0 || sd_bus_set_trusted(bus, 1) < 0 ||
        (isServer && sd_bus_set_server(bus, 1, {}) < 0) || sd_bus_start(bus) < 0)
      std::abort();
    return bus;
  }
};

/// Text that is valid in a message.
inline std::string text(FuzzedDataProvider& data) {
  std::string text = data.ConsumeRandomLengthString(24);
  for (char& c : text)
    if (c == '\0' || (static_cast<unsigned char>(c) & 0x80U) != 0)
      c = '?';
  return text;
}

/// Appends one value of that basic type.
inline void appendBasic(sd_bus_message* message, char type, FuzzedDataProvider& data) {
  if (type == 's')
    sd_bus_message_append_basic(message, 's', text(data).c_str());
  else if (type == 'o')
    sd_bus_message_append_basic(message, 'o', data.ConsumeBool() ? "/" : "/a/b");
  else if (type == 'b')
    sd_bus_message_append(message, "b", data.ConsumeBool() ? 1 : 0);
  else if (type == 'y')
    sd_bus_message_append(message, "y", data.ConsumeIntegral<std::uint8_t>());
  else if (type == 'n' || type == 'q')
    sd_bus_message_append(message, type == 'n' ? "n" : "q", data.ConsumeIntegral<std::uint16_t>());
  else if (type == 'i' || type == 'u')
    sd_bus_message_append(message, type == 'i' ? "i" : "u", data.ConsumeIntegral<std::uint32_t>());
  else if (type == 'x' || type == 't')
    sd_bus_message_append(message, type == 'x' ? "x" : "t", data.ConsumeIntegral<std::uint64_t>());
  else {
    // Any pattern of bits, infinities and what is no number among them.
    const auto bits = data.ConsumeIntegral<std::uint64_t>();
    sd_bus_message_append_basic(message, 'd', &bits);
  }
}

inline constexpr std::string_view basicTypes = "ybnqiuxtdso";

/// Appends a value of any type: a basic one, an array, a structure, or a variant of those.
inline void appendAny(sd_bus_message* message, FuzzedDataProvider& data, int depth = 0) {
  const char type = basicTypes[data.ConsumeIntegralInRange<std::size_t>(0, basicTypes.size() - 1)];
  const std::string signature(1, type);
  switch (depth > 3 ? 0 : data.ConsumeIntegralInRange<int>(0, 7)) {
  case 5:
    sd_bus_message_open_container(message, 'a', signature.c_str());
    for (int left = data.ConsumeIntegralInRange<int>(0, 3); left > 0; --left)
      appendBasic(message, type, data);
    sd_bus_message_close_container(message);
    return;
  case 6:
    sd_bus_message_open_container(message, 'r', signature.c_str());
    appendBasic(message, type, data);
    sd_bus_message_close_container(message);
    return;
  case 7:
    sd_bus_message_open_container(message, 'v', signature.c_str());
    appendBasic(message, type, data);
    sd_bus_message_close_container(message);
    return;
  default:
    appendBasic(message, type, data);
  }
}

} // namespace tavrin::fuzz

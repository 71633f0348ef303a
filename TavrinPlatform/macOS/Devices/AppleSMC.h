#pragma once
/// The messages of the system management controller: no header of the system has them. Layout and
/// numbers as in public descriptions of the interface; which Macs answer which is untried.

#include <cstddef>
#include <cstdint>

namespace tavrin::smc {

inline constexpr char serviceName[] = "AppleSMC";
inline constexpr std::uint32_t connectionType = 0;
/// The selector of IOConnectCallStructMethod for all commands.
inline constexpr std::uint32_t selector = 2;
inline constexpr std::size_t largestValue = 32;

enum class Command : std::uint8_t {
  readValue = 5,
  writeValue = 6,
  keyAtIndex = 8,
  keyInfo = 9,
};

/// The byte `result` of an answer.
enum : std::uint8_t {
  success = 0,
  error = 1,
  badCommand = 0x82, ///< Apple silicon: the system holds the fans
  keyNotFound = 0x84,
  // From one list only; another has 0x84 as not writable and 0x86 as not found. // unconfirmed
  notReadable = 0x85,
  notWritable = 0x86,
  sizeMismatch = 0x87,
  badArgument = 0x89,
};

/// Numbers lie in the machine's order: a key's first character is its highest byte in the number.
struct Message {
  std::uint32_t key = 0;
  struct {
    std::uint8_t major = 0, minor = 0, build = 0, reserved = 0;
    std::uint16_t release = 0;
  } version;
  struct {
    std::uint16_t version = 0, length = 0;
    std::uint32_t cpu = 0, gpu = 0, memory = 0;
  } limits;
  struct {
    std::uint32_t size = 0;
    std::uint32_t type = 0;
    std::uint8_t attributes = 0;
  } info;
  std::uint8_t result = 0;
  std::uint8_t status = 0;
  Command command = {};
  std::uint32_t index = 0;
  std::uint8_t bytes[largestValue] = {};
};
static_assert(offsetof(Message, info) == 28);
static_assert(offsetof(Message, result) == 40);
static_assert(offsetof(Message, command) == 42);
static_assert(offsetof(Message, index) == 44);
static_assert(offsetof(Message, bytes) == 48);
static_assert(sizeof(Message) == 80);

} // namespace tavrin::smc

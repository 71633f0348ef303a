#include "TavrinPlatform/macOS/Devices/SMCConnection.h"

#include "TavrinPlatform/macOS/Devices/IOObject.h"

#include <algorithm>
#include <fmt/format.h>

namespace tavrin {
namespace {

std::string kernelCode(kern_return_t code) {
  return fmt::format("{:#x}", static_cast<std::uint32_t>(code));
}

} // namespace

SMCConnection::~SMCConnection() {
  if (connection_ != IO_OBJECT_NULL)
    IOServiceClose(connection_);
}

void SMCConnection::open() {
  if (connection_ != IO_OBJECT_NULL)
    return;
  const IOObject service(
      IOServiceGetMatchingService(kIOMainPortDefault, IOServiceMatching(smc::serviceName)));
  if (!service)
    throw FanError::smcUnavailable("the AppleSMC service is missing");
  io_connect_t connection = IO_OBJECT_NULL;
  const kern_return_t code =
      IOServiceOpen(service.get(), mach_task_self(), smc::connectionType, &connection);
  if (code != KERN_SUCCESS)
    throw FanError::smcUnavailable("the connection was refused (" + kernelCode(code) + ")");
  connection_ = connection;
}

smc::Message SMCConnection::send(const std::string& key, const smc::Message& message,
                                 Failure failure) {
  smc::Message answer;
  std::size_t size = sizeof answer;
  const kern_return_t code = IOConnectCallStructMethod(connection_, smc::selector, &message,
                                                       sizeof message, &answer, &size);
  if (code != KERN_SUCCESS)
    throw failure(key, "the kernel returned " + kernelCode(code));
  return answer;
}

smc::Message SMCConnection::call(const std::string& key, const smc::Message& message,
                                 Failure failure) {
  auto answer = send(key, message, failure);
  if (answer.result == smc::keyNotFound && !std::exchange(isWoken_, true)) {
    // Some controllers know no key before the first one was asked for by its place.
    smc::Message first;
    first.command = smc::Command::keyAtIndex;
    send(key, first, failure);
    answer = send(key, message, failure);
  }
  if (answer.result == smc::keyNotFound)
    throw failure(key, "the key does not exist");
  if (answer.result != smc::success)
    throw failure(key, fmt::format("the SMC returned {:#x}", answer.result));
  return answer;
}

smc::Message SMCConnection::info(const std::string& key, Failure failure) {
  const auto code = SMCValue::code(key);
  if (!code)
    throw failure(key, "the key does not exist");
  open();
  smc::Message message;
  message.key = *code;
  message.command = smc::Command::keyInfo;
  message.info = call(key, message, failure).info;
  if (message.info.size > smc::largestValue)
    throw failure(key, "the value is longer than " + std::to_string(smc::largestValue) + " bytes");
  return message;
}

SMCValue SMCConnection::read(const std::string& key) {
  const std::lock_guard lock(mutex_);
  auto message = info(key, FanError::readFailed);
  message.command = smc::Command::readValue;
  const auto answer = call(key, message, FanError::readFailed);
  return {SMCValue::name(message.info.type), {answer.bytes, answer.bytes + message.info.size}};
}

void SMCConnection::write(const std::string& key, const std::vector<std::uint8_t>& bytes) {
  const std::lock_guard lock(mutex_);
  if (bytes.size() > smc::largestValue)
    throw FanError::writeFailed(key, "the value is longer than " +
                                         std::to_string(smc::largestValue) + " bytes");
  auto message = info(key, FanError::writeFailed);
  message.command = smc::Command::writeValue;
  message.info.size = static_cast<std::uint32_t>(bytes.size());
  std::copy(bytes.begin(), bytes.end(), message.bytes);
  call(key, message, FanError::writeFailed);
}

} // namespace tavrin

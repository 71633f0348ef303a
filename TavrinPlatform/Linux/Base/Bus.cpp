#include "TavrinPlatform/Linux/Base/Bus.h"

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>
#include <algorithm>
#include <cerrno>
#include <ctime>
#include <limits>
#include <poll.h>

namespace tavrin {

namespace {

constexpr std::uint64_t noDeadline = std::numeric_limits<std::uint64_t>::max();

std::uint64_t monotonicMicroseconds() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000 +
         static_cast<std::uint64_t>(now.tv_nsec) / 1000;
}

class SlotToken final : public Token {
public:
  explicit SlotToken(sd_bus_slot* slot) : slot_(slot) {}
  ~SlotToken() override { sd_bus_slot_unref(slot_); }

private:
  sd_bus_slot* slot_;
};

/// Hands `function` to a slot, which frees it when it goes itself.
template <class Function> void own(sd_bus_slot* slot, Function* function) {
  sd_bus_slot_set_destroy_callback(slot, [](void* data) { delete static_cast<Function*>(data); });
  sd_bus_slot_set_userdata(slot, function);
}

int deliverReply(sd_bus_message* message, void* data, sd_bus_error*) {
  const auto reply = *static_cast<Bus::Reply*>(data);
  if (const auto* error = sd_bus_message_get_error(message))
    reply(nullptr, error->message != nullptr && Bus::isOwnError(error->name) ? error->message
                   : error->name == nullptr                                  ? "unknown"
                                                                             : error->name);
  else
    reply(message, {});
  return 0;
}

int deliverMatch(sd_bus_message* message, void* data, sd_bus_error*) {
  // The handler may drop its own token.
  const auto handler = *static_cast<std::shared_ptr<Bus::Handler>*>(data);
  (*handler)(message);
  return 0;
}

std::unique_ptr<sd_bus, decltype(&sd_bus_unref)> open(int (*opener)(sd_bus**)) {
  sd_bus* bus = nullptr;
  if (opener(&bus) < 0)
    bus = nullptr;
  return {bus, sd_bus_unref};
}

} // namespace

std::string objectPath(const std::string& busName) {
  std::string path = "/" + busName;
  std::replace(path.begin(), path.end(), '.', '/');
  std::replace(path.begin(), path.end(), '-', '_');
  return path;
}

std::unique_ptr<Bus> Bus::session() {
  auto bus = open(sd_bus_open_user);
  return bus ? std::unique_ptr<Bus>(new Bus(bus.release())) : nullptr;
}

std::unique_ptr<Bus> Bus::system() {
  auto bus = open(sd_bus_open_system);
  return bus ? std::unique_ptr<Bus>(new Bus(bus.release())) : nullptr;
}

Bus::Bus(sd_bus* bus) : bus_(bus) {
  sd_bus_set_close_on_exit(bus, 0);
}

Bus::~Bus() {
  readable_.reset();
  writable_.reset();
}

bool Bus::isOwnError(const char* name) {
  return name != nullptr && std::string_view(name).starts_with("dev.quellby.tavrin.");
}

bool Bus::isOpen() const {
  return bus_ && sd_bus_is_open(bus_.get()) > 0;
}

BusMessage Bus::method(const BusAddress& address, const char* member) const {
  sd_bus_message* message = nullptr;
  sd_bus_message_new_method_call(bus_.get(), &message, address.service, address.path,
                                 address.interface, member);
  return BusMessage(message);
}

BusMessage Bus::signal(const char* path, const char* interface, const char* member) const {
  sd_bus_message* message = nullptr;
  sd_bus_message_new_signal(bus_.get(), &message, path, interface, member);
  return BusMessage(message);
}

void Bus::send(const BusMessage& message) {
  if (message)
    sd_bus_send(bus_.get(), message.get(), nullptr);
  arm();
}

void Bus::call(const BusMessage& message, Reply reply, double timeout) {
  sd_bus_slot* slot = nullptr;
  const auto limit = static_cast<std::uint64_t>(timeout * 1e6);
  const int sent =
      message ? sd_bus_call_async(bus_.get(), &slot, message.get(), deliverReply, nullptr, limit)
              : -EINVAL;
  if (sent < 0) {
    QMetaObject::invokeMethod(
        this, [reply = std::move(reply)] { reply(nullptr, "not sent"); }, Qt::QueuedConnection);
    return;
  }
  own(slot, new Reply(std::move(reply)));
  sd_bus_slot_set_floating(slot, 1);
  sd_bus_slot_unref(slot);
  arm();
}

BusMessage Bus::ask(const BusMessage& message, double seconds) {
  sd_bus_message* reply = nullptr;
  const auto limit = static_cast<std::uint64_t>(seconds * 1e6);
  if (!message || sd_bus_call(bus_.get(), message.get(), limit, nullptr, &reply) < 0)
    reply = nullptr;
  // What came meanwhile waits to be handled.
  arm();
  return BusMessage(reply);
}

TokenPtr Bus::match(const std::string& rule, Handler handler) {
  sd_bus_slot* slot = nullptr;
  // The answer to the subscription itself is of no interest: a refused one never delivers.
  const auto ignore = [](sd_bus_message*, void*, sd_bus_error*) { return 0; };
  if (sd_bus_add_match_async(bus_.get(), &slot, rule.c_str(), deliverMatch, ignore, nullptr) < 0)
    return std::make_unique<Token>();
  own(slot, new std::shared_ptr<Handler>(std::make_shared<Handler>(std::move(handler))));
  arm();
  return std::make_unique<SlotToken>(slot);
}

TokenPtr Bus::serve(const char* path, const char* interface, const sd_bus_vtable* vtable,
                    void* context) {
  sd_bus_slot* slot = nullptr;
  if (sd_bus_add_object_vtable(bus_.get(), &slot, path, interface, vtable, context) < 0)
    return std::make_unique<Token>();
  return std::make_unique<SlotToken>(slot);
}

void Bus::requestName(const std::string& name, std::function<void(bool)> answer) {
  constexpr std::uint32_t doNotQueue = 4;
  constexpr std::uint32_t primaryOwner = 1;
  constexpr std::uint32_t alreadyOwner = 4;
  BusMessage request = method(busDaemon, "RequestName");
  request.append("su", name.c_str(), doNotQueue);
  call(request, [answer = std::move(answer)](sd_bus_message* reply, const std::string&) {
    std::uint32_t result = 0;
    // Without an answer nobody else is known to own it.
    const bool isAnswered = reply != nullptr && sd_bus_message_read(reply, "u", &result) > 0;
    answer(!isAnswered || result == primaryOwner || result == alreadyOwner);
  });
}

void Bus::releaseName(const std::string& name) {
  constexpr double longest = 1;
  BusMessage request = method(busDaemon, "ReleaseName");
  ask(request.append("s", name.c_str()), longest);
}

void Bus::waitUntil(const std::function<bool()>& isDone, double seconds) {
  const std::uint64_t end = monotonicMicroseconds() + static_cast<std::uint64_t>(seconds * 1e6);
  while (!isDone()) {
    const int worked = sd_bus_process(bus_.get(), nullptr);
    if (worked > 0)
      continue;
    const std::uint64_t now = monotonicMicroseconds();
    if (worked < 0 || now >= end)
      break;
    sd_bus_wait(bus_.get(), end - now);
  }
  arm();
}

void Bus::process() {
  int worked = 0;
  do {
    worked = sd_bus_process(bus_.get(), nullptr);
  } while (worked > 0);
  if (worked < 0 && worked != -EBUSY && !isOpen())
    hasClosed_ = true;
  arm();
  if (hasClosed_ && onClose)
    std::exchange(onClose, nullptr)();
}

void Bus::arm() {
  if (QAbstractEventDispatcher::instance() == nullptr)
    return;
  if (!isOpen()) {
    readable_.reset();
    writable_.reset();
    timeout_.stop();
    // Sending may have found out: those who wait for answers are told on the loop's next turn.
    if (!hasClosed_)
      timeout_.start(0, this);
    return;
  }
  if (!readable_) {
    const int descriptor = sd_bus_get_fd(bus_.get());
    readable_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    writable_ = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Write);
    connect(readable_.get(), &QSocketNotifier::activated, this, &Bus::process);
    connect(writable_.get(), &QSocketNotifier::activated, this, &Bus::process);
  }
  writable_->setEnabled((sd_bus_get_events(bus_.get()) & POLLOUT) != 0);

  std::uint64_t deadline = noDeadline;
  sd_bus_get_timeout(bus_.get(), &deadline);
  if (deadline == deadline_ && (deadline == noDeadline || timeout_.isActive()))
    return;
  deadline_ = deadline;
  if (deadline == noDeadline) {
    timeout_.stop();
    return;
  }
  const std::uint64_t now = monotonicMicroseconds();
  const std::uint64_t wait = deadline > now ? (deadline - now + 999) / 1000 : 0;
  timeout_.start(static_cast<int>(std::min<std::uint64_t>(wait, 60'000)), this);
}

} // namespace tavrin

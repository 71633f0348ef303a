#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <QBasicTimer>
#include <QObject>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <systemd/sd-bus.h>

class QSocketNotifier;

namespace tavrin {

/// A message being built or read. Refusals of the library while building (a text that is not
/// UTF-8, say) leave an invalid message, which `Bus` drops when it is to be sent.
class BusMessage {
public:
  BusMessage() = default;
  explicit BusMessage(sd_bus_message* message) : message_(message) {}

  /// Appends values as sd_bus_message_append takes them.
  template <class... Values> BusMessage& append(const char* types, Values... values) {
    if (message_ && sd_bus_message_append(message_.get(), types, values...) < 0)
      message_.reset();
    return *this;
  }
  sd_bus_message* get() const { return message_.get(); }
  explicit operator bool() const { return message_ != nullptr; }

private:
  struct Unref {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
  };
  std::unique_ptr<sd_bus_message, Unref> message_;
};

struct BusAddress {
  const char* service;
  const char* path;
  const char* interface;
};

/// An application "a.b-c" is served at "/a/b_c".
std::string objectPath(const std::string& busName);

/// The bus itself.
inline constexpr BusAddress busDaemon{"org.freedesktop.DBus", "/org/freedesktop/DBus",
                                      "org.freedesktop.DBus"};

/// The user's or the system's service manager.
inline constexpr BusAddress serviceManager{"org.freedesktop.systemd1", "/org/freedesktop/systemd1",
                                           "org.freedesktop.systemd1.Manager"};

/// One connection to a message bus, served by the main thread's event loop without a thread of
/// its own. No member waits for the bus but `ask`, `releaseName` and `waitUntil`.
class Bus final : public QObject {
public:
  /// `reply` is null when the call failed; `error` names why, or is the sentence that another
  /// part of this program sent.
  using Reply = std::function<void(sd_bus_message* reply, const std::string& error)>;
  using Handler = std::function<void(sd_bus_message* signal)>;

  /// No value when there is no such bus.
  static std::unique_ptr<Bus> session();
  static std::unique_ptr<Bus> system();
  ~Bus() override;

  /// Whether an error's name is one of this program.
  static bool isOwnError(const char* name);

  bool isOpen() const;
  sd_bus* handle() const { return bus_.get(); }

  BusMessage method(const BusAddress& address, const char* member) const;
  BusMessage signal(const char* path, const char* interface, const char* member) const;
  void send(const BusMessage& message);
  /// `reply` is always called, on the main thread, at the latest after `timeout` seconds.
  void call(const BusMessage& message, Reply reply, double timeout = 25);
  /// Waits for the answer, at most `seconds`; null without one, or where the call failed. For
  /// start-up and for the command: nothing else of this program goes on meanwhile.
  BusMessage ask(const BusMessage& message, double seconds);
  /// Calls `handler` for every message that `rule` matches.
  [[nodiscard]] TokenPtr match(const std::string& rule, Handler handler);
  /// Answers calls of `interface` on `path`; `vtable` and `context` must outlive the token.
  [[nodiscard]] TokenPtr serve(const char* path, const char* interface, const sd_bus_vtable* vtable,
                               void* context);
  /// Asks for a name, not queueing behind its owner. `answer` is told whether it is ours now.
  void requestName(const std::string& name, std::function<void(bool)> answer);
  /// Gives it back, and returns once the bus has it back, or after a second.
  void releaseName(const std::string& name);
  /// Serves the connection until `isDone` or `seconds` are over; for start-up only.
  void waitUntil(const std::function<bool()>& isDone, double seconds);

  /// The connection was lost; nothing comes or goes any more.
  std::function<void()> onClose;

protected:
  void timerEvent(QTimerEvent*) override { process(); }

private:
  explicit Bus(sd_bus* bus);
  void process();
  /// Watches for what the connection waits for next, once there is an event loop.
  void arm();

  struct CloseAndFree {
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
  };
  std::unique_ptr<sd_bus, CloseAndFree> bus_;
  std::unique_ptr<QSocketNotifier> readable_;
  std::unique_ptr<QSocketNotifier> writable_;
  QBasicTimer timeout_;
  std::uint64_t deadline_ = 0;
  bool hasClosed_ = false;
};

} // namespace tavrin

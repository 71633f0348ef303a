#include "TavrinPlatform/Linux/Devices/ObexSending.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Linux/Base/BusProperties.h"

#include <cmath>

namespace tavrin {
namespace {

constexpr const char* obexService = "org.bluez.obex";
constexpr const char* pushInterface = "org.bluez.obex.ObjectPush1";
constexpr const char* transferInterface = "org.bluez.obex.Transfer1";
const BusAddress client{obexService, "/org/bluez/obex", "org.bluez.obex.Client1"};
/// The other side's user has to be asked.
constexpr double openLimit = 60;
constexpr double silenceLimit = 90;
/// A size that a double holds exactly.
constexpr double mostBytes = 9e15;

std::uint64_t bytes(const std::optional<double>& value) {
  return value && *value > 0 && *value < mostBytes ? static_cast<std::uint64_t>(*value) : 0;
}

} // namespace

ObexSending::ObexSending(Bus& session, RunLoop& runLoop, const NearbyDevice& device,
                         std::vector<std::filesystem::path> files, Progress progress, Done done)
    : session_(session), runLoop_(runLoop), device_(device), files_(std::move(files)),
      progress_(std::move(progress)), done_(std::move(done)) {
  state_.fileCount = files_.size();
  watches_.push_back(session_.match(
      "type='signal',sender='org.bluez.obex',interface='org.freedesktop.DBus.Properties',"
      "member='PropertiesChanged'",
      [this](sd_bus_message* signal) { changed(signal); }));
  watches_.push_back(
      session_.match("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',"
                     "arg0='org.bluez.obex'",
                     [this](sd_bus_message* message) {
                       textArgument(message);
                       textArgument(message);
                       if (textArgument(message).empty() && !path_.empty())
                         finish(translated("the Bluetooth service ended"));
                     }));
  open();
}

ObexSending::~ObexSending() {
  if (!transfer_.empty() && session_.isOpen()) {
    BusMessage cancel =
        session_.method({obexService, transfer_.c_str(), transferInterface}, "Cancel");
    session_.send(cancel);
  }
  closeSession();
}

void ObexSending::open() {
  BusMessage message = session_.method(client, "CreateSession");
  message.append("sa{sv}", device_.id.c_str(), 1, "Target", "s", "opp");
  session_.call(
      message,
      [this, weak = alive_.watch(), bus = &session_](sd_bus_message* reply,
                                                     const std::string& error) {
        const char* path = nullptr;
        const bool isOpen =
            reply != nullptr && sd_bus_message_read_basic(reply, 'o', &path) > 0 && path != nullptr;
        if (weak.expired()) {
          // Called off before the device had answered.
          if (isOpen) {
            BusMessage remove = bus->method(client, "RemoveSession");
            bus->send(remove.append("o", path));
          }
          return;
        }
        if (!isOpen) {
          finish(error == SD_BUS_ERROR_SERVICE_UNKNOWN || error == SD_BUS_ERROR_NAME_HAS_NO_OWNER
                     ? translated("Bluetooth's file service is not installed")
                     : translated("the device did not take the connection"));
          return;
        }
        path_ = path;
        sendNext();
      },
      openLimit);
}

void ObexSending::sendNext() {
  if (state_.file == files_.size()) {
    finish({});
    return;
  }
  state_.sent = state_.size = 0;
  progress_(state_);
  watchForSilence();
  BusMessage message = session_.method({obexService, path_.c_str(), pushInterface}, "SendFile");
  message.append("s", files_[state_.file].c_str());
  session_.call(
      message,
      [this, weak = alive_.watch()](sd_bus_message* reply, const std::string&) {
        if (weak.expired())
          return;
        const char* path = nullptr;
        if (reply == nullptr || sd_bus_message_read_basic(reply, 'o', &path) <= 0) {
          finish(translated("the file could not be read or was not taken"));
          return;
        }
        transfer_ = path;
        BusProperties values;
        values.read(reply);
        state_.size = bytes(values.number("Size"));
        progress_(state_);
      },
      openLimit);
}

void ObexSending::changed(sd_bus_message* signal) {
  const char* path = sd_bus_message_get_path(signal);
  if (path == nullptr || transfer_ != path || textArgument(signal) != transferInterface)
    return;
  BusProperties values;
  values.read(signal);
  watchForSilence();
  if (values.has("Size"))
    state_.size = bytes(values.number("Size"));
  if (values.has("Transferred"))
    state_.sent = bytes(values.number("Transferred"));
  const std::string status = values.text("Status");
  if (status == "complete") {
    transfer_.clear();
    ++state_.file;
    sendNext();
  } else if (status == "error") {
    transfer_.clear();
    finish(translated("the device refused it or is gone"));
  } else {
    progress_(state_);
  }
}

void ObexSending::watchForSilence() {
  silence_ =
      runLoop_.after(silenceLimit, [this] { finish(translated("the device does not answer")); });
}

void ObexSending::closeSession() {
  if (path_.empty() || !session_.isOpen())
    return;
  BusMessage remove = session_.method(client, "RemoveSession");
  session_.send(remove.append("o", path_.c_str()));
  path_.clear();
}

void ObexSending::finish(const std::string& reason) {
  const auto done = std::exchange(done_, nullptr);
  if (!done)
    return;
  silence_.reset();
  closeSession();
  const std::string what =
      state_.file < files_.size()
          ? translated("send {file} to {name}",
                       {{"file", files_[state_.file].filename().string()}, {"name", device_.name}})
          : translated("send to {name}", {{"name", device_.name}});
  // The callee may drop this.
  done({reason.empty() ? std::string() : failure(what, reason), false});
}

} // namespace tavrin

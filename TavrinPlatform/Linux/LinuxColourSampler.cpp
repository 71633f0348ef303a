#include "TavrinPlatform/Linux/LinuxColourSampler.h"

#include "TavrinPlatform/Linux/Bus.h"
#include "TavrinPlatform/Linux/BusProperties.h"
#include "TavrinPlatform/Linux/X11.h"
#include "TavrinPlatform/Linux/X11ColourPick.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace tavrin {

namespace {

using Outcome = ColourSample::Outcome;

const BusAddress screenshot{"org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                            "org.freedesktop.portal.Screenshot"};

int channel(double share) {
  return std::isfinite(share) ? static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * 255))
                              : 0;
}

/// The answer of a request: a response code, and the colour among its results.
ColourSample sampleOf(sd_bus_message* message) {
  std::uint32_t code = 2;
  if (sd_bus_message_read(message, "u", &code) <= 0 || code == 1)
    return {};
  ColourSample sample{Outcome::unavailable, 0, 0, 0};
  if (code != 0 || sd_bus_message_enter_container(message, 'a', "{sv}") <= 0)
    return sample;
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    double red = 0;
    double green = 0;
    double blue = 0;
    if (textArgument(message) == "color" &&
        sd_bus_message_read(message, "v", "(ddd)", &red, &green, &blue) > 0)
      sample = {Outcome::picked, channel(red), channel(green), channel(blue)};
    else
      sd_bus_message_skip(message, "v");
    sd_bus_message_exit_container(message);
  }
  return sample;
}

class Picking final : public Token {
public:
  Picking(Bus* session, std::function<void(const ColourSample&)> done)
      : session_(session), done_(std::move(done)) {
    if (session_ != nullptr && session_->isOpen())
      askPortal();
    else
      pickOnScreen();
  }
  ~Picking() override {
    if (session_ != nullptr && !handle_.empty()) {
      const BusAddress request{screenshot.service, handle_.c_str(),
                               "org.freedesktop.portal.Request"};
      session_->send(session_->method(request, "Close"));
    }
  }

private:
  void askPortal();
  void expectAnswerAt(const std::string& path);
  void pickOnScreen();
  void finish(const ColourSample& sample);

  Bus* session_;
  std::function<void(const ColourSample&)> done_;
  std::string handle_;
  TokenPtr response_;
  TokenPtr screenPick_;
  std::shared_ptr<Picking*> self_ = std::make_shared<Picking*>(this);
};

void Picking::askPortal() {
  const char* name = nullptr;
  sd_bus_get_unique_name(session_->handle(), &name);
  std::string sender = name != nullptr && *name == ':' ? name + 1 : "";
  std::ranges::replace(sender, '.', '_');
  static unsigned number = 0;
  const std::string token = "tavrin" + std::to_string(++number);
  // Listened to before the call: the answer may overtake the call's own reply.
  expectAnswerAt("/org/freedesktop/portal/desktop/request/" + sender + "/" + token);
  BusMessage call = session_->method(screenshot, "PickColor");
  call.append("sa{sv}", "", 1, "handle_token", "s", token.c_str());
  session_->call(call, [weak = std::weak_ptr(self_)](sd_bus_message* reply, const std::string&) {
    const auto self = weak.lock();
    if (!self)
      return;
    const char* path = nullptr;
    if (reply == nullptr) {
      (*self)->handle_.clear();
      (*self)->response_.reset();
      (*self)->pickOnScreen();
    } else if (sd_bus_message_read(reply, "o", &path) > 0 && (*self)->handle_ != path &&
               !(*self)->handle_.empty()) {
      // Portals of old choose the path themselves.
      (*self)->expectAnswerAt(path);
    }
  });
}

void Picking::expectAnswerAt(const std::string& path) {
  handle_ = path;
  response_ = session_->match("type='signal',interface='org.freedesktop.portal.Request',"
                              "member='Response',path='" +
                                  path + "'",
                              [this](sd_bus_message* message) {
                                handle_.clear();
                                finish(sampleOf(message));
                              });
}

void Picking::pickOnScreen() {
  if (x11::connection() == nullptr) {
    finish({Outcome::unavailable, 0, 0, 0});
    return;
  }
  screenPick_ =
      std::make_unique<X11ColourPick>([this](const ColourSample& sample) { finish(sample); });
}

void Picking::finish(const ColourSample& sample) {
  // The callee may drop this token.
  const auto done = std::exchange(done_, nullptr);
  if (done)
    done(sample);
}

} // namespace

TokenPtr LinuxColourSampler::pick(std::function<void(const ColourSample&)> done) {
  return std::make_unique<Picking>(session_, std::move(done));
}

} // namespace tavrin

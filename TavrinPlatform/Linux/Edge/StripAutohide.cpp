#include "TavrinPlatform/Linux/Edge/StripAutohide.h"

namespace tavrin {

namespace {

/// Milliseconds: the strip outlasts a short way of the pointer beside it, and there is time to
/// come to it from the edge.
constexpr int hideDelay = 600;
constexpr int touchLength = 1000;
constexpr int attentionLength = 3000;
constexpr const char* stripPath = "/dev/quellby/tavrin/Strip";
constexpr const char* stripInterface = "dev.quellby.tavrin.Strip";
/// Signals: a connection has a reason to have the strip shown, or has none (a boolean); and the
/// question who has one.
constexpr const char* heldSignal = "Held";
constexpr const char* askedSignal = "Asked";

std::string rule(const char* member) {
  return std::string("type='signal',path='") + stripPath + "',interface='" + stripInterface +
         "',member='" + member + "'";
}

} // namespace

StripAutohide::StripAutohide(Bus* bus, std::function<void()> changed)
    : bus_(bus), changed_(std::move(changed)) {
  const auto prepare = [](QTimer& timer, int length, const std::function<void()>& over) {
    timer.setSingleShot(true);
    timer.setInterval(length);
    QObject::connect(&timer, &QTimer::timeout, over);
  };
  prepare(hides_, hideDelay, [this] {
    isHidden_ = true;
    changed_();
  });
  prepare(touched_, touchLength, [this] { hold(edge, false); });
  prepare(attended_, attentionLength, [this] { hold(attention, false); });
}

void StripAutohide::setWanted(bool isWanted) {
  if (std::exchange(isWanted_, isWanted) == isWanted)
    return;
  hides_.stop();
  held_.reset();
  asked_.reset();
  others_.clear();
  hasTold_ = false;
  if (isWanted)
    follow();
  isHidden_ = isWanted && reasons_ == 0;
  tell();
  changed_();
}

void StripAutohide::follow() {
  if (bus_ == nullptr || !bus_->isOpen())
    return;
  held_ = bus_->match(rule(heldSignal), [this](sd_bus_message* signal) {
    int isHeld = 0;
    const char* sender = sd_bus_message_get_sender(signal);
    if (sender != nullptr && sd_bus_message_read(signal, "b", &isHeld) > 0)
      heard(sender, isHeld != 0);
  });
  asked_ = bus_->match(rule(askedSignal), [this](sd_bus_message*) {
    hasTold_ = false;
    tell();
  });
  bus_->send(bus_->signal(stripPath, stripInterface, askedSignal));
}

void StripAutohide::heard(const std::string& sender, bool isHeld) {
  const char* own = nullptr;
  sd_bus_get_unique_name(bus_->handle(), &own);
  if (own != nullptr && sender == own)
    return;
  if (!isHeld) {
    others_.erase(sender);
  } else if (!others_.contains(sender)) {
    // Also one that ends without a word has no reason left. Later: the watch cannot end itself.
    others_[sender] =
        bus_->match("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='" +
                        sender + "',arg2=''",
                    [this, sender](sd_bus_message*) {
                      QTimer::singleShot(0, &hides_, [this, sender] { heard(sender, false); });
                    });
  }
  update();
}

void StripAutohide::hold(Reason reason, bool isHeld) {
  const unsigned before = reasons_;
  reasons_ = isHeld ? reasons_ | reason : reasons_ & ~unsigned{reason};
  if (reasons_ == before)
    return;
  tell();
  update();
}

void StripAutohide::touch() {
  hold(edge, true);
  touched_.start();
}

void StripAutohide::attend() {
  hold(attention, true);
  attended_.start();
}

void StripAutohide::tell() {
  const bool isHeld = (reasons_ & ~unsigned{attention}) != 0;
  if (!isWanted_ || bus_ == nullptr || std::exchange(hasTold_, isHeld) == isHeld)
    return;
  BusMessage message = bus_->signal(stripPath, stripInterface, heldSignal);
  bus_->send(message.append("b", int{isHeld}));
}

void StripAutohide::update() {
  const bool isHeld = reasons_ != 0 || !others_.empty();
  if (!isWanted_)
    return;
  if (!isHeld) {
    if (!isHidden_ && !hides_.isActive())
      hides_.start();
    return;
  }
  hides_.stop();
  if (std::exchange(isHidden_, false))
    changed_();
}

} // namespace tavrin

#include "TavrinPlatform/Linux/Wayland/WaylandPasteboard.h"

#include "TavrinPlatform/Linux/Pasteboard/OfferedTypes.h"
#include "TavrinPlatform/Linux/Pasteboard/PasteboardThread.h"
#include "TavrinPlatform/Linux/Pasteboard/PollTimeout.h"
#include "TavrinPlatform/Linux/Wayland/DataControlOffer.h"
#include "TavrinPlatform/Linux/Wayland/DataControlReader.h"

#include <algorithm>
#include <optional>

namespace tavrin {

namespace {

using Manager = ProxyPtr<zwlr_data_control_manager_v1>;

/// The standard protocol and the one that it was made of have the same messages. Version 1 has no
/// primary selection, of which nothing is wanted.
Manager bindManager(const WaylandRegistry& registry) {
  static const wl_interface standard = [] {
    wl_interface copy = zwlr_data_control_manager_v1_interface;
    copy.name = "ext_data_control_manager_v1";
    return copy;
  }();
  if (auto* manager = registry.bind<zwlr_data_control_manager_v1>(standard, 1))
    return Manager(manager);
  return Manager(
      registry.bind<zwlr_data_control_manager_v1>(zwlr_data_control_manager_v1_interface, 1));
}

} // namespace

class WaylandPasteboard::Worker {
public:
  explicit Worker(const PasteboardListener& listener)
      : listener_(listener),
        reader_([this](Capture capture) { listener_.captured(std::move(capture)); }) {
    if (!connection_.isOpen())
      return;
    manager_ = bindManager(connection_.registry());
    seat_.reset(connection_.registry().bind<wl_seat>(wl_seat_interface, 1));
    if (!manager_ || !seat_)
      return;
    device_.reset(zwlr_data_control_manager_v1_get_data_device(manager_.get(), seat_.get()));
    listen();
    // What has been copied before is no change.
    if (!connection_.roundTrip()) {
      device_.reset();
      return;
    }
    offer_.emplace(manager_.get(), device_.get());
    thread_.start([this] { run(); });
  }
  ~Worker() {
    thread_.order([this] { isEnding_ = true; });
    thread_.join();
  }

  bool isReady() const { return offer_.has_value(); }
  void observe(std::optional<Limits> limits) {
    thread_.order([this, limits] {
      isObserving_ = limits.has_value();
      if (limits)
        reader_.setLimits(*limits);
      else
        reader_.abandon();
    });
  }
  void write(std::vector<Format> formats) {
    thread_.order([this, formats = std::move(formats)] { offer_->take(formats); });
  }

private:
  /// What another program has copied, before it becomes the selection.
  struct Incoming {
    ProxyPtr<zwlr_data_control_offer_v1> offer;
    std::vector<std::string> types;
    std::size_t length = 0;
  };

  void listen();
  void announced(zwlr_data_control_offer_v1* offer);
  void selected(zwlr_data_control_offer_v1* offer);
  void run();
  int wait() const;

  const PasteboardListener& listener_;
  WaylandConnection connection_;
  Manager manager_;
  ProxyPtr<wl_seat> seat_;
  ProxyPtr<zwlr_data_control_device_v1> device_;
  std::vector<std::unique_ptr<Incoming>> incoming_;
  DataControlReader reader_;
  std::optional<DataControlOffer> offer_;
  std::int64_t changeCount_ = 0;
  bool isObserving_ = false;
  bool isEnding_ = false;
  PasteboardThread thread_;
};

void WaylandPasteboard::Worker::listen() {
  static const zwlr_data_control_device_v1_listener listener{
      [](void* self, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* offer) {
        static_cast<Worker*>(self)->announced(offer);
      },
      [](void* self, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* offer) {
        static_cast<Worker*>(self)->selected(offer);
      },
      // The seat is gone, and with it what it had copied.
      [](void* self, zwlr_data_control_device_v1*) {
        static_cast<Worker*>(self)->isEnding_ = true;
      },
      [](void*, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1*) {}};
  zwlr_data_control_device_v1_add_listener(device_.get(), &listener, this);
}

void WaylandPasteboard::Worker::announced(zwlr_data_control_offer_v1* offer) {
  auto& incoming = *incoming_.emplace_back(std::make_unique<Incoming>());
  incoming.offer.reset(offer);
  static const zwlr_data_control_offer_v1_listener listener{
      [](void* data, zwlr_data_control_offer_v1*, const char* type) {
        auto& self = *static_cast<Incoming*>(data);
        self.types.emplace_back(type);
        self.length += self.types.back().size();
        if (self.length > CapturePlan::longestTypes)
          self.types.pop_back();
      }};
  zwlr_data_control_offer_v1_add_listener(offer, &listener, &incoming);
}

void WaylandPasteboard::Worker::selected(zwlr_data_control_offer_v1* offer) {
  const auto found =
      std::ranges::find(incoming_, offer, [](const auto& each) { return each->offer.get(); });
  std::unique_ptr<Incoming> copied;
  if (offer != nullptr && found != incoming_.end())
    copied = std::move(*found);
  incoming_.clear();
  if (!offer_)
    return;
  if (!copied) {
    if (isObserving_)
      listener_.abandoned(changeCount_);
    return;
  }
  ++changeCount_;
  if (!isObserving_)
    return;
  if (offer_->isOwn(copied->types)) {
    reader_.add({changeCount_, {}, {}, true});
    return;
  }
  listener_.changed(changeCount_);
  reader_.begin(changeCount_, offer, std::move(copied->types),
                copied->length > CapturePlan::longestTypes);
}

void WaylandPasteboard::Worker::run() {
  while (!isEnding_ && connection_.isOpen()) {
    std::vector<pollfd> watched{{thread_.wakeDescriptor(), POLLIN, 0}};
    reader_.watch(watched);
    offer_->watch(watched);
    connection_.wait(watched, wait());
    reader_.proceed();
    offer_->proceed();
    thread_.obey();
  }
}

int WaylandPasteboard::Worker::wait() const {
  return pollTimeout(reader_.deadline(), offer_->deadline());
}

WaylandPasteboard::WaylandPasteboard(RunLoop& runLoop)
    : listener_(runLoop), worker_(std::make_unique<Worker>(listener_)) {
  if (!worker_->isReady())
    worker_.reset();
}

WaylandPasteboard::~WaylandPasteboard() {
  listener_.set({});
}

TokenPtr WaylandPasteboard::observe(const Limits& limits, Observer observer) {
  struct Observation final : Token {
    explicit Observation(WaylandPasteboard& board) : board(board) {}
    ~Observation() override {
      board.listener_.set({});
      if (board.worker_)
        board.worker_->observe(std::nullopt);
    }
    WaylandPasteboard& board;
  };
  listener_.set(std::move(observer));
  if (worker_)
    worker_->observe(limits);
  return std::make_unique<Observation>(*this);
}

void WaylandPasteboard::write(std::vector<Format> formats) {
  addForFileManagers(formats);
  if (worker_)
    worker_->write(std::move(formats));
}

} // namespace tavrin

/// Null where the compositor does not let programs see what was copied.
extern "C" __attribute__((visibility("default"))) tavrin::Pasteboard*
tavrinMakeWaylandPasteboard(tavrin::RunLoop& runLoop) {
  auto board = std::make_unique<tavrin::WaylandPasteboard>(runLoop);
  return board->canObserve() ? board.release() : nullptr;
}

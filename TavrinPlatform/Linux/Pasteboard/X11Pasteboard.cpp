#include "TavrinPlatform/Linux/Pasteboard/X11Pasteboard.h"

#include "TavrinPlatform/Linux/Base/X11.h"
#include "TavrinPlatform/Linux/Pasteboard/OfferedTypes.h"
#include "TavrinPlatform/Linux/Pasteboard/PasteboardThread.h"
#include "TavrinPlatform/Linux/Pasteboard/PollTimeout.h"
#include "TavrinPlatform/Linux/Pasteboard/SelectionOffer.h"
#include "TavrinPlatform/Linux/Pasteboard/SelectionReader.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <algorithm>
#include <optional>
#include <poll.h>
#include <xcb/xfixes.h>

namespace tavrin {

class X11Pasteboard::Worker {
public:
  explicit Worker(const PasteboardListener& listener)
      : listener_(listener),
        reader_(connection_, [this](Capture capture) { listener_.captured(std::move(capture)); }),
        offer_(connection_) {
    if (connection_.isOpen())
      thread_.start([this] { run(); });
  }
  ~Worker() {
    order([](Worker& worker) { worker.isEnding_ = true; });
    thread_.join();
  }

  bool hasEvents() const { return connection_.isOpen() && connection_.fixesEvent() != 0; }
  /// Has the thread do it.
  void order(std::function<void(Worker&)> work) {
    thread_.order([this, work = std::move(work)] { work(*this); });
  }
  void observe(std::optional<Limits> limits) {
    isObserving_ = limits.has_value();
    if (limits)
      reader_.setLimits(*limits);
    else
      reader_.abandon();
  }
  void offer(std::vector<Format> formats) { offer_.take(std::move(formats)); }

private:
  void run();
  int wait();
  void handle(const xcb_generic_event_t& event);
  void ownerChanged(const xcb_xfixes_selection_notify_event_t& event);

  const PasteboardListener& listener_;
  SelectionConnection connection_;
  SelectionReader reader_;
  SelectionOffer offer_;
  std::int64_t changeCount_ = 0;
  bool isObserving_ = false;
  bool isEnding_ = false;
  PasteboardThread thread_;
};

void X11Pasteboard::Worker::run() {
  while (!isEnding_ && connection_.isOpen()) {
    while (const ReplyPtr<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())})
      handle(*event);
    thread_.obey();
    reader_.expire();
    offer_.expire();
    // What was read from the socket while waiting for an answer makes no descriptor readable.
    if (const ReplyPtr<xcb_generic_event_t> event{xcb_poll_for_queued_event(connection_.get())}) {
      handle(*event);
      continue;
    }
    pollfd watched[] = {{connection_.descriptor(), POLLIN, 0},
                        {thread_.wakeDescriptor(), POLLIN, 0}};
    if (!isEnding_)
      ::poll(watched, 2, wait());
  }
}

int X11Pasteboard::Worker::wait() {
  return pollTimeout(reader_.deadline(), offer_.deadline());
}

void X11Pasteboard::Worker::handle(const xcb_generic_event_t& event) {
  const auto type = static_cast<std::uint8_t>(event.response_type & 0x7F);
  if (connection_.fixesEvent() != 0 &&
      type == connection_.fixesEvent() + XCB_XFIXES_SELECTION_NOTIFY) {
    ownerChanged(reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event));
    return;
  }
  switch (type) {
  case XCB_SELECTION_NOTIFY:
    reader_.handle(reinterpret_cast<const xcb_selection_notify_event_t&>(event));
    break;
  case XCB_SELECTION_REQUEST:
    offer_.handle(reinterpret_cast<const xcb_selection_request_event_t&>(event));
    break;
  case XCB_SELECTION_CLEAR:
    offer_.handle(reinterpret_cast<const xcb_selection_clear_event_t&>(event));
    break;
  case XCB_PROPERTY_NOTIFY:
    reader_.handle(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    offer_.handle(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    break;
  default:
    break;
  }
}

/// The server tells all of one change the same owner and moments.
static std::string copyName(const xcb_xfixes_selection_notify_event_t& event) {
  return "X11 " + std::to_string(event.owner) + " " + std::to_string(event.selection_timestamp) +
         " " + std::to_string(event.timestamp);
}

void X11Pasteboard::Worker::ownerChanged(const xcb_xfixes_selection_notify_event_t& event) {
  if (event.subtype != XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER) {
    reader_.abandon();
    reader_.forgetOwner();
    if (isObserving_)
      listener_.abandoned(changeCount_);
    return;
  }
  ++changeCount_;
  if (!isObserving_)
    return;
  if (event.owner == connection_.window()) {
    reader_.abandon();
    reader_.forgetOwner();
    listener_.captured({changeCount_, {}, {}, true});
    return;
  }
  listener_.changed(changeCount_);
  if (event.owner != XCB_NONE)
    reader_.begin(changeCount_, copyName(event), event.owner, event.selection_timestamp);
  else
    reader_.abandon();
}

X11Pasteboard::X11Pasteboard(RunLoop& runLoop) : listener_(runLoop) {}

X11Pasteboard::~X11Pasteboard() {
  listener_.set({});
}

X11Pasteboard::Worker& X11Pasteboard::worker() {
  if (!worker_)
    worker_ = std::make_unique<Worker>(listener_);
  return *worker_;
}

bool X11Pasteboard::canObserve() const {
  return x11::connection() != nullptr && const_cast<X11Pasteboard*>(this)->worker().hasEvents();
}

TokenPtr X11Pasteboard::observe(const Limits& limits, Observer observer) {
  struct Observation final : Token {
    explicit Observation(X11Pasteboard& board) : board(board) {}
    ~Observation() override {
      board.listener_.set({});
      board.worker_->order([](Worker& worker) { worker.observe(std::nullopt); });
    }
    X11Pasteboard& board;
  };
  listener_.set(std::move(observer));
  worker().order([limits](Worker& worker) { worker.observe(limits); });
  return std::make_unique<Observation>(*this);
}

void X11Pasteboard::write(std::vector<Format> formats) {
  addForFileManagers(formats);
  if (x11::connection() != nullptr) {
    worker().order([formats = std::move(formats)](Worker& worker) { worker.offer(formats); });
    return;
  }
  auto* content = new QMimeData;
  for (const Format& format : formats)
    if (format.data)
      content->setData(QString::fromStdString(format.type),
                       QByteArray(format.data->view().data(),
                                  static_cast<qsizetype>(format.data->bytes.size())));
  QGuiApplication::clipboard()->setMimeData(content);
}

} // namespace tavrin

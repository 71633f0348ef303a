#include "TavrinPlatform/Linux/Pasteboard/X11Pasteboard.h"

#include "TavrinPlatform/Linux/Base/X11.h"
#include "TavrinPlatform/Linux/Pasteboard/SelectionOffer.h"
#include "TavrinPlatform/Linux/Pasteboard/SelectionReader.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <algorithm>
#include <csignal>
#include <mutex>
#include <optional>
#include <poll.h>
#include <sstream>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>
#include <xcb/xfixes.h>

namespace tavrin {

namespace {

/// Files in the form that file managers paste: what to do, then the addresses. No value where
/// there are none.
std::optional<Pasteboard::Format> forFileManagers(const std::vector<Pasteboard::Format>& formats) {
  const auto files =
      std::ranges::find(formats, Pasteboard::filesType, [](const auto& each) { return each.type; });
  if (files == formats.end() || !files->data)
    return std::nullopt;
  std::string lines = "copy";
  std::istringstream addresses{std::string(files->data->view())};
  for (std::string line; std::getline(addresses, line);) {
    if (line.ends_with('\r'))
      line.pop_back();
    if (!line.empty())
      lines.append(1, '\n').append(line);
  }
  return Pasteboard::Format{"x-special/gnome-copied-files",
                            std::make_shared<const Data>(Data::fromText(lines)), lines.size()};
}

} // namespace

/// Who is told, on the main thread. Posts under way find it empty once the token is gone.
struct X11Pasteboard::Listener {
  Observer observer;
};

class X11Pasteboard::Worker {
public:
  Worker(RunLoop& runLoop, std::shared_ptr<Listener> listener)
      : runLoop_(runLoop), listener_(std::move(listener)),
        wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
        reader_(connection_, [this](Capture capture) { tell(std::move(capture)); }),
        offer_(connection_) {
    if (!connection_.isOpen())
      return;
    // Signals are the main thread's.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([this] { run(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
  }
  ~Worker() {
    order([](Worker& worker) { worker.isEnding_ = true; });
    if (thread_.joinable())
      thread_.join();
    ::close(wake_);
  }

  bool hasEvents() const { return connection_.isOpen() && connection_.fixesEvent() != 0; }
  /// Has the thread do it.
  void order(std::function<void(Worker&)> work) {
    {
      const std::lock_guard lock(mutex_);
      orders_.push_back(std::move(work));
    }
    eventfd_write(wake_, 1);
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
  void obey();
  int wait();
  void handle(const xcb_generic_event_t& event);
  void ownerChanged(const xcb_xfixes_selection_notify_event_t& event);
  void tell(Capture capture);

  RunLoop& runLoop_;
  std::shared_ptr<Listener> listener_;
  int wake_;
  SelectionConnection connection_;
  SelectionReader reader_;
  SelectionOffer offer_;
  std::int64_t changeCount_ = 0;
  bool isObserving_ = false;
  bool isEnding_ = false;
  std::mutex mutex_;
  std::vector<std::function<void(Worker&)>> orders_;
  std::thread thread_;
};

void X11Pasteboard::Worker::run() {
  while (!isEnding_ && connection_.isOpen()) {
    while (const ReplyPtr<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())})
      handle(*event);
    obey();
    reader_.expire();
    offer_.expire();
    // What was read from the socket while waiting for an answer makes no descriptor readable.
    if (const ReplyPtr<xcb_generic_event_t> event{xcb_poll_for_queued_event(connection_.get())}) {
      handle(*event);
      continue;
    }
    pollfd watched[] = {{connection_.descriptor(), POLLIN, 0}, {wake_, POLLIN, 0}};
    if (!isEnding_)
      ::poll(watched, 2, wait());
    eventfd_t ignored = 0;
    eventfd_read(wake_, &ignored);
  }
}

int X11Pasteboard::Worker::wait() {
  std::optional<SelectionReader::Time> first = reader_.deadline();
  if (const auto other = offer_.deadline(); other && (!first || *other < *first))
    first = other;
  if (!first)
    return -1;
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
      *first - std::chrono::steady_clock::now());
  return static_cast<int>(std::clamp<std::int64_t>(left.count() + 1, 0, 60'000));
}

void X11Pasteboard::Worker::obey() {
  std::vector<std::function<void(Worker&)>> orders;
  {
    const std::lock_guard lock(mutex_);
    orders.swap(orders_);
  }
  for (const auto& work : orders)
    work(*this);
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

void X11Pasteboard::Worker::ownerChanged(const xcb_xfixes_selection_notify_event_t& event) {
  if (event.subtype != XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER) {
    reader_.abandon();
    reader_.forgetOwner();
    if (isObserving_)
      runLoop_.post([listener = listener_, count = changeCount_] {
        if (const auto handler = listener->observer.abandoned)
          handler(count);
      });
    return;
  }
  ++changeCount_;
  if (!isObserving_)
    return;
  if (event.owner == connection_.window()) {
    reader_.abandon();
    reader_.forgetOwner();
    tell({changeCount_, {}, {}, true});
    return;
  }
  runLoop_.post([listener = listener_, count = changeCount_] {
    if (const auto handler = listener->observer.changed)
      handler(count);
  });
  if (event.owner != XCB_NONE)
    reader_.begin(changeCount_, event.owner, event.selection_timestamp);
  else
    reader_.abandon();
}

void X11Pasteboard::Worker::tell(Capture capture) {
  runLoop_.post([listener = listener_, capture = std::move(capture)]() mutable {
    if (const auto handler = listener->observer.captured)
      handler(std::move(capture));
  });
}

X11Pasteboard::X11Pasteboard(RunLoop& runLoop)
    : runLoop_(runLoop), listener_(std::make_shared<Listener>()) {}

X11Pasteboard::~X11Pasteboard() {
  listener_->observer = {};
}

X11Pasteboard::Worker& X11Pasteboard::worker() {
  if (!worker_)
    worker_ = std::make_unique<Worker>(runLoop_, listener_);
  return *worker_;
}

bool X11Pasteboard::canObserve() const {
  return x11::connection() != nullptr && const_cast<X11Pasteboard*>(this)->worker().hasEvents();
}

TokenPtr X11Pasteboard::observe(const Limits& limits, Observer observer) {
  struct Observation final : Token {
    explicit Observation(X11Pasteboard& board) : board(board) {}
    ~Observation() override {
      board.listener_->observer = {};
      board.worker_->order([](Worker& worker) { worker.observe(std::nullopt); });
    }
    X11Pasteboard& board;
  };
  listener_->observer = std::move(observer);
  worker().order([limits](Worker& worker) { worker.observe(limits); });
  return std::make_unique<Observation>(*this);
}

void X11Pasteboard::write(std::vector<Format> formats) {
  if (auto files = forFileManagers(formats))
    formats.push_back(std::move(*files));
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

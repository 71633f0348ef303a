#include "TavrinPlatform/Linux/Wayland/RoomKeeper.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace tavrin {

namespace {

/// Between the lock's change of hands and the new holder's socket.
constexpr int pauseMilliseconds = 20;
constexpr int longestPauseMilliseconds = 1000;
/// The kernel lets go of what a process held bit by bit.
constexpr int heirPauseMilliseconds = 2;
/// zwlr_layer_surface_v1.closed
constexpr std::uint32_t closedEvent = 1;
constexpr std::size_t headLength = 8;
constexpr int mostPeers = 64;
/// Answers of the compositor until a surface is configured: one or two, where nothing is amiss.
constexpr int mostAnswers = 10;

/// What goes with the connection from one process to the other.
struct Note {
  std::array<char, 64> output{};
  std::int32_t edge = 0;
  std::int32_t depth = 0;
  std::uint32_t layer = 0;
};

std::uint32_t anchorOf(Qt::Edge edge) {
  constexpr std::uint32_t along =
      ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;
  constexpr std::uint32_t upright =
      ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM;
  if (edge == Qt::LeftEdge)
    return upright | ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT;
  if (edge == Qt::RightEdge)
    return upright | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;
  return along | (edge == Qt::TopEdge ? ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP
                                      : ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM);
}

std::optional<sockaddr_un> addressOf(const std::filesystem::path& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string name = path.string() + ".socket";
  if (name.size() >= sizeof address.sun_path)
    return std::nullopt;
  std::memcpy(address.sun_path, name.data(), name.size());
  return address;
}

template <class Call> std::unique_ptr<QSocketNotifier> notifierFor(int descriptor, Call call) {
  auto notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
  QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), call,
                   Qt::QueuedConnection);
  return notifier;
}

} // namespace

RoomSurface::RoomSurface(const KeptRoom& room) {
  if (!connection_.isOpen())
    return;
  outputs_ = std::make_unique<Outputs>(connection_.registry());
  connection_.roundTrip();
  const auto* output = outputs_->find(room.output);
  if (output == nullptr)
    return;
  const bool isUpright = room.edge == Qt::LeftEdge || room.edge == Qt::RightEdge;
  surface_ = std::make_unique<ClearSurface>(connection_, output->proxy.get(),
                                            ClearSurface::Shape{ZWLR_LAYER_SHELL_V1_LAYER_BOTTOM,
                                                                anchorOf(room.edge),
                                                                isUpright ? 1U : 0U,
                                                                isUpright ? 0U : 1U,
                                                                room.depth,
                                                                false,
                                                                {}});
  for (int i = 0; i < mostAnswers && !surface_->isShown() && connection_.roundTrip(); ++i) {
  }
  connection_.roundTrip();
}

bool RoomSurface::read() {
  std::vector<pollfd> nobody;
  connection_.wait(nobody, 0);
  connection_.flush();
  return connection_.isOpen() && isKept();
}

RoomKeeper::RoomKeeper() : path_(sessionFile("room")) {
  again_.setSingleShot(true);
  QObject::connect(&again_, &QTimer::timeout, &again_, [this] { begin(); });
}

RoomKeeper::~RoomKeeper() = default;

void RoomKeeper::keep(const KeptRoom& room) {
  const bool isNew = wanted_ != room;
  wanted_ = room;
  if (isHolder()) {
    if (isNew || connection() < 0)
      provide();
  } else if (!holder_) {
    begin();
  }
}

void RoomKeeper::begin() {
  // Who has nothing in hand leaves the lock to those who have, however long they take.
  if ((handed_ && hold()) || follow() || (!handed_ && !hasHeirs() && hold())) {
    tries_ = 0;
    return;
  }
  again_.start(handed_ ? heirPauseMilliseconds
                       : std::min(pauseMilliseconds * ++tries_, longestPauseMilliseconds));
}

Descriptor RoomKeeper::openHeirs() const {
  return Descriptor(
      ::open((path_.string() + ".heirs").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
}

bool RoomKeeper::hasHeirs() const {
  const Descriptor heirs = openHeirs();
  return heirs && ::flock(heirs.number(), LOCK_EX | LOCK_NB) != 0;
}

bool RoomKeeper::hold() {
  if (!lock_)
    lock_ =
        Descriptor(::open((path_.string() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (!lock_ || ::flock(lock_.number(), LOCK_EX | LOCK_NB) != 0)
    return false;
  const auto address = addressOf(path_);
  if (!address)
    return false;
  ::unlink(address->sun_path);
  listening_ = Descriptor(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  ::bind(listening_.number(), reinterpret_cast<const sockaddr*>(&*address), sizeof *address);
  ::listen(listening_.number(), mostPeers);
  newcomers_ = notifierFor(listening_.number(), [this] { accept(); });
  provide();
  if (onHold)
    onHold();
  return true;
}

bool RoomKeeper::follow() {
  const auto address = addressOf(path_);
  Descriptor socket(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!address || ::connect(socket.number(), reinterpret_cast<const sockaddr*>(&*address),
                            sizeof *address) != 0)
    return false;
  holder_ = std::move(socket);
  holderNotifier_ = notifierFor(holder_.number(), [this] { heardHolder(); });
  return true;
}

void RoomKeeper::heardHolder() {
  Note note;
  iovec part{&note, sizeof note};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  const auto count = ::recvmsg(holder_.number(), &message, MSG_CMSG_CLOEXEC | MSG_DONTWAIT);
  if (count < 0 && errno == EAGAIN)
    return;
  Descriptor given;
  const auto* head = count < 0 ? nullptr : CMSG_FIRSTHDR(&message);
  if (head != nullptr && head->cmsg_type == SCM_RIGHTS) {
    int number = -1;
    std::memcpy(&number, CMSG_DATA(head), sizeof number);
    given = Descriptor(number);
  }
  if (count == static_cast<ssize_t>(sizeof note)) {
    note.output.back() = '\0';
    handed_ = std::move(given);
    heirs_.close();
    if (handed_) {
      heirs_ = openHeirs();
      ::flock(heirs_.number(), LOCK_SH);
    }
    handedLayer_ = note.layer;
    handedRoom_ = KeptRoom{note.output.data(), static_cast<Qt::Edge>(note.edge),
                           static_cast<int>(note.depth)};
    return;
  }
  // It has ended. Its connection lives on with whoever was handed it.
  holderNotifier_.reset();
  holder_.close();
  begin();
}

void RoomKeeper::accept() {
  Descriptor socket(::accept4(listening_.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
  if (!socket || static_cast<int>(peers_.size()) >= mostPeers)
    return;
  send(socket);
  const int number = socket.number();
  // Nobody says anything: it has ended.
  auto notifier = notifierFor(number, [this, number] {
    std::erase_if(peers_, [number](const Peer& peer) { return peer.socket.number() == number; });
  });
  peers_.push_back({std::move(socket), std::move(notifier)});
}

int RoomKeeper::connection() const {
  return surface_ ? surface_->descriptor() : handed_.number();
}

bool RoomKeeper::send(const Descriptor& socket) const {
  if (!wanted_)
    return false;
  Note note;
  wanted_->output.copy(note.output.data(), note.output.size() - 1);
  note.edge = static_cast<std::int32_t>(wanted_->edge);
  note.depth = wanted_->depth;
  note.layer = surface_ ? surface_->layerNumber() : handedLayer_;
  iovec part{&note, sizeof note};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  // Without one, what was handed before has to be let go: it is what keeps the room.
  if (const int number = connection(); number >= 0) {
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    auto* head = CMSG_FIRSTHDR(&message);
    head->cmsg_level = SOL_SOCKET;
    head->cmsg_type = SCM_RIGHTS;
    head->cmsg_len = CMSG_LEN(sizeof(int));
    std::memcpy(CMSG_DATA(head), &number, sizeof number);
  }
  return ::sendmsg(socket.number(), &message, MSG_NOSIGNAL | MSG_DONTWAIT) >= 0;
}

void RoomKeeper::provide() {
  if (!surface_ && handed_ && handedRoom_ == wanted_) {
    watchConnection();
    return;
  }
  connectionNotifier_.reset();
  surface_.reset();
  handed_.close();
  heirs_.close();
  handedRoom_.reset();
  heard_.clear();
  if (wanted_ && wanted_->depth > 0) {
    surface_ = std::make_unique<RoomSurface>(*wanted_);
    if (!surface_->isKept())
      surface_.reset();
  }
  watchConnection();
  for (const auto& peer : peers_)
    send(peer.socket);
}

/// By the wire protocol: the object, then the message's length and its number in one word. Nothing
/// needs an answer; sizes of the surface are told with each change of any layer.
bool RoomKeeper::readHanded() {
  std::array<char, 4096> piece;
  const auto count = ::recv(handed_.number(), piece.data(), piece.size(), MSG_DONTWAIT);
  if (count < 0)
    return errno == EAGAIN || errno == EINTR;
  if (count == 0)
    return false;
  heard_.append(piece.data(), static_cast<std::size_t>(count));
  while (heard_.size() >= headLength) {
    std::array<std::uint32_t, 2> head{};
    std::memcpy(head.data(), heard_.data(), headLength);
    const std::size_t length = head[1] >> 16;
    if (length < headLength || length % 4 != 0 ||
        (head[0] == handedLayer_ && (head[1] & 0xFFFF) == closedEvent))
      return false;
    if (heard_.size() < length)
      break;
    heard_.erase(0, length);
  }
  return true;
}

void RoomKeeper::watchConnection() {
  if (connection() < 0)
    return;
  connectionNotifier_ = notifierFor(connection(), [this] {
    if (surface_ ? surface_->read() : readHanded())
      return;
    handed_.close();
    surface_.reset();
    provide();
  });
}

} // namespace tavrin

#include "TavrinPlatform/Linux/Slot/LinuxApplication.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinPlatform/Linux/Base/BusProperties.h"
#include "TavrinPlatform/Linux/Slot/TileWatch.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tavrin {

namespace {

constexpr const char* interface = "org.freedesktop.Application";
constexpr double answerLimit = 1;

/// Written by the signal handler, which may do little else.
int signalDescriptor = -1;

extern "C" void noteSignal(int) {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = ::write(signalDescriptor, &one, sizeof one);
}

std::vector<std::filesystem::path> localFiles(const std::vector<std::string>& addresses) {
  std::vector<std::filesystem::path> paths;
  for (const auto& address : addresses) {
    if (const auto path = pathOfFileURL(address))
      paths.emplace_back(*path);
  }
  return paths;
}

std::vector<std::string> textList(sd_bus_message* message) {
  std::vector<std::string> texts;
  if (sd_bus_message_enter_container(message, 'a', "s") <= 0)
    return texts;
  const char* text = nullptr;
  while (sd_bus_message_read_basic(message, 's', &text) > 0)
    texts.emplace_back(text);
  sd_bus_message_exit_container(message);
  return texts;
}

} // namespace

const sd_bus_vtable LinuxApplication::vtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Activate", "a{sv}", "", &LinuxApplication::activate, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Open", "asa{sv}", "", &LinuxApplication::open, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("ActivateAction", "sava{sv}", "", &LinuxApplication::activateAction,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END};

LinuxApplication::LinuxApplication(std::vector<std::string> arguments,
                                   std::optional<std::string> identifier, Bus* bus)
    : arguments_(std::move(arguments)), identifier_(std::move(identifier)), bus_(bus) {}

LinuxApplication::~LinuxApplication() {
  if (signalDescriptor < 0 || !signals_)
    return;
  for (const int number : {SIGTERM, SIGINT, SIGHUP})
    std::signal(number, SIG_DFL);
  ::close(std::exchange(signalDescriptor, -1));
}

void LinuxApplication::claimIdentity() {
  if (bus_ == nullptr || !identifier_ || sd_bus_service_name_is_valid(identifier_->c_str()) <= 0) {
    isOwner_ = true;
    return;
  }
  service_ = bus_->serve(objectPath(*identifier_).c_str(), interface, vtable, this);
  claimName();
}

void LinuxApplication::claimName() {
  bus_->requestName(*identifier_, [this](bool isOwner) { isOwner_ = isOwner; });
}

bool LinuxApplication::isFirst() {
  // One that is about to end still has the name for a moment.
  constexpr int mostClaims = 5;
  for (int claims = 1; bus_ != nullptr; ++claims) {
    bus_->waitUntil([this] { return isOwner_.has_value(); }, answerLimit);
    if (isOwner_.value_or(true) || claims == mostClaims || hasLivingOwner())
      break;
    isOwner_.reset();
    claimName();
  }
  return isOwner_.value_or(true);
}

bool LinuxApplication::hasLivingOwner() {
  BusMessage question =
      bus_->method({identifier_->c_str(), "/", "org.freedesktop.DBus.Peer"}, "Ping");
  sd_bus_message_set_auto_start(question.get(), 0);
  return static_cast<bool>(bus_->ask(question, answerLimit));
}

void LinuxApplication::handOver() {
  const bool isBackground =
      std::find(arguments_.begin(), arguments_.end(), "--background") != arguments_.end();
  if (isBackground || bus_ == nullptr || !identifier_)
    return;
  const std::string path = objectPath(*identifier_);
  const BusAddress address{identifier_->c_str(), path.c_str(), interface};
  const auto paths = files();
  const auto action = requestedAction();
  BusMessage message = bus_->method(address, action          ? "ActivateAction"
                                             : paths.empty() ? "Activate"
                                                             : "Open");
  if (action) {
    message.append("sav", action->first.c_str(), 1, "s", action->second.c_str());
  } else if (!paths.empty()) {
    sd_bus_message_open_container(message.get(), 'a', "s");
    for (const auto& file : paths) {
      message.append("s", fileURL(file.native()).c_str());
    }
    sd_bus_message_close_container(message.get());
  }
  message.append("a{sv}", 0);
  bool isAnswered = false;
  bus_->call(message, [&](sd_bus_message*, const std::string&) { isAnswered = true; });
  bus_->waitUntil([&] { return isAnswered; }, answerLimit);
}

int LinuxApplication::run() {
  if (isTerminated_)
    return 0;
  isRunning_ = true;
  if (const auto paths = files(); !paths.empty())
    early_.insert(early_.begin(), [this, paths] { openFiles(paths); });
  if (const auto action = requestedAction())
    early_.insert(early_.begin(), [this, action] { perform(action->first, action->second); });
  const QObject context;
  QTimer::singleShot(0, &context, [this] {
    for (const auto& request : std::exchange(early_, {}))
      request();
  });
  return QCoreApplication::exec();
}

void LinuxApplication::terminate() {
  isTerminated_ = true;
  // Not `quit`, which asks every window first and may be refused.
  QCoreApplication::exit();
}

void LinuxApplication::terminateUnless(std::function<bool()> isWanted) {
  isWanted_ = std::move(isWanted);
  terminate();
}

void LinuxApplication::keepMemoryPrivate() {
  // The limit alone does not hold where dumps go to a program.
  const rlimit none{0, 0};
  ::setrlimit(RLIMIT_CORE, &none);
  ::prctl(PR_SET_DUMPABLE, 0);
}

void LinuxApplication::reopen() {
  if (!isRunning_) {
    early_.emplace_back([this] { reopen(); });
    return;
  }
  setAttention(false);
  if (onReopen)
    onReopen();
}

void LinuxApplication::show() {
  if (!isRunning_)
    early_.emplace_back([this] { show(); });
  else if (hasOpenPanel())
    setAttention(false);
  else
    reopen();
}

bool LinuxApplication::openFiles(const std::vector<std::filesystem::path>& files) {
  if (!isRunning_) {
    early_.emplace_back([this, files] { openFiles(files); });
    return true;
  }
  return onOpenFiles && onOpenFiles(files);
}

bool LinuxApplication::perform(const std::string& action, const std::string& object) {
  if (!isRunning_) {
    early_.emplace_back([this, action, object] { perform(action, object); });
    return true;
  }
  return onAction && onAction(action, object);
}

void LinuxApplication::request(const std::string& identifier, const std::string& action,
                               const std::string& object) {
  if (bus_ == nullptr)
    return;
  const std::string path = objectPath(identifier);
  BusMessage message =
      bus_->method({identifier.c_str(), path.c_str(), interface}, "ActivateAction");
  message.append("sava{sv}", action.c_str(), 1, "s", object.c_str(), 0);
  bus_->send(message);
}

TokenPtr LinuxApplication::watchTile(const std::string& identifier, int pixelsHigh,
                                     std::function<void(const TilePicture*)> shown) {
  return bus_ == nullptr ? nullptr
                         : tavrin::watchTile(*bus_, identifier, pixelsHigh, std::move(shown));
}

void LinuxApplication::setAttention(bool isWanted) {
  if (isWanted == wantsAttention_)
    return;
  wantsAttention_ = isWanted;
  if (onAttention)
    onAttention(isWanted);
}

void LinuxApplication::watchSignals() {
  signalDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  signals_ = std::make_unique<QSocketNotifier>(signalDescriptor, QSocketNotifier::Read);
  QObject::connect(signals_.get(), &QSocketNotifier::activated, [this] {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto got = ::read(signalDescriptor, &count, sizeof count);
    isWanted_ = nullptr;
    terminate();
  });
  struct sigaction action {};
  action.sa_handler = noteSignal;
  action.sa_flags = SA_RESTART;
  for (const int number : {SIGTERM, SIGINT, SIGHUP})
    sigaction(number, &action, nullptr);
}

std::vector<std::filesystem::path> LinuxApplication::files() const {
  std::vector<std::filesystem::path> paths;
  for (std::size_t i = 1; i < arguments_.size(); ++i) {
    const auto& argument = arguments_[i];
    if (argument.empty() || argument.starts_with('-'))
      continue;
    const auto url = QUrl::fromUserInput(QString::fromStdString(argument), QStringLiteral("."),
                                         QUrl::AssumeLocalFile);
    if (url.isLocalFile())
      paths.push_back(std::filesystem::absolute(url.toLocalFile().toStdString()));
  }
  return paths;
}

std::optional<std::pair<std::string, std::string>> LinuxApplication::requestedAction() const {
  for (std::size_t i = 1; i < arguments_.size(); ++i)
    if (const auto equals = arguments_[i].find('=');
        arguments_[i].starts_with("--") && equals != std::string::npos && equals > 2)
      return std::pair(arguments_[i].substr(2, equals - 2), arguments_[i].substr(equals + 1));
  return std::nullopt;
}

int LinuxApplication::activate(sd_bus_message* message, void* self, sd_bus_error*) {
  // Answered first: the caller need not wait until a panel stands.
  const int answered = sd_bus_reply_method_return(message, "");
  static_cast<LinuxApplication*>(self)->show();
  return answered < 0 ? answered : 1;
}

int LinuxApplication::open(sd_bus_message* message, void* self, sd_bus_error* error) {
  const auto paths = localFiles(textList(message));
  if (paths.empty() || !static_cast<LinuxApplication*>(self)->openFiles(paths))
    return sd_bus_error_set(error, SD_BUS_ERROR_NOT_SUPPORTED, "This widget takes no such files.");
  return sd_bus_reply_method_return(message, "");
}

int LinuxApplication::activateAction(sd_bus_message* message, void* self, sd_bus_error* error) {
  const std::string action = textArgument(message);
  std::string object;
  if (sd_bus_message_enter_container(message, 'a', "v") > 0) {
    if (const auto value = readVariant(message))
      if (const auto* text = std::get_if<std::string>(&*value))
        object = *text;
    sd_bus_message_exit_container(message);
  }
  auto* application = static_cast<LinuxApplication*>(self);
  if (action == "open" || action == "toggle") {
    const int answered = sd_bus_reply_method_return(message, "");
    if (action == "open")
      application->show();
    else
      application->reopen();
    return answered < 0 ? answered : 1;
  }
  if (action == "focus" && application->onFocus && application->onFocus(object))
    return sd_bus_reply_method_return(message, "");
  if (action == "quit") {
    application->terminate();
    return sd_bus_reply_method_return(message, "");
  }
  if (application->perform(action, object))
    return sd_bus_reply_method_return(message, "");
  return sd_bus_error_set(error, SD_BUS_ERROR_INVALID_ARGS, "There is no such action.");
}

} // namespace tavrin

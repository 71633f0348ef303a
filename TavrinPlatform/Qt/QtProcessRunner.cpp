#include "TavrinPlatform/Qt/QtProcessRunner.h"

#include "TavrinPlatform/POSIX/ChildProcess.h"
#include "TavrinPlatform/POSIX/Spawn.h"

#include <QBasicTimer>
#include <QPointer>
#include <QSocketNotifier>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <sys/wait.h>

namespace tavrin {

namespace {

constexpr int graceMilliseconds = 500;
constexpr double longestLimit = 86'400;
constexpr std::size_t piece = 64 * 1024;
/// So much is read at a time before the event loop has its turn.
constexpr int mostPieces = 16;

/// What a child writes to one of its descriptors, up to a bound.
class Output final : public QObject {
public:
  bool open(Pipe& pipe, std::size_t limit) {
    pipe = Pipe::make();
    if (!pipe.reading)
      return false;
    reading_ = std::move(pipe.reading);
    limit_ = limit;
    ::fcntl(reading_.number(), F_SETFL, O_NONBLOCK);
    notifier_ = std::make_unique<QSocketNotifier>(reading_.number(), QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { read(); });
    return true;
  }

  void read() {
    std::array<char, piece> bytes;
    for (int i = 0; i < mostPieces && reading_; ++i) {
      const ssize_t count = ::read(reading_.number(), bytes.data(), bytes.size());
      if (count < 0 && errno == EINTR)
        continue;
      if (count < 0 && errno == EAGAIN)
        return;
      if (count <= 0) {
        close();
        return;
      }
      const auto size = static_cast<std::size_t>(count);
      onBytes({bytes.data(), size});
      const auto room = limit_ - std::min(limit_, text.size());
      text.append(bytes.data(), std::min(room, size));
      wasTruncated |= size > room;
    }
  }

  void close() {
    if (notifier_) {
      notifier_->setEnabled(false);
      // It may be what called.
      notifier_.release()->deleteLater();
    }
    reading_.close();
  }

  /// Told of each piece, also beyond the bound.
  std::function<void(std::string_view)> onBytes = [](std::string_view) {};
  std::string text;
  bool wasTruncated = false;

private:
  Descriptor reading_;
  std::size_t limit_ = 0;
  std::unique_ptr<QSocketNotifier> notifier_;
};

/// One child; frees itself once the child is gone.
class Child final : public QObject {
public:
  Child(ProcessRequest request, std::function<void(const ProcessResult&)> done)
      : request_(std::move(request)), done_(std::move(done)) {}

  void start() {
    if (!done_) {
      deleteLater();
      return;
    }
    if (!launch()) {
      finish();
      return;
    }
    connect(ended_.get(), &QSocketNotifier::activated, this, [this] { reap(); });
    const double limit = std::clamp(request_.timeLimit, 0.001, longestLimit);
    timer_.start(static_cast<int>(std::lround(limit * 1000)), this);
  }

  /// Nobody waits for the answer any more.
  void cancel() {
    done_ = nullptr;
    end();
  }

protected:
  void timerEvent(QTimerEvent*) override {
    if (isEnding_) {
      timer_.stop();
      signalGroup(SIGKILL);
      return;
    }
    hasTimedOut_ = true;
    end();
  }

private:
  bool launch() {
    Pipe output;
    Pipe errors;
    const Descriptor input = fileOf(request_.standardInput);
    if (!input || !output_.open(output, request_.outputLimit) ||
        !errors_.open(errors, request_.outputLimit))
      return false;
    output_.onBytes = errors_.onBytes = [this](std::string_view bytes) {
      if (request_.onOutput && done_)
        request_.onOutput(bytes);
    };
    SpawnRequest spawning{.program = request_.program,
                          .arguments = request_.arguments,
                          .input = input.number(),
                          .output = output.writing.number(),
                          .errors = errors.writing.number(),
                          .workingFolder = request_.workingFolder,
                          .leadsGroup = true};
    if (request_.inheritsEnvironment) {
      spawning.environment = environmentWith(request_.environment);
    } else {
      spawning.environment.emplace();
      for (const auto& [name, value] : request_.environment)
        spawning.environment->push_back(name + "=" + value);
    }
    const pid_t child = spawn(spawning);
    if (child < 0)
      return false;
    process_ = child;
    handle_ = exitOf(child);
    if (!handle_) {
      signalGroup(SIGKILL);
      ::waitpid(child, nullptr, 0);
      return false;
    }
    ended_ = std::make_unique<QSocketNotifier>(handle_.number(), QSocketNotifier::Read);
    return true;
  }

  void end() {
    if (isEnding_ || process_ == 0)
      return;
    isEnding_ = true;
    signalGroup(SIGTERM);
    timer_.start(graceMilliseconds, this);
  }

  void signalGroup(int signal) const { ::kill(-process_, signal); }

  void reap() {
    // What the child started and left behind goes with it; until the child is waited for, no other
    // group can have its number.
    if (isEnding_)
      signalGroup(SIGKILL);
    int status = 0;
    while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    using Outcome = ProcessResult::Outcome;
    result_.outcome = hasTimedOut_          ? Outcome::timedOut
                      : WIFSIGNALED(status) ? Outcome::signalled
                                            : Outcome::exited;
    result_.status = WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
    finish();
  }

  void finish() {
    timer_.stop();
    if (ended_)
      ended_->setEnabled(false);
    handle_.close();
    for (Output* output : {&output_, &errors_}) {
      output->read();
      output->close();
    }
    result_.standardOutput = std::move(output_.text);
    result_.standardError = std::move(errors_.text);
    result_.wasTruncated = output_.wasTruncated || errors_.wasTruncated;
    process_ = 0;
    deleteLater();
    if (const auto done = std::exchange(done_, nullptr))
      done(result_);
  }

  ProcessRequest request_;
  std::function<void(const ProcessResult&)> done_;
  ProcessResult result_;
  Output output_;
  Output errors_;
  Descriptor handle_;
  std::unique_ptr<QSocketNotifier> ended_;
  QBasicTimer timer_;
  pid_t process_ = 0;
  bool isEnding_ = false;
  bool hasTimedOut_ = false;
};

class ChildToken final : public Token {
public:
  explicit ChildToken(QPointer<Child> child) : child_(std::move(child)) {}
  ~ChildToken() override {
    if (child_)
      child_->cancel();
  }

private:
  QPointer<Child> child_;
};

} // namespace

TokenPtr QtProcessRunner::run(ProcessRequest request,
                              std::function<void(const ProcessResult&)> done) {
  auto* child = new Child(std::move(request), std::move(done));
  auto token = std::make_unique<ChildToken>(child);
  // Later, so that the answer never comes before the token is in the caller's hands.
  QMetaObject::invokeMethod(
      child, [child] { child->start(); }, Qt::QueuedConnection);
  return token;
}

} // namespace tavrin

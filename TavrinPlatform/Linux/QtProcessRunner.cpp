#include "TavrinPlatform/Linux/QtProcessRunner.h"

#include <QBasicTimer>
#include <QPointer>
#include <QProcess>
#include <QTimerEvent>
#include <algorithm>
#include <cmath>
#include <csignal>
#include <unistd.h>

namespace tavrin {

namespace {

constexpr int graceMilliseconds = 500;
constexpr double longestLimit = 86'400;

/// One child; frees itself once the child is gone.
class Child final : public QObject {
public:
  Child(ProcessRequest request, std::function<void(const ProcessResult&)> done)
      : request_(std::move(request)), done_(std::move(done)) {}

  void start() {
    if (isCancelled_) {
      deleteLater();
      return;
    }
    process_.setProgram(QString::fromStdString(request_.program));
    QStringList arguments;
    for (const auto& argument : request_.arguments)
      arguments << QString::fromStdString(argument);
    process_.setArguments(arguments);
    auto environment = request_.inheritsEnvironment ? QProcessEnvironment::systemEnvironment()
                                                    : QProcessEnvironment();
    for (const auto& [name, value] : request_.environment)
      environment.insert(QString::fromStdString(name), QString::fromStdString(value));
    process_.setProcessEnvironment(environment);
    if (!request_.workingFolder.empty())
      process_.setWorkingDirectory(QString::fromStdString(request_.workingFolder));
    process_.setChildProcessModifier([] { setpgid(0, 0); });
    connect(&process_, &QProcess::readyReadStandardOutput, this, [this] { read(); });
    connect(&process_, &QProcess::readyReadStandardError, this, [this] { read(); });
    connect(&process_, &QProcess::finished, this, [this] { finish(); });
    connect(&process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
      if (error == QProcess::FailedToStart)
        finish();
    });
    connect(&process_, &QProcess::started, this, [this] {
      group_ = static_cast<pid_t>(process_.processId());
      if (isCancelled_)
        end();
    });
    const double limit = std::clamp(request_.timeLimit, 0.001, longestLimit);
    timer_.start(static_cast<int>(std::lround(limit * 1000)), this);
    process_.start(QIODevice::ReadWrite | QIODevice::Unbuffered);
    process_.write(request_.standardInput.data(),
                   static_cast<qint64>(request_.standardInput.size()));
    process_.closeWriteChannel();
  }

  /// Nobody waits for the answer any more.
  void cancel() {
    done_ = nullptr;
    isCancelled_ = true;
    end();
  }

protected:
  void timerEvent(QTimerEvent*) override {
    if (isEnding_) {
      timer_.stop();
      signalGroup(SIGKILL);
      // What holds the pipes open has just been killed, unless it left the group.
      process_.closeReadChannel(QProcess::StandardOutput);
      process_.closeReadChannel(QProcess::StandardError);
      return;
    }
    hasTimedOut_ = true;
    end();
  }

private:
  void end() {
    if (isEnding_ || group_ == 0)
      return;
    isEnding_ = true;
    signalGroup(SIGTERM);
    timer_.start(graceMilliseconds, this);
  }

  void signalGroup(int signal) const {
    if (group_ > 1)
      ::kill(-group_, signal);
  }

  void read() {
    append(result_.standardOutput, process_.readAllStandardOutput());
    append(result_.standardError, process_.readAllStandardError());
  }

  void append(std::string& output, const QByteArray& bytes) {
    const std::size_t room = request_.outputLimit - std::min(request_.outputLimit, output.size());
    const auto size = static_cast<std::size_t>(bytes.size());
    if (size > 0 && request_.onOutput && done_)
      request_.onOutput({bytes.constData(), size});
    output.append(bytes.constData(), std::min(room, size));
    result_.wasTruncated |= size > room;
  }

  void finish() {
    if (isFinished_)
      return;
    isFinished_ = true;
    timer_.stop();
    read();
    // The leader is gone; what it started and left behind goes with it.
    if (isEnding_)
      signalGroup(SIGKILL);
    using Outcome = ProcessResult::Outcome;
    if (process_.error() == QProcess::FailedToStart)
      result_.outcome = Outcome::failedToStart;
    else if (hasTimedOut_)
      result_.outcome = Outcome::timedOut;
    else if (process_.exitStatus() == QProcess::CrashExit)
      result_.outcome = Outcome::signalled;
    else
      result_.outcome = Outcome::exited;
    if (result_.outcome != Outcome::failedToStart)
      result_.status = process_.exitCode();
    deleteLater();
    if (const auto done = std::exchange(done_, nullptr))
      done(result_);
  }

  ProcessRequest request_;
  std::function<void(const ProcessResult&)> done_;
  QProcess process_;
  ProcessResult result_;
  QBasicTimer timer_;
  pid_t group_ = 0;
  bool isEnding_ = false;
  bool hasTimedOut_ = false;
  bool isCancelled_ = false;
  bool isFinished_ = false;
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

#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QStringList>
#include <QThread>
#include <QTimer>
#include <functional>
#include <string>

namespace tavrin {

/// A bound, not a measure: generous, since tests share their machine.
constexpr int patience = 30'000;

/// Whether `condition` comes true in time.
inline bool eventually(const std::function<bool()>& condition, int milliseconds = patience) {
  QElapsedTimer timer;
  timer.start();
  while (!condition()) {
    if (timer.hasExpired(milliseconds))
      return false;
    QThread::msleep(10);
  }
  return true;
}

/// The same, while the program's own events are done.
inline bool untilTrue(const std::function<bool()>& condition) {
  QElapsedTimer timer;
  timer.start();
  QTimer wake; // for conditions that come true without an event
  wake.start(10);
  while (!condition()) {
    if (timer.hasExpired(patience))
      return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  }
  return true;
}

/// What a shell command writes.
inline std::string shell(const std::string& command) {
  QProcess process;
  process.start("/bin/bash", {"-c", QString::fromStdString(command)});
  process.waitForFinished(patience);
  return process.readAllStandardOutput().trimmed().toStdString();
}

/// A program under test, ended with its object.
class Program {
public:
  explicit Program(const QString& path, const QStringList& arguments = {},
                   const QStringList& environment = {}) {
    auto variables = QProcess::systemEnvironment();
    variables += environment;
    process_.setEnvironment(variables);
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(path, arguments);
    process_.waitForStarted(patience);
  }
  ~Program() {
    process_.terminate();
    if (!process_.waitForFinished(patience)) {
      process_.kill();
      process_.waitForFinished(patience);
    }
  }

  /// Waits until `count` lines in all begin with `start`.
  bool says(const QByteArray& start, int count = 1) {
    QElapsedTimer timer;
    timer.start();
    while (number(start) < count) {
      if (timer.hasExpired(patience) || process_.state() == QProcess::NotRunning)
        return read(), number(start) >= count;
      process_.waitForReadyRead(50);
      read();
    }
    return true;
  }
  /// Gives it `words` as input.
  void tell(const QByteArray& words) {
    process_.write(words);
    process_.waitForBytesWritten(patience);
  }
  int number(const QByteArray& start) {
    read();
    int count = 0;
    for (const auto& line : output_.split('\n'))
      count += line.startsWith(start) ? 1 : 0;
    return count;
  }
  QByteArray output() {
    read();
    return output_;
  }
  bool ends() {
    return process_.state() == QProcess::NotRunning || process_.waitForFinished(patience);
  }
  bool hasEnded() {
    return process_.state() == QProcess::NotRunning || process_.waitForFinished(0);
  }
  int exitCode() const { return process_.exitCode(); }
  bool exitedByItself() const { return process_.exitStatus() == QProcess::NormalExit; }
  void terminate() { process_.terminate(); }
  qint64 id() const { return process_.processId(); }

private:
  void read() {
    // Without an event loop nothing is read from the pipe but while waiting.
    process_.waitForReadyRead(1);
    output_ += process_.readAllStandardOutput();
  }

  QProcess process_;
  QByteArray output_;
};

/// Whether a file of that name is part of the program's memory.
inline bool loads(const Program& program, const std::string& library) {
  return shell("grep -c '/" + library + "' /proc/" + std::to_string(program.id()) + "/maps") != "0";
}

} // namespace tavrin

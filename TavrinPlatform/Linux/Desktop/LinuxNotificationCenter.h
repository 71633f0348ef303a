#pragma once

#include "TavrinCore/Base/Log.h"
#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/UserNotificationCenter.h"

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>

namespace tavrin {

/// The notices that this process has on the screen, until each is clicked or closed, replaced by
/// a newer one of its identifier, whichever process shows that, or gone with its server. Where
/// nobody shows notices they wait for somebody who does, for an hour.
class NoticeWatch {
public:
  struct Notice {
    std::string identifier;
    std::string title;
    std::string body;
    /// The user clicks it.
    std::function<void()> click;
    /// Called with nothing once it is shown, or with why it is not: a notice that waits may be
    /// shown after that.
    std::function<void(const std::string& error)> answer;
  };

  explicit NoticeWatch(Bus& bus);

  /// The bus must outlive what is shown, and this object the answer.
  void show(const Notice& notice);
  bool isEmpty() const { return shown_.empty(); }
  bool isWaiting() const { return !waiting_.empty(); }
  bool wasClicked() const { return wasClicked_; }

private:
  struct Shown {
    std::string identifier;
    std::function<void()> click;
  };

  struct Waiting {
    Notice notice;
    std::chrono::steady_clock::time_point since;
  };

  void close(const std::string& identifier);
  void send(const Notice& notice, bool mayWait);
  void wait(const Notice& notice, const std::string& error);
  void sendWaiting();

  Bus& bus_;
  /// By identifier, until they are shown or refused.
  std::map<std::string, Waiting> waiting_;
  /// By the server's numbers.
  std::map<std::uint32_t, Shown> shown_;
  bool wasClicked_ = false;
  TokenPtr clicked_;
  TokenPtr closed_;
  TokenPtr replaced_;
  TokenPtr serverChanged_;
};

/// A request is handed to the user's systemd as a transient timer that runs this program with
/// `--notify IDENTIFIER TITLE BODY` when it is due, so it comes whether this process lives or
/// not. Where there is no such manager the request waits in this process.
class LinuxNotificationCenter final : public UserNotificationCenter {
public:
  /// `bus` may be null.
  LinuxNotificationCenter(Bus* bus, RunLoop& runLoop, std::filesystem::path executable,
                          LogSink& log);

  void requestAuthorization(std::function<void(bool granted)> answer) override;
  void add(const UserNotificationRequest& request) override;
  void removePending(const std::string& identifier) override;

  /// The user clicked a notice that this process showed.
  std::function<void()> onClick;

private:
  void schedule(const UserNotificationRequest& request);
  void unschedule(const std::string& identifier);
  void keep(const UserNotificationRequest& request, double delay);
  void show(const UserNotificationRequest& request);

  Bus* bus_;
  RunLoop& runLoop_;
  std::filesystem::path executable_;
  Log log_;
  std::map<std::string, TokenPtr> kept_;
  std::unique_ptr<NoticeWatch> watch_;
  /// The newest request of each identifier: an answer about an older one counts no more.
  std::map<std::string, std::uint64_t> serials_;
  std::uint64_t serial_ = 0;
  std::shared_ptr<LinuxNotificationCenter*> self_;
};

/// The exit status of a process started to show a notice; no value when the arguments ask for
/// something else. Waits until the notice is closed, an hour at most. When it is clicked there is
/// no value either, and the arguments are gone: the process goes on as if the user started it.
std::optional<int> showNoticeIfAsked(int& argc, char** argv);

} // namespace tavrin

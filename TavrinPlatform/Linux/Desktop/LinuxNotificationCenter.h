#pragma once

#include "TavrinCore/Base/Log.h"
#include "TavrinPlatform/Linux/Base/Bus.h"
#include "TavrinPlatform/UserNotificationCenter.h"

#include <filesystem>
#include <map>
#include <optional>

namespace tavrin {

/// The notices that this process has on the screen, until each is clicked or closed, replaced by
/// a newer one of its identifier, whichever process shows that, or gone with its server.
class NoticeWatch {
public:
  explicit NoticeWatch(Bus& bus);

  /// Shows a notice and calls `answer` with nothing or why it is not shown; `click` when the user
  /// clicks it. The bus must outlive what is shown, and this object the answer.
  void show(const std::string& identifier, const std::string& title, const std::string& body,
            std::function<void()> click, std::function<void(const std::string& error)> answer);
  bool isEmpty() const { return shown_.empty(); }
  bool wasClicked() const { return wasClicked_; }

private:
  struct Shown {
    std::string identifier;
    std::function<void()> click;
  };

  void close(const std::string& identifier);

  Bus& bus_;
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

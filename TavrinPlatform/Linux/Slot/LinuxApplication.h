#pragma once

#include "TavrinCore/Base/Log.h"
#include "TavrinPlatform/Application.h"
#include "TavrinPlatform/Linux/Base/Bus.h"

#include <optional>

class QSocketNotifier;

namespace tavrin {

/// The process under its bundle identifier as a bus name, with the interface
/// "org.freedesktop.Application" at the path that belongs to the name. Requests that come
/// before the event loop runs are kept until it does.
class LinuxApplication final : public Application {
public:
  /// `bus` may be null, then nobody else can reach this process.
  LinuxApplication(std::vector<std::string> arguments, std::optional<std::string> identifier,
                   Bus* bus);
  ~LinuxApplication() override;

  /// Asks for the name; the answer is `isFirst`'s.
  void claimIdentity();
  /// Waits a moment for the answer. False when another process has the name and answers.
  bool isFirst();
  /// Asks the process that has the name to open this one's files, or to activate, unless this
  /// one was only to show its tile.
  void handOver();
  /// From now on a signal to end ends the event loop. Needs the toolkit.
  void watchSignals();
  /// Runs the event loop until `terminate` or a signal to end. The exit status.
  int run();

  std::vector<std::string> arguments() const override { return arguments_; }
  void terminate() override;
  void terminateUnless(std::function<bool()> isWanted) override;
  /// What is to be asked before the process ends; empty where it is to end.
  std::function<bool()> isWanted() const { return isWanted_; }
  void requestUserAttention() override { setAttention(!hasOpenPanel()); }
  void cancelUserAttention() override { setAttention(false); }
  void keepMemoryPrivate() override;
  void request(const std::string& identifier, const std::string& action,
               const std::string& object) override;
  TokenPtr watchTile(const std::string& identifier, int pixelsHigh,
                     std::function<void(const TilePicture*)> shown) override;

  /// The user asks for the application. Ends a request for attention.
  void reopen();
  /// Somebody wants the panel open, by starting the application again too: as `reopen` where it is
  /// not, which `isPanelShown` tells.
  void show();
  bool acceptsFiles() const { return isRunning_ && takesFiles && takesFiles(); }
  bool openFiles(const std::vector<std::filesystem::path>& files);

  std::function<bool()> isPanelShown;
  /// The tile is to have the keyboard; `object` is what another tile hands on with it. False where
  /// it cannot.
  std::function<bool(const std::string& object)> onFocus;
  /// Shows or hides the request for attention.
  std::function<void(bool isWanted)> onAttention;

private:
  static const sd_bus_vtable vtable[];
  static int activate(sd_bus_message*, void* self, sd_bus_error*);
  static int open(sd_bus_message*, void* self, sd_bus_error*);
  static int activateAction(sd_bus_message*, void* self, sd_bus_error*);

  void claimName();
  bool hasLivingOwner();
  bool hasOpenPanel() const { return isPanelShown && isPanelShown(); }
  /// False where there is no such action.
  bool perform(const std::string& action, const std::string& object);
  /// The action that the arguments ask for, and its object.
  std::optional<std::pair<std::string, std::string>> requestedAction() const;
  void setAttention(bool isWanted);
  std::vector<std::filesystem::path> files() const;

  std::vector<std::string> arguments_;
  std::optional<std::string> identifier_;
  Bus* bus_;
  TokenPtr service_;
  std::optional<bool> isOwner_;
  bool isRunning_ = false;
  bool isTerminated_ = false;
  std::function<bool()> isWanted_;
  bool wantsAttention_ = false;
  std::vector<std::function<void()>> early_;
  std::unique_ptr<QSocketNotifier> signals_;
};

} // namespace tavrin

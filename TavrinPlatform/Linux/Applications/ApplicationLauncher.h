#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/Files/Descriptor.h"
#include "TavrinPlatform/Linux/Applications/DesktopEntries.h"
#include "TavrinPlatform/Linux/Base/Bus.h"

#include <QSocketNotifier>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <sys/types.h>

namespace tavrin {

/// Starts applications as the desktop would: over the bus those that are activated there, the
/// others as programs in a session of their own, in the home folder and in a terminal where they
/// need one. One that has a window already is brought to the user instead.
class ApplicationLauncher {
public:
  using Answer = std::function<void(const std::string& trouble)>;

  /// `session` may be null. All outlive this.
  ApplicationLauncher(const FileManager& files, RunLoop& runLoop, Bus* session);
  ~ApplicationLauncher();

  /// Nothing is answered once the token is gone; the application comes all the same.
  [[nodiscard]] TokenPtr launch(const std::string& id, const std::string& action, Answer answer);

private:
  struct Launch;
  /// A program of this one's, until it ends.
  struct Running {
    Descriptor end;
    std::unique_ptr<QSocketNotifier> notifier;
  };
  static void prepare(const FileManager& files, const std::shared_ptr<Launch>& launch);
  static bool raise(Launch& launch);
  void activate(const std::shared_ptr<Launch>& launch);
  void startProgram(const std::shared_ptr<Launch>& launch);
  void finish(const std::shared_ptr<Launch>& launch, const std::string& reason);
  static pid_t started(const Launch& launch);
  void buryAtItsEnd(pid_t process);
  void moveToScope(const Launch& launch);

  const FileManager& files_;
  RunLoop& runLoop_;
  Bus* session_;
  std::map<pid_t, Running> running_;
  Lifetime alive_;
};

} // namespace tavrin

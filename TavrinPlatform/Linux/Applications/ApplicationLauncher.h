#pragma once

#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/Linux/Applications/DesktopEntries.h"
#include "TavrinPlatform/Linux/Base/Bus.h"

#include <functional>
#include <memory>
#include <string>

namespace tavrin {

/// Starts applications as the desktop would: over the bus those that are activated there, the
/// others as programs in a session of their own, in a terminal where they need one.
class ApplicationLauncher {
public:
  using Answer = std::function<void(const std::string& trouble)>;

  /// `session` may be null. All outlive this.
  ApplicationLauncher(const FileManager& files, RunLoop& runLoop, Bus* session);

  /// Nothing is answered once the token is gone; the application comes all the same.
  [[nodiscard]] TokenPtr launch(const std::string& id, const std::string& action, Answer answer);

private:
  struct Launch;
  static void prepare(const FileManager& files, const std::shared_ptr<Launch>& launch);
  void activate(const std::shared_ptr<Launch>& launch);
  void startProgram(const std::shared_ptr<Launch>& launch);
  void finish(const std::shared_ptr<Launch>& launch, const std::string& reason);
  void moveToScope(const Launch& launch);

  const FileManager& files_;
  RunLoop& runLoop_;
  Bus* session_;
  std::shared_ptr<int> alive_ = std::make_shared<int>();
};

} // namespace tavrin

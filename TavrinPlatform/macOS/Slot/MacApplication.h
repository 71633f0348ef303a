#pragma once

#include "TavrinPlatform/Application.h"

#include <memory>

namespace tavrin {

/// The process as AppKit sees it. To be made before the toolkit's application object: the toolkit
/// puts its own delegate in front and asks the one that was there before.
class MacApplication final : public Application {
public:
  explicit MacApplication(std::vector<std::string> arguments);
  ~MacApplication() override;

  /// Runs the event loop; `launched` is called from inside of it, once. The exit status.
  int run(std::function<void()> launched);

  std::vector<std::string> arguments() const override { return arguments_; }
  void terminate() override;
  void requestUserAttention() override;
  void cancelUserAttention() override;
  void keepMemoryPrivate() override;
  void request(const std::string& identifier, const std::string& action,
               const std::string& object) override;

  /// Whether the click on the tile that asks for a reopen has just closed the panel by itself; then
  /// the click has had its effect. May be empty.
  std::function<bool()> hasJustClosedPanel;

  struct Parts;

private:
  std::vector<std::string> arguments_;
  std::unique_ptr<Parts> parts_;
};

} // namespace tavrin

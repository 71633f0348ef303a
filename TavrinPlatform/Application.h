#pragma once

#include "TavrinPlatform/RunLoop.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tavrin {

struct TilePicture;

/// The process as the desktop sees it.
class Application {
public:
  virtual ~Application() = default;

  virtual std::vector<std::string> arguments() const = 0;
  /// Ends the event loop; what runs after it still runs.
  virtual void terminate() = 0;
  /// Ends, unless there is work again by the time that nobody can reach this process any more:
  /// whoever gives it work then looks whether it runs. `isWanted` is asked last, when all else of
  /// the program is gone; where it is, the program starts anew in this process.
  virtual void terminateUnless(std::function<bool()> isWanted) {
    static_cast<void>(isWanted);
    terminate();
  }
  /// The critical request: the tile asks for attention until the user comes. Nothing while the
  /// user is here already, in the open panel.
  virtual void requestUserAttention() = 0;
  virtual void cancelUserAttention() = 0;
  /// From now on this process's memory goes into no core dump, nor to other programs of the user.
  virtual void keepMemoryPrivate() = 0;

  /// Asks another application, by its identifier, for an action, which starts it where the desktop
  /// can; `object` is what the action is about. No answer is waited for, and where the desktop has
  /// no way to ask, nothing happens.
  virtual void request(const std::string& identifier, const std::string& action,
                       const std::string& object) {
    static_cast<void>(identifier);
    static_cast<void>(action);
    static_cast<void>(object);
  }

  /// Follows the tile of another application of this program, by its identifier, without starting
  /// it: `shown` gets its picture, `pixelsHigh` pixels high, whenever that is another one, and null
  /// when the application does not run. Nothing is followed, and the token is null, where the
  /// desktop has no way to.
  [[nodiscard]] virtual TokenPtr watchTile(const std::string& identifier, int pixelsHigh,
                                           std::function<void(const TilePicture*)> shown) {
    static_cast<void>(identifier);
    static_cast<void>(pixelsHigh);
    static_cast<void>(shown);
    return nullptr;
  }

  /// Somebody asks this application for an action of its own; answers whether there is such a one.
  /// A start with the argument "--ACTION=OBJECT" is such a request, and goes to the process that
  /// runs already where there is one.
  std::function<bool(const std::string& action, const std::string& object)> onAction;
  /// The user clicked the tile, or asked for the running application.
  std::function<void()> onReopen;
  /// Whether files may be dropped on the tile now; asked while they are dragged over it.
  std::function<bool()> takesFiles;
  /// Files dropped on the tile or opened with the application; answers whether they were taken.
  std::function<bool(const std::vector<std::filesystem::path>&)> onOpenFiles;
  /// The user went to another application.
  std::function<void()> onResignActive;
};

} // namespace tavrin

#pragma once

#include <CoreServices/CoreServices.h>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tavrin {

/// Tells of changes in whole trees of folders, file by file, gathered over half a second.
class EventStream {
public:
  struct Change {
    std::filesystem::path path;
    /// What is at the path and below is not known any more.
    bool needsScan = false;
  };
  using Told = std::function<void(const std::vector<Change>&)>;

  /// `told` is called on `queue`, also for what was under way when this went: it must stay until
  /// the queue has run what stood in it then.
  EventStream(const std::vector<std::filesystem::path>& folders, dispatch_queue_t queue,
              const Told& told);
  ~EventStream();
  EventStream(const EventStream&) = delete;
  EventStream& operator=(const EventStream&) = delete;

  bool isRunning() const { return isRunning_; }

private:
  static void heard(ConstFSEventStreamRef stream, void* context, size_t count, void* paths,
                    const FSEventStreamEventFlags* flags, const FSEventStreamEventId* ids);

  FSEventStreamRef stream_ = nullptr;
  bool isRunning_ = false;
};

} // namespace tavrin

#include "TavrinPlatform/macOS/Files/EventStream.h"

namespace tavrin {
namespace {

constexpr double gathering = 0.5;
constexpr FSEventStreamEventFlags lostTrack =
    kFSEventStreamEventFlagMustScanSubDirs | kFSEventStreamEventFlagRootChanged |
    kFSEventStreamEventFlagMount | kFSEventStreamEventFlagUnmount;

FSEventStreamRef makeStream(const std::vector<std::filesystem::path>& folders,
                            FSEventStreamCallback callback, const EventStream::Told* told) {
  std::vector<const void*> names;
  for (const auto& folder : folders)
    if (CFStringRef name = CFStringCreateWithCString(kCFAllocatorDefault, folder.c_str(),
                                                     kCFStringEncodingUTF8))
      names.push_back(name);
  CFArrayRef list = CFArrayCreate(kCFAllocatorDefault, names.data(),
                                  static_cast<CFIndex>(names.size()), &kCFTypeArrayCallBacks);
  for (const void* name : names)
    CFRelease(name);
  if (list == nullptr)
    return nullptr;
  FSEventStreamContext context{0, const_cast<EventStream::Told*>(told), nullptr, nullptr, nullptr};
  FSEventStreamRef stream = FSEventStreamCreate(
      kCFAllocatorDefault, callback, &context, list, kFSEventStreamEventIdSinceNow, gathering,
      kFSEventStreamCreateFlagFileEvents | kFSEventStreamCreateFlagWatchRoot);
  CFRelease(list);
  return stream;
}

} // namespace

EventStream::EventStream(const std::vector<std::filesystem::path>& folders, dispatch_queue_t queue,
                         const Told& told)
    : stream_(folders.empty() ? nullptr : makeStream(folders, heard, &told)) {
  if (stream_ == nullptr)
    return;
  FSEventStreamSetDispatchQueue(stream_, queue);
  isRunning_ = FSEventStreamStart(stream_);
}

EventStream::~EventStream() {
  if (stream_ == nullptr)
    return;
  if (isRunning_)
    FSEventStreamStop(stream_);
  FSEventStreamInvalidate(stream_);
  FSEventStreamRelease(stream_);
}

void EventStream::heard(ConstFSEventStreamRef, void* context, size_t count, void* paths,
                        const FSEventStreamEventFlags* flags, const FSEventStreamEventId*) {
  const auto* const* names = static_cast<const char* const*>(paths);
  std::vector<Change> changes;
  for (std::size_t i = 0; i < count; ++i)
    changes.push_back({names[i], (flags[i] & lostTrack) != 0});
  (*static_cast<const Told*>(context))(changes);
}

} // namespace tavrin

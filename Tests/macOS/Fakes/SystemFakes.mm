#include "Tests/macOS/Fakes/SystemFakes.h"

#import <CoreServices/CoreServices.h>
#import <dispatch/dispatch.h>
#import <os/log.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <libproc.h>
#include <sys/sysctl.h>
#include <unistd.h>

SystemState kernel;

static std::string textOf(NSString* string) { return string.UTF8String != nullptr ? string.UTF8String : ""; }

@interface FakeQueue : NSObject <OS_dispatch_queue>
@end
@implementation FakeQueue
- (void)dealloc { --kernel.queues; }
@end
@interface FakeSemaphore : NSObject <OS_dispatch_semaphore>
@property(nonatomic) long value;
@end
@implementation FakeSemaphore
@end

static void give(void* queue, std::function<void()> work) { kernel.waiting.emplace_back(queue, std::move(work)); }
/// All queues, or the one.
static void drain(void* queue) {
  for (std::size_t i = 0; i < kernel.waiting.size();) {
    if (queue != nullptr && kernel.waiting[i].first != queue) {
      ++i;
      continue;
    }
    const auto work = std::move(kernel.waiting[i].second);
    kernel.waiting.erase(kernel.waiting.begin() + long(i));
    work();
    i = 0;
  }
}
void runQueues() { drain(nullptr); }

extern "C" {
dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t attributes) {
  note(std::string("queue ") + label + (attributes == nullptr ? " serial" : ""));
  ++kernel.queues;
  return [[FakeQueue alloc] init];
}
dispatch_queue_t dispatch_get_main_queue() {
  static FakeQueue* queue = [[FakeQueue alloc] init];
  return queue;
}
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work) {
  give(RAW(queue), [context, work] { work(context); });
}
void dispatch_async(dispatch_queue_t queue, dispatch_block_t block) {
  give(RAW(queue), [block] { block(); });
}
void dispatch_sync_f(dispatch_queue_t queue, void* context, dispatch_function_t work) {
  drain(RAW(queue));
  work(context);
}
void objc_release(void* object);
void dispatch_release(void* queue) { objc_release(queue); }
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t nanoseconds) { return when + uint64_t(nanoseconds); }
dispatch_semaphore_t dispatch_semaphore_create(long value) {
  FakeSemaphore* made = [[FakeSemaphore alloc] init];
  made.value = value;
  return made;
}
long dispatch_semaphore_wait(dispatch_semaphore_t semaphore, dispatch_time_t until) {
  FakeSemaphore* made = (FakeSemaphore*)semaphore;
  if (made.value == 0) {
    note("waited " + std::to_string(until / 1'000'000'000) + " s");
    return 1;
  }
  made.value -= 1;
  return 0;
}
long dispatch_semaphore_signal(dispatch_semaphore_t semaphore) { return ((FakeSemaphore*)semaphore).value += 1; }

os_log_t tavrin_os_log_default() { return nil; }
void tavrin_os_log(os_log_t, os_log_type_t type, const char* format, ...) {
  char line[500];
  std::string plain = format;
  if (const auto place = plain.find("{public}"); place != std::string::npos) plain.erase(place, 8);
  else if (plain.find("%s") != std::string::npos) plain = "<private>";
  va_list words;
  va_start(words, format);
  std::vsnprintf(line, sizeof line, plain.c_str(), words);
  va_end(words);
  note("log " + std::to_string(type) + " " + line);
}
}

// Changes in folders.
struct __FSEventStream {
  FSEventStreamCallback callback;
  void* context;
  std::vector<std::string> roots;
  void* queue = nullptr;
  bool isStarted = false;
  bool isInvalid = false;
};
static std::vector<__FSEventStream*> streams;

extern "C" {
FSEventStreamRef FSEventStreamCreate(CFAllocatorRef, FSEventStreamCallback callback, FSEventStreamContext* context,
                                     CFArrayRef paths, FSEventStreamEventId since, CFTimeInterval latency,
                                     FSEventStreamCreateFlags flags) {
  if (!kernel.canStream) return nullptr;
  auto* made = new __FSEventStream{callback, context->info, {}};
  for (NSString* path in (__bridge NSArray*)paths) made->roots.push_back(textOf(path));
  note("stream of " + std::to_string(made->roots.size()) + " each " + std::to_string(int(latency * 1000)) + " ms flags " +
       std::to_string(flags) + (since == kFSEventStreamEventIdSinceNow ? "" : " from then"));
  streams.push_back(made);
  ++kernel.streams;
  return made;
}
void FSEventStreamSetDispatchQueue(FSEventStreamRef stream, dispatch_queue_t queue) { stream->queue = RAW(queue); }
Boolean FSEventStreamStart(FSEventStreamRef stream) {
  stream->isStarted = stream->queue != nullptr && kernel.canStart;
  return stream->isStarted;
}
void FSEventStreamStop(FSEventStreamRef stream) {
  if (!stream->isStarted) kernel.misuses.push_back("stop of a stream that does not run");
  stream->isStarted = false;
}
void FSEventStreamInvalidate(FSEventStreamRef stream) { stream->isInvalid = true; }
void FSEventStreamRelease(FSEventStreamRef stream) {
  if (stream->isStarted || !stream->isInvalid) kernel.misuses.push_back("release of a stream that runs");
  std::erase(streams, stream);
  --kernel.streams;
  delete stream;
}
}

void changeFile(const std::string& path, unsigned flags) {
  for (__FSEventStream* stream : streams) {
    const bool isBelow = std::any_of(stream->roots.begin(), stream->roots.end(),
                                     [&](const auto& root) { return path.starts_with(root); });
    if (!stream->isStarted || !isBelow) continue;
    // What is under way is told though the stream has gone meanwhile.
    give(stream->queue, [callback = stream->callback, context = stream->context, stream, path, flags] {
      const char* names[] = {path.c_str()};
      const FSEventStreamEventFlags all[] = {flags};
      const FSEventStreamEventId ids[] = {1};
      callback(stream, context, 1, names, all, ids);
    });
  }
}

// Processes.
extern "C" {
int proc_listpids(uint32_t type, uint32_t user, void* buffer, int size) {
  if (type != PROC_RUID_ONLY || user != ::getuid()) return -1;
  const int needed = int(kernel.processes.size() * sizeof(int));
  if (buffer == nullptr) return needed;
  std::vector<int> numbers;
  for (const auto& [number, process] : kernel.processes) numbers.insert(numbers.begin(), number);
  std::memcpy(buffer, numbers.data(), std::size_t(std::min(needed, size)));
  return std::min(needed, size);
}
int proc_pidpath(int pid, void* buffer, uint32_t size) {
  const auto found = kernel.processes.find(pid);
  if (found == kernel.processes.end() || size < PROC_PIDPATHINFO_MAXSIZE) return 0;
  std::memcpy(buffer, found->second.program.data(), found->second.program.size());
  return int(found->second.program.size());
}
int proc_pidinfo(int pid, int flavour, uint64_t, void* buffer, int size) {
  const auto found = kernel.processes.find(pid);
  if (found == kernel.processes.end() || flavour != PROC_PIDTBSDINFO || size < int(sizeof(proc_bsdinfo))) return 0;
  proc_bsdinfo info{};
  info.pbi_status = found->second.status;
  std::memcpy(buffer, &info, sizeof info);
  return sizeof info;
}
int sysctl(int* name, unsigned int length, void* old, size_t* size, void*, size_t) {
  if (length == 2 && name[0] == CTL_KERN && name[1] == KERN_ARGMAX) {
    *static_cast<int*>(old) = 4096;
    return 0;
  }
  const auto found = length == 3 && name[1] == KERN_PROCARGS2 ? kernel.processes.find(name[2]) : kernel.processes.end();
  if (found == kernel.processes.end() || found->second.memory.size() > *size) return -1;
  *size = found->second.memory.size();
  std::memcpy(old, found->second.memory.data(), *size);
  return 0;
}
}

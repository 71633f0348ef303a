#include "TavrinPlatform/Linux/Files/FolderWorker.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <limits>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>
#include <utility>

namespace tavrin {

namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t folderEvents = IN_CREATE | IN_CLOSE_WRITE | IN_ATTRIB | IN_MOVED_FROM |
                                       IN_MOVED_TO | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t aboveEvents =
    IN_CREATE | IN_ATTRIB | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t howToWatch = IN_ONLYDIR | IN_EXCL_UNLINK | IN_MASK_ADD;
/// Seconds for which changes are gathered: the first after a quiet time, and those that follow.
constexpr double firstGathering = 0.1;
constexpr double laterGathering = 0.4;
constexpr double quietTime = 1;
/// More changed names than this are a reason to look at all.
constexpr std::size_t mostTouched = 4096;
/// Between scans of one folder lies so many times what the last one took, and at least a second.
constexpr double restAfterScan = 20;
constexpr double leastRest = 1;
/// For folders of whose changes nobody tells.
constexpr double pollInterval = 5;
constexpr double forever = std::numeric_limits<double>::infinity();

double steadyNow() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(now).count();
}

} // namespace

FolderWorker::FolderWorker(FolderRequest request, std::function<void(const FolderListing&)> tell)
    : request_(std::move(request)), tell_(std::move(tell)),
      inotify_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
      wake_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

FolderWorker::~FolderWorker() {
  for (const int descriptor : {inotify_, wake_})
    if (descriptor >= 0)
      ::close(descriptor);
}

void FolderWorker::wake() const {
  eventfd_write(wake_, 1);
}

void FolderWorker::stop() {
  isStopped_ = true;
  wake();
}

void FolderWorker::refresh() {
  isToRefresh_ = true;
  wake();
}

/// Whether there are changes to read; false when it was woken or the time is over.
bool FolderWorker::wait(double seconds, bool forChanges) const {
  std::array<pollfd, 2> sources{{{wake_, POLLIN, 0}, {forChanges ? inotify_ : -1, POLLIN, 0}}};
  const int milliseconds =
      seconds == forever ? -1 : static_cast<int>(std::ceil(std::max(seconds, 0.0) * 1000));
  if (::poll(sources.data(), sources.size(), milliseconds) <= 0)
    return false;
  if (sources[0].revents != 0) {
    eventfd_t count = 0;
    eventfd_read(wake_, &count);
  }
  return sources[1].revents != 0;
}

/// Seconds until a scan is due.
double FolderWorker::patience() const {
  double due = forever;
  for (const FolderPlace& place : places_) {
    if (place.isPolled)
      due = std::min(due, pollInterval);
    if (place.needsScan)
      due = std::min(due, std::max(place.nextScan - steadyNow(), 0.0));
  }
  return due;
}

void FolderWorker::run() {
  seekFolders();
  tellIfChanged();
  double lastGathering = -quietTime;
  while (!isStopped_) {
    if (wait(patience(), true)) {
      const bool isBusy = steadyNow() - lastGathering < quietTime;
      wait(isBusy ? laterGathering : firstGathering, false);
      lastGathering = steadyNow();
      if (isStopped_)
        break;
      collect();
    }
    if (isToRefresh_.exchange(false))
      seekFolders();
    else
      apply();
    tellIfChanged();
  }
}

void FolderWorker::seekFolders() {
  for (FolderPlace& place : places_)
    forget(place);
  places_.clear();
  for (const fs::path& folder : request_.folders)
    if (std::ranges::none_of(places_, [&](const auto& each) { return each.folder() == folder; }))
      places_.emplace_back(folder, request_);
  for (FolderPlace& place : places_)
    seek(place);
}

void FolderWorker::forget(FolderPlace& place) {
  release(place.watch);
  release(place.above);
}

/// Folders may share a watch: the folder of one can be the folder above of another.
void FolderWorker::release(int& watch) {
  const int released = std::exchange(watch, -1);
  const bool isUsed = std::ranges::any_of(places_, [&](const FolderPlace& place) {
    return place.watch == released || place.above == released;
  });
  if (released >= 0 && !isUsed)
    inotify_rm_watch(inotify_, released);
}

void FolderWorker::seek(FolderPlace& place) {
  forget(place);
  const int watch = inotify_add_watch(inotify_, place.folder().c_str(), folderEvents | howToWatch);
  place.isPolled = watch < 0 && (inotify_ < 0 || errno == ENOSPC || errno == ENOMEM);
  place.isDouble = watch >= 0 && std::ranges::any_of(places_, [&](const FolderPlace& other) {
                     return &other != &place && other.watch == watch;
                   });
  place.watch = watch;
  if (watch < 0 && !place.isPolled)
    watchAbove(place);
  scan(place);
}

void FolderWorker::watchAbove(FolderPlace& place) {
  std::error_code error;
  // Where the folder is a link to what is not there, its target is what is to come.
  fs::path missing = fs::weakly_canonical(place.folder(), error);
  if (error || missing.empty())
    missing = place.folder();
  while (missing.has_parent_path() && missing != missing.parent_path()) {
    place.awaited = missing.filename().native();
    missing = missing.parent_path();
    place.above = inotify_add_watch(inotify_, missing.c_str(), aboveEvents | howToWatch);
    if (place.above >= 0)
      break;
  }
  // It may have come in between.
  const int watch = inotify_add_watch(inotify_, place.folder().c_str(), folderEvents | howToWatch);
  if (watch < 0)
    return;
  release(place.above);
  place.watch = watch;
}

void FolderWorker::collect() {
  alignas(inotify_event) std::array<char, 64 * 1024> buffer;
  // The kernel's queue is bounded; more turns than these are new events all the time.
  for (int turn = 0; turn < 256 && !isStopped_; ++turn) {
    const ssize_t size = ::read(inotify_, buffer.data(), buffer.size());
    if (size <= 0)
      return;
    for (ssize_t at = 0; at < size;) {
      const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
      changed(event->wd, event->mask, event->len > 0 ? event->name : "");
      at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
    }
  }
}

void FolderWorker::changed(int watch, std::uint32_t what, const char* name) {
  for (FolderPlace& place : places_) {
    if ((what & IN_Q_OVERFLOW) != 0) {
      place.needsScan = true;
    } else if (place.watch == watch) {
      if ((what & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED)) != 0 || *name == 0)
        place.needsScan = true;
      else if (place.touched.size() < mostTouched)
        place.touched.insert(name);
      else
        place.needsScan = true;
    } else if (place.above == watch && (*name == 0 || place.awaited == name)) {
      place.needsScan = true;
      place.nextScan = 0;
    }
  }
}

void FolderWorker::apply() {
  for (FolderPlace& place : places_) {
    if (isStopped_)
      return;
    const bool isGone = place.watch >= 0 && !place.isSameFolder();
    const bool isOverdue = place.isPolled && !place.isUnchanged();
    if (isGone || isOverdue || (place.needsScan && steadyNow() >= place.nextScan)) {
      seek(place);
    } else if (!place.isDouble) {
      for (const std::string& name : std::exchange(place.touched, {}))
        place.look(name);
    }
  }
}

void FolderWorker::scan(FolderPlace& place) {
  if (place.isDouble)
    return;
  const double start = steadyNow();
  place.scan([this] { return isStopped_.load(); });
  const double end = steadyNow();
  place.nextScan = end + std::max((end - start) * restAfterScan, leastRest);
}

void FolderWorker::tellIfChanged() {
  FolderListing listing;
  for (const FolderPlace& place : places_) {
    if (place.isDouble)
      continue;
    listing.folders.push_back({place.folder(), place.state()});
    listing.unfinished += place.unfinished();
    const auto& files = place.files().files();
    const auto count = std::min(files.size(), request_.limit);
    listing.files.insert(listing.files.end(), files.begin(),
                         files.begin() + static_cast<std::ptrdiff_t>(count));
  }
  std::ranges::sort(listing.files, NewestFiles::isNewer);
  if (listing.files.size() > request_.limit)
    listing.files.resize(request_.limit);
  if (isStopped_ || (std::exchange(hasTold_, true) && listing == told_))
    return;
  told_ = listing;
  tell_(listing);
}

} // namespace tavrin

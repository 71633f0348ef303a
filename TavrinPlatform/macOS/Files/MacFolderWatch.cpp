#include "TavrinPlatform/macOS/Files/MacFolderWatch.h"

#include "TavrinPlatform/POSIX/FolderPlace.h"
#include "TavrinPlatform/macOS/Files/EventStream.h"

#include <algorithm>
#include <atomic>
#include <list>
#include <map>
#include <optional>
#include <utility>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

constexpr double pollInterval = 5;

/// What is known of the folders. All but `isStopped` is for its queue.
class Watched {
public:
  Watched(RunLoop& runLoop, FolderRequest request, dispatch_queue_t queue,
          std::weak_ptr<std::function<void(const FolderListing&)>> told)
      : runLoop_(runLoop), request_(std::move(request)), queue_(queue), told_(std::move(told)) {}

  std::atomic<bool> isStopped = false;

  void seek();
  /// Looks whether a folder came, went or was replaced, where nobody tells.
  void check();
  void endStream() { stream_.reset(); }

private:
  void changed(const std::vector<EventStream::Change>& changes);
  void scan(FolderPlace& place) {
    place.scan([this] { return isStopped.load(); });
  }
  void tellIfChanged();

  RunLoop& runLoop_;
  FolderRequest request_;
  dispatch_queue_t queue_;
  std::weak_ptr<std::function<void(const FolderListing&)>> told_;
  const EventStream::Told changed_ = [this](const auto& changes) { changed(changes); };
  std::list<FolderPlace> places_;
  /// By the path that the system tells: with all links resolved.
  std::map<fs::path, FolderPlace*> byRealPath_;
  std::optional<EventStream> stream_;
  std::optional<FolderListing> last_;
};

void Watched::seek() {
  stream_.reset();
  byRealPath_.clear();
  places_.clear();
  std::vector<fs::path> roots;
  for (const fs::path& folder : request_.folders) {
    std::error_code error;
    const fs::path real = fs::canonical(folder, error);
    if (!error && !byRealPath_.contains(real))
      roots.push_back(real);
    const bool isDouble =
        std::ranges::any_of(places_, [&](const auto& place) { return place.folder() == folder; }) ||
        (!error && byRealPath_.contains(real));
    if (isDouble)
      continue;
    FolderPlace& place = places_.emplace_back(folder, request_);
    if (!error)
      byRealPath_[real] = &place;
  }
  // Listened to first, so that no change falls between the look and the first event.
  stream_.emplace(roots, queue_, changed_);
  for (FolderPlace& place : places_)
    scan(place);
  tellIfChanged();
}

void Watched::check() {
  const bool isSilent = !stream_ || !stream_->isRunning();
  const bool isOther = std::ranges::any_of(places_, [&](const FolderPlace& place) {
    const bool isListed = place.state() == FolderListing::State::listed;
    return isListed ? !place.isSameFolder() || (isSilent && !place.isUnchanged())
                    : !place.isUnchanged();
  });
  if (isOther && !isStopped)
    seek();
}

void Watched::changed(const std::vector<EventStream::Change>& changes) {
  if (isStopped)
    return;
  bool hasLostTrack = false;
  for (const auto& change : changes) {
    hasLostTrack = hasLostTrack || change.needsScan;
    // Files further down are none of the folder's own.
    const auto found = byRealPath_.find(change.path.parent_path());
    if (found != byRealPath_.end() && !change.path.filename().empty())
      found->second->touched.insert(change.path.filename().native());
  }
  if (hasLostTrack)
    return seek();
  for (FolderPlace& place : places_) {
    for (const std::string& name : std::exchange(place.touched, {}))
      place.look(name);
    if (std::exchange(place.needsScan, false))
      scan(place);
  }
  tellIfChanged();
}

void Watched::tellIfChanged() {
  FolderListing listing;
  for (const FolderPlace& place : places_) {
    listing.folders.push_back({place.folder(), place.state()});
    listing.unfinished += place.unfinished();
    const auto& files = place.files().files();
    listing.files.insert(listing.files.end(), files.begin(), files.end());
  }
  std::ranges::sort(listing.files, NewestFiles::isNewer);
  if (listing.files.size() > request_.limit)
    listing.files.resize(request_.limit);
  if (isStopped || last_ == listing)
    return;
  last_ = listing;
  runLoop_.post([told = told_, listing = std::move(listing)] {
    if (const auto alive = told.lock())
      (*alive)(listing);
  });
}

class EventFollower final : public FolderFollower {
public:
  EventFollower(RunLoop& runLoop, FolderRequest request,
                std::function<void(const FolderListing&)> told)
      : told_(std::make_shared<std::function<void(const FolderListing&)>>(std::move(told))),
        queue_(dispatch_queue_create("dev.quellby.tavrin.folders", DISPATCH_QUEUE_SERIAL)),
        watched_(runLoop, std::move(request), queue_, told_) {
    refresh();
    poll_ = runLoop.repeat(pollInterval, [this] {
      dispatch_async_f(queue_, &watched_,
                       [](void* watched) { static_cast<Watched*>(watched)->check(); });
    });
  }
  ~EventFollower() override {
    poll_.reset();
    watched_.isStopped = true;
    const auto endStream = [](void* watched) { static_cast<Watched*>(watched)->endStream(); };
    dispatch_sync_f(queue_, &watched_, endStream);
    // Events that were under way have their turn after that.
    dispatch_sync_f(queue_, nullptr, [](void*) {});
    dispatch_release(queue_);
  }
  EventFollower(const EventFollower&) = delete;
  EventFollower& operator=(const EventFollower&) = delete;

  void refresh() override {
    dispatch_async_f(queue_, &watched_,
                     [](void* watched) { static_cast<Watched*>(watched)->seek(); });
  }

private:
  std::shared_ptr<std::function<void(const FolderListing&)>> told_;
  dispatch_queue_t queue_;
  Watched watched_;
  TokenPtr poll_;
};

} // namespace

std::unique_ptr<FolderFollower>
MacFolderWatch::follow(FolderRequest request, std::function<void(const FolderListing&)> told) {
  return std::make_unique<EventFollower>(runLoop_, std::move(request), std::move(told));
}

} // namespace tavrin

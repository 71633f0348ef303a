#include "TavrinPlatform/Linux/Files/LinuxFolderWatch.h"

#include "TavrinPlatform/Linux/Files/FolderWorker.h"

#include <mutex>
#include <thread>

namespace tavrin {

namespace {

/// The way to the main thread, cut when the follower goes.
class MainThreadLink {
public:
  MainThreadLink(RunLoop& runLoop, std::function<void(const FolderListing&)> told)
      : runLoop_(&runLoop), told_(std::make_shared<Told>(std::move(told))), weakTold_(told_) {}

  void tell(const FolderListing& listing) {
    const std::lock_guard lock(mutex_);
    if (runLoop_ != nullptr)
      runLoop_->post([told = weakTold_, listing] {
        if (const auto alive = told.lock())
          (*alive)(listing);
      });
  }
  void cut() {
    const std::lock_guard lock(mutex_);
    runLoop_ = nullptr;
    told_.reset();
  }

private:
  using Told = std::function<void(const FolderListing&)>;

  std::mutex mutex_;
  RunLoop* runLoop_;
  std::shared_ptr<Told> told_;
  const std::weak_ptr<Told> weakTold_;
};

class InotifyFollower final : public FolderFollower {
public:
  InotifyFollower(RunLoop& runLoop, FolderRequest request,
                  std::function<void(const FolderListing&)> told)
      : link_(std::make_shared<MainThreadLink>(runLoop, std::move(told))),
        worker_(std::make_shared<FolderWorker>(
            std::move(request),
            [link = link_](const FolderListing& listing) { link->tell(listing); })) {
    std::thread([worker = worker_] { worker->run(); }).detach();
  }
  ~InotifyFollower() override {
    link_->cut();
    worker_->stop();
  }
  void refresh() override { worker_->refresh(); }

private:
  std::shared_ptr<MainThreadLink> link_;
  std::shared_ptr<FolderWorker> worker_;
};

} // namespace

std::unique_ptr<FolderFollower>
LinuxFolderWatch::follow(FolderRequest request, std::function<void(const FolderListing&)> told) {
  return std::make_unique<InotifyFollower>(runLoop_, std::move(request), std::move(told));
}

} // namespace tavrin

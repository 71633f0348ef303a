#pragma once

#include <mutex>

namespace tavrin {

/// Restarts the Dock so that it reads its preferences. Blocks the calling thread.
class DockReloader {
public:
  virtual ~DockReloader() = default;
  /// Waits until the Dock has run long enough to take a new layout.
  virtual void waitUntilSettled() {}
  /// Returns once a new Dock process is up. Throws DockError (dockReloadFailed).
  virtual void reload() = 0;
  /// Whether `reload` takes time and may have the Dock write.
  virtual bool restarts() const { return true; }
};

/// For use where no Dock should be touched; counts what it was asked.
class NoOpDockReloader final : public DockReloader {
public:
  void reload() override {
    const std::lock_guard guard(lock_);
    ++callCount_;
  }
  bool restarts() const override { return false; }
  int callCount() const {
    const std::lock_guard guard(lock_);
    return callCount_;
  }

private:
  mutable std::mutex lock_;
  int callCount_ = 0;
};

} // namespace tavrin

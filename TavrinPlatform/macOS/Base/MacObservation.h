#pragma once

#import <Foundation/Foundation.h>

#include <functional>
#include <memory>

namespace tavrin {

/// Hears a notice while it lives, on the main thread, whichever thread posts it; also one that was
/// under way when it went stays unheard.
class MacObservation {
public:
  MacObservation(NSNotificationCenter* _Nonnull center, NSNotificationName _Nonnull name,
                 std::function<void()> heard)
      : center_(center), heard_(std::make_shared<Heard>(std::move(heard))),
        observer_(add(center, name, heard_)) {}
  ~MacObservation() { [center_ removeObserver:observer_]; }
  MacObservation(const MacObservation&) = delete;
  MacObservation& operator=(const MacObservation&) = delete;

private:
  using Heard = std::function<void()>;

  static id<NSObject> _Nonnull add(NSNotificationCenter* _Nonnull center,
                                   NSNotificationName _Nonnull name, std::weak_ptr<Heard> heard) {
    return [center addObserverForName:name
                               object:nil
                                queue:NSOperationQueue.mainQueue
                           usingBlock:^(NSNotification*) {
                             if (const auto alive = heard.lock())
                               (*alive)();
                           }];
  }

  NSNotificationCenter* _Nonnull center_;
  std::shared_ptr<Heard> heard_;
  id<NSObject> _Nonnull observer_;
};

} // namespace tavrin

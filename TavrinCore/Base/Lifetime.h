#pragma once

#include <memory>

namespace tavrin {

/// A member that tells an answer which comes later whether its owner is still there, or whether the
/// owner still wants it:
///
///     service.ask([this, life = life_.watch()](const Reply& reply) {
///       if (!life.expired())
///         take(reply);
///     });
///
/// `RunLoop::background` takes it as the owner of its work. Watched and ended on the main thread;
/// a watch may be carried through others.
class Lifetime {
public:
  Lifetime() = default;
  Lifetime(const Lifetime&) = delete;
  Lifetime& operator=(const Lifetime&) = delete;

  /// Expires with this, and with `end` or `renew`.
  std::weak_ptr<void> watch() const { return life_; }
  operator std::weak_ptr<void>() const { return life_; }

  /// No watch of it is alive from here on, also none that is taken later.
  void end() { life_.reset(); }
  /// The watches so far expire, new ones are alive.
  void renew() { life_ = std::make_shared<char>(); }

private:
  std::shared_ptr<void> life_ = std::make_shared<char>();
};

} // namespace tavrin

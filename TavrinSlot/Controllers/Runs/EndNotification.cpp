#include "TavrinSlot/Controllers/Runs/EndNotification.h"

#include <algorithm>
#include <mutex>

namespace tavrin {

struct EndNotification::Wish {
  std::mutex mutex;
  bool isStanding = true;

  void drop() {
    const std::lock_guard lock(mutex);
    isStanding = false;
  }
};

EndNotification::EndNotification(UserNotificationCenter& center, Clock& clock,
                                 std::string identifier)
    : center_(center), clock_(clock), identifier_(std::move(identifier)) {}

EndNotification::~EndNotification() {
  if (wish_)
    wish_->drop();
}

void EndNotification::schedule(std::optional<Date> end, const std::string& title,
                               const std::string& body) {
  withdraw();
  const Date now = clock_.now();
  if (!end || *end <= now)
    return;
  wish_ = std::make_shared<Wish>();
  UserNotificationRequest request{identifier_, title, body, std::max(end->since(now), 1.0)};
  center_.requestAuthorization(
      [wish = wish_, &center = center_, request = std::move(request)](bool isGranted) {
        const std::lock_guard lock(wish->mutex);
        if (isGranted && wish->isStanding)
          center.add(request);
      });
}

void EndNotification::withdraw() {
  if (wish_)
    wish_->drop();
  wish_.reset();
  center_.removePending(identifier_);
}

} // namespace tavrin

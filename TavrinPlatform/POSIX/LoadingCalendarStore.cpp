#include "TavrinPlatform/POSIX/LoadingCalendarStore.h"

#include <utility>

namespace tavrin {

LoadingCalendarStore::LoadingCalendarStore(RunLoop& runLoop, std::function<Factory()> load) {
  auto factory = std::make_shared<Factory>();
  runLoop.background([factory, load = std::move(load)] { *factory = load(); }, alive_,
                     [this, factory] {
                       adapter_ = (*factory)();
                       for (const auto& call : std::exchange(waiting_, {}))
                         call(*adapter_);
                     });
}

TokenPtr LoadingCalendarStore::forward(std::function<TokenPtr(CalendarStore&)> call) {
  if (adapter_)
    return call(*adapter_);
  struct Call final : Token {
    /// The adapter's token, once it was asked.
    std::shared_ptr<TokenPtr> inner = std::make_shared<TokenPtr>();
  };
  auto token = std::make_unique<Call>();
  waiting_.push_back(
      [weak = std::weak_ptr(token->inner), call = std::move(call)](CalendarStore& adapter) {
        if (const auto inner = weak.lock())
          *inner = call(adapter);
      });
  return token;
}

CalendarAccess LoadingCalendarStore::access(Entity entity) const {
  return adapter_ ? adapter_->access(entity) : CalendarAccess::notAsked;
}

TokenPtr LoadingCalendarStore::requestAccess(Entity entity,
                                             std::function<void(CalendarAccess)> answer) {
  return forward([=](CalendarStore& adapter) { return adapter.requestAccess(entity, answer); });
}

TokenPtr LoadingCalendarStore::accounts(Entity entity, std::function<void(Accounts)> answer) {
  return forward([=](CalendarStore& adapter) { return adapter.accounts(entity, answer); });
}

TokenPtr LoadingCalendarStore::events(DateInterval range,
                                      const std::optional<std::vector<std::string>>& calendarIDs,
                                      std::function<void(std::vector<CalendarEvent>)> answer) {
  return forward(
      [=](CalendarStore& adapter) { return adapter.events(range, calendarIDs, answer); });
}

TokenPtr LoadingCalendarStore::reminders(const std::string& listID,
                                         std::function<void(std::vector<Reminder>)> answer) {
  return forward([=](CalendarStore& adapter) { return adapter.reminders(listID, answer); });
}

TokenPtr LoadingCalendarStore::setCompleted(const Reminder& reminder, bool isCompleted,
                                            std::function<void(bool)> answer) {
  return forward(
      [=](CalendarStore& adapter) { return adapter.setCompleted(reminder, isCompleted, answer); });
}

void LoadingCalendarStore::openApplication(Entity entity) {
  if (adapter_)
    adapter_->openApplication(entity);
}

TokenPtr LoadingCalendarStore::observeChanges(std::function<void()> handler) {
  return forward([=](CalendarStore& adapter) { return adapter.observeChanges(handler); });
}

} // namespace tavrin

#pragma once

#include "TavrinPlatform/CalendarStore.h"
#include "Tests/Support/HandlerList.h"
#include "Tests/Support/ManualRunLoop.h"

#include <algorithm>
#include <map>

namespace tavrin::test {

/// Answers when the run loop runs its posts; records what was asked.
class FakeCalendarStore final : public CalendarStore {
public:
  explicit FakeCalendarStore(ManualRunLoop& loop) : loop_(loop) {}

  CalendarAccess access(Entity) const override { return current; }
  TokenPtr requestAccess(Entity, std::function<void(CalendarAccess)> answer) override {
    ++accessRequests;
    return later([this, answer = std::move(answer)] {
      current = onRequest;
      answer(current);
    });
  }
  TokenPtr accounts(Entity entity, std::function<void(Accounts)> answer) override {
    return later([this, entity, answer = std::move(answer)] {
      answer(entity == Entity::events ? calendars : lists);
    });
  }
  TokenPtr events(DateInterval range, const std::optional<std::vector<std::string>>& calendarIDs,
                  std::function<void(std::vector<CalendarEvent>)> answer) override {
    ranges.push_back(range);
    asked.push_back(calendarIDs);
    return later([this, range, answer = std::move(answer)] {
      std::vector<CalendarEvent> found;
      for (const auto& event : allEvents)
        if (event.end > range.start && event.start < range.end)
          found.push_back(event);
      answer(std::move(found));
    });
  }
  TokenPtr reminders(const std::string& listID,
                     std::function<void(std::vector<Reminder>)> answer) override {
    askedLists.push_back(listID);
    return later([this, answer = std::move(answer)] { answer(allReminders); });
  }
  TokenPtr setCompleted(const Reminder& reminder, bool isCompleted,
                        std::function<void(bool)> answer) override {
    completions.push_back({reminder.id, isCompleted});
    return later([answer = std::move(answer), this] { answer(completes); });
  }
  void openApplication(Entity entity) override { opened.push_back(entity); }
  TokenPtr observeChanges(std::function<void()> handler) override {
    return changes.add(std::move(handler));
  }

  CalendarAccess current = CalendarAccess::granted;
  CalendarAccess onRequest = CalendarAccess::granted;
  int accessRequests = 0;
  Accounts calendars;
  Accounts lists;
  std::vector<CalendarEvent> allEvents;
  std::vector<Reminder> allReminders;
  bool completes = true;
  std::vector<DateInterval> ranges;
  std::vector<std::optional<std::vector<std::string>>> asked;
  std::vector<std::string> askedLists;
  std::vector<std::pair<std::string, bool>> completions;
  std::vector<Entity> opened;
  HandlerList changes;

private:
  TokenPtr later(std::function<void()> work) {
    struct Call final : Token {
      std::shared_ptr<int> alive = std::make_shared<int>();
    };
    auto token = std::make_unique<Call>();
    loop_.post([work = std::move(work), alive = std::weak_ptr(token->alive)] {
      if (alive.lock())
        work();
    });
    return token;
  }

  ManualRunLoop& loop_;
};

} // namespace tavrin::test

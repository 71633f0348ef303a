#pragma once

#include "TavrinPlatform/CalendarStore.h"
#include "TavrinPlatform/HTTPClient.h"

namespace tavrin {

/// Answers, a moment later, what a missing service has to say.
class UnavailableHTTPClient final : public HTTPClient {
public:
  explicit UnavailableHTTPClient(RunLoop& runLoop) : runLoop_(runLoop) {}

  TokenPtr get(const HTTPRequest&, std::function<void(const HTTPResponse&)> done) override {
    return runLoop_.after(0, [done = std::move(done)] { done({}); });
  }
  TokenPtr resolve(const std::string&,
                   std::function<void(const std::vector<std::string>&)> done) override {
    return runLoop_.after(0, [done = std::move(done)] { done({}); });
  }
  TokenPtr observeNetwork(std::function<void()>) override { return std::make_unique<Token>(); }

private:
  RunLoop& runLoop_;
};

class UnavailableCalendarStore final : public CalendarStore {
public:
  explicit UnavailableCalendarStore(RunLoop& runLoop) : runLoop_(runLoop) {}

  CalendarAccess access(Entity) const override { return CalendarAccess::denied; }
  TokenPtr requestAccess(Entity, std::function<void(CalendarAccess)> answer) override {
    return later(std::move(answer), CalendarAccess::denied);
  }
  TokenPtr accounts(Entity, std::function<void(Accounts)> answer) override {
    return later(std::move(answer), Accounts{});
  }
  TokenPtr events(DateInterval, const std::optional<std::vector<std::string>>&,
                  std::function<void(std::vector<CalendarEvent>)> answer) override {
    return later(std::move(answer), std::vector<CalendarEvent>{});
  }
  TokenPtr reminders(const std::string&,
                     std::function<void(std::vector<Reminder>)> answer) override {
    return later(std::move(answer), std::vector<Reminder>{});
  }
  TokenPtr setCompleted(const Reminder&, bool, std::function<void(bool)> answer) override {
    return later(std::move(answer), false);
  }
  void openApplication(Entity) override {}
  TokenPtr observeChanges(std::function<void()>) override { return std::make_unique<Token>(); }

private:
  template <class Answer, class Value> TokenPtr later(Answer answer, Value value) {
    return runLoop_.after(
        0, [answer = std::move(answer), value = std::move(value)] { answer(value); });
  }

  RunLoop& runLoop_;
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/RunLoop.h"

#include <functional>
#include <memory>
#include <utility>

namespace tavrin {

/// An answer under way: whoever brings it asks first whether the token is still there.
class LivingToken final : public Token {
public:
  std::weak_ptr<void> life() const { return alive_; }

private:
  Lifetime alive_;
};

/// Has the main thread give `value` to `answer`, unless the token of `life` has gone by then. From
/// any thread.
template <class Value>
void postAnswer(RunLoop& runLoop, std::weak_ptr<void> life, std::function<void(Value)> answer,
                Value value) {
  runLoop.post([life = std::move(life), answer = std::move(answer),
                value = std::make_shared<Value>(std::move(value))] {
    if (!life.expired())
      answer(std::move(*value));
  });
}

/// Runs `work` on a background thread and gives what it answers to `answer` on the main thread.
template <class Value>
[[nodiscard]] TokenPtr answerLater(RunLoop& runLoop, std::function<Value()> work,
                                   std::function<void(Value)> answer) {
  auto token = std::make_unique<LivingToken>();
  const auto value = std::make_shared<Value>();
  runLoop.background([value, work = std::move(work)] { *value = work(); }, token->life(),
                     [value, answer = std::move(answer)] { answer(std::move(*value)); });
  return token;
}

} // namespace tavrin

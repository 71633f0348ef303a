#include "TavrinWidgetsUI/Fans/FanSwitch.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tavrin {
namespace {

struct Answer {
  std::vector<FanReading> readings;
  std::string trouble;
};

/// Whole tens: a fan's speed is never still.
double shownSpeed(double speed) {
  return std::round(speed / 10) * 10;
}

Answer readFans(SMCAccess& smc) {
  Answer answer;
  try {
    answer.readings = FanControl(smc, [](double) {}).readings();
    for (auto& reading : answer.readings)
      reading.current = shownSpeed(reading.current);
  } catch (const FanError& error) {
    answer.trouble = error.what();
  }
  return answer;
}

} // namespace

FanSwitch::FanSwitch(RunLoop& runLoop, SMCAccess& smc, FanHelperClient& helper)
    : runLoop_(runLoop), smc_(smc), helper_(helper) {}

void FanSwitch::start() {
  isStarted_ = true;
  helperChanges_ = helper_.observe([this] { tell(); });
  helper_.status();
  refresh();
  updateTicker();
}

void FanSwitch::stop() {
  isStarted_ = false;
  ticker_.reset();
  helperChanges_.reset();
}

void FanSwitch::handBack() {
  stop();
  alive_.end();
  isFull_ = false;
  if (std::exchange(mayHold_, false))
    helper_.setFull(false, [](const auto&) {});
}

void FanSwitch::setShown(bool isShown) {
  if (isShown_ == isShown)
    return;
  isShown_ = isShown;
  if (isShown)
    refresh();
  updateTicker();
}

void FanSwitch::updateTicker() {
  if (isStarted_)
    ticker_ = runLoop_.repeat(isShown_ ? shownPeriod : idlePeriod, [this] { refresh(); });
}

/// A slow driver must not pile readings up.
void FanSwitch::refresh() {
  if (std::exchange(isReading_, true))
    return;
  const auto answer = std::make_shared<Answer>();
  runLoop_.background([answer, &smc = smc_] { *answer = readFans(smc); }, alive_,
                      [this, answer, wasFull = isFull_] {
                        isReading_ = false;
                        const bool wasShownFull = isFull_;
                        const bool differs = !std::exchange(hasRead_, true) ||
                                             answer->readings != readings_ ||
                                             answer->trouble != readTrouble_;
                        readings_ = std::move(answer->readings);
                        if (trouble_.empty() || trouble_ == readTrouble_)
                          trouble_ = answer->trouble;
                        readTrouble_ = std::move(answer->trouble);
                        watchForce(wasFull);
                        if (differs || isFull_ != wasShownFull)
                          tell();
                      });
}

/// What is said of full speed has to be so.
void FanSwitch::watchForce(bool wasFull) {
  const bool isForced =
      readings_.empty() || std::any_of(readings_.begin(), readings_.end(),
                                       [](const FanReading& reading) { return reading.isForced; });
  unforced_ = wasFull && isFull_ && !isBusy_ && !isForced ? unforced_ + 1 : 0;
  if (unforced_ < readingsWithoutForce)
    return;
  unforced_ = 0;
  isFull_ = false;
  isLost_ = true;
}

void FanSwitch::setFull(bool full) {
  if (isBusy_)
    return;
  isBusy_ = true;
  trouble_.clear();
  if (full && helper_.status() == FanHelperClient::Status::notRegistered)
    helper_.registerHelper([this, weak = alive_.watch()](const auto& refusal) {
      if (weak.expired())
        return;
      // Where the user has to approve first, the panel says so.
      if (refusal || helper_.status() != FanHelperClient::Status::ready)
        return finish(refusal);
      ask(true);
    });
  else if (helper_.status() == FanHelperClient::Status::ready)
    ask(full);
  else
    finish(std::nullopt);
  tell();
}

void FanSwitch::ask(bool full) {
  // A helper that still counts this one as holding would not force anew.
  if (std::exchange(isLost_, false) && full)
    return helper_.setFull(false, [this, weak = alive_.watch()](const auto&) {
      if (!weak.expired())
        ask(true);
    });
  mayHold_ |= full;
  helper_.setFull(full, [this, full, weak = alive_.watch()](const auto& refusal) {
    if (weak.expired())
      return;
    if (!refusal)
      isFull_ = mayHold_ = full;
    else if (full)
      // What failed has been handed back.
      isFull_ = mayHold_ = false;
    finish(refusal);
    refresh();
  });
}

void FanSwitch::finish(const std::optional<FanHelperClient::Refusal>& refusal) {
  isBusy_ = false;
  trouble_ = refusal ? refusal->message : std::string();
  tell();
}

void FanSwitch::tell() const {
  if (onChange)
    onChange();
}

} // namespace tavrin

#include "TavrinCore/Kinds/Fans/FanControl.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/ComputerWords.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace tavrin {
namespace {

constexpr const char* countKey = "FNum";
constexpr const char* testKey = "Ftst";

std::string key(int fan, const char* suffix) {
  return fmt::format("F{}{}", fan, suffix);
}

std::string value(std::string_view key) {
  return "fan value " + std::string(key);
}

bool isPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
           c == '-';
  });
}

} // namespace

FanError FanError::smcUnavailable(std::string_view reason) {
  return {Kind::smcUnavailable, failure("reach the fan controller", reason)};
}
FanError FanError::readFailed(std::string_view key, std::string_view reason) {
  return {Kind::readFailed, failure(translated("read {key}", {{"key", value(key)}}), reason)};
}
FanError FanError::writeFailed(std::string_view key, std::string_view reason) {
  return {Kind::writeFailed, failure(translated("write {key}", {{"key", value(key)}}), reason)};
}
FanError FanError::unsupportedValue(std::string_view key, std::string_view type) {
  return {Kind::unsupportedValue, failure(translated("handle {key}", {{"key", value(key)}}),
                                          "its type " + std::string(type) + " is not supported")};
}
FanError FanError::noFans() {
  return {Kind::noFans, failure("control the fans", localSentence("this {Mac} has none"))};
}

double FanControl::number(const std::string& key) const {
  const SMCValue found = smc_.read(key);
  const auto number = found.number();
  if (!number || !std::isfinite(*number))
    throw FanError::unsupportedValue(key, found.type);
  return *number;
}

int FanControl::fanCount() const {
  return static_cast<int>(std::clamp(number(countKey), 0.0, double(mostFans)));
}

std::vector<FanReading> FanControl::readings() const {
  std::vector<FanReading> readings;
  const int count = fanCount();
  for (int fan = 0; fan < count; ++fan)
    readings.push_back({fan, number(key(fan, "Ac")), number(key(fan, "Mn")), number(key(fan, "Mx")),
                        smc_.read(key(fan, "Md")).number() == 1});
  return readings;
}

void FanControl::write(const std::string& key, double value) {
  const std::string type = smc_.read(key).type;
  const auto bytes = SMCValue::encoding(value, type);
  if (!bytes)
    throw FanError::unsupportedValue(key, type);
  smc_.write(key, *bytes);
}

void FanControl::force(int fan) {
  const std::string mode = key(fan, "Md");
  for (int attempt = 1;; ++attempt) {
    try {
      return write(mode, 1);
    } catch (const FanError& error) {
      if (error.kind() != FanError::Kind::writeFailed || attempt == forceAttempts)
        throw;
    }
    pause_(forcePause);
  }
}

void FanControl::setFull() {
  const int count = fanCount();
  if (count < 1)
    throw FanError::noFans();
  try {
    write(testKey, 1);
    for (int fan = 0; fan < count; ++fan) {
      force(fan);
      write(key(fan, "Tg"), number(key(fan, "Mx")));
    }
  } catch (const FanError&) {
    try {
      setAuto();
    } catch (const FanError&) {
      // The first error tells more.
    }
    throw;
  }
}

void FanControl::setAuto() {
  const int count = fanCount();
  std::optional<FanError> first;
  const auto attempt = [&](const std::string& key) {
    try {
      write(key, 0);
    } catch (const FanError& error) {
      if (!first)
        first = error;
    }
  };
  for (int fan = 0; fan < count; ++fan)
    attempt(key(fan, "Md"));
  attempt(testKey);
  if (first)
    throw *first;
}

std::optional<FanHold::Change> FanHold::unlessAsleep(Change change) const {
  return isAsleep_ ? std::nullopt : std::optional(change);
}

std::optional<FanHold::Change> FanHold::request(bool full, int holder) {
  const bool wasHolding = isHolding();
  if (full) {
    holders_.insert(holder);
    return wasHolding ? std::nullopt : unlessAsleep(Change::full);
  }
  holders_.erase(holder);
  return isHolding() ? std::nullopt : unlessAsleep(Change::automatic);
}

std::optional<FanHold::Change> FanHold::drop(int holder) {
  return holders_.erase(holder) > 0 && !isHolding() ? unlessAsleep(Change::automatic)
                                                    : std::nullopt;
}

std::optional<FanHold::Change> FanHold::willSleep() {
  isAsleep_ = true;
  return isHolding() ? std::optional(Change::automatic) : std::nullopt;
}

std::optional<FanHold::Change> FanHold::didWake() {
  isAsleep_ = false;
  return isHolding() ? std::optional(Change::full) : std::nullopt;
}

std::string FanHelperService::name(std::string_view appIdentifier) {
  return std::string(appIdentifier) + ".fan-helper";
}

std::string FanHelperService::plistName(std::string_view appIdentifier) {
  return name(appIdentifier) + ".plist";
}

std::optional<std::string> FanHelperService::clientRequirement(std::string_view appIdentifier,
                                                               std::string_view teamIdentifier) {
  if (!isPlain(appIdentifier) || !isPlain(teamIdentifier))
    return std::nullopt;
  return "anchor apple generic and identifier \"" + std::string(appIdentifier) +
         "\" and certificate leaf[subject.OU] = \"" + std::string(teamIdentifier) + "\"";
}

} // namespace tavrin

#pragma once

#include "TavrinCore/Kinds/Fans/SMCValue.h"

#include <functional>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// What went wrong with the fans, in a sentence.
class FanError : public std::runtime_error {
public:
  enum class Kind { smcUnavailable, readFailed, writeFailed, unsupportedValue, noFans };

  static FanError smcUnavailable(std::string_view reason);
  static FanError readFailed(std::string_view key, std::string_view reason);
  static FanError writeFailed(std::string_view key, std::string_view reason);
  static FanError unsupportedValue(std::string_view key, std::string_view type);
  static FanError noFans();

  Kind kind() const { return kind_; }

private:
  FanError(Kind kind, const std::string& sentence) : std::runtime_error(sentence), kind_(kind) {}
  Kind kind_;
};

/// One fan; speeds in revolutions per minute.
struct FanReading {
  int index = 0;
  double current = 0;
  double minimum = 0;
  double maximum = 0;
  /// In manual mode.
  bool isForced = false;
  bool operator==(const FanReading&) const = default;
};

/// The fans behind the keys of the controller. Members throw FanError.
class FanControl {
public:
  static constexpr int forceAttempts = 20;
  static constexpr double forcePause = 0.5;
  /// A count beyond this is no count.
  static constexpr int mostFans = 100;

  /// `pause` waits for so many seconds.
  FanControl(SMCAccess& smc, std::function<void(double)> pause)
      : smc_(smc), pause_(std::move(pause)) {}

  int fanCount() const;
  std::vector<FanReading> readings() const;
  /// All fans to their maximum. When that fails, they have been handed back.
  void setFull();
  /// Hands every fan back that lets itself be handed back; then throws the first error.
  void setAuto();

private:
  double number(const std::string& key) const;
  void write(const std::string& key, double value);
  void force(int fan);

  SMCAccess& smc_;
  std::function<void(double)> pause_;
};

/// Who wants full speed. The owner applies each change that is given, in order.
class FanHold {
public:
  enum class Change { full, automatic };

  std::optional<Change> request(bool full, int holder);
  /// A holder is gone.
  std::optional<Change> drop(int holder);
  /// Forgets all holders, without a change.
  void abandon() { holders_.clear(); }
  std::optional<Change> willSleep();
  std::optional<Change> didWake();

  bool isHolding() const { return !holders_.empty(); }
  bool isAsleep() const { return isAsleep_; }
  bool operator==(const FanHold&) const = default;

private:
  std::optional<Change> unlessAsleep(Change change) const;

  std::set<int> holders_;
  bool isAsleep_ = false;
};

/// How the helper is called, and whom it admits.
struct FanHelperService {
  static std::string name(std::string_view appIdentifier);
  static std::string plistName(std::string_view appIdentifier);
  /// The requirement on a caller's signature; none where an identifier holds anything but
  /// letters, digits, dots and hyphens.
  static std::optional<std::string> clientRequirement(std::string_view appIdentifier,
                                                      std::string_view teamIdentifier);
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinCore/Kinds/Fans/FanControl.h"
#include "TavrinPlatform/FanHelperClient.h"
#include "TavrinPlatform/RunLoop.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tavrin {

/// The fans' speeds, and the switch to their full speed and back.
class FanSwitch {
public:
  /// Seconds between two readings while the panel is shown, and otherwise.
  static constexpr double shownPeriod = 2;
  static constexpr double idlePeriod = 10;
  /// So many readings in turn without a forced fan mean that full speed is over: the helper was
  /// ended, or another program took the fans. Around sleep a few are no sign of it.
  static constexpr int readingsWithoutForce = 4;

  /// What it is given outlives it; `smc` is used on a queue of the run loop's.
  FanSwitch(RunLoop& runLoop, SMCAccess& smc, FanHelperClient& helper);
  FanSwitch(const FanSwitch&) = delete;
  FanSwitch& operator=(const FanSwitch&) = delete;

  void start();
  void stop();
  /// Ends what this switch asked the helper for, whatever came of it, and stops.
  void handBack();
  /// The panel opened or closed.
  void setShown(bool isShown);

  const std::vector<FanReading>& readings() const { return readings_; }
  /// A reading has been taken, or has failed.
  bool hasRead() const { return hasRead_; }
  FanHelperClient::Status status() const { return helper_.status(); }
  bool isBusy() const { return isBusy_; }
  /// This widget wants full speed, and the helper agreed.
  bool isFull() const { return isFull_; }
  const std::string& trouble() const { return trouble_; }
  /// A machine that has been read and has no fan to control.
  bool hasNoFans() const { return hasRead_ && readings_.empty() && readTrouble_.empty(); }

  void setFull(bool full);
  void openApprovalSettings() { helper_.openApprovalSettings(); }

  std::function<void()> onChange;

private:
  void refresh();
  void watchForce(bool wasFull);
  void ask(bool full);
  void finish(const std::optional<FanHelperClient::Refusal>& refusal);
  void tell() const;
  void updateTicker();

  RunLoop& runLoop_;
  SMCAccess& smc_;
  FanHelperClient& helper_;
  std::vector<FanReading> readings_;
  bool hasRead_ = false;
  bool isReading_ = false;
  bool isBusy_ = false;
  bool isFull_ = false;
  bool isShown_ = false;
  bool isStarted_ = false;
  int unforced_ = 0;
  /// Full speed was asked for and has not been taken back since.
  bool mayHold_ = false;
  /// The hold may still be known to the helper.
  bool isLost_ = false;
  std::string trouble_;
  std::string readTrouble_;
  Lifetime alive_;
  TokenPtr ticker_;
  TokenPtr helperChanges_;
};

} // namespace tavrin

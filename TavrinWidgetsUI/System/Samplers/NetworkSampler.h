#pragma once

#include "TavrinCore/Kinds/System/NetworkSettings.h"
#include "TavrinWidgetsUI/System/Samplers/ReadingHistory.h"
#include "TavrinWidgetsUI/System/Samplers/SystemReadings.h"
#include "TavrinWidgetsUI/System/Samplers/SystemSampler.h"

namespace tavrin {

/// Traffic of one link, or of all.
class NetworkSampler final : public SamplerOf<NetworkSettings> {
public:
  /// `readings` outlives it.
  explicit NetworkSampler(const SystemReadings& readings) : readings_(readings) {}

  const NetworkReading& reading() const { return history_.now(); }
  const std::vector<NetworkReading>& history() const { return history_.past(); }
  bool setSettings(const NetworkSettings& settings) override;
  /// Nobody sampled for a while, or another link is measured.
  void forget();
  /// The time since the last sample is not known any more.
  void forgetBaseline() { last_.reset(); }

  double interval(const SampleMoment& moment) const override { return moment.paced(2); }
  bool read(const SampleMoment& moment, Date before) override;
  bool isRate() const override { return true; }

private:
  struct Baseline {
    SystemReadings::NetworkTotals totals;
    Date date;
  };

  const SystemReadings& readings_;
  NetworkSettings settings_;
  ReadingHistory<NetworkReading> history_;
  std::optional<Baseline> last_;
};

} // namespace tavrin

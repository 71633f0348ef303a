#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Widgets/DockWidget.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace tavrin {

/// What a sampler is asked at, or samples at.
struct SampleMoment {
  Date now;
  const Calendar& calendar;
  bool showsPanel = false;
  /// Somebody can see the tile or the panel.
  bool isInSight = true;
  bool savesEnergy = false;
  bool reducesMotion = false;

  /// Seconds between two samples, by the pace of a computer that may be saving energy.
  double paced(double interval) const {
    constexpr double energySavingInterval = 3;
    return savesEnergy ? std::max(interval, energySavingInterval) : interval;
  }
};

/// Keeps one kind of the system group current. The model asks it when, and has it sample then.
class SystemSampler {
public:
  static constexpr double minute = 60;

  virtual ~SystemSampler() = default;
  /// Goes by the settings of a widget of its kind from now on; no value where the widget is another
  /// sampler's. Whether something else is measured than by the settings before.
  virtual std::optional<bool> take(const DockWidget::Kind& kind) = 0;
  /// Seconds between two samples; for countdowns the shortest there is.
  virtual double interval(const SampleMoment& moment) const = 0;
  /// When to sample again; no value when nothing changes by itself.
  virtual std::optional<Date> next(const SampleMoment& moment) const {
    return moment.now + interval(moment);
  }
  /// Takes a sample, the last one having been taken at `before`. Whether what is shown differs.
  virtual bool read(const SampleMoment& moment, Date before) = 0;
  /// A rate between two samples: one taken out of turn would measure next to nothing.
  virtual bool isRate() const { return false; }
};

/// The sampler of the widgets that have these settings.
template <class Settings> class SamplerOf : public SystemSampler {
public:
  std::optional<bool> take(const DockWidget::Kind& kind) final {
    const auto* settings = kind.get<Settings>();
    return settings != nullptr ? std::optional(setSettings(*settings)) : std::nullopt;
  }
  /// Whether something else is measured from now on.
  virtual bool setSettings(const Settings&) { return false; }
};

/// The first moment after `now` that is a multiple of `step` away from `origin`.
inline Date nextOnGrid(Date origin, double step, Date now) {
  const Date next = origin + (std::floor(now.since(origin) / step) + 1) * step;
  return next > now ? next : now + step;
}

} // namespace tavrin

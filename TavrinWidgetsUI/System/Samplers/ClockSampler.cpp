#include "TavrinWidgetsUI/System/Samplers/ClockSampler.h"

#include "TavrinCore/Kinds/System/ClockSettings.h"

namespace tavrin {

ClockReading ClockSampler::reading(Date now, const Calendar& calendar) const {
  if (!reader_)
    reader_.emplace(settings_, calendar);
  return reader_->at(now);
}

bool ClockSampler::setSettings(const ClockSettings& settings) {
  if (settings != settings_)
    forget();
  settings_ = settings;
  return false;
}

double ClockSampler::interval(const SampleMoment& moment) const {
  return moment.paced(settings_.showsSeconds ? 1 : glide);
}

std::optional<Date> ClockSampler::next(const SampleMoment& moment) const {
  return nextOnGrid({}, interval(moment), moment.now);
}

bool ClockSampler::read(const SampleMoment& moment, Date before) {
  const double step = settings_.showsSeconds ? 1 : settings_.isAnalog ? glide : minute;
  const auto cell = [&](Date date) { return std::floor(date.secondsSinceReferenceDate / step); };
  return cell(before) != cell(moment.now);
}

} // namespace tavrin

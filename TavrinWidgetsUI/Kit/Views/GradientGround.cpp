#include "TavrinWidgetsUI/Kit/Views/GradientGround.h"

#include "TavrinWidgetsUI/Kit/Views/Colour.h"

namespace tavrin {

namespace {

/// White or black, whichever stands out more in the middle.
QColor inkBetween(const QColor& from, const QColor& to) {
  const QColor middle = mix(from, to, 0.5);
  return contrast(palette::white, middle) >= contrast(palette::black, middle) ? palette::white
                                                                              : palette::black;
}

} // namespace

GradientGround GradientGround::legible() const {
  constexpr double ratio = 4.6;
  const QColor ink = inkBetween(from, to);
  const QColor away = ink == palette::white ? palette::black : palette::white;
  const auto towards = [&](const QColor& end) {
    double low = 0;
    double high = contrast(ink, end) >= ratio ? 0 : 1;
    for (int step = 0; step < 12 && high > 0; ++step) {
      const double share = (low + high) / 2;
      (contrast(ink, mix(end, away, share)) >= ratio ? high : low) = share;
    }
    return mix(end, away, high);
  };
  return {towards(from), towards(to)};
}

QColor GradientGround::harder() const {
  const QColor ink = inkBetween(from, to);
  return contrast(ink, from) < contrast(ink, to) ? from : to;
}

} // namespace tavrin

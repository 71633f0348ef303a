#include "TavrinWidgetsUI/Kit/Views/Colour.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tavrin {

namespace {

constexpr double figureOpacity = 0.92;
constexpr double captionOpacity = 0.60;

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double contrastOf(double a, double b) {
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

/// White or black, whichever stands out more.
QColor inkOn(const QColor& ground) {
  const double light = luminance(ground);
  return contrastOf(1, light) >= contrastOf(light, 0) ? palette::white : palette::black;
}

} // namespace

std::optional<QColor> colourFromHex(std::string_view hex) {
  if (hex.starts_with('#'))
    hex.remove_prefix(1);
  if (hex.size() != 6)
    return std::nullopt;
  unsigned value = 0;
  const auto [end, error] = std::from_chars(hex.data(), hex.data() + hex.size(), value, 16);
  if (error != std::errc() || end != hex.data() + hex.size())
    return std::nullopt;
  return QColor::fromRgb(static_cast<QRgb>(value));
}

QColor colourFromHex(std::string_view hex, const QColor& fallback) {
  return colourFromHex(hex).value_or(fallback);
}

double luminance(const QColor& colour) {
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double contrast(const QColor& colour, const QColor& ground) {
  return contrastOf(luminance(over(colour, ground)), luminance(ground));
}

QColor mix(const QColor& a, const QColor& b, double share) {
  const auto t = static_cast<float>(std::clamp(share, 0.0, 1.0));
  const auto channel = [t](float from, float to) {
    return std::clamp(from + (to - from) * t, 0.f, 1.f);
  };
  return QColor::fromRgbF(channel(a.redF(), b.redF()), channel(a.greenF(), b.greenF()),
                          channel(a.blueF(), b.blueF()), channel(a.alphaF(), b.alphaF()));
}

QColor over(const QColor& colour, const QColor& ground) {
  QColor opaque = colour;
  opaque.setAlpha(255);
  return mix(ground, opaque, colour.alphaF());
}

QColor withOpacity(const QColor& colour, double opacity) {
  QColor result = colour;
  result.setAlphaF(colour.alphaF() * static_cast<float>(std::clamp(opacity, 0.0, 1.0)));
  return result;
}

QColor withContrast(const QColor& colour, const QColor& ground, double ratio) {
  // Channels are rounded to whole numbers when they are painted.
  ratio += 0.02;
  if (contrast(colour, ground) >= ratio)
    return colour;
  const QColor ink = inkOn(ground);
  double low = 0;
  double high = 1;
  for (int step = 0; step < 12; ++step) {
    const double share = (low + high) / 2;
    (contrast(mix(colour, ink, share), ground) >= ratio ? high : low) = share;
  }
  return mix(colour, ink, high);
}

namespace palette {

QColor figure(const QColor& ground) {
  return withContrast(withOpacity(inkOn(ground), figureOpacity), ground);
}

QColor caption(const QColor& ground) {
  return withContrast(withOpacity(inkOn(ground), captionOpacity), ground);
}

} // namespace palette

} // namespace tavrin

#pragma once

#include <QColor>
#include <optional>
#include <string_view>

namespace tavrin {

/// "#RRGGBB" with or without "#", in either case; no value for anything else.
std::optional<QColor> colourFromHex(std::string_view hex);
/// "#RRGGBB", or `fallback` where it does not parse.
QColor colourFromHex(std::string_view hex, const QColor& fallback);

/// Relative luminance 0...1 of the opaque colour, as WCAG 2.1 defines it.
double luminance(const QColor& colour);
/// WCAG 2.1 contrast ratio 1...21; a translucent `colour` is laid over `ground` first.
double contrast(const QColor& colour, const QColor& ground);
/// `share` 0 gives `a`, 1 gives `b`; alpha is mixed too.
QColor mix(const QColor& a, const QColor& b, double share);
/// What one sees of a translucent `colour` on an opaque `ground`.
QColor over(const QColor& colour, const QColor& ground);
/// `colour` with its alpha times `opacity`.
QColor withOpacity(const QColor& colour, double opacity);
/// `colour` itself where its contrast suffices, else mixed towards white or black, whichever
/// `ground` allows, by the least share that reaches `ratio` (or as near as there is).
QColor withContrast(const QColor& colour, const QColor& ground, double ratio = 4.5);

/// The colours that all tiles share. A kind adds its ground and its tint.
namespace palette {
inline constexpr QColor ground{0x12, 0x12, 0x14};
inline constexpr QColor track{0x2E, 0x2E, 0x33};
inline constexpr QColor white{255, 255, 255};
inline constexpr QColor black{0, 0, 0};
inline constexpr QColor warning{0xFF, 0xD6, 0x0A};
inline constexpr QColor red{0xFF, 0x45, 0x3A};
inline constexpr QColor orange{0xFF, 0x9F, 0x0A};
inline constexpr QColor green{0x30, 0xD1, 0x58};
inline constexpr QColor teal{0x40, 0xC8, 0xE0};
inline constexpr QColor blue{0x0A, 0x84, 0xFF};
inline constexpr QColor purple{0xBF, 0x5A, 0xF2};
inline constexpr QColor pink{0xFF, 0x37, 0x5F};

/// Ink for figures and captions on `ground`: white at 92 % and 60 % on a dark ground, black
/// likewise on a light one, and more where a contrast of 4.5 needs it.
QColor figure(const QColor& ground = palette::ground);
QColor caption(const QColor& ground = palette::ground);
} // namespace palette

} // namespace tavrin

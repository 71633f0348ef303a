#include "TavrinWidgetsUI/Kit/Panels/PanelPalette.h"

#include "TavrinWidgetsUI/Kit/Views/Colour.h"

#include <initializer_list>

namespace tavrin {

namespace {

/// `colour` with its contrast on each of `grounds`, which are all light or all dark.
QColor legible(QColor colour, std::initializer_list<QColor> grounds) {
  for (const QColor& ground : grounds)
    colour = withContrast(colour, ground, 4.6);
  return colour;
}

/// A fill one can tell from the ground, and that white words stand on where the tint allows.
QColor fillFor(const QColor& tint, const QColor& ground, bool dark) {
  if (!dark)
    return withContrast(tint, ground, 4.6);
  const bool takesWhite = contrast(palette::white, tint) >= 2.4;
  return withContrast(takesWhite ? withContrast(tint, palette::white, 4.6) : tint, ground, 3);
}

} // namespace

namespace {

/// Black and white, with the tint only where it says something and as far as it has the contrast.
PanelPalette highContrastPalette(const PanelAppearance& appearance) {
  const bool dark = appearance.dark;
  const QColor tint(appearance.tint.red(), appearance.tint.green(), appearance.tint.blue());
  PanelPalette p;
  p.ground = dark ? palette::black : palette::white;
  p.text = dark ? palette::white : palette::black;
  const auto veil = [&](double weight) { return mix(p.ground, p.text, weight); };
  p.secondary = veil(0.85);
  p.disabledText = veil(0.66);
  p.hairline = p.fieldBorder = p.outline = veil(0.7);
  p.control = veil(0.12);
  p.controlHover = veil(0.2);
  p.controlPressed = veil(0.28);
  p.field = p.ground;
  p.rowHover = veil(0.1);
  p.rowPressed = veil(0.2);
  p.track = veil(0.4);
  const QColor strong = withContrast(tint, p.ground, 7.1);
  p.rowSelected = mix(p.ground, strong, 0.25);
  p.chosen = veil(0.3);
  const std::initializer_list<QColor> grounds = {p.ground,      p.rowHover, p.rowPressed,
                                                 p.rowSelected, p.control,  p.chosen};
  p.accent = legible(strong, grounds);
  p.trouble = legible(dark ? QColor(0xFF, 0x8A, 0x84) : QColor(0xA0, 0x00, 0x00), grounds);
  p.fill = strong;
  p.onFill = p.ground;
  const bool hasRoom = contrast(p.fill, p.text) > 2;
  const QColor away = hasRoom ? p.text : p.ground;
  p.fillHover = mix(p.fill, away, 0.15);
  p.fillPressed = mix(p.fill, away, 0.3);
  return p;
}

} // namespace

PanelPalette PanelPalette::make(const PanelAppearance& appearance) {
  if (appearance.highContrast)
    return highContrastPalette(appearance);
  const bool dark = appearance.dark;
  const QColor tint(appearance.tint.red(), appearance.tint.green(), appearance.tint.blue());
  PanelPalette p;
  p.ground = dark ? QColor(0x1E, 0x1E, 0x22) : QColor(0xF6, 0xF6, 0xF8);
  p.text = dark ? QColor(0xF2, 0xF2, 0xF5) : QColor(0x1C, 0x1C, 0x1E);
  const QColor ink = dark ? palette::white : palette::black;
  const auto veil = [&](double light, double darkness) {
    return mix(p.ground, ink, dark ? darkness : light);
  };
  p.hairline = veil(0.10, 0.12);
  p.control = veil(0.06, 0.09);
  p.controlHover = veil(0.10, 0.13);
  p.controlPressed = veil(0.15, 0.18);
  p.field = dark ? veil(0, 0.05) : palette::white;
  p.fieldBorder = veil(0.16, 0.20);
  p.chosen = dark ? veil(0, 0.26) : palette::white;
  p.rowHover = veil(0.04, 0.06);
  p.rowPressed = veil(0.09, 0.11);
  p.track = veil(0.18, 0.22);
  p.outline = withContrast(p.track, p.ground, 3.1);
  p.accent = withContrast(tint, p.ground, 4.6);
  p.rowSelected = mix(p.ground, p.accent, dark ? 0.20 : 0.13);
  const auto readable = [&p](const QColor& colour) {
    return legible(colour, {p.ground, p.field, p.rowHover, p.rowPressed, p.rowSelected, p.control});
  };
  p.accent = readable(p.accent);
  p.secondary = readable(mix(p.ground, p.text, 0.6));
  p.disabledText = readable(mix(p.ground, p.text, 0.38));
  p.trouble = readable(dark ? QColor(0xFF, 0x69, 0x61) : QColor(0xD7, 0x1F, 0x18));
  p.fill = fillFor(tint, p.ground, dark);
  const QColor deep(0x1C, 0x1C, 0x1E);
  p.onFill = contrast(palette::white, p.fill) >= 4.5 ? palette::white : deep;
  // Away from what stands on it, but where there is no way left.
  const bool darker =
      p.onFill == palette::white ? luminance(p.fill) > 0.03 : luminance(p.fill) > 0.85;
  const QColor away = darker ? palette::black : palette::white;
  p.fillHover = mix(p.fill, away, 0.10);
  p.fillPressed = mix(p.fill, away, 0.22);
  return p;
}

// A QPalette has fewer roles than a panel has colours. What Qt's own painting never asks for in
// a disabled widget is kept in that group.
QPalette PanelPalette::palette() const {
  QPalette q;
  const auto all = [&q](QPalette::ColorRole role, const QColor& colour) {
    q.setColor(QPalette::All, role, colour);
  };
  all(QPalette::Window, ground);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    all(role, text);
    q.setColor(QPalette::Disabled, role, disabledText);
  }
  all(QPalette::PlaceholderText, secondary);
  q.setColor(QPalette::Disabled, QPalette::PlaceholderText, disabledText);
  all(QPalette::Mid, hairline);
  all(QPalette::Link, accent);
  all(QPalette::Highlight, fill);
  all(QPalette::HighlightedText, onFill);
  all(QPalette::Button, control);
  all(QPalette::Light, controlHover);
  all(QPalette::Dark, controlPressed);
  all(QPalette::Base, field);
  all(QPalette::LinkVisited, fieldBorder);
  all(QPalette::Midlight, rowHover);
  all(QPalette::Shadow, rowPressed);
  all(QPalette::AlternateBase, rowSelected);
  all(QPalette::BrightText, trouble);
  all(QPalette::ToolTipBase, field);
  all(QPalette::ToolTipText, text);
  q.setColor(QPalette::Disabled, QPalette::Link, fillHover);
  q.setColor(QPalette::Disabled, QPalette::LinkVisited, fillPressed);
  q.setColor(QPalette::Disabled, QPalette::BrightText, track);
  q.setColor(QPalette::Disabled, QPalette::AlternateBase, chosen);
  q.setColor(QPalette::Disabled, QPalette::Midlight, outline);
  return q;
}

PanelPalette PanelPalette::from(const QPalette& q) {
  const auto active = [&q](QPalette::ColorRole role) { return q.color(QPalette::Active, role); };
  const auto spare = [&q](QPalette::ColorRole role) { return q.color(QPalette::Disabled, role); };
  PanelPalette p;
  p.ground = active(QPalette::Window);
  p.text = active(QPalette::WindowText);
  p.secondary = active(QPalette::PlaceholderText);
  p.disabledText = spare(QPalette::WindowText);
  p.hairline = active(QPalette::Mid);
  p.accent = active(QPalette::Link);
  p.fill = active(QPalette::Highlight);
  p.fillHover = spare(QPalette::Link);
  p.fillPressed = spare(QPalette::LinkVisited);
  p.onFill = active(QPalette::HighlightedText);
  p.control = active(QPalette::Button);
  p.controlHover = active(QPalette::Light);
  p.controlPressed = active(QPalette::Dark);
  p.field = active(QPalette::Base);
  p.fieldBorder = active(QPalette::LinkVisited);
  p.chosen = spare(QPalette::AlternateBase);
  p.rowHover = active(QPalette::Midlight);
  p.rowPressed = active(QPalette::Shadow);
  p.rowSelected = active(QPalette::AlternateBase);
  p.track = spare(QPalette::BrightText);
  p.outline = spare(QPalette::Midlight);
  p.trouble = active(QPalette::BrightText);
  return p;
}

} // namespace tavrin

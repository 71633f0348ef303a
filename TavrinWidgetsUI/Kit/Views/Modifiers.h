#pragma once

#include "TavrinWidgetsUI/Kit/Views/AnyView.h"
#include "TavrinWidgetsUI/Kit/Views/Shape.h"

namespace tavrin::modifiers {

/// What the chained modifiers make; call those instead.
AnyView padding(AnyView content, const Insets& insets);
AnyView frame(AnyView content, const FrameLimits& limits, Alignment alignment);
AnyView background(AnyView content, AnyView under);
AnyView overlay(AnyView content, AnyView above, Alignment alignment);
AnyView clip(AnyView content, const Shape& shape);
AnyView opacity(AnyView content, double opacity);
AnyView rotation(AnyView content, double degrees);
AnyView quarterTurns(AnyView content, int turns);
AnyView offset(AnyView content, double dx, double dy);
AnyView button(AnyView content, const ViewAction& action, const QString& label);
AnyView accessibility(AnyView content, const QString& label, const QString& value);
AnyView unmirrored(AnyView content);
AnyView cached(AnyView content);
AnyView cachedAsBase(AnyView content);

} // namespace tavrin::modifiers

namespace tavrin {

template <class Self> const Self& selfOf(const Modifiers<Self>& view) {
  return static_cast<const Self&>(view);
}

template <class Self> AnyView Modifiers<Self>::padding(double all) const {
  return modifiers::padding(selfOf(*this), {all, all, all, all});
}
template <class Self> AnyView Modifiers<Self>::padding(double horizontal, double vertical) const {
  return modifiers::padding(selfOf(*this), {horizontal, vertical, horizontal, vertical});
}
template <class Self> AnyView Modifiers<Self>::padding(const Insets& insets) const {
  return modifiers::padding(selfOf(*this), insets);
}
template <class Self>
AnyView Modifiers<Self>::frame(double width, double height, Alignment alignment) const {
  return modifiers::frame(selfOf(*this), {width, width, height, height}, alignment);
}
template <class Self>
AnyView Modifiers<Self>::frame(const FrameLimits& limits, Alignment alignment) const {
  return modifiers::frame(selfOf(*this), limits, alignment);
}
template <class Self> AnyView Modifiers<Self>::width(double width, Alignment alignment) const {
  return modifiers::frame(selfOf(*this), {.minWidth = width, .maxWidth = width}, alignment);
}
template <class Self> AnyView Modifiers<Self>::height(double height, Alignment alignment) const {
  return modifiers::frame(selfOf(*this), {.minHeight = height, .maxHeight = height}, alignment);
}
template <class Self> AnyView Modifiers<Self>::fill(Alignment alignment) const {
  return modifiers::frame(selfOf(*this), {.maxWidth = unbounded, .maxHeight = unbounded},
                          alignment);
}
template <class Self> AnyView Modifiers<Self>::fillWidth(Alignment alignment) const {
  return modifiers::frame(selfOf(*this), {.maxWidth = unbounded}, alignment);
}
template <class Self> AnyView Modifiers<Self>::background(const AnyView& under) const {
  return modifiers::background(selfOf(*this), under);
}
template <class Self>
AnyView Modifiers<Self>::overlay(const AnyView& above, Alignment alignment) const {
  return modifiers::overlay(selfOf(*this), above, alignment);
}
template <class Self> AnyView Modifiers<Self>::clip(const Shape& shape) const {
  return modifiers::clip(selfOf(*this), shape);
}
template <class Self> AnyView Modifiers<Self>::opacity(double opacity) const {
  return modifiers::opacity(selfOf(*this), opacity);
}
template <class Self> AnyView Modifiers<Self>::rotation(double degrees) const {
  return modifiers::rotation(selfOf(*this), degrees);
}
template <class Self> AnyView Modifiers<Self>::quarterTurns(int turns) const {
  return modifiers::quarterTurns(selfOf(*this), turns);
}
template <class Self> AnyView Modifiers<Self>::offset(double dx, double dy) const {
  return modifiers::offset(selfOf(*this), dx, dy);
}
template <class Self>
AnyView Modifiers<Self>::button(const ViewAction& action, const QString& label) const {
  return modifiers::button(selfOf(*this), action, label);
}
template <class Self>
AnyView Modifiers<Self>::accessibility(const QString& label, const QString& value) const {
  return modifiers::accessibility(selfOf(*this), label, value);
}
template <class Self> AnyView Modifiers<Self>::unmirrored() const {
  return modifiers::unmirrored(selfOf(*this));
}
template <class Self> AnyView Modifiers<Self>::cached() const {
  return modifiers::cached(selfOf(*this));
}

} // namespace tavrin

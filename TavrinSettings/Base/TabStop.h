#pragma once

#include <QWidget>
#include <algorithm>
#include <vector>

namespace tavrin {

/// Makes widgets, within which the arrows lead on, one stop of Tab: at `wanted`, or at the first of
/// them where that is none of them. Which one it is; null where there are none.
template <class Widget>
Widget* makeTabStop(const std::vector<Widget*>& widgets, const Widget* wanted) {
  const auto found = std::ranges::find(widgets, wanted);
  Widget* stop = found != widgets.end() ? *found : widgets.empty() ? nullptr : widgets.front();
  for (auto* widget : widgets)
    widget->setFocusPolicy(widget == stop ? Qt::StrongFocus : Qt::ClickFocus);
  return stop;
}

} // namespace tavrin

#pragma once

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Kinds/System/TimeProgressSettings.h"

namespace tavrin {

/// How much of the current day, week, month or year has passed.
struct TimeProgress {
  using Scope = TimeProgressScope;

  /// 0 to 1.
  static double fraction(Scope scope, Date date, const Calendar& calendar);
  /// Whole percent, 0 to 100.
  static int percentLeft(Scope scope, Date date, const Calendar& calendar);
};

} // namespace tavrin

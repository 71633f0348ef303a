#pragma once

#include "TavrinCore/Base/Calendar.h"

namespace tavrin {

/// The widest words and a 24-hour clock; a 12-hour clock. Both in one time zone.
inline const Calendar& german() {
  static const Calendar calendar("Europe/Berlin", "de_DE");
  return calendar;
}
inline const Calendar& american() {
  static const Calendar calendar("Europe/Berlin", "en_US");
  return calendar;
}

} // namespace tavrin

#pragma once

#include "TavrinCore/Base/Calendar.h"

namespace tavrin {

inline const Calendar berlin("Europe/Berlin", "en_GB");
/// Monday, 9 March 2026.
inline const Date noon = berlin.date({2026, 3, 9, 12, 0, 0, 1});

} // namespace tavrin

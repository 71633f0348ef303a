#pragma once

#include "TavrinHost/Widgets/WidgetLibrary.h"

namespace tavrin {

/// What a first user gets: a Pomodoro, a timer, a clock, a countdown to the new year, the day's
/// progress and a note, all placed. Announced once.
void makeStarterSet(WidgetLibrary& library, Date now);

} // namespace tavrin

#pragma once

#include "TavrinHost/Widgets/WidgetLibrary.h"

namespace tavrin {

/// What a first user gets: a Pomodoro, a timer, a clock, a countdown to the new year, the day's
/// progress and a note, all placed.
void addStarterSet(WidgetStore& store, Date now);
/// The same as one change, announced once.
void makeStarterSet(WidgetLibrary& library, Date now);

} // namespace tavrin

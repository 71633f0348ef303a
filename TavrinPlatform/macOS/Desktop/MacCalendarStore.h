#pragma once

#include "TavrinPlatform/CalendarStore.h"

#include <memory>

namespace tavrin {

/// EventKit, by one store for the process. Events are read on a thread of their own; accounts and
/// calendars, which the system keeps in no order, come by name. Write-only access counts as none.
std::unique_ptr<CalendarStore> makeMacCalendarStore(RunLoop& runLoop);

} // namespace tavrin

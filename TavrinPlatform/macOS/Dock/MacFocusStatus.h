#pragma once

#include "TavrinPlatform/FocusStatusProvider.h"

#include <memory>

namespace tavrin {

/// The system's focus-status centre. Without the user's consent, which the system asks for only of
/// applications signed by a team, there is no value.
std::unique_ptr<FocusStatusProvider> makeMacFocusStatus();

} // namespace tavrin

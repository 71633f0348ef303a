#pragma once

#include "TavrinPlatform/ColourSampler.h"

#include <memory>

namespace tavrin {

/// NSColorSampler, which needs no permission. The system lets nobody but the user end it: a token
/// that goes only drops the answer.
std::unique_ptr<ColourSampler> makeMacColourSampler();

} // namespace tavrin

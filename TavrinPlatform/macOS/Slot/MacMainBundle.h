#pragma once

#include "TavrinPlatform/MainBundle.h"

#include <memory>

namespace tavrin {

/// NSBundle's main bundle. A program outside a bundle has no path and no entries: the system names
/// the folder it lies in then, which is no bundle.
std::unique_ptr<MainBundle> makeMacMainBundle();

} // namespace tavrin

#pragma once

#include "TavrinPlatform/Pasteboard.h"

#include <memory>

namespace tavrin {

/// NSPasteboard's general one. The system tells of no change: its count is looked at twice a
/// second, which asks nobody. What was copied is read off the main thread, since its owner may be
/// slow, and only of the first type there is: files, TIFF, PNG, text. Nothing is ever abandoned:
/// the system keeps what a program has copied.
std::unique_ptr<Pasteboard> makeMacPasteboard(RunLoop& runLoop);

} // namespace tavrin

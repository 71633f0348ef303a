#pragma once

#include "TavrinCore/Base/Log.h"
#include "TavrinPlatform/UserDefaults.h"

#include <memory>

namespace tavrin {

/// The application's own domain of NSUserDefaults. Texts, booleans and numbers are stored as such,
/// so that `defaults write` can set them; whole documents as data holding JSON.
std::unique_ptr<UserDefaults> makeMacUserDefaults(LogSink& log);

} // namespace tavrin

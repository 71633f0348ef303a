#pragma once

#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/RunningApplications.h"

#include <memory>

namespace tavrin {

/// Bundles are started through the system, which charges permissions to them and not to whoever
/// asked; what they print goes to the system log then. Other programs are started as children in a
/// session of their own. An identifier that a program without a bundle claims is a locked file in
/// the caches folder.
std::unique_ptr<RunningApplications> makeMacRunningApplications(const FileManager& files);

} // namespace tavrin

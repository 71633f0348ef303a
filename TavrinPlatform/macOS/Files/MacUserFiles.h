#pragma once

#include "TavrinPlatform/UserFiles.h"

#include <memory>

namespace tavrin {

/// NSFileManager, NSWorkspace and the screenshot program's own setting. The user is asked before
/// the Desktop's and the Downloads folder's first file is read.
std::unique_ptr<UserFiles> makeMacUserFiles();

} // namespace tavrin

#pragma once

#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/Workspace.h"

#include <memory>

namespace tavrin {

/// NSWorkspace, NSProcessInfo and the application's appearance. TAVRIN_APPEARANCE ("light" or
/// "dark") stands above the latter. The interface's font is the system's own: no family is named.
std::unique_ptr<Workspace> makeMacWorkspace(const FileManager& files);

} // namespace tavrin

#pragma once

#include "TavrinPlatform/FileManager.h"

#include <map>
#include <memory>

namespace tavrin {

/// NSFileManager's folders, and the environment as it is now.
std::unique_ptr<FileManager> makeMacFileManager();

/// The same folders for a process of this user that was started with another environment.
std::unique_ptr<FileManager> makeMacFileManager(std::map<std::string, std::string> environment);

} // namespace tavrin

#pragma once

#include <dirent.h>
#include <memory>

namespace tavrin {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

/// A folder whose entries are being read.
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

} // namespace tavrin

#pragma once

#include "TavrinPlatform/Files/Descriptor.h"

#include <string_view>
#include <sys/types.h>

namespace tavrin {

/// A descriptor that can be read from once the child `process` has ended; it has to be waited for
/// still. Without one where the system refuses.
Descriptor exitOf(pid_t process);
/// The same on a system without such descriptors: a thread waits for the child, as long as it runs.
Descriptor exitByThread(pid_t process);

/// A file without a name that holds `bytes`, to be read from its start: no writer has to wait.
Descriptor fileOf(std::string_view bytes);
/// The same on a system without files in memory: among the temporary ones, for the owner alone.
Descriptor temporaryFileOf(std::string_view bytes);

} // namespace tavrin

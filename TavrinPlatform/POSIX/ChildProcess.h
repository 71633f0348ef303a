#pragma once

#include "TavrinPlatform/Files/Descriptor.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

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

/// What a program writes to its standard output until it ends, with the words it is started with;
/// waits for it. No value where it cannot be run, fails, or takes longer than `limit`, which ends
/// it. For short answers of tools that answer at once.
std::optional<std::string> outputOf(const std::vector<std::string>& words,
                                    std::chrono::milliseconds limit);

} // namespace tavrin

#pragma once

#include "TavrinCommand/Base/CommandContext.h"

namespace tavrin {

void addDoctorCommands(CLI::App& app, CommandContext& context);

} // namespace tavrin

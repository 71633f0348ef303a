#pragma once

#include "TavrinCommand/CommandContext.h"

namespace tavrin {

void addDoctorCommands(CLI::App& app, CommandContext& context);

} // namespace tavrin

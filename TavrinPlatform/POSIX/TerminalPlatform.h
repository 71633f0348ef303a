#pragma once

#include "TavrinPlatform/CommandPlatform.h"

namespace tavrin {

/// What is the same of a command's platform on every Unix: the terminal and the program itself.
class TerminalPlatform : public CommandPlatform {
public:
  std::filesystem::path program() override;
  bool ownsTerminal() override;
  int runInForeground(const std::vector<std::string>& words) override;
};

} // namespace tavrin

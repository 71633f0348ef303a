#include "TavrinCommand/Program.h"
#include "TavrinPlatform/CommandPlatform.h"
#include "TavrinPlatform/Files/TextsFile.h"

int main(int count, char** words) {
  tavrin::loadTexts();
  const auto platform = tavrin::makeCommandPlatform();
  auto console = tavrin::standardConsole();
  tavrin::CommandContext context(*platform, console);
  return tavrin::runCommandLine(context, {words + 1, words + count});
}

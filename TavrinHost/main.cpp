#include "TavrinHost/Program.h"
#include "TavrinPlatform/Linux/LinuxCommandPlatform.h"

int main(int count, char** words) {
  tavrin::LinuxCommandPlatform platform;
  auto console = tavrin::standardConsole();
  tavrin::HostContext context(platform, console);
  return tavrin::runCommandLine(context, {words + 1, words + count});
}

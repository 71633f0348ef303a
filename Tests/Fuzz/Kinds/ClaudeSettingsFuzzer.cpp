#include "TavrinStorage/ClaudeUsage/ClaudeUsageBridge.h"

#include "TavrinPlatform/Files/AtomicFile.h"

#include <cstdint>
#include <cstdlib>
#include <fstream>

namespace {

using namespace tavrin;
namespace fs = std::filesystem;

class Home final : public FileManager {
public:
  Home() {
    auto pattern = (fs::temp_directory_path() / "tavrin-fuzz-XXXXXX").string();
    folder = ::mkdtemp(pattern.data());
    fs::create_directory(folder / ".claude");
  }
  ~Home() override {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }
  fs::path homeFolder() const override { return folder; }
  fs::path applicationSupportFolder() const override { return folder / "support"; }
  fs::path cachesFolder() const override { return folder; }
  fs::path stateFolder() const override { return folder; }
  std::optional<std::string> environment(const std::string&) const override { return {}; }

  fs::path folder;
};

} // namespace

/// Connecting, twice, and disconnecting gives the settings back, but for a status line that had no
/// command; settings that cannot be read stay to the byte.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const Home home;
  static const ClaudeUsageBridge bridge(home);
  const std::string text(reinterpret_cast<const char*>(bytes), size);
  std::ofstream(bridge.settingsURL(), std::ios::binary) << text;
  try {
    bridge.connect();
  } catch (const ClaudeUsageBridge::BridgeError&) {
    if (readFile(bridge.settingsURL()) != text)
      std::abort();
    return 0;
  }
  bridge.connect();
  if (!bridge.isConnected())
    std::abort();
  bridge.disconnect();
  auto before = JSONValue::parse(text);
  auto after = JSONValue::parse(*readFile(bridge.settingsURL()));
  const auto* line = before.member("statusLine");
  const auto* command = line == nullptr ? nullptr : line->member("command");
  if (command != nullptr && command->string() != nullptr && !command->string()->empty() &&
      *after.member("statusLine")->member("command") != *command)
    std::abort();
  before.object()->erase("statusLine");
  after.object()->erase("statusLine");
  if (before != after)
    std::abort();
  return 0;
}

#include "TavrinCore/Kinds/Fans/FanControl.h"
#include "TavrinPlatform/Linux/Devices/SysfsFans.h"

#include <cstdlib>
#include <fstream>
#include <string_view>
#include <unistd.h>

/// A machine whose files hold anything, and a record of a former helper that does too. Only the
/// errors of the fans come out of it; what was forced is handed back; files outside of the machine
/// are not touched.
namespace {

using namespace tavrin;
namespace fs = std::filesystem;

constexpr const char* files[] = {"hwmon0/device/fan1_input",  "hwmon0/device/fan1_min",
                                 "hwmon0/device/fan1_max",    "hwmon0/device/fan1_manual",
                                 "hwmon0/device/fan1_output", "hwmon1/fan1_input",
                                 "hwmon1/fan1_max",           "hwmon1/pwm1",
                                 "hwmon1/pwm1_enable"};

struct Machine {
  Machine() : root("/dev/shm/fans-" + std::to_string(::getpid())) {
    for (const char* file : files)
      fs::create_directories((classFolder() / file).parent_path());
  }
  ~Machine() { fs::remove_all(root); }
  fs::path classFolder() const { return root / "sys/class/hwmon"; }

  static void write(const fs::path& file, std::string_view text) {
    std::ofstream(file, std::ios::binary) << text;
  }
  std::string read(const char* file) const {
    std::ifstream stream(classFolder() / file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  fs::path root;
};

template <class Work> bool succeeds(const Work& work) {
  try {
    work();
    return true;
  } catch (const FanError&) {
    return false;
  }
}

} // namespace

/// Parts that NUL separates: the record, then each file in turn; what is missing is no file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const Machine machine;
  std::string_view rest(reinterpret_cast<const char*>(bytes), size);
  const auto next = [&] {
    const auto end = rest.find('\0');
    const auto part = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    return part;
  };
  const fs::path state = machine.root / "state";
  std::string record(next());
  // Paths of the record begin with the machine's folder, as the helper writes them.
  for (auto at = record.find("@/"); at != std::string::npos; at = record.find("@/", at + 1))
    record.replace(at, 1, machine.classFolder().string());
  Machine::write(state, record);
  for (const char* file : files) {
    const auto part = next();
    if (part.empty())
      fs::remove(machine.classFolder() / file);
    else
      Machine::write(machine.classFolder() / file, part);
  }
  SysfsFans fans(machine.root, state);
  FanControl control(fans, [](double) {});
  succeeds([&] { control.readings(); });
  for (const char* key : {"FNum", "Ftst", "F0Ac", "F0Tg", "F1Md", "F9Mx"})
    succeeds([&] { fans.read(key); });
  // What an earlier helper left is handed back first, as at each start.
  if (!succeeds([&] { control.setAuto(); }))
    return 0;
  const std::string mode = machine.read("hwmon1/pwm1_enable");
  succeeds([&] { control.setFull(); });
  SysfsFans later(machine.root, state);
  if (succeeds([&] { FanControl(later, [](double) {}).setAuto(); }) && !mode.empty() &&
      std::atol(machine.read("hwmon1/pwm1_enable").c_str()) != std::atol(mode.c_str()))
    std::abort();
  return 0;
}

#include "TavrinPlatform/Linux/Devices/SysfsFans.h"

#include "TavrinCore/Kinds/Fans/FanControl.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinPlatform/Files/Descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <unistd.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

constexpr long forcedMode = 1;
constexpr double fullPower = 255;
constexpr int mostFansOfADriver = 16;

/// A whole number in a file of sysfs; the error's number where there is none.
std::optional<long> readNumber(const fs::path& file, int& error) {
  std::array<char, 64> text{};
  const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  const ssize_t size = descriptor ? ::read(descriptor.number(), text.data(), text.size()) : -1;
  error = size < 0 ? errno : EINVAL;
  long number = 0;
  if (size <= 0 || std::from_chars(text.data(), text.data() + size, number).ec != std::errc())
    return std::nullopt;
  return number;
}

void writeNumber(const fs::path& file, long number, const std::string& key) {
  const std::string text = std::to_string(number) + "\n";
  const Descriptor descriptor(::open(file.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK));
  const ssize_t size = descriptor ? ::write(descriptor.number(), text.data(), text.size()) : -1;
  const int error = errno;
  if (size != static_cast<ssize_t>(text.size()))
    throw FanError::writeFailed(key, "the kernel returned " + std::to_string(error));
}

long readOrThrow(const fs::path& file, const std::string& key) {
  int error = 0;
  const auto number = readNumber(file, error);
  if (!number)
    throw FanError::readFailed(key, "the kernel returned " + std::to_string(error));
  return *number;
}

/// Also false where the folder may not be searched.
bool isThere(const fs::path& file) {
  std::error_code error;
  return fs::exists(file, error);
}

/// One for each file, whatever links lead to it.
fs::path withoutLinks(const fs::path& file) {
  std::error_code error;
  const fs::path found = fs::canonical(file, error);
  return error ? file : found;
}

SMCValue smcValue(double number, const char* type) {
  return {type, SMCValue::encoding(number, type).value_or(std::vector<std::uint8_t>())};
}

/// "F0Ac" as 0 and "Ac".
std::optional<std::pair<std::size_t, std::string>> fanKey(const std::string& key) {
  std::size_t index = 0;
  if (key.size() < 4 || key[0] != 'F')
    return std::nullopt;
  const char* last = key.data() + key.size() - 2;
  const auto [end, error] = std::from_chars(key.data() + 1, last, index);
  if (error != std::errc() || end != last)
    return std::nullopt;
  return std::pair{index, key.substr(key.size() - 2)};
}

} // namespace

SysfsFans::SysfsFans(const fs::path& root, fs::path state) : state_(std::move(state)) {
  std::error_code error;
  std::vector<fs::path> folders;
  for (fs::directory_iterator folder(root / "sys/class/hwmon", error), end; !error && folder != end;
       folder.increment(error))
    folders.push_back(folder->path());
  std::sort(folders.begin(), folders.end());
  for (const auto& folder : folders) {
    findFans(folder);
    // Some drivers, applesmc among them, have their files with the device.
    findFans(folder / "device");
  }
  loadState();
}

void SysfsFans::findFans(const fs::path& folder) {
  for (int number = 1; number <= mostFansOfADriver; ++number) {
    const std::string name = std::to_string(number);
    const auto file = [&](const std::string& stem, const char* suffix) {
      return folder / (stem + name + suffix);
    };
    Fan fan{file("fan", "_input"),          file("fan", "_min"), file("fan", "_max"), {}, {}, {},
            isThere(file("fan", "_manual"))};
    fan.mode = withoutLinks(fan.isAppleSMC ? file("fan", "_manual") : file("pwm", "_enable"));
    if (fan.isAppleSMC)
      fan.target = file("fan", "_output");
    else
      fan.power = file("pwm", "");
    // Several entries may lead to one device. Counted twice, a fan that is forced would be taken
    // for one that had been so before.
    const bool isKnown = std::ranges::find(fans_, fan.mode, &Fan::mode) != fans_.end();
    if (!isKnown && isThere(fan.input) && isThere(fan.mode) &&
        isThere(fan.isAppleSMC ? fan.target : fan.power))
      fans_.push_back(std::move(fan));
  }
}

double SysfsFans::speed(const fs::path& file, const std::string& key) const {
  // Many drivers do not know the limits.
  return isThere(file) ? static_cast<double>(readOrThrow(file, key)) : 0;
}

SMCValue SysfsFans::read(const std::string& key) {
  if (key == "FNum")
    return smcValue(static_cast<double>(std::min<std::size_t>(fans_.size(), 255)), "ui8 ");
  if (key == "Ftst")
    return smcValue(test_, "ui8 ");
  const auto parts = fanKey(key);
  if (!parts || parts->first >= fans_.size())
    throw FanError::readFailed(key, "the key does not exist");
  const Fan& fan = fans_[parts->first];
  if (parts->second == "Ac")
    return smcValue(static_cast<double>(readOrThrow(fan.input, key)), "flt ");
  if (parts->second == "Mn")
    return smcValue(speed(fan.minimum, key), "flt ");
  if (parts->second == "Mx")
    return smcValue(speed(fan.maximum, key), "flt ");
  if (parts->second == "Md")
    return smcValue(readOrThrow(fan.mode, key) == forcedMode ? 1 : 0, "ui8 ");
  if (parts->second == "Tg")
    return smcValue(static_cast<double>(readOrThrow(fan.isAppleSMC ? fan.target : fan.power, key)),
                    "flt ");
  throw FanError::readFailed(key, "the key does not exist");
}

void SysfsFans::write(const std::string& key, const std::vector<std::uint8_t>& bytes) {
  const auto number = SMCValue{key.ends_with("Tg") ? "flt " : "ui8 ", bytes}.number();
  if (key == "Ftst" && number) {
    test_ = static_cast<std::uint8_t>(*number);
    return;
  }
  const auto parts = fanKey(key);
  if (!parts || parts->first >= fans_.size() || !number || !std::isfinite(*number))
    throw FanError::writeFailed(key, "the key does not exist");
  if (parts->second == "Md")
    return setMode(parts->first, *number == 1, key);
  if (parts->second == "Tg")
    return setTarget(fans_[parts->first], *number, key);
  throw FanError::writeFailed(key, "the key does not exist");
}

void SysfsFans::setMode(std::size_t index, bool isForced, const std::string& key) {
  const Fan& fan = fans_[index];
  const std::string id = fan.mode.string();
  if (isForced) {
    if (!before_.contains(id)) {
      Setting setting{readOrThrow(fan.mode, key), -1};
      if (!setting.canBeRestored())
        throw FanError::readFailed(key, "the kernel returned " + std::to_string(ERANGE));
      int error = 0;
      if (!fan.isAppleSMC)
        setting.power = readNumber(fan.power, error).value_or(-1);
      before_[id] = setting;
      saveState(key);
    }
    return writeNumber(fan.mode, forcedMode, key);
  }
  const auto found = before_.find(id);
  if (found == before_.end()) {
    // Not forced by us: another program's manual control stays its own.
    return;
  }
  const Setting setting = found->second;
  if (!fan.isAppleSMC && setting.mode == forcedMode && setting.power >= 0)
    writeNumber(fan.power, setting.power, key);
  writeNumber(fan.mode, setting.mode, key);
  before_.erase(id);
  saveState(key);
}

void SysfsFans::setTarget(const Fan& fan, double speed, const std::string& key) {
  if (fan.isAppleSMC)
    return writeNumber(fan.target, std::lround(std::clamp(speed, 0.0, 1e6)), key);
  int error = 0;
  const auto maximum = readNumber(fan.maximum, error);
  const bool isFull = !maximum || *maximum <= 0 || speed >= static_cast<double>(*maximum);
  const double share = isFull ? 1 : std::max(speed, 0.0) / static_cast<double>(*maximum);
  writeNumber(fan.power, std::lround(share * fullPower), key);
}

/// A line for each forced fan: its mode and power of before, and the path of its mode's file.
void SysfsFans::loadState() {
  if (state_.empty())
    return;
  std::ifstream file(state_);
  Setting setting;
  std::string path;
  while (file >> setting.mode >> setting.power && std::getline(file >> std::ws, path)) {
    path = withoutLinks(path);
    const bool isKnown = std::ranges::find(fans_, fs::path(path), &Fan::mode) != fans_.end();
    if (isKnown && setting.canBeRestored())
      before_[path] = setting;
  }
}

void SysfsFans::saveState(const std::string& key) const {
  if (state_.empty())
    return;
  std::string text;
  for (const auto& [path, setting] : before_)
    text += std::to_string(setting.mode) + " " + std::to_string(setting.power) + " " + path + "\n";
  try {
    writeFileAtomically(state_, text, FileAccess::ownerOnly);
  } catch (const std::exception& error) {
    throw FanError::writeFailed(key, error.what());
  }
}

} // namespace tavrin

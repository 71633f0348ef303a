#pragma once

#include "TavrinCore/Kinds/Fans/SMCValue.h"

#include <filesystem>
#include <map>
#include <vector>

namespace tavrin {

/// The fans of applesmc and of hwmon drivers, under the keys of the system management controller:
/// FNum, Ftst, and for each fan F0Ac, F0Mn, F0Mx, F0Md, F0Tg. Counted are fans whose speed can be
/// read and set. Before a fan is forced, what its driver was set to is written to the state file,
/// from which it is handed back, by another process if need be.
class SysfsFans final : public SMCAccess {
public:
  /// `root` holds the folder sys; an empty `state` is for those that only read.
  explicit SysfsFans(const std::filesystem::path& root = "/", std::filesystem::path state = {});

  SMCValue read(const std::string& key) override;
  void write(const std::string& key, const std::vector<std::uint8_t>& bytes) override;

private:
  struct Fan {
    std::filesystem::path input;
    std::filesystem::path minimum;
    std::filesystem::path maximum;
    /// Without links. applesmc: 1 forces. hwmon: 1 forces, other values are the driver's ways to steer by itself.
    std::filesystem::path mode;
    /// Takes revolutions per minute where there is one.
    std::filesystem::path target;
    /// Else 0...255.
    std::filesystem::path power;
    bool isAppleSMC = false;
  };
  /// What a driver was set to.
  struct Setting {
    long mode = 0;
    long power = -1;
    /// No driver has modes beyond these.
    bool canBeRestored() const { return mode >= 0 && mode <= 255; }
  };

  void findFans(const std::filesystem::path& folder);
  double speed(const std::filesystem::path& file, const std::string& key) const;
  void setMode(std::size_t index, bool isForced, const std::string& key);
  void setTarget(const Fan& fan, double speed, const std::string& key);
  void loadState();
  void saveState(const std::string& key) const;

  std::filesystem::path state_;
  std::vector<Fan> fans_;
  /// By the path of the mode's file.
  std::map<std::string, Setting> before_;
  std::uint8_t test_ = 0;
};

} // namespace tavrin

#pragma once

#include "Tests/Storage/TemporaryFolder.h"

#include <QString>
#include <QStringList>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

namespace tavrin {

namespace fs = std::filesystem;

/// applesmc with two fans, and a board whose driver steers in its own way (mode 5).
struct Machine {
  Machine() {
    for (int fan = 1; fan <= 2; ++fan) {
      const std::string stem = "hwmon0/device/fan" + std::to_string(fan);
      for (const auto& [suffix, value] : {std::pair{"_input", 2000},
                                          {"_min", 1200},
                                          {"_max", 6200},
                                          {"_manual", 0},
                                          {"_output", 2000}})
        set(stem + suffix, value);
    }
    set("hwmon1/fan1_input", 900);
    set("hwmon1/pwm1", 90);
    set("hwmon1/pwm1_enable", 5);
    set("hwmon1/fan2_input", 700); // without a way to steer it
  }
  void set(const std::string& file, long value) const {
    const fs::path path = folder.path() / "sys/class/hwmon" / file;
    fs::create_directories(path.parent_path());
    std::ofstream(path) << value;
  }
  long get(const std::string& file) const {
    long value = -1;
    std::ifstream(folder.path() / "sys/class/hwmon" / file) >> value;
    return value;
  }
  bool isFull() const {
    return get("hwmon0/device/fan1_manual") == 1 && get("hwmon0/device/fan1_output") == 6200 &&
           get("hwmon0/device/fan2_manual") == 1 && get("hwmon1/pwm1_enable") == 1 &&
           get("hwmon1/pwm1") == 255;
  }
  bool isAutomatic() const {
    return get("hwmon0/device/fan1_manual") == 0 && get("hwmon0/device/fan2_manual") == 0 &&
           get("hwmon1/pwm1_enable") == 5;
  }
  fs::path state() const { return folder.path() / "run/fans"; }
  QStringList environment() const {
    return {"TAVRIN_SYSFS_ROOT=" + QString::fromStdString(folder.path().string()),
            "TAVRIN_FAN_STATE=" + QString::fromStdString(state().string())};
  }
  TemporaryFolder folder;
};

} // namespace tavrin

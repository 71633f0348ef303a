#pragma once

#include "TavrinPlatform/Platform.h"
#include "TavrinWidgetsUI/System/SystemWidgetModel.h"

namespace tavrin::test {

inline SystemWidgetModel::Services servicesOf(Platform& platform) {
  return {platform.clock(),          platform.runLoop(),      platform.workspace(),
          platform.hostStatistics(), platform.powerSources(), platform.connectedDevices()};
}

} // namespace tavrin::test

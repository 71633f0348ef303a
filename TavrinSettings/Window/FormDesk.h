#pragma once

#include "TavrinPlatform/Platform.h"
#include "TavrinSettings/Base/InstalledApps.h"
#include "TavrinSettings/Form/FormServices.h"
#include "TavrinWidgetsUI/Weather/WeatherModel.h"

#include <memory>

namespace tavrin {

/// What forms ask of the desktop, answered by its services. Each is made when it is first asked.
class FormDesk {
public:
  /// Both outlive it.
  FormDesk(Platform& platform, InstalledApps& apps);

  const FormServices& services() const { return services_; }

private:
  void setUpSystem();
  void setUpPickers();

  Platform& platform_;
  InstalledApps& apps_;
  std::unique_ptr<WeatherFetch> cities_;
  /// Players are known while they are watched.
  TokenPtr players_;
  FormServices services_;
};

} // namespace tavrin

#include "TavrinCore/Kinds/Weather/WeatherSettings.h"

#include <unicode/uloc.h>
#include <unicode/ulocdata.h>

namespace tavrin {

WeatherUnit currentWeatherUnit() {
  UErrorCode status = U_ZERO_ERROR;
  const UMeasurementSystem system = ulocdata_getMeasurementSystem(uloc_getDefault(), &status);
  return U_SUCCESS(status) && system == UMS_US ? WeatherUnit::fahrenheit : WeatherUnit::celsius;
}

} // namespace tavrin

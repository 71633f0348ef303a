#pragma once

#include "TavrinCore/Kinds/Weather/Weather.h"
#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/HTTPClient.h"
#include "TavrinPlatform/RunLoop.h"
#include "TavrinPlatform/Workspace.h"
#include "TavrinStorage/WeatherCache.h"

namespace tavrin {

class FileManager;

/// Asks the weather service. A request ends with its token.
class WeatherFetch {
public:
  /// Other addresses of the service, for tests: TAVRIN_FORECAST_URL and TAVRIN_GEOCODING_URL.
  WeatherFetch(HTTPClient& http, const Clock& clock, const FileManager& files);

  /// None on any failure. A null token where there is nothing to ask, and then no answer.
  [[nodiscard]] TokenPtr reading(double latitude, double longitude, WeatherUnit unit,
                                 WeatherService::ForecastDetail detail,
                                 std::function<void(std::optional<WeatherReading>)> done);
  /// The places of that name, in the user's language; no value on any failure.
  [[nodiscard]] TokenPtr
  lookUp(const std::string& city,
         std::function<void(std::optional<std::vector<WeatherPlace>>)> done);
  /// The same, empty on any failure.
  [[nodiscard]] TokenPtr search(const std::string& city,
                                std::function<void(std::vector<WeatherPlace>)> done);
  HTTPClient& http() { return http_; }

private:
  HTTPClient& http_;
  const Clock& clock_;
  std::string forecastEndpoint_;
  std::string searchEndpoint_;
};

/// Keeps the weather of one place: asks on start, then at the interval, after the computer woke,
/// and when the network comes back to a reading that is missing or old. The last reading stays
/// while another one is fetched, and survives in the cache.
class WeatherModel {
public:
  static constexpr double interval = 1200;
  static constexpr double savingInterval = 3600;

  WeatherModel(Clock& clock, RunLoop& runLoop, Workspace& workspace, WeatherFetch& fetch,
               WeatherCache cache, const WeatherSettings& settings);
  WeatherModel(const WeatherModel&) = delete;
  WeatherModel& operator=(const WeatherModel&) = delete;

  void start();
  void stop();
  /// Does nothing without a place, or while a load is under way.
  void refresh();

  const WeatherSettings& settings() const { return settings_; }
  /// Another place or unit: the reading goes and one is asked for.
  void setSettings(const WeatherSettings& settings);
  /// What the region of the place is, where the city search told.
  void setRegion(const std::optional<std::string>& region);
  const std::optional<std::string>& region() const { return region_; }

  bool hasPlace() const { return settings_.latitude && settings_.longitude; }
  const std::optional<WeatherReading>& reading() const { return reading_; }
  bool isLoading() const { return isLoading_; }
  /// The last load failed.
  bool failed() const { return failed_; }
  /// Asks once an hour, as the desktop saves energy.
  bool savesEnergy() const { return workspace_.isLowPowerMode(); }
  /// The reading is older than three such hours: it may say nothing about now.
  bool isStale() const;
  Date now() const { return clock_.now(); }

  std::function<void()> onChange;

private:
  void loaded(std::optional<WeatherReading> reading);
  void schedule();
  void networkCameBack();
  void remember();
  void recall();
  void changed();

  Clock& clock_;
  RunLoop& runLoop_;
  Workspace& workspace_;
  WeatherFetch& fetch_;
  WeatherCache cache_;
  WeatherSettings settings_;
  std::optional<std::string> region_;
  std::optional<WeatherReading> reading_;
  bool isLoading_ = false;
  bool failed_ = false;
  TokenPtr timer_;
  TokenPtr request_;
  TokenPtr pause_;
  std::vector<TokenPtr> observations_;
  TokenPtr network_;
};

/// The search for a city as it is typed: asks once the typing rests, and drops answers that were
/// overtaken.
class WeatherSearch {
public:
  static constexpr double rest = 0.3;

  WeatherSearch(RunLoop& runLoop, WeatherFetch& fetch) : runLoop_(runLoop), fetch_(fetch) {}
  WeatherSearch(const WeatherSearch&) = delete;
  WeatherSearch& operator=(const WeatherSearch&) = delete;

  void type(const std::string& text);
  void clear() { type({}); }

  const std::string& text() const { return text_; }
  const std::vector<WeatherPlace>& places() const { return places_; }
  /// An answer came, and it has no place.
  bool hasFoundNothing() const { return hasAnswer_ && places_.empty(); }

  std::function<void()> onChange;

private:
  void ask();

  RunLoop& runLoop_;
  WeatherFetch& fetch_;
  std::string text_;
  std::vector<WeatherPlace> places_;
  bool hasAnswer_ = false;
  TokenPtr pause_;
  TokenPtr request_;
};

} // namespace tavrin

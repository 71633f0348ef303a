#include "TavrinWidgetsUI/Weather/WeatherModel.h"

#include "TavrinCore/Kinds/Weather/WeatherSettings.h"
#include "TavrinPlatform/FileManager.h"

#include <cmath>

namespace tavrin {
namespace {

/// An answer of the service is a hundredth of it.
constexpr std::size_t answerLimit = 256 * 1024;
/// Addresses come in groups, and the resolver a little later.
constexpr double networkPause = 3;

std::string userLanguage() {
  const std::string locale = Calendar().localeID();
  const auto language = locale.substr(0, locale.find_first_of("_-@."));
  return language.size() == 2 || language.size() == 3 ? language : "en";
}

} // namespace

WeatherFetch::WeatherFetch(HTTPClient& http, const Clock& clock, const FileManager& files)
    : http_(http), clock_(clock),
      forecastEndpoint_(files.environment("TAVRIN_FORECAST_URL")
                            .value_or(std::string(WeatherService::forecastEndpoint))),
      searchEndpoint_(files.environment("TAVRIN_GEOCODING_URL")
                          .value_or(std::string(WeatherService::searchEndpoint))) {}

TokenPtr WeatherFetch::reading(double latitude, double longitude, WeatherUnit unit,
                               WeatherService::ForecastDetail detail,
                               std::function<void(std::optional<WeatherReading>)> done) {
  const auto url =
      WeatherService::forecastURL(latitude, longitude, unit, forecastEndpoint_, detail);
  if (!url)
    return nullptr;
  return http_.get({.url = *url, .sizeLimit = answerLimit}, [this, done = std::move(done)](
                                                                const HTTPResponse& response) {
    done(response.isSuccess() ? WeatherService::reading(response.body, clock_.now())
                              : std::nullopt);
  });
}

TokenPtr WeatherFetch::search(const std::string& city,
                              std::function<void(std::vector<WeatherPlace>)> done) {
  return lookUp(city, [done = std::move(done)](std::optional<std::vector<WeatherPlace>> places) {
    done(std::move(places).value_or(std::vector<WeatherPlace>()));
  });
}

TokenPtr
WeatherFetch::lookUp(const std::string& city,
                     std::function<void(std::optional<std::vector<WeatherPlace>>)> done) {
  const auto url = WeatherService::searchURL(city, userLanguage(), searchEndpoint_);
  if (!url)
    return nullptr;
  return http_.get({.url = *url, .timeLimit = 10, .sizeLimit = answerLimit},
                   [done = std::move(done)](const HTTPResponse& response) {
                     done(response.isSuccess()
                              ? std::optional(WeatherService::places(response.body))
                              : std::nullopt);
                   });
}

WeatherModel::WeatherModel(Clock& clock, RunLoop& runLoop, Workspace& workspace,
                           WeatherFetch& fetch, WeatherCache cache, const WeatherSettings& settings)
    : clock_(clock), runLoop_(runLoop), workspace_(workspace), fetch_(fetch),
      cache_(std::move(cache)), settings_(settings) {
  recall();
}

void WeatherModel::start() {
  if (timer_)
    return;
  observations_.push_back(workspace_.observeWake([this] { refresh(); }));
  observations_.push_back(workspace_.observeClockChange([this] {
    // The timer counts the time that the machine ran, not what the clock says has passed.
    if (!reading_ || std::abs(clock_.now().since(reading_->readAt)) >= interval)
      refresh();
  }));
  observations_.push_back(workspace_.observeLowPowerMode([this] { schedule(); }));
  schedule();
  refresh();
}

void WeatherModel::stop() {
  observations_.clear();
  network_.reset();
  timer_.reset();
  pause_.reset();
  request_.reset();
  isLoading_ = false;
}

void WeatherModel::schedule() {
  timer_ = runLoop_.repeat(savesEnergy() ? savingInterval : interval, [this] { refresh(); });
}

void WeatherModel::refresh() {
  if (!hasPlace() || isLoading_)
    return;
  // The network's watch comes with the first request: a tile without a place needs neither.
  if (timer_ && !network_)
    network_ = fetch_.http().observeNetwork([this] { networkCameBack(); });
  using Detail = WeatherService::ForecastDetail;
  request_ = fetch_.reading(*settings_.latitude, *settings_.longitude, settings_.unit,
                            settings_.showsRainChance ? Detail::rainChance : Detail::usual,
                            [this](auto reading) { loaded(std::move(reading)); });
  isLoading_ = request_ != nullptr;
  failed_ = failed_ || !isLoading_;
  changed();
}

void WeatherModel::loaded(std::optional<WeatherReading> reading) {
  const auto ended = std::move(request_);
  isLoading_ = false;
  failed_ = !reading;
  if (reading) {
    reading_ = std::move(reading);
    remember();
  }
  changed();
}

void WeatherModel::networkCameBack() {
  if (!failed_ && reading_ && clock_.now().since(reading_->readAt) < interval)
    return;
  pause_ = runLoop_.after(networkPause, [this] { refresh(); });
}

void WeatherModel::setSettings(const WeatherSettings& settings) {
  const bool isOther = settings.latitude != settings_.latitude ||
                       settings.longitude != settings_.longitude || settings.unit != settings_.unit;
  if (settings.latitude != settings_.latitude || settings.longitude != settings_.longitude)
    region_.reset();
  const bool wantsMore = settings.showsRainChance && !settings_.showsRainChance;
  settings_ = settings;
  if (!isOther && wantsMore) {
    // What is known stays; an answer under way has not been asked for all of it.
    request_.reset();
    isLoading_ = false;
    refresh();
  }
  if (!isOther)
    return;
  request_.reset();
  isLoading_ = false;
  failed_ = false;
  reading_.reset();
  recall();
  refresh();
}

void WeatherModel::setRegion(const std::optional<std::string>& region) {
  region_ = region;
  remember();
}

bool WeatherModel::isStale() const {
  return reading_ && clock_.now().since(reading_->readAt) > 3 * savingInterval;
}

void WeatherModel::remember() {
  if (hasPlace())
    cache_.write({*settings_.latitude, *settings_.longitude, settings_.unit, region_, reading_});
}

void WeatherModel::recall() {
  if (!hasPlace())
    return;
  const auto cached = cache_.read();
  if (!cached || cached->latitude != settings_.latitude || cached->longitude != settings_.longitude)
    return;
  region_ = cached->region;
  if (cached->unit == settings_.unit && cached->reading && cached->reading->readAt <= clock_.now())
    reading_ = cached->reading;
}

void WeatherModel::changed() {
  if (onChange)
    onChange();
}

void WeatherSearch::type(const std::string& text) {
  if (text == text_)
    return;
  text_ = text;
  pause_.reset();
  request_.reset();
  hasAnswer_ = false;
  if (WeatherService::searchURL(text, "en"))
    pause_ = runLoop_.after(rest, [this] { ask(); });
  else
    places_.clear();
  if (onChange)
    onChange();
}

void WeatherSearch::ask() {
  const auto ended = std::move(pause_);
  request_ = fetch_.search(text_, [this](std::vector<WeatherPlace> places) {
    const auto done = std::move(request_);
    places_ = std::move(places);
    hasAnswer_ = true;
    if (onChange)
      onChange();
  });
}

} // namespace tavrin

#include "TavrinWidgetsUI/AirDrop/AirDropModel.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Text/Texts.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostFiles = 500;
/// How long the tile says that files have been sent.
constexpr double restTime = 6;

/// What of a drop can be sent.
struct Examined {
  std::vector<fs::path> files;
  std::int64_t size = 0;
  std::size_t refused = 0;
};

Examined examine(const std::vector<std::string>& urls) {
  Examined result;
  for (const auto& url : urls) {
    const auto path = pathOfFileURL(url);
    std::error_code error;
    // Pipes, devices and folders have no content to send.
    if (!path || result.files.size() >= mostFiles || !fs::is_regular_file(*path, error)) {
      ++result.refused;
      continue;
    }
    const auto size = fs::file_size(*path, error);
    result.size += error ? 0 : static_cast<std::int64_t>(size);
    result.files.push_back(*path);
  }
  return result;
}

std::string refusalText(std::size_t refused, bool isAll) {
  if (isAll)
    return translated("Only files can be sent, not folders");
  return plural("One item was left out: only files can be sent",
                "{count} items were left out: only files can be sent",
                static_cast<long long>(refused));
}

} // namespace

AirDropModel::AirDropModel(NearbyDevices& nearby, RunLoop& runLoop, DockWidget widget)
    : nearby_(nearby), runLoop_(runLoop), widget_(std::move(widget)),
      observation_(nearby.observe([this] { changed(); })) {}

std::optional<double> AirDropModel::share() const {
  if (state_ != State::sending || progress_.fileCount == 0)
    return std::nullopt;
  const double within =
      progress_.size > 0
          ? std::min(static_cast<double>(progress_.sent) / static_cast<double>(progress_.size), 1.0)
          : 0;
  return (static_cast<double>(progress_.file) + within) / static_cast<double>(progress_.fileCount);
}

void AirDropModel::take(const std::vector<std::string>& fileURLs) {
  if (state_ == State::sending) {
    waiting_.insert(waiting_.end(), fileURLs.begin(), fileURLs.end());
    waiting_.resize(std::min(waiting_.size(), mostFiles));
    return;
  }
  resting_.reset();
  examining_.renew();
  const auto result = std::make_shared<Examined>();
  runLoop_.background(
      [fileURLs, result] { *result = examine(fileURLs); }, examining_,
      [this, result] { examined(std::move(result->files), result->size, result->refused); });
}

void AirDropModel::examined(std::vector<fs::path> files, std::int64_t size, std::size_t refused) {
  examining_.end();
  files_ = std::move(files);
  size_ = size;
  trouble_ = refused > 0 ? refusalText(refused, files_.empty()) : std::string();
  state_ = files_.empty() ? State::failed : State::choosing;
  nearby_.refresh();
  changed();
  if (onTaken)
    onTaken();
}

void AirDropModel::forget() {
  if (state_ == State::sending)
    return;
  state_ = State::idle;
  files_.clear();
  size_.reset();
  trouble_.clear();
  resting_.reset();
  changed();
}

void AirDropModel::send(const NearbyDevice& device) {
  if (state_ == State::sending || files_.empty())
    return;
  state_ = State::sending;
  trouble_.clear();
  deviceName_ = QString::fromStdString(device.name);
  way_ = device.way;
  progress_ = {0, files_.size(), 0, 0};
  sending_ = nearby_.send(
      device, files_,
      [this](const SendingProgress& progress) {
        const auto step = [](const SendingProgress& each) {
          // A hundred steps a file are enough to see.
          return std::pair(each.file, each.size > 0 ? each.sent * 100 / each.size : 0);
        };
        const bool isSeen = step(progress) != step(progress_) || progress.size != progress_.size;
        progress_ = progress;
        if (isSeen)
          changed();
      },
      [this](const SendingResult& result) { finished(result); });
  changed();
}

void AirDropModel::finished(const SendingResult& result) {
  const TokenPtr ended = std::move(sending_);
  trouble_ = result.trouble;
  isHandedOver_ = result.isHandedOver;
  state_ = trouble_.empty() ? State::sent : State::failed;
  if (state_ == State::sent)
    resting_ = runLoop_.after(restTime, [this] {
      const TokenPtr rested = std::move(resting_);
      forget();
    });
  changed();
  if (auto next = std::exchange(waiting_, {}); !next.empty())
    take(next);
}

void AirDropModel::cancel() {
  if (state_ != State::sending)
    return;
  sending_.reset();
  // The files are still there for another device.
  state_ = State::choosing;
  changed();
  if (auto next = std::exchange(waiting_, {}); !next.empty())
    take(next);
}

void AirDropModel::changed() const {
  if (onChange)
    onChange();
}

} // namespace tavrin

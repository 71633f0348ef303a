#include "TavrinWidgetsUI/Music/MusicModel.h"

#include "TavrinWidgetsUI/Kit/Pictures/Thumbnail.h"

#include <algorithm>

namespace tavrin {
namespace {

constexpr int coverSide = 320;
/// However finely a position is shown, a tile is not drawn more often.
constexpr double shortestTick = 1;
constexpr double slack = 0.02;

} // namespace

MusicModel::MusicModel(MediaPlayers& players, Clock& clock, RunLoop& runLoop, DockWidget widget)
    : players_(players), clock_(clock), runLoop_(runLoop), widget_(std::move(widget)),
      observation_(players.observe([this] { changed(); })) {
  loadCover();
  schedule();
}

void MusicModel::setWidget(const DockWidget& widget) {
  widget_ = widget;
  loadCover();
  schedule();
}

const MediaPlayer* MusicModel::player() const {
  const auto& all = players_.players();
  const auto wish = settings().player.value_or("");
  const auto found =
      std::ranges::find_if(all, [&](const auto& player) { return isWished(player, wish); });
  if (found != all.end())
    return &*found;
  return all.empty() ? nullptr : &all.front();
}

bool MusicModel::isWished(const MediaPlayer& player, std::string_view wish) {
  return !wish.empty() && player.name.starts_with(wish) &&
         (player.name.size() == wish.size() || player.name[wish.size()] == '.');
}

std::string MusicModel::wishFor(const std::string& player) const {
  const std::string program = player.substr(0, player.find(".instance"));
  const auto running = std::ranges::count_if(
      players_.players(), [&](const auto& each) { return isWished(each, program); });
  return running > 1 ? player : program;
}

void MusicModel::changed() {
  loadCover();
  schedule();
  if (onChange)
    onChange();
}

void MusicModel::loadCover() {
  const auto* shown = player();
  const auto file =
      shown != nullptr && settings().showsCover ? shown->playback.track.cover : std::nullopt;
  const std::string track =
      shown != nullptr ? shown->playback.track.id + shown->playback.track.title : std::string();
  if (file == coverFile_ && (!file || track == coverTrack_))
    return;
  coverFile_ = file;
  coverTrack_ = track;
  loading_.renew();
  if (!file) {
    cover_ = {};
    return;
  }
  const auto image = std::make_shared<QImage>();
  runLoop_.background([path = *file, image] { *image = fileThumbnail(path, coverSide); }, loading_,
                      [this, image] {
                        cover_ = *image;
                        if (onChange)
                          onChange();
                      });
}

void MusicModel::setTileSteps(int steps) {
  tileSteps_ = std::max(steps, 0);
  schedule();
}

void MusicModel::setCountingSeconds(bool isCounting) {
  isCounting_ = isCounting;
  schedule();
}

void MusicModel::schedule() {
  tick_.reset();
  const auto* shown = player();
  if (shown == nullptr)
    return;
  const auto& playback = shown->playback;
  std::optional<double> step;
  if (isCounting_)
    step = 1;
  else if (tileSteps_ > 0 && playback.track.length && settings().showsProgress)
    step = std::max(*playback.track.length / tileSteps_, shortestTick);
  // A step that is all but reached is this one's, and each is drawn just after it is reached.
  const auto wait = step ? playback.untilNext(*step, clock_.now() + slack) : std::nullopt;
  if (wait)
    tick_ = runLoop_.after(*wait + 2 * slack, [this] {
      schedule();
      if (onChange)
        onChange();
    });
}

void MusicModel::playPause() {
  if (const auto* shown = player())
    players_.playPause(shown->name);
}

void MusicModel::next() {
  if (const auto* shown = player())
    players_.next(shown->name);
}

void MusicModel::previous() {
  if (const auto* shown = player())
    players_.previous(shown->name);
}

void MusicModel::seek(double seconds) {
  if (const auto* shown = player())
    players_.seek(shown->name, seconds);
}

void MusicModel::setVolume(double volume) {
  if (const auto* shown = player())
    players_.setVolume(shown->name, volume);
}

void MusicModel::raise() {
  if (const auto* shown = player())
    players_.raise(shown->name);
}

} // namespace tavrin

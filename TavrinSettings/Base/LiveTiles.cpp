#include "TavrinSettings/Base/LiveTiles.h"

#include "TavrinCore/Widgets/DockSlot.h"

#include <algorithm>

namespace tavrin {
namespace {

/// Seconds that a slot application may take to start, or to come back.
constexpr double startLimit = 3;

} // namespace

void LiveTiles::follow(std::span<const DockWidget> strip, int pixelsHigh) {
  if (std::exchange(pixelsHigh_, pixelsHigh) != pixelsHigh)
    for (auto& [unused, followed] : slots_)
      followed.watch.reset();
  const auto isPlaced = [&](int slot) {
    return std::ranges::any_of(strip, [&](const auto& widget) { return widget.slot == slot; });
  };
  std::erase_if(slots_, [&](const auto& entry) { return !isPlaced(entry.first); });
  const auto isShown = [&](const auto& entry) {
    return std::ranges::find(strip, entry.first, &DockWidget::id) != strip.end();
  };
  std::erase_if(pictures_, std::not_fn(isShown));
  std::erase_if(awaited_, std::not_fn(isShown));
  for (const auto& widget : strip) {
    if (!widget.slot)
      continue;
    const int slot = *widget.slot;
    const bool isNew = !slots_.contains(slot);
    auto& followed = slots_[slot];
    followed.widget = widget.id;
    // What is placed while it is looked at is about to be started.
    if (isNew && !pictures_.contains(widget.id)) {
      awaited_[widget.id] = nullptr;
      if (hasFollowed_)
        await(widget.id);
    }
    if (!followed.watch)
      followed.watch = application_.watchTile(
          DockSlot::bundleIdentifier(slot), pixelsHigh,
          [this, slot](const TilePicture* picture) { shows(slot, picture); });
    if (!followed.watch)
      awaited_.erase(widget.id);
  }
  hasFollowed_ = true;
}

void LiveTiles::pause() {
  slots_.clear();
  awaited_.clear();
  hasFollowed_ = false;
}

LiveTiles::State LiveTiles::state(const UUID& widget) const {
  return pictures_.contains(widget)  ? State::live
         : awaited_.contains(widget) ? State::awaited
                                     : State::still;
}

const QImage* LiveTiles::picture(const UUID& widget) const {
  const auto found = pictures_.find(widget);
  return found == pictures_.end() ? nullptr : &found->second;
}

void LiveTiles::shows(int slot, const TilePicture* picture) {
  const auto found = slots_.find(slot);
  if (found == slots_.end())
    return;
  const UUID widget = found->second.widget;
  if (picture != nullptr) {
    const auto subject = UUID::parse(picture->subject);
    if (!subject)
      return;
    pictures_[*subject] = picture->image;
    awaited_.erase(*subject);
    if (onChange)
      onChange(*subject);
    return;
  }
  const bool wasLive = pictures_.erase(widget) > 0;
  // One that ran may be about to come back; one that never did is known not to run.
  if (wasLive)
    await(widget);
  else if (const auto waiting = awaited_.find(widget);
           waiting != awaited_.end() && waiting->second == nullptr)
    awaited_.erase(waiting);
  if (onChange)
    onChange(widget);
}

void LiveTiles::await(const UUID& widget) {
  awaited_[widget] = runLoop_.after(startLimit, [this, widget] { giveUp(widget); });
}

void LiveTiles::giveUp(const UUID& widget) {
  awaited_.erase(widget);
  if (onChange)
    onChange(widget);
}

} // namespace tavrin

#include "TavrinCore/Kinds/System/Pet.h"

#include <algorithm>
#include <utility>

namespace tavrin {
namespace {

/// Seconds between two steps of an idle computer's pet, of a busy one's, and without a load.
constexpr double slowStep = 0.32;
constexpr double fastWalk = 0.15;
constexpr double usualStep = 0.22;
constexpr double runningLoad = 0.6;
/// A load that gets a sitting one up.
constexpr double rousingLoad = 0.5;
constexpr double blink = 0.15;
constexpr double hopStep = 0.14;
constexpr int hopFrames = 12;
constexpr double glance = 2;

} // namespace

double PetLife::between(double least, double most) {
  return std::uniform_real_distribution<double>(least, most)(random_);
}

void PetLife::begin(PetActivity activity, Date until) {
  pose_.activity = activity;
  pose_.frame = 0;
  until_ = until;
}

bool PetLife::advance(Date now, const PetSettings& settings, const PetSurroundings& around) {
  const PetPose before = pose_;
  pose_.place = std::clamp(pose_.place, 0, std::max(around.room, 0));
  const bool isAsleep = settings.sleepsAtNight && isNight(around.hour);
  if (std::exchange(isStroked_, false)) {
    begin(PetActivity::happy, now + hopStep * hopFrames);
    next_ = now + (around.isStill ? hopStep * hopFrames : hopStep);
  } else if (pose_.activity == PetActivity::happy && now < until_) {
    if (next_ && *next_ <= now)
      hop(now);
  } else if (isAsleep || around.isStill) {
    rest(now, settings, around);
  } else if (!hasBegun_ || pose_.activity == PetActivity::sleeping || !next_) {
    begin(PetActivity::sitting, now + between(1, 4));
    next_ = now + between(0.5, 1);
  } else if (*next_ <= now) {
    step(now, around);
  }
  hasBegun_ = true;
  return pose_ != before;
}

void PetLife::rest(Date, const PetSettings& settings, const PetSurroundings& around) {
  const bool isAsleep = settings.sleepsAtNight && isNight(around.hour);
  begin(isAsleep ? PetActivity::sleeping : PetActivity::sitting, {});
  next_.reset();
}

void PetLife::step(Date now, const PetSurroundings& around) {
  const bool isRoused = around.load && *around.load >= rousingLoad;
  switch (pose_.activity) {
  case PetActivity::walking:
  case PetActivity::running:
    if (now >= until_ && !isRoused) {
      begin(PetActivity::sitting, now + between(4, 14));
      next_ = now + between(1, 3);
    } else {
      walk(now, around);
    }
    return;
  case PetActivity::sitting:
    if (now >= until_ || isRoused) {
      if (around.room > 0 && between(0, 1) < 0.4)
        pose_.facesLeft = !pose_.facesLeft;
      begin(PetActivity::walking, now + between(4, 10));
      walk(now, around);
    } else {
      sit(now, around);
    }
    return;
  case PetActivity::happy:
  case PetActivity::sleeping:
    begin(PetActivity::sitting, now + between(2, 5));
    next_ = now + between(1, 3);
  }
}

void PetLife::walk(Date now, const PetSurroundings& around) {
  const double load = std::clamp(around.load.value_or(0), 0.0, 1.0);
  const bool runs = around.load && load >= runningLoad;
  pose_.activity = runs ? PetActivity::running : PetActivity::walking;
  pose_.frame = (pose_.frame + 1) % 4;
  const int stride = runs ? 2 : 1;
  if (around.room > 0) {
    if (pose_.facesLeft ? pose_.place < stride : pose_.place + stride > around.room)
      pose_.facesLeft = !pose_.facesLeft;
    pose_.place = std::clamp(pose_.place + (pose_.facesLeft ? -stride : stride), 0, around.room);
  } else {
    pose_.way += pose_.facesLeft ? -stride : stride;
  }
  const double pace = !around.load ? usualStep
                      : runs       ? fastestStep
                                   : slowStep - (slowStep - fastWalk) * load / runningLoad;
  next_ = now + std::max(pace, fastestStep);
}

void PetLife::sit(Date now, const PetSurroundings& around) {
  if (pose_.frame == 0 && between(0, 1) < 0.7) {
    pose_.frame = 1;
    next_ = now + blink;
    return;
  }
  pose_.frame = 0;
  // A load that rises is noticed soon.
  const double pause = around.load ? glance : between(2, 5);
  next_ = now + std::max(std::min(pause, until_.since(now)), fastestStep);
}

void PetLife::hop(Date now) {
  ++pose_.frame;
  next_ = now + hopStep;
}

} // namespace tavrin

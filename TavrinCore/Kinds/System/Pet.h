#pragma once

#include "TavrinCore/Base/Date.h"
#include "TavrinCore/Kinds/System/PetSettings.h"

#include <cstdint>
#include <optional>
#include <random>

namespace tavrin {

enum class PetActivity { sitting, walking, running, sleeping, happy };

/// How a pet is to be drawn. Distances are pixels of the pixel art.
struct PetPose {
  PetActivity activity = PetActivity::sitting;
  /// Steps of the gait or the hop; a sitting one has its eyes closed in frame 1.
  int frame = 0;
  /// How far it stands from the left end of its room.
  int place = 0;
  /// How far it has walked, to the right as positive: where it walks on the spot, the ground moves.
  int way = 0;
  bool facesLeft = false;
  bool operator==(const PetPose&) const = default;
};

/// What is around a pet.
struct PetSurroundings {
  /// Local time of day, 0 to 24.
  double hour = 12;
  /// The processors' load 0...1; no value where it is not to be followed.
  std::optional<double> load = {};
  /// Nothing is to move: the user wants it so, or energy is to be saved.
  bool isStill = false;
  /// How many pixels it can walk; one without room walks on the spot.
  int room = 0;
};

/// What a pet does: it walks and sits by turns, sleeps at night, runs when the processor does, and
/// is happy for a moment when it is stroked. Moves only in `advance`.
class PetLife {
public:
  /// Never more than eight pictures a second.
  static constexpr double fastestStep = 0.125;
  static constexpr double nightBegins = 22;
  static constexpr double nightEnds = 7;

  explicit PetLife(std::uint32_t seed) : random_(seed) {}

  const PetPose& pose() const { return pose_; }
  /// Does what is due by `now`. Whether it looks different.
  bool advance(Date now, const PetSettings& settings, const PetSurroundings& around);
  /// When it does something next; no value while it sleeps or holds still.
  std::optional<Date> next() const { return next_; }
  /// It was stroked: the next `advance` makes it happy.
  void stroke() { isStroked_ = true; }

  static bool isNight(double hour) { return hour >= nightBegins || hour < nightEnds; }

private:
  void rest(Date now, const PetSettings& settings, const PetSurroundings& around);
  void begin(PetActivity activity, Date until);
  void step(Date now, const PetSurroundings& around);
  void walk(Date now, const PetSurroundings& around);
  void sit(Date now, const PetSurroundings& around);
  void hop(Date now);
  double between(double least, double most);

  PetPose pose_;
  std::optional<Date> next_;
  /// When the activity ends.
  Date until_;
  bool isStroked_ = false;
  bool hasBegun_ = false;
  std::minstd_rand random_;
};

} // namespace tavrin

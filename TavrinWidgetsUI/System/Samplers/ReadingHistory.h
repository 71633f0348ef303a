#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace tavrin {

/// How many readings are kept beside the one of now.
inline constexpr std::size_t readingHistoryLength = 30;

/// A reading and those before it, oldest first.
template <class Reading> class ReadingHistory {
public:
  const Reading& now() const { return now_; }
  const std::vector<Reading>& past() const { return past_; }

  /// The reading of now becomes past; the oldest go once there are too many. Whether the line
  /// through all of them and `next` moves at the next sample.
  bool remember(const Reading& next) {
    past_.push_back(now_);
    if (past_.size() > readingHistoryLength)
      past_.erase(past_.begin(), past_.end() - static_cast<long>(readingHistoryLength));
    return std::any_of(past_.begin(), past_.end(),
                       [&](const Reading& reading) { return reading != next; });
  }
  /// Whether it differs from the one before.
  bool set(const Reading& reading) { return std::exchange(now_, reading) != reading; }
  void forgetPast() { past_.clear(); }

private:
  Reading now_;
  std::vector<Reading> past_;
};

} // namespace tavrin

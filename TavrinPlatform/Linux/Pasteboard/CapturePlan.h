#pragma once

#include "TavrinPlatform/Pasteboard.h"

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// What is read of a copy, in which order, and what is kept of it, whatever the protocol by which
/// the bytes come: `begin`, `offered`, then for each `wish` either `arrived` or `missed`.
class CapturePlan {
public:
  static constexpr const char* passwordHint = "x-kde-passwordManagerHint";
  /// An image beyond its limit is only counted, and no further than this many bytes.
  static constexpr std::size_t mostCounted = 64 * 1024 * 1024;
  /// All names of types together.
  static constexpr std::size_t longestTypes = 16 * 1024;

  struct Wish {
    /// As a capture tells it.
    std::string type;
    /// As its owner calls it.
    std::string target;

    bool isImage() const { return type.starts_with("image/"); }
  };

  void begin(std::int64_t changeCount, std::string copyName, const Pasteboard::Limits& limits);
  /// `isDoubtful`: the list could not be read to its end.
  void offered(std::vector<std::string> types, bool isDoubtful);
  /// What is to be read; none when all is.
  const Wish* wish() const { return wishes_.empty() ? nullptr : &wishes_.front(); }
  const std::deque<Wish>& wishes() const { return wishes_; }
  /// The most bytes that are kept of it.
  std::size_t bound(const Wish& wish) const;
  /// The first wish's bytes, at most `bound` of the `size` that there are.
  void arrived(std::string bytes, std::size_t size);
  void missed() { wishes_.pop_front(); }
  Pasteboard::Capture finish();

private:
  bool offers(std::string_view type) const;
  void choose();

  Pasteboard::Limits limits_;
  Pasteboard::Capture capture_;
  std::deque<Wish> wishes_;
};

} // namespace tavrin

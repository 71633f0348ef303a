#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/FolderWatch.h"
#include "TavrinPlatform/RunLoop.h"

#include <QImage>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

namespace tavrin {

/// Small pictures of files, made off the main thread at the size they are shown and kept within a
/// bound. A file that changed is another one.
class Thumbnails {
public:
  static constexpr std::size_t usualBytes = 12 * 1024 * 1024;

  explicit Thumbnails(RunLoop& runLoop, std::size_t maximumBytes = usualBytes)
      : runLoop_(runLoop), maximumBytes_(maximumBytes) {}

  /// The picture, no larger than `side` pixels, where it has been made; else it is asked for, and
  /// null until `onChange`, or for ever where the file is no picture. What was asked for last is
  /// made first; of too many requests the oldest are forgotten.
  QImage find(const FolderFile& file, int side);
  /// Whether it is known by now that there is no such picture.
  bool hasFailed(const FolderFile& file, int side) const;
  /// Another picture can be had.
  std::function<void()> onChange;

private:
  /// Path, date, size and side.
  using Key = std::tuple<std::string, double, std::uint64_t, int>;
  struct Entry {
    Key key;
    QImage picture;
  };

  static Key keyOf(const FolderFile& file, int side);
  void makeNext();
  void keep(const Key& key, const QImage& picture);

  RunLoop& runLoop_;
  std::size_t maximumBytes_;
  std::size_t bytes_ = 0;
  /// Used last at the front.
  std::list<Entry> entries_;
  std::map<Key, std::list<Entry>::iterator> places_;
  std::vector<Key> wanted_;
  bool isMaking_ = false;
  Lifetime alive_;
};

} // namespace tavrin

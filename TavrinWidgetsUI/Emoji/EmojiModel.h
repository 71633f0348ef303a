#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinCore/Kinds/Emoji/EmojiTable.h"
#include "TavrinPlatform/RunLoop.h"
#include "TavrinWidgetsUI/Emoji/EmojiGlyphs.h"

#include <filesystem>
#include <functional>
#include <memory>

namespace tavrin {

/// Where the Unicode data of this computer are.
struct EmojiSources {
  std::filesystem::path folder;
  /// The user's language, such as "de_CH".
  std::string localeID;

  /// Reads the table; an empty one where there are no data. Takes a good part of a tenth of a
  /// second: off the main thread.
  EmojiTable read() const;
  /// The annotation files that there may be for the locale, the nearest first, English last.
  std::vector<std::filesystem::path> annotationFiles() const;
};

/// The emoji of the panel: read when it opens, and forgotten when it closes.
class EmojiModel {
public:
  enum class State { unread, reading, read };

  EmojiModel(RunLoop& runLoop, EmojiSources sources);

  State state() const { return state_; }
  const EmojiTable& table() const { return *table_; }
  EmojiGlyphs& glyphs() { return glyphs_; }

  /// Begins to read, unless it has. `onChange` follows.
  void load();
  /// The table goes, and the pictures with it.
  void release();
  std::function<void()> onChange;

private:
  RunLoop& runLoop_;
  EmojiSources sources_;
  EmojiGlyphs glyphs_;
  State state_ = State::unread;
  std::shared_ptr<const EmojiTable> table_ = std::make_shared<const EmojiTable>();
  Lifetime alive_;
};

} // namespace tavrin

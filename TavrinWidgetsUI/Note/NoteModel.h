#pragma once

#include "TavrinCore/Base/Date.h"
#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinPlatform/Clock.h"
#include "TavrinPlatform/RunLoop.h"

#include <functional>
#include <optional>
#include <string>

namespace tavrin {

/// A note that may be written here and elsewhere at the same time. What is typed is saved a moment
/// after the last key. When the saved text changes elsewhere while something typed here is not
/// saved yet, both texts are kept until the user chooses; where the user does not, one follows
/// the other.
class NoteModel {
public:
  /// Seconds of rest after which typing is saved, and the longest that a save waits for one.
  static constexpr double rest = 0.7;
  static constexpr double longestWait = 5;

  NoteModel(Clock& clock, RunLoop& runLoop, NoteSettings settings);
  NoteModel(const NoteModel&) = delete;
  NoteModel& operator=(const NoteModel&) = delete;

  /// The note as it is written here, which may be ahead of what is saved.
  NoteSettings note() const { return {text_, saved_.colorHex}; }
  const std::string& text() const { return text_; }
  /// The text that was read or saved last.
  const std::string& savedText() const { return saved_.text; }

  /// The user typed.
  void edit(const std::string& text);
  /// The widget's record was read again, after a save of our own or somebody else's.
  void settingsChanged(const NoteSettings& settings);

  /// The text that was saved elsewhere meanwhile.
  const std::optional<std::string>& otherText() const { return other_; }
  /// Answers to `otherText`: this text stays, the other one takes its place, or it follows below.
  void keepMine();
  void takeOther();
  void keepBoth();

  /// Saves what is not saved yet, now. Both texts where the user has not chosen.
  void flush();

  /// To be saved. Answered by `settingsChanged`, with this text, or with another one that was found
  /// in its place.
  std::function<void(const std::string& text)> onSave;
  /// What is shown differs now.
  std::function<void()> onChange;

private:
  bool isUnsaved() const { return text_ != saved_.text; }
  void saveSoon();
  void save();
  void resolve(const std::string& text);

  Clock& clock_;
  RunLoop& runLoop_;
  NoteSettings saved_;
  std::string text_;
  std::optional<std::string> other_;
  std::optional<Date> unsavedSince_;
  TokenPtr timer_;
};

} // namespace tavrin

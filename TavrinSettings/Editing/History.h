#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tavrin {

/// One thing that was done, and how it is taken back.
class HistoryStep {
public:
  virtual ~HistoryStep() = default;

  /// What was done, to follow "Undo": "Move Clock".
  virtual std::string title() const = 0;
  /// Takes it back, or does it again. What could not be is said in sentences. Throws whatever
  /// stops it; nothing is changed then.
  virtual std::vector<std::string> undo() = 0;
  virtual std::vector<std::string> redo() = 0;
  /// Whether taking it back, or doing it again, goes on after the call and then says how it ended.
  virtual bool tellsItself() const { return false; }
  /// Takes in `next`, which was done right after it, where the two are one to the user: letters
  /// typed into one field. False where they are not.
  virtual bool absorb(const HistoryStep& next) {
    static_cast<void>(next);
    return false;
  }
};

/// What was done in a window, to be stepped back and forth through.
class History {
public:
  /// More steps than anybody goes back.
  static constexpr std::size_t limit = 200;

  /// A step that was just done. What was undone can then no longer be done again.
  void add(std::unique_ptr<HistoryStep> step);
  /// The next step begins anew: it is not taken in by the last one.
  void seal() { isSealed_ = true; }

  bool canUndo() const { return done_ > 0; }
  bool canRedo() const { return done_ < steps_.size(); }
  /// Empty where there is nothing.
  std::string undoTitle() const { return canUndo() ? steps_[done_ - 1]->title() : std::string(); }
  std::string redoTitle() const { return canRedo() ? steps_[done_]->title() : std::string(); }
  bool undoTellsItself() const { return canUndo() && steps_[done_ - 1]->tellsItself(); }
  bool redoTellsItself() const { return canRedo() && steps_[done_]->tellsItself(); }
  /// What they throw leaves the step where it was.
  std::vector<std::string> undo();
  std::vector<std::string> redo();

  /// There is something else to undo or redo.
  std::function<void()> onChange;

private:
  std::vector<std::unique_ptr<HistoryStep>> steps_;
  /// Those before it are done, the others undone.
  std::size_t done_ = 0;
  bool isSealed_ = true;
};

} // namespace tavrin

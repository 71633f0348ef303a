#include "TavrinSettings/Editing/History.h"

namespace tavrin {

void History::add(std::unique_ptr<HistoryStep> step) {
  steps_.resize(done_);
  if (isSealed_ || steps_.empty() || !steps_.back()->absorb(*step))
    steps_.push_back(std::move(step));
  if (steps_.size() > limit)
    steps_.erase(steps_.begin());
  done_ = steps_.size();
  isSealed_ = false;
  if (onChange)
    onChange();
}

std::vector<std::string> History::undo() {
  if (!canUndo())
    return {};
  auto remarks = steps_[done_ - 1]->undo();
  --done_;
  seal();
  if (onChange)
    onChange();
  return remarks;
}

std::vector<std::string> History::redo() {
  if (!canRedo())
    return {};
  auto remarks = steps_[done_]->redo();
  ++done_;
  seal();
  if (onChange)
    onChange();
  return remarks;
}

} // namespace tavrin

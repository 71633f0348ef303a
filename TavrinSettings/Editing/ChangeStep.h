#pragma once

#include "TavrinCore/Text/Texts.h"
#include "TavrinSettings/Editing/History.h"

#include <fmt/format.h>
#include <utility>

namespace tavrin {

/// A step that is a value: `Change` has `inverse()` and `followedBy(next)`. Changes of the same
/// field, where it has a name, that follow each other are one step.
template <class Change> class ChangeStep final : public HistoryStep {
public:
  /// Makes a change, and leaves in it what was really done: others may have changed what it is of.
  using Apply = std::function<std::vector<std::string>(Change&)>;

  ChangeStep(std::string title, std::string field, Change change, Apply apply)
      : title_(std::move(title)), field_(std::move(field)), change_(std::move(change)),
        apply_(std::move(apply)) {}

  std::string title() const override { return title_; }
  /// What is done again is what was undone.
  std::vector<std::string> undo() override {
    auto back = change_.inverse();
    auto remarks = apply_(back);
    change_ = back.inverse();
    return remarks;
  }
  std::vector<std::string> redo() override { return apply_(change_); }
  bool absorb(const HistoryStep& next) override {
    const auto* other = dynamic_cast<const ChangeStep*>(&next);
    if (other == nullptr || field_.empty() || other->field_ != field_)
      return false;
    change_ = change_.followedBy(other->change_);
    return true;
  }

private:
  std::string title_;
  std::string field_;
  Change change_;
  Apply apply_;
};

/// What is said of a thing by that name which a step left alone.
inline std::string staysAsChanged(const std::string& name) {
  return translated("\"{name}\" was changed elsewhere since, and what was changed there stays",
                    {{"name", name}});
}

} // namespace tavrin

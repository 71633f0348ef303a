#include "TavrinSettings/Dock/FollowControl.h"

#include "TavrinHost/Dock/DockLibrary.h"
#include "TavrinSettings/Editing/ChangeStep.h"

namespace tavrin {

struct FollowControl::Change {
  Following before;
  Following after;
  Change inverse() const { return {after, before}; }
  Change followedBy(const Change& next) const { return {before, next.after}; }
};

bool FollowControl::isFollowed() const {
  return tavrin::isFollowed(context_) ||
         (started_ && context_.platform().applications().isAlive(*started_));
}

void FollowControl::start() {
  if (isFollowed())
    return;
  started_ = startFollowing(context_);
  if (onChange)
    onChange();
}

void FollowControl::keepUp() {
  const auto file = DockLibrary(context_).profiles().file();
  const auto record = following();
  if (record.isWanted(file))
    start();
  else if (record.isOn == false && stopFollowing(context_))
    started_.reset();
}

void FollowControl::follow() {
  if (following().isOn == false)
    return set(translated("Follow Shortcuts and Focus"), {},
               [](Following& record) { record.isOn = true; });
  start();
}

std::vector<std::string> FollowControl::apply(const Change& change) {
  auto record = followingRecord(context_);
  bool isWhole = true;
  record.change([&](Following& current) {
    isWhole = current == change.before || current == change.after;
    if (isWhole)
      current = change.after;
    return isWhole;
  });
  keepUp();
  if (onChange)
    onChange();
  return isWhole ? std::vector<std::string>()
                 : std::vector{staysAsChanged(translated("Shortcuts and Focus"))};
}

void FollowControl::set(const std::string& title, const std::string& field,
                        const std::function<void(Following&)>& edit) {
  auto record = followingRecord(context_);
  Change change;
  record.change([&](Following& current) {
    change.before = current;
    edit(current);
    change.after = current;
    return change.before != change.after;
  });
  if (change.before != change.after)
    history_.add(std::make_unique<ChangeStep<Change>>(
        title, field, std::move(change), [this](const Change& made) { return apply(made); }));
  keepUp();
  if (onChange)
    onChange();
}

} // namespace tavrin

#pragma once

#include <filesystem>
#include <memory>

namespace tavrin {

/// Keeps other writers away from a document that several processes change, from its making until it
/// goes. Whoever reads alone needs none: documents are replaced whole.
///
/// An advisory lock on ".<name>.lock" beside the document (flock(2), the file for its owner alone).
/// The system takes it off a process that ends, however it ends; the file goes with the lock, and
/// one that a killed process left is used anew. Two in one process keep each other out as those of
/// two processes do, on whatever threads they are.
///
/// Never fails: where the folder is missing or may not be written, where the file system knows no
/// locks, or where one holder keeps the lock beyond `longestWait`, the caller goes on without. A
/// write that must lose nothing then still looks whether the document is as it was read
/// (`writeFileIfUnchanged`). Where the lock went from hand to hand all that time, others are writing
/// at this moment, and such a look is not enough.
class DocumentLock {
public:
  /// Seconds that the constructor blocks at most.
  static constexpr double longestWait = 2;

  explicit DocumentLock(const std::filesystem::path& document);
  ~DocumentLock();
  DocumentLock(DocumentLock&&) noexcept;
  DocumentLock& operator=(DocumentLock&&) = delete;

  bool isHeld() const { return held_ != nullptr; }
  /// Whether somebody else kept it for as long as it may be waited for. A change that has no other
  /// way of noticing them is then better refused.
  bool isTaken() const { return isTaken_; }
  /// Whether those were several, one after the other. A change is then to be refused.
  bool isContended() const { return isTaken_ && hasPassedOn_; }

private:
  struct Held;
  std::unique_ptr<Held> held_;
  bool isTaken_ = false;
  bool hasPassedOn_ = false;
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Base/Coding.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <filesystem>
#include <functional>
#include <optional>

namespace tavrin {

/// One change of a file that other processes change too: takes the document's lock and runs
/// `attempt`, which reads the file, works out what it is to hold and puts it there by
/// `writeFileIfUnchanged`. Where that says that somebody who had no lock came between, `attempt`
/// returns false and is run anew. Throws what `attempt` throws, and FileError when others come
/// between again and again, or have the lock in turns for as long as it may be waited for.
void changeSharedFile(const std::filesystem::path& file,
                      const std::function<bool(const FileStamp& seen)>& attempt);

/// A JSON document that several processes change, and what this one knows of it. Changes are
/// transactions: the document's lock is taken, the file is read anew, the change is applied to what
/// is there, and the whole file is replaced. So no process undoes what another one did; of two that
/// change the same value the last one wins. Reading takes no lock.
///
/// A failed read throws FileError and leaves `value` as it was. A failed write throws FileError;
/// `value` keeps the change, and the next one that finds the file as it was is made on top of it.
template <class T> class SharedDocument {
public:
  /// Reads nothing yet.
  explicit SharedDocument(std::filesystem::path url,
                          std::size_t maximumSize = JSONValue::maximumSize)
      : url_(std::move(url)), maximumSize_(maximumSize) {}

  const std::filesystem::path& url() const { return url_; }
  const T& value() const { return value_; }
  /// Whether there was a file when it was read last.
  bool existed() const { return existed_; }

  /// A file that is not there reads as a new document. Drops what could not be written.
  void reload() {
    load(fileStamp(url_));
    beforeUnsaved_.reset();
  }

  /// Applies `change` to the document as it stands in the file. It may answer whether there is
  /// anything to write; what it throws leaves file and `value` without the change. It may run more
  /// than once. A change within a change becomes part of the outer one. Gives whether the file was
  /// written.
  template <class Change> bool change(const Change& change) {
    if (isChanging_)
      return apply(change);
    bool isWritten = false;
    changeSharedFile(url_, [&](const FileStamp& seen) {
      if (!beforeUnsaved_ || seen != seen_) {
        load(seen);
        beforeUnsaved_.reset();
      }
      isWritten = applyWhole(change);
      return !isWritten || write();
    });
    return isWritten;
  }

  /// Takes back what could not be written.
  void dropUnsaved() {
    if (beforeUnsaved_)
      value_ = std::move(*beforeUnsaved_);
    beforeUnsaved_.reset();
  }

private:
  void load(const FileStamp& seen) {
    const auto document = readJSONFile(url_, maximumSize_);
    try {
      value_ = document ? decode<T>(*document) : T{};
    } catch (const CodingError& error) {
      throw FileError(failure(translated("read {path}", {{"path", url_.string()}}), error.what()),
                      error.what());
    }
    existed_ = document.has_value();
    seen_ = seen;
  }

  template <class Change> bool apply(const Change& change) {
    if constexpr (std::is_same_v<decltype(change(value_)), bool>) {
      hasChanged_ = change(value_) || hasChanged_;
    } else {
      change(value_);
      hasChanged_ = true;
    }
    return hasChanged_;
  }

  template <class Change> bool applyWhole(const Change& change) {
    T before = value_;
    isChanging_ = true;
    hasChanged_ = beforeUnsaved_.has_value();
    try {
      apply(change);
    } catch (...) {
      isChanging_ = false;
      value_ = std::move(before);
      throw;
    }
    isChanging_ = false;
    if (hasChanged_ && !beforeUnsaved_)
      beforeUnsaved_ = std::move(before);
    return hasChanged_;
  }

  bool write() {
    try {
      if (!writeJSONFileIfUnchanged(url_, encode(value_), seen_)) {
        dropUnsaved();
        return false;
      }
    } catch (const JSONError& error) {
      throw FileError(failure(translated("write {path}", {{"path", url_.string()}}), error.what()),
                      error.what());
    }
    beforeUnsaved_.reset();
    existed_ = true;
    return true;
  }

  std::filesystem::path url_;
  std::size_t maximumSize_;
  T value_{};
  /// The document without what could not be written; none where all is in the file.
  std::optional<T> beforeUnsaved_;
  FileStamp seen_;
  bool existed_ = false;
  bool isChanging_ = false;
  bool hasChanged_ = false;
};

} // namespace tavrin

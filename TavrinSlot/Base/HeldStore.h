#pragma once

#include "TavrinPlatform/Platform.h"

#include <functional>
#include <memory>
#include <string>

namespace tavrin {

/// A store that other processes write too, in the hands of a controller. One that cannot be opened
/// is tried again with each change; what it holds is empty until then.
template <class Store> class HeldStore {
public:
  /// `url` may throw, as StoragePath's functions do.
  HeldStore(Platform& platform, std::function<std::filesystem::path()> url)
      : platform_(platform), url_(std::move(url)) {
    open();
  }

  /// Null where it could not be opened.
  const Store* get() const { return store_.get(); }
  /// What went wrong last, as a sentence; empty for nothing.
  const std::string& trouble() const { return trouble_; }
  void setTrouble(const std::string& sentence) { trouble_ = sentence; }

  /// Somebody wrote. What cannot be read leaves what was read last.
  void reload() {
    if (!store_) {
      open();
      return;
    }
    try {
      store_->reload();
    } catch (const std::exception&) {
      // It is told when a change is to be kept.
    }
  }

  /// Whether `change(store)` was kept; else `trouble` says why not.
  template <class Change> bool change(const Change& change) {
    trouble_.clear();
    if (!store_)
      open();
    if (!store_)
      return false;
    try {
      change(*store_);
      return true;
    } catch (const std::exception& error) {
      tell(error);
      return false;
    }
  }

private:
  void open() {
    try {
      store_ = std::make_unique<Store>(url_(), platform_.notifications());
    } catch (const std::exception& error) {
      tell(error);
    }
  }
  void tell(const std::exception& error) {
    trouble_ = error.what();
    Log(platform_.log(), "slot").error(trouble_);
  }

  Platform& platform_;
  std::function<std::filesystem::path()> url_;
  std::unique_ptr<Store> store_;
  std::string trouble_;
};

} // namespace tavrin

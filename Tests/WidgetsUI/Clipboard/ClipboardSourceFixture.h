#pragma once

#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardModel.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/FakePlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin::test {

/// A clipboard widget's source over a file of its own, on a desktop that the test holds.
class ClipboardSourceTest : public testing::Test {
protected:
  void open(const ClipboardSettings& settings = {}) {
    source_ = std::make_unique<ClipboardSource>(
        ClipboardSource::Services{platform_.fakeClock, platform_.loop, board(),
                                  platform_.fakeKeychain, platform_.fakeWorkspace, ogSource_,
                                  [this] { return isKeptByAnother_; }},
        file_, settings);
    source_->onChange = [this] { ++changes_; };
    source_->start();
    platform_.loop.runBackground();
  }
  FakePasteboard& board() { return platform_.fakePasteboard; }
  void copy(const std::vector<std::pair<std::string, std::string>>& formats) {
    board().copy(formats);
    platform_.loop.runBackground();
  }
  void copyText(const std::string& text) { copy({{"text/plain", text}}); }
  void pass(double seconds) {
    platform_.loop.advance(seconds);
    platform_.loop.runBackground();
  }
  std::vector<std::string> lines() const {
    std::vector<std::string> all;
    for (const auto& entry : source_->state().items)
      all.push_back(entry->item.previewLine());
    return all;
  }
  const ClipboardItem& newest() const { return source_->state().items.front()->item; }
  std::string bytes() const { return readFile(file_, 1 << 30).value_or("none"); }

  TemporaryFolder folder_;
  std::filesystem::path file_ = folder_ / "clipboard.json.enc";
  FakePlatform platform_;
  LinkPreviewSource ogSource_{{platform_.loop, platform_.fakeClock,
                               [this]() -> HTTPClient& { return platform_.fakeHTTP; }}};
  std::unique_ptr<ClipboardSource> source_;
  int changes_ = 0;
  bool isKeptByAnother_ = false;
};

} // namespace tavrin::test

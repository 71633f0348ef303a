#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "Tests/WidgetsUI/Clipboard/ClipboardSourceFixture.h"

namespace tavrin::test {
namespace {

using testing::ElementsAre;

/// Two widgets on one desktop, which keep their histories in one file.
class TwoClipboardsTest : public ClipboardSourceTest {
protected:
  using Texts = std::vector<std::string>;
  TwoClipboardsTest() { start(); }
  void start() {
    open();
    other_.emplace(ClipboardSource::Services{platform_.fakeClock,
                                             platform_.loop,
                                             otherBoard_,
                                             platform_.fakeKeychain,
                                             platform_.fakeWorkspace,
                                             ogSource_,
                                             {}},
                   file_, ClipboardSettings{});
    other_->start();
    platform_.loop.runBackground();
  }
  void copyForBoth(const std::string& text) {
    otherBoard_.changeCount = board().changeCount;
    otherBoard_.copy({{"text/plain", text}});
    copyText(text);
  }
  static Texts texts(const ClipboardSource& source) {
    Texts all;
    for (const auto& entry : source.state().items)
      all.push_back((entry->item.isPinned ? "*" : "") + entry->item.previewLine());
    return all;
  }
  static UUID idOf(const ClipboardSource& source, const std::string& text) {
    for (const auto& entry : source.state().items)
      if (entry->item.text == text)
        return entry->item.id;
    ADD_FAILURE() << text;
    return {};
  }
  /// What a start finds in the file.
  Texts stored() {
    ClipboardVault vault(file_, platform_.fakeKeychain);
    Texts all;
    const auto found = vault.read().stored;
    for (const auto& entry : found.value_or(ClipboardList{}))
      all.push_back((entry->item.isPinned ? "*" : "") + entry->item.previewLine());
    return all;
  }

  FakePasteboard otherBoard_;
  std::optional<ClipboardSource> other_;
};

TEST_F(TwoClipboardsTest, WhatOneRemovesStaysRemoved) {
  copyForBoth("one");
  copyForBoth("two");
  copyForBoth("two");
  pass(1);
  EXPECT_EQ(stored(), (Texts{"two", "two", "one"})) << "each copy once";
  source_->remove(idOf(*source_, "one"));
  pass(1);
  EXPECT_EQ(stored(), (Texts{"two", "two"}));
  copyForBoth("three");
  pass(1);
  EXPECT_EQ(stored(), (Texts{"three", "two", "two"}));
  EXPECT_EQ(texts(*source_), stored());
  EXPECT_EQ(texts(*other_), stored());

  // Before anybody has saved it.
  copyForBoth("secret");
  source_->remove(idOf(*source_, "secret"));
  pass(1);
  copyForBoth("four");
  pass(1);
  EXPECT_EQ(stored(), (Texts{"four", "three", "two", "two"}));

  // While the other one has something to save too.
  other_->togglePin(idOf(*other_, "three"));
  source_->remove(idOf(*source_, "four"));
  pass(1);
  EXPECT_EQ(stored(), (Texts{"*three", "two", "two"}));
  other_->clearUnpinned();
  copyForBoth("five");
  pass(1);
  EXPECT_EQ(stored(), (Texts{"five", "*three"}));
  start();
  EXPECT_EQ(texts(*source_), (Texts{"five", "*three"}));
  EXPECT_EQ(texts(*other_), (Texts{"five", "*three"}));
}

TEST_F(TwoClipboardsTest, WhatOneAloneSawIsKeptByBoth) {
  copyForBoth("both");
  pass(1);
  copyText("mine");
  pass(1);
  copyForBoth("again");
  pass(1);
  EXPECT_EQ(stored(), (Texts{"again", "mine", "both"}));
  EXPECT_EQ(texts(*other_), stored());
  // A file that is gone, or that is no history, is nobody's removal.
  std::filesystem::remove(file_);
  copyForBoth("after");
  pass(1);
  EXPECT_EQ(stored(), (Texts{"after", "again", "mine", "both"}));
  writeFileAtomically(file_, "rubbish");
  copyForBoth("last");
  pass(1);
  EXPECT_EQ(stored(), (Texts{"last", "after", "again", "mine", "both"}));
  EXPECT_EQ(std::filesystem::status(file_).permissions(), std::filesystem::perms(0600));
}

/// Lets the previews that are waiting for answers have theirs.
class ClipboardPreviewTest : public ClipboardSourceTest {
protected:
  ClipboardPreviewTest() { http().hosts["tides.com"] = {"93.184.216.34"}; }
  FakeHTTPClient& http() { return platform_.fakeHTTP; }
  void copyLink(const std::string& url) {
    copyText(url);
    pass(0.1);
  }
  void answer(const std::string& title) {
    ASSERT_TRUE(
        http().answer("tides.com", {.status = 200, .body = "<title>" + title, .contentType = {}}));
    pass(0.1);
    pass(0.1);
  }
};

TEST_F(ClipboardPreviewTest, ALinkGetsWhatItsPageSays) {
  open();
  copyLink(" https://tides.com/march\n");
  EXPECT_THAT(http().urls, ElementsAre("https://tides.com/march"));
  copyText("words");
  const auto fetched = platform_.fakeClock.now();
  ASSERT_TRUE(
      http().answer("tides", {.status = 200,
                              .body = "<title>Tides</title><meta name=description content=When>",
                              .contentType = "text/html"}));
  pass(1);
  const auto& item = source_->state().items[1]->item;
  EXPECT_EQ(item.ogTitle, "Tides");
  EXPECT_EQ(item.ogDescription, "When");
  ASSERT_TRUE(item.ogFetchedAt);
  EXPECT_GE(item.ogFetchedAt->date, fetched);
  EXPECT_EQ(source_->state().unseenCount, 2) << "what was copied stays what it was";
  open();
  EXPECT_EQ(source_->state().items[1]->item.ogTitle, "Tides") << "it is saved";
  EXPECT_EQ(http().requests.size(), 1u) << "and not fetched again";
}

TEST_F(ClipboardPreviewTest, OnlyPlainLinksToPublicNames) {
  open();
  for (const char* text : {"words", "see https://tides.com", "https://tides.com/Session?key=4fG7",
                           "http://localhost/x", "http://printer.local/", "http://[::1]/",
                           "ftp://tides.com/", "https://tides/"})
    copyLink(text);
  EXPECT_TRUE(http().lookups.empty());
  ClipboardSettings settings;
  settings.fetchWebsitePreviews = false;
  source_->setSettings(settings);
  copyLink("https://tides.com/");
  EXPECT_TRUE(http().lookups.empty());
}

TEST_F(ClipboardPreviewTest, OneAtATimeAndOnlyForWhatIsStillThere) {
  open();
  copyLink("https://tides.com/a");
  copyLink("https://tides.com/b");
  copyLink("https://tides.com/c");
  EXPECT_EQ(http().open(), 1);
  source_->remove(source_->state().items[1]->item.id);
  source_->togglePin(source_->state().items[1]->item.id);
  answer("A");
  EXPECT_EQ(source_->state().items[1]->item.ogTitle, "A");
  EXPECT_TRUE(source_->state().items[1]->item.isPinned);
  EXPECT_EQ(http().urls.back(), "https://tides.com/c");
  source_->clearUnpinned();
  pass(0.1);
  EXPECT_EQ(http().open(), 0) << "what was removed is asked for no longer";
  copyLink("https://tides.com/d");
  ClipboardSettings settings;
  settings.fetchWebsitePreviews = false;
  source_->setSettings(settings);
  EXPECT_EQ(http().open(), 0);
}

TEST_F(ClipboardPreviewTest, AFailureIsNoTroubleAndABurstIsBounded) {
  open();
  for (int i = 0; i < 50; ++i)
    copyText("https://tides.com/" + std::string(1, static_cast<char>('a' + i % 26)));
  pass(0.1);
  int answers = 0;
  while (http().answer("tides", {})) {
    ++answers;
    pass(0.1);
  }
  EXPECT_EQ(answers, 20);
  EXPECT_FALSE(source_->state().trouble);
  EXPECT_FALSE(newest().ogFetchedAt);
}

} // namespace
} // namespace tavrin::test

#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "Tests/WidgetsUI/Clipboard/ClipboardSourceFixture.h"

namespace tavrin::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Kind = ClipboardTrouble::Kind;

const std::string png = "\x89PNG\r\n\x1A\n12345";

TEST_F(ClipboardSourceTest, TakesTheFirstKindThatIsThere) {
  open();
  const auto note = folder_ / "a note.txt";
  writeFileAtomically(note, "12345");
  std::string url = "file://" + note.string();
  url.replace(url.find(' '), 1, "%20");
  copy({{"text/uri-list", "#x\r\n" + url + "\r\nfile:///other\r\n"}, {"image/png", png}});
  EXPECT_EQ(newest().fileURL, url);
  EXPECT_EQ(newest().byteSize, 5);
  copy({{"text/uri-list", "https://quellby.dev\r\n"}, {"image/tiff", "II*."}, {"image/png", png}});
  EXPECT_EQ(newest().imageData->view(), "II*.");
  copy({{"image/png", png}, {"text/plain", "words"}});
  EXPECT_EQ(newest().byteSize, static_cast<std::int64_t>(png.size()));
  platform_.fakeWorkspace.frontmost = {4, "org.example.Editor", "Editor"};
  copyText("words");
  EXPECT_EQ(newest().text, "words");
  EXPECT_EQ(newest().sourceAppBundleID, "org.example.Editor");
  EXPECT_EQ(newest().sourceAppName, "Editor");
  copyText("");
  copy({});
  copyText("words");
  EXPECT_THAT(lines(), SizeIs(5)) << "the same text twice is two items, nothing is none";
  EXPECT_EQ(source_->state().unseenCount, 5);
  source_->markAllSeen();
  EXPECT_EQ(source_->state().unseenCount, 0);
}

TEST_F(ClipboardSourceTest, ALargeImageKeepsItsSizeOnly) {
  ClipboardSettings settings;
  settings.maxImageBytes = 10;
  open(settings);
  EXPECT_EQ(board().limits.imageBytes, 10U);
  copy({{"image/png", png}});
  EXPECT_EQ(newest().byteSize, 13);
  EXPECT_FALSE(newest().imageData);
  settings.maxImageBytes = 13;
  source_->setSettings(settings);
  EXPECT_EQ(board().limits.imageBytes, 13U);
  copy({{"image/png", png}});
  EXPECT_EQ(newest().imageData->view(), png);
}

TEST_F(ClipboardSourceTest, LeavesOutTransientCopiesAndItsOwn) {
  open();
  copy({{Pasteboard::transientType, ""}, {"text/plain", "secret"}});
  EXPECT_THAT(lines(), IsEmpty());
  copyText("words");
  source_->write(newest());
  platform_.loop.runBackground();
  EXPECT_THAT(lines(), ElementsAre("words"));
  EXPECT_EQ(board().writtenText(), "words");
  ClipboardSettings settings;
  settings.ignorePasswordManagers = false;
  source_->setSettings(settings);
  copy({{Pasteboard::transientType, ""}, {"text/plain", "secret"}});
  EXPECT_THAT(lines(), ElementsAre("secret", "words"));
}

TEST_F(ClipboardSourceTest, WhatWasCapturedOutlivesItsOwner) {
  open();
  copy({{"image/png", png}});
  board().observer.abandoned(board().changeCount);
  ASSERT_THAT(board().written, SizeIs(1));
  EXPECT_EQ(board().written[0][0].type, "image/png");
  EXPECT_EQ(board().writtenText(), png);
  copy({{Pasteboard::transientType, ""}, {"text/plain", "secret"}});
  board().observer.abandoned(board().changeCount);
  EXPECT_THAT(board().written, SizeIs(1)) << "what was not kept goes with its owner";
  ClipboardSettings settings;
  settings.ignorePasswordManagers = false;
  source_->setSettings(settings);
  copy({{Pasteboard::transientType, ""}, {"text/plain", "secret"}});
  EXPECT_EQ(newest().text, "secret");
  board().observer.abandoned(board().changeCount);
  EXPECT_THAT(board().written, SizeIs(1)) << "kept or not, without its mark it is not offered";
}

TEST_F(ClipboardSourceTest, NothingIsOfferedButWhatWasCopiedLast) {
  ClipboardSettings settings;
  settings.historyLimit = 1;
  open(settings);
  copyText("pinned");
  source_->togglePin(newest().id);
  copyText("dropped at once");
  EXPECT_THAT(lines(), ElementsAre("pinned"));
  board().observer.abandoned(board().changeCount);
  EXPECT_THAT(board().written, IsEmpty());
  pass(1);
  open(settings);
  EXPECT_THAT(lines(), ElementsAre("pinned"));
  for (const std::int64_t count : {std::int64_t{0}, board().changeCount})
    board().observer.abandoned(count); // of a program that had copied before
  EXPECT_THAT(board().written, IsEmpty());

  settings.historyLimit = 9;
  source_->setSettings(settings);
  copyText("kept");
  source_->togglePin(newest().id);
  source_->remove(source_->state().items[1]->item.id);
  board().observer.abandoned(board().changeCount);
  EXPECT_EQ(board().writtenText(), "kept") << "whatever became of the others";
  copyText("removed");
  source_->remove(newest().id);
  board().observer.abandoned(board().changeCount);
  EXPECT_THAT(board().written, SizeIs(1));
}

TEST_F(ClipboardSourceTest, OfACopyOfFilesTheFirstIsOffered) {
  open();
  copy({{"text/uri-list", "file:///tmp/a%20b.txt\r\nfile:///tmp/c\r\n"}});
  source_->write(newest());
  ASSERT_THAT(board().written, SizeIs(1));
  const auto& formats = board().written[0];
  ASSERT_THAT(formats, SizeIs(1));
  EXPECT_EQ(formats[0].type, "text/uri-list");
  EXPECT_EQ(formats[0].data->view(), "file:///tmp/a%20b.txt\r\n");
}

TEST_F(ClipboardSourceTest, ABurstIsOneWriteAndComesBackAfterARestart) {
  open();
  for (int i = 0; i < 4; ++i) {
    copyText(std::to_string(i));
    pass(0.4);
  }
  EXPECT_EQ(bytes(), "none") << "still within the delay of the last copy";
  pass(0.11);
  const std::string first = bytes();
  EXPECT_EQ(first.find("text"), std::string::npos);
  EXPECT_EQ(std::filesystem::status(file_).permissions(), std::filesystem::perms(0600));
  source_->togglePin(newest().id);
  pass(0.6);
  EXPECT_NE(bytes(), first);
  copyText("unsaved");
  open();
  EXPECT_THAT(lines(), ElementsAre("unsaved", "3", "2", "1", "0")) << "the end saves what is left";
  EXPECT_TRUE(source_->state().items[1]->item.isPinned);
  EXPECT_EQ(source_->state().unseenCount, 0);
  const std::string before = bytes();
  pass(10);
  EXPECT_EQ(bytes(), before) << "nothing changed, nothing is written";

  source_->clearUnpinned();
  EXPECT_THAT(lines(), ElementsAre("3"));
  source_->forgetEverything();
  pass(1);
  EXPECT_THAT(lines(), IsEmpty());
  EXPECT_EQ(bytes(), "none");
}

TEST_F(ClipboardSourceTest, ContinuousCopyingIsSavedAllTheSame) {
  open();
  for (int i = 0; i < 60; ++i) {
    copyText("x");
    pass(0.1);
  }
  EXPECT_NE(bytes(), "none");
}

TEST_F(ClipboardSourceTest, ALockedKeychainLosesNothing) {
  open();
  copyText("stored");
  pass(1);
  source_.reset();
  const std::string stored = bytes();

  platform_.fakeKeychain.status = Keychain::interactionNotAllowed;
  open();
  ASSERT_TRUE(source_->state().trouble);
  EXPECT_EQ(source_->state().trouble->kind, Kind::keychainFailed);
  EXPECT_EQ(source_->state().trouble->title(), "Cannot reach the Keychain");
  EXPECT_EQ(source_->state().trouble->text,
            "Failed to access the Keychain because the system returned -25308");
  EXPECT_TRUE(source_->state().hasRead);
  copyText("meanwhile");
  pass(1);
  EXPECT_EQ(bytes(), stored) << "what could not be read is not written over";
  EXPECT_THAT(lines(), ElementsAre("meanwhile"));

  platform_.fakeKeychain.status = 0;
  copyText("after");
  pass(1);
  EXPECT_FALSE(source_->state().trouble);
  EXPECT_THAT(lines(), ElementsAre("after", "meanwhile", "stored"));
  pass(1);
  open();
  EXPECT_THAT(lines(), ElementsAre("after", "meanwhile", "stored"));
}

TEST_F(ClipboardSourceTest, ABrokenFileIsAToldTroubleAndPutAside) {
  open();
  copyText("stored");
  pass(1);
  source_.reset();
  const std::string good = bytes();
  const auto foreign = [&] {
    platform_.fakeKeychain.secrets.clear();
    return good;
  };
  std::string flipped = good;
  flipped[20] = static_cast<char>(flipped[20] ^ 1);
  const char* incomplete = "Failed to read the encrypted clipboard because the file is incomplete";
  const std::pair<std::string, std::string> cases[] = {
      {"", incomplete},
      {good.substr(0, 28), incomplete},
      {good.substr(0, 29), "altered or sealed with another key"},
      {flipped, "altered or sealed with another key"},
      {foreign(), "altered or sealed with another key"}};
  int number = 0;
  for (const auto& [contents, sentence] : cases) {
    writeFileAtomically(file_, contents);
    open();
    ASSERT_TRUE(source_->state().trouble) << contents.size();
    EXPECT_EQ(source_->state().trouble->kind, Kind::persistenceFailed);
    EXPECT_EQ(source_->state().trouble->title(), "Cannot save the clipboard");
    EXPECT_THAT(source_->state().trouble->text, HasSubstr(sentence));
    EXPECT_EQ(bytes(), contents);
    copyText("new");
    pass(1);
    EXPECT_FALSE(source_->state().trouble);
    EXPECT_THAT(lines(), ElementsAre("new"));
    ++number;
    const std::string name =
        file_.string() + ".damaged" + (number > 1 ? "-" + std::to_string(number) : "");
    EXPECT_EQ(readFile(name).value_or("none"), contents);
    source_.reset();
  }
  EXPECT_EQ(readFile(file_.string() + ".damaged").value_or("none"), "") << "the first one stays";
  open();
  source_->forgetEverything();
  platform_.loop.runBackground();
  EXPECT_FALSE(std::filesystem::exists(file_.string() + ".damaged-3"));
}

TEST_F(ClipboardSourceTest, NothingIsKeptWhereThatIsSwitchedOff) {
  ClipboardSettings settings;
  open(settings);
  copyText("stored");
  pass(1);
  EXPECT_NE(bytes(), "none");
  settings.persistAcrossRestarts = false;
  source_->setSettings(settings);
  pass(1);
  EXPECT_EQ(bytes(), "none");
  EXPECT_THAT(lines(), ElementsAre("stored"));
  copyText("more");
  pass(1);
  open(settings);
  EXPECT_THAT(lines(), IsEmpty());
  EXPECT_TRUE(source_->state().hasRead);
  EXPECT_EQ(bytes(), "none");
}

TEST_F(ClipboardSourceTest, WhatWasSwitchedOffMeanwhileIsRemovedAtTheStart) {
  ClipboardSettings settings;
  open(settings);
  copyText("stored");
  pass(1);
  source_.reset();
  writeFileAtomically(file_.string() + ".damaged", "older");
  settings.persistAcrossRestarts = false;
  isKeptByAnother_ = true;
  open(settings);
  EXPECT_NE(bytes(), "none") << "another widget's history is its own";
  EXPECT_THAT(lines(), IsEmpty());
  isKeptByAnother_ = false;
  open(settings);
  EXPECT_EQ(bytes(), "none");
  EXPECT_FALSE(std::filesystem::exists(file_.string() + ".damaged"));
}

TEST_F(ClipboardSourceTest, TheModelSearchesAndFollows) {
  open();
  ClipboardModel model(DockWidget(UUID(), "Clipboard", 1, ClipboardSettings{}, 1), *source_);
  int changes = 0;
  model.onChange = [&] { ++changes; };
  copyText("Alpha");
  copyText("beta");
  EXPECT_EQ(changes, 2);
  model.setSearchText("ALP");
  EXPECT_THAT(model.results(), SizeIs(1));
  copyText("alpine");
  EXPECT_THAT(model.results(), SizeIs(2));
  model.setSearchText("");
  EXPECT_THAT(model.results(), SizeIs(3));
}

} // namespace
} // namespace tavrin::test

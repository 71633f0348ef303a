#include "Tests/macOS/Objc/MacTest.h"

#include "TavrinPlatform/macOS/Desktop/MacNotifications.h"
#include "TavrinPlatform/macOS/Files/MacUserFiles.h"
#include "TavrinPlatform/macOS/Input/MacColourSampler.h"
#include "TavrinPlatform/macOS/Input/MacGlobalShortcuts.h"
#include "TavrinPlatform/macOS/Input/MacInputBlocker.h"
#include "TavrinPlatform/macOS/Pasteboard/MacPasteboard.h"
#include "Tests/Storage/TemporaryFolder.h"

namespace tavrin::test {
namespace {

using Outcome = InputBlocker::Outcome;

class MacInputTest : public MacTest {
protected:
  TokenPtr hold(bool locksPointer = true, double longest = 0) {
    const auto before = outcomes_.size();
    auto token = blocker_->hold(locksPointer, longest,
                                {[this](Outcome outcome) { outcomes_.push_back(outcome); },
                                 [this](int type) { inputs_.push_back(type); },
                                 [this] { ++ends_; }});
    EXPECT_EQ(outcomes_.size(), before) << "told after the call has returned";
    runLoop_.runPosts();
    return token;
  }
  Outcome outcomeOfHold() {
    const auto token = hold();
    return std::exchange(outcomes_, {}).at(0);
  }
  ~MacInputTest() override {
    blocker_.reset();
    EXPECT_EQ(input.ports, 0) << "a tap was not let go of";
    EXPECT_EQ(input.sources, 0);
  }

  std::unique_ptr<DistributedNotificationCenter> notices_ = makeMacDistributedNotificationCenter();
  std::unique_ptr<InputBlocker> blocker_ = makeMacInputBlocker(runLoop_, *notices_);
  std::vector<Outcome> outcomes_;
  std::vector<int> inputs_;
  int ends_ = 0;
};

TEST_F(MacInputTest, RefusalsComeInTheirOrder) {
  input.isTrusted = false;
  input.isSecure = input.isLocked = true;
  EXPECT_EQ(outcomeOfHold(), Outcome::notPermitted);
  input.isTrusted = true;
  EXPECT_EQ(outcomeOfHold(), Outcome::secureInput);
  input.isSecure = false;
  EXPECT_EQ(outcomeOfHold(), Outcome::refused);
  EXPECT_TRUE(blocker_->isScreenLocked());
  EXPECT_EQ(called(), Calls{}) << "no tap was asked for";
  input.isLocked = input.hasTap = false;
  EXPECT_EQ(outcomeOfHold(), Outcome::refused);
  input.hasTap = true;
  input.hasSource = false;
  called();
  EXPECT_EQ(outcomeOfHold(), Outcome::refused);
  EXPECT_EQ(called(), (Calls{"tap 1 0 0 all", "disable", "invalidate"}));
  blocker_->requestPermission();
  EXPECT_EQ(called(), Calls{"prompt"});
}

TEST_F(MacInputTest, SwallowsWhatTheLockTakesAndLetsGoInOrder) {
  auto token = hold(false);
  EXPECT_EQ(outcomes_, std::vector{Outcome::holding});
  EXPECT_EQ(called(), (Calls{"tap 1 0 0 all", "add source", "enable"}));
  EXPECT_FALSE(sendInput(10));
  EXPECT_FALSE(sendInput(14)) << "media keys";
  EXPECT_TRUE(sendInput(1));
  EXPECT_TRUE(sendInput(33));
  EXPECT_EQ(inputs_, (std::vector{10, 14}));
  token.reset();
  EXPECT_EQ(called(), (Calls{"disable", "remove source", "invalidate"}));
  token = hold(true);
  EXPECT_FALSE(sendInput(1));
  EXPECT_FALSE(sendInput(29));
  EXPECT_TRUE(sendInput(0));
}

TEST_F(MacInputTest, ATapThatTheSystemSwitchesOffIsEnabledUntilThePermissionIsGone) {
  const auto token = hold();
  called();
  EXPECT_TRUE(sendInput(kCGEventTapDisabledByTimeout));
  EXPECT_TRUE(sendInput(kCGEventTapDisabledByUserInput));
  EXPECT_EQ(called(), (Calls{"enable", "enable"}));
  input.isEnabled = false;
  runLoop_.advance(1);
  EXPECT_EQ(called(), Calls{"enable"}) << "nobody told, the look did";
  input.isTrusted = false;
  EXPECT_TRUE(sendInput(kCGEventTapDisabledByTimeout));
  EXPECT_EQ(called(), (Calls{"disable", "remove source", "invalidate"}));
  EXPECT_EQ(ends_, 1);
  runLoop_.advance(5);
  EXPECT_EQ(ends_, 1);
  EXPECT_TRUE(inputs_.empty());
}

TEST_F(MacInputTest, EndsWithSecureInputALockedScreenAndItsTime) {
  const auto endsAfter = [&](const std::function<void()>& change, double longest) {
    ends_ = 0;
    outcomes_.clear();
    const auto token = hold(true, longest);
    change();
    runLoop_.advance(1);
    input.isSecure = input.isLocked = false;
    return ends_;
  };
  EXPECT_EQ(endsAfter([] { input.isSecure = true; }, 0), 1);
  EXPECT_EQ(endsAfter([] { input.isLocked = true; }, 0), 1);
  EXPECT_EQ(endsAfter([] {}, 0.9), 1);
  EXPECT_EQ(endsAfter([] {}, 1.1), 0);
}

TEST_F(MacInputTest, MayBeEndedFromInsideOfTheTap) {
  TokenPtr token;
  token = blocker_->hold(true, 0, {{}, [&](int) { token.reset(); }, [] { FAIL(); }});
  EXPECT_FALSE(sendInput(2)) << "the release that ends the hold is swallowed";
  EXPECT_EQ(input.ports, 0);
}

TEST_F(MacInputTest, TheScreensLockAndSleepEndTheNeed) {
  const auto token = blocker_->observeEndOfNeed([] { note("over"); });
  called();
  postNotice([NSDistributedNotificationCenter defaultCenter], @"com.apple.screenIsLocked");
  postNotice(NSWorkspace.sharedWorkspace.notificationCenter, NSWorkspaceWillSleepNotification);
  EXPECT_EQ(called(), (Calls{"over", "over"}));
}

using MacShortcutsTest = MacTest;

TEST_F(MacShortcutsTest, BindsExactlyTheseAndHearsOnlyItsOwn) {
  const auto shortcuts = makeMacGlobalShortcuts();
  using Modifiers = HotkeyModifiers;
  input.refused = {{7, eventHotKeyExistsErr}, {8, -50}};
  const auto pressed = [](const std::string& id) { note("pressed " + id); };
  const auto refusals =
      shortcuts->bind({{"a", "", {1, Modifiers::command | Modifiers::shift}},
                       {"b", "", {7, Modifiers::option}},
                       {"c", "", {8, Modifiers::option}},
                       {"d", "", {9, Modifiers::control | Modifiers::option}}},
                      pressed);
  EXPECT_EQ(refusals,
            (std::vector<GlobalShortcuts::Refusal>{{"b", "another program has this key"},
                                                   {"c", "the system returned -50"}}));
  EXPECT_EQ(called(), (Calls{"handler 5", "key 1 with 768", "key 9 with 6144"}));
  EXPECT_EQ(pressKey(input.keys[9]), noErr);
  EXPECT_EQ(called(), Calls{"pressed d"});
  EXPECT_EQ(pressKey({'othr', 0}), eventNotHandledErr);
  const auto old = input.keys[9];
  shortcuts->bind({{"e", "", {2, Modifiers::command}}}, pressed);
  EXPECT_EQ(input.keys.size(), 1U);
  EXPECT_EQ(called(), Calls{"key 2 with 256"});
  EXPECT_EQ(pressKey({old.signature, 5}), eventNotHandledErr);
  EXPECT_EQ(called(), Calls{});
}

TEST_F(MacShortcutsTest, LetsGoOfItsKeysAtTheEnd) {
  auto shortcuts = makeMacGlobalShortcuts();
  shortcuts->bind({{"a", "", {1, HotkeyModifiers::command}}}, {});
  EXPECT_EQ(pressKey(input.keys[1]), noErr);
  called();
  shortcuts.reset();
  EXPECT_TRUE(input.keys.empty());
  EXPECT_EQ(called(), Calls{"no handler"});
}

using MacSamplerTest = MacTest;

TEST_F(MacSamplerTest, PicksInSRGBIsCancelledAndForgetsWhoHasGone) {
  (void)NSColorSpace.sRGBColorSpace;
  tavrin_snapshot();
  const auto sampler = makeMacColourSampler();
  std::vector<ColourSample> samples;
  const auto pick = [&] {
    return sampler->pick([&](const ColourSample& sample) { samples.push_back(sample); });
  };
  using enum ColourSample::Outcome;
  auto token = pick();
  appKit.sampled([[NSColor alloc] init]);
  EXPECT_EQ(called(), Calls{"to sRGB"});
  token = pick();
  appKit.sampled(nil);
  token = pick();
  appKit.isPattern = true;
  appKit.sampled([[NSColor alloc] init]);
  EXPECT_EQ(samples, (std::vector<ColourSample>{{picked, 255, 128, 0}, {cancelled}, {cancelled}}));
  token = pick();
  token.reset();
  appKit.sampled([[NSColor alloc] init]);
  EXPECT_EQ(samples.size(), 3U);
}

class MacPasteboardTest : public MacTest {
protected:
  MacPasteboardTest() {
    (void)NSPasteboard.generalPasteboard;
    tavrin_snapshot();
    token_ = board_->observe({.textBytes = 8, .imageBytes = 4},
                             {[](std::int64_t count) { note("changed " + std::to_string(count)); },
                              [this](Pasteboard::Capture capture) { captures_.push_back(capture); },
                              [](std::int64_t) { FAIL() << "nothing is abandoned here"; }});
  }
  /// What was captured after a copy of these.
  Pasteboard::Capture copy(std::map<std::string, std::string> contents,
                           std::vector<std::string> files = {}) {
    ++pasteboard.count;
    pasteboard.contents = std::move(contents);
    pasteboard.files = std::move(files);
    captures_.clear();
    runLoop_.advance(0.5);
    runLoop_.runBackground();
    return captures_.empty() ? Pasteboard::Capture{} : captures_.front();
  }
  static std::string first(const Pasteboard::Capture& capture) {
    return capture.formats.empty() ? "" : std::string(capture.formats[0].data->view());
  }

  std::unique_ptr<Pasteboard> board_ = makeMacPasteboard(runLoop_);
  std::vector<Pasteboard::Capture> captures_;
  TokenPtr token_;
};

TEST_F(MacPasteboardTest, TheFirstTypeOfTheOrderIsRead) {
  runLoop_.advance(2);
  EXPECT_EQ(pasteboard.reads, 0) << "a look at the count asks nobody";
  const auto text = copy({{"public.utf8-plain-text", "abcdefgé"}});
  EXPECT_EQ(text.changeCount, 2);
  EXPECT_EQ(text.types, Calls{"text/plain"});
  EXPECT_EQ(first(text), "abcdefg") << "not in the midst of a character";
  EXPECT_EQ(text.formats[0].size, 9U);
  EXPECT_EQ(first(copy({{"public.png", "P"}, {"public.tiff", "T"}})), "T");
  const auto large = copy({{"public.png", "12345"}, {"public.utf8-plain-text", "x"}});
  EXPECT_EQ(large.formats[0].size, 5U);
  EXPECT_EQ(large.formats[0].data, nullptr);
  EXPECT_EQ(first(copy({{"public.tiff", "T"}}, {"file:///a"})), "file:///") << "cut as text is";
  EXPECT_EQ(first(copy({{"public.png", ""}, {"public.utf8-plain-text", "x"}})), "x");
  EXPECT_TRUE(copy({{"com.example.own", "x"}}).formats.empty());
}

TEST_F(MacPasteboardTest, MarkersOfEveryFashionAreTheOne) {
  for (const char* marker :
       {"org.nspasteboard.TransientType", "org.nspasteboard.ConcealedType",
        "com.agilebits.onepassword", "Pasteboard generator type"}) {
    const auto capture = copy({{marker, ""}, {"public.utf8-plain-text", "secret"}});
    EXPECT_EQ(capture.types, (Calls{"text/plain", Pasteboard::transientType})) << marker;
  }
}

TEST_F(MacPasteboardTest, WritesAreKnownAsOwn) {
  board_->writeText("mine");
  EXPECT_EQ(pasteboard.contents["public.utf8-plain-text"], "mine");
  runLoop_.advance(0.5);
  runLoop_.runBackground();
  ASSERT_EQ(captures_.size(), 1U);
  EXPECT_TRUE(captures_[0].isOwn);
  EXPECT_EQ(called(), Calls{});
  const auto files = std::make_shared<const Data>(Data::fromText("file:///a\r\nfile:///b\r\n"));
  board_->write({{Pasteboard::filesType, files, files->bytes.size()}});
  EXPECT_EQ(pasteboard.files, (Calls{"file:///a", "file:///b"}));
  EXPECT_FALSE(copy({{"public.utf8-plain-text", "theirs"}}).isOwn);
}

TEST_F(MacPasteboardTest, WhatChangedWhileItWasReadIsReadAnew) {
  pasteboard.whileReading = ^{
    ++pasteboard.count;
    pasteboard.whileReading = nil;
  };
  EXPECT_EQ(copy({{"public.utf8-plain-text", "old"}}).changeCount, 0);
  runLoop_.advance(0.5);
  runLoop_.runBackground();
  ASSERT_EQ(captures_.size(), 1U);
  EXPECT_EQ(captures_[0].changeCount, 3);
  EXPECT_EQ(called(), (Calls{"changed 2", "changed 3"}));
  token_.reset();
  EXPECT_TRUE(copy({{"public.utf8-plain-text", "later"}}).formats.empty());
}

using MacFilesTest = MacTest;

TEST_F(MacFilesTest, FoldersTrashAndFinder) {
  const auto files = makeMacUserFiles();
  EXPECT_EQ(files->homeFolder(), "/Users/ada");
  EXPECT_EQ(files->downloadsFolder(), "/Users/ada/Downloads");
  EXPECT_EQ(files->screenshotFolder(), "/Users/ada/Desktop");
  foundation.defaults["com.apple.screencapture"]["location"] = @"~/Pictures/Shots";
  EXPECT_EQ(files->screenshotFolder(), "/Users/ada/Pictures/Shots");
  const TemporaryFolder folder;
  const std::string file = (folder / "a").string();
  put(file, "");
  foundation.canTrash = false;
  EXPECT_FALSE(files->moveToTrash(file));
  files->reveal("/c");
  files->open("/d");
  EXPECT_EQ(called(), (Calls{"trash " + file, "reveal /c", "open file:///d"}));
}

} // namespace
} // namespace tavrin::test

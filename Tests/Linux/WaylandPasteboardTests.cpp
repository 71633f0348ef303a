#include "TavrinPlatform/Linux/Wayland/WaylandPasteboard.h"
#include "Tests/Linux/PasteboardWatch.h"

#include <iostream>

/// A Wayland compositor's clipboard beside other programs, good and bad.
namespace tavrin {
namespace {

using testing::Contains;
using testing::SizeIs;

class WaylandPasteboardTest : public PasteboardWatch<WaylandPasteboard> {
protected:
  void observe(const Pasteboard::Limits& limits = {}) {
    watch(limits);
    // The thread has taken note once it tells of a copy.
    int sent = 0;
    ASSERT_TRUE(until([&] {
      if (captures_.empty())
        shell("wl-copy warm" + std::to_string(++sent));
      return !captures_.empty() &&
             words(captures_.back()) == "text/plain=warm" + std::to_string(sent) + ";";
    }));
    forget();
  }
  bool captured(std::size_t count) {
    return until([&] { return captures_.size() >= count; });
  }
};

/// Whether the owner of a copy was replaced before the compositor passed any request on to it, by
/// its own record of the messages: nobody can have such a copy's words.
bool wasNeverAsked(int copy) {
  const std::string record = "\"$DESK/copy" + std::to_string(copy) + "\"";
  return eventually([&] { return shell("grep -c '\\.cancelled(' " + record) != "0"; }) &&
         shell("grep -c '\\.send(' " + record) == "0";
}

TEST_F(WaylandPasteboardTest, EveryCopyOfASeriesComesOnceAndInOrder) {
  observe();
  // At their own pace (TAVRIN_PACE=full) copies of a busy machine are gone before anybody can ask
  // for them.
  const int wanted = qEnvironmentVariableIntValue("TAVRIN_COPIES");
  const int count = wanted > 0 ? wanted : 100;
  const bool isFullPace = qEnvironmentVariable("TAVRIN_PACE") == QLatin1String("full");
  for (int i = 0; i < count; ++i) {
    const std::string copy = "wl-copy 'item " + std::to_string(i) + "'";
    if (!isFullPace) {
      shell(copy);
      ASSERT_TRUE(captured(static_cast<std::size_t>(i) + 1)) << i;
    }
  }
  QProcess copies;
  if (isFullPace) {
    copies.start("/bin/bash",
                 {"-c", QStringLiteral("for ((i = 0; i < %1; i++)); do WAYLAND_DEBUG=1 wl-copy "
                                       "\"item $i\" 2>\"$DESK/copy$i\" || exit 1; done")
                            .arg(count)});
    ASSERT_TRUE(until([&] { return copies.state() == QProcess::NotRunning; }, 300'000));
    EXPECT_EQ(copies.exitCode(), 0);
  }
  shell("wl-copy last");
  ASSERT_TRUE(
      until([&] { return !captures_.empty() && words(captures_.back()) == "text/plain=last;"; }));
  ASSERT_EQ(static_cast<int>(captures_.size()), count + 1);
  EXPECT_EQ(changes_, count + 1);
  int unasked = 0;
  for (int i = 0; i < count; ++i) {
    const auto told = words(captures_[static_cast<std::size_t>(i)]);
    if (isFullPace && told.empty() && wasNeverAsked(i))
      ++unasked;
    else
      EXPECT_EQ(told, "text/plain=item " + std::to_string(i) + ";");
  }
  std::cout << unasked << " of " << count << " replaced before the compositor asked their owner\n";
}

TEST_F(WaylandPasteboardTest, BadOwnersCostTheirOwnCopyOnly) {
  struct Case {
    const char* mode;
    std::string found;
  };
  observe({1000, 100});
  for (const auto& [mode, found] :
       {Case{"hang", ""}, Case{"empty", ""},
        Case{"flood", "text/plain=" + std::string(1000, 'x') + ";"}, Case{"dribble", ""},
        Case{"picture", "image/png=?;"}, Case{"plain", "text/plain=good words;"},
        Case{"names", "text/plain=good words;"}}) {
    captures_.clear();
    Program owner(DATA_OWNER, {mode});
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(captured(1)) << mode;
    EXPECT_EQ(words(captures_[0]), found) << mode;
    EXPECT_LT(clock.elapsed(), 9000) << mode;
    // The next one is read as if nothing had been.
    shell("wl-copy next");
    ASSERT_TRUE(captured(2)) << mode;
    EXPECT_EQ(words(captures_[1]), "text/plain=next;") << mode;
  }
}

TEST_F(WaylandPasteboardTest, ACopyIsNotLostToTheOneBeforeItThatHangs) {
  observe();
  Program owner(DATA_OWNER, {"hang"});
  ASSERT_TRUE(owner.says("copied"));
  shell("wl-copy first; wl-copy second");
  ASSERT_TRUE(captured(3));
  EXPECT_EQ(words(captures_[0]), "");
  EXPECT_EQ(words(captures_[1]), "text/plain=first;");
  EXPECT_EQ(words(captures_[2]), "text/plain=second;");
}

TEST_F(WaylandPasteboardTest, AHintThatCannotBeReadHints) {
  observe();
  for (const auto& [mode, isTransient] : {std::pair{"public", false},
                                          {"secret", true},
                                          {"refused", true},
                                          {"silent", true},
                                          {"names", true},
                                          {"plain", false}}) {
    captures_.clear();
    Program owner(DATA_OWNER, {mode});
    ASSERT_TRUE(captured(1)) << mode;
    EXPECT_EQ(testing::Value(captures_[0].types, Contains(Pasteboard::transientType)), isTransient)
        << mode;
  }
}

TEST_F(WaylandPasteboardTest, LargeImagesAreCountedAndNotKept) {
  observe({1000, 100'000});
  for (const auto& [bytes, isKept] :
       {std::pair{100'000, true}, {100'001, false}, {5'000'000, false}}) {
    captures_.clear();
    shell("head -c " + std::to_string(bytes) + " /dev/zero | wl-copy -t image/png");
    ASSERT_TRUE(captured(1)) << bytes;
    ASSERT_THAT(captures_[0].formats, SizeIs(1)) << bytes;
    EXPECT_EQ(captures_[0].formats[0].data != nullptr, isKept) << bytes;
    EXPECT_EQ(captures_[0].formats[0].size, static_cast<std::size_t>(bytes));
  }
}

TEST_F(WaylandPasteboardTest, OffersWhatIsWrittenToOthersWhateverItsLength) {
  observe();
  std::string longText(3'000'000, 'a');
  longText += "end";
  board_.writeText("Grüße");
  ASSERT_TRUE(captured(1));
  EXPECT_TRUE(captures_[0].isOwn);
  EXPECT_EQ(shell("wl-paste -n"), "Grüße");
  EXPECT_EQ(shell("wl-paste -n -t text/plain"), "Grüße");
  EXPECT_EQ(shell("wl-paste -n -t STRING | od -An -tx1"), "47 72 fc df 65");
  board_.writeText(longText);
  ASSERT_TRUE(captured(2));
  EXPECT_EQ(shell("wl-paste -n | wc -c"), "3000003");
  // A reader that takes its time, and one that goes away, hold up nobody.
  QProcess slow;
  slow.start("/bin/bash", {"-c", "wl-paste -n | (read -n 1 -t 60; sleep 1; cat) | wc -c"});
  shell("wl-paste -n | head -c 10");
  EXPECT_EQ(shell("wl-paste -n | wc -c"), "3000003");
  slow.waitForFinished(patience);
  EXPECT_EQ(slow.readAllStandardOutput().trimmed(), "3000002");
  const auto image = std::make_shared<const Data>(Data::fromText(std::string(400'000, '\x7F')));
  board_.write({{"image/png", image, image->bytes.size()}});
  ASSERT_TRUE(captured(3));
  EXPECT_EQ(shell("wl-paste -n -t image/png | wc -c"), "400000");
  EXPECT_EQ(shell("wl-paste -n -t UTF8_STRING 2>/dev/null | wc -c"), "0");
  const auto files =
      std::make_shared<const Data>(Data::fromText("file:///a%20b\r\nfile:///d/%FF\r\n"));
  board_.write({{Pasteboard::filesType, files, files->bytes.size()}});
  ASSERT_TRUE(captured(4));
  EXPECT_EQ(shell("wl-paste -n -t text/uri-list | tr -d '\r'"), "file:///a%20b\nfile:///d/%FF");
  EXPECT_EQ(shell("wl-paste -n -t x-special/gnome-copied-files"),
            "copy\nfile:///a%20b\nfile:///d/%FF");
}

TEST_F(WaylandPasteboardTest, TellsWhenAnOwnerIsGone) {
  observe();
  {
    Program owner(DATA_OWNER, {"plain"});
    ASSERT_TRUE(captured(1));
    EXPECT_EQ(abandoned_, 0);
  }
  EXPECT_TRUE(until([&] { return abandoned_ == 1; }));
  // What is offered in its place is there for others, and no copy of somebody's.
  board_.writeText("kept");
  ASSERT_TRUE(captured(2));
  EXPECT_TRUE(captures_[1].isOwn);
  EXPECT_EQ(shell("wl-paste -n"), "kept");
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}

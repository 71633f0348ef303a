#include "TavrinPlatform/Linux/Input/LinuxColourSampler.h"
#include "TavrinPlatform/Linux/Input/X11Shortcuts.h"
#include "TavrinPlatform/Linux/Pasteboard/X11Pasteboard.h"
#include "Tests/Linux/PasteboardWatch.h"
#include "Tests/Platform/GlobalShortcutsContract.h"
#include "Tests/Platform/PasteboardContract.h"

#include <QApplication>
#include <QPainter>
#include <QRasterWindow>

/// The clipboard beside other programs, good and bad; and the colour of a pixel.
namespace tavrin {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class PasteboardTest : public PasteboardWatch<X11Pasteboard> {
protected:
  void observe(const Pasteboard::Limits& limits = {}) {
    watch(limits);
    // The thread has taken note once it tells of a copy.
    ASSERT_TRUE(until([this] {
      shell("printf warm | xclip -selection clipboard >/dev/null 2>&1");
      return !captures_.empty();
    }));
    // And has read all of them once it has read the last.
    int number = 0;
    ASSERT_TRUE(until([&] {
      const std::string last = "ready " + std::to_string(++number);
      shell("printf '" + last + "' | xclip -selection clipboard >/dev/null 2>&1");
      return until([&] { return words(captures_.back()) == "text/plain=" + last + ";"; }, 2000);
    }));
    forget();
  }
};

TEST_F(PasteboardTest, EveryCopyOfASeriesComesInOrder) {
  observe();
  constexpr int count = 60;
  Program owner(SELECTION_OWNER, {"series"});
  for (int i = 0; i < count; ++i) {
    owner.tell("\n");
    ASSERT_TRUE(until([&] { return static_cast<int>(captures_.size()) == i + 1; })) << i;
    const auto& capture = captures_[static_cast<std::size_t>(i)];
    const std::string number = std::to_string(i);
    const std::string expected[] = {
        "text/plain=item " + number + ";", "image/png=\x89PNG\r\n\x1A\nitem " + number + ";",
        "text/uri-list=file:///tmp/item%20" + number + "\r\n;",
        "x-kde-passwordManagerHint=secret;text/plain=item " + number + ";"};
    EXPECT_EQ(words(capture), expected[i % 4]);
    EXPECT_EQ(testing::Value(capture.types, testing::Contains(Pasteboard::transientType)),
              i % 4 == 3);
  }
  EXPECT_EQ(changes_, count);
}

TEST_F(PasteboardTest, BadOwnersCostTheirOwnCopyOnly) {
  struct Case {
    const char* mode;
    std::string found;
  };
  observe({1000, 100});
  for (const auto& [mode, found] :
       {Case{"hang", ""}, Case{"mute", "text/plain=good words \xFF;"},
        Case{"flood", "text/plain=" + std::string(1000, 'x') + ";"},
        Case{"picture", "image/png=?;"}, Case{"dribble", ""}, Case{"empty", ""},
        Case{"simple", "text/plain=good words \xFF;"}}) {
    captures_.clear();
    Program owner(SELECTION_OWNER, {mode});
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(until([&] { return !captures_.empty(); })) << mode;
    EXPECT_EQ(words(captures_[0]), found) << mode;
    EXPECT_LT(clock.elapsed(), 9000) << mode;
    // The next one is read as if nothing had been.
    shell("printf next | xclip -selection clipboard >/dev/null 2>&1");
    ASSERT_TRUE(until([&] { return captures_.size() == 2; })) << mode;
    EXPECT_EQ(words(captures_[1]), "text/plain=next;") << mode;
  }
}

TEST_F(PasteboardTest, AHintThatCannotBeReadHints) {
  observe();
  for (const auto& [mode, isTransient] :
       {std::pair{"public", false}, {"refused", true}, {"silent", true}, {"listless", true}}) {
    captures_.clear();
    Program owner(SELECTION_OWNER, {mode});
    ASSERT_TRUE(until([&] { return !captures_.empty(); })) << mode;
    EXPECT_EQ(testing::Value(captures_[0].types, testing::Contains(Pasteboard::transientType)),
              isTransient)
        << mode;
  }
}

TEST_F(PasteboardTest, TextInLatin1IsReadAsThat) {
  observe();
  for (const auto& [bytes, words] :
       {std::pair{"caf\\xe9", "text/plain=café;"}, {"caf\\xc3\\xa9", "text/plain=café;"}}) {
    captures_.clear();
    shell(std::string("printf '") + bytes +
          "' | xclip -selection clipboard -t STRING >/dev/null 2>&1");
    ASSERT_TRUE(until([&] { return !captures_.empty(); })) << bytes;
    EXPECT_EQ(PasteboardTest::words(captures_[0]), words);
  }
}

TEST_F(PasteboardTest, AnOwnerThatCopiesAgainIsReadInOneTurn) {
  observe();
  Program owner(SELECTION_OWNER, {"turn"});
  ASSERT_TRUE(until([&] { return captures_.size() == 2; }));
  for (const auto& capture : captures_)
    EXPECT_EQ(words(capture), "text/plain=good words \xFF;");
}

TEST_F(PasteboardTest, LargeImagesAreCountedAndNotKept) {
  observe({1000, 100'000});
  for (const auto& [bytes, isKept] :
       {std::pair{100'000, true}, {100'001, false}, {5'000'000, false}}) {
    captures_.clear();
    shell("head -c " + std::to_string(bytes) +
          " /dev/zero | xclip -selection clipboard -t image/png >/dev/null 2>&1");
    ASSERT_TRUE(until([&] { return !captures_.empty(); })) << bytes;
    ASSERT_THAT(captures_[0].formats, SizeIs(1)) << bytes;
    EXPECT_EQ(captures_[0].formats[0].data != nullptr, isKept) << bytes;
    // A program that sends in pieces may tell no more than that it is too long.
    EXPECT_GE(captures_[0].formats[0].size, static_cast<std::size_t>(std::min(bytes, 100'001)));
  }
}

TEST_F(PasteboardTest, OffersWhatIsWrittenToOthersWhateverItsLength) {
  observe();
  std::string longText(3'000'000, 'a');
  longText += "end";
  board_.writeText("Grüße");
  ASSERT_TRUE(until([&] { return !captures_.empty(); }));
  EXPECT_TRUE(captures_[0].isOwn);
  EXPECT_EQ(shell("xclip -selection clipboard -o"), "Grüße");
  EXPECT_EQ(shell("xclip -selection clipboard -o -t text/plain"), "Grüße");
  EXPECT_EQ(shell("xclip -selection clipboard -o -t STRING | od -An -tx1"), "47 72 fc df 65");
  EXPECT_EQ(shell("xclip -selection clipboard -o -t TARGETS | sort | tr '\\n' ' '"),
            "MULTIPLE STRING TARGETS TEXT TIMESTAMP UTF8_STRING text/plain "
            "text/plain;charset=utf-8");
  board_.writeText(longText);
  ASSERT_TRUE(until([&] { return captures_.size() == 2; }));
  EXPECT_EQ(shell("xclip -selection clipboard -o | wc -c"), "3000003");
  const auto image = std::make_shared<const Data>(Data::fromText(std::string(400'000, '\x7F')));
  board_.write({{"image/png", image, image->bytes.size()}});
  ASSERT_TRUE(until([&] { return captures_.size() == 3; }));
  EXPECT_EQ(shell("xclip -selection clipboard -o -t image/png | wc -c"), "400000");
  EXPECT_EQ(shell("xclip -selection clipboard -o -t UTF8_STRING 2>/dev/null | wc -c"), "0");
  const auto files =
      std::make_shared<const Data>(Data::fromText("file:///a%20b\r\nfile:///d/%FF\r\n"));
  board_.write({{Pasteboard::filesType, files, files->bytes.size()}});
  ASSERT_TRUE(until([&] { return captures_.size() == 4; }));
  EXPECT_EQ(shell("xclip -selection clipboard -o -t text/uri-list | tr -d '\r'"),
            "file:///a%20b\nfile:///d/%FF");
  EXPECT_EQ(shell("xclip -selection clipboard -o -t x-special/gnome-copied-files"),
            "copy\nfile:///a%20b\nfile:///d/%FF");
}

TEST_F(PasteboardTest, TellsWhenAnOwnerIsGone) {
  observe();
  {
    Program owner(SELECTION_OWNER, {"simple"});
    ASSERT_TRUE(until([&] { return !captures_.empty(); }));
    EXPECT_EQ(abandoned_, 0);
  }
  EXPECT_TRUE(until([&] { return abandoned_ == 1; }));
}

/// Half of the screen in one colour, half in another.
class Flag final : public QRasterWindow {
protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(0, 0, width() / 2, height(), QColor(0xFF, 0x80, 0x00));
    painter.fillRect(width() / 2, 0, width(), height(), QColor(0x12, 0x34, 0x56));
    isPainted = true;
  }

public:
  bool isPainted = false;
};

TEST_F(PasteboardTest, PicksThePixelUnderThePointerOrNone) {
  Flag flag;
  flag.setFlags(Qt::BypassWindowManagerHint);
  flag.setGeometry(0, 0, 400, 300);
  flag.show();
  ASSERT_TRUE(until([&] { return flag.isPainted; }));
  LinuxColourSampler sampler(nullptr);
  using Outcome = ColourSample::Outcome;
  const auto pick = [&](const std::string& input) {
    std::optional<ColourSample> sample;
    const TokenPtr token = sampler.pick([&](const ColourSample& found) { sample = found; });
    for (int i = 0; i < 20; ++i)
      QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    shell("xdotool " + input);
    EXPECT_TRUE(until([&] { return sample.has_value(); })) << input;
    return sample.value_or(ColourSample{});
  };
  shell("xdotool mousemove 50 50");
  EXPECT_EQ(pick("mousemove 199 100 click 1"), (ColourSample{Outcome::picked, 255, 128, 0}));
  EXPECT_EQ(pick("mousemove 200 100 click 1"), (ColourSample{Outcome::picked, 0x12, 0x34, 0x56}));
  EXPECT_EQ(pick("mousemove 199 100 sleep 0.2 key Right sleep 0.2 key Return"),
            (ColourSample{Outcome::picked, 0x12, 0x34, 0x56}));
  EXPECT_EQ(pick("key Escape"), ColourSample{});
  EXPECT_EQ(pick("click 3"), ColourSample{});
}

} // namespace

namespace test {
namespace {

bool withEvents(const std::function<bool()>& condition) {
  return eventually([&] {
    QCoreApplication::processEvents();
    return condition();
  });
}

struct X11PasteboardRig {
  Pasteboard& board() { return board_; }
  void copy(const std::string& type, const std::string& bytes) {
    const std::string target = type == Pasteboard::textType ? "" : " -t " + type;
    shell("printf %s '" + bytes + "' | xclip -selection clipboard" + target + " >/dev/null 2>&1");
  }
  bool comesTrue(const std::function<bool()>& condition) { return withEvents(condition); }
  QtRunLoop loop_;
  X11Pasteboard board_{loop_};
};
INSTANTIATE_TYPED_TEST_SUITE_P(X11, PasteboardContract, X11PasteboardRig);

struct X11ShortcutsRig {
  GlobalShortcuts& shortcuts() { return shortcuts_; }
  static Hotkey free(int number) {
    constexpr std::uint16_t j = 38, k = 40;
    return {number == 0 ? j : k, HotkeyModifiers::control | HotkeyModifiers::option};
  }
  Hotkey taken() {
    constexpr std::uint16_t l = 37;
    const Hotkey hotkey{l, HotkeyModifiers::control | HotkeyModifiers::option};
    EXPECT_TRUE(other_.bind({{"theirs", "", hotkey}}, [](const std::string&) {}).empty());
    return hotkey;
  }
  void press(const Hotkey& hotkey) {
    shell(std::string("xdotool key ctrl+alt+") + (hotkey == free(0) ? "j" : "k"));
  }
  bool comesTrue(const std::function<bool()>& condition) { return withEvents(condition); }
  X11Shortcuts shortcuts_;
  X11Shortcuts other_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(X11, GlobalShortcutsContract, X11ShortcutsRig);

} // namespace
} // namespace test
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}

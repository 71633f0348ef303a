#include "TavrinPlatform/Linux/Desktop/BusMediaPlayers.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "Tests/Linux/Desk.h"
#include "Tests/Platform/MediaPlayersContract.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <QApplication>
#include <chrono>
#include <gmock/gmock.h>
#include <map>

/// Players on a real session bus: scripted ones that lie and hang, and a real one.
namespace tavrin {
namespace {

using testing::ElementsAre;

class RealClock final : public Clock {
public:
  Date now() const override {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return {std::chrono::duration<double>(now).count()};
  }
};

/// A scripted player.
class Scripted {
public:
  explicit Scripted(const std::string& name)
      : name_(name), program_("/usr/bin/python3", {MEDIA_PLAYER, QString::fromStdString(name)}) {
    EXPECT_TRUE(program_.says("ready"));
  }
  void become(const std::string& json) const { call("Become '" + json + "'"); }
  std::string call(const std::string& method) const {
    return shell("gdbus call --session -d org.mpris.MediaPlayer2." + name_ +
                 " -o /org/mpris/MediaPlayer2 -m dev.quellby.Test." + method + " 2>&1");
  }
  std::string calls() const { return call("Calls"); }

private:
  std::string name_;
  Program program_;
};

class MediaPlayersTest : public testing::Test {
protected:
  void SetUp() override {
    bus_ = Bus::session();
    ASSERT_TRUE(bus_);
    players_ = std::make_unique<BusMediaPlayers>(bus_.get(), loop_, clock_);
    token_ = players_->observe([this] { ++changes_; });
  }
  bool until(const std::function<bool()>& condition, int milliseconds = patience) {
    return eventually(
        [&] {
          QElapsedTimer round;
          round.start();
          QCoreApplication::processEvents();
          longestRound_ = std::max(longestRound_, round.elapsed());
          return condition();
        },
        milliseconds);
  }
  const MediaPlayer* first() const {
    return players_->players().empty() ? nullptr : &players_->players().front();
  }
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const auto& player : players_->players())
      names.push_back(player.name);
    return names;
  }

  RealClock clock_;
  QtRunLoop loop_;
  std::unique_ptr<Bus> bus_;
  std::unique_ptr<BusMediaPlayers> players_;
  TokenPtr token_;
  int changes_ = 0;
  qint64 longestRound_ = 0;
};

const char* const song =
    R"({"PlaybackStatus": "Playing", "Position": {"type": "Int64", "value": 5000000}, "Metadata": {)"
    R"("xesam:title": "Tide", "xesam:artist": ["One", "Two"], "xesam:album": "Harbours",)"
    R"("mpris:artUrl": "file:///covers/a%20b.png", "mpris:length": {"type": "Int64", "value": 200000000},)"
    R"("mpris:trackid": {"type": "ObjectPath", "value": "/track/1"}}})";

TEST_F(MediaPlayersTest, APlayerComesPlaysAndGoes) {
  {
    const Scripted player("one");
    ASSERT_TRUE(until([&] { return first() != nullptr && first()->title == "The one player"; }));
    EXPECT_EQ(first()->playback.status, PlaybackStatus::stopped);
    player.become(song);
    ASSERT_TRUE(until([&] { return first()->playback.elapsed(clock_.now()) >= 5; }));
    const auto& track = first()->playback.track;
    EXPECT_EQ(track.title, "Tide");
    EXPECT_EQ(track.artist, "One, Two");
    EXPECT_EQ(track.length, 200);
    EXPECT_EQ(track.cover, "/covers/a b.png");
    const int before = changes_;
    const double elapsed = first()->playback.elapsed(clock_.now());
    until([] { return false; }, 400);
    EXPECT_GT(first()->playback.elapsed(clock_.now()), elapsed + 0.3);
    EXPECT_EQ(changes_, before) << "the position is reckoned, not asked for";
    player.call("Jump 60000000");
    EXPECT_TRUE(until([&] { return first()->playback.elapsed(clock_.now()) >= 60; }));
  }
  EXPECT_TRUE(until([&] { return first() == nullptr; }));
}

TEST_F(MediaPlayersTest, ThePlayerUsedLastComesFirst) {
  const Scripted one("one");
  const Scripted two("two");
  ASSERT_TRUE(until([&] { return names().size() == 2; }));
  one.become(R"({"PlaybackStatus": "Playing"})");
  EXPECT_TRUE(until([&] { return names().front() == "one"; }));
  two.become(R"({"PlaybackStatus": "Playing"})");
  EXPECT_TRUE(until([&] { return names().front() == "two"; }));
  two.become(R"({"PlaybackStatus": "Paused"})");
  until([] { return false; }, 200);
  EXPECT_EQ(names().front(), "two") << "a pause is no reason to leave it";
  players_->playPause("one");
  EXPECT_TRUE(until([&] { return names().front() == "one"; }));
}

TEST_F(MediaPlayersTest, OrdersReachThePlayer) {
  const Scripted player("one");
  player.become(song);
  ASSERT_TRUE(until([&] { return first() != nullptr && first()->playback.isPlaying(); }));
  players_->playPause("one");
  players_->next("one");
  players_->previous("one");
  players_->seek("one", 30);
  players_->setVolume("one", 0.25);
  players_->raise("one");
  ASSERT_TRUE(until([&] { return first()->volume == 0.25 && !first()->playback.isPlaying(); }));
  const std::string calls = player.calls();
  for (const char* wanted : {"'PlayPause'", "'Next'", "'Previous'",
                             "'SetPosition /track/1 30000000'", "'Set Volume 0.25'", "'Raise'"})
    EXPECT_NE(calls.find(wanted), std::string::npos) << wanted << " in " << calls;
  player.become(R"({"Metadata": {"xesam:title": "Live"}})");
  ASSERT_TRUE(until([&] { return first()->playback.track.title == "Live"; }));
  players_->seek("one", 10);
  EXPECT_TRUE(until([&] { return player.calls().find("'Seek ") != std::string::npos; }))
      << "without a track's name it is moved by an offset";
}

TEST_F(MediaPlayersTest, LiesAreNotBelieved) {
  const Scripted player("liar");
  ASSERT_TRUE(until([&] { return first() != nullptr; }));
  player.become(
      R"({"PlaybackStatus": "Dancing", "Rate": 0.0, "Volume": 7.5, "CanControl": false,)"
      R"("Position": {"type": "Int64", "value": -5000000}, "Metadata": {"xesam:title": "a\nb",)"
      R"("xesam:artist": "no list", "mpris:length": {"type": "Int64", "value": -1},)"
      R"("mpris:artUrl": "https://example.org/x.png", "mpris:trackid": "no path"}})");
  ASSERT_TRUE(until([&] { return first()->playback.track.title == "a b"; }));
  EXPECT_EQ(first()->playback.track.artist, "no list");
  EXPECT_FALSE(first()->playback.track.length);
  EXPECT_FALSE(first()->playback.track.cover);
  EXPECT_EQ(first()->playback.status, PlaybackStatus::stopped);
  EXPECT_EQ(first()->volume, 1);
  EXPECT_EQ(first()->playback.elapsed(clock_.now()), 0);
  EXPECT_FALSE(first()->canPlay) << "it says that nothing can be done with it";
  player.become(R"({"Metadata": "nothing", "Volume": "loud", "PlaybackStatus": ["x"]})");
  until([] { return false; }, 200);
  EXPECT_EQ(first()->playback.track.title, "a b");
}

TEST_F(MediaPlayersTest, APlayerThatHangsHoldsUpNothing) {
  const Scripted player("one");
  player.become(song);
  ASSERT_TRUE(until([&] { return first() != nullptr && first()->playback.isPlaying(); }));
  player.call("Hang 5");
  until([] { return false; }, 100);
  longestRound_ = 0;
  players_->next("one");
  players_->refresh();
  ASSERT_TRUE(until([&] { return !first()->isAnswering; }));
  EXPECT_LT(longestRound_, 1000) << "no round of the loop waited for it";
  EXPECT_EQ(first()->playback.track.title, "Tide") << "what was known stays";
  EXPECT_TRUE(until([&] {
    players_->refresh();
    until([] { return false; }, 300);
    return first()->isAnswering;
  }));
}

TEST_F(MediaPlayersTest, ARealPlayer) {
  const TemporaryFolder folder;
  const auto sound = folder / "A Sound.wav";
  ASSERT_EQ(shell("/usr/bin/python3 -c \"import wave; w = wave.open('" + sound.string() +
                  "', 'wb'); w.setparams((1, 2, 8000, 0, 'NONE', '')); "
                  "w.writeframes(bytes(16000 * 20))\""),
            "");
  const Program mpv("/usr/bin/mpv", {"--no-config", "--ao=null", "--vo=null", "--no-terminal",
                                     "--script=/usr/lib/mpv-mpris/mpris.so",
                                     QString::fromStdString(sound.string())});
  ASSERT_TRUE(until([&] {
    return first() != nullptr && first()->playback.isPlaying() && first()->playback.track.length;
  })) << shell("ls /usr/lib/*/mpv-mpris /usr/lib/mpv-mpris /etc/mpv/scripts 2>&1");
  EXPECT_NEAR(*first()->playback.track.length, 20, 1);
  EXPECT_EQ(first()->playback.track.title, "A Sound.wav");
  const std::string name = first()->name;
  players_->playPause(name);
  ASSERT_TRUE(until([&] { return first()->playback.status == PlaybackStatus::paused; }));
  players_->seek(name, 12);
  ASSERT_TRUE(until([&] { return std::abs(first()->playback.elapsed(clock_.now()) - 12) < 0.5; }));
  players_->setVolume(name, 0.5);
  players_->playPause(name);
  EXPECT_TRUE(until([&] { return first()->playback.elapsed(clock_.now()) > 12.5; }));
}

} // namespace

namespace test {
namespace {

struct BusPlayersRig {
  MediaPlayers& players() { return players_; }
  Clock& clock() { return clock_; }
  std::string come(int number) {
    scripted_[number] = std::make_unique<Scripted>(names[number]);
    scripted_[number]->become(
        R"({"PlaybackStatus": "Playing", "Volume": 0.4, "Position": {"type": "Int64", "value": 5000000},)"
        R"("Metadata": {"xesam:title": "Tide", "xesam:artist": ["One"],)"
        R"("mpris:length": {"type": "Int64", "value": 200000000},)"
        R"("mpris:trackid": {"type": "ObjectPath", "value": "/track/1"}}})");
    return names[number];
  }
  void quit(int number) { scripted_[number].reset(); }
  void play(int number) { scripted_[number]->become(R"({"PlaybackStatus": "Playing"})"); }
  void pause(int number) { scripted_[number]->become(R"({"PlaybackStatus": "Paused"})"); }
  std::vector<std::string> orders(int number) {
    const std::map<std::string, std::string> words = {{"PlayPause", "toggle"},
                                                      {"Next", "next"},
                                                      {"Previous", "previous"},
                                                      {"SetPosition /track/1 30000000", "seek 30"},
                                                      {"Set Volume 0.25", "volume 0.25"}};
    std::vector<std::string> orders;
    // gdbus writes (['Next', 'Previous'],)
    const std::string told = scripted_[number]->calls();
    for (std::size_t at = told.find('\''); at != std::string::npos; at = told.find('\'', at)) {
      const auto end = told.find('\'', at + 1);
      const auto call = told.substr(at + 1, end - at - 1);
      const auto word = words.find(call);
      orders.push_back(word != words.end() ? word->second : call);
      at = end + 1;
    }
    return orders;
  }
  bool comesTrue(const std::function<bool()>& condition) {
    return eventually([&] {
      QCoreApplication::processEvents();
      return condition();
    });
  }

private:
  const std::string names[2] = {"one", "two"};
  std::unique_ptr<Scripted> scripted_[2];
  RealClock clock_;
  QtRunLoop loop_;
  std::unique_ptr<Bus> bus_ = Bus::session();
  BusMediaPlayers players_{bus_.get(), loop_, clock_};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Bus, MediaPlayersContract, BusPlayersRig);
INSTANTIATE_TYPED_TEST_SUITE_P(Bus, MediaPlayersOrderContract, BusPlayersRig);

} // namespace
} // namespace test
} // namespace tavrin

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}

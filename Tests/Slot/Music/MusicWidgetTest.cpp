#include "TavrinCore/Kinds/Music/MusicSettings.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "Tests/Slot/SlotFixture.h"

#include <QComboBox>
#include <QImage>
#include <QMouseEvent>
#include <QSlider>
#include <fstream>

namespace tavrin::test {
namespace {

using testing::ElementsAre;

class MusicWidget : public SlotTest {
protected:
  MediaPlayer song(const std::string& name, const std::string& title, double length = 200) {
    return FakeMediaPlayers::player(name, title, length, platform_.fakeClock.now());
  }
  void show(std::vector<MediaPlayer> players) {
    platform_.media.all = std::move(players);
    platform_.media.changes.call();
    platform_.loop.runBackground();
  }
  QSlider& slider(const QString& name) const {
    for (auto* each : panel()->findChildren<QSlider*>())
      if (each->accessibleName() == name)
        return *each;
    throw std::runtime_error("no slider");
  }
};

TEST_F(MusicWidget, PlayersComeAndGo) {
  start(MusicSettings{});
  EXPECT_EQ(platform_.tile.value, "Nothing playing");
  click();
  EXPECT_EQ(platform_.media.refreshes, 1);
  EXPECT_TRUE(words().contains("Nothing is playing"));
  show({song("vlc", "Tide")});
  EXPECT_EQ(platform_.tile.value, "Tide, Playing");
  EXPECT_TRUE(words().contains("Tide"));
  show({});
  EXPECT_EQ(platform_.tile.value, "Nothing playing");
  platform_.media.available = false;
  show({});
  EXPECT_TRUE(words().contains("This desktop does not let players be seen"));
}

TEST_F(MusicWidget, TheTileIsDrawnAsOftenAsItsBorderMoves) {
  platform_.media.all = {song("vlc", "Tide", 3000)};
  start(MusicSettings{});
  const int before = platform_.tile.displays;
  platform_.loop.advance(300);
  const int drawn = platform_.tile.displays - before;
  // A tenth of a border of some 185 pixels.
  EXPECT_GE(drawn, 15);
  EXPECT_LE(drawn, 22);
  auto paused = song("vlc", "Tide", 3000);
  paused.playback.status = PlaybackStatus::paused;
  show({paused});
  const int resting = platform_.tile.displays;
  const int firings = platform_.loop.firings;
  platform_.loop.advance(3600);
  EXPECT_EQ(platform_.tile.displays, resting);
  EXPECT_EQ(platform_.loop.firings, firings) << "nothing ticks while nothing moves";
}

TEST_F(MusicWidget, TheOpenPanelCountsSeconds) {
  platform_.media.all = {song("vlc", "Tide")};
  start(MusicSettings{});
  click();
  platform_.loop.advance(61.2);
  EXPECT_TRUE(words().contains("1:01")) << words().join('|').toStdString();
  EXPECT_TRUE(words().contains("−2:19"));
  EXPECT_EQ(slider("Position").value(), 61);
}

TEST_F(MusicWidget, ControlsReachThePlayerThatIsShown) {
  auto quiet = song("mpv", "Film");
  quiet.canGoNext = false;
  quiet.volume = 0.5;
  platform_.media.all = {song("vlc", "Tide"), quiet};
  start(MusicSettings{});
  click();
  button("Pause")->click();
  button("Next track")->click();
  button("Previous track")->click();
  slider("Position").setValue(30);
  EXPECT_THAT(platform_.media.told,
              ElementsAre("playPause vlc", "next vlc", "previous vlc", "seek vlc 30"));
  platform_.media.told.clear();
  auto* choice = panel()->findChild<QComboBox*>();
  ASSERT_EQ(choice->count(), 3);
  choice->activated(2);
  const WidgetStore store(folder_ / "widgets.json");
  EXPECT_EQ(store.widget(3)->kind.get<MusicSettings>()->player, "mpv");
  EXPECT_TRUE(words().contains("Film"));
  EXPECT_FALSE(button("Next track")->isEnabled());
  slider("Volume").setValue(20);
  EXPECT_THAT(platform_.media.told, ElementsAre("volume mpv 0.2"));
}

TEST_F(MusicWidget, AChosenPlayerThatIsGoneLeavesTheOneLastUsed) {
  platform_.media.all = {song("firefox.instance_1", "Film"), song("vlc", "Tide")};
  start(MusicSettings{.player = "vlc"});
  EXPECT_EQ(platform_.tile.value, "Tide, Playing");
  show({song("firefox.instance_1", "Film")});
  EXPECT_EQ(platform_.tile.value, "Film, Playing");
  write(MusicSettings{.player = "firefox"});
  show({song("vlc", "Tide"), song("firefox.instance_7", "Film")});
  announce();
  EXPECT_EQ(platform_.tile.value, "Film, Playing") << "any instance of the program named";
}

TEST_F(MusicWidget, AClickOnTheCoverBringsThePlayerToTheFront) {
  platform_.media.all = {song("vlc", "Tide")};
  start(MusicSettings{});
  click();
  panel()->show();
  auto covers = all<ViewWidget>();
  const auto cover = std::ranges::find(covers, "Show vlc", &QWidget::accessibleName);
  ASSERT_NE(cover, covers.end());
  (*cover)->grab();
  const QPointF centre = QRectF((*cover)->rect()).center();
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    QMouseEvent event(type, centre, (*cover)->mapToGlobal(centre), Qt::LeftButton,
                      type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, {});
    QCoreApplication::sendEvent(*cover, &event);
  }
  EXPECT_THAT(platform_.media.told, ElementsAre("raise vlc"));
}

TEST_F(MusicWidget, TheChoiceOffersEveryPlayerAndKeepsTheOneThatIsGone) {
  start(MusicSettings{.player = "mpv"});
  click();
  panel()->show();
  auto* choice = panel()->findChild<QComboBox*>();
  EXPECT_TRUE(choice->isVisibleTo(panel())) << "also while nothing plays";
  const auto offered = [&] {
    QStringList names;
    for (int i = 0; i < choice->count(); ++i)
      names << choice->itemText(i);
    return names;
  };
  EXPECT_EQ(offered(), (QStringList{"Last used", "Mpv (not running)"}));
  EXPECT_EQ(choice->currentIndex(), 1);
  show({song("vlc", "Tide"), song("firefox.instance_1_8", "Film")});
  EXPECT_EQ(offered(),
            (QStringList{"Last used", "vlc", "firefox.instance_1_8", "Mpv (not running)"}));
  EXPECT_EQ(choice->currentIndex(), 3);
  const auto stored = [&] {
    return WidgetStore(folder_ / "widgets.json").widget(3)->kind.get<MusicSettings>()->player;
  };
  choice->activated(2);
  EXPECT_EQ(stored(), "firefox") << "the program, which is there the next time";
  EXPECT_EQ(choice->currentIndex(), 2);
  show({song("vlc", "Tide"), song("firefox.instance_2", "A"), song("firefox.instance_3", "B")});
  choice->activated(3);
  EXPECT_EQ(stored(), "firefox.instance_3") << "it runs twice";
  show({song("firefox.instance_3", "B")});
  choice->activated(0);
  EXPECT_FALSE(stored());
}

TEST_F(MusicWidget, TwoTilesHaveRoomForTheCover) {
  QImage red(40, 40, QImage::Format_RGB32);
  red.fill(Qt::red);
  const auto file = folder_ / "cover.png";
  ASSERT_TRUE(red.save(QString::fromStdString(file.string())));
  auto tide = song("vlc", "A song with a title of some length");
  tide.playback.track.artist = "A band";
  tide.playback.track.cover = file;
  start(MusicSettings{}, 2);
  show({tide});
  const QImage& picture = platform_.tile.last;
  int reds = 0;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) {
      const QColor colour = picture.pixelColor(x, y);
      reds += colour.red() > 200 && colour.green() < 40 && colour.blue() < 40;
    }
  EXPECT_GT(reds, picture.height() * picture.height() / 10);
}

TEST_F(MusicWidget, APlayerThatHangsIsShownSo) {
  auto silent = song("vlc", "Tide");
  silent.isAnswering = false;
  platform_.media.all = {silent};
  start(MusicSettings{});
  click();
  EXPECT_EQ(platform_.tile.value, "Tide, Does not answer");
  EXPECT_TRUE(words().contains("Does not answer"));
  EXPECT_FALSE(slider("Position").isEnabled());
}

TEST_F(MusicWidget, CoversAreReadFromFilesAndNothingElse) {
  QImage red(40, 40, QImage::Format_RGB32);
  red.fill(Qt::red);
  const auto file = folder_ / "cover.png";
  ASSERT_TRUE(red.save(QString::fromStdString(file.string())));
  const auto isRed = [this] {
    const QColor colour = platform_.tile.last.pixelColor(32, 20);
    return colour.red() > 180 && colour.green() < 60 && colour.blue() < 60;
  };
  auto tide = song("vlc", "Tide");
  tide.playback.track.cover = file;
  start(MusicSettings{});
  show({tide});
  EXPECT_TRUE(isRed());
  const auto nonsense = folder_ / "nonsense.png";
  std::ofstream(nonsense) << "no picture";
  for (const std::filesystem::path& cover :
       {nonsense, folder_ / "missing.png", folder_, std::filesystem::path("/dev/zero")}) {
    tide.playback.track.title += "x";
    tide.playback.track.cover = cover;
    show({tide});
    EXPECT_FALSE(isRed()) << cover;
  }
  MusicSettings plain;
  plain.showsCover = false;
  write(plain);
  tide.playback.track.cover = file;
  show({tide});
  announce();
  EXPECT_FALSE(isRed());
}

} // namespace
} // namespace tavrin::test

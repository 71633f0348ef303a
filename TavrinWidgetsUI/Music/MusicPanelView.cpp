#include "TavrinWidgetsUI/Music/MusicPanelView.h"

#include "TavrinCore/Kinds/Runs/TimerRun.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFocus.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/Music/MusicViews.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>
#include <cmath>

namespace tavrin {
namespace {

constexpr double shownCoverSide = 168;
constexpr int volumeSteps = 100;
/// Seconds an arrow key and a page key move the position.
constexpr int arrowStep = 5;
constexpr int pageStep = 30;
constexpr int mostSeconds = 1'000'000'000;

QString clockText(double seconds) {
  return QString::fromStdString(TimerRun::format(std::llround(std::floor(seconds))));
}

/// A slider that follows at once what is asked of it, by whatever means.
QSlider* makeSlider(const QString& name) {
  auto* slider = new QSlider(Qt::Horizontal);
  slider->setAccessibleName(name);
  setPlainToolTip(slider, name);
  return slider;
}

/// What a player that is not there is called, from its name on the bus: "Vlc".
QString playerTitle(const QString& name) {
  return name.left(1).toUpper() + name.mid(1).section(QStringLiteral(".instance"), 0, 0);
}

QVBoxLayout* columnIn(QWidget* widget) {
  auto* column = new QVBoxLayout(widget);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(8);
  return column;
}

QHBoxLayout* rowIn(QWidget* widget) {
  auto* row = new QHBoxLayout(widget);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(8);
  return row;
}

} // namespace

MusicPanelView::MusicPanelView(const PanelAppearance& appearance, MusicModel& model,
                               Requests requests)
    : PanelView(appearance), model_(model), requests_(std::move(requests)),
      empty_(new PanelEmptyState("music.note", {})), filled_(new QWidget),
      cover_(new ViewWidget({shownCoverSide, shownCoverSide})),
      track_(new PanelText({}, PanelTextStyle::heading)),
      artist_(new PanelText({}, PanelTextStyle::secondary)) {
  add(empty_);
  auto* column = columnIn(filled_);
  column->addWidget(cover_, 0, Qt::AlignHCenter);
  for (PanelText* line : {track_, artist_}) {
    line->setSingleLine(true);
    line->setAlignment(Qt::AlignHCenter);
    column->addWidget(line);
  }
  makePosition();
  makeControls();
  makeVolume();
  makeChoice();
  add(filled_);
  // Also while nothing plays: who chose a player that is gone can choose another.
  add(choiceRow_);
  setEditButton(worded("Edit Music…"), requests_.edit);
  refresh();
}

void MusicPanelView::makePosition() {
  position_ = makeSlider(worded("Position"));
  position_->setSingleStep(arrowStep);
  position_->setPageStep(pageStep);
  elapsed_ = new PanelText({}, PanelTextStyle::caption);
  left_ = new PanelText({}, PanelTextStyle::caption);
  elapsed_->setAlignment(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter);
  left_->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
  connect(position_, &QSlider::valueChanged, this, [this](int seconds) {
    // A drag is one wish, told when it ends.
    if (position_->isSliderDown())
      elapsed_->setWords(clockText(seconds));
    else
      model_.seek(seconds);
  });
  connect(position_, &QSlider::sliderReleased, this, [this] { model_.seek(position_->value()); });
  positionRow_ = new QWidget;
  // What plays runs from left to right everywhere.
  positionRow_->setLayoutDirection(Qt::LeftToRight);
  auto* column = columnIn(positionRow_);
  column->setSpacing(2);
  column->addWidget(position_);
  auto* times = new QHBoxLayout;
  times->addWidget(elapsed_);
  times->addWidget(left_);
  column->addLayout(times);
  filled_->layout()->addWidget(positionRow_);
}

void MusicPanelView::makeControls() {
  auto* bar = new QWidget;
  bar->setLayoutDirection(Qt::LeftToRight);
  auto* row = rowIn(bar);
  previous_ = PanelButton::icon("backward.end.fill", worded("Previous track"),
                                [this] { model_.previous(); });
  next_ = PanelButton::icon("forward.end.fill", worded("Next track"), [this] { model_.next(); });
  play_ =
      new PanelButton(PanelButton::Kind::prominent, worded("Play"), [this] { model_.playPause(); });
  for (QWidget* button : {previous_, play_, next_})
    passArrowKeys(*button, *position_);
  row->addWidget(previous_);
  row->addWidget(play_, 1);
  row->addWidget(next_);
  filled_->layout()->addWidget(bar);
}

void MusicPanelView::makeVolume() {
  volumeRow_ = new QWidget;
  auto* row = rowIn(volumeRow_);
  auto* mark = new ViewWidget({18, 18});
  mark->setView(symbol("speaker.wave.2.fill").colour(colours().secondary).size(16));
  volume_ = makeSlider(worded("Volume"));
  volume_->setRange(0, volumeSteps);
  volume_->setSingleStep(5);
  connect(volume_, &QSlider::valueChanged, this,
          [this](int value) { model_.setVolume(double(value) / volumeSteps); });
  row->addWidget(mark);
  row->addWidget(volume_, 1);
  filled_->layout()->addWidget(volumeRow_);
}

void MusicPanelView::makeChoice() {
  choice_ = new QComboBox;
  choice_->setAccessibleName(worded("Player"));
  choice_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  connect(choice_, &QComboBox::activated, this, [this](int index) {
    const auto name = choice_->itemData(index).toString().toStdString();
    requests_.choose(name.empty() ? std::nullopt : std::optional(name));
  });
  choiceRow_ = new PanelField(worded("Player"), choice_);
}

void MusicPanelView::showChoice() {
  const auto& players = model_.players();
  const auto wish = QString::fromStdString(model_.settings().player.value_or(""));
  // With one player, and none named, there is nothing to choose.
  choiceRow_->setVisible(players.size() > 1 || !wish.isEmpty());
  QList<std::pair<QString, QString>> items{{worded("Last used"), QString()}};
  QString chosen;
  for (const auto& player : players) {
    const auto name = QString::fromStdString(player.name);
    items.push_back({QString::fromStdString(player.title), name});
    if (chosen.isEmpty() && MusicModel::isWished(player, wish.toStdString()))
      chosen = name;
  }
  if (chosen.isEmpty() && !wish.isEmpty()) {
    items.push_back({worded("{name} (not running)", {{"name", playerTitle(wish)}}), wish});
    chosen = wish;
  }
  const QSignalBlocker blocker(choice_);
  bool isSame = choice_->count() == items.size();
  for (int i = 0; isSame && i < choice_->count(); ++i)
    isSame = choice_->itemText(i) == items[i].first && choice_->itemData(i) == items[i].second;
  if (!isSame) {
    choice_->clear();
    for (const auto& [title, name] : items)
      choice_->addItem(title, name);
  }
  choice_->setCurrentIndex(std::max(choice_->findData(chosen), 0));
}

void MusicPanelView::showPosition(const MediaPlayer& player) {
  const auto& playback = player.playback;
  const bool isKnown = playback.track.length && playback.status != PlaybackStatus::stopped;
  positionRow_->setVisible(isKnown);
  if (!isKnown)
    return;
  const double length = *playback.track.length;
  const double done = playback.elapsed(model_.now());
  position_->setEnabled(player.canSeek && player.isAnswering);
  if (!position_->isSliderDown()) {
    const QSignalBlocker blocker(position_);
    position_->setRange(0, static_cast<int>(std::min<double>(length, mostSeconds)));
    position_->setValue(static_cast<int>(std::min<double>(done, mostSeconds)));
    elapsed_->setWords(clockText(done));
  }
  left_->setWords("−" + clockText(std::ceil(length - std::floor(done))));
}

void MusicPanelView::showTrack(const MediaPlayer& player) {
  const auto& track = player.playback.track;
  const bool isPlaying = player.playback.isPlaying();
  const bool hasCover = model_.settings().showsCover;
  cover_->setVisible(hasCover);
  if (hasCover) {
    const QString raise = worded("Show {name}", {{"name", player.title}});
    cover_->setView(musicCover(model_.cover(), shownCoverSide)
                        .button({"raise " + player.name, [this] { model_.raise(); }}, raise));
    cover_->setName(raise);
    setPlainToolTip(cover_, raise);
  }
  track_->setWords(trackTitle(player));
  QStringList parts;
  for (const auto& part : {track.artist, track.album})
    if (!part.empty())
      parts << QString::fromStdString(part);
  artist_->setWords(parts.join(" — "));
  artist_->setVisible(!parts.isEmpty());
  play_->setTitle(isPlaying ? worded("Pause") : worded("Play"));
  play_->setSymbol(isPlaying ? "pause.fill" : "play.fill");
  play_->setEnabled(isPlaying ? player.canPause : player.canPlay);
  previous_->setEnabled(player.canGoPrevious);
  next_->setEnabled(player.canGoNext);
  volumeRow_->setVisible(player.volume.has_value());
  if (player.volume && !volume_->isSliderDown()) {
    const QSignalBlocker blocker(volume_);
    volume_->setValue(static_cast<int>(std::lround(*player.volume * volumeSteps)));
  }
}

void MusicPanelView::refresh() {
  setTitle(QString::fromStdString(model_.widget().name));
  const auto* player = model_.player();
  empty_->setVisible(player == nullptr);
  filled_->setVisible(player != nullptr);
  showChoice();
  if (player == nullptr) {
    setState({});
    empty_->setTrouble(!model_.isAvailable());
    empty_->setSentence("music.note", model_.isAvailable()
                                          ? worded("Nothing is playing")
                                          : worded("This desktop does not let players be seen"));
    empty_->setHint(
        model_.isAvailable()
            ? worded("Start a player, or a film or a song in the browser, and it shows up here.")
            : worded("There is no session bus for them to be found on."));
    return;
  }
  setState(player->isAnswering ? QString::fromStdString(player->title) : playbackWord(*player),
           player->isAnswering ? State::plain : State::trouble);
  showTrack(*player);
  showPosition(*player);
}

} // namespace tavrin

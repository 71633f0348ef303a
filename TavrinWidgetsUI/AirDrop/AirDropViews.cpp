#include "TavrinWidgetsUI/AirDrop/AirDropViews.h"
#include "TavrinCore/Text/DecimalText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>

namespace tavrin {
namespace {

using State = AirDropModel::State;

constexpr QColor groundTop{0x12, 0x3A, 0x5E};
constexpr QColor groundEnd{0x0B, 0x1F, 0x36};
constexpr QColor track{0x2A, 0x4A, 0x68};
constexpr const char* waves = "dot.radiowaves.up.forward";

TileState tileState(State state) {
  return state == State::sent     ? TileState::done
         : state == State::failed ? TileState::cannot
                                  : TileState::live;
}

std::optional<TileBorder> borderOf(const AirDropTileState& state) {
  if (state.state != State::sending)
    return std::nullopt;
  return TileBorder{state.share.value_or(0), airDropTint, track};
}

} // namespace

AirDropTileState AirDropTileState::of(const AirDropModel& model) {
  return {model.state(), model.files().size(), model.deviceName(), model.share(),
          model.isHandedOver()};
}

QString fileCountText(std::size_t count) {
  return wordedPlural("One file", "{count} files", static_cast<long long>(count));
}

QString airDropWord(const AirDropTileState& state) {
  switch (state.state) {
  case State::idle:
    return worded("Drop files here");
  case State::choosing:
    return worded("{files} to send", {{"files", fileCountText(state.fileCount)}});
  case State::sending:
    return worded("Sending to {device}", {{"device", state.deviceName}});
  case State::sent:
    return (state.isHandedOver ? worded("Passed on to {device}", {{"device", state.deviceName}})
                               : worded("Sent to {device}", {{"device", state.deviceName}}));
  case State::failed:
    return worded("Not sent");
  }
  return {};
}

namespace {

/// The two lines of a wide tile.
std::pair<QString, QString> wideWords(const AirDropTileState& state) {
  switch (state.state) {
  case State::idle:
    return {worded("Drop files"), worded("to send")};
  case State::choosing:
    return {fileCountText(state.fileCount), worded("to send")};
  case State::sending:
    return {worded("Sending"), worded("to {device}", {{"device", state.deviceName}})};
  case State::sent:
    return {state.isHandedOver ? worded("Passed on") : worded("Sent"),
            worded("to {device}", {{"device", state.deviceName}})};
  case State::failed:
    return {worded("Not sent"), worded("Try again")};
  }
  return {};
}

} // namespace

AnyView airDropTileIcon(const AirDropTileState& state, const TileSize& size) {
  TileContent content;
  content.ground = groundTop;
  content.groundEnd = groundEnd;
  content.border = borderOf(state);
  content.mark = symbol(waves).colour(airDropTint);
  content.state = tileState(state.state);
  content.label = "AirDrop";
  content.value = airDropWord(state);
  if (state.state == State::choosing) {
    content.figure = QString::fromStdString(countText(static_cast<std::int64_t>(state.fileCount)));
    content.caption = wordedPlural("file", "files", static_cast<long long>(state.fileCount));
    content.markRatio = 0.26;
  } else if (state.state == State::sending) {
    content.figure =
        QString::fromStdString(wholePercentText(qRound(state.share.value_or(0) * 100)));
    content.widestFigure = QString::fromStdString(wholePercentText(88));
    content.markRatio = 0.26;
  } else {
    content.markRatio = 0.52;
  }
  return tile(content, size);
}

AnyView airDropWideTile(const AirDropTileState& state, const TileSize& size,
                        const std::function<void()>& cancel) {
  WideTileContent content;
  content.ground = groundTop;
  content.groundEnd = groundEnd;
  content.tint = airDropTint;
  content.border = borderOf(state);
  content.mark = symbol(waves).colour(airDropTint);
  content.state = tileState(state.state);
  const QColor middle = mix(groundTop, groundEnd, 0.5);
  const auto [first, second] = wideWords(state);
  const AnyView title = text(first)
                            .size(size.words(0.225))
                            .weight(FontWeight::semibold)
                            .colour(palette::figure(middle))
                            .lines(2);
  content.middle =
      vstack({title, text(second).size(size.words(0.18)).colour(palette::caption(middle))})
          .align(Alignment::leading)
          .spacing(size.body() * 0.04);
  if (state.state == State::sending)
    content.actions = {{{"cancel", cancel}, "xmark", worded("Cancel"), false}};
  content.label = "AirDrop";
  content.value = airDropWord(state);
  return wideTile(content, size);
}

} // namespace tavrin

#include "TavrinWidgetsUI/Fans/FanViews.h"

#include "TavrinCore/Text/ComputerWords.h"
#include "TavrinWidgetsUI/Fans/FanSwitch.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Views/Gauges.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

using Status = FanHelperClient::Status;
constexpr int visibleFans = 6;

QString speedText(double speed) {
  return QString::number(std::lround(std::clamp(speed, 0.0, 1e6)));
}

QString spoken(const FanStatus& status) {
  if (!status.hasFans)
    return worded("No fans");
  const auto speed = speedText(status.speed);
  return status.isFull ? worded("{speed} revolutions per minute, full speed", {{"speed", speed}})
                       : worded("{speed} revolutions per minute", {{"speed", speed}});
}

std::string wordsFor(const FanSwitch& fans) {
  if (fans.isFull())
    return translated("The fans stay at their maximum.");
  switch (fans.status()) {
  case Status::notRegistered:
    return translated(
        "The first time, {macOS} asks you to allow a helper that runs as administrator. Only it "
        "can change the fans.");
  case Status::needsApproval:
    return translated("Allow Tavrin under Login Items in System Settings, then switch again.");
  case Status::ready:
    break;
  }
  return translated("{macOS} decides how fast they turn.");
}

AnyView gauge(const FanStatus& status, double side, const QColor& ground) {
  const QColor tint = status.isFull ? palette::orange : fanTint;
  const AnyView blades =
      symbol("fanblades.fill")
          .colour(status.hasFans ? palette::figure(ground) : palette::caption(ground))
          .size(side * 0.52);
  return GaugeRing{status.share.value_or(status.isFull ? 1 : 0), tint, palette::track, side * 0.09,
                   blades}
      .view()
      .frame(side, side);
}

} // namespace

FanStatus FanStatus::of(const FanSwitch& fans) {
  FanStatus status;
  status.hasRead = fans.hasRead();
  status.hasFans = !fans.readings().empty();
  status.isFull = fans.isFull();
  const auto fastest = std::max_element(
      fans.readings().begin(), fans.readings().end(),
      [](const FanReading& a, const FanReading& b) { return a.current < b.current; });
  if (fastest == fans.readings().end())
    return status;
  status.speed = fastest->current;
  if (fastest->maximum > 0)
    status.share = std::clamp(fastest->current / fastest->maximum, 0.0, 1.0);
  return status;
}

AnyView fanTileIcon(const FanStatus& status, const TileSize& size) {
  if (!status.hasFans || size.side < 84)
    return tile(palette::ground, gauge(status, size.body() * 0.82, palette::ground), size)
        .accessibility(worded("Fans"), spoken(status));
  TileContent content;
  content.mark = gauge(status, size.body() * 0.46, palette::ground);
  content.markRatio = 0.46;
  content.caption = worded("{speed} rpm", {{"speed", speedText(status.speed)}});
  return tile(content, size).accessibility(worded("Fans"), spoken(status));
}

AnyView fanWideTile(const QString& name, const FanStatus& status, const TileSize& size,
                    const std::function<void()>& toggle) {
  WideTileContent content;
  content.tint = palette::orange;
  content.mark = gauge(status, size.body() * 0.6, palette::ground);
  content.caption =
      status.hasFans && size.span > 2 ? worded("{name} · rpm", {{"name", name}}) : name;
  if (status.hasFans)
    content.figure = speedText(status.speed);
  else
    content.middle = text(status.hasRead ? worded("No fans") : worded("Fans"))
                         .size(size.words(0.24))
                         .weight(FontWeight::semibold)
                         .colour(palette::caption());
  content.widestFigure = "8888";
  if (status.hasFans)
    content.actions = {{{status.isFull ? "automatic" : "full", toggle},
                        status.isFull ? "arrow.counterclockwise" : "wind",
                        status.isFull ? worded("Automatic") : worded("Full Speed"),
                        status.isFull}};
  content.label = name;
  content.value = spoken(status);
  return wideTile(content, size);
}

FanPanelView::FanPanelView(const PanelAppearance& appearance, FanSwitch& fans,
                           std::function<QString()> name, std::function<void()> onEdit,
                           Control control)
    : PanelView(appearance), fans_(fans), name_(std::move(name)), control_(control),
      list_(new PanelList(worded("Fans"))), full_(new PanelSwitch(worded("Full speed"))),
      words_(new PanelText({}, PanelTextStyle::secondary)),
      trouble_(new PanelText({}, PanelTextStyle::trouble)),
      settings_(new PanelButton(PanelButton::Kind::quiet, worded("Open System Settings"),
                                [this] { fans_.openApprovalSettings(); })),
      none_(new PanelEmptyState("fanblades.fill",
                                utf8(localSentence(translated("This {Mac} has no fans."))))) {
  list_->setReadOnly(true);
  list_->setMaximumVisibleRows(visibleFans);
  full_->onChange = [this](bool on) { fans_.setFull(on); };
  for (QWidget* widget :
       std::initializer_list<QWidget*>{none_, list_, full_, words_, trouble_, settings_})
    add(widget);
  setEditButton(worded("Edit Fans…"), std::move(onEdit));
  refresh();
}

void FanPanelView::refresh() {
  setTitle(name_());
  setState(fans_.isBusy()   ? worded("Switching…")
           : fans_.isFull() ? worded("Full speed")
                            : QString(),
           fans_.isFull() ? State::active : State::plain);
  std::vector<PanelRow> rows;
  for (const auto& fan : fans_.readings()) {
    PanelRow row;
    row.id = QString::number(fan.index);
    row.title = worded("Fan {number}", {{"number", fan.index + 1}});
    row.symbol = "fanblades.fill";
    row.trailing = speedText(fan.current);
    row.unit = worded("rpm");
    if (fan.maximum > 0)
      row.subtitle = worded("{least} to {most}",
                            {{"least", speedText(fan.minimum)}, {"most", speedText(fan.maximum)}});
    rows.push_back(std::move(row));
  }
  const bool hasFans = !rows.empty();
  list_->setRows(std::move(rows));
  list_->setVisible(hasFans);
  none_->setVisible(fans_.hasNoFans());
  const bool isHere = control_ == Control::here;
  full_->setVisible(hasFans && isHere);
  full_->setOn(fans_.isFull());
  full_->setEnabled(!fans_.isBusy());
  words_->setWords(isHere ? utf8(localSentence(wordsFor(fans_)))
                          : worded("Full speed is switched from Tavrin's own Dock."));
  words_->setVisible(hasFans);
  settings_->setVisible(hasFans && isHere && fans_.status() == Status::needsApproval);
  trouble_->setWords(QString::fromStdString(fans_.trouble()));
  trouble_->setVisible(!fans_.trouble().empty());
}

} // namespace tavrin

#include "TavrinWidgetsUI/AirDrop/AirDropPanelView.h"

#include "TavrinCore/Kinds/Clipboard/ClipboardItem.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinWidgetsUI/AirDrop/AirDropViews.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"

namespace tavrin {
namespace {

using Progress = AirDropModel::State;

constexpr double barWidth = 288;
constexpr double barHeight = 6;
constexpr int visibleRows = 7;

QString symbolOf(NearbyDevice::Kind kind) {
  switch (kind) {
  case NearbyDevice::Kind::phone:
    return QStringLiteral("iphone");
  case NearbyDevice::Kind::tablet:
    return QStringLiteral("ipad");
  case NearbyDevice::Kind::computer:
    return QStringLiteral("laptopcomputer");
  case NearbyDevice::Kind::other:
    break;
  }
  return QStringLiteral("dot.radiowaves.up.forward");
}

QString subjectText(const AirDropModel& model) {
  const auto& files = model.files();
  if (files.size() == 1)
    return QString::fromStdString(cleanText(files.front().filename().string(), 200));
  return fileCountText(files.size());
}

} // namespace

AirDropPanelView::AirDropPanelView(const PanelAppearance& appearance, AirDropModel& model,
                                   Requests requests)
    : PanelView(appearance, Width::lists), model_(model), requests_(std::move(requests)),
      subject_(new PanelText({}, PanelTextStyle::heading)),
      detail_(new PanelText({}, PanelTextStyle::secondary)),
      trouble_(new PanelText({}, PanelTextStyle::trouble)),
      bar_(new ViewWidget({barWidth, barHeight})),
      section_(new PanelText(worded("Send to"), PanelTextStyle::section)),
      list_(new PanelList(worded("Devices"))),
      empty_(new PanelEmptyState("dot.radiowaves.up.forward", {})) {
  // A single file's name.
  subject_->setSingleLine(true, Qt::ElideMiddle);
  for (QWidget* part : {static_cast<QWidget*>(subject_), static_cast<QWidget*>(detail_),
                        static_cast<QWidget*>(bar_), static_cast<QWidget*>(trouble_),
                        static_cast<QWidget*>(section_)})
    add(part);
  list_->setTall(true);
  list_->setMaximumVisibleRows(visibleRows);
  list_->onOpen = [this](int row) { choose(row); };
  add(list_);
  add(empty_);
  cancel_ =
      new PanelButton(PanelButton::Kind::quiet, worded("Cancel"), [this] { model_.cancel(); });
  add(cancel_);
  files_ =
      new PanelButton(PanelButton::Kind::prominent, worded("Choose Files…"), requests_.chooseFiles);
  add(files_);
  setEditButton(worded("Edit AirDrop…"), requests_.edit);
  forget_ = new PanelButton(PanelButton::Kind::faint, worded("Clear"), [this] { model_.forget(); });
  setPlainToolTip(forget_, worded("Forgets the files without sending them"));
  addFooterButton(forget_);
  refresh();
}

void AirDropPanelView::choose(int row) {
  const auto& devices = model_.devices();
  if (row < 0 || static_cast<std::size_t>(row) >= devices.size())
    return;
  if (model_.files().empty())
    requests_.chooseFiles();
  else
    model_.send(devices[static_cast<std::size_t>(row)]);
}

void AirDropPanelView::showDevices() {
  std::vector<PanelRow> rows;
  for (const auto& device : model_.devices())
    rows.push_back({.id = QString::fromStdString(device.id),
                    .title = QString::fromStdString(device.name),
                    .subtitle = QString::fromStdString(device.way),
                    .symbol = symbolOf(device.kind)});
  list_->setRows(std::move(rows));
}

void AirDropPanelView::showSending() {
  const auto& progress = model_.progress();
  const double share = model_.share().value_or(0);
  bar_->setView(bar(share).tint(colours().fill).track(colours().track));
  bar_->setName(worded("Progress, {percent} percent", {{"percent", qRound(share * 100)}}));
  QStringList parts{worded("To {device}", {{"device", model_.deviceName()}})};
  if (progress.fileCount > 1)
    parts << worded(
        "file {number} of {all}",
        {{"number", std::min(progress.file + 1, progress.fileCount)}, {"all", progress.fileCount}});
  if (progress.size > 0)
    parts << worded("{done} of {all}",
                    {{"done", byteText(static_cast<std::int64_t>(progress.sent))},
                     {"all", byteText(static_cast<std::int64_t>(progress.size))}});
  detail_->setWords(joinedFacts(parts));
}

void AirDropPanelView::showWords() {
  empty_->setStep({}, {});
  empty_->setHint({});
  if (!model_.isAvailable()) {
    empty_->setSentence("exclamationmark.triangle.fill", worded("Nothing here can send files"));
    empty_->setHint(QString::fromStdString(model_.advice().noService));
  } else {
    empty_->setSentence("dot.radiowaves.up.forward", worded("No device is near"));
    empty_->setHint(QString::fromStdString(model_.advice().noDevice));
  }
  empty_->setStep(worded("Look Again"), [this] { model_.refresh(); });
}

void AirDropPanelView::refresh() {
  const auto state = model_.state();
  const auto tile = AirDropTileState::of(model_);
  const bool hasFiles = !model_.files().empty();
  const bool isSending = state == Progress::sending;
  setTitle(QString::fromStdString(model_.widget().name));
  setState(isSending ? worded("Sending")
           : state == Progress::sent
               ? (model_.isHandedOver() ? worded("Passed on") : worded("Sent"))
           : state == Progress::failed ? worded("Not sent")
                                       : QString(),
           state == Progress::failed ? State::trouble
           : isSending               ? State::active
                                     : State::plain);
  subject_->setVisible(hasFiles);
  subject_->setWords(hasFiles ? subjectText(model_) : QString());
  detail_->setVisible(hasFiles);
  if (isSending)
    showSending();
  else if (state == Progress::sent)
    detail_->setWords(model_.isHandedOver()
                          ? wordedPlural("{way} sends it to {device}.",
                                         "{way} sends them to {device}.",
                                         static_cast<long long>(model_.files().size()),
                                         {{"way", model_.way()}, {"device", model_.deviceName()}})
                          : airDropWord(tile));
  else if (model_.size())
    detail_->setWords(QString::fromStdString(byteText(*model_.size())));
  bar_->setVisible(isSending);
  trouble_->setWords(QString::fromStdString(model_.trouble()));
  trouble_->setVisible(!model_.trouble().empty());
  const bool hasDevices = !model_.devices().empty();
  const bool mayChoose = !isSending && state != Progress::sent;
  section_->setVisible(mayChoose && hasDevices);
  section_->setWords(hasFiles ? worded("Send to") : worded("Devices near"));
  list_->setVisible(mayChoose && hasDevices);
  empty_->setVisible(mayChoose && !hasDevices);
  files_->setVisible(mayChoose && !hasFiles && hasDevices);
  cancel_->setVisible(isSending);
  forget_->setVisible(hasFiles && mayChoose);
  showDevices();
  showWords();
}

void AirDropPanelView::showEvent(QShowEvent* event) {
  PanelView::showEvent(event);
  if (list_->isVisibleTo(this))
    list_->setFocus();
}

} // namespace tavrin

#include "TavrinWidgetsUI/System/CountdownPanelView.h"

#include "TavrinCore/Kinds/System/CountdownSettings.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/System/CountdownViews.h"
#include "TavrinWidgetsUI/System/SystemWidgetModel.h"

namespace tavrin {
namespace {

constexpr double cardWidth = 248;
constexpr double cardHeight = 204;
constexpr double dialSide = 172;

} // namespace

CountdownPanelView::CountdownPanelView(const PanelAppearance& appearance,
                                       const SystemWidgetModel& model, std::function<void()> onEdit)
    : PanelView(appearance), model_(model), caption_(new PanelText({}, PanelTextStyle::secondary)),
      dial_(new ViewWidget(QSizeF(cardWidth, cardHeight))) {
  caption_->setAlignment(Qt::AlignHCenter);
  caption_->setSingleLine(true);
  add(caption_);
  add(dial_, Qt::AlignHCenter);
  setEditButton(worded("Edit Countdown…"), std::move(onEdit));
  refresh();
}

void CountdownPanelView::refresh() {
  const auto* settings = model_.widget().kind.get<CountdownSettings>();
  if (settings == nullptr)
    return;
  const Date now = model_.now();
  const bool isPast = Countdown::interval(*settings, now) <= 0;
  setTitle(QString::fromStdString(model_.widget().name));
  setState(isPast && !settings->countsUpAfter ? worded("Done") : QString(), State::active);
  const auto caption =
      QString::fromStdString(Countdown::caption(*settings, now, model_.calendar()));
  caption_->setWords(caption);
  dial_->setView(roundedRectangle(12)
                     .gradient(mix(countdownGround, countdownAccent, 0.25), countdownGround)
                     .overlay(countdownDial(*settings, now, dialSide)));
  const auto forms = countdownForms(Countdown::displayedSeconds(*settings, now));
  dial_->setName(joinedFacts({QString::fromStdString(forms.front()), caption}));
}

} // namespace tavrin

#include "TavrinWidgetsUI/System/PetPanelView.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Pieces.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"
#include "TavrinWidgetsUI/System/PetViews.h"
#include "TavrinWidgetsUI/System/SystemWidgetModel.h"

namespace tavrin {
namespace {

constexpr QSizeF meadowSize{288, 104};
constexpr double meadowCorner = 10;

QStringList speciesNames() {
  QStringList names;
  for (const auto species : allCases<PetSpecies>())
    names << petName(species);
  return names;
}

} // namespace

PetSettings PetPanelView::settings() const {
  return source_.model.widget().kind.settings<PetSettings>();
}

PetPanelView::PetPanelView(const PanelAppearance& appearance, Source source)
    : PanelView(appearance, Width::lists), source_(std::move(source)),
      meadow_(new ViewWidget(meadowSize)), words_(new PanelText({}, PanelTextStyle::secondary)),
      species_(new PanelSegments(worded("Animal"), speciesNames())),
      load_(new PanelSwitch(worded("Follow the processor"))),
      night_(new PanelSwitch(worded("Sleep at night"))) {
  add(meadow_);
  words_->setAlignment(Qt::AlignHCenter);
  add(words_);
  add(species_);
  species_->onChange = [this](int index) {
    PetSettings changed = settings();
    changed.species = allCases<PetSpecies>()[static_cast<std::size_t>(index)];
    source_.change(changed);
  };
  addSpace(2);
  add(load_);
  load_->onChange = [this](bool on) {
    PetSettings changed = settings();
    changed.followsProcessorLoad = on;
    source_.change(changed);
  };
  add(night_);
  night_->onChange = [this](bool on) {
    PetSettings changed = settings();
    changed.sleepsAtNight = on;
    source_.change(changed);
  };
  addSpace(2);
  auto* stroke = new PanelButton(PanelButton::Kind::prominent, worded("Stroke"), source_.stroke);
  stroke->setSymbol("heart.fill");
  add(stroke);
  setEditButton(worded("Edit Pet…"), source_.edit);
  refresh();
}

void PetPanelView::refresh() {
  const PetSettings now = settings();
  const PetModel& pet = source_.model.pet();
  setTitle(QString::fromStdString(source_.model.widget().name));
  meadow_->setView(
      petMeadow(now.species, pet.pose(), pet.sky()).clip(roundedRectangle(meadowCorner)));
  meadow_->setName(joinedFacts({petName(now.species), petWords(pet.pose()).toLower()}));
  const bool isAsleep = pet.pose().activity == PetActivity::sleeping;
  words_->setWords(isAsleep ? worded("Asleep until {hour} o'clock", {{"hour", pet.wakingHour()}})
                            : petWords(pet.pose()));
  species_->setCurrent(static_cast<int>(now.species));
  load_->setOn(now.followsProcessorLoad);
  night_->setOn(now.sleepsAtNight);
}

} // namespace tavrin

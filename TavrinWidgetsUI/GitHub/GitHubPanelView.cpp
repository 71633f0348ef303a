#include "TavrinWidgetsUI/GitHub/GitHubPanelView.h"

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinCore/Text/DecimalText.h"
#include "TavrinWidgetsUI/GitHub/GitHubModel.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QDate>

namespace tavrin {
namespace {

using Kind = GitHubSource::Trouble::Kind;

constexpr double gridWidth = 328;
constexpr double gridHeight = 84;
constexpr int gridWeeks = 27;
constexpr double figuresHeight = 44;
constexpr int mostRows = 8;

PanelRow row(const GitHubItem& item, Date now) {
  PanelRow row;
  row.id = QString::fromStdString(item.url);
  row.title = QString::fromStdString(item.title);
  row.subtitle = itemText(item);
  row.trailing = agoText(item.updatedAt, now);
  row.dot = checksColour(item.checks);
  return row;
}

AnyView figure(const QString& number, const QString& name, const PanelPalette& colours) {
  return vstack({text(number).size(17).weight(FontWeight::semibold).colour(colours.text),
                 text(name).size(11).colour(colours.secondary)})
      .spacing(2)
      .width(gridWidth / 3)
      .accessibility(name, number);
}

/// "Mar 29" as the locale writes it, from a calendar date's text.
QString dayText(const std::string& date) {
  const QDate day = QDate::fromString(QString::fromStdString(date), Qt::ISODate);
  if (!day.isValid())
    return QString::fromStdString(date);
  const Calendar calendar;
  DateComponents noon{.year = day.year(), .month = day.month(), .day = day.day(), .hour = 12};
  return QString::fromStdString(calendar.localText(calendar.date(noon), "MMMd"));
}

} // namespace

GitHubPanelView::GitHubPanelView(const PanelAppearance& appearance, GitHubModel& model,
                                 std::function<void(const std::string&)> onOpen,
                                 std::function<void()> onEdit)
    : PanelView(appearance,
                model.settings().shows == GitHubShows::contributions ? Width::grids : Width::lists),
      model_(model), state_(new PanelEmptyState("arrow.triangle.pull", {})),
      list_(new PanelList(worded("Items"))), grid_(new ViewWidget(QSizeF(gridWidth, gridHeight))),
      figures_(new ViewWidget(QSizeF(gridWidth, figuresHeight))),
      remark_(new PanelText({}, PanelTextStyle::caption)) {
  list_->setTall(true);
  list_->setMaximumVisibleRows(mostRows);
  list_->onOpen = [this, onOpen = std::move(onOpen)](int index) {
    onOpen(list_->row(index).id.toStdString());
  };
  add(state_);
  add(list_);
  add(grid_);
  add(figures_);
  add(remark_);
  setEditButton(worded("Edit GitHub…"), std::move(onEdit));
  refresh();
}

void GitHubPanelView::refresh() {
  setTitle(QString::fromStdString(model_.widget().name));
  const auto& trouble = model_.trouble();
  const bool isContributions = model_.settings().shows == GitHubShows::contributions;
  const bool hasList = model_.hasRead() && !isContributions && !model_.items().empty();
  const bool hasGrid = model_.hasRead() && isContributions && model_.contributions();
  const auto failing = GitHubBoard::failing(model_.items());
  // The first time the panel's middle says it.
  if (model_.isLoading() && (model_.hasRead() || trouble))
    setState(worded("Asking GitHub"));
  else if (trouble && model_.hasRead())
    setState(shortText(*trouble), State::trouble);
  else
    setState(failing > 0 ? failingText(failing) : QString(),
             failing > 0 ? State::trouble : State::plain);
  list_->setVisible(hasList);
  grid_->setVisible(hasGrid);
  figures_->setVisible(hasGrid);
  state_->setVisible(!hasList && !hasGrid);
  remark_->setVisible(trouble && model_.hasRead() && !trouble->text.empty());
  if (trouble)
    remark_->setWords(QString::fromStdString(trouble->text));
  if (hasList)
    showList();
  else if (hasGrid)
    showContributions();
  else
    showState();
}

void GitHubPanelView::showList() {
  std::vector<PanelRow> rows;
  for (const auto& item : model_.items())
    rows.push_back(row(item, model_.now()));
  list_->setRows(std::move(rows));
}

void GitHubPanelView::showContributions() {
  const auto& contributions = *model_.contributions();
  grid_->setView(
      ContributionGrid::of(contributions, gridWeeks, colours().control, colours().ground).view());
  grid_->setName(worded("{count} contributions in the last year",
                        {{"count", countText(contributions.total)}}));
  const auto busiest = contributions.busiest();
  figures_->setView(hstack(
      {figure(QString::fromStdString(countText(contributions.total)), worded("In the last year"),
              colours()),
       figure(QString::fromStdString(countText(contributions.streak())),
              wordedPlural("Day in a row", "Days in a row", contributions.streak()), colours()),
       figure(busiest ? QString::fromStdString(countText(busiest->count)) : "0",
              busiest ? worded("Busiest, {day}", {{"day", dayText(busiest->date)}})
                      : worded("Busiest day"),
              colours())}));
}

void GitHubPanelView::showState() {
  const auto& trouble = model_.trouble();
  const bool isTrouble = !model_.hasRead() && trouble;
  state_->setTrouble(isTrouble);
  state_->setHint({});
  state_->setStep({}, {});
  if (!isTrouble) {
    state_->setSentence(model_.hasRead() ? "checkmark.circle" : "arrow.triangle.pull",
                        model_.hasRead() ? worded(nothingText) : worded("Asking GitHub"));
    return;
  }
  state_->setStep(worded("Try Again"), [this] { model_.refresh(); });
  switch (trouble->kind) {
  case Kind::toolMissing:
    state_->setSentence("questionmark.square",
                        worded("GitHub's command line tool is not installed"));
    state_->setHint(
        worded("Tavrin reads GitHub through gh, which keeps your login. Install it with brew "
               "install gh."));
    break;
  case Kind::signedOut:
    state_->setSentence("lock.fill", worded("gh is not signed in"));
    state_->setHint(
        worded("Run gh auth login in a terminal once; Tavrin never asks for a token itself."));
    break;
  case Kind::failed:
    state_->setSentence("exclamationmark.triangle.fill", worded("Could not reach GitHub"));
    state_->setHint(QString::fromStdString(trouble->text));
    break;
  }
}

} // namespace tavrin

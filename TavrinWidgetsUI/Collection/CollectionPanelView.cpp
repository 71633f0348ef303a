#include "TavrinWidgetsUI/Collection/CollectionPanelView.h"

#include "TavrinWidgetsUI/Collection/CollectionViews.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QMenu>
#include <QPainter>
#include <QTimer>
#include <cmath>

namespace tavrin {
namespace {

constexpr int gridColumns = 4;
constexpr int gridRows = 4;
constexpr int listRows = 9;
constexpr int choiceRows = 7;
/// Points; what a square of the grid and a row leave for a picture.
constexpr int gridPicture = 48;
constexpr int rowPicture = 32;

/// As of an application that is gone.
QImage paled(QImage image) {
  QPainter painter(&image);
  painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
  painter.fillRect(image.rect(), QColor(0, 0, 0, 90));
  return image;
}

} // namespace

CollectionPanelView::CollectionPanelView(const PanelAppearance& appearance, CollectionModel& model,
                                         std::function<void()> onEdit)
    : PanelView(appearance, Width::lists), model_(model),
      trouble_(new PanelText({}, PanelTextStyle::trouble)),
      grid_(new PanelGrid(worded("Apps"), gridColumns)), list_(new PanelList(worded("Apps"))),
      empty_(new PanelEmptyState("square.grid.2x2.fill", {})),
      search_(new PanelSearchField(worded("Search apps"))),
      choice_(new PanelList(worded("All apps"))) {
  add(trouble_);
  makeApps();
  makeChoice();
  add(empty_);
  done_ = new PanelButton(PanelButton::Kind::prominent, worded("Done"),
                          [this] { model_.endChoosing(); });
  add(done_);
  setEditButton(worded("Edit Collection…"), std::move(onEdit));
  add_ = new PanelButton(PanelButton::Kind::faint, worded("Add Apps…"), [this] {
    model_.beginChoosing();
    search_->setFocus();
  });
  addFooterButton(add_);
  refresh();
}

bool CollectionPanelView::isGrid() const {
  return model_.settings().layout == CollectionLayout::grid;
}

void CollectionPanelView::makeApps() {
  grid_->setMaximumVisibleRows(gridRows);
  grid_->setCaptionLines(2);
  list_->setTall(true);
  list_->setMaximumVisibleRows(listRows);
  grid_->onOpen = list_->onOpen = [this](int row) { model_.open(static_cast<std::size_t>(row)); };
  grid_->onRemove =
      list_->onRemove = [this](int row) { model_.remove(static_cast<std::size_t>(row)); };
  grid_->onMenu = list_->onMenu = [this](int index, QPoint place) { openMenu(index, place); };
  list_->onAction = [this](int row, int) {
    const QRect rect = list_->visualRect(list_->model()->index(row, 0));
    openMenu(row, list_->viewport()->mapToGlobal(rect.bottomRight()));
  };
  add(grid_);
  add(list_);
}

void CollectionPanelView::makeChoice() {
  search_->setList(choice_);
  search_->onChange = [this](const QString& text) {
    model_.setSearchText(text);
    showChoice();
    showWords();
  };
  const auto toggle = [this](int row) {
    if (row >= 0 && static_cast<std::size_t>(row) < model_.found().size())
      model_.toggle(*model_.found()[static_cast<std::size_t>(row)]);
  };
  search_->onReturn = [toggle] { toggle(0); };
  choice_->setTall(true);
  choice_->setMaximumVisibleRows(choiceRows);
  choice_->onOpen = toggle;
  add(search_);
  add(choice_);
}

void CollectionPanelView::openMenu(int index, const QPoint& place) {
  const auto number = static_cast<std::size_t>(index);
  if (index < 0 || number >= model_.apps().size())
    return;
  const CollectionApp app = model_.apps()[number];
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  if (app.info) {
    menu->addAction(worded("Open"), this, [this, number] { model_.open(number); });
    for (const auto& action : app.info->actions)
      menu->addAction(plainWords(QString::fromStdString(action.name)).replace('&', "&&"), this,
                      [this, number, id = action.id] { model_.open(number, id); });
    menu->addSeparator();
  }
  auto* earlier =
      menu->addAction(worded("Move Earlier"), this, [this, number] { model_.move(number, -1); });
  earlier->setEnabled(number > 0);
  auto* later =
      menu->addAction(worded("Move Later"), this, [this, number] { model_.move(number, 1); });
  later->setEnabled(number + 1 < model_.apps().size());
  menu->addAction(worded("Remove"), this, [this, number] { model_.remove(number); });
  menu->popup(place);
}

QImage CollectionPanelView::picture(const QString& name, const std::string& icon,
                                    int points) const {
  const int scale = static_cast<int>(std::ceil(devicePixelRatioF()));
  const QImage found = model_.picture(icon, points, scale);
  return found.isNull() ? appMonogramImage(name, points, scale) : found;
}

PanelRow CollectionPanelView::choiceRow(int row) const {
  if (static_cast<std::size_t>(row) >= model_.found().size())
    return {};
  const ApplicationInfo& info = *model_.found()[static_cast<std::size_t>(row)];
  const QString name = QString::fromStdString(info.name);
  return {.id = QString::fromStdString(info.id),
          .title = name,
          .subtitle =
              QString::fromStdString(info.genericName.empty() ? info.comment : info.genericName),
          .image = picture(name, info.icon, rowPicture),
          .isChecked = model_.contains(info)};
}

void CollectionPanelView::showApps() {
  std::vector<PanelRow> rows;
  std::vector<PanelCell> cells;
  for (const auto& app : model_.apps()) {
    const bool isGone = model_.isGone(app);
    const QString name = app.name();
    if (isGrid()) {
      cells.push_back({.name = isGone ? worded("{name}, not installed", {{"name", name}}) : name,
                       .image = picture(name, app.icon(), gridPicture),
                       .caption = name,
                       .isEnabled = !isGone});
      continue;
    }
    const QString about =
        app.info ? QString::fromStdString(app.info->genericName.empty() ? app.info->comment
                                                                        : app.info->genericName)
                 : QString();
    const QImage icon = picture(name, app.icon(), rowPicture);
    rows.push_back(
        {.id = QString::fromStdString(app.entry.path + app.entry.bundleIdentifier.value_or("")),
         .title = name,
         .subtitle = isGone ? worded("Not installed") : about,
         .image = isGone ? paled(icon) : icon,
         .actions = {{.symbol = "ellipsis", .name = worded("More")}}});
  }
  grid_->setCells(std::move(cells));
  list_->setRows(std::move(rows));
}

void CollectionPanelView::showChoice() {
  choice_->setRows(static_cast<int>(model_.found().size()),
                   [this](int row) { return choiceRow(row); });
}

void CollectionPanelView::showWords() {
  const bool isChoosing = model_.isChoosing();
  const bool isEmpty = isChoosing ? model_.found().empty() : model_.apps().empty();
  empty_->setVisible(isEmpty);
  choice_->setVisible(isChoosing && !isEmpty);
  empty_->setStep({}, {});
  empty_->setHint({});
  if (!isChoosing) {
    empty_->setSentence("square.grid.2x2.fill", worded("No apps yet"));
    empty_->setHint(worded("Apps you add open from this tile."));
    empty_->setStep(worded("Add Apps…"), [this] {
      model_.beginChoosing();
      search_->setFocus();
    });
  } else if (model_.hasList()) {
    empty_->setSentence("magnifyingglass", worded("Nothing found"));
  } else {
    empty_->setSentence("square.grid.2x2.fill", worded("Reading the list of apps"));
  }
}

void CollectionPanelView::refresh() {
  const bool isChoosing = model_.isChoosing();
  setTitle(QString::fromStdString(model_.widget().name));
  const auto count = model_.apps().size();
  if (!model_.opening().isEmpty())
    setState(worded("Opening {name}", {{"name", model_.opening()}}), State::active);
  else
    setState(
        isChoosing ? wordedPlural("{count} chosen", "{count} chosen", static_cast<long long>(count))
        : count == 0 ? QString()
                     : wordedPlural("{count} app", "{count} apps", static_cast<long long>(count)));
  const auto trouble = QString::fromStdString(model_.trouble());
  trouble_->setWords(trouble);
  trouble_->setVisible(!trouble.isEmpty());
  grid_->setVisible(!isChoosing && count > 0 && isGrid());
  list_->setVisible(!isChoosing && count > 0 && !isGrid());
  search_->setVisible(isChoosing);
  done_->setVisible(isChoosing);
  add_->setVisible(!isChoosing && count > 0);
  if (isChoosing)
    showChoice();
  else
    showApps();
  showWords();
}

void CollectionPanelView::showEvent(QShowEvent* event) {
  PanelView::showEvent(event);
  QTimer::singleShot(0, this, [this] {
    QWidget* first = model_.isChoosing()        ? static_cast<QWidget*>(search_)
                     : grid_->isVisibleTo(this) ? static_cast<QWidget*>(grid_)
                     : list_->isVisibleTo(this) ? static_cast<QWidget*>(list_)
                                                : empty_->findChild<QPushButton*>();
    if (first != nullptr)
      first->setFocus();
  });
}

void CollectionPanelView::hideEvent(QHideEvent* event) {
  search_->reset();
  PanelView::hideEvent(event);
}

} // namespace tavrin

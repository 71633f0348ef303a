#include "TavrinSettings/Dock/DockPage.h"

#include "TavrinSettings/Dock/BackupPane.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QStackedWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr int listWidth = 200;
constexpr const char* backupsRow = "backups";

} // namespace

DockPage::DockPage(PageServices& services, HostContext& context, History& history, RunLoop& runLoop,
                   ApplicationLibrary& applications, QWidget* parent)
    : QWidget(parent), services_(services), profiles_(context, history),
      job_(context, history, runLoop), dock_{services, profiles_, job_, {}},
      applications_(applications), icons_(applications) {
  dock_.icon = [this](const DockItem& item, int side, double scale) {
    return icon(item, side, scale);
  };
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(panel::padding);
  auto* left = new QVBoxLayout;
  left->setSpacing(panel::grid);
  list_ = new PanelList(worded("Layouts"), this);
  list_->setFixedWidth(listWidth);
  list_->onOpen = [this](int index) { choose(index); };
  auto* make = new PanelButton(
      PanelButton::Kind::quiet, worded("New from the Dock"),
      [this] {
        services_.attempt([&] {
          chosen_ = profiles_.createFromDock();
          refresh();
        });
      },
      this);
  make->setSymbol(QStringLiteral("plus"));
  left->addWidget(list_, 1);
  left->addWidget(make);
  if (services.forms.choosePaths)
    left->addWidget(new PanelButton(
        PanelButton::Kind::quiet, worded("Import…"), [this] { importLayouts(); }, this));
  row->addLayout(left);
  stack_ = new QStackedWidget(this);
  layout_ = new LayoutPane(dock_, stack_);
  backups_ = new BackupPane(dock_, context, stack_);
  empty_ = new PanelEmptyState(QStringLiteral("square.grid.2x2.fill"),
                               worded("There are no Dock layouts yet"), stack_);
  empty_->setHint(worded("A layout keeps the Dock's items, to be put there again."));
  for (QWidget* pane : {static_cast<QWidget*>(layout_), static_cast<QWidget*>(backups_),
                        static_cast<QWidget*>(empty_)})
    stack_->addWidget(pane);
  row->addWidget(stack_, 1);
  profiles_.onChange = [this] { refresh(); };
  job_.onProgress = [this](const std::string& sentence, bool isTrouble) {
    progress(sentence, isTrouble);
  };
  icons_.onLoad = [this] { layout_->refreshIcons(); };
}

void DockPage::importLayouts() {
  const auto& forms = services_.forms;
  for (const auto& file :
       forms.choosePaths(window(), FormServices::Choosing::file, forms.system.home))
    services_.attempt([&] {
      if (const auto first = profiles_.importFrom(file))
        chosen_ = *first;
      else
        services_.tell(worded("There is no Dock layout in that file."), true);
      refresh();
    });
}

void DockPage::reload() {
  services_.attempt([&] { profiles_.reload(); });
  backups_->refresh();
}

void DockPage::refresh() {
  std::vector<PanelRow> rows;
  order_.clear();
  const auto& file = profiles_.file();
  for (const auto& profile : file.profiles) {
    PanelRow row;
    row.id = QString::fromStdString(profile.id.text());
    row.title = QString::fromStdString(profile.name);
    row.dot = profileColour(profile.color);
    row.isChecked = file.activeProfileId == profile.id;
    rows.push_back(row);
    order_.push_back(profile.id);
  }
  PanelRow backups;
  backups.id = QString::fromUtf8(backupsRow);
  backups.title = worded("Backups");
  backups.symbol = QStringLiteral("clock");
  rows.push_back(backups);
  list_->setRows(rows);
  const bool isBackups = stack_->currentWidget() == backups_ && !chosen_;
  if (chosen_ && std::ranges::count(order_, *chosen_) == 0)
    chosen_.reset();
  if (!chosen_ && !isBackups && !order_.empty())
    chosen_ = order_.front();
  if (chosen_ && layout_->show(*chosen_)) {
    stack_->setCurrentWidget(layout_);
    list_->setCurrentRow(static_cast<int>(std::ranges::find(order_, *chosen_) - order_.begin()));
  } else if (isBackups) {
    list_->setCurrentRow(static_cast<int>(order_.size()));
  } else {
    stack_->setCurrentWidget(empty_);
  }
}

void DockPage::choose(int row) {
  if (row < static_cast<int>(order_.size())) {
    chosen_ = order_[static_cast<std::size_t>(row)];
  } else {
    chosen_.reset();
    backups_->refresh();
    stack_->setCurrentWidget(backups_);
  }
  refresh();
}

void DockPage::progress(const std::string& sentence, bool isTrouble) {
  services_.tell(QString::fromStdString(sentence), isTrouble);
  reload();
}

QImage DockPage::icon(const DockItem& item, int side, double scale) {
  const auto* app = item.app();
  if (app == nullptr)
    return {};
  const auto [found, isNew] = iconNames_.try_emplace(app->path);
  if (isNew)
    asking_.push_back(applications_.find(
        {*app}, [this, path = app->path](const std::vector<std::optional<ApplicationInfo>>& infos) {
          if (!infos.empty() && infos.front()) {
            iconNames_[path] = infos.front()->icon;
            layout_->refreshIcons();
          }
        }));
  return found->second ? icons_.image(*found->second, side, static_cast<int>(std::ceil(scale)))
                       : QImage();
}

} // namespace tavrin

#include "TavrinSettings/Dock/DockPage.h"

#include "TavrinSettings/Dock/BackupPane.h"
#include "TavrinSettings/Dock/DockNowPane.h"
#include "TavrinSettings/Dock/DropMenu.h"
#include "TavrinSettings/Dock/FollowPane.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QStackedWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace tavrin {
namespace {

constexpr int listWidth = 200;

} // namespace

DockPage::DockPage(PageServices& services, HostContext& context, History& history, RunLoop& runLoop,
                   InstalledApps& apps, FolderWatch& folders, QWidget* parent)
    : QWidget(parent), services_(services), profiles_(context, history),
      job_(context, history, runLoop),
      following_(context, history), dock_{services, context, profiles_, job_, following_, {}} {
  dock_.icon = [&apps](const DockItem& item, int side, double scale) {
    const auto* app = item.app();
    return app == nullptr ? QImage() : apps.app(*app, side, scale).icon;
  };
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(panel::padding);
  auto* left = new QVBoxLayout;
  left->setSpacing(panel::grid);
  list_ = new PanelList(worded("Layouts"), this);
  list_->setFixedWidth(listWidth);
  // So that nothing moves when one of them is written.
  list_->setTall(true);
  list_->onOpen = [this](int index) { choose(index); };
  auto* fresh = new PanelButton(
      PanelButton::Kind::quiet, worded("New from the Dock"), [this] { make(false); }, this);
  fresh->setSymbol(QStringLiteral("plus"));
  left->addWidget(list_, 1);
  left->addWidget(fresh);
  left->addWidget(new PanelButton(
      PanelButton::Kind::quiet, worded("New, Empty"), [this] { make(true); }, this));
  if (services.forms.choosePaths) {
    left->addWidget(new PanelButton(
        PanelButton::Kind::quiet, worded("Import…"), [this] { importLayouts(); }, this));
    exportAll_ = new PanelButton(
        PanelButton::Kind::quiet, worded("Export All…"), [this] { exportAll(); }, this);
    left->addWidget(exportAll_);
  }
  row->addLayout(left);
  stack_ = new QStackedWidget(this);
  layout_ = new LayoutPane(dock_, stack_);
  backups_ = new BackupPane(dock_, context, stack_);
  layout_->onMade = backups_->onMade = [this](const UUID& id) {
    chosen_ = id;
    refresh();
  };
  now_ = new DockNowPane(dock_, stack_);
  follow_ = new FollowPane(dock_, stack_);
  empty_ = new PanelEmptyState(QStringLiteral("square.grid.2x2.fill"),
                               worded("There are no Dock layouts yet"), stack_);
  empty_->setHint(worded("A layout keeps the Dock's items, to be put there again."));
  empty_->setStep(worded("New from the Dock"), [this] { make(false); });
  stack_->addWidget(layout_);
  for (QWidget* pane : furtherPanes())
    stack_->addWidget(pane);
  stack_->addWidget(empty_);
  row->addWidget(stack_, 1);
  profiles_.onChange = [this] { refresh(); };
  following_.onChange = [this] { refresh(); };
  job_.onProgress = [this](const std::string& sentence, DockJob::Stage stage) {
    progress(sentence, stage);
  };
  follow(context, folders);
}

void DockPage::make(bool isEmpty) {
  services_.attempt([&] {
    chosen_ = profiles_.create(isEmpty);
    refresh();
  });
}

void DockPage::follow(HostContext& context, FolderWatch& folders) {
  const StoragePath paths(context.platform().fileManager(), context.platform().mainBundle());
  const auto data = paths.appSupportDirectory(true);
  const auto layouts = paths.profilesFileURL().filename().string();
  const auto following = paths.followingFileURL().filename().string();
  FolderRequest request;
  request.folders = {context.platform().fileManager().homeFolder() / "Library/Preferences", data,
                     data / BackupManager::directoryName};
  request.classify = [layouts, following](std::string_view name) {
    return name == "com.apple.dock.plist" || name == layouts || name == following ||
                   name.starts_with("dock-")
               ? FolderEntry::wanted
               : FolderEntry::ignored;
  };
  request.limit = 100;
  follower_ = folders.follow(std::move(request), [this](const FolderListing&) { reload(); });
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

void DockPage::exportAll() {
  const auto& forms = services_.forms;
  const auto name = worded("Dock Layouts").toStdString() + ".json";
  for (const auto& file :
       forms.choosePaths(window(), FormServices::Choosing::newFile, forms.system.home / name))
    if (services_.attempt([&] { profiles_.exportTo(file, std::nullopt); }))
      services_.tell(worded("Written to {file}.", {{"file", file.string()}}), false);
}

void DockPage::reload() {
  services_.attempt([&] { profiles_.reload(); });
  if (stack_->currentWidget() == backups_)
    backups_->refresh();
  else if (stack_->currentWidget() == now_)
    now_->refresh();
}

std::array<QWidget*, 3> DockPage::furtherPanes() const {
  return {now_, follow_, backups_};
}

void DockPage::addFurther(std::vector<PanelRow>& rows) const {
  const auto* shown = chosen_ ? nullptr : stack_->currentWidget();
  rows.push_back({.id = QStringLiteral("now"),
                  .title = worded("The Dock Now"),
                  .symbol = QStringLiteral("eye"),
                  .isShown = shown == now_});
  rows.push_back({.id = QStringLiteral("follow"),
                  .title = worded("Shortcuts and Focus"),
                  .symbol = QStringLiteral("keyboard"),
                  .isShown = shown == follow_});
  rows.push_back({.id = QStringLiteral("backups"),
                  .title = worded("Backups"),
                  .symbol = QStringLiteral("clock"),
                  .isShown = shown == backups_});
}

void DockPage::refresh() {
  const auto& file = profiles_.file();
  order_.clear();
  for (const auto& profile : file.profiles)
    order_.push_back(profile.id);
  if (chosen_ && std::ranges::count(order_, *chosen_) == 0)
    chosen_.reset();
  const auto panes = furtherPanes();
  const auto further = std::ranges::find(panes, stack_->currentWidget()) - panes.begin();
  const bool isFurther = !chosen_ && further < std::ssize(panes);
  if (!chosen_ && !isFurther && !order_.empty())
    chosen_ = order_.front();
  std::vector<PanelRow> rows;
  for (const auto& profile : file.profiles) {
    PanelRow row;
    row.id = QString::fromStdString(profile.id.text());
    row.title = QString::fromStdString(profile.name);
    row.dot = profileColour(profile.color);
    if (file.activeProfileId == profile.id)
      row.subtitle = job_.hasDock() ? worded("In the Dock") : worded("Written last");
    row.isShown = chosen_ == profile.id;
    rows.push_back(row);
  }
  addFurther(rows);
  list_->setRows(rows);
  if (exportAll_ != nullptr)
    exportAll_->setEnabled(!order_.empty());
  if (chosen_ && layout_->show(*chosen_)) {
    stack_->setCurrentWidget(layout_);
    list_->setCurrentRow(static_cast<int>(std::ranges::find(order_, *chosen_) - order_.begin()));
  } else if (isFurther) {
    list_->setCurrentRow(static_cast<int>(order_.size()) + static_cast<int>(further));
    if (panes[static_cast<std::size_t>(further)] == follow_)
      follow_->refresh();
    else if (panes[static_cast<std::size_t>(further)] == now_)
      now_->refresh();
  } else {
    stack_->setCurrentWidget(empty_);
  }
}

void DockPage::choose(int row) {
  const auto index = static_cast<std::size_t>(row);
  const auto panes = furtherPanes();
  if (index < order_.size()) {
    chosen_ = order_[index];
  } else if (index - order_.size() < panes.size()) {
    chosen_.reset();
    stack_->setCurrentWidget(panes[index - order_.size()]);
    if (stack_->currentWidget() == backups_)
      backups_->refresh();
  }
  refresh();
}

void DockPage::progress(const std::string& sentence, DockJob::Stage stage) {
  reload();
  const auto words = QString::fromStdString(sentence);
  if (stage == DockJob::Stage::begun)
    services_.tellProgress(words);
  else if (stage == DockJob::Stage::done && services_.history.canUndo())
    services_.offerUndo(words);
  else
    services_.tell(words, stage == DockJob::Stage::failed);
}

} // namespace tavrin

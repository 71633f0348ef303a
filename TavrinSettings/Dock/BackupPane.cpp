#include "TavrinSettings/Dock/BackupPane.h"

#include "TavrinCore/Base/Calendar.h"
#include "TavrinCore/Settings/SettingText.h"
#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinStorage/Dock/PlistFileBackend.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QVBoxLayout>
#include <algorithm>
#include <fmt/format.h>
#include <set>

namespace tavrin {
namespace {

/// More are not looked through each time.
constexpr std::size_t mostCompared = 12;

template <class Record>
std::size_t differing(const std::vector<Record>& then, const std::vector<Record>& now) {
  std::size_t count = 0;
  std::set<UUID> seen;
  for (const auto& record : then) {
    seen.insert(record.id);
    const auto found = std::ranges::find(now, record.id, &Record::id);
    count += found == now.end() || *found != record ? 1 : 0;
  }
  for (const auto& record : now)
    count += seen.contains(record.id) ? 0 : 1;
  return count;
}

std::string reasonWords(WorkspaceBackup::Reason reason) {
  switch (reason) {
  case WorkspaceBackup::Reason::launch:
    return translated("Made at a start, or when asked for");
  case WorkspaceBackup::Reason::quit:
    return translated("Made at an end");
  case WorkspaceBackup::Reason::restore:
    break;
  }
  return translated("Made before a backup was restored");
}

/// Bringing back a workspace backup; undone by the one that was made before it.
class RestoreStep final : public HistoryStep {
public:
  RestoreStep(HostContext& context, WorkspaceBackup restored, std::optional<WorkspaceBackup> before)
      : context_(context), restored_(std::move(restored)), before_(std::move(before)) {}
  std::string title() const override { return translated("Restore a Backup"); }
  std::vector<std::string> undo() override { return put(before_); }
  std::vector<std::string> redo() override { return put(restored_); }

private:
  std::vector<std::string> put(const std::optional<WorkspaceBackup>& backup) {
    if (!backup)
      return {translated("There is no backup of what was there before")};
    workspaceBackups(context_).restore(*backup, context_.platform().clock().now());
    context_.platform().notifications().post(std::string(DockSlot::widgetsChangedNotification));
    return {};
  }

  HostContext& context_;
  WorkspaceBackup restored_;
  std::optional<WorkspaceBackup> before_;
};

} // namespace

QString dockBackupTitle(const std::filesystem::path& backup) {
  const auto date = BackupManager::dateOf(backup);
  return QString::fromStdString(date ? Calendar().dateAndTime(*date) : backup.stem().string());
}

std::string workspaceContents(const WorkspaceBackupStore::Contents& backup) {
  const auto names = [](const auto& records) {
    std::vector<std::string> all;
    for (const auto& record : records)
      all.push_back(record.name);
    return all.empty() ? translated("none") : enumeration(all);
  };
  return translated(
      "Widgets: {widgets}. Dock layouts: {layouts}.",
      {{"widgets", names(backup.widgets.widgets)}, {"layouts", names(backup.profiles.profiles)}});
}

std::string workspaceDifference(const WorkspaceBackupStore::Contents& backup,
                                const WidgetsFile& widgets, const ProfilesFile& profiles) {
  const auto ofWidgets = static_cast<long long>(differing(backup.widgets.widgets, widgets.widgets));
  const auto ofProfiles =
      static_cast<long long>(differing(backup.profiles.profiles, profiles.profiles));
  if (ofWidgets == 0 && ofProfiles == 0)
    return translated("nothing differs from now");
  if (ofProfiles == 0)
    return plural("{count} widget differs from now", "{count} widgets differ from now", ofWidgets);
  if (ofWidgets == 0)
    return plural("{count} layout differs from now", "{count} layouts differ from now", ofProfiles);
  return translated("{widgets} and {layouts} differ from now",
                    {{"widgets", plural("{count} widget", "{count} widgets", ofWidgets)},
                     {"layouts", plural("{count} layout", "{count} layouts", ofProfiles)}});
}

BackupPane::BackupPane(DockServicesOfPage& services, HostContext& context, QWidget* parent)
    : QWidget(parent), services_(services), context_(context) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(panel::grid);
  column->addWidget(new PanelText(worded("Widgets and layouts"), PanelTextStyle::section, this));
  workspaceList_ = new PanelList(worded("Backups of widgets and layouts"), this);
  workspaceList_->onAction = [this](int row, int) { restoreWorkspace(row); };
  workspaceList_->onOpen = [this](int row) { showContents(row); };
  column->addWidget(workspaceList_, 2);
  noWorkspace_ = new PanelText(
      worded("There is none yet. One is made each time the widgets start and end, and now by “Back "
             "Up Now”."),
      PanelTextStyle::secondary, this);
  column->addWidget(noWorkspace_);
  column->addWidget(new PanelText(worded("The Dock"), PanelTextStyle::section, this));
  dockList_ = new PanelList(worded("Backups of the Dock"), this);
  dockList_->onOpen = [this](int row) { showDifference(row); };
  dockList_->onAction = [this](int row, int action) {
    if (action == 0)
      makeLayout(row);
    else
      restoreDock(row);
  };
  column->addWidget(dockList_, 1);
  noDock_ =
      new PanelText(worded("There is none yet. One is made before a layout is put into the Dock."),
                    PanelTextStyle::secondary, this);
  column->addWidget(noDock_);
  auto* create = new PanelButton(
      PanelButton::Kind::quiet, worded("Back Up Now"),
      [this] {
        services_.page.attempt([&] {
          const auto made = workspaceBackups(context_).backUp(WorkspaceBackup::Reason::launch,
                                                              context_.platform().clock().now());
          services_.page.tell(
              made ? worded("A backup was made.")
                   : worded("Nothing was written: nothing has changed since the last one."),
              false);
          refresh();
        });
      },
      this);
  restore_ = new PanelButton(PanelButton::Kind::quiet, {}, {}, this);
  make_ = new PanelButton(PanelButton::Kind::quiet, worded("Make a Layout of It"), {}, this);
  restore_->hide();
  make_->hide();
  column->addStretch(1);
  auto* actions = new QHBoxLayout;
  actions->addWidget(create);
  actions->addStretch(1);
  actions->addWidget(make_);
  actions->addWidget(restore_);
  column->addLayout(actions);
}

void BackupPane::refresh() {
  restore_->hide();
  make_->hide();
  const Calendar calendar;
  std::vector<PanelRow> rows;
  services_.page.attempt([&] {
    const auto store = workspaceBackups(context_);
    workspace_ = store.list();
    for (std::size_t i = 0; i < workspace_.size(); ++i) {
      const auto& backup = workspace_[i];
      PanelRow row;
      row.id = QString::fromStdString(backup.id());
      row.title = QString::fromStdString(calendar.dateAndTime(backup.date));
      auto words = reasonWords(backup.reason);
      if (i < mostCompared) {
        try {
          words = translated("{made}; {difference}",
                             {{"made", words},
                              {"difference", workspaceDifference(store.contents(backup),
                                                                 services_.page.editor.file(),
                                                                 services_.profiles.file())}});
        } catch (const std::exception&) {
          words = translated("{made}; it cannot be read", {{"made", words}});
        }
      }
      row.subtitle = QString::fromStdString(words);
      row.symbol = QStringLiteral("archivebox.fill");
      row.actions = {{QStringLiteral("arrow.counterclockwise"), worded("Restore"), true}};
      rows.push_back(row);
    }
  });
  workspaceList_->setVisible(!rows.empty());
  noWorkspace_->setVisible(rows.empty());
  workspaceList_->setRows(rows);
  rows.clear();
  services_.page.attempt([&] {
    dock_ = services_.profiles.library().backups().listBackups();
    std::ranges::reverse(dock_);
    const auto now = services_.profiles.library().snapshot();
    for (std::size_t i = 0; i < dock_.size(); ++i) {
      PanelRow row;
      row.id = QString::fromStdString(dock_[i].filename().string());
      row.title = dockBackupTitle(dock_[i]);
      if (i < mostCompared) {
        try {
          const auto then = dockPlistReader(dock_[i]).read(now.capturedAt);
          row.subtitle =
              worded("Restoring it {changes}", {{"changes", differenceWords(now, then)}});
        } catch (const std::exception&) {
          row.subtitle = worded("It cannot be read");
        }
      }
      row.symbol = QStringLiteral("archivebox.fill");
      row.actions = {{QStringLiteral("plus"), worded("Make a Layout of It")},
                     {QStringLiteral("arrow.counterclockwise"), worded("Restore"), true}};
      rows.push_back(row);
    }
  });
  dockList_->setVisible(!rows.empty());
  noDock_->setVisible(rows.empty());
  dockList_->setRows(rows);
}

void BackupPane::showContents(int row) {
  if (row < 0 || row >= static_cast<int>(workspace_.size()))
    return;
  services_.page.attempt([&] {
    const auto contents =
        workspaceBackups(context_).contents(workspace_[static_cast<std::size_t>(row)]);
    services_.page.tell(QString::fromStdString(workspaceContents(contents)), false);
    offer(workspaceList_->row(row).title, [this, row] { restoreWorkspace(row); }, {});
  });
}

void BackupPane::showDifference(int row) {
  if (row < 0 || row >= static_cast<int>(dock_.size()))
    return;
  services_.page.tell(dockList_->row(row).subtitle + QLatin1Char('.'), false);
  offer(
      dockList_->row(row).title, [this, row] { restoreDock(row); },
      [this, row] { makeLayout(row); });
}

void BackupPane::offer(const QString& title, std::function<void()> restore,
                       std::function<void()> make) {
  restore_->setTitle(worded("Restore {backup}", {{"backup", title}}));
  restore_->setAction(std::move(restore));
  restore_->show();
  make_->setVisible(make != nullptr);
  make_->setAction(std::move(make));
}

void BackupPane::makeLayout(int row) {
  if (row < 0 || row >= static_cast<int>(dock_.size()))
    return;
  services_.page.attempt([&] {
    const auto& backup = dock_[static_cast<std::size_t>(row)];
    const auto made = services_.profiles.createFrom(
        services_.profiles.library().layout(backup.filename().string()), translated("Layout"));
    if (onMade)
      onMade(made);
  });
}

void BackupPane::restoreWorkspace(int row) {
  if (row < 0 || row >= static_cast<int>(workspace_.size()))
    return;
  const auto backup = workspace_[static_cast<std::size_t>(row)];
  services_.page.attempt([&] {
    auto store = workspaceBackups(context_);
    // What cannot be read must not take the place of what can.
    const auto contents = store.contents(backup);
    if (contents.widgets == services_.page.editor.file() &&
        contents.profiles == services_.profiles.file()) {
      services_.page.tell(worded("Nothing was written: everything is as it was then."), false);
      return;
    }
    std::optional<WorkspaceBackup> before;
    store.didKeepCurrent = [&](const WorkspaceBackup& kept) { before = kept; };
    store.restore(backup, context_.platform().clock().now());
    context_.platform().notifications().post(std::string(DockSlot::widgetsChangedNotification));
    services_.page.history.add(std::make_unique<RestoreStep>(context_, backup, before));
    services_.profiles.reload();
    refresh();
    services_.page.offerUndo(worded("Everything is as it was then. Undo goes back."));
  });
}

void BackupPane::restoreDock(int row) {
  if (row < 0 || row >= static_cast<int>(dock_.size()))
    return;
  services_.page.attempt(
      [&] { services_.job.restore(dock_[static_cast<std::size_t>(row)].filename().string()); });
}

} // namespace tavrin

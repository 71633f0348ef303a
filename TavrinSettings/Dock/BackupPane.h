#pragma once

#include "TavrinHost/Dock/WorkspaceBackups.h"
#include "TavrinSettings/Dock/LayoutPane.h"

#include <filesystem>

namespace tavrin {

class PanelList;

/// The backups of widgets and layouts, and those of the Dock: when each was made, what differs from
/// now, and bringing it back.
class BackupPane : public QWidget {
public:
  BackupPane(DockServicesOfPage& services, HostContext& context, QWidget* parent = nullptr);

  void refresh();

  /// A layout was made of a backup.
  std::function<void(const UUID& id)> onMade;

private:
  void showContents(int row);
  void showDifference(int row);
  void makeLayout(int row);
  /// What can be done with the backup that was opened, as buttons too.
  void offer(const QString& title, std::function<void()> restore, std::function<void()> make);
  void restoreWorkspace(int row);
  void restoreDock(int row);

  DockServicesOfPage& services_;
  HostContext& context_;
  std::vector<WorkspaceBackup> workspace_;
  std::vector<std::filesystem::path> dock_;
  PanelList* workspaceList_;
  PanelText* noWorkspace_;
  PanelList* dockList_;
  PanelText* noDock_;
  // Hidden where the rows may be others.
  PanelButton* restore_;
  PanelButton* make_;
};

/// The date in a Dock backup's name, in words; else the name.
QString dockBackupTitle(const std::filesystem::path& backup);

/// "Clock, Tea and Mail; the layouts Work and Home": what it holds, in words.
std::string workspaceContents(const WorkspaceBackupStore::Contents& backup);

/// "2 widgets and 1 layout differ from now": a backup beside what there is.
std::string workspaceDifference(const WorkspaceBackupStore::Contents& backup,
                                const WidgetsFile& widgets, const ProfilesFile& profiles);

} // namespace tavrin

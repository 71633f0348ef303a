#pragma once

#include "TavrinPlatform/FolderWatch.h"
#include "TavrinSettings/Base/InstalledApps.h"
#include "TavrinSettings/Dock/LayoutPane.h"

#include <memory>

class QStackedWidget;

namespace tavrin {

class BackupPane;
class DockNowPane;
class FollowPane;
class PanelEmptyState;
class PanelList;

/// The Dock's layouts: those that were made, each with its settings, the Dock as it is, and the
/// backups.
class DockPage : public QWidget {
public:
  DockPage(PageServices& services, HostContext& context, History& history, RunLoop& runLoop,
           InstalledApps& apps, FolderWatch& folders, QWidget* parent = nullptr);

  /// Reads everything anew. It does so by itself when the Dock's file, the layouts or the backups
  /// change.
  void reload();

private:
  void importLayouts();
  void exportAll();
  void refresh();
  void choose(int row);
  /// Those that are no layout, in the order of the list.
  std::array<QWidget*, 3> furtherPanes() const;
  void addFurther(std::vector<PanelRow>& rows) const;
  void make(bool isEmpty);
  void follow(HostContext& context, FolderWatch& folders);
  void progress(const std::string& sentence, DockJob::Stage stage);

  PageServices& services_;
  ProfilesEditor profiles_;
  DockJob job_;
  FollowControl following_;
  DockServicesOfPage dock_;
  std::unique_ptr<FolderFollower> follower_;
  PanelList* list_;
  PanelButton* exportAll_ = nullptr;
  QStackedWidget* stack_;
  LayoutPane* layout_;
  BackupPane* backups_;
  DockNowPane* now_;
  FollowPane* follow_;
  PanelEmptyState* empty_;
  std::optional<UUID> chosen_;
  std::vector<UUID> order_;
};

} // namespace tavrin

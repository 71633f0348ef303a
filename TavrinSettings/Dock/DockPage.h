#pragma once

#include "TavrinSettings/Dock/LayoutPane.h"
#include "TavrinWidgetsUI/Kit/Pictures/AppIcons.h"

#include <map>

class QStackedWidget;

namespace tavrin {

class BackupPane;
class PanelEmptyState;
class PanelList;

/// The Dock's layouts: those that were made, each with its settings, and the backups.
class DockPage : public QWidget {
public:
  DockPage(PageServices& services, HostContext& context, History& history, RunLoop& runLoop,
           ApplicationLibrary& applications, QWidget* parent = nullptr);

  /// Reads everything anew: for when the page is shown, or others changed something.
  void reload();

private:
  void importLayouts();
  void refresh();
  void choose(int row);
  QImage icon(const DockItem& item, int side, double scale);
  void progress(const std::string& sentence, bool isTrouble);

  PageServices& services_;
  ProfilesEditor profiles_;
  DockJob job_;
  DockServicesOfPage dock_;
  ApplicationLibrary& applications_;
  AppIcons icons_;
  /// By path: the icon's name, once it is known.
  std::map<std::string, std::optional<std::string>> iconNames_;
  std::vector<TokenPtr> asking_;
  PanelList* list_;
  QStackedWidget* stack_;
  LayoutPane* layout_;
  BackupPane* backups_;
  PanelEmptyState* empty_;
  std::optional<UUID> chosen_;
  std::vector<UUID> order_;
};

} // namespace tavrin

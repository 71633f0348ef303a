#pragma once

#include "TavrinCore/Kinds/Collection/CollectionSettings.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "TavrinPlatform/ApplicationLibrary.h"
#include "TavrinWidgetsUI/Kit/Pictures/AppIcons.h"

#include <QString>
#include <functional>
#include <optional>

namespace tavrin {

/// One application of a collection.
struct CollectionApp {
  AppEntry entry;
  /// No value before the desktop has been asked, and where the application is not installed.
  std::optional<ApplicationInfo> info;

  /// The desktop's name for it, else the one it had when it was chosen.
  QString name() const;
  /// Names its picture.
  std::string icon() const { return info ? info->icon : std::string(); }
  bool operator==(const CollectionApp&) const = default;
};

/// A collection of applications as tile and panel show it, and the choice among all that are
/// installed.
class CollectionModel {
public:
  /// How a change of the apps is kept.
  using Save = std::function<void(const CollectionSettings&)>;

  CollectionModel(ApplicationLibrary& library, DockWidget widget, Save save);
  CollectionModel(const CollectionModel&) = delete;
  CollectionModel& operator=(const CollectionModel&) = delete;

  const DockWidget& widget() const { return widget_; }
  /// Does not call `onChange`.
  void setWidget(const DockWidget& widget);
  /// Those of the widget; the defaults when it is of another kind.
  CollectionSettings settings() const { return widget_.kind.settings<CollectionSettings>(); }

  const std::vector<CollectionApp>& apps() const { return apps_; }
  /// The desktop has been asked: what has no `info` is not installed.
  bool hasRead() const { return hasRead_; }
  bool isGone(const CollectionApp& app) const { return hasRead_ && !app.info; }
  /// What went wrong when an application was opened last; empty for nothing.
  const std::string& trouble() const { return trouble_; }
  /// The name of the application that is being opened; empty for none.
  const QString& opening() const { return opening_; }

  /// Opens an application, or has it do one of its actions.
  void open(std::size_t index, const std::string& action = {});
  void remove(std::size_t index);
  /// Moves an application by so many places.
  void move(std::size_t index, int by);

  /// Choosing among all applications: the list is read when it begins and dropped when it ends.
  bool isChoosing() const { return isChoosing_; }
  void beginChoosing();
  void endChoosing();
  bool hasList() const { return hasList_; }
  void setSearchText(const QString& text);
  /// The applications that fit the search, by name.
  const std::vector<const ApplicationInfo*>& found() const { return found_; }
  bool contains(const ApplicationInfo& info) const;
  /// Puts an application in at the end, or takes it out.
  void toggle(const ApplicationInfo& info);

  QImage picture(const std::string& icon, int points, int scale) {
    return icons_.image(icon, points, scale);
  }

  /// Something of the above differs.
  std::function<void()> onChange;
  /// An application has come up.
  std::function<void()> onOpened;

private:
  void locate();
  void readList();
  void search();
  void change(std::vector<AppEntry> apps);
  void changed() const;

  ApplicationLibrary& library_;
  DockWidget widget_;
  Save save_;
  AppIcons icons_;
  std::vector<CollectionApp> apps_;
  bool hasRead_ = false;
  std::string trouble_;
  QString opening_;
  bool isChoosing_ = false;
  bool hasList_ = false;
  std::vector<ApplicationInfo> all_;
  std::vector<const ApplicationInfo*> found_;
  QString searchText_;
  TokenPtr observation_;
  TokenPtr locating_;
  TokenPtr listing_;
  TokenPtr launching_;
};

} // namespace tavrin

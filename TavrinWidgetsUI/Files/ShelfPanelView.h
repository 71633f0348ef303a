#pragma once

#include "TavrinPlatform/Clock.h"
#include "TavrinWidgetsUI/Files/ShelfModel.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

namespace tavrin {

class PanelEmptyState;
class PanelList;
class QuickLook;
struct PanelRow;

/// What lies on the shelf, newest first. A click or Return opens a file, Space looks into it, it
/// can be dragged away, and its buttons do the rest. What is missing can only be taken off.
class ShelfPanelView final : public PanelView {
public:
  struct Services {
    RunLoop& runLoop;
    Clock& clock;
    std::filesystem::path home;
    std::function<QString()> name;
    std::function<void(const std::filesystem::path&)> open;
    std::function<void(const std::vector<std::filesystem::path>&)> copy;
    std::function<void(const std::filesystem::path&)> reveal;
    std::function<void(const std::filesystem::path&)> remove;
    std::function<void()> clear;
    std::function<void()> edit;
  };

  ShelfPanelView(const PanelAppearance& appearance, ShelfModel& model, Services services);
  void refresh() override;

protected:
  void showEvent(QShowEvent* event) override;
  void appearanceChanged() override;

private:
  void makeList();
  PanelRow makeRow(const ShelfItem& item);
  const ShelfItem* itemAt(int row) const;
  void act(int row, int action);
  void look(int row);
  void lookAway();
  void showParts();

  ShelfModel& model_;
  Services services_;
  PanelList* list_;
  QuickLook* quickLook_;
  PanelEmptyState* empty_;
  PanelButton* copyAll_;
  PanelButton* clear_;
  bool isLooking_ = false;
};

} // namespace tavrin

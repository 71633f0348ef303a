#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include <functional>
#include <optional>
#include <string>

namespace tavrin {

class PanelButton;
class PanelList;
class PanelText;
class SystemWidgetModel;
class ViewWidget;

/// The battery's level and time, and the batteries of connected devices.
class BatteryPanelView final : public PanelView {
public:
  BatteryPanelView(const PanelAppearance& appearance, const SystemWidgetModel& model,
                   std::function<void()> onEdit);
  void refresh() override;

protected:
  void appearanceChanged() override { refresh(); }

private:
  const SystemWidgetModel& model_;
  ViewWidget* gauge_;
  PanelText* state_;
  PanelList* devices_;
  PanelText* noDevices_;
};

/// Processor and memory as two rings and over the last minute, and the way to the desktop's system
/// monitor.
class ActivityPanelView final : public PanelView {
public:
  ActivityPanelView(const PanelAppearance& appearance, SystemWidgetModel& model,
                    std::function<void()> onEdit);
  void refresh() override;

protected:
  void appearanceChanged() override { refresh(); }

private:
  SystemWidgetModel& model_;
  ViewWidget* gauges_;
  ViewWidget* chart_;
  PanelText* trouble_;
};

/// Both rates, their last minute, and the link that is counted.
class NetworkPanelView final : public PanelView {
public:
  /// No value chooses all links.
  using Choose = std::function<void(const std::optional<std::string>& interface)>;

  NetworkPanelView(const PanelAppearance& appearance, const SystemWidgetModel& model, Choose choose,
                   std::function<void()> onEdit);
  void refresh() override;

protected:
  void appearanceChanged() override { refresh(); }

private:
  const SystemWidgetModel& model_;
  Choose choose_;
  ViewWidget* rates_;
  ViewWidget* chart_;
  PanelList* links_;
  /// What the rows stand for; the first is all of them.
  std::vector<std::optional<std::string>> choices_;
};

} // namespace tavrin

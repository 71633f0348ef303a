#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Water/WaterViews.h"

namespace tavrin {

class PanelButton;
class PanelFigure;
class PanelText;
class ViewWidget;

class WaterPanelView final : public PanelView {
public:
  /// What it shows and asks for; must outlive the view.
  struct Source {
    std::function<std::string()> name;
    std::function<WaterReading()> reading;
    std::function<WaterTank()> tank;
    std::function<void()> drink;
    std::function<void()> undo;
    std::function<void()> edit;
  };

  WaterPanelView(const PanelAppearance& appearance, Source source);
  void refresh() override;

protected:
  void appearanceChanged() override { refresh(); }

private:
  void showWords(const WaterReading& reading);

  Source source_;
  ViewWidget* vessel_;
  PanelFigure* amount_;
  PanelText* goal_;
  PanelText* next_;
  ViewWidget* week_;
  PanelButton* drink_;
  PanelButton* undo_;
};

} // namespace tavrin

#pragma once

#include "TavrinWidgetsUI/AirDrop/AirDropModel.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

namespace tavrin {

class PanelEmptyState;
class PanelList;
class ViewWidget;

/// What is to be sent, the devices around, and how far the sending is.
class AirDropPanelView : public PanelView {
public:
  struct Requests {
    /// Has the user choose files.
    std::function<void()> chooseFiles;
    std::function<void()> edit;
  };
  AirDropPanelView(const PanelAppearance& appearance, AirDropModel& model, Requests requests);
  void refresh() override;

protected:
  void showEvent(QShowEvent* event) override;

private:
  void choose(int row);
  void showDevices();
  void showSending();
  void showWords();

  AirDropModel& model_;
  Requests requests_;
  PanelText* subject_;
  PanelText* detail_;
  PanelText* trouble_;
  ViewWidget* bar_;
  PanelText* section_;
  PanelList* list_;
  PanelEmptyState* empty_;
  PanelButton* files_;
  PanelButton* cancel_;
  PanelButton* forget_;
};

} // namespace tavrin

#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Shortcut/ShortcutRunner.h"

namespace tavrin {

class PanelEmptyState;
class PanelTextEdit;

/// The action, how its last run went and what it wrote.
class ShortcutPanelView : public PanelView {
public:
  struct Requests {
    std::function<void(const std::string&)> copy;
    std::function<void()> edit;
  };
  ShortcutPanelView(const PanelAppearance& appearance, ShortcutRunner& runner, Requests requests);
  void refresh() override;

private:
  void showOutput();

  ShortcutRunner& runner_;
  PanelEmptyState* empty_;
  PanelText* action_;
  PanelText* subject_;
  PanelButton* run_;
  PanelText* result_;
  PanelText* trouble_;
  PanelTextEdit* output_;
  PanelButton* copy_;
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Kinds/Colour/ColourHistory.h"
#include "TavrinCore/Kinds/Colour/ColourPickerSettings.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include <functional>
#include <string>

class QComboBox;

namespace tavrin {

class PanelEmptyState;
class PanelGrid;
class PanelText;
class ViewWidget;

/// The picked colours as swatches. A click on one chooses and copies it; the chosen one is shown
/// large, and can be copied in every notation, pinned and removed.
class ColourPanelView final : public PanelView {
public:
  struct Source {
    std::function<std::string()> name;
    std::function<const ColourHistory&()> history;
    std::function<ColourPickerSettings()> settings;
    /// What went wrong last, as a sentence; empty for nothing.
    std::function<std::string()> trouble;
    std::function<void()> pick;
    std::function<void(const PickedColour&, ColourFormat)> copy;
    std::function<void(const UUID&)> togglePin;
    std::function<void(const UUID&)> remove;
    std::function<void()> clearUnpinned;
    std::function<void(ColourFormat)> setFormat;
    std::function<void()> edit;
  };

  ColourPanelView(const PanelAppearance& appearance, Source source);
  void refresh() override;
  /// The colour shown large: the one chosen last, else the newest; none in an empty history.
  const PickedColour* chosen() const;

private:
  void makeChosenRow();
  void makeFormatRow();
  void choose(int index);
  void copyChosen(ColourFormat format);
  void showNotations();

  Source source_;
  std::optional<UUID> chosen_;
  bool hasCopied_ = false;
  PanelEmptyState* empty_;
  PanelText* trouble_;
  QWidget* filled_;
  ViewWidget* card_ = nullptr;
  PanelGrid* swatches_ = nullptr;
  PanelButton* pin_ = nullptr;
  PanelButton* copyAs_ = nullptr;
  PanelButton* clear_ = nullptr;
  QComboBox* format_ = nullptr;
};

} // namespace tavrin

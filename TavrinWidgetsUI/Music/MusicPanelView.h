#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Music/MusicModel.h"

class QComboBox;
class QSlider;

namespace tavrin {

class PanelEmptyState;
class ViewWidget;

/// The track, how far it is, and the player's controls.
class MusicPanelView : public PanelView {
public:
  struct Requests {
    /// A player's name; no value for the one last used.
    std::function<void(const std::optional<std::string>&)> choose;
    std::function<void()> edit;
  };
  MusicPanelView(const PanelAppearance& appearance, MusicModel& model, Requests requests);
  void refresh() override;

private:
  void makePosition();
  void makeControls();
  void makeVolume();
  void makeChoice();
  void showTrack(const MediaPlayer& player);
  void showPosition(const MediaPlayer& player);
  void showChoice();

  MusicModel& model_;
  Requests requests_;
  PanelEmptyState* empty_;
  QWidget* filled_;
  ViewWidget* cover_;
  PanelText* track_;
  PanelText* artist_;
  QSlider* position_ = nullptr;
  QWidget* positionRow_ = nullptr;
  PanelText* elapsed_ = nullptr;
  PanelText* left_ = nullptr;
  PanelButton* previous_ = nullptr;
  PanelButton* play_ = nullptr;
  PanelButton* next_ = nullptr;
  QWidget* volumeRow_ = nullptr;
  QSlider* volume_ = nullptr;
  QComboBox* choice_ = nullptr;
  QWidget* choiceRow_ = nullptr;
};

} // namespace tavrin

#pragma once

#include "TavrinSettings/Base/LiveTiles.h"
#include "TavrinSettings/Base/TileDrag.h"
#include "TavrinSettings/Base/TileStage.h"
#include "TavrinSettings/Editing/WidgetsEditor.h"
#include "TavrinSettings/Form/FormServices.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPalette.h"

#include <QString>
#include <functional>

namespace tavrin {

/// What every page of the window stands on. All of it outlives the pages.
struct PageServices {
  WidgetsEditor& editor;
  History& history;
  TileStage& stage;
  LiveTiles& live;
  TileDrag& drag;
  const FormServices& forms;
  PanelAppearance& appearance;
  /// Says something at the window's foot; a trouble stands out.
  std::function<void(const QString& sentence, bool isTrouble)> tell;
  /// Says what was just done, and offers to take it back.
  std::function<void(const QString& sentence)> offerUndo;
  /// Says what goes on, until something else is said.
  std::function<void(const QString& sentence)> tellProgress;

  /// Runs `work`, and says what it throws. Whether it threw nothing.
  template <class Work> bool attempt(const Work& work) const {
    try {
      work();
      return true;
    } catch (const std::exception& error) {
      tell(QString::fromUtf8(error.what()) + QLatin1Char('.'), true);
      return false;
    }
  }
};

} // namespace tavrin

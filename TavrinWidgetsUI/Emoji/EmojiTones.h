#pragma once

#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"

#include <array>

class QRadioButton;

namespace tavrin {

/// The choice of a skin tone: a group of radio buttons, one Tab stop, the arrow keys choose.
class EmojiTones : public PanelField {
public:
  explicit EmojiTones(std::function<void(EmojiSkinTone)> onChoose);

  /// Does not call `onChoose`.
  void setTone(EmojiSkinTone tone);
  EmojiSkinTone tone() const;

private:
  explicit EmojiTones(std::function<void(EmojiSkinTone)> onChoose, QWidget* row);

  std::array<QRadioButton*, allCases<EmojiSkinTone>().size()> tones_{};
};

} // namespace tavrin

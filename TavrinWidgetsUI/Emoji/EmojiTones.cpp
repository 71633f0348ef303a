#include "TavrinWidgetsUI/Emoji/EmojiTones.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QHBoxLayout>
#include <QRadioButton>
#include <QSignalBlocker>

namespace tavrin {
namespace {

constexpr int toneSide = 24;
constexpr double checkSide = 14;

struct Tone {
  const char* name;
  QColor colour;
};
constexpr std::array<Tone, allCases<EmojiSkinTone>().size()> tones{
    {{marked("Standard"), QColor(0xFF, 0xCC, 0x22)},
     {marked("Light"), QColor(0xF7, 0xDE, 0xCE)},
     {marked("Medium light"), QColor(0xF3, 0xD2, 0xA2)},
     {marked("Medium"), QColor(0xD5, 0xAB, 0x88)},
     {marked("Medium dark"), QColor(0xAF, 0x7E, 0x57)},
     {marked("Dark"), QColor(0x7C, 0x53, 0x3E)}}};

/// A square of the tone, with a check when it is the chosen one.
class ToneButton : public QRadioButton {
public:
  ToneButton(const Tone& tone, QWidget* parent) : QRadioButton(parent), colour_(tone.colour) {
    setAccessibleName(worded(tone.name));
    setPlainToolTip(this, worded(tone.name));
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  }
  QSize sizeHint() const override { return {toneSide, toneSide}; }
  QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  bool hitButton(const QPoint& position) const override { return rect().contains(position); }
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    const PanelPalette p = PanelPalette::from(palette());
    const QColor fill = isDown()       ? mix(colour_, p.text, 0.25)
                        : underMouse() ? mix(colour_, p.text, 0.10)
                                       : colour_;
    panelPaint::rounded(painter, rect(), panel::cornerRadius, fill, mix(fill, p.text, 0.2));
    if (isChecked())
      panelPaint::symbol(painter, QStringLiteral("checkmark"), rect(), checkSide,
                         contrast(palette::white, fill) >= 3 ? palette::white : palette::black);
  }

private:
  QColor colour_;
};

} // namespace

EmojiTones::EmojiTones(std::function<void(EmojiSkinTone)> onChoose)
    : EmojiTones(std::move(onChoose), new QWidget) {}

EmojiTones::EmojiTones(std::function<void(EmojiSkinTone)> onChoose, QWidget* row)
    : PanelField(worded("Skin tone"), row) {
  setAccessibleName(worded("Skin tone"));
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(panel::grid / 2);
  for (std::size_t i = 0; i < tones.size(); ++i) {
    tones_[i] = new ToneButton(tones[i], row);
    layout->addWidget(tones_[i]);
    // Assistive technology toggles without a click.
    connect(tones_[i], &QRadioButton::toggled, this, [this, onChoose, i](bool on) {
      if (!on)
        return;
      leadTabToChosen(tones_);
      onChoose(allCases<EmojiSkinTone>()[i]);
    });
  }
}

void EmojiTones::setTone(EmojiSkinTone tone) {
  auto* button = tones_[static_cast<std::size_t>(tone)];
  if (button->isChecked())
    return;
  const QSignalBlocker silence(button);
  button->setChecked(true);
  leadTabToChosen(tones_);
}

EmojiSkinTone EmojiTones::tone() const {
  for (std::size_t i = 0; i < tones_.size(); ++i)
    if (tones_[i]->isChecked())
      return allCases<EmojiSkinTone>()[i];
  return EmojiSkinTone::standard;
}

} // namespace tavrin

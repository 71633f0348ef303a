#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"

#include "TavrinWidgetsUI/Kit/Panels/PanelFont.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"

#include <QFontMetricsF>
#include <QHBoxLayout>
#include <QRadioButton>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

namespace tavrin {

namespace {

class Segment : public QRadioButton {
public:
  using QRadioButton::QRadioButton;
  /// As much as its words need, so that those with room to spare give way first.
  QSize minimumSizeHint() const override {
    const double words = QFontMetricsF(font()).horizontalAdvance(text()) * panelPaint::leastFit;
    return {std::max(32, int(std::ceil(words)) + 2 * panelPaint::segmentInset),
            sizeHint().height()};
  }
};

} // namespace

void leadTabToChosen(std::span<QRadioButton* const> group) {
  if (std::ranges::any_of(group, &QWidget::hasFocus))
    return;
  const bool hasChosen = std::ranges::any_of(group, &QAbstractButton::isChecked);
  for (QRadioButton* button : group)
    button->setFocusPolicy(!hasChosen || button->isChecked() ? Qt::TabFocus : Qt::NoFocus);
}

PanelSegments::PanelSegments(const QString& name, const QStringList& titles, QWidget* parent)
    : QWidget(parent) {
  setAccessibleName(name);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(2, 2, 2, 2);
  row->setSpacing(2);
  setTitles(titles);
}

int PanelSegments::current() const {
  for (std::size_t i = 0; i < segments_.size(); ++i)
    if (segments_[i]->isChecked())
      return static_cast<int>(i);
  return -1;
}

void PanelSegments::setCurrent(int index) {
  if (index == current())
    return;
  if (index >= 0 && index < count()) {
    const QSignalBlocker silence(segments_[static_cast<std::size_t>(index)]);
    segments_[static_cast<std::size_t>(index)]->setChecked(true);
    leadTabToChosen(segments_);
    return;
  }
  // An exclusive button cannot be let go but while it is not exclusive.
  for (QRadioButton* segment : segments_) {
    segment->setAutoExclusive(false);
    segment->setChecked(false);
  }
  for (QRadioButton* segment : segments_)
    segment->setAutoExclusive(true);
  leadTabToChosen(segments_);
}

void PanelSegments::setTitles(const QStringList& titles) {
  QStringList now;
  for (const QRadioButton* segment : segments_)
    now.append(segment->accessibleName());
  if (now == titles)
    return;
  const int chosen = current();
  for (QRadioButton* segment : segments_)
    delete segment;
  segments_.clear();
  QFont font = panelFont(PanelTextStyle::body);
  font.setWeight(QFont::DemiBold);
  for (const QString& title : titles) {
    auto* segment = new Segment(title, this);
    segment->setAccessibleName(title);
    segment->setFont(font);
    segment->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    segment->setFocusPolicy(Qt::TabFocus);
    layout()->addWidget(segment);
    const int index = count();
    segments_.push_back(segment);
    // Assistive technology toggles without a click.
    connect(segment, &QRadioButton::toggled, this, [this, index](bool on) {
      if (on)
        leadTabToChosen(segments_);
      if (on && onChange)
        onChange(index);
    });
  }
  setCurrent(chosen);
}

void PanelSegments::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  panelPaint::rounded(painter, rect(), panel::cornerRadius + 1,
                      PanelPalette::from(palette()).control);
}

} // namespace tavrin

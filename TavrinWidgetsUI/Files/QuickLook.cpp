#include "TavrinWidgetsUI/Files/QuickLook.h"

#include "TavrinCore/Kinds/Files/FileKind.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinPlatform/Files/FileBeginning.h"
#include "TavrinWidgetsUI/Files/FileWords.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Pictures/Thumbnail.h"
#include "TavrinWidgetsUI/Kit/Views/PlainWords.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

namespace tavrin {

namespace {

constexpr int contentHeight = 300;
constexpr std::size_t longestText = 16 * 1024;

} // namespace

QuickLook::QuickLook(RunLoop& runLoop, int width, QWidget* parent)
    : QWidget(parent), runLoop_(runLoop), width_(width),
      title_(new PanelText({}, PanelTextStyle::body)), picture_(new QLabel),
      text_(new PanelTextEdit(worded("Beginning of the file"), {})),
      nothing_(new PanelEmptyState({}, {})) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(8);
  auto* row = new QHBoxLayout;
  row->setSpacing(4);
  row->addWidget(PanelButton::icon(isRightToLeft() ? "chevron.right" : "chevron.left",
                                   worded("Back"), [this] { onBack(); }));
  title_->setSingleLine(true, Qt::ElideMiddle);
  row->addWidget(title_, 1);
  row->addWidget(PanelButton::icon("arrow.up.right", worded("Open"), [this] { onOpen(file_); }));
  column->addLayout(row);
  picture_->setAlignment(Qt::AlignCenter);
  picture_->setMinimumSize(1, 1);
  text_->setReadOnly(true);
  text_->installEventFilter(this);
  for (QWidget* each : {static_cast<QWidget*>(picture_), static_cast<QWidget*>(text_),
                        static_cast<QWidget*>(nothing_)})
    column->addWidget(each, 1);
  setFocusPolicy(Qt::StrongFocus);
}

QSize QuickLook::sizeHint() const {
  return {width_, contentHeight};
}

QuickLook::Contents QuickLook::read(const std::filesystem::path& file, int pixels) {
  Contents contents;
  contents.picture = fileThumbnail(file, pixels);
  if (!contents.picture.isNull())
    return contents;
  if (const auto bytes = readBeginning(file, longestText + 1)) {
    const bool isCut = bytes->size() > longestText;
    if (const auto text = textPreview(std::string_view(*bytes).substr(0, longestText), isCut))
      contents.text = QString::fromStdString(*text) + (isCut ? QStringLiteral("…") : QString());
  }
  return contents;
}

void QuickLook::lookAt(const std::filesystem::path& file) {
  file_ = file;
  title_->setWords(fileTitle(file));
  nothing_->setSentence("eye", worded("Reading"));
  picture_->hide();
  text_->hide();
  nothing_->show();
  setFocus();
  reading_.renew();
  const auto contents = std::make_shared<Contents>();
  const int pixels = static_cast<int>(std::max(width_, contentHeight) * devicePixelRatioF());
  runLoop_.background([file, pixels, contents] { *contents = read(file, pixels); }, reading_,
                      [this, contents] { showContents(*contents); });
}

void QuickLook::showContents(const Contents& contents) {
  picture_->setVisible(!contents.picture.isNull());
  text_->setVisible(contents.text.has_value());
  nothing_->setVisible(contents.picture.isNull() && !contents.text);
  if (!contents.picture.isNull()) {
    QPixmap pixmap = QPixmap::fromImage(contents.picture);
    pixmap.setDevicePixelRatio(devicePixelRatioF());
    const QSizeF room(width_, contentHeight - 40);
    const QSizeF shown = pixmap.deviceIndependentSize();
    if (shown.height() > room.height() || shown.width() > room.width())
      pixmap.setDevicePixelRatio(devicePixelRatioF() * std::max(shown.height() / room.height(),
                                                                shown.width() / room.width()));
    picture_->setPixmap(pixmap);
    picture_->setAccessibleName(plainWords(fileTitle(file_)));
  } else if (contents.text) {
    text_->setText(*contents.text);
    text_->setFocus();
  } else {
    nothing_->setSentence("eye", worded("There is no quick look for this file"));
  }
}

void QuickLook::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
  case Qt::Key_Space:
  case Qt::Key_Backspace:
  case Qt::Key_Left:
    onBack();
    return;
  case Qt::Key_Return:
  case Qt::Key_Enter:
    onOpen(file_);
    return;
  default:
    QWidget::keyPressEvent(event);
  }
}

bool QuickLook::eventFilter(QObject* watched, QEvent* event) {
  if (watched != text_ || event->type() != QEvent::KeyPress)
    return QWidget::eventFilter(watched, event);
  auto* key = static_cast<QKeyEvent*>(event);
  const bool isOurs = key->key() == Qt::Key_Space || key->key() == Qt::Key_Backspace ||
                      key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
  if (isOurs)
    keyPressEvent(key);
  return isOurs;
}

} // namespace tavrin

#include "TavrinSettings/Window/SettingsWindow.h"

#include "TavrinSettings/Base/FootLine.h"
#include "TavrinSettings/Form/TabOrder.h"
#include "TavrinSettings/Form/TypedLine.h"
#include "TavrinSettings/Window/WidgetsPage.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelAccessible.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFocus.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelToolTip.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <QWindow>
#include <utility>

namespace tavrin {
namespace {

/// Among the segments of the pages.
constexpr int dockPage = 1;
constexpr int computerPage = 2;

/// A frame, not a filler, that can be closed.
class AccessibleWindow final : public QAccessibleWidget {
public:
  explicit AccessibleWindow(QWidget* window) : QAccessibleWidget(window, QAccessible::Window) {}

  static QAccessibleInterface* make(const QString&, QObject* object) {
    auto* window = dynamic_cast<SettingsWindow*>(object);
    return window == nullptr ? nullptr : new AccessibleWindow(window);
  }

  QStringList actionNames() const override { return {closeName}; }
  QString localizedActionName(const QString& name) const override {
    return name == closeName ? worded("Close") : QAccessibleWidget::localizedActionName(name);
  }
  void doAction(const QString& name) override {
    // Not from within what asks for it: with the window all of this goes.
    if (name == closeName)
      QMetaObject::invokeMethod(widget(), &QWidget::close, Qt::QueuedConnection);
  }

private:
  inline static const QString closeName = QStringLiteral("close");
};

constexpr QSize usualSize(920, 720);
constexpr QSize leastSize(640, 480);
/// What a title bar and borders take, where the desktop draws them.
constexpr QSize framing(16, 48);

} // namespace

SettingsWindow::SettingsWindow(History& history, const PanelAppearance& appearance)
    : history_(history), appearance_(appearance), drag_(this) {
  PanelStyle::install();
  installPanelAccessibility();
  QAccessible::removeFactory(AccessibleWindow::make);
  QAccessible::installFactory(AccessibleWindow::make);
  setWindowTitle(QStringLiteral("Tavrin"));
  setAutoFillBackground(true);
  resize(usualSize);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(panel::padding, panel::padding, panel::padding, panel::grid);
  column->setSpacing(panel::grid + 4);
  column->addWidget(makeTop());
  stack_ = new QStackedWidget(this);
  column->addWidget(stack_, 1);
  foot_ = new FootLine([this] { step(true); }, this);
  column->addWidget(foot_);
  new PanelFocus(this);
  history_.onChange = [this] {
    refreshHistory();
    foot_->withdraw();
  };
  setAppearance(appearance);
  refreshHistory();
  fitScreen();
}

QWidget* SettingsWindow::makeTop() {
  auto* top = new QWidget(this);
  auto* row = new QHBoxLayout(top);
  row->setContentsMargins(0, 0, 0, 0);
  undo_ = PanelButton::icon(
      QStringLiteral("arrow.uturn.backward"), worded("Undo"), [this] { step(true); }, top);
  redo_ = PanelButton::icon(
      QStringLiteral("arrow.uturn.forward"), worded("Redo"), [this] { step(false); }, top);
  pages_ = new PanelSegments(worded("Page"), {worded("Widgets")}, top);
  pages_->onChange = [this](int page) { showPage(page); };
  pages_->setCurrent(0);
  row->addWidget(undo_);
  row->addWidget(redo_);
  row->addStretch(1);
  row->addWidget(pages_);
  row->addStretch(1);
  // As wide as what stands at the left, so that the pages are in the middle.
  row->addSpacing(undo_->sizeHint().width() + redo_->sizeHint().width() + panel::grid);
  const auto shortcut = [this](QKeySequence::StandardKey key, bool isBack) {
    for (const auto& keys : QKeySequence::keyBindings(key))
      QObject::connect(new QShortcut(keys, this), &QShortcut::activated, this,
                       [this, isBack] { step(isBack); });
  };
  shortcut(QKeySequence::Undo, true);
  shortcut(QKeySequence::Redo, false);
  QObject::connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
    showPage(0);
    if (widgets_ != nullptr)
      widgets_->focusSearch();
  });
  for (const auto key : {QKeySequence::Close, QKeySequence::Quit})
    QObject::connect(new QShortcut(key, this), &QShortcut::activated, this, [this] { close(); });
  return top;
}

void SettingsWindow::setUp(WidgetsEditor& editor, TileStage& stage, LiveTiles& live,
                           const FormServices& forms, Makers makers) {
  makers_ = std::move(makers);
  services_.emplace(
      PageServices{editor, history_, stage, live, drag_, forms, appearance_,
                   [this](const QString& sentence, bool isTrouble) { tell(sentence, isTrouble); },
                   [this](const QString& sentence) { foot_->offerUndo(sentence); },
                   [this](const QString& sentence) { foot_->sayProgress(sentence); }});
  delete std::exchange(trouble_, nullptr);
  widgets_ = new WidgetsPage(*services_, stack_);
  stack_->addWidget(widgets_);
  pages_->setTitles({worded("Widgets"), worded("Dock Layouts"), worded("This Computer")});
  pages_->setCurrent(0);
  refresh();
  orderTabs();
  widgets_->focusSearch();
}

/// What is made later comes last otherwise: the choice of pages behind the first page, and every
/// page behind the foot.
void SettingsWindow::orderTabs() {
  followInTabOrder(*redo_, *pages_);
  QWidget* last = undo_->previousInFocusChain();
  while (last->focusPolicy() == Qt::NoFocus || foot_->isAncestorOf(last))
    last = last->previousInFocusChain();
  followInTabOrder(*last, *foot_);
}

void SettingsWindow::showTrouble(const QString& sentence, std::function<void()> tryAgain) {
  if (trouble_ == nullptr) {
    trouble_ = new PanelEmptyState(QStringLiteral("exclamationmark.triangle.fill"), {}, stack_);
    trouble_->setTrouble(true);
    stack_->addWidget(trouble_);
  }
  trouble_->setSentence(QStringLiteral("exclamationmark.triangle.fill"), sentence);
  // The button must not go while it is being pressed.
  trouble_->setStep(worded("Try Again"), [this, tryAgain = std::move(tryAgain)] {
    QMetaObject::invokeMethod(this, tryAgain, Qt::QueuedConnection);
  });
}

void SettingsWindow::refresh() {
  if (widgets_ != nullptr)
    widgets_->refresh();
}

void SettingsWindow::setAppearance(const PanelAppearance& appearance) {
  appearance_ = appearance;
  setPalette(PanelPalette::make(appearance).palette());
  PanelStyle::dressToolTips(appearance);
  setFont(panelFont(PanelTextStyle::body));
  if (widgets_ != nullptr)
    widgets_->setAppearance();
  update();
}

void SettingsWindow::open(const UUID& id) {
  showPage(0);
  if (widgets_ != nullptr && !widgets_->enter(id))
    tell(worded("This widget is not one of yours."), true);
}

void SettingsWindow::tell(const QString& sentence, bool isTrouble) {
  foot_->say(sentence, isTrouble);
}

void SettingsWindow::refreshPictures() {
  if (widgets_ != nullptr)
    widgets_->refreshTiles();
  if (dock_ != nullptr)
    for (auto* child : dock_->findChildren<QWidget*>())
      child->update();
}

void SettingsWindow::showPage(int page) {
  pages_->setCurrent(page);
  if (!services_)
    return;
  const auto made = [&](QWidget*& kept, const Maker& maker) {
    if (kept == nullptr)
      services_->attempt([&] {
        stack_->addWidget(kept = maker(*services_, stack_));
        orderTabs();
      });
    return kept;
  };
  QWidget* shown = page == dockPage       ? made(dock_, makers_.dockPage)
                   : page == computerPage ? made(computer_, makers_.computerPage)
                                          : widgets_;
  if (shown != nullptr)
    stack_->setCurrentWidget(shown);
}

/// Takes what is half typed, wherever it is.
void SettingsWindow::commit() {
  if (auto* line = dynamic_cast<TypedLine*>(focusWidget()))
    line->take();
  if (widgets_ != nullptr)
    widgets_->commit();
}

void SettingsWindow::step(bool isBack) {
  if (!services_)
    return;
  commit();
  const auto title = QString::fromStdString(isBack ? history_.undoTitle() : history_.redoTitle());
  if (title.isEmpty())
    return;
  const bool tellsItself = isBack ? history_.undoTellsItself() : history_.redoTellsItself();
  services_->attempt([&] {
    const auto remarks = isBack ? history_.undo() : history_.redo();
    if (tellsItself && remarks.empty())
      return;
    QString said = isBack ? worded("Undone: {step}.", {{"step", title}})
                          : worded("Done again: {step}.", {{"step", title}});
    for (const auto& remark : remarks)
      said += QLatin1Char(' ') + QString::fromStdString(remark) + QLatin1Char('.');
    tell(said, !remarks.empty());
  });
}

void SettingsWindow::refreshHistory() {
  const auto show = [](PanelButton* button, const QString& name, const std::string& title) {
    button->setAccessibleName(name);
    setPlainToolTip(button, name);
    button->setEnabled(!title.empty());
  };
  const auto undo = history_.undoTitle();
  const auto redo = history_.redoTitle();
  show(undo_, undo.empty() ? worded("Undo") : worded("Undo {step}", {{"step", undo}}), undo);
  show(redo_, redo.empty() ? worded("Redo") : worded("Redo {step}", {{"step", redo}}), redo);
}

void SettingsWindow::keyPressEvent(QKeyEvent* event) {
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  auto* button = qobject_cast<QPushButton*>(focusWidget());
  if (isReturn && button != nullptr && (event->modifiers() & ~Qt::KeypadModifier) == 0 &&
      !event->isAutoRepeat())
    button->click();
  else
    QWidget::keyPressEvent(event);
}

void SettingsWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (isFollowingScreen_ || windowHandle() == nullptr)
    return;
  isFollowingScreen_ = true;
  QObject::connect(windowHandle(), &QWindow::screenChanged, this, [this] { followScreen(); });
  followScreen();
}

/// A screen of another size or scale has another room for it.
void SettingsWindow::followScreen() {
  for (const auto& connection : std::exchange(screen_, {}))
    QObject::disconnect(connection);
  const auto fits = [this] { fitScreen(); };
  screen_ = {QObject::connect(screen(), &QScreen::availableGeometryChanged, this, fits),
             QObject::connect(screen(), &QScreen::logicalDotsPerInchChanged, this, fits)};
  fitScreen();
}

void SettingsWindow::fitScreen() {
  const QSize room = screen()->availableSize() - framing;
  setMinimumSize(leastSize.boundedTo(room));
  if (!isMaximized() && !isFullScreen())
    resize(size().boundedTo(room));
}

void SettingsWindow::closeEvent(QCloseEvent* event) {
  drag_.cancel();
  commit();
  event->accept();
  if (onClose)
    onClose();
}

} // namespace tavrin

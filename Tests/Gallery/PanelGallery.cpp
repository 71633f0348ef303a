// Paints every control of the panels in every state to PNG files, for eyes to judge:
//   PanelGallery FOLDER            (QT_SCALE_FACTOR=2 for two pixels a point)
// and with --time it measures what opening a typical panel costs instead.

#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelControls.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFigure.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelGrid.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Kit/Views/View.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHBoxLayout>
#include <QPainter>
#include <QSlider>
#include <cstdio>
#include <ctime>

using namespace tavrin;

namespace {

enum class Pose { rest, hover, pressed, focus, disabled };

void pose(QWidget* widget, Pose pose) {
  widget->setAttribute(Qt::WA_UnderMouse, pose == Pose::hover || pose == Pose::pressed);
  if (auto* button = qobject_cast<QAbstractButton*>(widget))
    button->setDown(pose == Pose::pressed);
  widget->setEnabled(pose != Pose::disabled);
}

PanelView* buttonsPanel(const PanelAppearance& look, Pose as) {
  auto* panel = new PanelView(look);
  panel->setTitle("Buttons");
  panel->setState(as == Pose::rest      ? "Rest"
                  : as == Pose::hover   ? "Hover"
                  : as == Pose::pressed ? "Pressed"
                  : as == Pose::focus   ? "Focus"
                                        : "Disabled");
  auto* prominent = new PanelButton(PanelButton::Kind::prominent, "Start");
  auto* quiet = new PanelButton(PanelButton::Kind::quiet, "Skip");
  auto* marked = new PanelButton(PanelButton::Kind::quiet, "Reset");
  marked->setSymbol("arrow.counterclockwise");
  auto* icon = PanelButton::icon("pin", "Pin");
  auto* plain = new PanelButton(PanelButton::Kind::plain, "Show all laps");
  auto* on = new PanelSwitch("Sound at the end");
  on->setOn(true);
  auto* off = new PanelSwitch("Start breaks by themselves");
  auto* check = new QCheckBox("Count weekends");
  check->setChecked(true);
  auto* segments = new PanelSegments("Mode", {"Timer", "Stopwatch"});
  segments->setCurrent(0);
  auto* stepper = new PanelStepper("Length", "%lld min", 1, 600);
  stepper->setNumber(25);
  auto* combo = new QComboBox;
  combo->addItems({"Celsius", "Fahrenheit"});
  auto* slider = new QSlider(Qt::Horizontal);
  slider->setValue(40);
  auto* search = new PanelSearchField("Search for a city");
  auto* filled = new PanelSearchField("Search");
  filled->setText("Hamburg");
  auto* yellow = new PanelSwatch(QColor("#FBBF24"), "Yellow");
  yellow->setChosen(true);
  auto* blue = new PanelSwatch(QColor("#0A84FF"), "Blue");
  panel->addRow({prominent, quiet});
  panel->addRow({marked, icon, plain}, false);
  panel->add(on);
  panel->add(off);
  panel->add(check);
  panel->add(segments);
  panel->add(new PanelField("Custom length", stepper));
  panel->add(new PanelField("Temperature", combo));
  panel->add(slider);
  panel->add(search);
  panel->add(filled);
  panel->addRow({yellow, blue}, false);
  panel->setEditButton("Edit Gallery…", [] {});
  for (QWidget* child : panel->findChildren<QWidget*>())
    if (!dynamic_cast<PanelText*>(child) && !dynamic_cast<PanelField*>(child) &&
        !dynamic_cast<PanelSegments*>(child) && child->metaObject() != &QWidget::staticMetaObject)
      pose(child, as);
  return panel;
}

AnyView ring(double share, const PanelPalette& colours, PanelFigure*) {
  return zstack({symbol("timer").size(28).colour(mix(colours.accent, colours.ground, 1 - share))});
}

PanelView* timerPanel(const PanelAppearance& look) {
  auto* panel = new PanelView(look);
  panel->setTitle("A focus timer with a name much longer than the panel is wide");
  panel->setState("Paused");
  auto* mode = new PanelSegments("Mode", {"Timer", "Stopwatch"});
  mode->setCurrent(0);
  panel->add(mode);
  auto* mark = new ViewWidget(QSizeF(28, 28));
  mark->setView(ring(1, panel->colours(), nullptr));
  panel->add(mark, Qt::AlignHCenter);
  auto* figure = new PanelFigure(48, "88:88");
  figure->setText("24:07");
  panel->add(figure, Qt::AlignHCenter);
  auto* caption = new PanelText("12 sessions today", PanelTextStyle::secondary);
  caption->setAlignment(Qt::AlignHCenter);
  panel->add(caption);
  panel->addRow({new PanelButton(PanelButton::Kind::quiet, "5m"),
                 new PanelButton(PanelButton::Kind::quiet, "10m"),
                 new PanelButton(PanelButton::Kind::quiet, "25m"),
                 new PanelButton(PanelButton::Kind::quiet, "60m")});
  auto* length = new PanelStepper("Custom length", "%lld min", 1, 600);
  length->setNumber(25);
  panel->add(new PanelField("Custom", length));
  panel->addSpace(4);
  panel->addRow({new PanelButton(PanelButton::Kind::prominent, "Resume"),
                 new PanelButton(PanelButton::Kind::quiet, "Reset")});
  panel->setEditButton("Edit Timer…", [] {});
  return panel;
}

PanelView* listPanel(const PanelAppearance& look, int count) {
  auto* panel = new PanelView(look, PanelView::Width::lists);
  panel->setTitle("Clipboard");
  panel->setState("3 new", PanelView::State::active);
  auto* search = new PanelSearchField("Search");
  auto* list = new PanelList("Copied items");
  std::vector<PanelRow> rows;
  for (int i = 0; i < count; ++i) {
    PanelRow row;
    row.id = QString::number(i);
    row.title = i % 3 == 0 ? "A copied text that is much longer than any row could be wide"
                           : "Copied text " + QString::number(i + 1);
    row.subtitle = "Today at 14:0" + QString::number(i % 10);
    row.symbol = i % 3 ? "doc.on.doc" : "link";
    row.actions = {{"doc.on.doc", "Copy"}, {"trash", "Remove"}, {"pin", "Pin", i == 1}};
    row.isChecked = i == 2;
    row.isEnabled = i != 4;
    rows.push_back(row);
  }
  list->setRows(rows);
  list->onOpen = [](int) {};
  panel->add(search);
  panel->add(list);
  panel->setEditButton("Edit Clipboard…", [] {});
  panel->addFooterButton(PanelButton::icon("trash", "Removes everything that is not pinned"));
  return panel;
}

PanelView* readingsPanel(const PanelAppearance& look) {
  auto* panel = new PanelView(look);
  panel->setTitle("Activity");
  auto* list = new PanelList("Readings");
  std::vector<PanelRow> rows(4);
  rows[0] = {.title = "Processor", .trailing = "34", .unit = "%", .symbol = "cpu"};
  rows[1] = {.title = "Memory in use", .trailing = "11.8", .unit = "GB", .symbol = "memorychip"};
  rows[2] = {.title = "Work", .trailing = "3", .dot = QColor("#FF453A")};
  rows[3] = {.title = "Water the plants", .symbol = "circle", .isDone = true};
  list->setRows(rows);
  list->setReadOnly(true);
  panel->add(new PanelText("This week", PanelTextStyle::section));
  panel->add(list);
  panel->add(new PanelText("Read from the computer's own counters. Nothing is sent anywhere.",
                           PanelTextStyle::caption));
  panel->add(new PanelText("Could not reach the forecast just now.", PanelTextStyle::trouble));
  auto* note = new PanelTextEdit("Note", "Click to write a note");
  note->setPaper(QColor("#FBBF24"));
  note->setText("Milk, bread, apples\nCall the dentist on Tuesday");
  note->setLines(4);
  panel->add(note);
  panel->setEditButton("Edit Activity…", [] {});
  return panel;
}

PanelView* gridPanel(const PanelAppearance& look) {
  auto* panel = new PanelView(look, PanelView::Width::grids);
  panel->setTitle("Colours");
  auto* grid = new PanelGrid("Recent colours", 8);
  std::vector<PanelCell> cells;
  for (int i = 0; i < 30; ++i)
    cells.push_back({.name = QString::number(i),
                     .text = i < 10 ? QString(QChar(u'A' + char16_t(i))) : QString(),
                     .symbol = i >= 10 && i < 16 ? "star" : "",
                     .colour = i >= 16 ? QColor::fromHsv(i * 12, 180, 230) : QColor(),
                     .isChecked = i == 20});
  grid->setCells(cells);
  panel->add(grid);
  auto* empty = new PanelEmptyState("doc.on.clipboard", "Nothing copied yet");
  empty->setHint("Copy something on your Mac and it will show up here.");
  empty->setStep("Learn more", [] {});
  panel->add(empty);
  panel->setEditButton("Edit Colours…", [] {});
  return panel;
}

QPixmap picture(PanelView* panel, bool keyboard, int tabs = 0) {
  QWidget window;
  window.setPalette(panel->palette());
  auto* layout = new QHBoxLayout(&window);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(panel);
  window.show();
  window.resize(panel->fittingSize());
  window.activateWindow();
  QApplication::processEvents();
  for (int i = 0; keyboard && i <= tabs; ++i) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
    QWidget* target = window.focusWidget() ? window.focusWidget() : panel;
    QApplication::sendEvent(target, &press);
  }
  QApplication::processEvents();
  window.resize(panel->fittingSize());
  QApplication::processEvents();
  return window.grab();
}

void sheet(const QString& file, const std::vector<QPixmap>& pictures, const QColor& ground) {
  int width = 12;
  int height = 0;
  for (const QPixmap& picture : pictures) {
    width += int(picture.deviceIndependentSize().width()) + 12;
    height = std::max(height, int(picture.deviceIndependentSize().height()));
  }
  const double scale = pictures.front().devicePixelRatio();
  QImage image(QSize(int(width * scale), int((height + 24) * scale)),
               QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(ground);
  QPainter painter(&image);
  int x = 12;
  for (const QPixmap& picture : pictures) {
    painter.drawPixmap(x, 12, picture);
    x += int(picture.deviceIndependentSize().width()) + 12;
  }
  painter.end();
  image.save(file);
}

long privateDirty() {
  QFile file("/proc/self/smaps_rollup");
  if (!file.open(QIODevice::ReadOnly))
    return 0;
  for (const QByteArray& line : file.readAll().split('\n'))
    if (line.startsWith("Private_Dirty:"))
      return line.simplified().split(' ').value(1).toLong();
  return 0;
}

void showOnce(PanelView* panel, QWidget& window) {
  window.layout()->addWidget(panel);
  window.resize(panel->fittingSize());
  window.show();
  window.repaint();
}

int measure() {
  const PanelAppearance look{false, false, QColor("#FF453A")};
  std::printf("private dirty before the first panel %ld kB\n", privateDirty());
  QElapsedTimer clock;
  for (int round = 0; round < 4; ++round) {
    for (const bool list : {false, true}) {
      clock.start();
      const std::clock_t worked = std::clock();
      PanelView* panel = list ? listPanel(look, 5000) : timerPanel(look);
      const double built = double(clock.nsecsElapsed()) / 1e6;
      QWidget window;
      (new QHBoxLayout(&window))->setContentsMargins(0, 0, 0, 0);
      showOnce(panel, window);
      std::printf("%s, opening %d: built %.2f ms, shown and painted %.2f ms, processor %.2f ms\n",
                  list ? "list of 5,000" : "timer", round + 1, built,
                  double(clock.nsecsElapsed()) / 1e6,
                  double(std::clock() - worked) * 1e3 / CLOCKS_PER_SEC);
    }
  }
  for (int opening = 1; opening <= 1000; ++opening) {
    QWidget window;
    (new QHBoxLayout(&window))->setContentsMargins(0, 0, 0, 0);
    showOnce(timerPanel(look), window);
    QApplication::processEvents();
    if (opening == 10 || opening == 100 || opening == 1000)
      std::printf("private dirty after %d openings %ld kB\n", opening, privateDirty());
  }
  return 0;
}

} // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  const QStringList arguments = application.arguments();
  if (arguments.value(1) == "--time")
    return measure();
  if (arguments.size() != 2 || !QDir().mkpath(arguments[1])) {
    std::fprintf(stderr, "usage: PanelGallery FOLDER | --time\n");
    return 2;
  }
  const QDir folder(arguments[1]);
  const std::vector<std::pair<QString, QColor>> tints{
      {"red", "#FF453A"}, {"yellow", "#FBBF24"}, {"purple", "#4C1D95"}};
  for (const bool dark : {false, true}) {
    for (const auto& [name, tint] : tints) {
      const PanelAppearance look{dark, false, tint};
      const QString end = QString(dark ? "-dark-" : "-light-") + name + ".png";
      const QColor ground = dark ? QColor("#000000") : QColor("#C8CCD2");
      std::vector<QPixmap> poses;
      for (const Pose as : {Pose::rest, Pose::hover, Pose::pressed, Pose::focus, Pose::disabled})
        poses.push_back(picture(buttonsPanel(look, as), as == Pose::focus));
      sheet(folder.filePath("controls" + end), poses, ground);
      sheet(folder.filePath("panels" + end),
            {picture(timerPanel(look), false), picture(listPanel(look, 6), true, 1),
             picture(readingsPanel(look), false), picture(gridPanel(look), true)},
            ground);
      std::vector<QPixmap> focus;
      for (int tab = 1; tab < 6; ++tab)
        focus.push_back(picture(timerPanel(look), true, tab));
      sheet(folder.filePath("focus" + end), focus, ground);
    }
  }
  QApplication::setLayoutDirection(Qt::RightToLeft);
  const PanelAppearance look{false, false, QColor("#0A84FF")};
  sheet(folder.filePath("mirrored.png"),
        {picture(buttonsPanel(look, Pose::rest), false), picture(timerPanel(look), false),
         picture(listPanel(look, 40), true, 1)},
        QColor("#C8CCD2"));
  return 0;
}

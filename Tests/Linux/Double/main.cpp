#include "TavrinPlatform/ColourSampler.h"
#include "TavrinPlatform/DockTile.h"
#include "TavrinPlatform/InputBlocker.h"
#include "TavrinPlatform/PanelPopover.h"
#include "TavrinPlatform/Platform.h"
#include "TavrinPlatform/Workspace.h"

#include <QApplication>
#include <QComboBox>
#include <QDrag>
#include <QImage>
#include <QLineEdit>
#include <QMimeData>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string_view>
#include <utility>

/// A program with one tile and one panel that says on its standard output what happens to it.
/// Arguments: --place=BEFORE,SPAN,ALL  --open (the panel at start)  --attention (at start; with
/// =button at each click on the button, with =panel once the panel is open)  --no-files
/// --lock=all|keyboard,SECONDS (holds the input at start, and tells whether the screen is locked)
/// --parcel=FILE (in the panel, green, to be dragged)  --choice (a drop-down in the panel)  --grid
/// (a picture of columns one pixel wide)
/// --button (the left half of the tile is a button)  --notice=SECONDS  --observe=NAME  --tick
/// --pick (a colour of the screen, at start)  --front (tells the application in front as it
/// changes)
namespace {

using namespace tavrin;

/// Columns of one pixel each, red and blue by turns, as far as its points reach.
class PixelColumns final : public QWidget {
protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    const QTransform pixels = painter.deviceTransform();
    const QRect area = pixels.mapRect(QRectF(rect())).toRect();
    painter.setTransform(pixels.inverted());
    for (int x = area.left(); x <= area.right(); ++x)
      painter.fillRect(QRect(x, area.top(), 1, area.height()), x % 2 == 0 ? Qt::red : Qt::blue);
  }
};

template <class... Values> void say(const char* format, Values... values) {
  std::printf(format, values...);
  std::fputc('\n', stdout);
  std::fflush(stdout);
}

/// As lists in panels do, whose panels may go before a drag ends.
class Parcel final : public QWidget {
public:
  explicit Parcel(const std::string& file) : address_("file://" + file + "\r\n") {}

protected:
  void mousePressEvent(QMouseEvent*) override {}
  void mouseMoveEvent(QMouseEvent*) override {
    if (std::exchange(isDragged_, true))
      return;
    QTimer::singleShot(0, qApp, [this] {
      auto* drag = new QDrag(qApp);
      auto* content = new QMimeData;
      content->setData(QStringLiteral("text/uri-list"), QByteArray::fromStdString(address_));
      drag->setMimeData(content);
      say("dragged %d", static_cast<int>(drag->exec(Qt::CopyAction | Qt::LinkAction)));
      isDragged_ = false;
    });
  }
  void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Qt::green); }

private:
  const std::string address_;
  bool isDragged_ = false;
};

class Double {
public:
  explicit Double(Platform& platform) : platform_(platform), tile_(platform.dockTile()) {
    tile_.onFormatChange = [this] {
      const auto format = tile_.format();
      say("format %g %d %g", format.tileSize, format.span, format.scale);
      draw();
    };
    tile_.onVisibilityChange = [this] { say("visible %d", tile_.isVisible()); };
    tile_.onClick = [this](QPointF place) {
      say("click %g %g", place.x(), place.y());
      const bool isButton = hasButton_ && place.x() < tile_.format().tileSize / 2;
      if (isButton)
        attend("button");
      return isButton;
    };
    tile_.onHover = [this](QPointF place) {
      return hasButton_ && place.x() < tile_.format().tileSize / 2;
    };
    auto& application = platform_.application();
    application.onReopen = [this] { toggle(); };
    application.onResignActive = [] { say("resigned"); };
    application.takesFiles = [this] {
      say("asked");
      return takesFiles_;
    };
    application.onOpenFiles = [](const auto& files) {
      for (const auto& file : files)
        say("open %s", file.c_str());
      return !files.empty() && files.front().extension() != ".refused";
    };
    for (const auto& argument : application.arguments())
      obey(argument);
    tile_.setTitle("Double");
    tile_.setLabel("Double", "1");
    draw();
  }

private:
  void obey(std::string_view argument) {
    const auto equals = argument.find('=');
    const std::string value(equals == std::string_view::npos ? "" : argument.substr(equals + 1));
    const auto is = [&](std::string_view name) { return argument.substr(0, equals) == name; };
    if (is("--place")) {
      DockTile::Place place;
      std::sscanf(value.c_str(), "%d,%d,%d", &place.cellsBefore, &place.span, &place.cellsInAll);
      tile_.setPlace(place);
    } else if (is("--button")) {
      hasButton_ = true;
    } else if (is("--choice")) {
      hasChoice_ = true;
    } else if (is("--parcel")) {
      parcel_ = value;
    } else if (is("--grid")) {
      hasGrid_ = true;
    } else if (is("--open")) {
      first_ = platform_.runLoop().after(0, [this] { toggle(); });
    } else if (is("--attention")) {
      attention_ = value;
      attend("");
    } else if (is("--no-files")) {
      takesFiles_ = false;
    } else if (is("--notice")) {
      platform_.userNotifications().add({"double.notice", "Title", "Body", std::stod(value)});
    } else if (is("--observe")) {
      observation_ = platform_.notifications().observe(
          value, [](const auto& object) { say("posted %s", object ? object->c_str() : "(none)"); });
    } else if (is("--lock")) {
      lock(value.starts_with("all"), std::stod(value.substr(value.find(',') + 1)));
    } else if (is("--pick")) {
      pick_ = platform_.colourSampler().pick([](const ColourSample& sample) {
        say("picked %d %d %d %d", static_cast<int>(sample.outcome), sample.red, sample.green,
            sample.blue);
      });
    } else if (is("--front")) {
      look_ = platform_.runLoop().repeat(0.05, [this] {
        const auto application = platform_.workspace().frontmostApplication();
        const std::string name = application ? application->name : "nobody";
        if (std::exchange(front_, name) != name)
          say("front %s", name.c_str());
      });
    } else if (is("--tick")) {
      ticker_ = platform_.runLoop().repeat(0.25, [this] {
        if (++count_ % 4 == 0)
          draw();
      });
    }
  }

  void attend(std::string_view moment) {
    if (attention_ != moment)
      return;
    platform_.application().cancelUserAttention();
    platform_.application().requestUserAttention();
  }

  void lock(bool locksPointer, double longest) {
    auto& blocker = platform_.inputBlocker();
    if (!blocker.isPermitted())
      return say("hold not permitted");
    endOfNeed_ = blocker.observeEndOfNeed([this] {
      say("no need");
      hold_.reset();
    });
    hold_ = blocker.hold(locksPointer, longest,
                         {[](auto outcome) { say("hold %d", static_cast<int>(outcome)); },
                          [](int type) { say("input %d", type); },
                          [this] {
                            say("hold ended");
                            hold_.reset();
                          }});
    look_ = platform_.runLoop().repeat(0.05, [this] {
      const bool isLocked = platform_.inputBlocker().isScreenLocked();
      if (std::exchange(isScreenLocked_, isLocked) != isLocked)
        say("locked %d", isLocked);
    });
  }

  void draw() {
    const auto format = tile_.format();
    const double width = format.tileSize * (1 + (format.span - 1) * 1.0625);
    QImage image(QSize(static_cast<int>(std::lround(width * format.scale)),
                       static_cast<int>(std::lround(format.tileSize * format.scale))),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(format.scale);
    image.fill(Qt::transparent);
    if (hasGrid_) {
      for (int x = 0; x < image.width(); ++x)
        for (int y = 0; y < image.height(); ++y)
          image.setPixelColor(x, y, x % 2 == 0 ? Qt::red : Qt::blue);
      return tile_.display(image);
    }
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor(0xC0, 0x20, 0x60));
    painter.setPen(Qt::NoPen);
    const double margin = format.tileSize * 0.0975;
    const QRectF body(margin, margin, width - 2 * margin, format.tileSize - 2 * margin);
    painter.drawRoundedRect(body, 9, 9);
    painter.setPen(Qt::white);
    painter.drawText(body, Qt::AlignCenter, QString::number(count_ / 4));
    tile_.display(image);
  }

  void toggle() {
    auto& popover = platform_.popover();
    if (popover.isShown()) {
      popover.close();
      return;
    }
    if (popover.content() == nullptr) {
      auto* panel = new QWidget;
      auto* layout = new QVBoxLayout(panel);
      auto* edit = new QLineEdit;
      QObject::connect(edit, &QLineEdit::textChanged,
                       [](const QString& text) { say("text %s", qPrintable(text)); });
      layout->addWidget(edit);
      if (hasGrid_) {
        auto* columns = new PixelColumns;
        columns->setFixedSize(gridPoints, 20);
        layout->addWidget(columns);
      }
      if (!parcel_.empty()) {
        auto* parcel = new Parcel(parcel_);
        parcel->setFixedSize(gridPoints, 20);
        layout->addWidget(parcel);
      }
      if (hasChoice_) {
        auto* choice = new QComboBox;
        choice->addItems({"one", "two", "three"});
        QObject::connect(choice, &QComboBox::textActivated,
                         [](const QString& text) { say("chosen %s", qPrintable(text)); });
        layout->addWidget(choice);
      }
      popover.setContent(panel);
      popover.onClose = [] { say("closed"); };
    }
    popover.setContentSize(QSize(280, 120));
    const auto frame = platform_.dockGeometry().dockFrame();
    const auto pointer = platform_.dockGeometry().pointer();
    const Point anchor{pointer.x, frame ? frame->maxY() + 2 : pointer.y + 30};
    popover.show(anchor, RectEdge::maxY);
    attend("panel");
    say("opened %g %g", anchor.x, anchor.y);
  }

  static constexpr int gridPoints = 100;

  Platform& platform_;
  DockTile& tile_;
  TokenPtr first_;
  TokenPtr observation_;
  TokenPtr ticker_;
  TokenPtr endOfNeed_;
  TokenPtr hold_;
  TokenPtr look_;
  TokenPtr pick_;
  std::string front_;
  bool isScreenLocked_ = false;
  int count_ = 0;
  bool hasButton_ = false;
  bool takesFiles_ = true;
  std::optional<std::string> attention_;
  bool hasChoice_ = false;
  bool hasGrid_ = false;
  std::string parcel_;
};

} // namespace

int main(int argc, char** argv) {
  const auto platform = makePlatform(argc, argv);
  if (!platform)
    return 0;
  say("started");
  int status = 0;
  {
    const Double itself(*platform);
    status = runEventLoop(*platform);
  }
  say("ended");
  return status;
}

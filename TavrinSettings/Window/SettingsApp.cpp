#include "TavrinSettings/Window/SettingsApp.h"

#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinHost/Widgets/SlotControl.h"
#include "TavrinSettings/Computer/ComputerPage.h"
#include "TavrinSettings/Dock/DockPage.h"
#include "TavrinSettings/Window/SettingsWindow.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>
#include <QTimer>
#include <algorithm>

namespace tavrin {
namespace {

constexpr const char* iconName = "tavrin";
constexpr const char* iconPlace = "share/icons/hicolor/scalable/apps/tavrin.svg";

} // namespace

/// What the host's library says goes to the foot of the window.
class SettingsApp::Context final : public HostContext {
public:
  using HostContext::HostContext;
  void say(std::string_view line) override { tell(line, false); }
  void remark(std::string_view line) override { tell(line, true); }

  SettingsWindow* window = nullptr;

private:
  /// From any thread: a Dock is changed off the main one.
  void tell(std::string_view line, bool isTrouble) {
    if (window == nullptr)
      return;
    auto words = utf8(line);
    if (!words.endsWith(QLatin1Char('.')))
      words += QLatin1Char('.');
    // After what is said of the step that it belongs to.
    QMetaObject::invokeMethod(
        window, [shown = window, words, isTrouble] { shown->tell(words, isTrouble); },
        Qt::QueuedConnection);
  }
};

SettingsApp::SettingsApp(Platform& platform, CommandPlatform& host)
    : platform_(platform), context_(std::make_unique<Context>(host)),
      stage_(platform.runLoop(), platform.clock()),
      live_(platform.application(), platform.runLoop()), apps_(platform.applications()),
      forms_(platform, apps_) {
  // Which desktop entry the window belongs to.
  QGuiApplication::setDesktopFileName(QString::fromUtf8(
      DockSlot::hostIdentifier.data(), static_cast<qsizetype>(DockSlot::hostIdentifier.size())));
  PanelStyle::setMixesWindows([this] { return platform_.workspace().mixesWindows(); });
  window_ = std::make_unique<SettingsWindow>(history_, appearance());
  context_->window = window_.get();
  stage_.tiles().application = [this](const AppEntry& entry, int side) {
    auto app = apps_.app(entry, side, window_->devicePixelRatioF());
    return CollectionTileApp{QString::fromStdString(DockItem{entry}.displayName()),
                             std::move(app.icon), app.isGone};
  };
  appsChanged_ = apps_.observe([this] { window_->refreshPictures(); });
  window_->onClose = [this] {
    startSlots();
    platform_.application().terminate();
  };
  // Before the file is read: what is written after that is told.
  widgetsChanged_ = platform_.notifications().observe(
      std::string(DockSlot::widgetsChangedNotification), [this](const auto&) { reload(); });
  open();
  appearanceChanged_ =
      platform_.workspace().observeAppearance([this] { window_->setAppearance(appearance()); });
  // So that no editor in a terminal opens beside it; one that waits already goes on answering.
  answersEdits_ = host.applications().claimIdentifier(editorIdentifier(*context_));
  editRequested_ = platform_.notifications().observe(
      std::string(DockSlot::editWidgetNotification), [this](const auto& object) {
        const auto id = object ? UUID::parse(*object) : std::nullopt;
        // Others are of another data folder.
        if (answersEdits_ && id && editor_ && editor_->widget(*id) != nullptr)
          edit(*object);
      });
}

void SettingsApp::takeIcon(const std::string& icon) {
  // For a title bar, and for a task list or a switcher of windows.
  for (const int side : {32, 128})
    icons_.push_back(
        platform_.applications().icon(icon, side, 1, [this, icon](const QImage& image) {
          QIcon shown = window_->windowIcon();
          if (!image.isNull()) {
            shown.addPixmap(QPixmap::fromImage(image));
            window_->setWindowIcon(shown);
          } else if (shown.isNull() && icons_.size() == 2) {
            // Beside the program, where no theme of the desktop's leads to it.
            takeIcon(context_->platform().program().parent_path().parent_path() / iconPlace);
          }
        }));
}

SettingsApp::~SettingsApp() {
  PanelStyle::setMixesWindows(nullptr);
  context_->window = nullptr;
}

PanelAppearance SettingsApp::appearance() const {
  PanelAppearance look;
  look.dark = platform_.workspace().prefersDarkAppearance();
  look.reducedMotion = platform_.workspace().prefersReducedMotion();
  look.highContrast = platform_.workspace().prefersHighContrast();
  return look;
}

void SettingsApp::open() {
  try {
    editor_.emplace(*context_, history_);
  } catch (const std::exception& error) {
    window_->showTrouble(QString::fromUtf8(error.what()) + QLatin1Char('.'), [this] { open(); });
    return;
  }
  editor_->onChange = [this] { window_->refresh(); };
  // The new tile is to be seen, and to be what the next key acts on, before what takes its time.
  editor_->onNewSlots = [this](const std::set<int>& slots) {
    newSlots_.insert(slots.begin(), slots.end());
    QTimer::singleShot(0, window_.get(), [this] { startSlots(); });
  };
  window_->setUp(*editor_, stage_, live_, forms_.services(),
                 {.dockPage =
                      [this](PageServices& services, QWidget* parent) {
                        auto* page =
                            new DockPage(services, *context_, history_, platform_.runLoop(), apps_,
                                         platform_.folderWatch(), parent);
                        page->reload();
                        return page;
                      },
                  .computerPage =
                      [this](PageServices& services, QWidget* parent) {
                        auto* page = new ComputerPage(
                            services, [this] { return context_->platform().desktopReport(); },
                            context_->platform().autostart(), parent);
                        page->reload();
                        return page;
                      }});
}

void SettingsApp::reload() {
  if (!editor_)
    return open();
  try {
    editor_->reload();
  } catch (const std::exception& error) {
    window_->tell(QString::fromUtf8(error.what()) + QLatin1Char('.'), true);
  }
}

void SettingsApp::startSlots() {
  const auto slots = std::exchange(newSlots_, {});
  if (slots.empty())
    return;
  try {
    for (const auto& outcome : SlotControl(*context_).launchAll(slots))
      if (!outcome.isDone)
        window_->tell(worded("Place {place}: {outcome}.",
                             {{"place", outcome.slot}, {"outcome", outcome.text}}),
                      true);
  } catch (const std::exception& error) {
    window_->tell(QString::fromUtf8(error.what()) + QLatin1Char('.'), true);
  }
}

void SettingsApp::show() {
  if (window_->isMinimized())
    window_->showNormal();
  window_->show();
  // The window is to be there first.
  if (icons_.empty())
    QTimer::singleShot(0, window_.get(), [this] { takeIcon(iconName); });
  window_->raise();
  window_->activateWindow();
}

void SettingsApp::edit(const std::string& id) {
  show();
  if (const auto parsed = UUID::parse(id); parsed && editor_) {
    // It may have been made a moment ago.
    if (editor_->widget(*parsed) == nullptr)
      reload();
    window_->open(*parsed);
  }
}

} // namespace tavrin

#pragma once

#include "TavrinPlatform/Files/AtomicFile.h"
#include "TavrinSlot/SlotApp.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "Tests/Support/FakePlatform.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin::test {

/// One widget in slot 3, on a data folder of its own.
class SlotTest : public testing::Test {
protected:
  void SetUp() override {
    folder_ = std::filesystem::temp_directory_path() / ("tavrin-slot-" + UUID::random().text());
    std::filesystem::create_directories(folder_);
    platform_.files.variables["TAVRIN_APP_SUPPORT_DIR"] = folder_.string();
    platform_.files.home = folder_ / "home";
    platform_.bundle.integers["TavrinSlot"] = 3;
    platform_.fakeApplication.args = {"TavrinSlot", "--background"};
  }
  void TearDown() override {
    app_.reset();
    std::filesystem::remove_all(folder_);
  }

  void write(const DockWidget::Kind& kind, int span = 1) {
    writeJSONFile(folder_ / "widgets.json",
                  encode(WidgetsFile{1, {DockWidget(id_, "Mine", 3, kind, span)}, {}}));
  }
  void start(const DockWidget::Kind& kind, int span = 1) {
    write(kind, span);
    app_ = std::make_unique<SlotApp>(platform_);
    app_->applicationDidFinishLaunching();
  }
  void announce() { platform_.center.post("dev.quellby.tavrin.widgetsChanged", std::nullopt); }
  /// Does what was posted, and then what was given to the background.
  void settle() {
    platform_.loop.runPosts();
    platform_.loop.runBackground();
  }
  void click() { app_->applicationShouldHandleReopen(false); }

  QWidget* panel() const { return platform_.fakePopover.content(); }
  /// The panel's widgets of one class. By their real class: most have no meta object of their own.
  template <class Widget> std::vector<Widget*> all() const {
    std::vector<Widget*> found;
    for (auto* child : panel()->findChildren<QWidget*>())
      if (auto* widget = dynamic_cast<Widget*>(child))
        found.push_back(widget);
    return found;
  }
  template <class Widget> Widget* first() const {
    const auto found = all<Widget>();
    return found.empty() ? nullptr : found[0];
  }
  /// All words the panel shows.
  QStringList words() const {
    QStringList shown;
    for (auto* text : all<PanelText>())
      if (text->isVisibleTo(panel()) && !text->text().isEmpty())
        shown << text->text();
    return shown;
  }
  /// By its title, or its name where it shows a symbol alone.
  PanelButton* button(const QString& title) const {
    for (auto* button : all<PanelButton>())
      if ((button->title().isEmpty() ? button->accessibleName() : button->title()) == title)
        return button;
    return nullptr;
  }

  FakePlatform platform_;
  std::filesystem::path folder_;
  UUID id_ = UUID::random();
  std::unique_ptr<SlotApp> app_;
};

} // namespace tavrin::test

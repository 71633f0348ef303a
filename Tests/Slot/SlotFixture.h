#pragma once

#include "TavrinSlot/SlotApp.h"
#include "TavrinStorage/AtomicFile.h"
#include "TavrinWidgetsUI/Kit/PanelButton.h"
#include "TavrinWidgetsUI/Kit/PanelText.h"
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
  void click() { app_->applicationShouldHandleReopen(false); }

  QWidget* panel() const { return platform_.fakePopover.content(); }
  template <class Widget> Widget* find(const QString& text) const {
    for (auto* widget : panel()->findChildren<Widget*>())
      if (textOf(widget) == text)
        return widget;
    return nullptr;
  }
  /// All words the panel shows.
  QStringList words() const {
    QStringList all;
    for (auto* text : panel()->findChildren<PanelText*>())
      if (!text->isHidden() && !text->text().isEmpty())
        all << text->text();
    return all;
  }
  PanelButton* button(const QString& title) const { return find<PanelButton>(title); }

  FakePlatform platform_;
  std::filesystem::path folder_;
  UUID id_ = UUID::random();
  std::unique_ptr<SlotApp> app_;

private:
  static QString textOf(PanelButton* button) {
    return button->title().isEmpty() ? button->accessibleName() : button->title();
  }
  static QString textOf(PanelText* text) { return text->text(); }
};

} // namespace tavrin::test

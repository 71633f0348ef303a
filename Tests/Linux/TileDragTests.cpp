#include "TavrinPlatform/Linux/Tile/StripWindow.h"

#include <QDropEvent>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <gtest/gtest.h>

/// What a tile shows of a drag over it.
namespace tavrin {
namespace {

class TileDrag : public testing::Test {
protected:
  TileDrag() {
    files_.setData(QStringLiteral("text/uri-list"), "file:///tmp/a.txt\r\n");
    words_.setText(QStringLiteral("words"));
    window_.takesFiles = [this] { return takes_; };
    window_.onDrop = [this](const auto& dropped) {
      dropped_ += dropped.size();
      return true;
    };
  }
  bool enter(const QMimeData& content) {
    QDragEnterEvent event({10, 10}, Qt::CopyAction | Qt::MoveAction, &content, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&window_, &event);
    return event.isAccepted();
  }
  bool move(const QMimeData& content) {
    QDragMoveEvent event({12, 10}, Qt::CopyAction | Qt::MoveAction, &content, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&window_, &event);
    return event.isAccepted();
  }
  void leave() {
    QDragLeaveEvent event;
    QCoreApplication::sendEvent(&window_, &event);
  }

  using Drag = StripWindow::Drag;
  StripWindow window_;
  QMimeData files_;
  QMimeData words_;
  bool takes_ = true;
  std::size_t dropped_ = 0;
};

TEST_F(TileDrag, ATileShowsWhetherItTakesWhatIsDraggedOverIt) {
  EXPECT_EQ(window_.drag(), Drag::none);
  EXPECT_TRUE(enter(files_));
  EXPECT_EQ(window_.drag(), Drag::taken);
  takes_ = false;
  EXPECT_FALSE(move(files_)) << "its widget may have changed meanwhile";
  EXPECT_EQ(window_.drag(), Drag::refused);
  leave();
  EXPECT_EQ(window_.drag(), Drag::none);
  takes_ = true;
  EXPECT_FALSE(enter(words_)) << "no files";
  EXPECT_EQ(window_.drag(), Drag::refused);
  leave();
  EXPECT_TRUE(enter(files_));
  QDropEvent drop({10, 10}, Qt::CopyAction | Qt::MoveAction, &files_, Qt::LeftButton, {});
  QCoreApplication::sendEvent(&window_, &drop);
  EXPECT_EQ(dropped_, 1U);
  EXPECT_EQ(window_.drag(), Drag::none) << "what was dropped hovers no more";
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication application(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}

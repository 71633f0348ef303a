#pragma once

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinPlatform/RunLoop.h"

#include <QImage>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

class QLabel;

namespace tavrin {

class PanelEmptyState;
class PanelText;
class PanelTextEdit;

/// A look into a file without opening it in a program: a picture, or the beginning of a text. Read
/// off the main thread.
class QuickLook : public QWidget {
public:
  QuickLook(RunLoop& runLoop, int width, QWidget* parent = nullptr);

  /// Shows `file` as soon as it has been read; nothing of the one before.
  void lookAt(const std::filesystem::path& file);
  const std::filesystem::path& file() const { return file_; }

  /// Space, Backspace, Left or the button: back to where one came from.
  std::function<void()> onBack;
  std::function<void(const std::filesystem::path&)> onOpen;

  QSize sizeHint() const override;

protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  struct Contents {
    QImage picture;
    std::optional<QString> text;
  };
  static Contents read(const std::filesystem::path& file, int pixels);
  void showContents(const Contents& contents);

  RunLoop& runLoop_;
  int width_;
  std::filesystem::path file_;
  PanelText* title_;
  QLabel* picture_;
  PanelTextEdit* text_;
  PanelEmptyState* nothing_;
  /// Of the last file asked for; one that was overtaken finds it gone.
  Lifetime reading_;
};

} // namespace tavrin

#pragma once

#include <QLineEdit>
#include <functional>
#include <optional>

namespace tavrin {

/// A link's name, edited where it stands: Return or a click elsewhere takes it, Escape leaves it.
class BookmarkNameEdit final : public QLineEdit {
public:
  /// `prompt` is what a link without a name of its own is called.
  BookmarkNameEdit(const QString& name, const QString& prompt, QWidget* parent);

  /// Told once, with no value where the name stays as it was.
  std::function<void(const std::optional<QString>& name)> onEnd;

protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

private:
  void end(const std::optional<QString>& name);
};

} // namespace tavrin

#pragma once

#include <QStringList>
#include <QWidget>
#include <functional>
#include <span>
#include <vector>

class QRadioButton;

namespace tavrin {

/// Makes the chosen one of a group its Tab stop. The toolkit does so when one of them gets the
/// focus, which no click gives in a panel.
void leadTabToChosen(std::span<QRadioButton* const> group);

/// A picker of one out of a few, side by side: a radio group to assistive technology. One Tab
/// stop; the arrow keys choose.
class PanelSegments : public QWidget {
public:
  /// `name` is what is chosen, such as "Mode".
  PanelSegments(const QString& name, const QStringList& titles, QWidget* parent = nullptr);

  int current() const;
  /// Does not call `onChange`. -1 chooses none.
  void setCurrent(int index);
  void setTitles(const QStringList& titles);
  int count() const { return static_cast<int>(segments_.size()); }

  /// The user chose another one.
  std::function<void(int index)> onChange;

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  std::vector<QRadioButton*> segments_;
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Desktop/DesktopReport.h"
#include "TavrinPlatform/Autostart.h"
#include "TavrinSettings/Base/PageServices.h"

#include <QWidget>

class QScrollArea;
class QStackedWidget;

namespace tavrin {

class PanelButton;
class PanelEmptyState;
class PanelSwitch;
class PanelText;

/// Whether the widgets start with the session; what this computer has of what widgets use, what it
/// lacks, and what to do about it.
class ComputerPage : public QWidget {
public:
  /// `look` looks at the computer anew; it may take a second.
  ComputerPage(PageServices& services, std::function<DesktopReport()> look, Autostart& autostart,
               QWidget* parent = nullptr);

  /// Looks, once the page is seen.
  void reload();

protected:
  void keyPressEvent(QKeyEvent* event) override;

private:
  void show(const DesktopReport& report);
  void show(const Autostart::Status& status);
  void setAutostart(bool isOn);
  /// What is to be done, step by step, in place of the list; and back.
  void turn(bool toSteps);
  void makeSteps();
  QLayout* stepOf(const DesktopReport::Item& item, int number);

  PageServices& services_;
  std::function<DesktopReport()> look_;
  Autostart& autostart_;
  PanelSwitch* starts_;
  PanelText* startsHow_;
  DesktopReport report_;
  PanelText* summary_;
  PanelButton* remedy_;
  PanelButton* again_;
  QStackedWidget* stack_;
  QScrollArea* steps_;
  QScrollArea* list_;
};

/// "Everything that widgets use is here.", "2 things are missing, 1 is limited."
std::string reportSummary(const DesktopReport& report);
/// What to do, a numbered line for each thing that something can be done about; empty for none.
std::string reportRemedies(const DesktopReport& report);

} // namespace tavrin

#pragma once

#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinCore/Kinds/Converter/ConverterUnits.h"
#include "TavrinCore/Kinds/Converter/NumberNotation.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include <functional>
#include <string>

class QComboBox;
class QLineEdit;

namespace tavrin {

class PanelButton;
class PanelText;

/// Two quantities, either of which can be typed; the other follows. Return copies the result.
class ConverterPanelView final : public PanelView {
public:
  struct Source {
    std::function<std::string()> name;
    std::function<ConverterSettings()> settings;
    std::function<void(const ConverterSettings&)> change;
    /// Puts a text on the pasteboard.
    std::function<void(const std::string&)> copy;
    std::function<void()> edit;
    const NumberNotation& notation;
  };

  ConverterPanelView(const PanelAppearance& appearance, Source source);
  void refresh() override;

protected:
  void showEvent(QShowEvent* event) override;

private:
  struct Side {
    QLineEdit* number;
    QComboBox* unit;
  };

  Side makeSide(const QString& name);
  void addSides();
  /// The unit choosers offer the category's units.
  void fillUnits(ConverterCategory category);
  void showNumbers(const Conversion& conversion);
  void showNumber(QLineEdit& field, double value);
  void typed(bool isUpper, const QString& text);
  void chooseUnits();
  void copyResult();

  Source source_;
  QComboBox* category_;
  Side upper_;
  Side lower_;
  PanelText* rate_;
  PanelText* trouble_;
  PanelButton* copy_;
  std::optional<ConverterCategory> filled_;
  /// What is typed in the field that has the keyboard is no number.
  bool isNumber_ = true;
  /// The field that was typed in last; it keeps its text until the value is another one.
  QLineEdit* typedIn_ = nullptr;
  /// What it has come to, and what stands where that is no number: the value from before, for
  /// "10 EUR" is not 10.
  double typedValue_ = 0;
  double standing_ = 0;
  /// No value where another text begins.
  std::optional<QString> typedText_;
  bool hasCopied_ = false;
};

} // namespace tavrin

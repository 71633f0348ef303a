#include "TavrinCore/Kinds/Converter/ConverterSettings.h"
#include "TavrinWidgetsUI/Converter/ConverterPanelView.h"
#include "Tests/Slot/SlotFixture.h"
#include "Tests/Support/Keys.h"

#include <QAccessible>
#include <QComboBox>
#include <QLineEdit>

namespace tavrin::test {
namespace {

class ConverterWidget : public SlotTest {
protected:
  void open(const ConverterSettings& settings = {}) {
    start(settings);
    click();
    panel()->show();
  }
  template <class Control> Control* named(const char* name) const {
    for (auto* child : panel()->findChildren<Control*>())
      if (child->accessibleName() == name)
        return child;
    ADD_FAILURE() << "no " << name;
    return nullptr;
  }
  QLineEdit* value() const { return named<QLineEdit>("Value"); }
  QLineEdit* result() const { return named<QLineEdit>("Result"); }
  static void type(QLineEdit* field, const char* text) {
    field->selectAll();
    typeText(field, text);
  }
  static void choose(QComboBox* box, const char* symbol) {
    box->setCurrentIndex(box->findData(QString::fromUtf8(symbol)));
    box->activated(box->currentIndex());
  }
  ConverterSettings stored() const {
    const auto file = decode<WidgetsFile>(*readJSONFile(folder_ / "widgets.json"));
    return *file.widgets[0].kind.get<ConverterSettings>();
  }
};

TEST_F(ConverterWidget, TypingConvertsAtOnceAndSavesOnceItPauses) {
  open();
  const int before = platform_.tile.displays;
  type(value(), "26+0.2");
  EXPECT_EQ(result()->text(), "16.2799252366");
  EXPECT_GT(platform_.tile.displays, before);
  EXPECT_EQ(platform_.center.count("dev.quellby.tavrin.widgetsChanged"), 0);
  platform_.loop.advance(1);
  EXPECT_EQ(stored().value, 26.2);
  EXPECT_EQ(platform_.center.count("dev.quellby.tavrin.widgetsChanged"), 1);
  EXPECT_EQ(value()->text(), "26+0.2") << "the record that comes back leaves the typing alone";
  pressKey(value(), Qt::Key_Return);
  EXPECT_EQ(platform_.fakePasteboard.writtenText(), "16.2799252366");
}

TEST_F(ConverterWidget, WhatAssistiveTechnologySetsIsTyped) {
  open();
  QAccessible::queryAccessibleInterface(value())->setText(QAccessible::Value, "26.2");
  EXPECT_EQ(result()->text(), "16.2799252366");
  QAccessible::queryAccessibleInterface(result())->setText(QAccessible::Value, "10");
  EXPECT_EQ(value()->text(), "16.09344");
  platform_.loop.advance(1);
  EXPECT_EQ(stored().value, 16.09344);
}

TEST_F(ConverterWidget, FractionsAndPercentagesAreReadAndCurrenciesToldToBeLeftOut) {
  open();
  type(value(), "1½");
  EXPECT_TRUE(words().filter("number").isEmpty());
  platform_.loop.advance(1);
  EXPECT_EQ(stored().value, 1.5);
  type(value(), "10%");
  platform_.loop.advance(1);
  EXPECT_EQ(stored().value, 0.1);
  type(value(), "10 €");
  EXPECT_TRUE(words().contains("Currencies are left out: no rates can be relied on."));
  type(value(), "10 x");
  EXPECT_TRUE(words().contains("This is not a number."));
  EXPECT_EQ(stored().value, 0.1);
}

TEST_F(ConverterWidget, WhatAnotherProcessSetMeanwhileIsKept) {
  open();
  type(value(), "5");
  ConverterSettings others;
  others.to = "m";
  write(others);
  platform_.loop.advance(1);
  EXPECT_EQ(stored().value, 5);
  EXPECT_EQ(stored().to, "m");
}

TEST_F(ConverterWidget, TheResultCanBeTypedToo) {
  open();
  type(result(), "10");
  EXPECT_EQ(value()->text(), "16.09344");
  EXPECT_EQ(result()->text(), "10");
  click();
  EXPECT_EQ(stored().value, 16.09344) << "closing saves";
}

TEST_F(ConverterWidget, WhatIsNoNumberChangesNothing) {
  open();
  type(value(), "twelve");
  EXPECT_TRUE(words().contains("This is not a number."));
  EXPECT_FALSE(button("Copy Result")->isEnabled());
  platform_.loop.advance(1);
  EXPECT_EQ(stored(), ConverterSettings{});
  type(value(), "12");
  EXPECT_FALSE(words().contains("This is not a number."));
}

TEST_F(ConverterWidget, OfATextThatIsRefusedNothingStaysHoweverSlowlyItWasTyped) {
  ConverterSettings settings;
  settings.value = 7;
  open(settings);
  value()->selectAll();
  for (const QChar letter : QStringLiteral("10 EUR")) {
    typeText(value(), letter);
    platform_.loop.advance(1);
  }
  EXPECT_TRUE(words().contains("Currencies are left out: no rates can be relied on."));
  EXPECT_EQ(value()->text(), "10 EUR");
  EXPECT_EQ(stored().value, 7);
  for (int i = 0; i < 4; ++i)
    value()->backspace();
  platform_.loop.advance(1);
  EXPECT_EQ(stored().value, 10) << "it is a number again";
  // A new text: now that one stands.
  type(value(), "12 x");
  platform_.loop.advance(1);
  EXPECT_EQ(stored().value, 10);
  type(result(), "3x");
  platform_.loop.advance(1);
  EXPECT_EQ(stored().value, 10);
}

TEST_F(ConverterWidget, EachChoiceHasALabelForAssistiveTechnology) {
  open();
  for (const char* name : {"Category", "Value unit", "Result unit"}) {
    const auto labels = QAccessible::queryAccessibleInterface(named<QComboBox>(name))
                            ->relations(QAccessible::Label);
    ASSERT_EQ(labels.size(), 1) << name;
    EXPECT_EQ(labels[0].first->text(QAccessible::Name), name);
  }
}

TEST_F(ConverterWidget, AnotherTextSizeLeavesTheTypingAsItIs) {
  open();
  type(value(), "12 x");
  value()->setCursorPosition(1);
  const auto anotherSize = [this](double scale) {
    const auto* before = panel();
    platform_.fakeWorkspace.textScale = scale;
    platform_.fakeWorkspace.appearance.call();
    ASSERT_NE(panel(), before);
  };
  anotherSize(1.5);
  EXPECT_EQ(panel()->focusWidget(), value());
  EXPECT_EQ(value()->text(), "12 x");
  EXPECT_EQ(value()->cursorPosition(), 1);
  EXPECT_FALSE(value()->hasSelectedText());
  value()->setSelection(3, -2);
  anotherSize(1);
  EXPECT_EQ(value()->selectedText(), "2 ");
  EXPECT_EQ(value()->cursorPosition(), 1);
}

TEST_F(ConverterWidget, UnitsCategoryAndSwap) {
  open();
  choose(named<QComboBox>("Result unit"), "m");
  EXPECT_EQ(result()->text(), "1000");
  button("Swap")->click();
  EXPECT_EQ(value()->text(), "1000");
  EXPECT_EQ(result()->text(), "1");
  auto* category = named<QComboBox>("Category");
  category->setCurrentIndex(static_cast<int>(ConverterCategory::temperature));
  category->activated(category->currentIndex());
  EXPECT_EQ(result()->text(), "1832");
  type(value(), "-274");
  EXPECT_TRUE(words().contains("This is below absolute zero."));
}

TEST_F(ConverterWidget, AChangeFromOutsideWins) {
  open();
  type(value(), "7");
  write(ConverterSettings{ConverterCategory::mass, "kg", "g", 3});
  announce();
  EXPECT_EQ(value()->text(), "3");
  EXPECT_EQ(result()->text(), "3000");
  platform_.loop.advance(1);
  EXPECT_EQ(stored().value, 3) << "what was typed before is not saved over it";
}

TEST_F(ConverterWidget, WhatWasTypedLastSurvivesTheEnd) {
  open();
  type(value(), "9");
  app_.reset();
  EXPECT_EQ(stored().value, 9);
}

} // namespace
} // namespace tavrin::test

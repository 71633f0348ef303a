#include "TavrinWidgetsUI/Kit/Panels/PanelPalette.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelPaint.h"
#include "TavrinWidgetsUI/Kit/Views/Colour.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

std::vector<PanelAppearance> appearances() {
  std::vector<PanelAppearance> all;
  for (const auto& [dark, contrasty] :
       {std::pair{false, false}, {true, false}, {false, true}, {true, true}})
    for (const char* tint : {"#000000", "#FFFFFF", "#808080", "#FF453A", "#FBBF24", "#4C1D95",
                             "#0A84FF", "#30D158", "#031022", "#6FF0CF", "#FF00FF", "#00FF00"})
      all.push_back({dark, false, QColor(tint), contrasty});
  return all;
}

std::string nameOf(const PanelAppearance& look) {
  return (look.highContrast ? "high contrast " : "") + std::string(look.dark ? "dark " : "light ") +
         look.tint.name().toStdString();
}

int distance(const QColor& a, const QColor& b) {
  return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
         std::abs(a.blue() - b.blue());
}

TEST(PanelPalette, EveryTextIsLegibleOnEveryGroundItMayStandOn) {
  for (const PanelAppearance& look : appearances()) {
    SCOPED_TRACE(nameOf(look));
    const PanelPalette p = PanelPalette::make(look);
    for (const QColor& ground :
         {p.ground, p.field, p.rowHover, p.rowPressed, p.rowSelected, p.control}) {
      SCOPED_TRACE(ground.name().toStdString());
      EXPECT_GE(contrast(p.text, ground), 4.5);
      EXPECT_GE(contrast(p.secondary, ground), 4.5);
      EXPECT_GE(contrast(p.accent, ground), 4.5);
      EXPECT_GE(contrast(p.trouble, ground), 4.5);
    }
    for (const QColor& ground : {p.controlHover, p.controlPressed, p.chosen})
      EXPECT_GE(contrast(p.text, ground), 4.5) << ground.name().toStdString();
    for (const QColor& ground : {p.fill, p.fillHover, p.fillPressed})
      EXPECT_GE(contrast(p.onFill, ground), 4.5) << ground.name().toStdString();
  }
}

TEST(PanelPalette, ControlsAreToldFromTheGroundAndTheirStatesFromEachOther) {
  for (const PanelAppearance& look : appearances()) {
    SCOPED_TRACE(nameOf(look));
    const PanelPalette p = PanelPalette::make(look);
    EXPECT_GE(contrast(p.fill, p.ground), 2.99);
    EXPECT_GE(contrast(p.outline, p.ground), 2.99);
    const std::vector<std::vector<QColor>> families{
        {p.fill, p.fillHover, p.fillPressed},
        {p.control, p.controlHover, p.controlPressed},
        {p.ground, p.rowHover, p.rowPressed, p.rowSelected}};
    for (const auto& family : families)
      for (std::size_t i = 0; i < family.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
          EXPECT_GE(distance(family[i], family[j]), 9)
              << family[i].name().toStdString() << ' ' << family[j].name().toStdString();
  }
}

TEST(PanelPalette, ASymbolThatCannotBePressedIsSeenAndFainterThanOneThatCan) {
  for (const PanelAppearance& look : appearances()) {
    SCOPED_TRACE(nameOf(look));
    const PanelPalette p = PanelPalette::make(look);
    const double off = contrast(panelPaint::disabledSymbol(p), p.ground);
    EXPECT_GE(off, 2.99);
    EXPECT_GE(contrast(p.secondary, p.ground), off * 1.5);
  }
}

TEST(PanelPalette, HighContrastHasSevenToOneAndEdgesThatAreSeen) {
  for (const PanelAppearance& look : appearances()) {
    if (!look.highContrast)
      continue;
    SCOPED_TRACE(nameOf(look));
    const PanelPalette p = PanelPalette::make(look);
    EXPECT_GE(contrast(p.text, p.ground), 20);
    EXPECT_GE(contrast(p.secondary, p.ground), 7);
    EXPECT_GE(contrast(p.accent, p.ground), 7);
    EXPECT_GE(contrast(p.onFill, p.fill), 7);
    for (const QColor& edge : {p.hairline, p.fieldBorder, p.outline})
      EXPECT_GE(contrast(edge, p.ground), 4.5);
  }
}

TEST(PanelPalette, SecondaryTextIsQuieterThanText) {
  for (const bool dark : {false, true}) {
    const PanelPalette p = PanelPalette::make({dark, false, QColor("#0A84FF")});
    EXPECT_LT(contrast(p.secondary, p.ground), 0.6 * contrast(p.text, p.ground));
  }
}

TEST(PanelPalette, ComesBackWholeFromTheQPaletteThatCarriesIt) {
  for (const PanelAppearance& look : appearances()) {
    const PanelPalette p = PanelPalette::make(look);
    EXPECT_EQ(PanelPalette::from(p.palette()), p) << nameOf(look);
  }
}

TEST(PanelPalette, ATintThatHasContrastStaysAsItIs) {
  const QColor blue("#0050B0");
  EXPECT_EQ(PanelPalette::make({false, false, blue}).accent, blue);
}

} // namespace
} // namespace tavrin

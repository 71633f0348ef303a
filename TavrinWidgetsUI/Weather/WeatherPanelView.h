#pragma once

#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Weather/WeatherViews.h"

namespace tavrin {

class PanelEmptyState;
class PanelList;
class PanelSearchField;
class PanelText;
class ViewWidget;
class WeatherSearch;

class WeatherPanelView final : public PanelView {
public:
  /// What it shows and asks for; must outlive the view.
  struct Source {
    std::function<std::string()> name;
    std::function<WeatherSnapshot()> weather;
    std::function<std::optional<std::string>()> region;
    /// Asks for the forecast once more.
    std::function<void()> refresh;
    WeatherSearch& search;
    std::function<void(const WeatherPlace&)> choose;
    /// Opens an address in the user's browser.
    std::function<void(const std::string&)> open;
    std::function<void()> edit;
  };

  WeatherPanelView(const PanelAppearance& appearance, Source source);
  void refresh() override;

protected:
  void appearanceChanged() override { refresh(); }

private:
  void showReading(const WeatherSnapshot& weather);
  void showDays(const WeatherSnapshot& weather);
  AnyView dayRow(const WeatherDay& day, const QString& name, double least, double most,
                 bool hasChance) const;
  void showSearch();

  Source source_;
  PanelSearchField* field_;
  PanelList* results_;
  PanelText* noResult_;
  PanelEmptyState* empty_;
  QWidget* current_;
  PanelText* city_;
  PanelText* region_;
  ViewWidget* head_;
  PanelText* trouble_;
  QWidget* days_;
  std::vector<ViewWidget*> rows_;
};

} // namespace tavrin

#pragma once

#include "TavrinCore/Kinds/Emoji/EmojiSettings.h"
#include "TavrinWidgetsUI/Emoji/EmojiModel.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"

#include <optional>
#include <string>
#include <vector>

namespace tavrin {

class EmojiTones;
class PanelEmptyState;
class PanelGrid;
struct PanelCell;
class PanelSearchField;
class PanelText;

/// The recents and every group as a grid, searched as one types. A click or Return copies.
class EmojiPanelView final : public PanelView {
public:
  struct Source {
    std::function<std::string()> name;
    std::function<std::vector<Emoji>()> recents;
    /// How often each was used.
    std::function<std::vector<EmojiUse>()> uses;
    std::function<EmojiSettings()> settings;
    /// What went wrong last, as a sentence; empty for nothing.
    std::function<std::string()> trouble;
    std::function<void(const Emoji&)> copy;
    std::function<void(EmojiSkinTone)> setTone;
    std::function<void()> clear;
    std::function<void()> edit;
  };

  EmojiPanelView(const PanelAppearance& appearance, EmojiModel& model, Source source);
  ~EmojiPanelView() override;
  void refresh() override;

  /// Chooses a group by its place, -1 for the recents.
  void showGroup(int group);
  /// How many emoji the grid shows.
  int shownCount() const;
  std::optional<Emoji> shown(int index) const;

protected:
  void showEvent(QShowEvent* event) override;

private:
  /// What the grid is filled from.
  struct Content {
    bool isRecents = false;
    std::vector<Emoji> recents;
    std::vector<std::uint16_t> indexes;
    bool operator==(const Content&) const = default;
  };

  void makeGrid();
  Content wantedContent() const;
  void showContent();
  void showTabs();
  void showWords();
  void showName(int index);
  QString nameOf(int index) const;
  PanelCell cell(int index, const PanelGrid& grid);
  PanelCell tab(int index, const PanelGrid& grid);
  QImage picture(const std::string& emoji, const PanelGrid& grid);
  void copy(int index);

  EmojiModel& model_;
  Source source_;
  PanelSearchField* search_;
  PanelGrid* tabs_;
  PanelGrid* grid_;
  PanelEmptyState* empty_;
  PanelText* trouble_;
  PanelText* name_;
  EmojiTones* tones_;
  PanelButton* clear_;
  std::optional<Content> content_;
  EmojiSkinTone tone_ = EmojiSkinTone::standard;
  int tabCount_ = 0;
  int group_ = -1;
};

} // namespace tavrin

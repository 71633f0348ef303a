#pragma once

#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinWidgetsUI/Bookmarks/BookmarkViews.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelView.h"
#include "TavrinWidgetsUI/Kit/Views/ViewRenderer.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tavrin {

class BookmarkNameEdit;
class PanelEmptyState;
class PanelList;
struct PanelRow;
class PanelSearchField;
class PanelUndo;

/// The links and folders as a list, searched as one types; what is typed and is an address can be
/// added. Return or a click opens.
class BookmarkPanelView final : public PanelView {
public:
  struct Source {
    std::function<std::string()> name;
    std::function<BookmarkSettings()> settings;
    BookmarkIconOf icon;
    /// Opens the addresses, one after the other; the panel's work is done.
    std::function<void(const std::vector<std::string>&)> open;
    std::function<void(const std::string&)> copy;
    std::function<void(const BookmarkSettings&)> change;
    /// A link was added that has no name yet.
    std::function<void(const std::string& url)> added;
    std::function<void(const BookmarkPlace&)> remove;
    /// What the link removed last was called; empty where there is none to bring back.
    std::function<std::string()> removed;
    /// Brings it back. Where it stands.
    std::function<std::optional<BookmarkPlace>()> restore;
    std::function<void()> edit;
  };

  BookmarkPanelView(const PanelAppearance& appearance, Source source);
  void refresh() override;

protected:
  void showEvent(QShowEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

private:
  /// What a row stands for.
  struct Item {
    enum class Kind { add, back, folder, link };
    Kind kind = Kind::link;
    BookmarkPlace place = {};
    bool operator==(const Item&) const = default;
  };

  std::vector<Item> wantedItems() const;
  void showItems();
  void showWords();
  PanelRow row(const Item& item);
  PanelRow linkRow(const BookmarkPlace& place);
  QImage iconOf(const Bookmark& bookmark);
  std::optional<Item> itemAt(int row) const;
  void openRow(int row);
  void act(int row, int action);
  void remove(const BookmarkPlace& place);
  void rename(int row);
  void endRename(const BookmarkPlace& place, const std::optional<QString>& name);
  void undo();
  void openAll();
  void enter(std::optional<std::size_t> folder);
  QString query() const;

  Source source_;
  BookmarkSettings settings_;
  PanelSearchField* search_;
  PanelList* list_;
  PanelEmptyState* empty_;
  /// While a link's name is edited.
  BookmarkNameEdit* nameEdit_ = nullptr;
  PanelUndo* undo_;
  PanelButton* openAll_;
  std::vector<Item> items_;
  std::optional<std::size_t> folder_;
  /// What the rows were made from last.
  std::optional<BookmarkSettings> shown_;
  QString shownQuery_;
  ViewRenderer monogramRenderer_;
  std::map<std::string, QImage> monograms_;
};

} // namespace tavrin

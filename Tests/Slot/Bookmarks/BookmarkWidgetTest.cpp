#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinWidgetsUI/Bookmarks/BookmarkIcons.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "Tests/Slot/SlotFixture.h"
#include "Tests/Support/Keys.h"

#include <QBuffer>
#include <QLineEdit>
#include <fstream>

namespace tavrin::test {
namespace {

std::string pngBytes(int side, const QColor& colour) {
  QImage image(side, side, QImage::Format_RGB32);
  image.fill(colour);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return bytes.toStdString();
}

class BookmarkWidget : public SlotTest {
protected:
  static BookmarkSettings library() {
    BookmarkSettings settings;
    settings.bookmarks = {{"News", "https://news.example/"}, {"Broken", "javascript:alert(1)"}};
    settings.folders = {{"Work", {{"Board", "https://board.example"}, {"", "mail.example"}}}};
    settings.showsIcons = false;
    return settings;
  }
  void open(const BookmarkSettings& settings = library()) {
    start(settings);
    click();
    panel()->show();
  }
  PanelList* list() const { return all<PanelList>().front(); }
  QLineEdit* search() const { return panel()->findChild<QLineEdit*>(); }
  QStringList titles() const {
    QStringList found;
    for (int row = 0; row < list()->count(); ++row)
      found << list()->row(row).title;
    return found;
  }
  BookmarkSettings stored() const {
    const auto file = decode<WidgetsFile>(*readJSONFile(folder_ / "widgets.json"));
    return *file.widgets[0].kind.get<BookmarkSettings>();
  }
  const std::vector<std::string>& opened() const { return platform_.fakeWorkspace.opened; }
  std::filesystem::path icons() const { return folder_ / "home" / ".cache" / "tavrin" / "icons"; }
  /// Lets background work, look-ups and requests go on.
  void settle() {
    for (int i = 0; i < 8; ++i) {
      platform_.loop.runBackground();
      platform_.loop.advance(0.01);
    }
  }
};

TEST_F(BookmarkWidget, OpensLinksAndFoldersByClick) {
  open();
  EXPECT_EQ(titles(), (QStringList{"Work", "News", "Broken"}));
  list()->onOpen(0);
  EXPECT_EQ(titles(), (QStringList{"Work", "Board", "mail.example"}));
  list()->onOpen(2);
  EXPECT_EQ(opened(), (std::vector<std::string>{"https://mail.example"}));
  EXPECT_FALSE(platform_.fakePopover.isShown());
  click();
  panel()->hide();
  panel()->show();
  list()->onOpen(2);
  EXPECT_EQ(opened().size(), 1U) << "no script is ever run";
  list()->onOpen(0);
  button("Open All")->click();
  EXPECT_EQ(opened().size(), 3U);
}

TEST_F(BookmarkWidget, KeyboardAloneSearchesAndOpens) {
  open();
  typeText(search(), "boa");
  EXPECT_EQ(titles(), QStringList{"Board"});
  pressKey(search(), Qt::Key_Return);
  EXPECT_EQ(opened(), (std::vector<std::string>{"https://board.example"}));
}

TEST_F(BookmarkWidget, WhatIsTypedCanBeAddedAndTakenAway) {
  open();
  typeText(search(), "new.example/page");
  EXPECT_EQ(titles(), QStringList{"Add new.example/page"});
  pressKey(search(), Qt::Key_Return);
  EXPECT_EQ(stored().bookmarks.back().url, "https://new.example/page");
  EXPECT_EQ(platform_.center.count("dev.quellby.tavrin.widgetsChanged"), 1);
  EXPECT_TRUE(search()->text().isEmpty());
  list()->onRemove(1);
  EXPECT_EQ(stored().bookmarks.front().title, "Broken");
  button("Undo")->click();
  EXPECT_EQ(stored().bookmarks.front().title, "News");
  EXPECT_EQ(stored().bookmarks.size(), 3U);
  EXPECT_FALSE(button("Undo")->isVisibleTo(panel()));
}

TEST_F(BookmarkWidget, EveryRemovalIsTakenBackWhateverHappenedSince) {
  open();
  list()->onRemove(1);
  list()->onRemove(1);
  EXPECT_TRUE(stored().bookmarks.empty());
  typeText(search(), "zebra.example");
  pressKey(search(), Qt::Key_Return);
  panel()->hide();
  click();
  click();
  panel()->show();
  auto changed = stored();
  changed.bookmarks[0].title = "The page's name";
  write(changed);
  announce();
  typeText(search(), "x");
  pressKey(search(), Qt::Key_Backspace);
  button("Undo")->click();
  EXPECT_EQ(titles(), (QStringList{"Work", "Broken", "The page's name"}));
  EXPECT_EQ(list()->currentRow(), 1) << "what came back is the current one";
  button("Undo")->click();
  EXPECT_EQ(titles(), (QStringList{"Work", "News", "Broken", "The page's name"}));
  EXPECT_FALSE(button("Undo")->isVisibleTo(panel()));
  list()->onRemove(3);
  typeText(search(), "zebra.example");
  pressKey(search(), Qt::Key_Return);
  EXPECT_FALSE(button("Undo")->isVisibleTo(panel())) << "its user has brought it back";
}

TEST_F(BookmarkWidget, TheKeysForUndoingAreTheLinksWhateverTheFieldWasTyped) {
  open();
  const auto fieldTakesUndo = [this] {
    QKeyEvent event(QEvent::ShortcutOverride, Qt::Key_Z, Qt::ControlModifier);
    event.ignore();
    QCoreApplication::sendEvent(search(), &event);
    return event.isAccepted();
  };
  EXPECT_FALSE(fieldTakesUndo()) << "nothing was typed";
  typeText(search(), "news");
  EXPECT_TRUE(fieldTakesUndo());
  list()->onRemove(0);
  EXPECT_EQ(search()->text(), "news");
  EXPECT_FALSE(fieldTakesUndo()) << "the link was removed after the typing";
  typeText(search(), "x");
  panel()->hide();
  panel()->show();
  EXPECT_FALSE(fieldTakesUndo()) << "the panel opens as new";
  typeText(search(), "new.example");
  pressKey(search(), Qt::Key_Return);
  EXPECT_FALSE(fieldTakesUndo()) << "what was typed has become a link";
}

TEST_F(BookmarkWidget, AnAddressIsKeptAsABrowserWritesItAndARefusalSaysWhy) {
  open();
  typeText(search(), "münchen.example/two words");
  EXPECT_EQ(titles(), QStringList{"Add münchen.example/two%20words"});
  pressKey(search(), Qt::Key_Return);
  EXPECT_EQ(stored().bookmarks.back().url, "https://xn--mnchen-3ya.example/two%20words");
  const auto before = stored();
  typeText(search(), "https://me@evil.example");
  EXPECT_EQ(words().filter("user's name").size(), 1) << words().join("; ").toStdString();
  pressKey(search(), Qt::Key_Return);
  search()->clear();
  typeText(search(), "ftp://old.example");
  EXPECT_EQ(words().filter("http or https").size(), 1);
  EXPECT_EQ(stored(), before);
}

TEST_F(BookmarkWidget, ThePageOfALinkThatIsAddedTellsItsName) {
  platform_.fakeHTTP.hosts["new.example"] = {"93.184.216.34"};
  platform_.fakeHTTP.automatic =
      HTTPResponse{200, "<title>The &quot;New&quot; Page</title>", "text/html", {}};
  BookmarkSettings settings;
  settings.showsIcons = false;
  open(settings);
  const auto add = [&](const char* address) {
    typeText(search(), address);
    pressKey(search(), Qt::Key_Return);
    settle();
  };
  add("new.example");
  EXPECT_EQ(platform_.fakeHTTP.urls, (std::vector<std::string>{"https://new.example"}));
  EXPECT_EQ(stored().bookmarks.back().title, "The \"New\" Page");
  EXPECT_EQ(titles(), QStringList{"The \"New\" Page"});
  platform_.fakeHTTP.hosts["router.example"] = {"192.168.1.1"};
  add("router.example");
  EXPECT_EQ(platform_.fakeHTTP.urls.size(), 1U) << "nobody of one's own network is asked";
  auto quiet = stored();
  quiet.fetchesNames = false;
  write(quiet);
  announce();
  add("new.example/other");
  EXPECT_EQ(platform_.fakeHTTP.urls.size(), 1U);
}

TEST_F(BookmarkWidget, ANameIsEditedWhereItStands) {
  open();
  const auto edit = [this]() -> QLineEdit* { return list()->viewport()->findChild<QLineEdit*>(); };
  list()->setCurrentRow(1);
  pressKey(list(), Qt::Key_F2);
  ASSERT_NE(edit(), nullptr);
  EXPECT_EQ(edit()->text(), "News");
  edit()->setText("Newspaper");
  pressKey(edit(), Qt::Key_Return);
  EXPECT_EQ(stored().bookmarks.front().title, "Newspaper");
  EXPECT_EQ(titles(), (QStringList{"Work", "Newspaper", "Broken"}));
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(edit(), nullptr);
  list()->onAction(1, 1);
  edit()->setText("Nonsense");
  pressKey(edit(), Qt::Key_Escape);
  EXPECT_EQ(stored().bookmarks.front().title, "Newspaper");
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  list()->onAction(1, 1);
  write(library());
  announce();
  EXPECT_EQ(stored(), library()) << "another's change ends it and keeps its own";
}

TEST_F(BookmarkWidget, TheWideTileIsCalledAsItsKindAndNotAsItsFirstLink) {
  start(library(), 2);
  EXPECT_EQ(platform_.tile.name, "Bookmarks");
  EXPECT_EQ(platform_.tile.value, "4 links");
}

TEST_F(BookmarkWidget, AChangeFromOutsideShowsAtOnce) {
  open();
  list()->onOpen(0);
  auto changed = library();
  changed.folders.clear();
  write(changed);
  announce();
  EXPECT_EQ(titles(), (QStringList{"News", "Broken"})) << "the folder that was open is gone";
}

TEST_F(BookmarkWidget, AnIconIsFetchedOnceAndKept) {
  platform_.fakeHTTP.hosts["news.example"] = {"93.184.216.34"};
  platform_.fakeHTTP.automatic = HTTPResponse{200, pngBytes(64, Qt::red), {}, {}};
  BookmarkSettings settings;
  settings.bookmarks = {{"News", "https://news.example/page"}};
  open(settings);
  list()->row(0);
  settle();
  EXPECT_EQ(platform_.fakeHTTP.urls,
            (std::vector<std::string>{"https://news.example/favicon.ico"}));
  EXPECT_EQ(list()->row(0).image.pixelColor(24, 24), QColor(Qt::red));
  EXPECT_TRUE(std::filesystem::exists(icons() / "news.example.png"));
  app_.reset();
  open(settings);
  list()->row(0);
  settle();
  EXPECT_EQ(platform_.fakeHTTP.urls.size(), 1U) << "the next start takes the kept one";
  EXPECT_EQ(list()->row(0).image.pixelColor(24, 24), QColor(Qt::red));
}

TEST_F(BookmarkWidget, ASiteWithoutAnIconIsNotAskedAgain) {
  platform_.fakeHTTP.hosts["news.example"] = {"93.184.216.34"};
  platform_.fakeHTTP.automatic = HTTPResponse{200, "<html>not a picture</html>", {}, {}};
  BookmarkSettings settings;
  settings.bookmarks = {{"News", "https://news.example/"}};
  for (int starts = 0; starts < 2; ++starts) {
    open(settings);
    list()->row(0);
    settle();
    EXPECT_FALSE(list()->row(0).image.isNull()) << "a letter stands in";
    app_.reset();
  }
  EXPECT_EQ(platform_.fakeHTTP.urls.size(), 2U) << "the icon and the larger one, each once";
}

TEST_F(BookmarkWidget, HostsOfTheOwnNetworkAreNotAskedAndNothingWithoutIcons) {
  platform_.fakeHTTP.hosts["router.example"] = {"192.168.1.1"};
  BookmarkSettings settings;
  settings.bookmarks = {{"Router", "http://router.example/"}};
  open(settings);
  list()->row(0);
  settle();
  EXPECT_TRUE(platform_.fakeHTTP.urls.empty());
  settings.bookmarks = {{"News", "https://news.example/"}};
  settings.showsIcons = false;
  write(settings);
  announce();
  list()->row(0);
  settle();
  EXPECT_EQ(std::ranges::count(platform_.fakeHTTP.lookups, "news.example"), 0);
}

TEST_F(BookmarkWidget, TheKeptIconsStayWithinTheirBound) {
  std::filesystem::create_directories(icons());
  for (std::size_t i = 0; i < BookmarkIcons::mostFiles + 50; ++i)
    std::ofstream(icons() / ("old" + std::to_string(i) + ".png")) << "x";
  platform_.fakeHTTP.hosts["news.example"] = {"93.184.216.34"};
  platform_.fakeHTTP.automatic = HTTPResponse{200, pngBytes(16, Qt::blue), {}, {}};
  BookmarkSettings settings;
  settings.bookmarks = {{"News", "https://news.example/"}};
  open(settings);
  list()->row(0);
  settle();
  const auto left = std::distance(std::filesystem::directory_iterator(icons()), {});
  EXPECT_EQ(static_cast<std::size_t>(left), BookmarkIcons::mostFiles);
  EXPECT_TRUE(std::filesystem::exists(icons() / "news.example.png")) << "the newest stays";
}

TEST(BookmarkIcons, FileNamesAreTame) {
  const auto name = [](const char* url) { return BookmarkIcons::fileName(*WebAddress::from(url)); };
  EXPECT_EQ(name("https://example.com:8080/x"), "example.com_3a8080.png");
  EXPECT_EQ(name("http://example.com"), "http_example.com.png");
  EXPECT_EQ(name("https://ä.example").find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_.-"),
            std::string::npos);
  const std::string label(60, 'a');
  EXPECT_TRUE(
      name(("https://" + label + '.' + label + '.' + label + '.' + label + ".example").c_str())
          .empty());
}

} // namespace
} // namespace tavrin::test

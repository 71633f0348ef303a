#include "Tests/Command/HostFixture.h"

#include <fstream>
#include <gmock/gmock.h>

namespace tavrin::test {
namespace {

using testing::HasSubstr;

class BookmarkCommandTest : public HostTest {
protected:
  std::string put(const char* name, const std::string& text) {
    const auto file = folder / name;
    std::ofstream(file) << text;
    return file.string();
  }
};

TEST_F(BookmarkCommandTest, ABrowsersBookmarksComeInAndGoOut) {
  ASSERT_EQ(run({"widgets", "add", "bookmarks", "Links"}), 0) << errors.str();
  const auto file =
      put("bookmarks.html",
          "<!DOCTYPE NETSCAPE-Bookmark-file-1><DL><p><DT><A HREF='https://a.example/'>A"
          "</A><DT><H3>Work</H3><DL><p><DT><A HREF='https://b.example/x y'>B &amp; C"
          "</A><DT><A HREF='javascript:x'>S</A></DL><p></DL><p>");
  ASSERT_EQ(run({"widgets", "import", "Links", file}), 0) << errors.str();
  EXPECT_EQ(output.str(), "2 links were added.\n");
  EXPECT_THAT(errors.str(), HasSubstr("One link was left out: it is no address of the web."));
  ASSERT_EQ(run({"widgets", "import", "Links", file}), 0);
  EXPECT_EQ(output.str(), "0 links were added.\n");
  EXPECT_THAT(errors.str(), HasSubstr("2 links were there already."));
  const auto written = (folder / "out.html").string();
  ASSERT_EQ(run({"widgets", "export", "Links", written}), 0) << errors.str();
  ASSERT_EQ(run({"widgets", "export", "Links"}), 0);
  EXPECT_THAT(output.str(), HasSubstr("<DT><A HREF=\"https://b.example/x%20y\">B &amp; C</A>"));
  ASSERT_EQ(run({"widgets", "add", "bookmarks", "Others"}), 0);
  ASSERT_EQ(run({"widgets", "import", "Others", written}), 0) << errors.str();
  EXPECT_EQ(output.str(), "2 links were added.\n");
}

TEST_F(BookmarkCommandTest, WhatCannotBeReadChangesNothing) {
  ASSERT_EQ(run({"widgets", "add", "bookmarks", "Links"}), 0);
  ASSERT_EQ(run({"widgets", "add", "clock", "Clock"}), 0);
  const auto before = fileText();
  EXPECT_EQ(run({"widgets", "import", "Links", (folder / "nowhere").string()}), 3);
  EXPECT_EQ(run({"widgets", "import", "Links", put("plain.txt", "plain words")}), 5);
  EXPECT_THAT(errors.str(), HasSubstr("holds no bookmarks"));
  EXPECT_EQ(run({"widgets", "import", "Clock", put("empty.html", "<DL></DL>")}), 5);
  EXPECT_EQ(run({"widgets", "export", "Clock"}), 5);
  EXPECT_EQ(fileText(), before);
}

TEST_F(BookmarkCommandTest, ApplicationsAreSetByTheirNames) {
  ASSERT_EQ(run({"widgets", "add", "collection", "Apps"}), 0);
  ASSERT_EQ(run({"widgets", "set", "Apps", "apps=xterm,vim"}), 0) << errors.str();
  EXPECT_THAT(fileText(), HasSubstr("xterm"));
  EXPECT_THAT(fileText(), HasSubstr("vim"));
}

} // namespace
} // namespace tavrin::test

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Kinds/Files/FileKind.h"
#include "TavrinCore/Kinds/Files/Shelf.h"
#include "TavrinCore/Kinds/Files/ShelfSettings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(FileURL, EveryPathComesBackByteForByte) {
  for (const std::string path : {"/", "/a b", "/tab\there", "/line\nbreak", "/100%", "/%41",
                                 "/\xFF\xFE", "/Grüße/你好", "/a?b#c;d", "/&+='\"<>"}) {
    const std::string url = fileURL(path);
    EXPECT_EQ(pathOfFileURL(url), path);
    EXPECT_EQ(pathOfText(pathText(path)), path);
    EXPECT_EQ(url.find_first_of(" \n\t?#\"<>"), std::string::npos) << url;
    EXPECT_THAT(pathsOfURIList("# a remark\r\n" + url + "\r\nhttp://x/y\r\n" + url),
                ElementsAre(path, path));
  }
}

TEST(FileURL, WhatIsNoFileHereIsRefused) {
  for (const std::string_view text :
       {"", "file", "file:", "file://", "file:relative", "file://host/a", "file:///a%0",
        "file:///%", "file:///%00", "file:///%zz", "http://localhost/a", "relative", "~",
        "~root/x"})
    EXPECT_EQ(pathOfText(text), std::nullopt) << text;
  EXPECT_EQ(pathOfFileURL("file:/a"), "/a");
  EXPECT_EQ(pathOfFileURL("file://localhost/a?b"), "/a");
  EXPECT_EQ(pathOfText("~/a", "/home/u"), "/home/u/a");
  EXPECT_EQ(pathOfText(std::string_view("/a\0b", 4)), std::nullopt);
}

TEST(FileKind, ByTheEndingOfItsName) {
  const std::pair<const char*, FileKind> cases[] = {
      {"a.png", FileKind::picture},  {"A.JPEG", FileKind::picture}, {"a.tar.gz", FileKind::archive},
      {"a.pdf", FileKind::document}, {"main.cpp", FileKind::code},  {".png", FileKind::other},
      {"png", FileKind::other},      {"a.", FileKind::other},       {"a.b c", FileKind::other},
      {"a.png.", FileKind::other},   {"", FileKind::other},         {"a.\xFF", FileKind::other}};
  for (const auto& [name, kind] : cases)
    EXPECT_EQ(fileKind(name), kind) << name;
  EXPECT_EQ(fileEnding("a.pdf"), "PDF");
  EXPECT_EQ(fileEnding("a.7z"), "7Z");
  EXPECT_EQ(fileEnding("a.torrent"), "");
  EXPECT_EQ(fileEnding("a.p-f"), "");
  for (const char* name : {"a.part", "a.zip.crdownload", "Unconfirmed 1.CRDOWNLOAD", "a.aria2"})
    EXPECT_TRUE(isPartialDownload(name)) << name;
  for (const char* name : {"part", "a.parts", "a.part.zip", ".part"})
    EXPECT_FALSE(isPartialDownload(name)) << name;
}

TEST(FileKind, NamesAreShownOnOneLine) {
  EXPECT_EQ(shownName("/a/line\nbreak\x7F.txt"), "line break .txt");
  EXPECT_EQ(shownName("/a/\xFFx"), "\xEF\xBF\xBDx");
  EXPECT_EQ(shownName("/"), "/");
  EXPECT_EQ(shownFolder("/home/u/Down", "/home/u"), "~/Down");
  EXPECT_EQ(shownFolder("/home/user", "/home/u"), "/home/user");
  EXPECT_EQ(shownFolder("/home/u", "/home/u"), "~");
  EXPECT_EQ(shownFolder("/home/u", ""), "/home/u");
}

TEST(ShelfSettings, NewOnesLieOnTopEachOnceAndTheOldestFallOff) {
  ShelfSettings kept;
  kept.paths = {"/a", "/b/", "not a path", "/a", "file:///c%FF"};
  EXPECT_THAT(shelf::files(kept), ElementsAre("/a", "/b", "/c\xFF"));
  kept = shelf::adding(kept, {"/x", "/b", "relative", "/", "/x/"});
  EXPECT_THAT(kept.paths, ElementsAre("/x", "/b", "/a", "file:///c%FF"));
  EXPECT_THAT(shelf::removing(kept, "/c\xFF").paths, ElementsAre("/x", "/b", "/a"));
  std::vector<std::filesystem::path> many;
  for (int i = 0; i < 39; ++i)
    many.push_back("/many/" + std::to_string(i));
  kept = shelf::adding(kept, many);
  EXPECT_EQ(kept.paths.size(), 40U);
  EXPECT_EQ(kept.paths.front(), "/many/0");
  EXPECT_EQ(kept.paths.back(), "/x");
  EXPECT_EQ(shelf::adding(kept, many), kept);
  many.push_back("/one more");
  many.push_back("/and one more");
  EXPECT_EQ(shelf::adding({}, many).paths.back(), "/one more");
  EXPECT_THAT(shelf::removing({}, "/a").paths, IsEmpty());
}

} // namespace
} // namespace tavrin

#include "TavrinPlatform/Files/FileBeginning.h"
#include "TavrinWidgetsUI/Kit/Pictures/Thumbnail.h"
#include "TavrinWidgetsUI/Kit/Pictures/Thumbnails.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/ManualRunLoop.h"

#include <QBuffer>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <zlib.h>

namespace tavrin {
namespace {

std::string encoded(const char* format, QSize size) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::red);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  EXPECT_TRUE(image.save(&buffer, format));
  return bytes.toStdString();
}

std::string bigEndian(std::uint32_t value) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

/// As PNG chunks end with.
std::uint32_t checksum(std::string_view bytes) {
  std::uint32_t sum = 0xFFFFFFFF;
  for (const char byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit)
      sum = sum >> 1 ^ (sum & 1) * 0xEDB88320;
  }
  return ~sum;
}

/// A PNG that says it has so many points and holds none of them.
std::string bomb(std::uint32_t width, std::uint32_t height) {
  const std::string header =
      "IHDR" + bigEndian(width) + bigEndian(height) + std::string("\x08\x06\x00\x00\x00", 5);
  return "\x89PNG\r\n\x1A\n" + bigEndian(13) + header + bigEndian(checksum(header));
}

TEST(Thumbnail, IsNoLargerThanAskedForAndNeverEnlarged) {
  for (const char* format : {"PNG", "JPG", "BMP", "WEBP", "TIFF", "PPM", "ICO"}) {
    EXPECT_EQ(thumbnail(encoded(format, {400, 100}), 64).size(), QSize(64, 16)) << format;
    EXPECT_EQ(thumbnail(encoded(format, {10, 4000}), 64).size(), QSize(1, 64)) << format;
    EXPECT_EQ(thumbnail(encoded(format, {20, 10}), 64).size(), QSize(20, 10)) << format;
  }
}

TEST(Thumbnail, BrokenHugeAndOddPicturesAreRefused) {
  const std::string good = encoded("PNG", {50, 50});
  EXPECT_TRUE(thumbnail("", 64).isNull());
  EXPECT_TRUE(thumbnail("no picture at all", 64).isNull());
  EXPECT_TRUE(thumbnail(std::string_view(good).substr(0, 30), 64).isNull());
  EXPECT_TRUE(
      thumbnail("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>", 9).isNull());
  const std::pair<std::uint32_t, std::uint32_t> sizes[] = {
      {30'000, 30'000}, {40'000, 2}, {2, 40'000}, {0x7FFFFFFF, 0x7FFFFFFF}, {0, 5}, {9000, 9000}};
  for (const auto& [width, height] : sizes)
    EXPECT_TRUE(thumbnail(bomb(width, height), 64).isNull()) << width << "x" << height;
}

TEST(Thumbnail, NothingButARegularFileIsOpened) {
  TemporaryFolder folder;
  put(folder / "good.png", encoded("PNG", {50, 50}));
  EXPECT_FALSE(fileThumbnail(folder / "good.png", 64).isNull());
  ASSERT_EQ(::mkfifo((folder / "pipe.png").c_str(), 0600), 0);
  std::filesystem::create_symlink("loop.png", folder / "loop.png");
  std::filesystem::create_symlink("/dev/zero", folder / "zero.png");
  for (const char* name : {"pipe.png", "loop.png", "zero.png", "none.png", ""}) {
    EXPECT_TRUE(fileThumbnail(folder / name, 64).isNull()) << name;
    EXPECT_EQ(readBeginning(folder / name, 10), std::nullopt) << name;
  }
  put(folder / "text", "0123456789");
  EXPECT_EQ(readBeginning(folder / "text", 4), "0123");
  EXPECT_EQ(readBeginning(folder / "text", 40), "0123456789");
}

class ThumbnailsTest : public testing::Test {
protected:
  FolderFile picture(const std::string& name, double date = 1) {
    put(folder / name, encoded("PNG", {64, 64}));
    return {folder / name, {date}, 1, false};
  }
  void settle() {
    do
      loop.runBackground();
    while (loop.waitingBackground() > 0);
  }
  TemporaryFolder folder;
  test::ManualClock clock{{1000}};
  test::ManualRunLoop loop{clock};
};

TEST_F(ThumbnailsTest, AreMadeOnceAndAgainWhenTheFileChanged) {
  Thumbnails thumbnails(loop);
  int changes = 0;
  thumbnails.onChange = [&] { ++changes; };
  const FolderFile file = picture("a.png");
  EXPECT_TRUE(thumbnails.find(file, 32).isNull());
  EXPECT_TRUE(thumbnails.find(file, 32).isNull());
  settle();
  EXPECT_EQ(thumbnails.find(file, 32).size(), QSize(32, 32));
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(loop.waitingBackground(), 0U);
  FolderFile changed = file;
  changed.date = {2};
  EXPECT_TRUE(thumbnails.find(changed, 32).isNull());
  FolderFile none = file;
  none.path = folder / "none.png";
  thumbnails.find(none, 32);
  EXPECT_FALSE(thumbnails.hasFailed(none, 32));
  settle();
  EXPECT_TRUE(thumbnails.hasFailed(none, 32));
  thumbnails.find(none, 32);
  EXPECT_EQ(loop.waitingBackground(), 0U) << "what failed is not tried again";
}

TEST_F(ThumbnailsTest, StayWithinTheirBound) {
  // Two of these pictures, of 4 KB each.
  Thumbnails thumbnails(loop, 10'000);
  const FolderFile a = picture("a.png"), b = picture("b.png"), c = picture("c.png");
  for (const auto& file : {a, b}) {
    thumbnails.find(file, 32);
    settle();
  }
  EXPECT_FALSE(thumbnails.find(a, 32).isNull());
  thumbnails.find(c, 32);
  settle();
  EXPECT_FALSE(thumbnails.find(c, 32).isNull());
  EXPECT_FALSE(thumbnails.find(a, 32).isNull());
  EXPECT_TRUE(thumbnails.find(b, 32).isNull()) << "used least recently";
}

TEST_F(ThumbnailsTest, WhatWasAskedForLastComesFirstAndOldRequestsFallOff) {
  Thumbnails thumbnails(loop);
  std::vector<FolderFile> files;
  for (int i = 0; i < 400; ++i)
    files.push_back({folder / (std::to_string(i) + ".png"), {1}, 1, false});
  for (const auto& file : files)
    thumbnails.find(file, 32);
  settle();
  EXPECT_TRUE(thumbnails.hasFailed(files.back(), 32));
  EXPECT_FALSE(thumbnails.hasFailed(files[100], 32));
}

TEST_F(ThumbnailsTest, MayGoWhileOneIsMade) {
  auto thumbnails = std::make_unique<Thumbnails>(loop);
  thumbnails->find(picture("a.png"), 32);
  thumbnails.reset();
  settle();
}

} // namespace
} // namespace tavrin

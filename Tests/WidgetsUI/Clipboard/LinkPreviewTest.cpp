#include "TavrinWidgetsUI/Clipboard/LinkPreviewSource.h"

#include "TavrinWidgetsUI/Kit/Pictures/Thumbnail.h"
#include "Tests/Support/FakePlatform.h"

#include <QBuffer>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

using testing::ElementsAre;

std::string picture(const char* format, QSize size, QImage::Format pixels = QImage::Format_RGB32) {
  QImage image(size, pixels);
  image.fill(QColor(200, 40, 40, 120));
  QByteArray bytes;
  QBuffer buffer(&bytes);
  image.save(&buffer, format);
  return bytes.toStdString();
}

class LinkPreviewTest : public testing::Test {
protected:
  LinkPreviewTest() { http_.hosts = {{"site.com", {"93.184.216.34"}}, {"pics.org", {"1.1.1.1"}}}; }
  void fetch(const std::string& url) {
    preview_.reset();
    token_ = source_.fetch(url, [this](const LinkPreview& preview) { preview_ = preview; });
    turn();
  }
  void turn() {
    loop_.advance(0.01);
    loop_.runBackground();
    loop_.advance(0.01);
  }
  void answer(const std::string& url, const std::string& body, const std::string& type,
              int status = 200) {
    ASSERT_TRUE(http_.answer(url, {.status = status, .body = body, .contentType = type})) << url;
    turn();
  }
  FakePlatform platform_;
  ManualRunLoop& loop_ = platform_.loop;
  FakeHTTPClient& http_ = platform_.fakeHTTP;
  LinkPreviewSource source_{{loop_, platform_.fakeClock, [this]() -> HTTPClient& {
                               ++networks_;
                               return http_;
                             }}};
  int networks_ = 0;
  std::optional<LinkPreview> preview_;
  TokenPtr token_;
};

TEST_F(LinkPreviewTest, FetchesThePageAndThenItsPicture) {
  EXPECT_EQ(networks_, 0) << "the network waits for the first link";
  fetch("https://site.com/guide/tides");
  ASSERT_EQ(http_.requests.size(), 1u);
  EXPECT_EQ(http_.requests[0].sizeLimit, 512u * 1024);
  EXPECT_TRUE(http_.requests[0].excess == HTTPRequest::Excess::isCutOff);
  answer("tides",
         "<title>Tides</title><meta name=description content='When it comes'>"
         "<meta property=og:image content='../p.png'>",
         "text/html");
  ASSERT_EQ(http_.requests.size(), 2u);
  EXPECT_EQ(http_.requests[1].url, "https://site.com/p.png");
  EXPECT_EQ(http_.requests[1].sizeLimit, 2u * 1024 * 1024);
  EXPECT_TRUE(http_.requests[1].excess == HTTPRequest::Excess::fails);
  EXPECT_FALSE(preview_);
  answer("p.png", picture("PNG", {640, 320}), "image/png");
  ASSERT_TRUE(preview_);
  EXPECT_EQ(preview_->title, "Tides");
  EXPECT_EQ(preview_->description, "When it comes");
  ASSERT_TRUE(preview_->image);
  EXPECT_EQ(thumbnail(preview_->image->view(), 1000).size(), QSize(128, 64)) << "kept small";
  EXPECT_EQ(networks_, 1);
}

TEST_F(LinkPreviewTest, ThePicturesAddressIsSeenFromThePage) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"", "p.png", "https://site.com/a/p.png"},
      {"", "/p.png", "https://site.com/p.png"},
      {"", "//pics.org/p.png", "https://pics.org/p.png"},
      {"/c/", "p.png", "https://site.com/c/p.png"},
      {"https://pics.org/d/e", "p.png?x=1&amp;y=2", "https://pics.org/d/p.png?x=1&y=2"}};
  for (const auto& [base, image, wanted] : cases) {
    fetch("https://site.com/a/b");
    answer("site.com",
           fmt::format("<base href='{}'><meta property=og:image content='{}'>", base, image),
           "text/html");
    EXPECT_EQ(http_.urls.back(), wanted);
  }
}

TEST_F(LinkPreviewTest, WithoutAPictureTheWordsAreEnough) {
  const char* const page = "<title>Tides</title><meta property=og:image content='{}'>";
  const std::pair<const char*, std::string> pictures[] = {
      {"/p.png", "no picture"},
      {"/p.png", picture("PNG", {64, 64}).substr(0, 40)},
      {"/p.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"}};
  for (const auto& [address, bytes] : pictures) {
    fetch("https://site.com/a");
    answer("/a", fmt::format(fmt::runtime(page), address), "text/html; charset=utf-8");
    answer(address, bytes, "image/png");
    EXPECT_EQ(preview_, LinkPreview{"Tides"}) << address;
  }
  // Never asked for, as the hosts are not public or the addresses no web addresses.
  for (const char* address : {"http://127.0.0.1/p.png", "file:///etc/passwd", "data:image/png,x"}) {
    fetch("https://site.com/a");
    const auto count = http_.requests.size();
    answer("/a", fmt::format(fmt::runtime(page), address), "text/html");
    turn();
    EXPECT_EQ(preview_, LinkPreview{"Tides"}) << address;
    EXPECT_EQ(http_.requests.size(), count);
  }
}

TEST_F(LinkPreviewTest, OtherAnswersHaveNone) {
  fetch("https://site.com/a");
  answer("/a", "<title>Not found</title>", "text/html", 404);
  EXPECT_EQ(preview_, LinkPreview{});
  fetch("https://site.com/a");
  answer("/a", "<title>x</title>", "application/pdf");
  EXPECT_EQ(preview_, LinkPreview{});
  fetch("http://localhost/");
  EXPECT_EQ(preview_, LinkPreview{});
}

TEST_F(LinkPreviewTest, ALinkToAPictureShowsIt) {
  fetch("https://site.com/a.png");
  answer("a.png", picture("PNG", {20, 10}), "image/png");
  EXPECT_EQ(http_.requests.back().sizeLimit, 2u * 1024 * 1024);
  answer("a.png", picture("PNG", {20, 10}), "image/png");
  ASSERT_TRUE(preview_ && preview_->image);
  EXPECT_EQ(thumbnail(preview_->image->view(), 1000).size(), QSize(20, 10));
}

TEST_F(LinkPreviewTest, EightSecondsAreForBoth) {
  fetch("https://site.com/a");
  loop_.advance(6);
  answer("/a", "<title>Tides</title><meta property=og:image content=/p.png>", "text/html");
  loop_.advance(1.9);
  EXPECT_FALSE(preview_);
  loop_.advance(0.2);
  EXPECT_EQ(preview_, LinkPreview{"Tides"});
  EXPECT_EQ(http_.open(), 0);
}

TEST_F(LinkPreviewTest, ADroppedTokenEndsIt) {
  fetch("https://site.com/a");
  http_.answer("/a", {.status = 200, .body = "<title>x</title>", .contentType = "text/html"});
  token_.reset();
  turn();
  EXPECT_FALSE(preview_);
}

TEST(Thumbnail, SeeThroughPicturesStaySo) {
  const auto data = Data::fromText(picture("PNG", {300, 300}, QImage::Format_ARGB32));
  const auto file = packedThumbnail(data.view(), 64);
  ASSERT_TRUE(file);
  EXPECT_TRUE(file->view().starts_with("\x89PNG"));
  EXPECT_EQ(thumbnail(file->view(), 500).size(), QSize(64, 64));
  const auto opaque = packedThumbnail(picture("BMP", {300, 100}), 64);
  ASSERT_TRUE(opaque);
  EXPECT_TRUE(opaque->view().starts_with("\xFF\xD8"));
}

} // namespace
} // namespace tavrin::test

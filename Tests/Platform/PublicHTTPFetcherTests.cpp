#include "TavrinPlatform/Web/PublicHTTPFetcher.h"

#include "Tests/Support/FakeHTTPClient.h"

#include <gtest/gtest.h>

namespace tavrin::test {
namespace {

constexpr const char* site = "93.184.216.34";
constexpr const char* other = "1.1.1.1";

std::string pathOf(int number) {
  return std::string(1, '/') += std::to_string(number);
}

class PublicHTTPFetcherTest : public testing::Test {
protected:
  PublicHTTPFetcherTest() {
    http_.hosts = {{"site.com", {site}},
                   {"other.org", {other}},
                   {"two.com", {"2606:2800::1", site, "8.8.8.8"}},
                   {"inside.com", {"10.0.0.1"}},
                   {"half.com", {site, "127.0.0.1"}},
                   {"127.0.0.1", {"127.0.0.1"}},
                   {site, {site}}};
  }
  void get(const char* url) { get(PublicHTTPRequest{url}); }
  void get(const PublicHTTPRequest& request) {
    tokens_.push_back(
        fetcher_.get(request, [this](const auto& response) { answers_.push_back(response); }));
    loop_.advance(0.1);
  }
  void redirect(const std::string& from, const std::string& to, int status = 302) {
    ASSERT_TRUE(http_.answer(from, {.status = status, .body = {}, .location = to})) << from;
    loop_.advance(0.1);
  }
  bool isRefused() const { return answers_.size() == 1 && answers_[0].status == 0; }

  ManualClock clock_{Date{800'000'000}};
  ManualRunLoop loop_{clock_};
  FakeHTTPClient http_{loop_};
  PublicHTTPFetcher fetcher_{http_, loop_};
  std::vector<PublicHTTPResponse> answers_;
  std::vector<TokenPtr> tokens_;
};

TEST_F(PublicHTTPFetcherTest, GoesToTheAddressThatWasChecked) {
  get(PublicHTTPRequest{.url = "https://Site.com:8443/a?b#c", .sizeLimit = 99});
  ASSERT_EQ(http_.requests.size(), 1u);
  const HTTPRequest& request = http_.requests[0];
  EXPECT_EQ(request.url, "https://site.com:8443/a?b");
  EXPECT_EQ(request.address, site);
  EXPECT_EQ(request.sizeLimit, 99u);
  EXPECT_EQ(request.connectTimeLimit, 2);
  EXPECT_TRUE(request.redirects == HTTPRequest::Redirects::none);
  EXPECT_TRUE(answers_.empty());
  http_.answer("site", {.status = 200, .body = "page", .contentType = "text/html"});
  ASSERT_EQ(answers_.size(), 1u);
  EXPECT_EQ(answers_[0].body, "page");
  EXPECT_EQ(answers_[0].contentType, "text/html");
  EXPECT_EQ(answers_[0].url, "https://site.com:8443/a?b");
}

TEST_F(PublicHTTPFetcherTest, RefusesHostsThatAreNotPublicAndOtherAddresses) {
  for (const char* url :
       {"http://inside.com/", "http://half.com/", "http://unknown.com/", "http://127.0.0.1/",
        "http://2130706433/", "http://0x7f.1/", "http://[::1]/", "ftp://site.com/",
        "file:///etc/passwd", "javascript:alert(1)", "https://user:pw@site.com/", "https://",
        "site.com", "", "http://site.com:99999/", "http://site.com:22/", "https://site.com:25/",
        "http://site.com:0/", "https://site.com:1023/"}) {
    answers_.clear();
    get(url);
    EXPECT_TRUE(isRefused()) << url;
  }
  EXPECT_TRUE(http_.requests.empty());
}

TEST_F(PublicHTTPFetcherTest, ChecksEachRedirectAnew) {
  get("https://site.com/a/b");
  redirect("/a/b", "../c", 301);
  redirect("site.com/c", "//other.org/d", 308);
  ASSERT_EQ(http_.urls.back(), "https://other.org/d");
  EXPECT_EQ(http_.requests.back().address, other);
  redirect("other.org", "http://inside.com/secret");
  EXPECT_TRUE(isRefused());
  EXPECT_EQ(http_.requests.size(), 3u);
}

TEST_F(PublicHTTPFetcherTest, ALookUpThatChangesItsAnswerIsCheckedAgain) {
  get("http://site.com/1");
  http_.hosts["site.com"] = {"192.168.0.1"};
  redirect("/1", "/2");
  EXPECT_TRUE(isRefused());
  EXPECT_EQ(http_.requests.size(), 1u);
}

TEST_F(PublicHTTPFetcherTest, RedirectsThatCannotBeFollowed) {
  for (const char* target : {"", "ftp://site.com/", "file:///etc/passwd", "http://u:p@site.com/",
                             "http://127.0.0.1/", "data:text/html,x"}) {
    answers_.clear();
    get("http://site.com/");
    redirect("site.com", target);
    EXPECT_TRUE(isRefused()) << target;
  }
}

TEST_F(PublicHTTPFetcherTest, FollowsFiveRedirectsAndNoSixth) {
  get("http://site.com/0");
  for (int i = 0; i < 5; ++i)
    redirect(pathOf(i), pathOf(i + 1));
  http_.answer("/5", {.status = 404, .body = "gone"});
  ASSERT_EQ(answers_.size(), 1u);
  EXPECT_EQ(answers_[0].status, 404);
  answers_.clear();
  get("http://site.com/0");
  for (int i = 0; i < 6; ++i)
    redirect(pathOf(i), pathOf(i + 1));
  EXPECT_TRUE(isRefused());
}

TEST_F(PublicHTTPFetcherTest, TriesASecondAddressAndNoThird) {
  get("http://two.com/");
  EXPECT_EQ(http_.requests.back().address, "2606:2800::1");
  http_.answer("two", {});
  EXPECT_EQ(http_.requests.back().address, site);
  http_.answer("two", {});
  EXPECT_TRUE(isRefused());
  EXPECT_EQ(http_.requests.size(), 2u);
}

TEST_F(PublicHTTPFetcherTest, AllOfItHasOneTimeLimit) {
  get("http://site.com/0");
  loop_.advance(5);
  redirect("/0", "/1");
  loop_.advance(2.7);
  EXPECT_TRUE(answers_.empty());
  loop_.advance(0.2);
  EXPECT_TRUE(isRefused());
  EXPECT_EQ(http_.open(), 0);
}

TEST_F(PublicHTTPFetcherTest, OneAtATimeAndTheOthersWait) {
  get("http://site.com/1");
  get("http://other.org/2");
  get("http://site.com/3");
  ASSERT_EQ(http_.urls.size(), 1u);
  tokens_[1].reset();
  // The time of those that wait does not run.
  loop_.advance(7);
  http_.answer("/1", {.status = 200, .body = "1"});
  loop_.advance(7);
  ASSERT_EQ(http_.urls, (std::vector<std::string>{"http://site.com/1", "http://site.com/3"}));
  http_.answer("/3", {.status = 200, .body = "3"});
  ASSERT_EQ(answers_.size(), 2u);
  EXPECT_EQ(answers_[1].body, "3");
}

TEST_F(PublicHTTPFetcherTest, ADroppedTokenEndsItsRequest) {
  get("http://site.com/1");
  tokens_.clear();
  EXPECT_EQ(http_.open(), 0);
  get("http://site.com/2");
  EXPECT_EQ(http_.open(), 1);
  EXPECT_TRUE(answers_.empty());
}

TEST_F(PublicHTTPFetcherTest, TokensMayGoInTheAnswerAndAfterTheFetcher) {
  TokenPtr token;
  int answers = 0;
  {
    PublicHTTPFetcher fetcher(http_, loop_);
    token = fetcher.get({.url = "ftp://x"}, [&](const auto&) {
      ++answers;
      token.reset();
    });
    loop_.advance(1);
    EXPECT_EQ(answers, 1);
    token = fetcher.get({.url = "http://site.com/"}, [&](const auto&) { ++answers; });
    loop_.advance(1);
    EXPECT_EQ(http_.open(), 1);
  }
  EXPECT_EQ(http_.open(), 0);
  loop_.advance(20);
  EXPECT_EQ(answers, 1);
}

} // namespace
} // namespace tavrin::test

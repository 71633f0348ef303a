#include "TavrinPlatform/Web/PublicHTTPFetcher.h"

#include "TavrinPlatform/Qt/QtHTTPClient.h"
#include "Tests/Linux/Services/HTTPServer.h"
#include "Tests/Linux/Services/LoopTest.h"

namespace tavrin::test {
namespace {

constexpr const char* siteAddress = "93.184.216.34";

/// Public names and addresses lead to a server on this computer, all others where they always do.
class ReroutedHTTPClient final : public HTTPClient {
public:
  TokenPtr get(const HTTPRequest& request, std::function<void(const HTTPResponse&)> done) override {
    HTTPRequest rerouted = request;
    addresses.push_back(request.address);
    if (request.address == siteAddress)
      rerouted.address = "127.0.0.1";
    return client_.get(rerouted, std::move(done));
  }
  TokenPtr resolve(const std::string& host,
                   std::function<void(const std::vector<std::string>&)> done) override {
    if (host == "site.com")
      return client_.resolve(siteAddress, std::move(done));
    return client_.resolve(host, std::move(done));
  }
  TokenPtr observeNetwork(std::function<void()>) override { return nullptr; }

  std::vector<std::string> addresses;

private:
  QtHTTPClient client_;
};

class PublicHTTPFetcherServiceTest : public LoopTest {
protected:
  std::string site(const std::string& path, const std::string& host = "site.com") const {
    return "http://" + host + ":" + std::to_string(server_.serverPort()) + path;
  }
  PublicHTTPResponse get(const PublicHTTPRequest& request) {
    return *answerOf<PublicHTTPResponse>(
        [&](auto done) { return fetcher_.get(request, std::move(done)); });
  }
  HTTPServer server_;
  ReroutedHTTPClient http_;
  PublicHTTPFetcher fetcher_{http_, loop_};
};

TEST_F(PublicHTTPFetcherServiceTest, AsksInTheHostsNameAndSaysNothingOfTheUser) {
  server_.answer = HTTPServer::whole("<title>x</title>", "200 OK",
                                     "Content-Type: text/html; charset=x\r\nSet-Cookie: a=b\r\n");
  const auto response = get({.url = site("/page?q=1")});
  EXPECT_EQ(response.status, 200);
  EXPECT_EQ(response.body, "<title>x</title>");
  EXPECT_EQ(response.contentType, "text/html; charset=x");
  get({.url = site("/second")});
  ASSERT_EQ(server_.requests.size(), 2u);
  EXPECT_TRUE(server_.requests[0].starts_with("GET /page?q=1 HTTP/1.1\r\n"));
  const std::string host = "Host: site.com:" + std::to_string(server_.serverPort()) + "\r\n";
  for (const auto& request : server_.requests) {
    EXPECT_NE(request.find(host), std::string::npos) << request;
    EXPECT_NE(request.find("User-Agent: Tavrin/1.0\r\n"), std::string::npos) << request;
    for (const char* header : {"Cookie:", "Referer:", "Authorization:", "127.0.0.1"})
      EXPECT_EQ(request.find(header), std::string::npos) << request;
  }
}

TEST_F(PublicHTTPFetcherServiceTest, AProxyIsNotToldAnAddressForTheName) {
  server_.answer = HTTPServer::whole("page");
  qputenv("http_proxy", QByteArray::fromStdString(server_.url("")));
  EXPECT_EQ(get({.url = site("/page")}).status, 0);
  EXPECT_TRUE(server_.requests.empty());
  qunsetenv("http_proxy");
  EXPECT_EQ(get({.url = site("/page")}).status, 200);
}

TEST_F(PublicHTTPFetcherServiceTest, NeverReachesThisComputerByItsOwnNames) {
  server_.answer = HTTPServer::whole("secret");
  for (const char* host :
       {"127.0.0.1", "localhost", "[::1]", "[::ffff:127.0.0.1]", "0.0.0.0", "2130706433", "127.1"})
    EXPECT_EQ(get({.url = site("/", host)}).status, 0) << host;
  server_.answer =
      HTTPServer::whole("", "302 Found", "Location: " + site("/secret", "localhost") + "\r\n");
  EXPECT_EQ(get({.url = site("/")}).status, 0);
  EXPECT_EQ(server_.requests.size(), 1u);
}

TEST_F(PublicHTTPFetcherServiceTest, FollowsRedirectsItself) {
  server_.answer = HTTPServer::whole("", "301 Moved", "Location: /again\r\n");
  EXPECT_EQ(get({.url = site("/")}).status, 0);
  EXPECT_EQ(server_.requests.size(), 6u);
  EXPECT_EQ(http_.addresses, std::vector<std::string>(6, siteAddress));
}

TEST_F(PublicHTTPFetcherServiceTest, ALongAnswerFailsOrIsCutOff) {
  const std::string page(900'000, 'x');
  for (const auto& answer :
       {HTTPServer::whole(page), "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + page}) {
    server_.answer = answer;
    EXPECT_EQ(get({.url = site("/"), .sizeLimit = 512 * 1024}).status, 0);
    const auto cut =
        get({.url = site("/"), .sizeLimit = 512 * 1024, .excess = HTTPRequest::Excess::isCutOff});
    EXPECT_EQ(cut.status, 200);
    EXPECT_EQ(cut.body.size(), 512u * 1024);
  }
}

TEST_F(PublicHTTPFetcherServiceTest, ASlowAnswerEndsAtTheTimeLimit) {
  server_.staysOpen = true;
  server_.answer = "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf";
  QElapsedTimer timer;
  timer.start();
  EXPECT_EQ(get({.url = site("/"), .timeLimit = 0.3}).status, 0);
  EXPECT_LT(timer.elapsed(), 3000);
}

} // namespace
} // namespace tavrin::test

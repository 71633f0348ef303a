#include "TavrinPlatform/Linux/Modules/QtHTTPClient.h"

#include "Tests/Linux/Services/LocalServer.h"
#include "Tests/Linux/Services/LoopTest.h"

namespace tavrin::test {
namespace {

class QtHTTPClientTest : public LoopTest {
protected:
  HTTPResponse get(double timeLimit = 5, std::size_t sizeLimit = 1024 * 1024) {
    return *answerOf<HTTPResponse>([&](auto done) {
      return client_.get({server_.url(), timeLimit, sizeLimit}, done);
    });
  }
  LocalServer server_;
  QtHTTPClient client_;
};

TEST_F(QtHTTPClientTest, AnswersWithStatusAndBody) {
  server_.answer = LocalServer::whole("{\"a\":1}");
  const auto response = get();
  EXPECT_EQ(response.status, 200);
  EXPECT_EQ(response.body, "{\"a\":1}");
  server_.answer = LocalServer::whole("no", "404 Not Found");
  EXPECT_EQ(get().status, 404);
  EXPECT_EQ(get().isSuccess(), false);
  server_.answer = LocalServer::whole("", "500 Oops");
  EXPECT_EQ(get().status, 500);
}

TEST_F(QtHTTPClientTest, WhatIsNoWholeAnswerHasNoStatus) {
  for (const std::string& answer :
       {std::string("garbage\r\n\r\n"), std::string(),
        std::string("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf")}) {
    server_.answer = answer;
    EXPECT_EQ(get().status, 0) << answer;
  }
}

TEST_F(QtHTTPClientTest, ASlowAnswerEndsAtTheTimeLimit) {
  server_.staysOpen = true;
  server_.answer = "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf";
  QElapsedTimer timer;
  timer.start();
  EXPECT_EQ(get(0.2).status, 0);
  EXPECT_LT(timer.elapsed(), 3000);
}

TEST_F(QtHTTPClientTest, ALongAnswerIsRefusedWhetherItSaysSoOrNot) {
  server_.answer = LocalServer::whole(std::string(100 * 1024 * 1024, 'x'));
  EXPECT_EQ(get(10, 1024).status, 0);
  server_.answer = "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + std::string(400'000, 'x');
  EXPECT_EQ(get(10, 300'000).status, 0);
  EXPECT_EQ(get(10, 500'000).body.size(), 400'000u);
}

TEST_F(QtHTTPClientTest, ARedirectToAnotherHostIsRefused) {
  LocalServer other;
  other.answer = LocalServer::whole("stolen");
  server_.answer = LocalServer::whole("", "302 Found", "Location: " + other.url() + "\r\n");
  EXPECT_EQ(get().status, 0);
  EXPECT_TRUE(other.requests.empty());
}

TEST_F(QtHTTPClientTest, ADroppedTokenEndsTheRequest) {
  server_.staysOpen = true;
  bool isAnswered = false;
  auto token = client_.get({server_.url()}, [&](const auto&) { isAnswered = true; });
  EXPECT_TRUE(waitFor([&] { return !server_.requests.empty(); }));
  token.reset();
  server_.staysOpen = false;
  server_.answer = LocalServer::whole("x");
  get();
  EXPECT_FALSE(isAnswered);
}

} // namespace
} // namespace tavrin::test

#include "TavrinPlatform/Qt/QtHTTPClient.h"

#include "Tests/Linux/Services/HTTPServer.h"
#include "Tests/Linux/Services/LoopTest.h"

#include <QFile>
#include <QProcess>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTemporaryDir>
#include <gmock/gmock.h>

namespace tavrin::test {
namespace {

class QtHTTPClientTest : public LoopTest {
protected:
  HTTPResponse get(double timeLimit = 5, std::size_t sizeLimit = 1024 * 1024) {
    return *answerOf<HTTPResponse>([&](auto done) {
      return client_.get({server_.url(), timeLimit, sizeLimit}, done);
    });
  }
  HTTPServer server_;
  QtHTTPClient client_;
};

TEST_F(QtHTTPClientTest, AnswersWithStatusAndBody) {
  server_.answer = HTTPServer::whole("{\"a\":1}");
  const auto response = get();
  EXPECT_EQ(response.status, 200);
  EXPECT_EQ(response.body, "{\"a\":1}");
  server_.answer = HTTPServer::whole("no", "404 Not Found");
  EXPECT_EQ(get().status, 404);
  EXPECT_EQ(get().isSuccess(), false);
  server_.answer = HTTPServer::whole("", "500 Oops");
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
  server_.answer = HTTPServer::whole(std::string(100 * 1024 * 1024, 'x'));
  EXPECT_EQ(get(10, 1024).status, 0);
  server_.answer = "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + std::string(400'000, 'x');
  EXPECT_EQ(get(10, 300'000).status, 0);
  EXPECT_EQ(get(10, 500'000).body.size(), 400'000u);
}

TEST_F(QtHTTPClientTest, ARedirectToAnotherHostIsRefused) {
  HTTPServer other;
  other.answer = HTTPServer::whole("stolen");
  server_.answer = HTTPServer::whole("", "302 Found", "Location: " + other.url() + "\r\n");
  EXPECT_EQ(get().status, 0);
  EXPECT_TRUE(other.requests.empty());
}

TEST_F(QtHTTPClientTest, KnowsAnAddressWithoutAskingForItsName) {
  const auto addresses = [this](const char* host) {
    return *answerOf<std::vector<std::string>>(
        [&](auto done) { return client_.resolve(host, std::move(done)); });
  };
  EXPECT_EQ(addresses("192.0.2.7"), std::vector<std::string>{"192.0.2.7"});
  EXPECT_EQ(addresses("::1"), std::vector<std::string>{"::1"});
  EXPECT_THAT(addresses("localhost"), testing::Contains("127.0.0.1"));
  EXPECT_TRUE(addresses("nowhere.invalid").empty());
}

TEST_F(QtHTTPClientTest, AServerThatDoesNotAcceptEndsAtTheConnectLimit) {
  // A TLS greeting that is never answered: connected, but nothing could be asked yet.
  HTTPServer silent;
  silent.staysOpen = true;
  QElapsedTimer timer;
  timer.start();
  const auto response = *answerOf<HTTPResponse>([&](auto done) {
    HTTPRequest request{"https://localhost:" + std::to_string(silent.serverPort())};
    request.connectTimeLimit = 0.2;
    return client_.get(request, done);
  });
  EXPECT_EQ(response.status, 0);
  EXPECT_LT(timer.elapsed(), 3000);
}

TEST_F(QtHTTPClientTest, AtAGivenAddressTheCertificateIsStillTheHosts) {
  const QTemporaryDir folder;
  const auto path = [&](const char* name) { return folder.filePath(QLatin1String(name)); };
  ASSERT_EQ(QProcess::execute("openssl",
                              {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2",
                               "-subj", "/CN=site.com", "-addext", "subjectAltName=DNS:site.com",
                               "-keyout", path("key"), "-out", path("certificate")}),
            0);
  QFile keyFile(path("key"));
  ASSERT_TRUE(keyFile.open(QIODevice::ReadOnly));
  const auto certificates = QSslCertificate::fromPath(path("certificate"));
  ASSERT_EQ(certificates.size(), 1);
  QSslServer server;
  QSslConfiguration identity = QSslConfiguration::defaultConfiguration();
  identity.setLocalCertificate(certificates.first());
  identity.setPrivateKey(QSslKey(&keyFile, QSsl::Rsa));
  server.setSslConfiguration(identity);
  QObject::connect(&server, &QTcpServer::pendingConnectionAvailable, &server, [&] {
    auto* socket = server.nextPendingConnection();
    const auto answer = [socket] {
      if (socket->readAll().contains("\r\n\r\n"))
        socket->write(QByteArray::fromStdString(HTTPServer::whole("secret")));
    };
    QObject::connect(socket, &QTcpSocket::readyRead, socket, answer);
    // The request may have come along with the handshake's end.
    answer();
  });
  ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
  const auto statusFor = [&](const std::string& host) {
    HTTPRequest request{"https://" + host + ":" + std::to_string(server.serverPort()) + "/"};
    request.address = "127.0.0.1";
    // What a connection trusts is settled when its host is first asked.
    QtHTTPClient client;
    return answerOf<HTTPResponse>([&](auto done) { return client.get(request, done); })->status;
  };
  EXPECT_EQ(statusFor("site.com"), 0) << "nobody vouches for it";
  const auto before = QSslConfiguration::defaultConfiguration();
  QSslConfiguration trusting = before;
  trusting.addCaCertificate(certificates.first());
  QSslConfiguration::setDefaultConfiguration(trusting);
  EXPECT_EQ(statusFor("site.com"), 200);
  EXPECT_EQ(statusFor("other.com"), 0) << "another host's certificate";
  QSslConfiguration::setDefaultConfiguration(before);
}

TEST_F(QtHTTPClientTest, ADroppedTokenEndsTheRequest) {
  server_.staysOpen = true;
  bool isAnswered = false;
  auto token = client_.get({server_.url()}, [&](const auto&) { isAnswered = true; });
  EXPECT_TRUE(waitFor([&] { return !server_.requests.empty(); }));
  token.reset();
  server_.staysOpen = false;
  server_.answer = HTTPServer::whole("x");
  get();
  EXPECT_FALSE(isAnswered);
}

} // namespace
} // namespace tavrin::test

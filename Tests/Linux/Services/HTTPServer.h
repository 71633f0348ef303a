#pragma once

#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <string>
#include <utility>
#include <vector>

namespace tavrin::test {

/// Answers every request with the bytes given, and may keep the connection open.
class HTTPServer : public QTcpServer {
public:
  HTTPServer() {
    listen(QHostAddress::LocalHost);
    connect(this, &QTcpServer::newConnection, this, [this] {
      auto* socket = nextPendingConnection();
      connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
        requests.push_back(socket->readAll().toStdString());
        if (isSilent)
          waiting_.push_back(socket);
        else
          reply(*socket);
      });
    });
  }
  std::string url(const char* path = "/v1/forecast") const {
    return "http://127.0.0.1:" + std::to_string(serverPort()) + path;
  }
  static std::string whole(const std::string& body, const std::string& status = "200 OK",
                           const std::string& headers = {}) {
    return "HTTP/1.1 " + status + "\r\n" + headers +
           "Content-Length: " + std::to_string(body.size()) + "\r\nConnection: close\r\n\r\n" +
           body;
  }

  /// Answers what came while it was silent, and speaks from now on.
  void speak() {
    isSilent = false;
    for (const auto& socket : std::exchange(waiting_, {}))
      if (socket)
        reply(*socket);
  }

  std::string answer;
  bool staysOpen = false;
  bool isSilent = false;
  std::vector<std::string> requests;

private:
  void reply(QTcpSocket& socket) const {
    socket.write(answer.data(), static_cast<qint64>(answer.size()));
    if (!staysOpen)
      socket.disconnectFromHost();
  }
  std::vector<QPointer<QTcpSocket>> waiting_;
};

} // namespace tavrin::test

#include "TavrinCore/Text/ForeignText.h"
#include "TavrinPlatform/Linux/Base/BusProperties.h"
#include "TavrinPlatform/Linux/Desktop/LinuxNotificationCenter.h"
#include "TavrinPlatform/Linux/Tile/TraySurface.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "Tests/Linux/Desk.h"
#include "Tests/Support/HostileTexts.h"

#include <QCoreApplication>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

/// Foreign text as it arrives at the other end of a real bus: at a notification server that reads
/// bodies as markup, and at a host of tray icons.
namespace tavrin {
namespace {

constexpr std::size_t count = 10'000;

bool steers(const std::string& text) {
  for (const char* mark : {"\x1b", "\r", "\x07", "\u202E", "\u2066", "\u2069", "\u200F", "\u200E",
                           "\u061C", "\u2028", "\u009B", "\uFEFF"})
    if (text.find(mark) != std::string::npos)
      return true;
  return !QByteArrayView(text).isValidUtf8();
}

/// What a reader of the markup sees; none where it is no markup, or has elements.
std::optional<std::string> seen(const std::string& markup) {
  QXmlStreamReader reader(QByteArray("<t>") + QByteArray::fromStdString(markup) + "</t>");
  reader.readNextStartElement();
  const QString text = reader.readElementText(QXmlStreamReader::ErrorOnUnexpectedElement);
  return reader.hasError() ? std::nullopt : std::optional(text.toStdString());
}

struct Silence final : LogSink {
  void write(LogLevel, std::string_view, std::string_view, std::string_view) override {}
};

/// A notification server that keeps what it is told.
struct NoticeServer {
  struct Notice {
    std::string title;
    std::string body;
  };
  NoticeServer() {
    service =
        bus->serve("/org/freedesktop/Notifications", "org.freedesktop.Notifications", vtable, this);
    bus->requestName("org.freedesktop.Notifications", [this](bool isOwner) { isThere = isOwner; });
  }
  static int capabilities(sd_bus_message* call, void*, sd_bus_error*) {
    return sd_bus_reply_method_return(call, "as", 2, "body", "body-markup");
  }
  static int notify(sd_bus_message* call, void* self, sd_bus_error*) {
    auto& notices = static_cast<NoticeServer*>(self)->notices;
    const char* title = "";
    const char* body = "";
    sd_bus_message_skip(call, "sus");
    sd_bus_message_read(call, "ss", &title, &body);
    notices.push_back({title, body});
    return sd_bus_reply_method_return(call, "u", static_cast<std::uint32_t>(notices.size()));
  }
  static const sd_bus_vtable vtable[];

  std::unique_ptr<Bus> bus = Bus::session();
  TokenPtr service;
  bool isThere = false;
  std::vector<Notice> notices;
};
const sd_bus_vtable NoticeServer::vtable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("GetCapabilities", "", "as", &NoticeServer::capabilities,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Notify", "susssasa{sv}i", "u", &NoticeServer::notify,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END};

TEST(ForeignTextOnTheBus, ANoticeSaysItLetterByLetter) {
  NoticeServer server;
  ASSERT_TRUE(untilTrue([&] { return server.isThere; }));
  const auto bus = Bus::session();
  QtRunLoop loop;
  Silence log;
  LinuxNotificationCenter center(bus.get(), loop, "/nowhere", log);
  const auto texts = hostileTexts(count);
  constexpr std::size_t batch = 200;
  for (std::size_t from = 0; from < texts.size(); from += batch) {
    for (std::size_t i = from; i < from + batch; ++i)
      // The title says which it is: the server's order is its own.
      center.add({"id" + std::to_string(i), std::to_string(i) + " " + texts[i], texts[i], 0});
    ASSERT_TRUE(untilTrue([&] { return server.notices.size() >= from + batch; })) << from;
  }
  EXPECT_EQ(server.notices.size(), texts.size());
  for (const auto& [title, body] : server.notices) {
    const std::string& text = texts.at(static_cast<std::size_t>(std::stoi(title)));
    ASSERT_FALSE(steers(title)) << title;
    ASSERT_FALSE(steers(body)) << body;
    // A body without marks of markup needs no escapes.
    const auto shown = seen(body);
    ASSERT_TRUE(shown) << body;
    ASSERT_EQ(*shown, plainText(text, 1000)) << body;
    ASSERT_LT(title.size() + body.size(), 40'000U);
  }
}

TEST(ForeignTextOnTheBus, ATrayHostGetsItLetterByLetter) {
  const auto bus = Bus::session();
  const auto host = Bus::session();
  TraySurface surface(*bus, "dev.test.Slot1");
  const char* name = nullptr;
  ASSERT_GE(sd_bus_get_unique_name(bus->handle(), &name), 0);
  const BusAddress item{name, "/StatusNotifierItem", "org.freedesktop.DBus.Properties"};
  for (const std::string& text : hostileTexts(count)) {
    surface.setLabel(text, text);
    std::string title;
    std::string tip;
    int answers = 0;
    const auto ask = [&](const char* property, const auto& read) {
      BusMessage call = host->method(item, "Get");
      host->call(call.append("ss", "org.kde.StatusNotifierItem", property),
                 [&answers, read](sd_bus_message* reply, const std::string&) {
                   if (reply != nullptr && read(reply))
                     ++answers;
                 });
    };
    ask("Title", [&](sd_bus_message* reply) {
      const char* words = nullptr;
      return sd_bus_message_read(reply, "v", "s", &words) > 0 && !(title = words).empty();
    });
    ask("ToolTip", [&](sd_bus_message* reply) {
      const char* words = nullptr;
      if (sd_bus_message_enter_container(reply, 'v', "(sa(iiay)ss)") <= 0 ||
          sd_bus_message_enter_container(reply, 'r', "sa(iiay)ss") <= 0 ||
          sd_bus_message_skip(reply, "sa(iiay)s") < 0 ||
          sd_bus_message_read(reply, "s", &words) <= 0)
        return false;
      tip = words;
      return true;
    });
    // A text of invisible marks alone has nothing to say.
    const std::string plain = plainText(text, 500);
    ASSERT_TRUE(untilTrue([&] { return answers == (plain.empty() ? 1 : 2); })) << text;
    ASSERT_EQ(title, plain);
    ASSERT_FALSE(steers(title)) << title;
    ASSERT_FALSE(steers(tip)) << tip;
    ASSERT_EQ(seen(tip), plain) << tip;
  }
}

} // namespace
} // namespace tavrin

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}

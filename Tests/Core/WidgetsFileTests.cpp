#include "TavrinCore/Kinds/Collection/CollectionSettings.h"
#include "TavrinCore/Widgets/WidgetsFile.h"

#include "TavrinCore/Widgets/DockSlot.h"
#include "TavrinCore/Widgets/DockTileGeometry.h"
#include "TavrinCore/Widgets/WidgetAddress.h"
#include "TavrinCore/Widgets/WidgetStack.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

const std::string good =
    R"({"id":"6B29FC40-CA47-1067-B31D-00DD010662DA","kind":{"clock":{"_0":{}}},"name":"Good","slot":1})";

WidgetsFile read(const std::string& entries) {
  return decode<WidgetsFile>(JSONValue::parse(R"({"version":1,"widgets":[)" + entries + "]}"));
}

UUID uuid(const std::string& text) {
  return UUID::parse(text).value();
}

TEST(WidgetsFile, UnknownEntriesComeBackAsWritten) {
  const std::string entries[] = {
      R"({"id":"x","kind":{"hologram":{"_0":{"n":1e400}}},"name":"H"})",
      R"({"big":12345678901234567890123,"one":1.0,"small":1E-9,"zero":-0,"zero2":-0.0})",
      R"(null)",
      R"(true)",
      R"([1.50,[],{}])",
      R"(12345678901234567890123)",
      R"("text \" \\ \u0001 é 𝄞")",
  };
  std::string joined;
  for (const auto& entry : entries)
    joined += (joined.empty() ? "" : ",") + entry;
  const auto file = read(joined + "," + good);
  ASSERT_EQ(file.widgets.size(), 1u);
  ASSERT_EQ(file.unrecognized.size(), std::size(entries));
  const auto text = encode(file).prettyPrinted();
  const auto again = decode<WidgetsFile>(JSONValue::parse(text));
  EXPECT_EQ(again, file);
  for (std::size_t i = 0; i < std::size(entries); ++i) {
    EXPECT_EQ(file.unrecognized[i].raw.compact(), entries[i]);
    EXPECT_EQ(JSONValue::parse(text).member("widgets")->array()->at(i + 1).compact(), entries[i]);
  }
}

TEST(WidgetsFile, ABadFieldNeverCostsAGoodEntry) {
  const char* const keys[] = {"id", "name", "slot", "kind", "span"};
  std::string deep(200, '[');
  deep += std::string(200, ']');
  const std::string values[] = {"true",
                                "-1.5",
                                "1e400",
                                R"("")",
                                R"("text")",
                                "[]",
                                "[[{}]]",
                                "{}",
                                R"({"clock":1})",
                                deep,
                                "123456789012345678901234567890",
                                '"' + std::string(100'000, 'x') + '"'};
  for (const auto* key : keys) {
    for (const auto& value : values) {
      auto entry = JSONValue::parse(
          R"({"id":"00000000-0000-4000-8000-000000000001","kind":{"timer":{"_0":{}}},"name":"T","slot":2,"span":1})");
      (*entry.object())[key] = JSONValue::parse(value);
      const auto file = read(good + "," + entry.compact() + "," + good);
      const bool isText = value.front() == '"';
      EXPECT_EQ(file.widgets.size(), std::string(key) == "name" && isText ? 3u : 2u)
          << key << ": " << value.substr(0, 50);
      EXPECT_EQ(file.widgets.size() + file.unrecognized.size(), 3u);
      EXPECT_EQ(decode<WidgetsFile>(JSONValue::parse(encode(file).prettyPrinted())), file);
    }
    auto missing = JSONValue::parse(good);
    missing.object()->erase(key);
    const bool isOptional = std::string(key) == "slot" || std::string(key) == "span";
    EXPECT_EQ(read(missing.compact()).widgets.size(), isOptional ? 1u : 0u) << key;
  }
}

/// A wrong value for every setting of every kind makes the entry unrecognized and leaves the
/// other one.
TEST(WidgetsFile, EverySettingOfEveryKindWrongInTurn) {
  for (const auto& info : allKinds()) {
    const auto kind = *freshKind(info.key, Date{0});
    for (const auto& field : describeSettings(kind)) {
      auto settings = settingsJSON(kind);
      const bool takesText = field.type == FieldType::text;
      (*settings.object())[field.key] = takesText ? JSONValue(false) : JSONValue("no such thing");
      EXPECT_THROW(withSettings(kind, settings), CodingError) << info.key << "." << field.key;
      auto entry = JSONValue::parse(good);
      auto kindJSON = encode(kind);
      auto& payload = kindJSON.object()->begin()->second;
      (payload.member("_0") ? payload.object()->at("_0") : payload) = settings;
      (*entry.object())["kind"] = kindJSON;
      const auto file = read(entry.compact() + "," + good);
      ASSERT_EQ(file.widgets.size(), 1u) << entry.compact();
      EXPECT_EQ(file.unrecognized.front().raw, entry);
    }
  }
}

TEST(WidgetsFile, FaultsOfTheWholeFile) {
  const char* const cases[] = {"[]",
                               "null",
                               "5",
                               "{}",
                               R"({"version":1})",
                               R"({"widgets":[]})",
                               R"({"version":"1","widgets":[]})",
                               R"({"version":1.5,"widgets":[]})",
                               R"({"version":1,"widgets":{}})",
                               R"({"version":1,"widgets":null})"};
  for (const auto* text : cases)
    EXPECT_THROW(decode<WidgetsFile>(JSONValue::parse(text)), CodingError) << text;
  EXPECT_THROW(read(std::string(1'000'000, '[')), JSONError);
  EXPECT_THROW(read(std::string(1'000'000, '[') + std::string(1'000'000, ']')), JSONError);
  EXPECT_EQ(decode<WidgetsFile>(JSONValue::parse(R"({"version":7,"widgets":[]})")).version, 7);
  EXPECT_EQ(encode(decode<WidgetsFile>(JSONValue::parse(R"({"version":5000000000,"widgets":[]})")))
                .compact(),
            R"({"version":5000000000,"widgets":[]})");
}

TEST(WidgetsFile, FreeSlot) {
  const auto entryIn = [](const std::string& slot) { return R"({"slot":)" + slot + "}"; };
  const auto widgetIn = [](int slot) {
    auto json = JSONValue::parse(good);
    (*json.object())["slot"] = slot;
    return json.compact();
  };
  const std::pair<std::string, std::optional<int>> cases[] = {
      {"", 1},
      {widgetIn(1) + "," + widgetIn(2) + "," + widgetIn(4), 3},
      {widgetIn(1) + "," + entryIn("2") + "," + entryIn("3.0"), 4},
      {widgetIn(1) + "," + entryIn("2.5") + "," + entryIn("\"2\"") + "," + entryIn("1e400"), 2},
      {widgetIn(13) + "," + widgetIn(0) + "," + widgetIn(-1), 1},
      {widgetIn(1) + R"(,null,[2],"slot")", 2},
  };
  for (const auto& [entries, expected] : cases)
    EXPECT_EQ(read(entries).freeSlot(), expected) << entries;

  std::string all = widgetIn(1);
  for (int slot = 2; slot <= 11; ++slot)
    all += "," + widgetIn(slot);
  EXPECT_EQ(read(all).freeSlot(), 12);
  EXPECT_EQ(read(all + "," + entryIn("12")).freeSlot(), std::nullopt);
  // Without the unrecognized entries, the same widgets leave slot 12 free.
  EXPECT_EQ(DockSlot::freeSlot(read(all + "," + entryIn("12")).widgets), 12);
}

TEST(WidgetsFile, LegacyCollections) {
  const auto file = WidgetsFile::migrating(JSONValue::parse(R"({"collections":[
      {"id":"6b29fc40-ca47-1067-b31d-00dd010662da","name":"Work","slot":3,
       "apps":[{"path":"/Applications/Mail.app","displayName":"Mail"},{"path":"/b","tile":"AAE="}]},
      {"id":"00000000-0000-4000-8000-000000000002","name":"","apps":[],"slot":null}]})"));
  ASSERT_EQ(file.widgets.size(), 2u);
  EXPECT_EQ(file.version, 1);
  EXPECT_TRUE(file.unrecognized.empty());
  const auto& work = file.widgets[0];
  EXPECT_EQ(work.id.text(), "6B29FC40-CA47-1067-B31D-00DD010662DA");
  EXPECT_EQ(work.slot, 3);
  EXPECT_EQ(work.span, 1);
  ASSERT_NE(work.kind.get<CollectionSettings>(), nullptr);
  EXPECT_EQ(work.kind.get<CollectionSettings>()->layout, CollectionLayout::grid);
  EXPECT_EQ(work.kind.get<CollectionSettings>()->apps[1].tile->bytes,
            (std::vector<std::uint8_t>{0, 1}));
  EXPECT_EQ(file.widgets[1].slot, std::nullopt);
  for (const auto* text : {"{}", "[]", R"({"collections":[{"name":"x"}]})"})
    EXPECT_THROW(WidgetsFile::migrating(JSONValue::parse(text)), CodingError) << text;
}

TEST(DockSlot, Identifiers) {
  const auto id = uuid("6b29fc40-ca47-1067-b31d-00dd010662da");
  EXPECT_EQ(DockSlot::bundleIdentifier(3), "dev.quellby.Tavrin.Slot3");
  EXPECT_EQ(DockSlot::bundleName(12), "Tavrin Slot 12.app");
  EXPECT_EQ(DockSlot::widgetBundleIdentifier(id),
            "dev.quellby.Tavrin.Widget.6B29FC40-CA47-1067-B31D-00DD010662DA");
  const std::pair<const char*, bool> own[] = {
      {"dev.quellby.Tavrin", true},  {"dev.quellby.Tavrin.Slot1", true},
      {"dev.quellby.Tavrin.", true}, {"dev.quellby.Tavrina", false},
      {"dev.quellby.tavrin", false}, {"", false}};
  for (const auto& [identifier, expected] : own)
    EXPECT_EQ(DockSlot::isTavrin(identifier), expected) << identifier;
}

TEST(WidgetAddress, FromBundleIdentifiers) {
  const std::pair<std::string, const char*> cases[] = {
      {"dev.quellby.Tavrin.Slot7", "slot7"},
      {"dev.quellby.Tavrin.Slot1", "slot1"},
      {"dev.quellby.Tavrin.Slot12", "slot12"},
      {"dev.quellby.Tavrin.Slot0", ""},
      {"dev.quellby.Tavrin.Slot13", ""},
      {"dev.quellby.Tavrin.Slot", ""},
      {"dev.quellby.Tavrin.Slot3x", ""},
      {"dev.quellby.Tavrin.Slot 3", ""},
      {"dev.quellby.Tavrin.Slot99999999999", ""},
      {"dev.quellby.Tavrin.Widget.6b29fc40-ca47-1067-b31d-00dd010662da",
       "6B29FC40-CA47-1067-B31D-00DD010662DA"},
      {"dev.quellby.Tavrin.Widget.6b29fc40", ""},
      {"dev.quellby.Tavrin", ""},
      {"", ""}};
  for (const auto& [identifier, key] : cases) {
    const auto address = WidgetAddress::fromBundleIdentifier(identifier);
    EXPECT_EQ(address ? address->key() : "", key) << identifier;
    const auto again = address ? address->bundleIdentifier() : std::string();
    EXPECT_EQ(WidgetAddress::fromBundleIdentifier(again), address) << again;
  }
}

TEST(WidgetAddress, Matches) {
  auto widget = read(good).widgets.front();
  EXPECT_EQ(WidgetAddress(widget), WidgetAddress::ofSlot(1));
  EXPECT_TRUE(WidgetAddress::ofSlot(1).matches(widget));
  EXPECT_FALSE(WidgetAddress::ofSlot(2).matches(widget));
  EXPECT_TRUE(WidgetAddress::ofID(widget.id).matches(widget));
  EXPECT_FALSE(WidgetAddress::ofID(UUID{}).matches(widget));
  widget.slot.reset();
  EXPECT_FALSE(WidgetAddress::ofSlot(1).matches(widget));
  EXPECT_EQ(WidgetAddress(widget), WidgetAddress::ofID(widget.id));
  EXPECT_EQ(std::hash<WidgetAddress>()(WidgetAddress(widget)),
            std::hash<WidgetAddress>()(WidgetAddress::ofID(widget.id)));
}

TEST(DockTileGeometry, PointersSnapToTheCellUnderThem) {
  const std::tuple<double, double, double, double> cases[] = {
      {205, 100, 48, 182.5},   {90, 100, 48, 131.5},  {106, 100, 48, 131.5},
      {156.9, 100, 48, 131.5}, {157, 100, 48, 182.5}, {-500, -600, 48, -568.5 + 51},
      {0, 0, 64, 42}};
  for (const auto& [pointer, start, size, centre] : cases)
    EXPECT_DOUBLE_EQ(DockTileGeometry::iconCenter(pointer, start, size), centre) << pointer;
}

} // namespace
} // namespace tavrin

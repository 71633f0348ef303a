#include "TavrinCore/Kinds/Note/NoteSettings.h"
#include "TavrinCore/Kinds/Runs/PomodoroSettings.h"
#include "TavrinCore/Kinds/Runs/TimerSettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "TavrinStorage/WidgetStore.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Dock/DockError.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class WidgetStoreTest : public ::testing::Test {
protected:
  const TemporaryFolder folder;
  const fs::path url = folder / "widgets.json";
  const fs::path legacy = folder / "collections.json";
};

constexpr const char* legacyText =
    R"({"collections":[{"id":"00000000-0000-4000-8000-000000000001","name":"A","apps":[{"path":"/a"}],"slot":2},
                       {"id":"00000000-0000-4000-8000-000000000002","name":"B","apps":[]}]})";

TEST_F(WidgetStoreTest, AMissingFileIsEmptyAndNotCreated) {
  WidgetStore store(url, legacy);
  EXPECT_EQ(store.file(), WidgetsFile{});
  store.releaseSlot(UUID{});
  EXPECT_EQ(store.claimSlot(UUID{}), std::nullopt);
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(WidgetStoreTest, CreateTrimsTheName) {
  WidgetStore store(url);
  const std::pair<const char*, const char*> cases[] = {{"  ", "Widget"},
                                                       {"", "Widget"},
                                                       {"\n Tea \t", "Tea"},
                                                       {"\u00A0\u3000", "Widget"},
                                                       {"a b", "a b"}};
  for (const auto& [name, expected] : cases) {
    const auto widget = store.create(name, PomodoroSettings{});
    EXPECT_EQ(widget.name, expected);
    EXPECT_EQ(widget.slot, std::nullopt);
    EXPECT_EQ(widget.span, 1);
    EXPECT_EQ(WidgetStore(url).widget(widget.id), widget);
  }
}

TEST_F(WidgetStoreTest, SlotsAreClaimedAndReleased) {
  put(url, R"({"version":1,"widgets":[{"slot":2,"kind":{"hologram":{}}}]})");
  WidgetStore store(url);
  const auto first = store.create("a", TimerSettings{});
  const auto second = store.create("b", TimerSettings{});
  EXPECT_EQ(store.claimSlot(first.id)->slot, 1);
  EXPECT_EQ(store.claimSlot(second.id)->slot, 3);
  EXPECT_EQ(WidgetStore(url).widget(3)->id, second.id);

  const auto before = fs::last_write_time(url);
  fs::last_write_time(url, before - std::chrono::hours(1));
  EXPECT_EQ(store.claimSlot(second.id)->slot, 3);
  EXPECT_EQ(fs::last_write_time(url), before - std::chrono::hours(1)) << "written for nothing";

  store.releaseSlot(first.id);
  EXPECT_EQ(WidgetStore(url).widget(1), std::nullopt);
  EXPECT_EQ(WidgetStore(url).widget(first.id)->slot, std::nullopt);
}

TEST_F(WidgetStoreTest, TheThirteenthWidgetGetsNoSlot) {
  WidgetStore store(url);
  for (int slot = 1; slot <= 12; ++slot)
    EXPECT_EQ(store.claimSlot(store.create("w", ClockSettings{}).id)->slot, slot);
  const auto one = store.create("w", ClockSettings{});
  const auto before = contents(url);
  EXPECT_EQ(store.claimSlot(one.id), std::nullopt);
  EXPECT_EQ(contents(url), before);
}

TEST_F(WidgetStoreTest, UpdateAndRemove) {
  WidgetStore store(url);
  auto widget = store.create("a", NoteSettings{});
  widget.kind.get<NoteSettings>()->text = "milk";
  store.update(widget);
  EXPECT_EQ(WidgetStore(url).widget(widget.id), widget);
  store.remove(widget.id);
  EXPECT_THAT(WidgetStore(url).file().widgets, IsEmpty());
  const auto before = contents(url);
  try {
    store.update(widget);
    ADD_FAILURE() << "a widget that is gone was updated";
  } catch (const DockError& error) {
    EXPECT_EQ(error, DockError::profileNotFound(widget.id.text()));
    EXPECT_EQ(std::string(error.what()), "Failed to find profile with id " + widget.id.text());
  }
  EXPECT_EQ(contents(url), before);
}

TEST_F(WidgetStoreTest, UnrecognizedEntriesMoveBehindAndStayTheSame) {
  const std::string odd = R"({"kind":{"hologram":{"_0":{"n":1.0,"big":1e400}}}})";
  put(url, R"({"version":1,"widgets":[)" + odd + "]}");
  WidgetStore store(url);
  store.create("a", ClockSettings{});
  const auto entries = *JSONValue::parse(contents(url)).member("widgets")->array();
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[1], JSONValue::parse(odd));
}

TEST_F(WidgetStoreTest, ACorruptFileIsAnErrorAndChangesNothing) {
  WidgetStore store(url);
  const auto widget = store.create("a", ClockSettings{});
  const auto good = store.file();
  for (const auto& bytes : {std::string(), std::string("{"), std::string("[]"), std::string("{}"),
                            std::string("\xff\xfe"), std::string(1'000'000, '['),
                            std::string(R"({"version":"1","widgets":[]})")}) {
    put(url, bytes);
    EXPECT_THAT(errorOf<FileError>([&] { store.reload(); }),
                HasSubstr("Failed to read " + url.string() + " because "))
        << bytes.substr(0, 30);
    EXPECT_EQ(store.file(), good);
    EXPECT_THROW(WidgetStore{url}, FileError);
    EXPECT_EQ(contents(url), bytes);
  }
  fs::remove(url);
  store.reload();
  EXPECT_EQ(store.file(), WidgetsFile{});
}

TEST_F(WidgetStoreTest, AFailedWriteKeepsTheChangeInMemory) {
  fs::create_directory(folder / "data");
  WidgetStore store(folder / "data/widgets.json");
  fs::remove(folder / "data");
  EXPECT_THROW(store.create("a", ClockSettings{}), FileError);
  ASSERT_EQ(store.file().widgets.size(), 1u);
  fs::create_directory(folder / "data");
  store.claimSlot(store.file().widgets[0].id);
  EXPECT_EQ(WidgetStore(folder / "data/widgets.json").file(), store.file());
}

TEST_F(WidgetStoreTest, LegacyCollectionsMoveOnce) {
  put(legacy, legacyText);
  EXPECT_EQ(WidgetStore(url).file(), WidgetsFile{});
  EXPECT_THAT(folder.names(), ElementsAre("collections.json"));

  const WidgetStore store(url, legacy);
  ASSERT_EQ(store.file().widgets.size(), 2u);
  EXPECT_EQ(store.widget(2)->name, "A");
  EXPECT_THAT(folder.names(), ElementsAre("widgets.json"));
  EXPECT_EQ(WidgetStore(url).file(), store.file());

  put(legacy, legacyText);
  EXPECT_EQ(WidgetStore(url, legacy).file(), store.file());
  EXPECT_TRUE(fs::exists(legacy)) << "a widgets file is there already: nothing to move";
}

TEST_F(WidgetStoreTest, UnreadableLegacyCollectionsStay) {
  for (const auto* text : {"", "{}", R"({"collections":[{"id":1}]})"}) {
    put(legacy, text);
    EXPECT_THROW(WidgetStore(url, legacy), FileError) << text;
    EXPECT_THAT(folder.names(), ElementsAre("collections.json"));
  }
}

} // namespace
} // namespace tavrin

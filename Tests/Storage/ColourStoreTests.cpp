#include "TavrinStorage/ColourStore.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/Files/AtomicFile.h"
#include "Tests/Storage/Posts.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

PickedColour red() {
  return {UUID::random(), 255, 0, 0, {1}, false};
}
PickedColour blue() {
  return {UUID::random(), 0, 0, 255, {2}, false};
}

TEST(ColourStore, PicksOfSeveralProcessesAddUpAndEachIsAnnounced) {
  const TemporaryFolder folder;
  Posts posts;
  ColourStore first(folder / "colours.json", posts);
  ColourStore second(folder / "colours.json", posts);
  EXPECT_FALSE(std::filesystem::exists(first.url()));
  first.add(red(), 24);
  second.add(blue(), 24);
  second.togglePin(second.history().colours[1].id, 24);
  EXPECT_EQ(posts.names.size(), 3U);
  first.reload();
  EXPECT_EQ(first.history(), second.history());
  ASSERT_EQ(first.history().colours.size(), 2U);
  EXPECT_TRUE(first.history().colours[1].isPinned);
  first.clearUnpinned();
  EXPECT_EQ(first.history().colours.size(), 1U);
  first.remove(first.history().colours[0].id);
  EXPECT_EQ(posts.names, std::vector<std::string>(5, "dev.quellby.tavrin.colours-changed"));
  EXPECT_EQ(readFile(first.url()), "{\n  \"colours\": [],\n  \"version\": 1\n}");
}

TEST(ColourStore, ABrokenFileIsNeitherReadNorWrittenOver) {
  const TemporaryFolder folder;
  Posts posts;
  ColourStore store(folder / "colours.json", posts);
  store.add(red(), 24);
  for (const char* text : {"", "[]", "{\"colours\":3}", "{\"colours\":[{}]}"}) {
    writeFileAtomically(store.url(), text);
    EXPECT_THROW(store.add(blue(), 24), FileError) << text;
    EXPECT_EQ(readFile(store.url()), text);
    EXPECT_EQ(store.history().colours.size(), 1U) << "what was read last stays";
  }
  EXPECT_EQ(posts.names.size(), 1U);
}

} // namespace
} // namespace tavrin

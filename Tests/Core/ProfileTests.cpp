#include "TavrinCore/Profiles/ProfileTransfer.h"
#include "TavrinCore/Profiles/WorkspaceHotkeys.h"
#include "Tests/Support/BrokenDocuments.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

constexpr auto identifier = "11111111-1111-1111-1111-111111111111";

Profile profileFrom(const std::string& members) {
  return decode<Profile>(JSONValue::parse("{\"id\":\"" + std::string(identifier) +
                                          "\",\"name\":\"N\",\"color\":\"pink\"," + members + "}"));
}

Profile named(const char* name) {
  Profile profile;
  profile.id = UUID::random();
  profile.name = name;
  return profile;
}

TEST(Profile, LoadsOlderForms) {
  const auto all =
      profileFrom(R"("items":[{"file":{"_0":{"path":"/f"}}},{"app":{"_0":{"path":"/a"}}},
      {"url":{"_0":{"url":"u"}}},{"spacer":{"_0":"spacer-tile"}}])");
  ASSERT_EQ(all.items.size(), 2U);
  ASSERT_EQ(all.others.size(), 2U);
  EXPECT_NE(all.items[0].app(), nullptr);
  EXPECT_NE(all.others[1].url(), nullptr);
  EXPECT_EQ(all.otherWorkspaceApps, OtherWorkspaceApps::hide);
  const auto split = profileFrom(R"("items":[{"url":{"_0":{"url":"u"}}}],"others":[])");
  EXPECT_EQ(split.items.size(), 1U);
  const auto old = profileFrom(R"("items":[],"quitsOtherWorkspaceApps":true,"desktopUUID":"X")");
  EXPECT_EQ(old.otherWorkspaceApps, OtherWorkspaceApps::quit);
  EXPECT_EQ(old.desktopUUIDs, std::vector<std::string>{"X"});
  const auto mixed = profileFrom(
      R"("items":[],"quitsOtherWorkspaceApps":true,"otherWorkspaceApps":"keep","desktopUUIDs":[],"desktopUUID":"X")");
  EXPECT_EQ(mixed.otherWorkspaceApps, OtherWorkspaceApps::keep);
  EXPECT_TRUE(mixed.desktopUUIDs.empty());
  const auto written = encode(old);
  EXPECT_EQ(written.member("quitsOtherWorkspaceApps"), nullptr);
  EXPECT_EQ(written.member("desktopUUID"), nullptr);
  EXPECT_NE(written.member("others"), nullptr);
}

TEST(Profile, KeepsMembersOfANewerBuild) {
  const auto text = R"({"version":3,"profiles":[{"id":"11111111-1111-1111-1111-111111111111",
    "name":"N","color":"blue","items":[{"app":{"_0":{"path":"/a","glow":1e400}}}],"others":[],
    "stacks":[],"otherWorkspaceApps":"hide","desktopUUIDs":[],"mood":{"a":[null]}}],"sync":"on"})";
  const auto json = JSONValue::parse(text);
  EXPECT_EQ(encode(decode<ProfilesFile>(json)), json);
}

TEST(Profile, RaisesTheVersionOfAnOlderFile) {
  const auto file = decode<ProfilesFile>(JSONValue::parse(R"({"version":1,"profiles":[]})"));
  EXPECT_EQ(encode(file).compact(), R"({"profiles":[],"version":2})");
}

TEST(Profile, IsReadWholeOrRefusedWhateverNodeIsWrong) {
  const auto document = JSONValue::parse(R"({"version":2,"activeProfileId":
    "11111111-1111-1111-1111-111111111111","profiles":[{"id":"11111111-1111-1111-1111-111111111111",
    "name":"N","color":"blue","items":[{"app":{"_0":{"path":"/a","tile":"AQID"}}},
    {"spacer":{"_0":"flex-spacer-tile"}}],"others":[{"file":{"_0":{"path":"/f","isDirectory":true}}}],
    "stacks":[{"id":"11111111-1111-1111-1111-111111111111","members":[]}],"focusModeBinding":"on",
    "hotkey":{"keyCode":18,"modifiers":6},"otherWorkspaceApps":"quit","desktopUUIDs":["D"],
    "indicatorColorHex":"#fff"}]})");
  int refused = 0;
  int read = 0;
  test::breakEachNode(document, [&](const JSONValue& broken) {
    try {
      const auto file = decode<ProfilesFile>(broken);
      EXPECT_EQ(encode(decode<ProfilesFile>(encode(file))), encode(file));
      ++read;
    } catch (const CodingError&) {
      ++refused;
    }
  });
  EXPECT_GT(refused, 100);
  // Ten members may be missing, six texts may be any, and one truth value was true before.
  EXPECT_EQ(read, 10 + 6 + 1);
}

TEST(ProfileTransfer, MergesWithoutClashes) {
  const auto here = named("Work");
  auto same = here;
  same.desktopUUIDs = {"known", "elsewhere"};
  const auto merged =
      ProfileTransfer::merge({same, named("Work"), named("Other")}, {here}, {"known"});
  ASSERT_EQ(merged.size(), 4U);
  EXPECT_EQ(merged[0], here);
  EXPECT_NE(merged[1].id, here.id);
  EXPECT_EQ(merged[1].name, "Work (Imported)");
  EXPECT_EQ(merged[1].desktopUUIDs, std::vector<std::string>{"known"});
  EXPECT_EQ(merged[2].name, "Work (Imported) (Imported)");
  EXPECT_EQ(merged[3].name, "Other");
  const auto copied = ProfileTransfer::profiles(ProfileTransfer::exportData(merged));
  EXPECT_EQ(copied, merged);
  EXPECT_THROW(ProfileTransfer::profiles("{"), JSONError);
  EXPECT_THROW(ProfileTransfer::profiles("{}"), CodingError);
}

TEST(Hotkey, ShowsAndJudgesModifiers) {
  EXPECT_EQ(HotkeyModifiers{15}.displaySymbols(), "⌃⌥⇧⌘");
  EXPECT_TRUE(HotkeyModifiers{9}.isValidForGlobalHotkey());
  EXPECT_FALSE(HotkeyModifiers::shift.isValidForGlobalHotkey());
  EXPECT_FALSE(HotkeyModifiers{0}.isValidForGlobalHotkey());
}

TEST(WorkspaceHotkeys, GivesEachShortcutOnce) {
  std::vector<Profile> profiles;
  for (int i = 0; i < 10; ++i)
    profiles.push_back(named("P"));
  const auto modifiers = WorkspaceHotkeys::defaultModifiers;
  EXPECT_EQ(modifiers.rawValue, 6U);
  auto bindings = WorkspaceHotkeys::bindings(profiles, modifiers);
  EXPECT_EQ(bindings.size(), 9U);
  EXPECT_EQ(bindings.at(profiles[4].id), (Hotkey{23, modifiers}));
  EXPECT_FALSE(bindings.contains(profiles[9].id));
  profiles[3].hotkey = Hotkey{18, modifiers};
  bindings = WorkspaceHotkeys::bindings(profiles, modifiers);
  EXPECT_FALSE(bindings.contains(profiles[0].id));
  EXPECT_EQ(bindings.at(profiles[3].id), (Hotkey{18, modifiers}));
  EXPECT_EQ(bindings.at(profiles[1].id), (Hotkey{19, modifiers}));
  EXPECT_EQ(WorkspaceHotkeys::bindings(profiles, std::nullopt).size(), 1U);
  EXPECT_EQ(WorkspaceHotkeys::modifierChoices[4].rawValue, 14U);
}

} // namespace
} // namespace tavrin

#include "TavrinCore/Dock/ProfileTransfer.h"
#include "TavrinCore/Dock/WorkspaceHotkeys.h"

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

/// Puts a wrong value at every place of a document in turn.
void breakEachNode(const JSONValue& document, const std::function<void(const JSONValue&)>& check) {
  const std::function<void(JSONValue&, JSONValue&)> visit = [&](JSONValue& root, JSONValue& node) {
    const JSONValue original = node;
    for (const JSONValue& wrong :
         {JSONValue(), JSONValue(true), JSONValue(-7.5), JSONValue("wrong"),
          JSONValue(JSONValue::Array{1}), JSONValue(JSONValue::Object{{"a", 1}})}) {
      node = wrong;
      check(root);
    }
    node = original;
    if (auto* items = node.array())
      for (auto& item : *items)
        visit(root, item);
    if (auto* members = node.object())
      for (auto& [unused, member] : *members)
        visit(root, member);
  };
  JSONValue root = document;
  visit(root, root);
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
  breakEachNode(document, [&](const JSONValue& broken) {
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

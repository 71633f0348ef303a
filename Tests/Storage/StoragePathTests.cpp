#include "TavrinStorage/StoragePath.h"

#include "TavrinCore/Base/Errors.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <map>
#include <sys/stat.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

struct Places : FileManager {
  fs::path support = "/support";
  std::map<std::string, std::string> variables;
  bool hasSupport = true;

  fs::path homeFolder() const override { return "/home/me"; }
  fs::path applicationSupportFolder() const override {
    if (!hasSupport)
      throw FileError("Failed to find the data folder because there is none");
    return support;
  }
  fs::path cachesFolder() const override { return "/caches"; }
  fs::path stateFolder() const override { return "/state"; }
  std::optional<std::string> environment(const std::string& name) const override {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  }
};

struct Bundle : MainBundle {
  std::map<std::string, std::string> strings;

  std::optional<fs::path> path() const override { return std::nullopt; }
  std::optional<std::string> identifier() const override { return std::nullopt; }
  std::optional<std::string> string(const std::string& key) const override {
    const auto found = strings.find(key);
    return found == strings.end() ? std::nullopt : std::optional(found->second);
  }
  std::optional<long> integer(const std::string&) const override { return std::nullopt; }
};

struct PathCase {
  std::optional<std::string> variable;
  std::optional<std::string> folderName;
  const char* expected;
};

TEST(StoragePath, WhereTheDataFolderIs) {
  const PathCase cases[] = {
      {{}, {}, "/support/Tavrin"},
      {"", {}, "/support/Tavrin"},
      {"   ", {}, "/support/Tavrin"},
      {" \t\n\u00A0", "Dev", "/support/Dev"},
      {"/data", "Dev", "/data"},
      {" /data ", {}, " /data "},
      {"~", {}, "/home/me/"},
      {"~/tmp/td", {}, "/home/me/tmp/td"},
      {"~other/td", {}, "~other/td"},
      {"relative", {}, "relative"},
      {{}, " Tavrin/Dev ", "/support/TavrinDev"},
      {{}, "/", "/support/Tavrin"},
      {{}, " // ", "/support/Tavrin"},
      {{}, "", "/support/Tavrin"},
      {{}, "Two Words", "/support/Two Words"},
      {{}, "../up", "/support/..up"},
  };
  for (const auto& [variable, folderName, expected] : cases) {
    Places places;
    Bundle bundle;
    if (variable)
      places.variables["TAVRIN_APP_SUPPORT_DIR"] = *variable;
    if (folderName)
      bundle.strings["TavrinDataFolder"] = *folderName;
    const StoragePath path(places, bundle);
    EXPECT_EQ(path.resolvedDirectory(), expected)
        << variable.value_or("-") << folderName.value_or("-");
    EXPECT_EQ(path.appSupportDirectory(false), expected);
  }
}

TEST(StoragePath, WithoutApplicationSupportNothingIsFound) {
  Places places;
  places.hasSupport = false;
  places.variables["TAVRIN_APP_SUPPORT_DIR"] = "/data";
  const Bundle bundle;
  EXPECT_THROW(StoragePath(places, bundle).widgetsFileURL(), FileError);
}

TEST(StoragePath, AskingForAFileMakesTheFolder) {
  const TemporaryFolder folder;
  Places places;
  places.support = folder / "deep/er";
  const Bundle bundle;
  const StoragePath path(places, bundle);
  const auto data = folder / "deep/er/Tavrin";
  EXPECT_EQ(path.appSupportDirectory(false), data);
  EXPECT_FALSE(fs::exists(folder / "deep"));
  const std::pair<fs::path, const char*> files[] = {
      {path.widgetsFileURL(), "widgets.json"},
      {path.profilesFileURL(), "profiles.json"},
      {path.coloursFileURL(), "colours.json"},
      {path.emojiFileURL(), "emoji.json"},
      {path.waterFileURL(), "water.json"},
      {path.clipboardFileURL(), "clipboard.json.enc"},
      {path.legacyCollectionsFileURL(), "collections.json"}};
  for (const auto& [file, name] : files)
    EXPECT_EQ(file, data / name);
  struct stat info {};
  ASSERT_EQ(::stat(data.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0700u);
  // The user's own choice of permissions stays.
  fs::permissions(data, fs::perms(0755));
  path.widgetsFileURL();
  ASSERT_EQ(::stat(data.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0755u);
}

TEST(StoragePath, ADataFolderThatIsAFile) {
  const TemporaryFolder folder;
  put(folder / "file", "precious");
  const Bundle bundle;
  for (const auto* name : {"file", "file/inside"}) {
    Places places;
    places.variables["TAVRIN_APP_SUPPORT_DIR"] = (folder / name).string();
    const StoragePath path(places, bundle);
    EXPECT_THAT(errorOf<FileError>([&] { path.widgetsFileURL(); }),
                // The standard libraries name one of two reasons.
                testing::AnyOf(HasSubstr("Failed to create the folder " + (folder / name).string() +
                                         " because Not a directory"),
                               HasSubstr("Failed to create the folder " + (folder / name).string() +
                                         " because File exists")));
  }
  EXPECT_EQ(contents(folder / "file"), "precious");
}

} // namespace
} // namespace tavrin

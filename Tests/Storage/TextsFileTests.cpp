#include "TavrinPlatform/Files/TextsFile.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <map>

namespace tavrin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The variables of a language for one test, all others unset.
class Environment {
public:
  explicit Environment(const std::map<std::string, std::string>& values) {
    for (const char* name : names) {
      const char* value = std::getenv(name);
      if (value != nullptr)
        before_[name] = value;
      const auto found = values.find(name);
      if (found == values.end())
        ::unsetenv(name);
      else
        ::setenv(name, found->second.c_str(), 1);
    }
  }
  ~Environment() {
    for (const char* name : names)
      if (const auto found = before_.find(name); found != before_.end())
        ::setenv(name, found->second.c_str(), 1);
      else
        ::unsetenv(name);
  }

private:
  static constexpr const char* names[] = {"TAVRIN_LANGUAGE", "LANGUAGE", "LC_ALL", "LC_MESSAGES",
                                          "LANG"};
  std::map<std::string, std::string> before_;
};

std::vector<std::string> wanted(const std::map<std::string, std::string>& values) {
  const Environment environment(values);
  return wantedLanguages();
}

TEST(TextsFile, LanguagesAreWantedInGettextsOrder) {
  EXPECT_THAT(wanted({}), IsEmpty());
  EXPECT_THAT(wanted({{"LANG", "C.UTF-8"}, {"LANGUAGE", "de"}}), IsEmpty());
  EXPECT_THAT(wanted({{"LANG", "de_AT.UTF-8"}}), ElementsAre("de_AT", "de"));
  EXPECT_THAT(wanted({{"LANG", "fr_FR"}, {"LC_MESSAGES", "ar"}}), ElementsAre("ar"));
  EXPECT_THAT(wanted({{"LANG", "de_DE"}, {"LC_MESSAGES", "ar"}, {"LC_ALL", "POSIX"}}), IsEmpty());
  EXPECT_THAT(wanted({{"LANG", "en_GB.UTF-8"}, {"LANGUAGE", "ar:de"}}),
              ElementsAre("ar", "de", "en_GB", "en"));
  EXPECT_THAT(wanted({{"LANG", "sr_RS@latin"}}),
              ElementsAre("sr_RS@latin", "sr_RS", "sr@latin", "sr"));
  EXPECT_THAT(wanted({{"LC_ALL", "C"}, {"TAVRIN_LANGUAGE", "en@pseudo"}}),
              ElementsAre("en@pseudo", "en"));
  EXPECT_THAT(wanted({{"TAVRIN_LANGUAGE", "../../etc"}}), IsEmpty());
}

TEST(TextsFile, CataloguesAreFoundFromWhereTheProgramIs) {
  const TemporaryFolder folder;
  const auto prefix = folder.path() / "usr";
  const auto put = [&](const std::filesystem::path& place) {
    std::filesystem::create_directories((prefix / place).parent_path());
    std::ofstream(prefix / place) << "x";
    return prefix / place;
  };
  const auto german = put("share/locale/de/LC_MESSAGES/tavrin.mo");
  const auto pseudo = put("share/locale/en@pseudo/LC_MESSAGES/tavrin.mo");
  const auto slot = prefix / "lib/tavrin/Tavrin Slot 1.app/Contents/MacOS/TavrinSlot";
  for (const auto& program : {prefix / "bin/tavrin", slot}) {
    EXPECT_EQ(findTexts(program, {"fr", "de_AT", "de"}).path, german);
    EXPECT_EQ(findTexts(program, {"fr", "de"}).language, "de");
    EXPECT_EQ(findTexts(program, {"en@pseudo", "en"}).path, pseudo);
    EXPECT_TRUE(findTexts(program, {"en_GB", "de"}).path.empty());
    EXPECT_TRUE(findTexts(program, {"ar"}).path.empty());
  }
  const auto bundled = put("lib/tavrin/Tavrin Slot 1.app/Contents/Resources/locale/ar/LC_MESSAGES/"
                           "tavrin.mo");
  EXPECT_EQ(findTexts(slot, {"ar"}).path, bundled);
  EXPECT_TRUE(findTexts({}, {"de"}).path.empty());
}

} // namespace
} // namespace tavrin

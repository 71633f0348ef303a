#pragma once

#include "TavrinPlatform/FileManager.h"

#include <cstdlib>
#include <gtest/gtest.h>

/// What every FileManager does. A rig has `files(environment)`, whose HOME is `home()`.
namespace tavrin::test {

template <class Rig> class FileManagerContract : public testing::Test {
protected:
  Rig rig;
};
TYPED_TEST_SUITE_P(FileManagerContract);

TYPED_TEST_P(FileManagerContract, TheEnvironmentIsThatOfTheProcess) {
  const auto files = this->rig.files({{"TAVRIN_ONE", "a=b"}, {"TAVRIN_EMPTY", ""}});
  ::setenv("TAVRIN_LATER", "x", 1);
  EXPECT_EQ(files->environment("TAVRIN_ONE"), "a=b");
  EXPECT_EQ(files->environment("TAVRIN_EMPTY"), "");
  EXPECT_EQ(files->environment("TAVRIN_LATER"), std::nullopt);
  ::unsetenv("TAVRIN_LATER");
}

TYPED_TEST_P(FileManagerContract, FoldersAreTheUsersAndToolsLieWherePeoplePutThem) {
  const auto files = this->rig.files({});
  const auto home = this->rig.home();
  EXPECT_EQ(files->homeFolder(), home);
  EXPECT_TRUE(files->applicationSupportFolder().string().starts_with(home.string() + "/"));
  const auto tools = files->toolFolders();
  ASSERT_GE(tools.size(), 4U);
  EXPECT_EQ(std::vector(tools.begin(), tools.begin() + 4),
            (std::vector<std::filesystem::path>{"/opt/homebrew/bin", "/usr/local/bin",
                                                "/opt/local/bin", home / ".local/bin"}));
  EXPECT_EQ(this->rig.files({{"TAVRIN_UNICODE_DIR", "/u"}})->unicodeFolder(), "/u");
  EXPECT_TRUE(files->unicodeFolder().is_absolute());
}

REGISTER_TYPED_TEST_SUITE_P(FileManagerContract, TheEnvironmentIsThatOfTheProcess,
                            FoldersAreTheUsersAndToolsLieWherePeoplePutThem);

} // namespace tavrin::test

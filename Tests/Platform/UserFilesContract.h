#pragma once

#include "TavrinPlatform/UserFiles.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <thread>

/// What every UserFiles does. A rig has `files()`, `home()`, `choose(folder)`, upon which the user
/// has the screenshots put into a folder of the home, by its name below that, and `opened()` and
/// `shown()`, what was opened and revealed last.
namespace tavrin::test {

template <class Rig> class UserFilesContract : public testing::Test {
protected:
  /// Off the main thread, as the interface has it.
  template <class Work> static auto elsewhere(const Work& work) {
    decltype(work()) answer{};
    std::thread([&] { answer = work(); }).join();
    return answer;
  }
  TemporaryFolder folder;
  Rig rig;
};
TYPED_TEST_SUITE_P(UserFilesContract);

TYPED_TEST_P(UserFilesContract, FoldersAreTheUsers) {
  auto& files = this->rig.files();
  EXPECT_EQ(files.homeFolder(), this->rig.home());
  EXPECT_EQ(this->elsewhere([&] { return files.downloadsFolder(); }),
            this->rig.home() / "Downloads");
  EXPECT_EQ(this->elsewhere([&] { return files.screenshotFolder(); }).parent_path().string().rfind(
                this->rig.home().string(), 0),
            0U);
  this->rig.choose("My Shots");
  EXPECT_EQ(this->elsewhere([&] { return files.screenshotFolder(); }),
            this->rig.home() / "My Shots");
}

TYPED_TEST_P(UserFilesContract, WhatIsInTheTrashComesBackOnce) {
  auto& files = this->rig.files();
  const auto file = this->folder / "a ä.txt";
  const auto trash = [&] { return this->elsewhere([&] { return files.moveToTrash(file); }); };
  const auto restore = [&] { return this->elsewhere([&] { return files.restoreFromTrash(file); }); };
  EXPECT_FALSE(restore()) << "never there";
  EXPECT_FALSE(trash()) << "nothing to move";
  put(file, "one");
  ASSERT_TRUE(trash());
  EXPECT_FALSE(std::filesystem::exists(file));
  put(file, "other");
  EXPECT_FALSE(restore()) << "something else has its place";
  EXPECT_EQ(contents(file), "other");
  std::filesystem::remove(file);
  EXPECT_TRUE(restore());
  EXPECT_EQ(contents(file), "one");
  EXPECT_FALSE(restore()) << "it is not there any more";
}

TYPED_TEST_P(UserFilesContract, OpensAndShowsFiles) {
  const auto file = this->folder / "a ä.txt";
  put(file, "");
  this->rig.files().open(file);
  EXPECT_EQ(this->rig.opened(), file);
  this->rig.files().reveal(file);
  const std::filesystem::path shown = this->rig.shown();
  EXPECT_TRUE(shown == file || shown == this->folder.path()) << shown;
}

REGISTER_TYPED_TEST_SUITE_P(UserFilesContract, FoldersAreTheUsers, WhatIsInTheTrashComesBackOnce,
                            OpensAndShowsFiles);

} // namespace tavrin::test

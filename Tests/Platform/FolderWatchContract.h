#pragma once

#include "TavrinPlatform/FolderWatch.h"
#include "Tests/Storage/TemporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>

/// What every FolderWatch does with files. A rig has `watch()`, `changed(path)` after a file came,
/// changed or went, and `comesTrue(condition)`, which gives the adapter its time.
namespace tavrin::test {

template <class Rig> class FolderWatchContract : public testing::Test {
protected:
  static FolderRequest folders(std::vector<std::filesystem::path> all) {
    FolderRequest request;
    request.folders = std::move(all);
    return request;
  }
  std::unique_ptr<FolderFollower> follow(FolderRequest request) {
    request.classify = [](std::string_view name) {
      return name.ends_with(".part") ? FolderEntry::unfinished
             : name.starts_with('.') ? FolderEntry::ignored
                                     : FolderEntry::wanted;
    };
    return rig.watch().follow(std::move(request), [this](const FolderListing& told) {
      listing = told;
      ++tellings;
    });
  }
  void write(const std::filesystem::path& file, const std::string& bytes = "") {
    put(file, bytes);
    rig.changed(file);
  }
  void remove(const std::filesystem::path& file) {
    std::filesystem::remove_all(file);
    rig.changed(file);
  }
  bool shows(std::vector<std::string> names) {
    std::ranges::sort(names);
    return rig.comesTrue([&] {
      std::vector<std::string> shown;
      for (const auto& file : listing.files)
        shown.push_back(file.path.filename().string());
      std::ranges::sort(shown);
      return tellings > 0 && shown == names;
    });
  }
  bool isState(FolderListing::State state) {
    return rig.comesTrue([&] { return tellings > 0 && listing.folders.at(0).state == state; });
  }

  TemporaryFolder temporary;
  const std::filesystem::path folder = temporary / "watched";
  FolderListing listing;
  int tellings = 0;
  Rig rig;
};
TYPED_TEST_SUITE_P(FolderWatchContract);

TYPED_TEST_P(FolderWatchContract, TellsWhatIsThereAndWhatBecomesOfIt) {
  std::filesystem::create_directories(this->folder / "inner");
  put(this->folder / "one", "12345");
  put(this->folder / ".hidden", "");
  put(this->folder / "film.part", "");
  const auto follower = this->follow(this->folders({this->folder}));
  EXPECT_EQ(this->tellings, 0) << "before the call has returned";
  ASSERT_TRUE(this->shows({"one"}));
  EXPECT_EQ(this->listing.files[0].size, 5U);
  EXPECT_EQ(this->listing.unfinished, 1U);
  this->write(this->folder / "two", "x");
  ASSERT_TRUE(this->shows({"one", "two"}));
  std::filesystem::rename(this->folder / "film.part", this->folder / "film");
  this->rig.changed(this->folder / "film.part");
  this->rig.changed(this->folder / "film");
  ASSERT_TRUE(this->shows({"film", "one", "two"}));
  EXPECT_EQ(this->listing.unfinished, 0U);
  this->write(this->folder / "inner" / "deep");
  this->remove(this->folder / "one");
  EXPECT_TRUE(this->shows({"film", "two"}));
}

TYPED_TEST_P(FolderWatchContract, OfManyTheNewestAndFoldersIfAskedFor) {
  std::filesystem::create_directory(this->folder);
  for (int i = 0; i < 9; ++i)
    put(this->folder / std::to_string(i), "");
  FolderRequest request = this->folders({this->folder});
  request.limit = 2;
  request.includesFolders = true;
  const auto follower = this->follow(std::move(request));
  ASSERT_TRUE(this->shows({"7", "8"}));
  std::filesystem::create_directory(this->folder / "sub");
  this->rig.changed(this->folder / "sub");
  ASSERT_TRUE(this->shows({"8", "sub"}));
  EXPECT_TRUE(this->listing.files[0].isFolder);
  // Down to files that had not been listed.
  this->remove(this->folder / "sub");
  this->remove(this->folder / "8");
  this->remove(this->folder / "7");
  EXPECT_TRUE(this->shows({"5", "6"}));
}

TYPED_TEST_P(FolderWatchContract, TheFolderComesAndGoes) {
  const auto follower = this->follow(this->folders({this->folder}));
  ASSERT_TRUE(this->isState(FolderListing::State::missing));
  for (int round = 0; round < 2; ++round) {
    std::filesystem::create_directory(this->folder);
    put(this->folder / "one", "");
    this->rig.changed(this->folder / "one");
    ASSERT_TRUE(this->shows({"one"})) << round;
    EXPECT_TRUE(this->isState(FolderListing::State::listed));
    std::filesystem::remove_all(this->folder);
    this->rig.changed(this->folder);
    ASSERT_TRUE(this->isState(FolderListing::State::missing)) << round;
    EXPECT_TRUE(this->listing.files.empty());
  }
}

TYPED_TEST_P(FolderWatchContract, OneFolderUnderTwoNamesIsOne) {
  std::filesystem::create_directory(this->folder);
  std::filesystem::create_directory_symlink(this->folder, this->temporary / "link");
  put(this->folder / "one", "");
  const auto follower =
      this->follow(this->folders({this->folder, this->temporary / "link", this->folder}));
  ASSERT_TRUE(this->shows({"one"}));
}

TYPED_TEST_P(FolderWatchContract, WhoHasGoneIsToldNothing) {
  std::filesystem::create_directory(this->folder);
  auto follower = this->follow(this->folders({this->folder}));
  ASSERT_TRUE(this->shows({}));
  this->write(this->folder / "one");
  follower.reset();
  const int before = this->tellings;
  auto other = this->follow(this->folders({this->folder}));
  ASSERT_TRUE(this->rig.comesTrue([&] { return this->tellings > before; }));
  EXPECT_EQ(this->tellings, before + 1);
}

REGISTER_TYPED_TEST_SUITE_P(FolderWatchContract, TellsWhatIsThereAndWhatBecomesOfIt,
                            OfManyTheNewestAndFoldersIfAskedFor, TheFolderComesAndGoes,
                            OneFolderUnderTwoNamesIsOne, WhoHasGoneIsToldNothing);

} // namespace tavrin::test

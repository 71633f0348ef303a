#pragma once

#include "TavrinPlatform/ApplicationLibrary.h"

#include <gtest/gtest.h>

/// What every ApplicationLibrary does. A rig has `library()`, `install()`, which gives an
/// application's identifier, name, path and icon, `comesTrue(condition)`, which lets answers come,
/// and `refuse()`, after which it does not start.
namespace tavrin::test {

template <class Rig> class ApplicationLibraryContract : public testing::Test {
protected:
  Rig rig;
};
TYPED_TEST_SUITE_P(ApplicationLibraryContract);

TYPED_TEST_P(ApplicationLibraryContract, AnswersForEachEntryInOrderAndLater) {
  const ApplicationInfo app = this->rig.install();
  std::vector<ApplicationInfo> listed;
  std::vector<std::optional<ApplicationInfo>> found;
  auto& library = this->rig.library();
  const auto list = library.list([&](auto all) { listed = std::move(all); });
  const auto find = library.find({{"/nowhere", {}, {}, {}},
                                  {app.path, {}, {}, {}},
                                  {app.id, {}, {}, {}},
                                  {"/gone", app.id, {}, {}}},
                                 [&](auto all) { found = std::move(all); });
  EXPECT_TRUE(listed.empty() && found.empty()) << "before the call has returned";
  ASSERT_TRUE(this->rig.comesTrue([&] { return !listed.empty() && !found.empty(); }));
  ASSERT_EQ(listed.size(), 1U);
  EXPECT_EQ(listed[0].id, app.id);
  EXPECT_EQ(listed[0].path, app.path);
  EXPECT_EQ(listed[0].name, app.name);
  ASSERT_EQ(found.size(), 4U);
  EXPECT_FALSE(found[0]);
  for (std::size_t i = 1; i < found.size(); ++i)
    EXPECT_TRUE(found[i] && found[i]->id == app.id) << i;
}

TYPED_TEST_P(ApplicationLibraryContract, APictureHasThePixelsThatWereAskedFor) {
  const ApplicationInfo app = this->rig.install();
  QImage image;
  const auto token = this->rig.library().icon(app.icon, 16, 2, [&](QImage made) { image = made; });
  EXPECT_TRUE(image.isNull()) << "before the call has returned";
  ASSERT_TRUE(this->rig.comesTrue([&] { return !image.isNull(); }));
  EXPECT_EQ(image.size(), QSize(32, 32));
}

TYPED_TEST_P(ApplicationLibraryContract, StartsOrSaysWhyNot) {
  const ApplicationInfo app = this->rig.install();
  std::vector<std::string> troubles;
  const auto launch = [&] {
    return this->rig.library().launch(
        app.id, "", [&](const std::string& trouble) { troubles.push_back(trouble); });
  };
  auto token = launch();
  EXPECT_TRUE(troubles.empty());
  ASSERT_TRUE(this->rig.comesTrue([&] { return !troubles.empty(); }));
  EXPECT_EQ(troubles, std::vector<std::string>{""});
  this->rig.refuse();
  token = launch();
  ASSERT_TRUE(this->rig.comesTrue([&] { return troubles.size() == 2; }));
  EXPECT_TRUE(troubles[1].starts_with("Failed to ")) << troubles[1];
}

TYPED_TEST_P(ApplicationLibraryContract, WhoHasGoneIsNotAnswered) {
  const ApplicationInfo app = this->rig.install();
  auto& library = this->rig.library();
  const auto fail = [](const auto&) { FAIL() << "nobody waits any more"; };
  library.list(fail).reset();
  library.find({{app.path, {}, {}, {}}}, fail).reset();
  library.icon(app.icon, 16, 1, fail).reset();
  library.launch(app.id, "", fail).reset();
  // One that is answered, after them.
  bool isAnswered = false;
  const auto token = library.list([&](const auto&) { isAnswered = true; });
  EXPECT_TRUE(this->rig.comesTrue([&] { return isAnswered; }));
}

REGISTER_TYPED_TEST_SUITE_P(ApplicationLibraryContract, AnswersForEachEntryInOrderAndLater,
                            APictureHasThePixelsThatWereAskedFor, StartsOrSaysWhyNot,
                            WhoHasGoneIsNotAnswered);

} // namespace tavrin::test

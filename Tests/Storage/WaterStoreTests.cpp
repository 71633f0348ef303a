#include "TavrinStorage/WaterStore.h"

#include "Tests/Storage/Posts.h"
#include "Tests/Storage/TemporaryFolder.h"

#include "TavrinCore/Base/Errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class WaterStoreTest : public testing::Test {
protected:
  TemporaryFolder folder_;
  const std::filesystem::path file_ = folder_ / "water.json";
  Posts posts_;
  const Date noon_ = Calendar().date({2026, 3, 9, 12, 0, 0, 1});
};

TEST_F(WaterStoreTest, PoursOfSeveralStoresAddUpAndEachIsAnnounced) {
  WaterStore first(file_, posts_);
  WaterStore second(file_, posts_);
  EXPECT_FALSE(std::filesystem::exists(file_));
  first.add(250, noon_);
  second.add(300, noon_ + 60);
  first.remove(100, noon_ + 90);
  EXPECT_EQ(first.log().total(noon_, Calendar()), 450);
  EXPECT_EQ(second.log().total(noon_, Calendar()), 550);
  second.reload();
  EXPECT_EQ(second.log(), first.log());
  EXPECT_THAT(posts_.names,
              ElementsAre("dev.quellby.tavrin.water-changed", "dev.quellby.tavrin.water-changed",
                          "dev.quellby.tavrin.water-changed"));
  second.clear(noon_);
  EXPECT_TRUE(second.log().days.empty());
}

TEST_F(WaterStoreTest, WritesThePublishedFormat) {
  WaterStore store(file_, posts_);
  store.add(250, Date{700'000'000.5});
  EXPECT_EQ(contents(file_), "{\n  \"days\": [\n    {\n      \"day\": \"2023-03-08\",\n"
                             "      \"millilitres\": 250\n    }\n  ],\n"
                             "  \"lastPour\": 700000000.5\n}");
}

TEST_F(WaterStoreTest, AFileThatCannotBeReadIsNeverWrittenOver) {
  WaterStore store(file_, posts_);
  store.add(250, noon_);
  const auto before = store.log();
  const std::string huge = R"({"days":[],"x":")" + std::string(600 * 1024, 'x') + "\"}";
  for (const std::string& text :
       {std::string(), std::string("{"), std::string("[]"), std::string(R"({"lastPour":1})"),
        std::string(R"({"days":[{"day":"2026-03-09"}]})"),
        std::string(R"({"days":[{"day":"2026-03-09","millilitres":1e99}]})"),
        std::string(R"({"days":[{"day":7,"millilitres":1}]})"),
        std::string(R"({"days":[],"lastPour":"now"})"), std::string("{\"days\":[\"\xff\"]}"),
        huge}) {
    put(file_, text);
    posts_.names.clear();
    EXPECT_THAT(errorOf<FileError>([&] { store.reload(); }), HasSubstr("Failed to read "));
    EXPECT_THROW(store.add(250, noon_), FileError);
    EXPECT_THROW(WaterStore(file_, posts_), FileError);
    EXPECT_EQ(store.log(), before);
    EXPECT_EQ(contents(file_), text);
    EXPECT_TRUE(posts_.names.empty());
  }
}

TEST_F(WaterStoreTest, DaysOutOfOrderAreReadInOrder) {
  put(file_, R"({"days":[{"day":"2026-03-09","millilitres":500},
                         {"day":"2026-03-07","millilitres":-20}],"more":true})");
  WaterStore store(file_, posts_);
  EXPECT_EQ(store.log().total(noon_, Calendar()), 500);
  EXPECT_EQ(store.log().days.front(), (WaterDay{"2026-03-07", 0}));
}

TEST_F(WaterStoreTest, AFailedSaveLeavesTheFileAndAnnouncesNothing) {
  WaterStore store(folder_ / "gone" / "water.json", posts_);
  EXPECT_THROW(store.add(250, noon_), FileError);
  EXPECT_TRUE(posts_.names.empty());
}

} // namespace
} // namespace tavrin

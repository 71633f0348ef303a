#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelList.h"
#include "Tests/Slot/SlotFixture.h"

namespace tavrin::test {
namespace {

class GitHubWidgetTest : public SlotTest {
protected:
  void open(const DockWidget::Kind& kind) {
    start(kind);
    settle();
    click();
    settle();
  }
};

TEST_F(GitHubWidgetTest, ARowOpensInTheBrowserAndNothingElseDoes) {
  platform_.defaults.values["GitHubCLIPath"] = "/bin/sh";
  const auto node = [](const char* url, const char* time) {
    return std::string(R"({"number":1,"title":"T","updatedAt":")") + time + R"(","url":")" + url +
           R"(","repository":{"nameWithOwner":"a/b"}})";
  };
  platform_.fakeProcesses.result = {
      ProcessResult::Outcome::exited, 0,
      R"({"data":{"s0":{"nodes":[)" + node("https://github.com/a/b/1", "2026-01-02T00:00:00Z") +
          "," + node("file:///etc/passwd", "2026-01-01T00:00:00Z") + "]}}}",
      "", false};
  open(GitHubSettings{});
  auto* list = first<PanelList>();
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->count(), 2);
  list->onOpen(1);
  EXPECT_TRUE(platform_.fakeWorkspace.opened.empty());
  platform_.fakePopover.shown = true;
  list->onOpen(0);
  EXPECT_EQ(platform_.fakeWorkspace.opened, std::vector<std::string>{"https://github.com/a/b/1"});
  EXPECT_FALSE(platform_.fakePopover.shown);
  EXPECT_EQ(platform_.tile.name, "GitHub");
}

} // namespace
} // namespace tavrin::test

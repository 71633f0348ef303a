#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinPlatform/Qt/QtProcessRunner.h"
#include "TavrinPlatform/Qt/QtRunLoop.h"
#include "TavrinWidgetsUI/GitHub/GitHubSource.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/FakePlatform.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>
#include <gtest/gtest.h>
#include <map>
#include <sys/wait.h>

namespace tavrin::test {
namespace {

namespace fs = std::filesystem;
using Kind = GitHubSource::Trouble::Kind;

const std::string item =
    R"({"__typename":"Issue","number":8,"title":"I","url":"https://x/8",)"
    R"("updatedAt":"2026-01-02T03:04:05Z","repository":{"nameWithOwner":"a/b"}})";
const std::string list = R"({"data":{"s0":{"nodes":[)" + item + "]}}}";
const std::string part = R"({"data":{"s0":null,"s1":{"nodes":[)" + item +
                         R"(]}},"errors":[{"message":"s0 timed out"}]})";
const std::string rateLimited =
    R"({"data":null,"errors":[{"type":"RATE_LIMITED","message":"API rate limit exceeded for user ID 1."}]})";

/// What each leads to. Without those that wake threads: the pool may have one thread more by now.
std::map<std::string, std::string> openDescriptors() {
  std::map<std::string, std::string> open;
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    if (const auto target = fs::read_symlink(entry.path(), gone); target != "anon_inode:[eventfd]")
      open[entry.path().filename()] = target.string();
  }
  return open;
}

/// The real process runner and event loop, with gh or a stand-in for it.
class GitHubToolTest : public testing::Test {
protected:
  GitHubToolTest() {
    files.home = folder.path();
    load(script("exit 0")); // what is made once is made now
    descriptors_ = openDescriptors();
  }
  ~GitHubToolTest() override {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const auto open = openDescriptors();
    EXPECT_LE(open.size(), descriptors_.size())
        << "a descriptor is left: " << testing::PrintToString(open) << " before "
        << testing::PrintToString(descriptors_);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
  }

  std::string script(const std::string& body) {
    const auto path = folder / "gh";
    fs::remove(path);
    put(path, "#!/bin/sh\n" + body + "\n");
    fs::permissions(path, fs::perms::owner_all);
    return path.string();
  }
  /// Asks through `tool`, and lets the event loop run; notes how long it stood still at most.
  GitHubSource::Result load(const std::string& tool, double limit = 20,
                            GitHubShows shows = GitHubShows::waitingOnYou) {
    files.tools = {fs::path(tool).parent_path()};
    GitHubSource source(runLoop, processes, files, defaults, limit);
    GitHubSettings settings;
    settings.shows = shows;
    std::optional<GitHubSource::Result> result;
    QEventLoop loop;
    QElapsedTimer sinceTick;
    QTimer tick;
    longestPause = 0;
    sinceTick.start();
    QObject::connect(&tick, &QTimer::timeout,
                     [&] { longestPause = std::max(longestPause, sinceTick.restart()); });
    tick.start(5);
    const auto token = source.load(settings, [&](const GitHubSource::Result& answer) {
      result = answer;
      loop.quit();
    });
    EXPECT_FALSE(result) << "never before the token is there";
    loop.exec();
    return *result;
  }
  void expectTrouble(const GitHubSource::Result& result, Kind kind, const std::string& text) {
    ASSERT_TRUE(result.trouble);
    EXPECT_EQ(result.trouble->kind, kind);
    EXPECT_EQ(result.trouble->text, text);
  }

  TemporaryFolder folder;
  FakeFileManager files;
  FakeUserDefaults defaults;
  QtRunLoop runLoop;
  QtProcessRunner processes;
  qint64 longestPause = 0;

private:
  std::map<std::string, std::string> descriptors_;
};

TEST_F(GitHubToolTest, GetsOnlyItsOwnEnvironmentAndTheQuery) {
  load(script("env | sort > \"$HOME/env\"; printf '%s\\n' \"$@\" > \"$HOME/arguments\""));
  auto environment = contents(folder / "env");
  for (const char* shells : {"PWD=", "_=", "SHLVL=", "OLDPWD="})
    if (const auto at = environment.find(std::string("\n") + shells); at != std::string::npos)
      environment.erase(at + 1, environment.find('\n', at + 1) - at);
  EXPECT_EQ(environment, "GH_NO_UPDATE_NOTIFIER=1\nHOME=" + folder.path().string() +
                             "\nNO_COLOR=1\nPATH=/usr/bin:/bin:/usr/sbin:/sbin\n");
  EXPECT_TRUE(contents(folder / "arguments").starts_with("api\ngraphql\n-f\nquery=query {\n"));
}

TEST_F(GitHubToolTest, WhatAToolMayDo) {
  struct Case {
    std::string body;
    Kind kind;
    std::string text;
    double limit = 20;
  };
  const Case cases[] = {
      {"sleep 60", Kind::failed, "gh timed out", 0.3},
      {"trap '' TERM; sleep 60 & sleep 60; wait", Kind::failed, "gh timed out", 0.3},
      {"head -c 100000000 /dev/zero", Kind::failed, "gh's answer could not be read"},
      {"head -c 100000000 /dev/zero | tr '\\0' x >&2; exit 1", Kind::failed,
       std::string(300, 'x') + "…"},
      {"head -c 100000000 /dev/zero >&2", Kind::failed, "gh's answer could not be read"},
      {"head -c 50000000 /dev/zero & head -c 50000000 /dev/zero >&2; wait; exit 1", Kind::failed,
       std::string(300, '\0') + "…"},
      {"yes & yes >&2", Kind::failed, "gh timed out", 0.3},
      {"exec >&- 2>&-; sleep 60", Kind::failed, "gh timed out", 0.3},
      {"kill -9 $$", Kind::failed, "gh failed"},
      {"kill -SEGV $$", Kind::failed, "gh failed"},
      {"exit 1", Kind::failed, "gh failed"},
      {"echo '  no network  ' >&2; exit 1", Kind::failed, "no network"},
      {"echo 'To get started with GitHub CLI, please run:  gh auth login' >&2; exit 4",
       Kind::signedOut, ""},
      {"echo 'set the GH_TOKEN authentication token' >&2; exit 1", Kind::signedOut, ""},
      {"echo '" + list.substr(0, 60) + "'", Kind::failed, "gh's answer could not be read"},
      {"echo '" + rateLimited + "'; echo 'gh: API rate limit exceeded' >&2; exit 1", Kind::failed,
       "gh: API rate limit exceeded"},
      {"echo '{}'", Kind::failed, "gh failed"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.body);
    const auto result = load(script(c.body), c.limit);
    expectTrouble(result, c.kind, c.text);
    EXPECT_TRUE(result.items.empty());
    EXPECT_FALSE(result.hasData);
    EXPECT_LT(longestPause, 1000) << "milliseconds the main thread stood still";
  }
}

TEST_F(GitHubToolTest, WhatTheToolLeavesRunningIsNotWaitedFor) {
  QElapsedTimer timer;
  timer.start();
  const auto result = load(script("sleep 3 & echo '" + list + "'"));
  EXPECT_LT(timer.elapsed(), 2500);
  EXPECT_FALSE(result.trouble);
  EXPECT_EQ(result.items.size(), 1U);
}

TEST_F(GitHubToolTest, APartOfAnAnswerShowsWithTheTrouble) {
  const auto result = load(script("echo '" + part + "'; echo 'gh: s0 timed out' >&2; exit 1"));
  expectTrouble(result, Kind::failed, "gh: s0 timed out");
  EXPECT_TRUE(result.hasData);
  EXPECT_EQ(result.items.size(), 1U);
}

TEST_F(GitHubToolTest, WhereTheToolIs) {
  {
    SCOPED_TRACE("no tool in the folder");
    expectTrouble(load(folder / "nowhere" / "gh"), Kind::toolMissing, "");
  }
  const auto tool = script("exit 0");
  fs::permissions(tool, fs::perms::owner_read);
  {
    SCOPED_TRACE("no program");
    expectTrouble(load(tool), Kind::toolMissing, "");
  }
  fs::remove(tool);
  fs::create_directory(tool);
  expectTrouble(load(tool), Kind::toolMissing, "");
  fs::remove(tool);
  put(tool, "#!/no/such/shell\n");
  fs::permissions(tool, fs::perms::owner_all);
  expectTrouble(load(tool), Kind::failed, "gh failed");
  script("exit 0");
  fs::create_directories(folder / ".local/bin");
  fs::copy(tool, folder / ".local/bin/gh");
  files.tools = {fs::path("/nowhere"), folder / ".local/bin", folder.path()};
  GitHubSource source(runLoop, processes, files, defaults);
  EXPECT_EQ(source.toolURL(), folder / ".local/bin/gh");
  defaults.values["GitHubCLIPath"] = tool;
  EXPECT_EQ(source.toolURL(), tool);
  for (const JSONValue& other : {JSONValue("/nowhere"), JSONValue(5), JSONValue("gh")}) {
    defaults.values["GitHubCLIPath"] = other;
    EXPECT_EQ(source.toolURL(), folder / ".local/bin/gh");
  }
}

TEST_F(GitHubToolTest, ATokenThatGoesEndsTheTool) {
  const auto tool = script("echo $$ > \"$HOME/pid\"; exec sleep 60");
  files.tools = {fs::path(tool).parent_path()};
  GitHubSource source(runLoop, processes, files, defaults);
  QElapsedTimer timer;
  timer.start();
  {
    const auto token = source.load({}, [](const auto&) { ADD_FAILURE() << "nobody asked"; });
    while (contents(folder / "pid").empty() && timer.elapsed() < 10'000)
      QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
  }
  const auto process = static_cast<pid_t>(std::stol(contents(folder / "pid")));
  while (::kill(process, 0) == 0 && timer.elapsed() < 20'000)
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
  EXPECT_NE(::kill(process, 0), 0);
}

/// gh itself, which asks a server of ours over a Unix socket in place of GitHub.
class RealGitHubToolTest : public GitHubToolTest {
protected:
  void SetUp() override {
    if (!fs::exists("/usr/bin/gh") || !fs::exists("/usr/bin/python3"))
      GTEST_SKIP() << "gh is not installed";
  }
  GitHubSource::Result ask(const std::string& answer, int status = 200, bool isSignedIn = true,
                           GitHubShows shows = GitHubShows::waitingOnYou) {
    fs::create_directories(folder / ".config/gh");
    put(folder / ".config/gh/config.yml",
        "http_unix_socket: " + (folder / "socket").string() + "\n");
    fs::remove(folder / ".config/gh/hosts.yml");
    if (isSignedIn)
      put(folder / ".config/gh/hosts.yml",
          "github.com:\n    oauth_token: t9\n    user: octo\n    git_protocol: https\n");
    put(folder / "answer", answer);
    fs::remove(folder / "socket");
    QProcess server;
    server.start("/usr/bin/python3",
                 {TAVRIN_TESTS_FOLDER "/Integration/github_server.py",
                  QString::fromStdString((folder / "socket").string()), QString::number(status),
                  QString::fromStdString((folder / "answer").string())});
    EXPECT_TRUE(server.waitForReadyRead());
    auto result = load("/usr/bin/gh", 20, shows);
    server.kill();
    server.waitForFinished();
    asked = server.readAll().toStdString();
    return result;
  }
  std::string asked;
};

TEST_F(RealGitHubToolTest, Asks) {
  const auto result = ask(list);
  EXPECT_FALSE(result.trouble) << result.trouble->text;
  EXPECT_EQ(result.items.size(), 1U);
  EXPECT_NE(asked.find("/graphql token t9"), std::string::npos) << asked;
  EXPECT_NE(asked.find("review-requested:@me"), std::string::npos) << asked;
}

TEST_F(RealGitHubToolTest, Troubles) {
  expectTrouble(ask(list, 200, false), Kind::signedOut, "");
  expectTrouble(ask(R"({"message":"Bad credentials"})", 401), Kind::failed,
                "gh: Bad credentials (HTTP 401)");
  auto result = ask(rateLimited);
  expectTrouble(result, Kind::failed, "gh: API rate limit exceeded for user ID 1.");
  EXPECT_FALSE(result.hasData);
  result = ask(part);
  expectTrouble(result, Kind::failed, "gh: s0 timed out");
  EXPECT_EQ(result.items.size(), 1U);
  expectTrouble(ask(R"({"message":"You have exceeded a secondary rate limit."})", 403),
                Kind::failed, "gh: You have exceeded a secondary rate limit. (HTTP 403)");
  result = ask("<html>", 502);
  ASSERT_TRUE(result.trouble);
  EXPECT_EQ(result.trouble->kind, Kind::failed);
  EXPECT_FALSE(result.hasData);
}

TEST_F(RealGitHubToolTest, Contributions) {
  const auto result = ask(R"({"data":{"viewer":{"contributionsCollection":{"contributionCalendar":)"
                          R"({"totalContributions":4,"weeks":[{"contributionDays":)"
                          R"([{"date":"2026-01-03","contributionCount":4}]}]}}}}})",
                          200, true, GitHubShows::contributions);
  EXPECT_FALSE(result.trouble);
  ASSERT_TRUE(result.contributions);
  EXPECT_EQ(result.contributions->streak(), 1);
}

} // namespace
} // namespace tavrin::test

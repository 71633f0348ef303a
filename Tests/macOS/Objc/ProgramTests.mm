#include "Tests/macOS/Objc/MacTest.h"

#include "TavrinCore/Base/Errors.h"
#include "TavrinPlatform/macOS/Applications/MacApplicationLibrary.h"
#include "TavrinPlatform/macOS/Applications/MacRunningApplications.h"
#include "TavrinPlatform/macOS/Applications/Processes.h"
#include "TavrinPlatform/macOS/Slot/MacFileManager.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/FakeFolderWatch.h"

#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>

namespace tavrin::test {
namespace {

namespace fs = std::filesystem;

class MacRunningTest : public MacTest {
protected:
  struct Files final : FileManager {
    fs::path homeFolder() const override { return folder.path(); }
    fs::path applicationSupportFolder() const override { return folder.path(); }
    fs::path cachesFolder() const override { return folder.path(); }
    fs::path stateFolder() const override { return folder.path(); }
    std::optional<std::string> environment(const std::string&) const override { return {}; }
    std::vector<fs::path> toolFolders() const override { return {}; }
    fs::path unicodeFolder() const override { return {}; }
    TemporaryFolder folder;
  } files_;
  std::unique_ptr<RunningApplications> applications_ = makeMacRunningApplications(files_);
  const std::string identifier_ = "dev.quellby.Tavrin.Slot3";
};

TEST_F(MacRunningTest, AnIdentifierIsTheApplicationsOrWhosClaimItIs) {
  EXPECT_TRUE(applications_->knowsIdentifiers());
  EXPECT_EQ(applications_->processOwning(identifier_), std::nullopt);
  const pid_t other = ::fork();
  if (other == 0) {
    makeMacRunningApplications(files_).release()->claimIdentifier(identifier_);
    ::raise(SIGSTOP);
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(other, &status, WUNTRACED);
  EXPECT_EQ(applications_->processOwning(identifier_), other);
  EXPECT_FALSE(applications_->claimIdentifier(identifier_));
  ::kill(other, SIGKILL);
  ::waitpid(other, &status, 0);
  EXPECT_EQ(applications_->processOwning(identifier_), std::nullopt);
  EXPECT_TRUE(applications_->claimIdentifier(identifier_));
  EXPECT_TRUE(applications_->claimIdentifier(identifier_));
  EXPECT_EQ(applications_->processOwning(identifier_), ::getpid());
  appKit.running[identifier_] = 44;
  EXPECT_EQ(applications_->processOwning(identifier_), 44);
}

TEST_F(MacRunningTest, ABundleIsOpenedByTheSystemAnythingElseIsAChild) {
  const fs::path program = "/Applications/Tavrin Slot 3.app/Contents/MacOS/TavrinSlot";
  using Variables = std::map<std::string, std::string>;
  RunningApplications::Launch launch{program, {"--background"}, Variables{std::pair("TAVRIN_LOG", "x")}, {}};
  appKit.opened = 91;
  EXPECT_EQ(applications_->launch(launch), 91);
  EXPECT_EQ(called(), Calls{"start /Applications/Tavrin Slot 3.app --background TAVRIN_LOG=x inactive"});
  launch.arguments = {"--edit=ID"};
  EXPECT_EQ(applications_->launch(launch), 91);
  EXPECT_EQ(called(), Calls{"start /Applications/Tavrin Slot 3.app --edit=ID TAVRIN_LOG=x"}) << "for the user who asked";
  const auto trouble = [&] { return errorOf<FileError>([&] { applications_->launch(launch); }); };
  appKit.opened = 0;
  EXPECT_EQ(trouble(), "Failed to start \"" + program.string() + "\" because it went wrong");
  appKit.opened = -1;
  called();
  EXPECT_EQ(trouble(), "Failed to start \"" + program.string() + "\" because the system does not answer");
  EXPECT_EQ(called().back(), "waited 30 s");
  appKit.opened = 0;
  const auto log = files_.folder / "log";
  put(log, "before\n");
  launch = {"/bin/sh", {"-c", "echo $TAVRIN_WORD; echo error >&2; ps -o sid= -p $$"}, Variables{std::pair("TAVRIN_WORD", "hello")}, log};
  const RunningApplications::Launch none{program, {}, {}, {}};
  const auto together = applications_->launchTogether({none, launch});
  ASSERT_EQ(together.size(), 2U);
  EXPECT_EQ(together[0], 0);
  int status = 0;
  EXPECT_EQ(::waitpid(together[1], &status, 0), together[1]);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(contents(log).starts_with("before\nhello\nerror\n")) << contents(log);
  EXPECT_NE(errorOf<FileError>([&] { applications_->launchTogether({none}); }), "");
  launch.log = files_.folder / "no" / "log";
  EXPECT_NE(errorOf<FileError>([&] { applications_->launch(launch); }), "");
}

TEST_F(MacRunningTest, ProcessesAreToldByTheirFile) {
  const auto file = files_.folder / "program";
  put(file, "");
  fs::create_symlink(file, files_.folder / "link");
  // Numbers that this machine has, for a process that is not there is not alive.
  const int me = ::getpid(), parent = ::getppid();
  kernel.processes[me] = {file.string()};
  kernel.processes[parent] = {file.string(), 5};
  kernel.processes[1] = {"/sbin/launchd"};
  EXPECT_EQ(userProcesses(), ([&] { std::vector<int> all{1, me, parent}; std::ranges::sort(all); return all; }()));
  EXPECT_EQ(applications_->processesRunning(files_.folder / "link"), std::vector<int>{me}) << "no zombie";
  EXPECT_EQ(applications_->programOf(1), "/sbin/launchd");
  EXPECT_EQ(applications_->programOf(999'999), std::nullopt);
  EXPECT_TRUE(applications_->isAlive(me));
  EXPECT_FALSE(applications_->isAlive(parent));
  EXPECT_FALSE(applications_->isAlive(99'999'999));
}

TEST_F(MacRunningTest, TheEnvironmentStandsBehindTheArguments) {
  const auto memory = [](int count, const std::string& rest) {
    return std::string(reinterpret_cast<const char*>(&count), sizeof count) + rest;
  };
  using namespace std::string_literals;
  kernel.processes[5].memory = memory(2, "/bin/a\0\0\0\0a\0TAVRIN_APP_SUPPORT_DIR=/wrong\0TAVRIN_LOG=x=y\0HOME=/h\0\0executable_path=/x\0"s);
  const auto environment = environmentOfProcess(5);
  ASSERT_TRUE(environment);
  EXPECT_EQ(*environment, (std::map<std::string, std::string>{{"TAVRIN_LOG", "x=y"}, {"HOME", "/h"}}));
  EXPECT_EQ(applications_->fileManagerOf(5)->environment("TAVRIN_LOG"), "x=y");
  // Cut short, hidden, gone.
  for (const auto& bytes : {""s, "\1"s, memory(3, "/bin/a"), memory(9, "/bin/a\0\0a\0"s), memory(1, "/a\0a\0"s)}) {
    kernel.processes[5].memory = bytes;
    EXPECT_EQ(environmentOfProcess(5), std::nullopt);
    EXPECT_EQ(applications_->fileManagerOf(5), nullptr);
  }
  EXPECT_EQ(environmentOfProcess(6), std::nullopt);
}

TEST_F(MacRunningTest, EndsAndAsksInTheUsersWay) {
  const auto child = [] {
    const pid_t process = ::fork();
    if (process == 0) {
      ::pause();
      ::_exit(0);
    }
    return process;
  };
  const auto signalOf = [](int process) {
    int status = 0;
    ::waitpid(process, &status, 0);
    return WTERMSIG(status);
  };
  const int plain = child(), bundled = child();
  applications_->terminate(plain, false);
  EXPECT_EQ(signalOf(plain), SIGTERM);
  appKit.running["dev.quellby.app"] = bundled;
  applications_->terminate(bundled, false);
  EXPECT_TRUE(applications_->perform("dev.quellby.app", "quit"));
  const std::string call = "terminate " + std::to_string(bundled);
  EXPECT_EQ(called(), (Calls{call, call}));
  applications_->terminate(bundled, true);
  EXPECT_EQ(signalOf(bundled), SIGKILL);
  appKit.installed.emplace()["dev.quellby.app"] = "/Applications/A.app";
  appKit.opened = 7;
  EXPECT_TRUE(applications_->perform("dev.quellby.app", "open"));
  EXPECT_EQ(called(), Calls{"start /Applications/A.app"}) << "it comes to the front";
  EXPECT_TRUE(applications_->perform("dev.quellby.app", "edit", "ID"));
  EXPECT_EQ(called(), (Calls{"post dev.quellby.app.request at once", "start /Applications/A.app"}))
      << "one that runs is told";
  appKit.running.clear();
  EXPECT_TRUE(applications_->perform("dev.quellby.app", "edit", "ID"));
  EXPECT_EQ(called(), Calls{"start /Applications/A.app --edit=ID"});
  EXPECT_FALSE(applications_->perform("dev.quellby.other", "open"));
  EXPECT_FALSE(applications_->perform("dev.quellby.other", "quit"));
  EXPECT_FALSE(applications_->perform("dev.quellby.app", "dance"));
}

class MacLibraryTest : public MacTest {
protected:
  MacLibraryTest() {
    appKit.installed.emplace();
    const auto own = folder_ / "own", shared = folder_ / "shared";
    foundation.applicationFolders = {own.string(), shared.string()};
    add(shared / "Zoo.app", "org.zoo", "äpfel.app");
    add(shared / "Mail.app", "org.mail", "Post.app");
    add(own / "Mail.app", "org.mail", "Post.app");
    add(shared / "Broken.app", "", "Broken");
    add(shared / "Notes.txt", "org.notes", "Notes");
    foundation.bundles[(shared / "Mail.app").string()].information["CFBundleGetInfoString"] = @"Letters";
    add("/System/Library/CoreServices/Finder.app", "com.apple.finder", "Finder.app", false);
  }
  void add(const fs::path& path, const std::string& identifier, const std::string& name, bool isReal = true) {
    if (isReal)
      fs::create_directories(path);
    foundation.bundles[path.string()] = {identifier};
    foundation.displayNames[path.string()] = name;
    (*appKit.installed)[identifier] = path.string();
  }
  std::string troubleOf(const std::string& identifier) {
    std::string answer = "none";
    const auto token = library_->launch(identifier, "", [&](const std::string& trouble) { answer = trouble; });
    EXPECT_EQ(answer, "none") << "before the call has returned";
    runLoop_.runPosts();
    return answer;
  }
  TemporaryFolder folder_;
  FakeFolderWatch folders_;
  std::unique_ptr<ApplicationLibrary> library_ = makeMacApplicationLibrary(runLoop_, folders_);
};

TEST_F(MacLibraryTest, ListsApplicationsOnceByTheUsersNames) {
  std::vector<ApplicationInfo> found;
  auto token = library_->list([&](auto list) { found = std::move(list); });
  runLoop_.runBackground();
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(found[0].name, "Finder");
  EXPECT_EQ(found[1].name, "Post");
  EXPECT_EQ(found[1].path, (folder_ / "own" / "Mail.app").string());
  EXPECT_EQ(found[1].icon, found[1].path);
  EXPECT_EQ(found[1].id, "org.mail");
  EXPECT_EQ(found[2].name, "äpfel");
  token = library_->list([](auto) { FAIL() << "nobody waits any more"; });
  token.reset();
  runLoop_.runBackground();
}

TEST_F(MacLibraryTest, FindsByPathThenByIdentifier) {
  const auto mail = (folder_ / "shared" / "Mail.app").string();
  add(folder_ / "odd" / "Odd.app", "org.odd.app", "Odd");
  std::vector<std::optional<ApplicationInfo>> found;
  const auto token = library_->find(
      {{mail, {}, {}, {}},
       {"/gone/Zoo.app", "org.zoo", {}, {}},
       {"org.zoo.app", {}, {}, {}},
       {"", "org.odd.app", {}, {}},
       {"/gone/Zoo.app", {}, {}, {}},
       {"", {}, {}, {}}},
      [&](auto list) { found = std::move(list); });
  runLoop_.runBackground();
  ASSERT_EQ(found.size(), 6U);
  ASSERT_TRUE(found[0] && found[1] && found[2] && found[3]);
  EXPECT_EQ(found[0]->comment, "Letters");
  EXPECT_EQ(found[1]->id, "org.zoo");
  EXPECT_EQ(found[2]->id, "org.zoo");
  EXPECT_EQ(found[3]->id, "org.odd.app") << "an identifier may end like a bundle";
  EXPECT_FALSE(found[4] || found[5]);
}

TEST_F(MacLibraryTest, APictureIsDrawnForWhatIsThere) {
  QImage image;
  const auto picture = [&](const std::string& path) {
    const auto token = library_->icon(path, 32, 2, [&](QImage made) { image = made; });
    runLoop_.runBackground();
    return image;
  };
  const auto mail = (folder_ / "shared" / "Mail.app").string();
  EXPECT_EQ(picture(mail).size(), QSize(64, 64));
  EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
  EXPECT_EQ(image.pixel(63, 63), 0xffffffff);
  EXPECT_EQ(called(), (Calls{"icon " + mail, "picture of 64", "space", "bitmap 64x64 bits 8 form 8194",
                             "space released", "draw 64", "bitmap released"}));
  EXPECT_TRUE(picture("/gone").isNull());
  EXPECT_EQ(called(), Calls{});
  appKit.hasIcon = false;
  EXPECT_TRUE(picture(mail).isNull());
}

TEST_F(MacLibraryTest, SaysWhyOneDidNotStart) {
  appKit.opened = 9;
  EXPECT_EQ(troubleOf("org.zoo"), "");
  EXPECT_EQ(called(), Calls{"start " + (folder_ / "shared" / "Zoo.app").string()}) << "in front";
  appKit.opened = 0;
  EXPECT_EQ(troubleOf("org.zoo"), "Failed to start \"org.zoo\" because it went wrong");
  EXPECT_EQ(troubleOf("org.none"), "Failed to start \"org.none\" because it is not installed");
}

TEST_F(MacLibraryTest, FollowsItsFoldersForAll) {
  int told = 0;
  const auto token = library_->observe([&] { ++told; });
  const auto other = library_->observe([] {});
  ASSERT_EQ(folders_.followers.size(), 1U);
  const auto& request = folders_.followers.front().request;
  EXPECT_EQ(request.folders.size(), 2U);
  EXPECT_TRUE(request.includesFolders);
  EXPECT_EQ(request.classify("Mail.app"), FolderEntry::wanted);
  EXPECT_EQ(request.classify("Utilities"), FolderEntry::ignored);
  folders_.tell({});
  EXPECT_EQ(told, 0) << "how it was";
  folders_.tell({});
  EXPECT_EQ(told, 1);
}

} // namespace
} // namespace tavrin::test

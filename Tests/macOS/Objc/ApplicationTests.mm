#include "Tests/macOS/Objc/MacTest.h"

#include "TavrinPlatform/macOS/Slot/MacApplication.h"
#include "TavrinPlatform/macOS/Slot/MacFileManager.h"
#include "Tests/Storage/TemporaryFolder.h"
#include "TavrinPlatform/macOS/Slot/MacMainBundle.h"
#include "TavrinPlatform/macOS/Slot/MacUserDefaults.h"

#include <QTimer>
#include <algorithm>

namespace tavrin::test {
namespace {

using Files = std::vector<std::filesystem::path>;

class MacApplicationTest : public MacTest {
protected:
  MacApplicationTest() {
    application_.onReopen = [] { note("reopened"); };
    application_.onResignActive = [] { note("resigned"); };
    application_.onOpenFiles = [this](const Files& files) {
      opened_ = files;
      return files.size() < 2;
    };
  }
  id<NSApplicationDelegate> delegate() { return NSApplication.sharedApplication.delegate; }
  void open(std::vector<id> files) {
    [delegate() application:NSApplication.sharedApplication
                  openFiles:[[FakeArray alloc] initWith:files]];
  }

  MacApplication application_{{"slot", "--background"}};
  Files opened_;
};

TEST_F(MacApplicationTest, ABackgroundStartIsRegularAndTakesNoFocus) {
  EXPECT_EQ(called(), Calls{"policy 0"});
  EXPECT_EQ(qgetenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM"), "1");
  EXPECT_EQ(application_.arguments(), (Calls{"slot", "--background"}));
  [delegate() applicationDidFinishLaunching:nil];
  EXPECT_EQ(called(), Calls{});
}

TEST_F(MacApplicationTest, LaunchesInsideTheLoopOnceAndThenGivesTheFilesThatCameBefore) {
  called();
  open({@"/c"});
  EXPECT_EQ(called(), Calls{"reply 0"});
  EXPECT_EQ(opened_, Files{});
  QTimer::singleShot(0, [&] {
    note("loop");
    [delegate() applicationDidFinishLaunching:nil];
    [delegate() applicationDidFinishLaunching:nil];
    EXPECT_EQ(opened_, Files{"/c"});
    application_.terminate();
  });
  EXPECT_EQ(application_.run([] { note("launched"); }), 0);
  EXPECT_EQ(called(), (Calls{"loop", "launched"}));
}

TEST_F(MacApplicationTest, EndsAtOnceWhenTerminatedBeforeTheLoop) {
  application_.terminate();
  EXPECT_EQ(application_.run([] { FAIL() << "launched"; }), 0);
}

TEST_F(MacApplicationTest, AnswersOpenedFilesReopenAndResign) {
  [delegate() applicationDidFinishLaunching:nil];
  called();
  open({@"/a", @"/b"});
  EXPECT_EQ(called(), Calls{"reply 2"});
  EXPECT_EQ(opened_, (Files{"/a", "/b"}));
  EXPECT_FALSE([delegate() applicationShouldHandleReopen:NSApplication.sharedApplication
                                       hasVisibleWindows:NO]);
  [delegate() applicationDidResignActive:nil];
  EXPECT_EQ(called(), (Calls{"reopened", "resigned"}));
  application_.hasJustClosedPanel = [] { return true; };
  EXPECT_FALSE([delegate() applicationShouldHandleReopen:NSApplication.sharedApplication
                                       hasVisibleWindows:YES]);
  EXPECT_EQ(called(), Calls{});
}

TEST_F(MacApplicationTest, AttentionIsAskedForAndTakenBackOnce) {
  called();
  application_.requestUserAttention();
  application_.requestUserAttention();
  application_.cancelUserAttention();
  application_.cancelUserAttention();
  EXPECT_EQ(called(), (Calls{"attention 0", "cancel 5", "attention 0", "cancel 5"}));
}

TEST_F(MacApplicationTest, RequestsComeAsWordsOfTheStartAndByNotices) {
  MacApplication window({"settings", "--edit=one", "--background", "--=x"});
  window.onAction = [](const std::string& action, const std::string& object) {
    note(action + " " + object);
    return true;
  };
  called();
  const auto ask = [](NSString* word) {
    [NSDistributedNotificationCenter.defaultCenter postNotificationName:@"dev.quellby.Tavrin.Slot3.request"
                                                                 object:word
                                                               userInfo:nil
                                                     deliverImmediately:YES];
    calls.erase(std::remove_if(calls.begin(), calls.end(), [](const auto& call) { return call.starts_with("post "); }), calls.end());
  };
  QTimer::singleShot(0, [&] {
    ask(@"--edit=early");
    note("loop");
    [delegate() applicationDidFinishLaunching:nil];
    ask(@"--edit=two=three");
    ask(@"nonsense");
    window.terminate();
  });
  EXPECT_EQ(window.run([] { note("launched"); }), 0);
  const Calls all = called();
  ASSERT_FALSE(all.empty());
  EXPECT_EQ(Calls(all.begin() + 1, all.end()), (Calls{"loop", "launched", "edit one", "edit early", "edit two=three"}));
}

TEST_F(MacApplicationTest, AnotherApplicationIsToldOrStartedWithTheRequest) {
  called();
  appKit.installed.emplace()["dev.quellby.Tavrin"] = "/Applications/Tavrin Settings.app";
  application_.request("dev.quellby.Tavrin", "edit", "ID");
  EXPECT_EQ(called(), Calls{"start /Applications/Tavrin Settings.app --edit=ID"}) << "in front";
  appKit.running["dev.quellby.Tavrin"] = 44;
  application_.request("dev.quellby.Tavrin", "edit", "ID");
  EXPECT_EQ(called(), (Calls{"post dev.quellby.Tavrin.request at once", "start /Applications/Tavrin Settings.app"}));
  application_.request("dev.quellby.none", "edit", "ID");
  EXPECT_EQ(called(), Calls{});
  // One beside this one comes first: the system may know of an older one, or of none yet.
  const TemporaryFolder folder;
  const auto beside = folder / "Tavrin Settings.app";
  std::filesystem::create_directories(beside);
  std::filesystem::create_directories(folder / "Other.app");
  foundation.bundlePath = (folder / "Tavrin Slot 3.app").string();
  foundation.bundles = {{beside.string(), {"dev.quellby.Tavrin"}}, {(folder / "Other.app").string(), {""}}};
  appKit.running.clear();
  appKit.installed->clear();
  application_.request("dev.quellby.Tavrin", "edit", "ID");
  EXPECT_EQ(called(), Calls{"start " + beside.string() + " --edit=ID"});
}

using MacApplicationLifeTest = MacTest;

TEST_F(MacApplicationLifeTest, ADelegateThatOutlivesIsSilent) {
  id<NSApplicationDelegate> kept = nil;
  {
    MacApplication application({});
    application.onReopen = [] { FAIL() << "called after its end"; };
    kept = NSApplication.sharedApplication.delegate;
  }
  EXPECT_FALSE([kept applicationShouldHandleReopen:NSApplication.sharedApplication
                                 hasVisibleWindows:NO]);
  [kept applicationDidFinishLaunching:nil];
  [kept applicationDidResignActive:nil];
  called();
  [kept application:NSApplication.sharedApplication
          openFiles:[[FakeArray alloc] initWith:{@"/a"}]];
  EXPECT_EQ(called(), Calls{"reply 2"});
}

using MacBundleTest = MacTest;

TEST_F(MacBundleTest, ReadsEntriesOfTheirTypesAndNothingOutsideABundle) {
  foundation.information["TavrinSlot"] = @3;
  foundation.information["TavrinDataFolder"] = @"TavrinDev";
  foundation.information["Flag"] = @YES;
  foundation.information["Half"] = @0.5;
  const auto bundle = makeMacMainBundle();
  EXPECT_EQ(bundle->path(), "/Applications/Tavrin Slot 3.app");
  EXPECT_EQ(bundle->identifier(), "dev.quellby.Tavrin.Slot3");
  EXPECT_EQ(bundle->integer("TavrinSlot"), 3);
  EXPECT_EQ(bundle->string("TavrinDataFolder"), "TavrinDev");
  for (const char* key : {"Flag", "Half", "TavrinDataFolder", "None"})
    EXPECT_EQ(bundle->integer(key), std::nullopt) << key;
  EXPECT_EQ(bundle->string("TavrinSlot"), std::nullopt);
  foundation.bundlePath = "/usr/local/bin";
  EXPECT_EQ(makeMacMainBundle()->path(), std::nullopt);
  EXPECT_EQ(makeMacMainBundle()->identifier(), std::nullopt);
}

TEST_F(MacBundleTest, FoldersAndTheEnvironmentAsAtTheStart) {
  const auto files = makeMacFileManager();
  EXPECT_EQ(files->homeFolder(), "/Users/ada");
  EXPECT_EQ(files->applicationSupportFolder(), "/Users/ada/Library/Application Support");
  EXPECT_THROW(files->cachesFolder(), std::exception);
  EXPECT_EQ(files->environment("TAVRIN_LOG"), "stderr");
  EXPECT_EQ(files->environment("TAVRIN_NONE"), std::nullopt);
  EXPECT_EQ(files->toolFolders(), (std::vector<std::filesystem::path>{"/opt/homebrew/bin", "/usr/local/bin",
                                                                      "/opt/local/bin", "/Users/ada/.local/bin"}))
      << "a program of the Dock's has no path of the user's";
  EXPECT_EQ(makeMacFileManager({{"TAVRIN_UNICODE_DIR", "/u"}})->unicodeFolder(), "/u");
}

struct Lines final : LogSink {
  void write(LogLevel, std::string_view, std::string_view, std::string_view message) override {
    lines.emplace_back(message);
  }
  Calls lines;
};

TEST_F(MacBundleTest, DefaultsKeepEveryValueAndAreOutWhenSet) {
  Lines log;
  const auto defaults = makeMacUserDefaults(log);
  for (const char* text : {R"("/opt/gh")", "true", "42", "-0.25", "1e400", "[1,2]", "null",
                           R"({"accumulated":12.5,"startedAt":null})"}) {
    const auto value = JSONValue::parse(text);
    defaults->set("key", value);
    EXPECT_EQ(called(), (Calls{"set key", "synchronize this application"}));
    EXPECT_EQ(defaults->value("key"), value) << text;
  }
  EXPECT_TRUE([foundation.defaults[""]["key"] isKindOfClass:NSData.class]);
  defaults->remove("key");
  EXPECT_EQ(called(), (Calls{"remove key", "synchronize this application"}));
  EXPECT_EQ(defaults->value("key"), std::nullopt);
  foundation.canSynchronize = false;
  defaults->set("key", 1);
  defaults->set("key", 2);
  EXPECT_EQ(log.lines.size(), 1U);
}

} // namespace
} // namespace tavrin::test

#include "TavrinCommand/Base/Console.h"
#include "TavrinCommand/CompletionCommands.h"
#include "TavrinCore/Widgets/DockWidget.h"
#include "Tests/Command/HostFixture.h"

#include <CLI/App.hpp>
#include <gmock/gmock.h>

namespace tavrin::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* announced = "dev.quellby.tavrin.widgetsChanged";

TEST_F(HostTest, AddSetPlaceAndRemoveAreSavedAndAnnounced) {
  EXPECT_EQ(run({"widgets", "add", "timer", "Tea", "--set", "presets=3m,5m", "--place"}), 0);
  EXPECT_THAT(output.str(), HasSubstr("in slot 1"));
  EXPECT_THAT(platform.center.posts, ElementsAre(announced));
  EXPECT_EQ(run({"widgets", "set", "tea", "presets=4m", "name=Green", "span=2"}), 0);
  EXPECT_EQ(output.str(), "name = Green\nspan = 2\npresets = 4 min\n");
  EXPECT_EQ(run({"widgets", "place", "GREEN", "--slot", "7"}), 0);
  EXPECT_EQ(platform.center.posts.size(), 3U);
  const auto list = json({"widgets"});
  const auto& widget = list.member("widgets")->array()->front();
  EXPECT_EQ(*widget.member("name")->string(), "Green");
  EXPECT_EQ(widget.member("slot")->integerValue(), 7);
  EXPECT_EQ(widget.member("span")->integerValue(), 2);
  EXPECT_EQ(widget.member("settings")->member("presets")->compact(), "[240]");
  EXPECT_EQ(run({"widgets", "release", "Gr"}), 0);
  EXPECT_TRUE(json({"widgets", "show", "Green"}).member("slot")->isNull());
  EXPECT_EQ(run({"widgets", "remove", "Green"}), 0);
  EXPECT_TRUE(json({"widgets", "list"}).member("widgets")->array()->empty());
}

TEST_F(HostTest, ARefusedCommandChangesAndAnnouncesNothing) {
  run({"widgets", "add", "timer", "Tea"});
  run({"widgets", "add", "timer", "Tea time"});
  run({"widgets", "add", "clock", "Clock", "--place"});
  const auto before = fileText();
  platform.center.posts.clear();
  const std::pair<std::vector<std::string>, int> cases[] = {
      {{"widgets", "set", "Tea", "presets=1m", "tint=1"}, 3},
      {{"widgets", "set", "Tea", "presets=1m", "presets=9d"}, 5},
      {{"widgets", "set", "Te", "presets=1m"}, 4},
      {{"widgets", "set", "Coffee", "presets=1m"}, 3},
      {{"widgets", "set", "Tea", "presets"}, 2},
      {{"widgets", "set", "Tea"}, 2},
      {{"widgets", "add", "teapot"}, 3},
      {{"widgets", "add", "c"}, 4},
      {{"widgets", "add", "timer", " "}, 5},
      {{"widgets", "add", "timer", "X", "--span", "4"}, 5},
      {{"widgets", "place", "Tea", "--slot", "13"}, 5},
      {{"widgets", "place", "Tea", "--slot", "1"}, 5},
      {{"widgets", "place", "Tea", "Tea time", "--slot", "5"}, 2},
      {{"widgets", "place", "Tea", "Coffee"}, 3},
      {{"widgets", "remove", "Tea", "Coffee"}, 3},
      {{"widgets", "span", "Tea", "0"}, 5},
      {{"widgets", "frobnicate"}, 2},
      {{}, 2}};
  for (const auto& [words, code] : cases) {
    EXPECT_EQ(run(words), code) << testing::PrintToString(words) << errors.str();
    EXPECT_THAT(errors.str(), HasSubstr("tavrin: ")) << testing::PrintToString(words);
  }
  EXPECT_EQ(fileText(), before);
  EXPECT_TRUE(platform.center.posts.empty());
}

TEST_F(HostTest, AKindNobodyKnowsIsAnsweredWithTheNearest) {
  const std::pair<const char*, const char*> cases[] = {
      {"colorpicker", "did you mean colourPicker? the kinds are activity, airdrop, battery"},
      {"usage", "did you mean claudeUsage?"},
      {"Wether", "did you mean weather?"},
      {"pomodroo", "did you mean pomodoro?"},
      {"hologram", "there is no kind \"hologram\"; the kinds are activity"}};
  for (const auto& [word, part] : cases) {
    EXPECT_EQ(run({"widgets", "add", word}), 3);
    EXPECT_THAT(errors.str(), HasSubstr(part));
  }
  EXPECT_EQ(run({"widgets", "add", "COLOURPICKER"}), 0);
}

TEST_F(HostTest, WhatWasNotExpectedIsToldInItsOrder) {
  EXPECT_EQ(run({"dock", "undo", "--file", "d.plist"}), 2);
  EXPECT_THAT(errors.str(), HasSubstr("not expected: --file d.plist"));
}

TEST_F(HostTest, AmbiguityNamesTheCandidates) {
  run({"widgets", "add", "timer", "Tea one"});
  run({"widgets", "add", "timer", "Tea two"});
  EXPECT_EQ(run({"widgets", "show", "tea"}), 4);
  EXPECT_THAT(errors.str(), testing::AllOf(HasSubstr("Tea one"), HasSubstr("Tea two")));
  const auto id = *json({"widgets"}).member("widgets")->array()->front().member("id")->string();
  EXPECT_EQ(run({"widgets", "show", id.substr(0, 8)}), 0);
}

TEST_F(HostTest, EntriesOfANewerVersionSurviveEveryChange) {
  writeFile(
      R"({"version":1,"widgets":[{"kind":{"hologram":{"_0":{"x":1e400}}},"slot":1,"n":1.0}]})");
  EXPECT_EQ(run({"widgets", "add", "clock", "--place"}), 0);
  EXPECT_THAT(output.str(), HasSubstr("slot 2")) << "slot 1 is the unknown entry's";
  EXPECT_EQ(run({"widgets", "place", "Clock", "--slot", "1"}), 5);
  EXPECT_EQ(run({"widgets", "remove", "Clock"}), 0);
  const auto file = JSONValue::parse(fileText());
  EXPECT_EQ(file.member("widgets")->array()->front().compact(),
            R"({"kind":{"hologram":{"_0":{"x":1e400}}},"n":1.0,"slot":1})");
}

TEST_F(HostTest, AFileOfANewerVersionIsRemarkedOnAndKeepsItsVersion) {
  writeFile(R"({"version":99,"widgets":[{"kind":{"hologram":{}}}]})");
  EXPECT_EQ(run({"widgets", "add", "clock"}), 0);
  EXPECT_THAT(errors.str(), HasSubstr("has version 99, and this tavrin knows version 1"));
  const auto file = JSONValue::parse(fileText());
  EXPECT_EQ(file.member("version")->integerValue(), 99);
  EXPECT_EQ(file.member("widgets")->array()->back().compact(), R"({"kind":{"hologram":{}}})");
  // Once, however many times the file is read.
  EXPECT_EQ(run({"restart"}), 3);
  EXPECT_EQ(errors.str().find("version 99"), errors.str().rfind("version 99"));
  writeFile(R"({"version":1,"widgets":[]})");
  EXPECT_EQ(run({"widgets", "list"}), 0);
  EXPECT_EQ(errors.str(), "");
}

TEST_F(HostTest, SlotsThatShowNothingAreMarkedAndLeft) {
  const auto entry = [](const char* id, const char* name, int slot) {
    return std::string(R"({"id":"00000000-0000-4000-8000-00000000000)") + id + R"(","name":")" +
           name + R"(","kind":{"clock":{"_0":{}}},"slot":)" + std::to_string(slot) + "}";
  };
  writeFile(R"({"version":1,"widgets":[)" + entry("1", "A", 3) + "," + entry("2", "B", 77) + "," +
            entry("3", "C", 3) + "]}");
  EXPECT_EQ(run({"widgets", "list"}), 0);
  EXPECT_THAT(output.str(),
              testing::AllOf(HasSubstr("77!"), HasSubstr("\"B\": there is no slot 77"),
                             HasSubstr("3!"), HasSubstr("\"C\": slot 3 shows \"A\""),
                             Not(HasSubstr("\"A\":"))));
  EXPECT_EQ(run({"widgets", "show", "B"}), 0);
  EXPECT_THAT(output.str(), HasSubstr("there is no slot 77"));
  for (const auto* name : {"B", "C"}) {
    EXPECT_EQ(run({"start", name}), 3);
    EXPECT_THAT(errors.str(), HasSubstr("is not shown")) << name;
  }
  EXPECT_EQ(run({"widgets", "place", "A", "B", "C"}), 0);
  EXPECT_THAT(output.str(),
              testing::AllOf(HasSubstr("\"A\" is in slot 3"), HasSubstr("\"B\" is in slot 1"),
                             HasSubstr("\"C\" is in slot 2")));
  EXPECT_EQ(run({"widgets", "list"}), 0);
  EXPECT_THAT(output.str(), Not(HasSubstr("!")));
}

TEST_F(HostTest, AConvertersUnitsFollowItsCategory) {
  run({"widgets", "add", "converter", "Fever"});
  struct Case {
    std::vector<std::string> settings;
    int code;
    const char* from;
    const char* to;
  };
  const Case cases[] = {
      {{"category=mass"}, 0, "kg", "lb"},
      {{"to=g"}, 0, "kg", "g"},
      {{"category=length", "from=cm"}, 0, "cm", nullptr},
      {{"from=kg"}, 5, "cm", nullptr},
      {{"category=mass", "to=m"}, 5, "cm", nullptr},
      {{"to=kg", "category=mass"}, 0, nullptr, "kg"},
      {{"value=3"}, 0, nullptr, "kg"},
  };
  for (const auto& one : cases) {
    std::vector<std::string> words{"widgets", "set", "Fever"};
    words.insert(words.end(), one.settings.begin(), one.settings.end());
    EXPECT_EQ(run(words), one.code) << one.settings.front() << errors.str();
    if (one.code != 0) {
      EXPECT_THAT(errors.str(), HasSubstr("must be a unit of "));
    }
    const auto shown = json({"widgets", "show", "Fever"});
    if (one.from != nullptr) {
      EXPECT_EQ(*shown.member("settings")->member("from")->string(), one.from);
    }
    if (one.to != nullptr) {
      EXPECT_EQ(*shown.member("settings")->member("to")->string(), one.to);
    }
  }
  EXPECT_EQ(run({"widgets", "set", "Fever", "category=temperature"}), 0);
  EXPECT_THAT(output.str(), testing::AllOf(HasSubstr("from = "), HasSubstr("to = ")))
      << "what came along is told";
}

TEST_F(HostTest, ACorruptFileIsLeftAsItIs) {
  writeFile("{ not json");
  EXPECT_EQ(run({"widgets", "add", "clock"}), 1);
  EXPECT_THAT(errors.str(), HasSubstr("widgets.json"));
  EXPECT_EQ(fileText(), "{ not json");
}

TEST_F(HostTest, TwelveSlotsAndNoMore) {
  for (int i = 0; i < 12; ++i)
    ASSERT_EQ(run({"widgets", "add", "clock", "--place"}), 0);
  const auto before = fileText();
  EXPECT_EQ(run({"widgets", "add", "clock", "--place"}), 6);
  EXPECT_EQ(fileText(), before);
}

TEST_F(HostTest, RemovingAsksOnATerminal) {
  run({"widgets", "add", "clock"});
  isInteractive = true;
  EXPECT_EQ(run({"widgets", "remove", "Clock"}, "perhaps\nno\n"), 0);
  EXPECT_EQ(json({"widgets"}).member("widgets")->array()->size(), 1U);
  EXPECT_EQ(run({"widgets", "remove", "Clock"}, "yes\n"), 0);
  EXPECT_TRUE(json({"widgets"}).member("widgets")->array()->empty());
}

TEST_F(HostTest, EveryKindIsListedAndExplained) {
  EXPECT_EQ(json({"widgets", "kinds"}).array()->size(), 31U);
  for (const auto& kind : allKinds()) {
    const auto fields = json({"widgets", "kinds", std::string(kind.key)});
    EXPECT_NE(fields.member("fields"), nullptr) << kind.key;
    EXPECT_EQ(run({"widgets", "kinds", std::string(kind.key)}), 0);
    EXPECT_EQ(run({"widgets", "add", std::string(kind.key)}), 0) << errors.str();
    EXPECT_EQ(run({"widgets", "show", std::string(kind.title)}), 0) << errors.str();
  }
}

TEST_F(HostTest, NamesCannotSpeakToTheTerminal) {
  run({"widgets", "add", "clock", "a\033[31mb\nc"});
  run({"widgets", "list"});
  EXPECT_THAT(output.str(), Not(HasSubstr("\033")));
  EXPECT_EQ(std::ranges::count(output.str(), '\n'), 2);
}

TEST_F(HostTest, TablesAlignByDisplayWidth) {
  run({"widgets", "add", "clock", "時計"});
  run({"widgets", "add", "clock", "Cafe\u0301"});
  run({"widgets", "list"});
  std::istringstream lines(output.str());
  std::string line;
  std::getline(lines, line);
  const int column = displayWidth(line.substr(0, line.find("KIND")));
  while (std::getline(lines, line))
    EXPECT_EQ(displayWidth(line.substr(0, line.find("clock"))), column) << line;
}

std::vector<std::string> words(const std::vector<Suggestion>& found) {
  std::vector<std::string> result;
  for (const auto& one : found)
    result.push_back(one.word);
  return result;
}

TEST_F(HostTest, Completion) {
  run({"widgets", "add", "pomodoro", "Focus", "--place"});
  run({"widgets", "add", "clock", "Wall clock"});
  const std::pair<std::vector<std::string>, std::vector<std::string>> cases[] = {
      {{"wid"}, {"widgets"}},
      {{"widgets", "re"}, {"rename", "release", "remove"}},
      {{"widgets", "add", "ti"}, {"timer", "timeProgress"}},
      {{"widgets", "show", "w"}, {"Wall clock"}},
      {{"widgets", "set", "Focus", "fo"}, {"focus="}},
      {{"widgets", "set", "Focus", "ringsAtTheEnd="}, {"ringsAtTheEnd=yes", "ringsAtTheEnd=no"}},
      {{"widgets", "set", "Focus", "focus=5m", "cyc"}, {"cyclesBeforeLongBreak="}},
      {{"widgets", "add", "timeProgress", "--set", "scope=m"}, {"scope=month"}},
      {{"widgets", "release", "Focus", ""}, {"Wall clock"}},
      {{"start", ""}, {"Focus"}},
      {{"completion", "f"}, {"fish"}},
      {{"widgets", "list", "--j"}, {"--json"}},
      {{"__"}, {}}};
  for (const auto& [typed, expected] : cases) {
    std::istringstream input;
    Console console{output, errors, input};
    CommandContext context(platform, console);
    EXPECT_EQ(words(suggestions(*makeCommandLine(context), context, typed)), expected)
        << testing::PrintToString(typed);
  }
}

void collectCommands(const CLI::App& app, const std::string& path,
                     std::vector<std::string>& found) {
  for (const auto* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    if (command->get_group().empty())
      continue;
    const auto name = path + " " + command->get_name();
    found.push_back(name);
    collectCommands(*command, name, found);
  }
}

TEST_F(HostTest, EveryCommandIsInTheManualAndHasExamples) {
  std::istringstream input;
  Console console{output, errors, input};
  CommandContext context(platform, console);
  const auto app = makeCommandLine(context);
  std::ifstream file(TAVRIN_SOURCE_DIR "/Packaging/tavrin.1");
  const std::string manual{std::istreambuf_iterator<char>(file), {}};
  std::vector<std::string> commands;
  collectCommands(*app, "tavrin", commands);
  ASSERT_GE(commands.size(), 17U);
  for (const auto& command : commands) {
    EXPECT_THAT(manual, HasSubstr("\"" + command + "\"")) << command;
    std::vector<std::string> help;
    std::istringstream parts(command.substr(7));
    for (std::string part; parts >> part;)
      help.push_back(part);
    help.push_back("--help");
    EXPECT_EQ(run(help), 0);
    EXPECT_THAT(output.str(), HasSubstr("Examples:")) << command;
  }
}

} // namespace
} // namespace tavrin::test

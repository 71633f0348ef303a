#include "TavrinCore/Kinds/Fans/FanControl.h"

#include <gmock/gmock.h>
#include <map>

namespace tavrin {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Change = FanHold::Change;
using testing::ElementsAre;
using testing::IsEmpty;

/// Keys that may refuse to be written a number of times.
class Store final : public SMCAccess {
public:
  explicit Store(int fans, const std::string& modeType = "ui8 ") {
    set("FNum", fans, "ui8 ");
    set("Ftst", 0, "ui8 ");
    for (int i = 0; i < fans; ++i) {
      const std::string fan(1, static_cast<char>('0' + i));
      set("F" + fan + "Ac", 2000, "fpe2");
      set("F" + fan + "Mn", 1200, "fpe2");
      set("F" + fan + "Mx", 6000, "flt ");
      set("F" + fan + "Tg", 0, "flt ");
      values["F" + fan + "Md"] = {modeType, modeType == "ui16" ? Bytes{0, 0} : Bytes{0}};
    }
  }
  void set(const std::string& key, double number, const std::string& type) {
    values[key] = {type, *SMCValue::encoding(number, type)};
  }
  SMCValue read(const std::string& key) override {
    const auto found = values.find(key);
    if (found == values.end())
      throw FanError::readFailed(key, "the key does not exist");
    return found->second;
  }
  void write(const std::string& key, const Bytes& bytes) override {
    if (refusals[key]-- > 0)
      throw FanError::writeFailed(key, "the SMC returned 130");
    values[key].bytes = bytes;
    writes.push_back(key);
  }
  double number(const std::string& key) { return *values[key].number(); }

  std::map<std::string, SMCValue> values;
  std::map<std::string, int> refusals;
  std::vector<std::string> writes;
};

struct Bench {
  explicit Bench(int fans, const std::string& modeType = "ui8 ") : store(fans, modeType) {}
  std::string failureOf(void (FanControl::*action)()) {
    try {
      (control.*action)();
    } catch (const FanError& error) {
      return error.what();
    }
    return "";
  }
  Store store;
  double paused = 0;
  FanControl control{store, [this](double seconds) { paused += seconds; }};
};

TEST(SMCValue, Numbers) {
  struct Case {
    const char* type;
    Bytes bytes;
    std::optional<double> number;
  };
  const Case cases[] = {
      {"fpe2", {0x17, 0x70}, 1500},
      {"fpe2", {0, 1}, 0.25},
      {"fpe2", {1}, {}},
      {"flt ", {0, 0, 0x80, 0x3F}, 1},
      {"flt ", {0, 0, 0x80}, {}},
      {"flt ", {0, 0, 0, 0, 0}, {}},
      {"ui8 ", {255}, 255},
      {"ui8 ", {}, {}},
      {"ui16", {1, 2}, 258},
      {"ui16", {1}, {}},
      {"sp78", {1, 2}, {}},
      {"", {}, {}},
  };
  for (const auto& [type, bytes, number] : cases)
    EXPECT_EQ((SMCValue{type, bytes}.number()), number) << type;
}

TEST(SMCValue, Encodings) {
  struct Case {
    double value;
    const char* type;
    std::optional<Bytes> bytes;
  };
  const Case cases[] = {
      {1500, "fpe2", Bytes{0x17, 0x70}},
      {16384, "fpe2", {}},
      {16383.75, "fpe2", Bytes{255, 255}},
      {-1, "fpe2", {}},
      {1, "flt ", Bytes{0, 0, 0x80, 0x3F}},
      {255.9, "ui8 ", {}},
      {255, "ui8 ", Bytes{255}},
      {2.9, "ui8 ", Bytes{2}},
      {-1, "ui8 ", {}},
      {1, "ui16", {}},
      {1, "sp78", {}},
      {std::numeric_limits<double>::quiet_NaN(), "ui8 ", {}},
      {std::numeric_limits<double>::quiet_NaN(), "fpe2", {}},
  };
  for (const auto& [value, type, bytes] : cases)
    EXPECT_EQ(SMCValue::encoding(value, type), bytes) << value << type;
}

TEST(SMCValue, Codes) {
  EXPECT_EQ(SMCValue::code("F0Ac"), 0x46304163U);
  EXPECT_EQ(SMCValue::name(0x666C7420), "flt ");
  EXPECT_EQ(SMCValue::code("flt"), std::nullopt);
  EXPECT_EQ(SMCValue::name(*SMCValue::code("\xFF\x80ui")), "\xFF\x80ui");
}

TEST(FanControl, Readings) {
  Bench bench(2);
  bench.store.set("F1Md", 1, "ui8 ");
  EXPECT_THAT(bench.control.readings(), ElementsAre(FanReading{0, 2000, 1200, 6000, false},
                                                    FanReading{1, 2000, 1200, 6000, true}));
}

TEST(FanControl, FullSpeedAndBack) {
  Bench bench(2);
  bench.control.setFull();
  EXPECT_THAT(bench.store.writes, ElementsAre("Ftst", "F0Md", "F0Tg", "F1Md", "F1Tg"));
  EXPECT_EQ(bench.store.number("F1Tg"), 6000);
  EXPECT_EQ(bench.store.number("F1Md"), 1);
  bench.store.writes.clear();
  bench.control.setAuto();
  EXPECT_THAT(bench.store.writes, ElementsAre("F0Md", "F1Md", "Ftst"));
  EXPECT_EQ(bench.store.number("F0Md") + bench.store.number("F1Md") + bench.store.number("Ftst"),
            0);
}

TEST(FanControl, ForcingIsTriedTwentyTimes) {
  Bench patient(1);
  patient.store.refusals["F0Md"] = 19;
  patient.control.setFull();
  EXPECT_EQ(patient.paused, 9.5);
  Bench refused(1);
  refused.store.refusals["F0Md"] = 20;
  EXPECT_EQ(refused.failureOf(&FanControl::setFull),
            "Failed to write fan value F0Md because the SMC returned 130");
  EXPECT_EQ(refused.paused, 9.5);
  EXPECT_EQ(refused.store.number("Ftst"), 0) << "handed back";
}

TEST(FanControl, AFailureLeavesNoFanForced) {
  const std::function<void(Store&)> faults[] = {
      [](Store& store) {
        store.values["F1Mx"] = {"sp78", {1, 2}};
      },
      [](Store& store) { store.values.erase("F1Mx"); },
      [](Store& store) { store.refusals["F1Tg"] = 1; },
      [](Store& store) {
        store.values["F1Tg"] = {"ui16", {0, 0}};
      },
      [](Store& store) {
        store.values["F1Mx"] = {"flt ", {0, 0, 0xC0, 0x7F}};
      }};
  for (const auto& fault : faults) {
    Bench bench(2);
    fault(bench.store);
    EXPECT_NE(bench.failureOf(&FanControl::setFull), "");
    EXPECT_EQ(bench.store.number("F0Md") + bench.store.number("F1Md"), 0);
  }
}

TEST(FanControl, HandingBackGoesOnAfterAFailure) {
  Bench bench(3);
  bench.control.setFull();
  bench.store.values["F0Md"] = {"ui16", {0, 1}};
  bench.store.refusals["F1Md"] = 1;
  EXPECT_EQ(bench.failureOf(&FanControl::setAuto),
            "Failed to handle fan value F0Md because its type ui16 is not supported");
  EXPECT_EQ(bench.store.number("F2Md") + bench.store.number("Ftst"), 0);
}

TEST(FanControl, NoFans) {
  Bench bench(0);
  EXPECT_EQ(bench.failureOf(&FanControl::setFull),
            "Failed to control the fans because this computer has none");
  EXPECT_THAT(bench.store.writes, IsEmpty());
  EXPECT_EQ(bench.failureOf(&FanControl::setAuto), "");
}

TEST(FanHold, FollowsItsHolders) {
  FanHold hold;
  EXPECT_EQ(hold.request(true, 1), Change::full);
  EXPECT_EQ(hold.request(true, 2), std::nullopt);
  EXPECT_EQ(hold.request(true, 2), std::nullopt);
  EXPECT_EQ(hold.drop(3), std::nullopt);
  EXPECT_EQ(hold.drop(1), std::nullopt);
  EXPECT_EQ(hold.drop(2), Change::automatic);
  EXPECT_EQ(hold.drop(2), std::nullopt);
  EXPECT_EQ(hold.request(false, 9), Change::automatic) << "again, harmlessly";
  hold.request(true, 1);
  hold.abandon();
  EXPECT_FALSE(hold.isHolding());
}

TEST(FanHold, NobodyIsServedAsleep) {
  FanHold hold;
  EXPECT_EQ(hold.willSleep(), std::nullopt);
  EXPECT_EQ(hold.request(true, 1), std::nullopt);
  EXPECT_EQ(hold.request(false, 2), std::nullopt);
  EXPECT_EQ(hold.didWake(), Change::full);
  EXPECT_EQ(hold.willSleep(), Change::automatic);
  EXPECT_EQ(hold.drop(1), std::nullopt);
  EXPECT_EQ(hold.didWake(), std::nullopt);
}

TEST(FanHelperService, NamesAndAdmission) {
  EXPECT_EQ(FanHelperService::name("dev.x"), "dev.x.fan-helper");
  EXPECT_EQ(FanHelperService::plistName("dev.x"), "dev.x.fan-helper.plist");
  EXPECT_EQ(FanHelperService::clientRequirement("dev.x-1", "TEAM9"),
            "anchor apple generic and identifier \"dev.x-1\" and certificate leaf[subject.OU] = "
            "\"TEAM9\"");
  for (const char* bad : {"a\"b", "a b", "ä", "a_b", "a\nb", "a*"}) {
    EXPECT_EQ(FanHelperService::clientRequirement(bad, "T"), std::nullopt) << bad;
    EXPECT_EQ(FanHelperService::clientRequirement("a", bad), std::nullopt) << bad;
  }
}

} // namespace
} // namespace tavrin

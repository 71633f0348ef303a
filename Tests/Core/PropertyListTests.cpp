#include "TavrinCore/Dock/PropertyList.h"

#include <gtest/gtest.h>
#include <limits>

namespace tavrin {
namespace {

using Dictionary = PropertyList::Dictionary;
using Array = PropertyList::Array;

std::string document(const std::string& body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body + "</plist>";
}

std::string faultOf(std::string_view bytes) {
  try {
    PropertyList::parse(bytes);
  } catch (const PropertyListError& error) {
    return error.what();
  }
  return {};
}

/// Every sort of value, with the extremes of each.
PropertyList everything() {
  return Dictionary{
      {"integers",
       Array{0, 1, -1, 255, 256, 65536, std::numeric_limits<std::int64_t>::min(),
             std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::uint64_t>::max()}},
      {"reals", Array{0.1, -0.0, 1e300, 5e-324, 1.0, std::numeric_limits<double>::infinity()}},
      {"dates", Array{Date{0}, Date{-63114076800}, Date{790000000}, Date{1e10}}},
      {"texts", Array{"", " a ", "a\nb\tc\rd", "<&>\"'", "]]>", "日本 😀 e\u0301", "\u2028"}},
      {"data", Array{Data{}, Data::fromText(std::string("\0\xFF", 2)),
                     Data{std::vector<std::uint8_t>(200, 7)}}},
      {"truth", Array{true, false}},
      {"empty", Array{Array{}, Dictionary{}}},
      {"", "an empty key"},
      {"äöü", "a key beyond ASCII"},
      {"many", Array(300, PropertyList("again"))},
  };
}

TEST(PropertyList, KeepsEveryValueInEitherForm) {
  const auto list = everything();
  EXPECT_EQ(PropertyList::parse(list.xml()), list);
  EXPECT_EQ(PropertyList::parse(list.binary().view()), list);
}

TEST(PropertyList, KeepsWhatOnlyOneFormHas) {
  const PropertyList list = Array{Date{0.25}, PropertyList::UID{70000}};
  EXPECT_EQ(PropertyList::parse(list.binary().view()), list);
  const PropertyList inXML = Array{Date{0}, Dictionary{{"CF$UID", 70000}}};
  EXPECT_EQ(PropertyList::parse(list.xml()), inXML);
}

TEST(PropertyList, ReadsTheWaysAValueMayBeWritten) {
  const std::pair<const char*, PropertyList> cases[] = {
      {"<integer> +5\n</integer>", 5},
      {"<integer>0x1F</integer>", 31},
      {"<integer>-0</integer>", 0},
      {"<real>-inf</real>", -std::numeric_limits<double>::infinity()},
      {"<real>1</real>", 1.0},
      {"<string>a<![CDATA[<b>]]>&#65;&amp;<!-- no -->c</string>", "a<b>A&c"},
      {"<data>\n\tAQ\n\tID\n</data>", Data{{1, 2, 3}}},
      {"<dict><key>a</key><true/><key>a</key><false/></dict>", Dictionary{{"a", false}}},
      {"<array><!-- nothing --></array>", Array{}},
  };
  for (const auto& [body, expected] : cases)
    EXPECT_EQ(PropertyList::parse(document(body)), expected) << body;
}

TEST(PropertyList, RefusesEveryValueThatItsTagDoesNotAllow) {
  for (const auto* body : {"<integer>abc</integer>",
                           "<integer></integer>",
                           "<integer>12x</integer>",
                           "<integer>18446744073709551616</integer>",
                           "<integer>-9223372036854775809</integer>",
                           "<real>one</real>",
                           "<real></real>",
                           "<date>2026-02-29T00:00:00Z</date>",
                           "<date>today</date>",
                           "<date>2026-01-01T24:00:00Z</date>",
                           "<data>***</data>",
                           "<string>&nothing;</string>",
                           "<string>\xFF</string>",
                           "<true>x</true>",
                           "<null/>",
                           "<dict><key>a</key></dict>",
                           "<dict><string>a</string></dict>",
                           "<dict><key>a</key><key>b</key></dict>",
                           "<array><key>a</key></array>",
                           "<string>a<string>b</string></string>",
                           "<true/><false/>",
                           "<key>a</key>",
                           "text",
                           "<array>text</array>",
                           "",
                           "<plist><true/></plist>"})
    EXPECT_NE(faultOf(document(body)), "") << body;
  for (const auto* bytes : {"", "text", "<dict/>", "<plist>", "{ a = b; }", "bplist00"})
    EXPECT_NE(faultOf(bytes), "") << bytes;
}

TEST(PropertyList, RefusesEntitiesBeforeTheyGrow) {
  EXPECT_EQ(faultOf("<!DOCTYPE plist [<!ENTITY a \"aaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">]>"
                    "<plist><string>&b;&b;&b;</string></plist>"),
            "it declares entities");
}

TEST(PropertyList, BoundsDepth) {
  const auto nested = [](std::size_t depth) {
    std::string text;
    for (std::size_t i = 0; i < depth; ++i)
      text += "<array>";
    for (std::size_t i = 0; i < depth; ++i)
      text += "</array>";
    return document(text);
  };
  EXPECT_EQ(faultOf(nested(PropertyList::maximumDepth)), "");
  EXPECT_EQ(faultOf(nested(PropertyList::maximumDepth + 1)), "the values are nested too deeply");
  EXPECT_EQ(faultOf(nested(500'000)), "the values are nested too deeply");
}

TEST(PropertyList, RefusesABinaryListCutAnywhereOrPointingAstray) {
  const auto bytes = std::string(everything().binary().view());
  for (std::size_t length = 0; length < bytes.size(); ++length)
    EXPECT_NE(faultOf(bytes.substr(0, length)), "") << length;
  const auto xml = everything().xml();
  // Only white space follows the last tag.
  for (std::size_t length = 0; length + 1 < xml.size(); ++length)
    EXPECT_NE(faultOf(xml.substr(0, length)), "") << length;
}

/// A binary list of one-byte offsets and references: objects as given, the first is the root.
std::string binary(const std::vector<std::string>& objects) {
  std::string bytes = "bplist00";
  std::string table;
  for (const auto& object : objects) {
    table += static_cast<char>(bytes.size());
    bytes += object;
  }
  const auto start = bytes.size();
  bytes += table + std::string(6, '\0') + "\x01\x01";
  for (const auto number : {objects.size(), std::size_t{0}, start})
    bytes += std::string(7, '\0') + static_cast<char>(number);
  return bytes;
}

TEST(PropertyList, RefusesBinaryObjectsThatCannotBe) {
  using namespace std::string_literals;
  EXPECT_EQ(faultOf(binary({"\xA1\x00"s})), "the values are nested too deeply");
  EXPECT_EQ(faultOf(binary({"\xA1\x05"s})), "a reference leads nowhere");
  EXPECT_EQ(faultOf(binary({"\xD1\x01\x01"s, "\x09"s})), "a key is no text");
  EXPECT_EQ(faultOf(binary({"\x51\xE9"s})), "a text is not ASCII");
  EXPECT_EQ(faultOf(binary({"\x61\xD8\x00"s})), "a text is not UTF-16");
  EXPECT_EQ(faultOf(binary({"\x14"s + std::string(7, '\0') + "\x01" + std::string(8, '\0')})),
            "a whole number is beyond 64 bits");
  EXPECT_EQ(faultOf(binary({"\x00"s})), "an object is of no known type");
  // Each list holds the next one fifteen times.
  std::vector<std::string> bomb;
  for (char level = 1; level <= 12; ++level)
    bomb.push_back("\xAE"s + std::string(14, level));
  bomb.push_back("\x09"s);
  EXPECT_EQ(faultOf(binary(bomb)), "its shared objects grow beyond all measure");
}

TEST(PropertyList, RefusesToWriteWhatXMLCannotHold) {
  for (const PropertyList& list :
       {PropertyList("\x01"), PropertyList("\xFF"), PropertyList("\uFFFE"),
        PropertyList(Date{1e300}), PropertyList(Date{-1e11}),
        PropertyList(Dictionary{{"\x02", 1}})})
    EXPECT_THROW(list.xml(), PropertyListError);
}

} // namespace
} // namespace tavrin

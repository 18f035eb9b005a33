#include "catalogue/update_list.h"

#include <gmock/gmock.h>

namespace firmlane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kWireless =
    "#Tolvex update list\r\n"
    "WLS|LWX DSP V2.31-first|http://h/a/b/wls.bin\r\n"
    "x|LWX Hub V2.12-x|http://h/a/b/hub.s19\r\n"
    "|RF V1.16-x|\r\n"
    "REMOTE|Remote V3.0|http://h/a/b/setup.exe\r\n"
    "SYSTEM|3.1|1 May|best|2.31|2.12|1.16|2.23|s31\r\n"
    "SYSTEM|3.0|1 April|a||b|2.12|1.16|2.23|s30|more\r\n";

/// Names and locations in one text, "name>location;", then what ended the reading.
std::string told(const UpdateList& list) {
  std::string text;
  for (std::size_t i = 0; i < list.names.size(); ++i) {
    text.append(list.names[i]).append(">").append(i < list.locations.size() ? list.locations[i] : "none").append(";");
  }
  return list.failure ? text + " #" + std::to_string(list.failure->number()) : text;
}

TEST(UpdateListText, FirmwareEntriesAndSystemsAreTakenByTheBars) {
  const UpdateList list = readFirmwareList(kWireless, "WLS", 8);
  EXPECT_EQ(told(list), "LWX DSP V2.31-first>http://h/a/b/wls.bin\r;LWX Hub V2.12-x>http://h/a/b/hub.s19\r;RF V1.16-x>\r;");
  EXPECT_EQ(list.lastSystem, 1);
  EXPECT_THAT(list.systems,
              ElementsAre(ElementsAre("3.1", "1 May", "best", "2.31", "2.12", "1.16", "2.23", "s31"),
                          // An empty field cannot be told: its bar opens the next one. What is too much stays in the last.
                          ElementsAre("3.0", "1 April", "a", "|b", "2.12", "1.16", "2.23", "s30|more")));
}

TEST(UpdateListText, FirmwareListsAtTheirEdges) {
  const std::tuple<const char*, std::string, const char*> cases[] = {
      {"no REMOTE: no entry", "#WLS|a V|b\n", ""},
      {"older list, one entry", "#WLS|a V|b\nREMOTE|V", "a V>b;"},
      {"no tag: from the head", "#x|a V|b\nREMOTE|V", "a V>b;"},
      {"tag in the head counts", "#WLS|h|\nWLS|a V|b\nREMOTE|V", "h>;a V>b;"},
      {"empty name and location", "#WLS||\nREMOTE|V", ">;"},
      {"no second bar", "#WLS|a V REMOTE", " #5"},
      {"no line end", "#WLS|a V|b REMOTE", "a V>none; #5"},
      {"no bar at all", "#WLS REMOTE V", " #5"},
      {"REMOTE in a location ends there", "#WLS|a V|b REMOTE c\n|d V|e\n", "a V>b REMOTE c;"},
      {"v instead of V", "#WLS|a|b\nREMOTE|v", "a>b;"},
      {"v as the first letter of a location", "#WLS|a|v\nREMOTE", "a>v;\n>none; #5"},
      {"V as the first letter of a location", "#WLS|a|V\nREMOTE", "a>V;#WLS>a|V; #5"},
      {"two bars behind a name", "#WLS|a||b V|c\nREMOTE|V", "a>|b V|c;b V>c;"},
      {"an empty name further down", "#WLS|a V|b\nV||c\nREMOTE|V", "a V>b;>c;"},
  };
  for (const auto& [name, text, expected] : cases) {
    EXPECT_EQ(told(readFirmwareList(text, "WLS", 0)), expected) << name;
  }
  // Neither V nor v behind the last entry: it begins again at the head, until there are too many.
  EXPECT_EQ(told(readFirmwareList("#WLS|a|b\nREMOTE", "WLS", 0)).substr(0, 20), "a>b;#>a|b;#WL>a|b;#W");
}

TEST(UpdateListText, SystemLinesAtTheirEdges) {
  std::string eleven;
  for (int i = 0; i < 11; ++i) {
    eleven += "SYSTEM|a|b|c\r\n";
  }
  constexpr const char* kNone = "The list names no released system";
  constexpr const char* kCut = "The list is cut short or damaged";
  constexpr const char* kTooFew = "A SYSTEM line of the list has too few fields";
  const std::tuple<const char*, std::string, int, std::size_t, const char*> cases[] = {
      {"none", "", 0, 0, kNone},
      {"no CR", "SYSTEM|a|b|c", 0, 0, kCut},
      {"too few fields", "SYSTEM|a|b\r\n", 0, 1, kTooFew},
      {"no bar in the line", "SYSTEM a\r\n", 0, 1, kTooFew},
      {"empty last field", "SYSTEM|a|b|\r\n", 0, 1, ""},
      {"SYSTEM in a note", "SYSTEM|a|b SYSTEM|c\r\nSYSTEM|a|b|c\r\n", 1, 2, ""},
      {"eleven", eleven, 10, 11, ""},
      {"twelve", eleven + "SYSTEM|a|b|c\r\n", 11, 11, "The list names more than 11 systems"},
      {"second cut short", "SYSTEM|a|b|c\r\nSYSTEM|a", 1, 1, kCut},
  };
  for (const auto& [name, lines, lastSystem, systems, failure] : cases) {
    const UpdateList list = readFirmwareList("#WLS|a V|b\nREMOTE|V\r\n" + lines, "WLS", 3);
    EXPECT_EQ(list.lastSystem, lastSystem) << name;
    EXPECT_EQ(list.systems.size(), systems) << name;
    EXPECT_EQ(list.failure ? list.failure->description() : "", failure) << name;
  }
  EXPECT_EQ(readFirmwareList("#WLS|a V|b\nREMOTE|V", "WLS", 0).lastSystem, std::nullopt) << "the older list has none";
}

TEST(UpdateListText, SoftwareListsAtTheirEdges) {
  const std::tuple<const char*, std::string, const char*> cases[] = {
      {"from a firmware list", kWireless, "Remote V3.0>http://h/a/b/setup.exe\r;"},
      {"no line end in the last", "#REMOTE|a|b\r\nREMOTE|c|d", "a>b\r;c>d;"},
      {"REMOTE in a name begins a line", "#REMOTE|REMOTE a|b\nx", "REMOTE a>b;"},
      {"REMOTE behind a location", "#REMOTE|a|b REMOTE\nx|c|d", "a>b REMOTE;c>d;"},
      {"no REMOTE: the first two bars", "#x|a|b\n", "a>b;"},
      {"no name", "#REMOTE||b\n", ">b;"},
      {"no bar", "#REMOTE", " #5"},
      {"one bar", "#REMOTE|a", " #5"},
      {"bar at the end", "#REMOTE|", ""},
  };
  for (const auto& [name, text, expected] : cases) {
    EXPECT_EQ(told(readSoftwareList(text)), expected) << name;
  }
}

TEST(UpdateListText, AListOf32768CharactersFails) {
  const std::string software = "#REMOTE|a|b\n";
  for (const bool tooLong : {false, true}) {
    const std::size_t size = tooLong ? 32768 : 32767;
    std::string text = kWireless;
    EXPECT_EQ(readFirmwareList(text.append(size - text.size(), 'x'), "WLS", 8).failure.has_value(), tooLong);
    text = software;
    EXPECT_EQ(readSoftwareList(text.append(size - text.size(), 'x')).failure.has_value(), tooLong);
    text = "#" + std::string(size - 1 - std::string("WLS").size(), 'x') + "WLS";
    EXPECT_EQ(readFirmwareList(text, "WLS", 8).failure->number(), 5) << "no bar in it";
  }
  EXPECT_EQ(readFirmwareList("#WLS" + std::string(32764, 'x') + "|a|b", "WLS", 0).failure->number(), 6) << "bar at 32769";
}

}  // namespace
}  // namespace firmlane::test

// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "virtualtv/import/Lists.h"

namespace import_tests {
namespace {

using virtualtv::Service;
using Data = TCServiceData;
using Strings = std::vector<std::string>;

/// A service of a list, with the members `more` at its end.
std::string service(const std::string& id, const std::string& more = "") {
  return "{\"numbers\": {\"id\": \"" + id + "\", \"antenna\": 1, \"lock\": 1}, \"texts\": {\"name\": \"News\"}" + more +
         "}";
}

std::string list(const std::string& services) {
  return "{\"services\": [" + services + "]}\n";
}

Strings problemsOf(const std::string& content) {
  Strings told;
  const auto result = readAs("json", content);
  for (const auto& problem : result.problems.kept()) {
    EXPECT_EQ(problem.line, std::nullopt);
    told.push_back(problem.at + ": " + problem.reason);
  }
  return told;
}

TEST(JsonList, BringsAllThatASetKeepsOfAService) {
  const std::string content = list(service("7", R"(, "group": "G", "audio": "256:eng:aac:2:3", "subtitles": "300:deu",
      "favourites": "2=1", "listEntry": "vdr\nNews", "key": 4,
      "recording": {"path": "/a.ts", "video": 8191, "type": 27})"));
  EXPECT_EQ(recognised(content), "json");
  const auto result = readAs("json", content);
  const Service read = only(result);
  EXPECT_EQ(read.numbers,
            (std::map<int, std::uint64_t>{{Data::SERVICE_ID, 7}, {Data::ANTENNA_MODE, 1}, {Data::LOCK, 1}}));
  EXPECT_EQ(name(read), u"News");
  EXPECT_EQ(read.group, "G");
  ASSERT_EQ(read.audio.size(), 1U);
  EXPECT_EQ(read.audio[0].audioType, 3);
  EXPECT_EQ(read.subtitles.size(), 1U);
  EXPECT_EQ(read.favourites, (std::map<std::uint8_t, bool>{{2, true}}));
  EXPECT_EQ(read.listEntry, "vdr\nNews");
  EXPECT_EQ(read.footage, (virtualtv::Footage{"/a.ts", 8191, virtualtv::streamOfH264, false}));
}

TEST(JsonList, IsKnownByItsFirstMember) {
  EXPECT_EQ(recognised("\xEF\xBB\xBF \n{ \"services\" : []}"), "json");
  EXPECT_EQ(recognised("{\"version\": 1, \"services\": []}"), "");
  EXPECT_EQ(recognised("[]"), "");
}

TEST(JsonList, LeavesOutServicesThatAreNone) {
  const std::string content = list(service("7") + "," + service("0") + "," + service("7") + "," +
                                   R"({"numbers": {"id": "8", "antenna": 3}, "texts": {"name": "A"}},)" +
                                   R"({"numbers": {"id": "9", "antenna": 0}},)" +
                                   R"({"numbers": {"id": "9", "lock": 70000}}, 3,)" + service("9"));
  EXPECT_EQ(readAs("json", content).services.size(), 2U);
  EXPECT_EQ(
      problemsOf(content),
      (Strings{"services[1].numbers.id: a number from 1 to 18446744073709551615 (0 stands for no service), as a text "
               "beyond 53 bits, is wanted, not \"0\"",
               "services[2]: a service in front of it has the same id",
               "services[3]: the service has no antenna from 0 to 2", "services[4]: the service has no name",
               "services[5].numbers.lock: a number from 0 to 65535 is wanted, not 70000",
               "services[6]: an object is wanted, not 3"}));
}

TEST(JsonList, ThatIsNoJsonTellsWhere) {
  EXPECT_EQ(problemsOf("{\"services\": [}").size(), 1U);
  EXPECT_TRUE(problemsOf("{\"services\": [}")[0].starts_with("line 1, column 15: "))
      << problemsOf("{\"services\": [}")[0];
  EXPECT_EQ(problemsOf("{\"services\": {}}").size(), 1U);
  EXPECT_EQ(problemsOf("{\"services\": [], \"more\": 1}").size(), 1U);
}

}  // namespace
}  // namespace import_tests

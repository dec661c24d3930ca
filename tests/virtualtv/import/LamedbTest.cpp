// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <map>

#include "import/Bouquets.h"
#include "virtualtv/import/Lists.h"

namespace import_tests {
namespace {

using virtualtv::Service;
using Data = TCServiceData;
using Strings = std::vector<std::string>;

std::string version4(const std::string& transponder, const std::string& services) {
  return "eDVB services /4/\ntransponders\n00c00000:0440:0001\n\t" + transponder + "\n/\nend\nservices\n" + services +
         "end\nHave a lot of bugs!\n";
}

constexpr const char* satellite = "s 11778000:27500000:1:2:192:2:0:1:2:0:2";
constexpr const char* news = "2b66:00c00000:0440:0001:25:0\nNews 24\np:Company,c:000200,c:010201,c:040202,f:40\n";
constexpr const char* radio = "1b1d:00c00000:0440:0001:2:0\nSound\np:\n";

const char* const version5 =
    "eDVB services /5/\n# Transponders: t:namespace:stream:network,FEPARMS\n"
    "t:00c00000:0440:0001,s:11778000:27500000:1:2:192:2:0:1:2:0:2\n"
    "s:2b66:00c00000:0440:0001:25:0,\"News 24\",p:Company,c:000200,c:010201,c:040202,f:40\n"
    "s:1b1d:00c00000:0440:0001:2:0,\"Say \"hi\", you\"\n";

Service lamedb(const std::string& transponder) {
  return only(readAs("lamedb", version4(transponder, news)));
}

TEST(Lamedb, GivesASatelliteServiceWhatItAndItsTransponderTell) {
  const Service service = lamedb(satellite);
  const std::map<int, std::uint64_t> expected{
      {Data::CHANNEL_TYPE, 9},
      {Data::PTC, 1},
      {Data::FREQUENCY, 11778000},
      {Data::MODULATION, 16},
      {Data::SYMBOL_RATE, 27500},
      {Data::SERVICE_ID, 3ULL << 60U | 1ULL << 32U | 0x440ULL << 16U | 0x2b66ULL},
      {Data::MAJOR, 1},
      {Data::MINOR, 0},
      {Data::PROGRAM_NUMBER, 0x2b66},
      {Data::TRANSPORT_STREAM_ID, 0x440},
      {Data::ORIGINAL_NETWORK_ID, 1},
      {Data::SOURCE_ID, 192},
      {Data::LOCK, 0},
      {Data::ANTENNA_MODE, 2},
      {virtualtv::HIDDEN, 0},
      {virtualtv::SERVICE_MODE, 0},
  };
  EXPECT_EQ(service.numbers, expected);
  EXPECT_EQ(name(service), u"News 24");
  ASSERT_EQ(service.audio.size(), 2U);
  EXPECT_EQ(service.audio[0].pid, 0x201);
  EXPECT_EQ(service.audio[0].decodeType, virtualtv::CODING_MPEG);
  EXPECT_EQ(service.audio[1].decodeType, virtualtv::CODING_AC3);
}

TEST(Lamedb, OfVersion5IsReadAsThatOfVersion4) {
  const auto result = readAs("lamedb", version5);
  EXPECT_EQ(problems(result), Strings{});
  ASSERT_EQ(result.services.size(), 2U);
  EXPECT_EQ(told(result.services[0]), told(lamedb(satellite)));
  EXPECT_EQ(name(result.services[1]), u"Say \"hi\", you");
  EXPECT_EQ(number(result.services[1], Data::CHANNEL_TYPE), 5U);
}

TEST(Lamedb, OfVersion3IsOfTheFirstGeneration) {
  const auto result =
      readAs("lamedb",
             "eDVB services /3/\ntransponders\n00320000:0002:0055\n\ts 12379000:27500000:0:3:3591:2\n/\n"
             "end\nservices\n0001:00320000:0002:0055:1:0\n\np:\nend\n");
  const Service service = only(result);
  EXPECT_EQ(number(service, Data::MODULATION), 7U);
  EXPECT_EQ(number(service, Data::SOURCE_ID), 3591U);
  EXPECT_EQ(name(service), u"Service 1");
}

TEST(Lamedb, KnowsAllKindsOfTransponders) {
  const Service terrestrial = lamedb("t 578000000:0:5:5:2:4:4:4:2:0");
  EXPECT_EQ(number(terrestrial, Data::ANTENNA_MODE), 0U);
  EXPECT_EQ(number(terrestrial, Data::PTC), 34U);
  EXPECT_EQ(number(terrestrial, Data::MODULATION), 3U);
  EXPECT_EQ(number(terrestrial, Data::SOURCE_ID), 1U);
  EXPECT_EQ(number(lamedb("t 177500000:7000000:5:5:2:4:4:4:2:0"), Data::PTC), 5U);
  const Service cable = lamedb("c 306000:6900000:2:5:0:0");
  EXPECT_EQ(number(cable, Data::ANTENNA_MODE), 1U);
  EXPECT_EQ(number(cable, Data::FREQUENCY), 306000U);
  EXPECT_EQ(number(cable, Data::SYMBOL_RATE), 6900U);
  EXPECT_EQ(number(cable, Data::MODULATION), 5U);
  const Service american = lamedb("a 473000000:2:6:0:0");
  EXPECT_EQ(number(american, Data::PTC), 14U);
  EXPECT_EQ(number(american, Data::MODULATION), 10U);
  EXPECT_EQ(number(lamedb("s 11778000:27500000:1:2:-10:2:0"), Data::SOURCE_ID), 3590U);
}

TEST(Lamedb, TellsTheKindByTheTypeElseByTheStreams) {
  const auto kind = [](const std::string& type, const std::string& cache) {
    return number(
        only(readAs("lamedb", version4(satellite, "1:00c00000:0440:0001:" + type + ":0\nA\n" + cache + "\n"))),
        Data::CHANNEL_TYPE);
  };
  EXPECT_EQ(kind("1", "p:"), 9U);
  EXPECT_EQ(kind("25", "p:"), 9U);
  EXPECT_EQ(kind("10", "p:,c:000200"), 5U);
  EXPECT_EQ(kind("12", "p:"), 8U);
  EXPECT_EQ(kind("130", "p:,c:000200,c:010201"), 9U);
  EXPECT_EQ(kind("130", "p:,c:010201"), 5U);
  EXPECT_EQ(kind("130", "p:,c:0x0201,c:01,c:19FFFF"), 8U);
}

TEST(Lamedb, TellsTheLineThatIsWrong) {
  EXPECT_EQ(problemOf("lamedb", "eDVB services /6/\n"), "1: version \"6\" is not known; versions 3, 4 and 5 are");
  EXPECT_EQ(problemOf("lamedb", "services\n"), "1: \"services\" is no head of a lamedb; versions 3, 4 and 5 are");
  EXPECT_EQ(problemOf("lamedb", version4(satellite, "1:00c00000:0441:0001:1:0\nA\np:\n")),
            "8: \"1:00c00000:0441:0001:1:0\" is of a transponder that is not there");
  EXPECT_EQ(problemOf("lamedb", version4(satellite, "xyz:00c00000:0440:0001:1:0\nA\np:\n")),
            "8: service id \"xyz\" is not a hexadecimal number");
  EXPECT_EQ(problemOf("lamedb", version4(satellite, "10000:00c00000:0440:0001:1:0\nA\np:\n")),
            "8: service id \"10000\" is greater than 65535");
  EXPECT_EQ(problemOf("lamedb", version4("s 11:27500000:1:2:192:2:0", "")),
            "3: frequency \"11\" is not that of a satellite, 2000000 to 50000000 kHz");
  EXPECT_EQ(problemOf("lamedb", version4("s 11778000", "")), "3: the transponder has 1 of at least 5 fields");
  EXPECT_EQ(problemOf("lamedb", version4("x 11778000", "")),
            "3: \"x 11778000\" is no transponder of a satellite (s), terrestrial (t), cable (c) or ATSC (a)");
  EXPECT_EQ(problemOf("lamedb", "eDVB services /4/\ntransponders\n\ts 11:2:3\n/\nend\n"),
            "3: \"s 11:2:3\" stands behind no transponder's numbers");
  EXPECT_EQ(problemOf("lamedb", "eDVB services /5/\nx:1\n"),
            "2: \"x:1\" is neither a transponder (t) nor a service (s)");
  EXPECT_EQ(problemOf("lamedb", "eDVB services /5/\ns:1:2:3:4:5:6,p:\n"),
            "2: \"s:1:2:3:4:5:6,p:\" has no name between double quotes");
}

// Bouquets.

using Files = std::map<std::string, std::string>;

std::string joined(const Files& files) {
  const auto text = virtualtv::import::joinedLists([&](const std::string& file) -> std::optional<std::string> {
    const auto found = files.find(file);
    return found == files.end() ? std::nullopt : std::optional(found->second);
  });
  return text.value_or("none");
}

const Files directory{
    {"lamedb", version4(satellite, std::string(news) + radio)},
    {"bouquets.tv",
     "#NAME Bouquets (TV)\n"
     "#SERVICE 1:7:1:0:0:0:0:0:0:0:FROM BOUQUET \"userbouquet.favourites.tv\" ORDER BY bouquet\n"
     "#SERVICE 1:7:1:0:0:0:0:0:0:0:FROM BOUQUET \"userbouquet.first.tv\" ORDER BY bouquet\n"
     "#SERVICE: 1:7:1:0:0:0:0:0:0:0:FROM BOUQUET \"userbouquet.second.tv\" ORDER BY bouquet\n"},
    {"userbouquet.favourites.tv", "#NAME Favourites (TV)\n#SERVICE 1:0:2:1B1D:440:1:C00000:0:0:0:\n"},
    {"userbouquet.first.tv",
     "#NAME Die Ersten\n#SERVICE 1:64:0:0:0:0:0:0:0:0::Mark\n#DESCRIPTION Mark\n"
     "#SERVICE 1:0:19:2B66:440:1:C00000:0:0:0:\n#DESCRIPTION Other\n"},
    {"userbouquet.second.tv",
     "#NAME Second\n#SERVICE 1:0:19:2B66:440:1:C00000:0:0:0:\n#SERVICE 1:0:2:1B1D:440:1:C00000:0:0:0:\n"},
};

TEST(Bouquets, AreTheGroupsOfTheirServicesTheFirstOfSeveral) {
  const auto result = readAs("lamedb", joined(directory));
  EXPECT_EQ(result.problems.count(), 0U);
  ASSERT_EQ(result.services.size(), 2U);
  EXPECT_EQ(result.services[0].group, "Die Ersten");
  EXPECT_EQ(result.services[1].group, "Second");
  EXPECT_EQ(name(result.services[0]), u"News 24");
}

TEST(Bouquets, OfFavouritesAreTheFirstFavouriteGroup) {
  const auto result = readAs("lamedb", joined(directory));
  ASSERT_EQ(result.services.size(), 2U);
  EXPECT_TRUE(result.services[0].favourites.empty());
  EXPECT_EQ(result.services[1].favourites, (std::map<std::uint8_t, bool>{{1, true}}));
}

TEST(Bouquets, FollowALamedb5WhereThereIsNoOther) {
  Files files = directory;
  files.erase("lamedb");
  EXPECT_EQ(joined(files), "none");
  files["lamedb5"] = version5;
  const auto result = readAs("lamedb", joined(files));
  EXPECT_EQ(result.problems.count(), 0U);
  ASSERT_EQ(result.services.size(), 2U);
  EXPECT_EQ(result.services[0].group, "Die Ersten");
}

TEST(Bouquets, TellTheFileAndTheLineThatIsWrong) {
  Files files = directory;
  files.erase("userbouquet.second.tv");
  files["userbouquet.first.tv"] =
      "#NAME A\n#SERVICE 1:0:1:1:440:1:C00000:0:0:0:\n#SERVICE 4097:0:1:1:1:1:1:0:0:0:http%3a//a\n#SERVICE 1:0:1:x\n";
  Strings told;
  const auto result = readAs("lamedb", joined(files));
  for (const auto& problem : result.problems.kept()) {
    EXPECT_EQ(problem.line, std::nullopt);
    told.push_back(problem.at + ": " + problem.reason);
  }
  EXPECT_EQ(
      told,
      (Strings{"userbouquet.first.tv, line 3: \"4097:0:1:1:1:1:1:0:0:0:http%3a//a\" is no service that is broadcast",
               "userbouquet.first.tv, line 4: namespace \"\" is not a hexadecimal number",
               "bouquets.tv, line 4: there is no \"userbouquet.second.tv\"",
               "userbouquet.first.tv, line 2: the service is not in the lamedb"}));
  EXPECT_EQ(result.services.size(), 2U);
}

TEST(Bouquets, EndWithTheirFileWhateverItsLinesSay) {
  for (const std::string line : {"#BOUQUET other.tv\n", " #BOUQUET other.tv\n", "\xEF\xBB\xBF#BOUQUET other.tv\n"}) {
    Files files = directory;
    files["userbouquet.first.tv"] = line + files["userbouquet.first.tv"] + line + "#SERVICE 1:0:1:x\n";
    const auto result = readAs("lamedb", joined(files));
    ASSERT_EQ(result.problems.count(), 1U) << line;
    EXPECT_EQ(result.problems.kept()[0].at, "userbouquet.first.tv, line 8");
    ASSERT_EQ(result.services.size(), 2U);
    EXPECT_EQ(result.services[0].group, "Die Ersten");
  }
}

TEST(Bouquets, MayStartWithAByteOrderMark) {
  Files files = directory;
  for (auto& [file, content] : files) content.insert(0, "\xEF\xBB\xBF");
  const auto result = readAs("lamedb", joined(files));
  EXPECT_EQ(result.problems.count(), 0U);
  ASSERT_EQ(result.services.size(), 2U);
  EXPECT_EQ(result.services[0].group, "Die Ersten");
  EXPECT_EQ(result.services[1].group, "Second");
}

TEST(Bouquets, OfALamedbThatIsCutOffAreRead) {
  for (const std::string part : {"", "1b1d:00c00000:0440:0001:2:0\n", "1b1d:00c00000:0440:0001:2:0\nSound"}) {
    Files files = directory;
    files["lamedb"] = version4(satellite, "");
    files["lamedb"].resize(files["lamedb"].find("end\nHave"));
    files["lamedb"] += news + part;
    const auto result = readAs("lamedb", joined(files));
    EXPECT_EQ(result.problems.count(), part.empty() ? 2U : 0U);  // both bouquets that name the missing radio service
    ASSERT_EQ(result.services.size(), part.empty() ? 1U : 2U) << part;
    EXPECT_EQ(result.services[0].group, "Die Ersten");
    EXPECT_EQ(result.services.back().group, part.empty() ? "Die Ersten" : "Second");
  }
}

/// The files that an import asks for when an index names these files.
Strings askedFor(const Strings& named) {
  std::string index;
  for (const std::string& file : named) index += "#SERVICE 1:7:1:0:0:0:0:0:0:0:FROM BOUQUET \"" + file + "\"\n";
  Strings asked;
  virtualtv::import::joinedLists([&](const std::string& file) -> std::optional<std::string> {
    asked.push_back(file);
    if (file == "lamedb") return "eDVB services /4/\n";
    if (file == "bouquets.tv") return index;
    return std::nullopt;
  });
  return asked;
}

TEST(Bouquets, OfOtherDirectoriesAreNotRead) {
  EXPECT_EQ(askedFor({"../secret", "", ".", "..", "a.tv ", " a.tv"}),
            (Strings{"lamedb", "bouquets.tv", "bouquets.radio"}));
  EXPECT_EQ(askedFor({"..a"}), (Strings{"lamedb", "bouquets.tv", "..a", "bouquets.radio"}));
}

TEST(Bouquets, AreReadOnce) {
  EXPECT_EQ(askedFor({"a.tv", "a.tv", "lamedb", "lamedb5", "bouquets.tv", "bouquets.radio"}),
            (Strings{"lamedb", "bouquets.tv", "a.tv", "bouquets.radio"}));
}

}  // namespace
}  // namespace import_tests

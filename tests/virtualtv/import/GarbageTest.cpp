// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <random>

#include "virtualtv/import/Lists.h"

namespace import_tests {
namespace {

void checkProblems(const virtualtv::import::Format& format, const virtualtv::import::Problems& problems) {
  int line = 0;
  for (const auto& problem : problems.kept()) {
    if (!problem.line) {  // the problem is in a bouquet, or the list has no lines
      EXPECT_TRUE(format.name == "lamedb" || format.name == "json") << format.name;
      continue;
    }
    EXPECT_GE(problem.line, 1);
    EXPECT_GE(problem.line, format.name == "vdr" ? line : 0);
    EXPECT_FALSE(problem.reason.empty());
    EXPECT_LT(problem.reason.size(), 400U);
    for (const char byte : problem.reason) EXPECT_GE(static_cast<unsigned char>(byte), 0x20);
    line = *problem.line;
  }
}

/// Reads the content in each format, and checks what holds for every result.
void readAll(const std::string& content) {
  virtualtv::import::recognise(content);
  for (const auto& format : virtualtv::import::formats()) {
    const auto result = virtualtv::import::read(content, format);
    checkProblems(format, result.problems);
    for (const auto& service : result.services) {
      EXPECT_NE(number(service, TCServiceData::SERVICE_ID).value_or(0), 0U);
      EXPECT_LE(number(service, TCServiceData::ANTENNA_MODE).value_or(9), 2U);
      EXPECT_LE(number(service, TCServiceData::PTC).value_or(0), 65534U);
      EXPECT_FALSE(name(service).empty());
    }
  }
}

/// A fixed seed and a random one. A failing test prints its seed.
std::vector<unsigned> seeds() {
  return {20240229U, std::random_device{}()};
}

std::size_t below(std::mt19937& random, std::size_t limit) {
  return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
}

/// A list of random lines from all formats, with bytes changed, removed, repeated and cut off.
std::string mutated(std::mt19937& random) {
  static const std::vector<std::string> pieces{
      VdrLine{}.text(),
      terrestrial("578").text(),
      cable("306").text(),
      ":@20 Group\n",
      "# comment\n",
      section("News"),
      satelliteSection("News"),
      "\r\n",
      "SERVICE_ID",
      "\xEF\xBB\xBF",
      "AUDIO_PID = 1 2\n",
      "News:578000000:INVERSION_OFF:BANDWIDTH_8_MHZ:a:b:QAM_64:c:d:e:620:621:7\n",
      "News:10773:h:0:22000:2304:2306:6301\n",
      "News:473000000:8VSB:49:52:1\n",
      "eDVB services /4/\n",
      "transponders\n00c00000:0440:0001\n\ts 11778000:27500000:1:2:192:2:0:1:2:0:2\n/\nend\n",
      "transponders\n\ts 11778000:27500000:1:2:192:2:0\n",
      "services\n2b66:00c00000:0440:0001:25:0\nNews 24\np:Company,c:000200,c:010201\nend\n",
      "eDVB services /5/\nt:00c00000:0440:0001,t:578000000:0:5:5:2:4:4:4:2:0\n",
      "s:2b66:00c00000:0440:0001:25:0,\"News\",p:Company\n",
      "#BOUQUET userbouquet.a.tv\n#NAME A\n#SERVICE 1:0:19:2B66:440:1:C00000:0:0:0:\n",
      "#BOUQUET bouquets.tv\n#SERVICE 1:7:1:0:0:0:0:0:0:0:FROM BOUQUET \"userbouquet.b.tv\" ORDER BY bouquet\n",
      "{\"services\": [{\"numbers\": {\"id\": \"7\", \"antenna\": 0}, \"texts\": {\"name\": \"N\"}}",
      "]}",
      "#EXTINF:-1 tvg-id=\"a\" group-title=\"G\",News\nhttp://example.org/1\n",
  };
  static const std::string favourites = std::string(":;,=@+|[]#\n\r\t 0919SETC\xC8\xFF\x80\x01\x05\x11\x15\x7F") + '\0';
  std::string list;
  for (std::size_t at = below(random, 8) + 1; at > 0; --at) list += pieces[below(random, pieces.size())];
  for (std::size_t change = below(random, 12); change > 0 && !list.empty(); --change) {
    const std::size_t at = below(random, list.size());
    switch (below(random, 5)) {
      case 0:
        list[at] = favourites[below(random, favourites.size())];
        break;
      case 1:
        list[at] = static_cast<char>(below(random, 256));
        break;
      case 2:
        list.erase(at, below(random, 5));
        break;
      case 3:
        list.insert(at, below(random, 30), favourites[below(random, favourites.size())]);
        break;
      default:
        list.insert(at, list.substr(below(random, list.size()), below(random, 40)));
    }
  }
  return list;
}

TEST(Garbage, OfRandomBytesCrashesNothing) {
  for (const unsigned seed : seeds()) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int round = 0; round < 200; ++round) {
      std::string bytes(below(random, 2000), '\0');
      for (char& byte : bytes) byte = static_cast<char>(below(random, 256));
      readAll(bytes);
    }
  }
}

TEST(Garbage, OfDamagedListsCrashesNothing) {
  for (const unsigned seed : seeds()) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int round = 0; round < 5000; ++round) readAll(mutated(random));
  }
}

TEST(Garbage, OfOneKindOfByteCrashesNothing) {
  for (int byte = 0; byte < 256; ++byte) readAll(std::string(3000, static_cast<char>(byte)));
}

TEST(Garbage, InAnyFieldCrashesNothing) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string piece(2, static_cast<char>(byte));
    const std::string line = VdrLine{}.text();
    for (std::size_t at = 0; at < line.size(); ++at) readAll(line.substr(0, at) + piece + line.substr(at));
  }
}

TEST(Garbage, CutAnywhereCrashesNothing) {
  const std::string list = VdrLine{}.text() + section("News") + satelliteSection("Öl");
  for (std::size_t length = 0; length <= list.size(); ++length) readAll(list.substr(0, length));
}

TEST(Garbage, IsALineWithoutEnd) {
  constexpr std::size_t size = 50'000'000;
  for (const char byte : {'x', ':', '\0', '\r', '[', '=', '1', ','}) {
    std::string content;
    content.resize(size, byte);
    EXPECT_EQ(recognised(content), "");
    EXPECT_TRUE(readVdr(content).services.empty());
    EXPECT_TRUE(readDvbv5(content).services.empty());
  }
}

TEST(Garbage, IsAFieldWithoutEnd) {
  constexpr std::size_t size = 10'000'000;
  std::string digits;
  digits.resize(size, '1');
  EXPECT_EQ(reason({.frequency = digits}).find("frequency \"1111"), 0U);
  EXPECT_EQ(reason({.parameters = "M" + digits}).find("parameter M \"1111"), 0U);
  EXPECT_EQ(reason({.source = "S" + digits + "E"}).find("source \"S111"), 0U);
  EXPECT_EQ(reason({.audio = digits}).find("audio PID \"1111"), 0U);
  EXPECT_EQ(reason({.service = digits}).find("service id \"1111"), 0U);
  digits.assign(size, '0');
  EXPECT_EQ(number(vdr({.service = digits + '7'}), TCServiceData::PROGRAM_NUMBER), 7U);
}

TEST(Garbage, OfLoneCarriageReturnsIsOneLine) {
  const auto result = readVdr("a\rb\rc");
  EXPECT_EQ(problems(result), std::vector<std::string>{"1: \"a\\x0Db\\x0Dc\" has 1 of the 13 fields of a service"});
}

}  // namespace
}  // namespace import_tests

// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "virtualtv/import/Lists.h"

namespace import_tests {
namespace {

using Data = TCServiceData;
using Strings = std::vector<std::string>;

const std::string m3uList =
    "#EXTM3U url-tvg=\"http://a/guide.xml\"\n"
    "#EXTINF:-1 tvg-id=\"one.example\" tvg-name=\"One\" group-title=\"News, mostly\",One, the first\n"
    "#EXTVLCOPT:http-user-agent=x\n"
    "http://example.org/1.m3u8?a=\"b\"\n"
    "#EXTINF:-1 radio=\"true\" tvg-id=\"\" TVG-CHNO=\"12\",Two\n"
    "rtp://239.0.0.1:5000\n"
    "#EXTGRP:Last\n"
    "#EXTINF:0,\n"
    "udp://239.0.0.2\n";

TEST(M3u, BringsTerrestrialServicesWithNamesAndGroups) {
  EXPECT_EQ(recognised(m3uList), "m3u");
  const auto result = readAs("m3u", m3uList);
  EXPECT_EQ(problems(result), Strings{});
  ASSERT_EQ(result.services.size(), 3U);
  EXPECT_EQ(name(result.services[0]), u"One, the first");
  EXPECT_EQ(result.services[0].group, "News, mostly");
  EXPECT_EQ(result.services[1].group, "");
  EXPECT_EQ(result.services[2].group, "Last");
  EXPECT_EQ(name(result.services[2]), u"udp://239.0.0.2");
  EXPECT_EQ(column(result, Data::ANTENNA_MODE), (std::vector<std::uint64_t>{0, 0, 0}));
  EXPECT_EQ(column(result, Data::CHANNEL_TYPE), (std::vector<std::uint64_t>{9, 3, 9}));
  EXPECT_EQ(column(result, Data::MAJOR), (std::vector<std::uint64_t>{1, 12, 13}));
  EXPECT_EQ(number(result.services[0], Data::FREQUENCY), std::nullopt);
  EXPECT_EQ(number(result.services[0], Data::PROGRAM_NUMBER), std::nullopt);
}

TEST(M3u, MakesTheIdOfTheTvgIdElseOfTheAddress) {
  const auto id = [](const std::string& attributes, const std::string& address) {
    return number(only(readAs("m3u", "#EXTINF:-1 " + attributes + ",A\n" + address + "\n")), Data::SERVICE_ID);
  };
  EXPECT_EQ(id("tvg-id=\"a\"", "http://a"), id("x-tvg-id=\"c\" tvg-id=\"a\"", "http://b"));
  EXPECT_NE(id("tvg-id=\"a\"", "http://a"), id("tvg-id=\"b\"", "http://a"));
  EXPECT_EQ(id("", "http://a"), id("tvg-name=\"x\"", "http://a"));
  EXPECT_NE(id("", "http://a"), id("", "http://b"));
  EXPECT_EQ(*id("", "http://a") >> 60U, 1U);
}

TEST(M3u, KeepsTheAddress) {
  const auto result = readAs("m3u", m3uList);
  ASSERT_EQ(result.services.size(), 3U);
  EXPECT_EQ(result.services[1].listEntry,
            "m3u\n#EXTINF:-1 radio=\"true\" tvg-id=\"\" TVG-CHNO=\"12\",Two\nrtp://239.0.0.1:5000");
}

TEST(M3u, TellsTheLineThatIsWrong) {
  const auto result =
      readAs("m3u",
             "#EXTM3U\n#EXTINF:-1,A\n#EXTINF:-1 tvg-chno=\"5\",B\nhttp://b\n"
             "#EXTINF:-1 tvg-chno=\"5\",C\nhttp://c\n#EXTINF:-1 tvg-chno=\"x\",D\nhttp://d\n#EXTINF:-1,E\n");
  EXPECT_EQ(problems(result), (Strings{
                                  "2: no address follows",
                                  "5: tvg-chno \"5\" is less than 6; the service is number 6",
                                  "7: tvg-chno \"x\" is not a decimal number; the service is number 7",
                                  "9: no address follows",
                              }));
  EXPECT_EQ(result.problems.unread(), 2U);
  EXPECT_EQ(column(result, Data::MAJOR), (std::vector<std::uint64_t>{5, 6, 7}));
}

TEST(M3u, TakesAddressesAndPathsAndNothingElse) {
  const std::vector<std::string> addresses{"http://a/b?c=\"d\"",
                                           "udp://@239.0.0.1:5000",
                                           "acestream:abc",
                                           "pipe://run it",
                                           "/srv/a b.ts",
                                           "../a",
                                           "a/b",
                                           "one.ts",
                                           "C:\\tv\\a.ts",
                                           "\\\\host\\a",
                                           "\xE9t\xE9.ts"};
  for (const std::string& address : addresses) {
    const auto result = readAs("m3u", "#EXTM3U\n" + address + "\n");
    EXPECT_EQ(problems(result), Strings{}) << address;
    EXPECT_EQ(result.services.size(), 1U) << address;
  }
  const std::vector<std::string> others{
      "{",     "hello",   "<html>",      "a.", "see: this", "\"a\" : \"b.c\"", "<a href=\"/b\">", "std::vector",
      "http:", "a\x01/b", "1http://a/?", ":",  "x y{/"};
  for (const std::string& other : others) {
    const auto result = readAs("m3u", "#EXTM3U\n" + other + "\n");
    EXPECT_EQ(result.services.size(), 0U) << other;
    ASSERT_EQ(problems(result).size(), 1U) << other;
    EXPECT_TRUE(problems(result).front().starts_with("2: \"")) << problems(result).front();
  }
}

TEST(M3u, LosesOneServiceWithALineThatIsNoAddress) {
  const auto result = readAs("m3u", "#EXTINF:-1 tvg-chno=\"5\",A\n404 not found\nhttp://b\n#EXTINF:-1,C\nhttp://c\n");
  EXPECT_EQ(problems(result), (Strings{"2: \"404 not found\" is no address: it has neither a scheme nor a path"}));
  EXPECT_EQ(result.problems.unread(), 1U);
  ASSERT_EQ(result.services.size(), 2U);
  EXPECT_EQ(name(result.services[0]), u"http://b");
  EXPECT_EQ(name(result.services[1]), u"C");
}

}  // namespace
}  // namespace import_tests

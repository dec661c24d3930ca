// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>

#include "virtualtv/import/Lists.h"

namespace import_tests {
namespace {

/// Real channel lists. They are not part of this tree: the variable names their folder.
class RealList : public testing::Test {
 protected:
  void SetUp() override {
    if (folder_ == nullptr || *folder_ == '\0')
      GTEST_SKIP() << "skipped: EMP_WINDOW_LISTS does not name a folder of real channel lists";
  }

  std::string load(const std::string& file) const {
    std::ifstream stream(std::string(folder_) + '/' + file, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << file;
    return {std::istreambuf_iterator<char>(stream), {}};
  }

 private:
  const char* folder_ = std::getenv("EMP_WINDOW_LISTS");
};

std::size_t distinct(const virtualtv::import::Result& result, int field) {
  const auto values = column(result, field);
  return std::set<std::uint64_t>(values.begin(), values.end()).size();
}

TEST_F(RealList, OfASatelliteInVdrFormatIsReadWhole) {
  const std::string content = load("vdr-satellite.conf");
  EXPECT_EQ(recognised(content), "vdr");
  const auto result = readVdr(content);
  EXPECT_EQ(problems(result), std::vector<std::string>{});
  ASSERT_EQ(result.services.size(), 147U);
  EXPECT_EQ(distinct(result, TCServiceData::SERVICE_ID), 147U);

  const auto& first = result.services.front();
  EXPECT_EQ(name(first), u"RTL Television");
  EXPECT_EQ(number(first, TCServiceData::FREQUENCY), 12187000U);
  EXPECT_EQ(number(first, TCServiceData::PROGRAM_NUMBER), 12003U);
  EXPECT_EQ(first.audio.size(), 2U);
  EXPECT_EQ(first.subtitles.size(), 1U);
  EXPECT_EQ(first.group, "");

  const auto found = std::find_if(result.services.begin(), result.services.end(),
                                  [](const auto& service) { return name(service) == u"Sky Cinema HD"; });
  ASSERT_NE(found, result.services.end());
  EXPECT_EQ(number(*found, TCServiceData::MAJOR), 100U);
  EXPECT_EQ(found->group, "Sky HD");
  EXPECT_EQ(found->audio.size(), 2U);
  EXPECT_EQ(number(*found, TCServiceData::MODULATION), 18U);
  EXPECT_EQ(number(result.services.back(), TCServiceData::MAJOR), 100U + 146U - (found - result.services.begin()));
}

TEST_F(RealList, OfTerrestrialServicesInDvbv5FormatIsReadWhole) {
  const std::string content = load("dvbv5-dvbt-au-Sydney.conf");
  EXPECT_EQ(recognised(content), "dvbv5");
  const auto result = readDvbv5(content);
  EXPECT_EQ(problems(result), std::vector<std::string>{});
  ASSERT_EQ(result.services.size(), 34U);
  EXPECT_EQ(distinct(result, TCServiceData::SERVICE_ID), 34U);

  const auto& first = result.services.front();
  EXPECT_EQ(name(first), u"ABC News 24");
  EXPECT_EQ(number(first, TCServiceData::PTC), 12U);
  EXPECT_EQ(number(first, TCServiceData::CHANNEL_TYPE), 9U);
  EXPECT_EQ(number(result.services[5], TCServiceData::CHANNEL_TYPE), 3U);  // a radio service

  const auto channels = column(result, TCServiceData::PTC);
  EXPECT_EQ(std::set<std::uint64_t>(channels.begin(), channels.end()), (std::set<std::uint64_t>{6, 7, 8, 11, 12, 29}));
}

TEST_F(RealList, OfEnigma2IsReadButForServicesOfTranspondersThatAreMissing) {
  const std::string content = load("lamedb");
  EXPECT_EQ(recognised(content), "lamedb");
  const auto result = readAs("lamedb", content);
  EXPECT_EQ(result.problems.count(), 24U);
  EXPECT_EQ(result.problems.unread(), 24U);
  EXPECT_EQ(problems(result).front(), "8015: \"0191:01040000:012d:02be:1:0\" is of a transponder that is not there");
  EXPECT_EQ(result.services.size(), 5626U);
  EXPECT_EQ(distinct(result, TCServiceData::SERVICE_ID), result.services.size());
}

TEST_F(RealList, OfZapLinesWithAndWithoutServiceIdsIsReadWhole) {
  struct Case {
    const char* file;
    std::size_t services;
    bool hasPrograms;
  };
  for (const Case& one : {Case{"zap-dvbs-astra-28.2E.conf", 522, true}, Case{"zap-dvbt-au-Sydney.conf", 34, true},
                          Case{"zap-dvbt-uk-Oxford.conf", 41, false}}) {
    const std::string content = load(one.file);
    EXPECT_EQ(recognised(content), "zap") << one.file;
    const auto result = readAs("zap", content);
    EXPECT_EQ(problems(result), std::vector<std::string>{}) << one.file;
    EXPECT_EQ(result.services.size(), one.services) << one.file;
    EXPECT_EQ(distinct(result, TCServiceData::SERVICE_ID), one.services) << one.file;
    const auto programs = column(result, TCServiceData::PROGRAM_NUMBER);
    EXPECT_EQ(std::count(programs.begin(), programs.end(), 0U), one.hasPrograms ? 0 : 41) << one.file;
  }
}

}  // namespace
}  // namespace import_tests

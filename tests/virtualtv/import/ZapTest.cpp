// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "virtualtv/import/Lists.h"

namespace import_tests {
namespace {

using virtualtv::Service;
using Data = TCServiceData;

constexpr const char* terrestrialLine =
    "News 24:578000000:INVERSION_OFF:BANDWIDTH_8_MHZ:FEC_2_3:FEC_NONE:QAM_64:TRANSMISSION_MODE_2K:"
    "GUARD_INTERVAL_1_32:HIERARCHY_NONE:620:621";

Service zap(const std::string& line) {
  return only(readAs("zap", line + "\n"));
}

TEST(Zap, GivesATerrestrialServiceWhatItsLineTells) {
  const Service service = zap(std::string(terrestrialLine) + ":4171");
  const std::map<int, std::uint64_t> expected{
      {Data::CHANNEL_TYPE, 9}, {Data::PTC, 34},         {Data::FREQUENCY, 578000},
      {Data::MODULATION, 3},   {Data::MAJOR, 1},        {Data::SERVICE_ID, 1ULL << 60U | 578000ULL << 16U | 4171},
      {Data::MINOR, 0},        {Data::ANTENNA_MODE, 0}, {Data::PROGRAM_NUMBER, 4171},
      {Data::LOCK, 0},         {virtualtv::HIDDEN, 0},  {virtualtv::SERVICE_MODE, 0},
  };
  EXPECT_EQ(service.numbers, expected);
  EXPECT_EQ(name(service), u"News 24");
  ASSERT_EQ(service.audio.size(), 1U);
  EXPECT_EQ(service.audio[0].pid, 621);
  EXPECT_EQ(service.audio[0].decodeType, 0);
}

TEST(Zap, GivesACableServiceItsSymbolRateInKilosymbols) {
  const Service service = zap("News:306000000:INVERSION_AUTO:6900000:FEC_NONE:QAM_256:620:621:7");
  EXPECT_EQ(number(service, Data::ANTENNA_MODE), 1U);
  EXPECT_EQ(number(service, Data::SYMBOL_RATE), 6900U);
  EXPECT_EQ(number(service, Data::MODULATION), 5U);
  EXPECT_EQ(number(service, Data::PTC), 306U);
}

TEST(Zap, GivesASatelliteServiceItsSwitchAsSource) {
  const Service service = zap("News:10773:h:2:22000:2304:2306:6301");
  EXPECT_EQ(number(service, Data::ANTENNA_MODE), 2U);
  EXPECT_EQ(number(service, Data::FREQUENCY), 10773000U);
  EXPECT_EQ(number(service, Data::SYMBOL_RATE), 22000U);
  EXPECT_EQ(number(service, Data::MODULATION), 7U);
  EXPECT_EQ(number(service, Data::SOURCE_ID), 2U);
}

TEST(Zap, TellsAmericanCableFromAirByTheModulation) {
  EXPECT_EQ(number(zap("News:473000000:8VSB:49:52:1"), Data::ANTENNA_MODE), 0U);
  EXPECT_EQ(number(zap("News:473000000:8VSB:49:52:1"), Data::PTC), 14U);
  EXPECT_EQ(number(zap("News:473000000:QAM_256:49:52:1"), Data::ANTENNA_MODE), 1U);
}

TEST(Zap, PutsTheAudioPidIntoTheIdWhereThereIsNoServiceId) {
  const std::uint64_t id = 1ULL << 60U | 578000ULL << 16U | 621;
  for (const char* end : {"", ":0"}) {
    const Service service = zap(terrestrialLine + std::string(end));
    EXPECT_EQ(number(service, Data::SERVICE_ID), id);
    EXPECT_EQ(number(service, Data::PROGRAM_NUMBER), std::nullopt);
  }
  EXPECT_EQ(name(zap(":10773:h:0:22000:2304:2306:0")), u"Service");
}

TEST(Zap, TakesSeveralAudioPidsAndKindsByTheStreams) {
  const Service service = zap("Radio:10773:V:0:22000:0:2306,2307:6301");
  EXPECT_EQ(service.audio.size(), 2U);
  EXPECT_EQ(number(service, Data::CHANNEL_TYPE), 5U);
  EXPECT_EQ(number(zap("Data:10773:V:0:22000:0:0:6301"), Data::CHANNEL_TYPE), 8U);
}

TEST(Zap, TellsTheLineAndTheFieldThatIsWrong) {
  EXPECT_EQ(problemOf("zap", "News"), "1: \"News\" is no service of a terrestrial, cable or satellite zap file");
  EXPECT_EQ(problemOf("zap", "\n\nNews:10773:h:0"), "3: \"News:10773:h:0\" has 4 of the 8 fields of a service");
  EXPECT_EQ(problemOf("zap", "N:10773:h:0:22000:1:2:3:4"),
            "1: \"N:10773:h:0:22000:1:2:3:4\" has more than the 8 fields of a service");
  EXPECT_EQ(problemOf("zap", "N:1:h:0:22000:2304:2306:6301"),
            "1: frequency \"1\" is not that of a satellite, 2000 to 50000 MHz");
  EXPECT_EQ(problemOf("zap", "N:10773000:8VSB:49:52:1"),
            "1: frequency \"10773000\" is not within 30000000 to 1500000000 Hz");
  EXPECT_EQ(problemOf("zap", "N:10773:h:0:22000:9000:2306:6301"), "1: video PID \"9000\" is greater than 8191");
  EXPECT_EQ(problemOf("zap", "N:10773:h:0:22000:2304:x:6301"), "1: audio PID \"x\" is not a decimal number");
  EXPECT_EQ(problemOf("zap", "N:10773:h:0:22000:2304:2306:70000"), "1: service id \"70000\" is greater than 65535");
  EXPECT_EQ(problemOf("zap", "N:306000000:INVERSION_AUTO:6900000:FEC_NONE:QAM_3:620:621:7"),
            "1: modulation \"QAM_3\" is not known");
  EXPECT_EQ(problemOf("zap", "N:578000000:INVERSION_OFF:BANDWIDTH_9_MHZ:a:b:QAM_64:c:d:e:620:621"),
            "1: bandwidth \"BANDWIDTH_9_MHZ\" is not known");
}

TEST(Zap, LeavesWhatTheSetDoesNotUseUnread) {
  EXPECT_EQ(number(zap("N:578000000:INVERSION_?:BANDWIDTH_AUTO:a:b:QAM_AUTO:c:d:e:620:621:7"), Data::MODULATION), 0U);
}

}  // namespace
}  // namespace import_tests

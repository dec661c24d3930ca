// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "virtualtv/import/Lists.h"

namespace import_tests {
namespace {

using virtualtv::Service;
using Lines = std::vector<std::string>;

std::uint64_t modulation(const std::string& system, const std::string& value) {
  const std::string lines = "DELIVERY_SYSTEM = " + system + "\nMODULATION = " + value + '\n';
  const std::string text = system.starts_with("DVBS") ? satelliteSection("A", lines) : section("A", lines);
  return number(dvbv5(text), TCServiceData::MODULATION).value_or(99);
}

std::uint64_t antenna(const std::string& text) {
  return number(dvbv5(text), TCServiceData::ANTENNA_MODE).value_or(99);
}

std::uint64_t frequency(const std::string& text) {
  return number(dvbv5(text), TCServiceData::FREQUENCY).value_or(0);
}

/// PID and coding of each audio track.
std::vector<std::pair<int, int>> audio(const Service& service) {
  std::vector<std::pair<int, int>> tracks;
  for (const auto& track : service.audio) tracks.emplace_back(track.pid, track.decodeType);
  return tracks;
}

/// The problem of a section that is valid except for `more`.
std::string problem(const std::string& more) {
  return problemOf("dvbv5", section("A", more));
}

TEST(Dvbv5, GivesATerrestrialServiceEveryNumberThatTheSectionTells) {
  const Service service = dvbv5(section("News 24", "\tNETWORK_ID = 4112\n\tTRANSPORT_ID = 545\n"));
  const std::map<int, std::uint64_t> expected{
      {TCServiceData::CHANNEL_TYPE, 9},
      {TCServiceData::PTC, 21},
      {TCServiceData::FREQUENCY, 474000},
      {TCServiceData::MODULATION, 3},
      {TCServiceData::SERVICE_ID, 1ULL << 60U | 4112ULL << 32U | 545ULL << 16U | 544ULL},
      {TCServiceData::MAJOR, 1},
      {TCServiceData::MINOR, 0},
      {TCServiceData::PROGRAM_NUMBER, 544},
      {TCServiceData::TRANSPORT_STREAM_ID, 545},
      {TCServiceData::LOCK, 0},
      {TCServiceData::SOURCE_ID, 4112},
      {TCServiceData::ORIGINAL_NETWORK_ID, 4112},
      {TCServiceData::ANTENNA_MODE, 0},
      {virtualtv::HIDDEN, 0},
      {virtualtv::SERVICE_MODE, 0},
  };
  EXPECT_EQ(service.numbers, expected);
  EXPECT_EQ(name(service), u"News 24");
  EXPECT_EQ(service.group, "");
  EXPECT_TRUE(service.subtitles.empty());
}

TEST(Dvbv5, LeavesIdsThatTheSectionLacksAbsent) {
  const Service service = dvbv5(section("News"));
  EXPECT_EQ(number(service, TCServiceData::ORIGINAL_NETWORK_ID), std::nullopt);
  EXPECT_EQ(number(service, TCServiceData::TRANSPORT_STREAM_ID), std::nullopt);
  EXPECT_EQ(number(service, TCServiceData::SOURCE_ID), std::nullopt);
  EXPECT_EQ(number(service, TCServiceData::SYMBOL_RATE), std::nullopt);
}

TEST(Dvbv5, TakesSatelliteFrequenciesInKilohertzAndOthersInHertz) {
  EXPECT_EQ(frequency(satelliteSection("A", "FREQUENCY = 12187500\n")), 12187500U);
  EXPECT_EQ(frequency(section("A", "FREQUENCY = 226500000\n")), 226500U);
  EXPECT_EQ(frequency(section("A", "FREQUENCY = 713833334\n")), 713833U);
  EXPECT_EQ(frequency(section("A", "FREQUENCY = 713833500\n")), 713834U);
  EXPECT_EQ(frequency(section("A", "DELIVERY_SYSTEM = DVBC/ANNEX_A\nFREQUENCY = 306000000\n")), 306000U);
}

TEST(Dvbv5, TakesSymbolRatesInSymbolsASecond) {
  EXPECT_EQ(number(dvbv5(satelliteSection("A")), TCServiceData::SYMBOL_RATE), 27500U);
  EXPECT_EQ(number(dvbv5(section("A", "DELIVERY_SYSTEM = DVBC/ANNEX_A\nSYMBOL_RATE = 6875500\n")),
                   TCServiceData::SYMBOL_RATE),
            6876U);
  EXPECT_EQ(number(dvbv5(section("A", "SYMBOL_RATE = 27500000\n")), TCServiceData::SYMBOL_RATE), std::nullopt);
}

TEST(Dvbv5, TellsTheAntennaByTheDeliverySystem) {
  for (const std::string system : {"DVBT", "DVBT2", "ISDBT", "DTMB", "ATSC", "dvbt"}) {
    EXPECT_EQ(antenna(section("A", "DELIVERY_SYSTEM = " + system + "\nMODULATION = AUTO\n")), 0U) << system;
  }
  for (const std::string system : {"DVBC/ANNEX_A", "DVBC/ANNEX_B", "DVBC/ANNEX_C", "DVBC", "ISDBC", "DVBC2"}) {
    EXPECT_EQ(antenna(section("A", "DELIVERY_SYSTEM = " + system + '\n')), 1U) << system;
  }
  for (const std::string system : {"DVBS", "DVBS2", "TURBO", "ISDBS", "DSS"}) {
    EXPECT_EQ(antenna(satelliteSection("A", "DELIVERY_SYSTEM = " + system + '\n')), 2U) << system;
  }
}

TEST(Dvbv5, TakesAmericanQamForCable) {
  EXPECT_EQ(antenna(section("A", "DELIVERY_SYSTEM = ATSC\nMODULATION = QAM/256\n")), 1U);
  EXPECT_EQ(antenna(section("A", "DELIVERY_SYSTEM = ATSC\nMODULATION = VSB/8\n")), 0U);
}

TEST(Dvbv5, ReadsModulations) {
  EXPECT_EQ(modulation("DVBT", "QPSK"), 7U);
  EXPECT_EQ(modulation("DVBT", "QAM/16"), 1U);
  EXPECT_EQ(modulation("DVBT", "QAM/32"), 2U);
  EXPECT_EQ(modulation("DVBT", "QAM/64"), 3U);
  EXPECT_EQ(modulation("DVBT", "QAM_64"), 3U);
  EXPECT_EQ(modulation("DVBT", "QAM64"), 3U);
  EXPECT_EQ(modulation("DVBT", "64QAM"), 3U);
  EXPECT_EQ(modulation("DVBT", "qam/64"), 3U);
  EXPECT_EQ(modulation("DVBT", "QAM/128"), 4U);
  EXPECT_EQ(modulation("DVBT2", "QAM/256"), 5U);
  EXPECT_EQ(modulation("DVBC2", "QAM/512"), 6U);
  EXPECT_EQ(modulation("DVBC2", "QAM/1024"), 8U);
  EXPECT_EQ(modulation("DVBC2", "QAM/4096"), 9U);
  EXPECT_EQ(modulation("ATSC", "VSB/8"), 10U);
  EXPECT_EQ(modulation("ATSC", "8VSB"), 10U);
  EXPECT_EQ(modulation("ATSC", "VSB/16"), 11U);
  EXPECT_EQ(modulation("ISDBT", "DQPSK"), 12U);
  EXPECT_EQ(modulation("DVBS2", "APSK/16"), 13U);
  EXPECT_EQ(modulation("DVBS2", "APSK/32"), 14U);
  EXPECT_EQ(modulation("DTMB", "QAM/4_NR"), 15U);
  EXPECT_EQ(modulation("DVBS2", "PSK/8"), 16U);
  EXPECT_EQ(modulation("DVBS2", "8PSK"), 16U);
  EXPECT_EQ(modulation("DVBS2", "APSK/64"), 17U);
  EXPECT_EQ(modulation("DVBS2", "QPSK"), 18U);
  EXPECT_EQ(modulation("DVBS", "QPSK"), 7U);
  EXPECT_EQ(modulation("DVBT", "QAM/AUTO"), 0U);
  EXPECT_EQ(modulation("DVBT", "AUTO"), 0U);
}

TEST(Dvbv5, SuppliesAModulationOnlyWhereTheSystemHasNoOther) {
  EXPECT_EQ(number(dvbv5(satelliteSection("A")), TCServiceData::MODULATION), 7U);
  EXPECT_EQ(number(dvbv5(satelliteSection("A", "DELIVERY_SYSTEM = DVBS2\n")), TCServiceData::MODULATION), 0U);
}

TEST(Dvbv5, TellsSatellitesApartByTheSwitchNumber) {
  EXPECT_EQ(number(dvbv5(satelliteSection("A", "SAT_NUMBER = 2\n")), TCServiceData::SOURCE_ID), 2U);
  EXPECT_EQ(number(dvbv5(satelliteSection("A", "SAT_NUMBER = -1\n")), TCServiceData::SOURCE_ID), std::nullopt);
  EXPECT_EQ(number(dvbv5(satelliteSection("A", "NETWORK_ID = 1\n")), TCServiceData::SOURCE_ID), std::nullopt);
}

TEST(Dvbv5, ReadsPolarisationsByWordAndByLetter) {
  const auto ptc = [](const std::string& polarisation) {
    const auto result = readDvbv5(satelliteSection("A", "POLARIZATION = LEFT\n") +
                                  satelliteSection("B", "POLARIZATION = " + polarisation + '\n'));
    return column(result, TCServiceData::PTC);
  };
  using Numbers = std::vector<std::uint64_t>;
  EXPECT_EQ(ptc("LEFT"), (Numbers{1, 1}));
  EXPECT_EQ(ptc("l"), (Numbers{1, 1}));
  EXPECT_EQ(ptc("HORIZONTAL"), (Numbers{2, 1}));
  EXPECT_EQ(ptc("Right"), (Numbers{1, 2}));
  EXPECT_EQ(ptc("V"), (Numbers{1, 2}));
  EXPECT_EQ(ptc("OFF"), (Numbers{2, 1}));
}

TEST(Dvbv5, TellsTelevisionRadioAndDataApart) {
  const auto type = [](const std::string& lines) {
    return number(dvbv5("[A]\nSERVICE_ID = 1\nDELIVERY_SYSTEM = DVBT\nFREQUENCY = 474000000\n" + lines),
                  TCServiceData::CHANNEL_TYPE);
  };
  EXPECT_EQ(type("VIDEO_PID = 512\nAUDIO_PID = 650\n"), 9U);
  EXPECT_EQ(type("VIDEO_PID = 512\nAUDIO_PID = 0\n"), 9U);
  EXPECT_EQ(type("VIDEO_PID = 0\nAUDIO_PID = 650\n"), 3U);
  EXPECT_EQ(type("AUDIO_PID = 650\n"), 3U);
  EXPECT_EQ(type("VIDEO_PID = 0\nAUDIO_PID = 0\n"), 6U);
  EXPECT_EQ(type(""), 6U);
  EXPECT_EQ(type("PID_1b = 512\n"), 9U);
}

TEST(Dvbv5, ReadsSeveralPidsOnALineAndRepeatedKeys) {
  using Tracks = std::vector<std::pair<int, int>>;
  EXPECT_EQ(audio(dvbv5(section("A", "AUDIO_PID = 651 652\t653,654\nAUDIO_PID=655\n"))),
            (Tracks{{650, 0}, {651, 0}, {652, 0}, {653, 0}, {654, 0}, {655, 0}}));
}

TEST(Dvbv5, TellsTheCodingOfAudioByTheKey) {
  using Tracks = std::vector<std::pair<int, int>>;
  EXPECT_EQ(audio(dvbv5(section("A",
                                "AC3_PID = 651\nEAC3_PID = 652\nPID_03 = 653\nPID_0f = 654\nPID_11 = 655\n"
                                "PID_81 = 656\nPID_87 = 657\nPID_05 = 658\nPID_06 = 659\nPID_zz = 660\n"))),
            (Tracks{{650, 0}, {651, 2}, {652, 3}, {653, 1}, {654, 4}, {655, 4}, {656, 2}, {657, 3}}));
}

TEST(Dvbv5, ReadsKeysInAnyOrderCaseAndSpacing) {
  const Service service = dvbv5(
      "[A]\nfrequency=474000000\n   Delivery_System   =   DVBT   \nVIDEO_PID\t=\t512\nSERVICE_ID=7\nMODULATION=QPSK");
  EXPECT_EQ(number(service, TCServiceData::PROGRAM_NUMBER), 7U);
  EXPECT_EQ(number(service, TCServiceData::FREQUENCY), 474000U);
  EXPECT_EQ(number(service, TCServiceData::MODULATION), 7U);
}

TEST(Dvbv5, TakesTheLastValueOfAKey) {
  EXPECT_EQ(number(dvbv5(section("A", "SERVICE_ID = 7\n")), TCServiceData::PROGRAM_NUMBER), 7U);
}

TEST(Dvbv5, IgnoresKeysThatItDoesNotKnow) {
  EXPECT_EQ(name(dvbv5(section("A", "INVERSION = AUTO\nLNB = EXTENDED\nVCHANNEL = 2.1\nNEW_KEY = =[x]=\n"))), u"A");
}

TEST(Dvbv5, SkipsCommentsBlankLinesCarriageReturnsAndAByteOrderMark) {
  const Service service = dvbv5(
      "\xEF\xBB\xBF# file\r\n\r\n[A]  # head\r\n  # key\r\nSERVICE_ID = 7 # value\r\n\tDELIVERY_SYSTEM = DVBT\t# x\r\n"
      "FREQUENCY = 474000000\r\n");
  EXPECT_EQ(name(service), u"A");
  EXPECT_EQ(number(service, TCServiceData::PROGRAM_NUMBER), 7U);
}

TEST(Dvbv5, KeepsBracketsAndHashesOfAName) {
  EXPECT_EQ(name(dvbv5(section("News [HD] #1"))), u"News [HD] #1");
  EXPECT_EQ(name(dvbv5(section(" [1341] "))), u"[1341]");
}

TEST(Dvbv5, TakesTheNameOfTheChannelKeyBeforeThatOfTheHead) {
  EXPECT_EQ(name(dvbv5(section("CHANNEL", "CHANNEL = News #1\n"))), u"News #1");
  EXPECT_EQ(name(dvbv5(section("Head", "CHANNEL =\n"))), u"Head");
}

TEST(Dvbv5, NamesAServiceWithoutANameByItsProgramNumber) {
  EXPECT_EQ(name(dvbv5(section("CHANNEL"))), u"Service 544");
  EXPECT_EQ(name(dvbv5(section(""))), u"Service 544");
}

TEST(Dvbv5, NumbersServicesFromOne) {
  const auto result = readDvbv5(section("A") + "[B]\n" + section("C") + section("D"));
  EXPECT_EQ(column(result, TCServiceData::MAJOR), (std::vector<std::uint64_t>{1, 2, 3}));
}

TEST(Dvbv5Problem, NamesTheLineAtFaultAndImportsTheOtherSections) {
  const auto result = readDvbv5(section("A") + "\n[B]\nSERVICE_ID = x\nFREQUENCY = y\n" + section("C") + "[D\nx\n");
  ASSERT_EQ(result.services.size(), 2U);
  EXPECT_EQ(name(result.services[1]), u"C");
  EXPECT_EQ(problems(result), (Lines{"11: SERVICE_ID \"x\" is not a decimal number",
                                     "21: the head of a section, \"[D\", does not end with ]"}));
}

TEST(Dvbv5Problem, NamesTheHeadOfASectionThatLacksAKey) {
  EXPECT_EQ(problems(readDvbv5("# x\n[CHANNEL]\nDELIVERY_SYSTEM = DVBT\nFREQUENCY = 474000000\n")),
            (Lines{"2: the section has no SERVICE_ID: it is no service"}));
  EXPECT_EQ(problems(readDvbv5("[A]\nSERVICE_ID = 1\nFREQUENCY = 474000000\n")),
            (Lines{"1: the section has no DELIVERY_SYSTEM"}));
  EXPECT_EQ(problems(readDvbv5("[A]\nSERVICE_ID = 1\nDELIVERY_SYSTEM = DVBT\n")),
            (Lines{"1: the section has no FREQUENCY"}));
  EXPECT_EQ(problems(readDvbv5("[A]\n[B]\n")), (Lines{"1: the section has no SERVICE_ID: it is no service",
                                                      "2: the section has no SERVICE_ID: it is no service"}));
}

TEST(Dvbv5Problem, FindsLinesWithoutKeyAndValue) {
  EXPECT_EQ(problem("FREQUENCY 474000000\n"), "9: \"FREQUENCY 474000000\" is not KEY = VALUE");
  EXPECT_EQ(problem("= 5\n"), "9: \"= 5\" is not KEY = VALUE");
}

TEST(Dvbv5Problem, ReportsLinesInFrontOfTheFirstSectionOnce) {
  const auto result = readDvbv5("# x\nSERVICE_ID = 1\nFREQUENCY = 2\n" + section("A"));
  EXPECT_EQ(result.services.size(), 1U);
  EXPECT_EQ(problems(result), (Lines{"2: \"SERVICE_ID = 1\" stands in front of the first section"}));
}

TEST(Dvbv5Problem, FindsNumbersOutOfRange) {
  EXPECT_EQ(problem("SERVICE_ID = 65536\n"), "9: SERVICE_ID \"65536\" is greater than 65535");
  EXPECT_EQ(problem("SERVICE_ID =\n"), "9: SERVICE_ID is missing");
  EXPECT_EQ(problem("NETWORK_ID = -1\n"), "9: NETWORK_ID \"-1\" is negative");
  EXPECT_EQ(problem("TRANSPORT_ID = 99999999999999999999\n"),
            "9: TRANSPORT_ID \"99999999999999999999\" is greater than 65535");
  EXPECT_EQ(problem("VIDEO_PID = 8192\n"), "9: VIDEO_PID \"8192\" is greater than 8191");
  EXPECT_EQ(problem("AUDIO_PID = 1 2 x\n"), "9: AUDIO_PID \"x\" is not a decimal number");
  EXPECT_EQ(problem("BANDWIDTH_HZ = 8 MHz\n"), "9: BANDWIDTH_HZ \"8 MHz\" is not a decimal number");
  EXPECT_EQ(problem("FREQUENCY = 29999999\n"), "9: FREQUENCY \"29999999\" is not within 30000000 to 1500000000 Hz");
  EXPECT_EQ(problem("FREQUENCY = 474\n"), "9: FREQUENCY \"474\" is not within 30000000 to 1500000000 Hz");
  EXPECT_EQ(problem("DELIVERY_SYSTEM = DVBS\nFREQUENCY = 12187\n"),
            "10: FREQUENCY \"12187\" is not that of a satellite, 2000000 to 50000000 kHz");
  EXPECT_EQ(problem("DELIVERY_SYSTEM = DVBC/ANNEX_A\nSYMBOL_RATE = 100000001\n"),
            "10: SYMBOL_RATE \"100000001\" is greater than 100000000");
  EXPECT_EQ(problems(readDvbv5(satelliteSection("A", "SAT_NUMBER = 65536\n"))),
            (Lines{"9: SAT_NUMBER \"65536\" is greater than 65535"}));
}

TEST(Dvbv5Problem, FindsWordsThatItDoesNotKnow) {
  EXPECT_EQ(problem("DELIVERY_SYSTEM = UNDEFINED\n"), "9: delivery system \"UNDEFINED\" is not known");
  EXPECT_EQ(problem("DELIVERY_SYSTEM =\n"), "9: delivery system \"\" is not known");
  EXPECT_EQ(problem("MODULATION = QAM/65\n"), "9: modulation \"QAM/65\" is not known");
  EXPECT_EQ(problem("MODULATION = QAM/99999999999999\n"), "9: modulation \"QAM/99999999999999\" is not known");
  EXPECT_EQ(problems(readDvbv5(satelliteSection("News", "POLARIZATION = UP\x07\n"))),
            std::vector<std::string>{"9: polarization \"UP\\x07\" is not known"});
}

TEST(Dvbv5Problem, IsNoneOfKeysThatTheSetHasNoUseForOnAnAntenna) {
  EXPECT_EQ(told(dvbv5(section("News", "POLARIZATION = UP\nSYMBOL_RATE = x\nSAT_NUMBER = x\nCODE_RATE_HP = x\n"))),
            told(dvbv5(section("News"))));
  EXPECT_EQ(told(dvbv5(satelliteSection("News", "BANDWIDTH_HZ = x\nINVERSION = 7\n"))),
            told(dvbv5(satelliteSection("News"))));
}

}  // namespace
}  // namespace import_tests

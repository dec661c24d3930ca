// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "services/ChannelType.h"
#include "services/Modulation.h"
#include "virtualtv/import/Lists.h"

namespace import_tests {
namespace {

using virtualtv::AudioTrack;
using virtualtv::Service;
using virtualtv::SubtitleTrack;
using Numbers = std::vector<std::uint64_t>;

AudioTrack audio(int pid, int lang, int coding) {
  AudioTrack track;
  track.pid = pid;
  track.lang = lang;
  track.decodeType = coding;
  return track;
}

SubtitleTrack subtitle(int pid, int lang) {
  return {pid, lang, 0, true};
}

std::uint64_t frequency(const VdrLine& line) {
  return number(vdr(line), TCServiceData::FREQUENCY).value_or(0);
}

std::uint64_t modulation(const VdrLine& line) {
  return number(vdr(line), TCServiceData::MODULATION).value_or(99);
}

std::uint64_t antenna(const VdrLine& line) {
  return number(vdr(line), TCServiceData::ANTENNA_MODE).value_or(99);
}

TEST(Vdr, GivesASatelliteServiceEveryNumberThatTheLineTells) {
  const Service service = vdr({});
  const std::map<int, std::uint64_t> expected{
      {TCServiceData::CHANNEL_TYPE, 9},
      {TCServiceData::PTC, 1},
      {TCServiceData::FREQUENCY, 12187000},
      {TCServiceData::MODULATION, 7},
      {TCServiceData::SYMBOL_RATE, 27500},
      {TCServiceData::SERVICE_ID, 3ULL << 60U | 1ULL << 32U | 1089ULL << 16U | 12003ULL},
      {TCServiceData::MAJOR, 1},
      {TCServiceData::MINOR, 0},
      {TCServiceData::PROGRAM_NUMBER, 12003},
      {TCServiceData::TRANSPORT_STREAM_ID, 1089},
      {TCServiceData::LOCK, 0},
      {TCServiceData::SOURCE_ID, 192},
      {TCServiceData::ORIGINAL_NETWORK_ID, 1},
      {TCServiceData::ANTENNA_MODE, 2},
      {virtualtv::HIDDEN, 0},
      {virtualtv::SERVICE_MODE, 0},
  };
  EXPECT_EQ(service.numbers, expected);
  EXPECT_EQ(name(service), u"News");
  EXPECT_EQ(service.texts.size(), 1U);
  EXPECT_EQ(service.group, "");
  EXPECT_TRUE(service.favourites.empty());
}

TEST(Vdr, TakesTheNameWithoutShortNameAndProvider) {
  EXPECT_EQ(name(vdr({.name = "News"})), u"News");
  EXPECT_EQ(name(vdr({.name = "News,N"})), u"News");
  EXPECT_EQ(name(vdr({.name = "News;Company"})), u"News");
  EXPECT_EQ(name(vdr({.name = "News,N;Company"})), u"News");
  EXPECT_EQ(name(vdr({.name = "News;Company, Limited"})), u"News");
}

TEST(Vdr, SplitsTheShortNameOffAtTheLastComma) {
  EXPECT_EQ(name(vdr({.name = "Sun, Sea, Sand,SSS"})), u"Sun, Sea, Sand");
}

TEST(Vdr, ReadsABarInANameAsAColon) {
  EXPECT_EQ(name(vdr({.name = "Mission| Earth"})), u"Mission: Earth");
}

TEST(Vdr, NamesAServiceWithoutANameByItsProgramNumber) {
  EXPECT_EQ(name(vdr({.name = ";Company"})), u"Service 12003");
}

TEST(Vdr, LeavesOutBlanksAroundNamesAndFields) {
  const Service service = vdr({.name = "  News 24 ", .frequency = " 12187 ", .source = "S19.2E ", .service = "\t7 "});
  EXPECT_EQ(name(service), u"News 24");
  EXPECT_EQ(number(service, TCServiceData::FREQUENCY), 12187000U);
  EXPECT_EQ(number(service, TCServiceData::PROGRAM_NUMBER), 7U);
}

TEST(Vdr, SkipsCommentsAndBlankLines) {
  const auto result = readVdr("# a list\n\n  \t\n   # more\n" + VdrLine{}.text() + "#end");
  EXPECT_EQ(result.services.size(), 1U);
  EXPECT_EQ(result.problems.count(), 0U);
}

TEST(Vdr, ReadsLinesEndingInCarriageReturnAndLineFeed) {
  const auto result = readVdr(":Group\r\n\r\nA:12187:h:S19.2E:27500:1:0:0:0:1:1:1:0\r\nB:1\r\n");
  ASSERT_EQ(result.services.size(), 1U);
  EXPECT_EQ(result.services[0].group, "Group");
  EXPECT_EQ(problems(result), (std::vector<std::string>{"4: \"B:1\" has 2 of the 13 fields of a service"}));
}

TEST(Vdr, SkipsAByteOrderMark) {
  EXPECT_EQ(name(only(readVdr("\xEF\xBB\xBF" + VdrLine{}.text()))), u"News");
}

TEST(Vdr, ReadsALastLineWithoutALineBreak) {
  std::string text = VdrLine{}.text();
  text.pop_back();
  EXPECT_EQ(name(only(readVdr(text))), u"News");
}

TEST(Vdr, ReadsTheShorterLinesOfOldLists) {
  const Service service = only(readVdr("News:12187:h:S19.2E:27500:163:104:105:0:12003\n"));
  EXPECT_EQ(number(service, TCServiceData::PROGRAM_NUMBER), 12003U);
  EXPECT_EQ(number(service, TCServiceData::ORIGINAL_NETWORK_ID), std::nullopt);
  EXPECT_EQ(number(service, TCServiceData::TRANSPORT_STREAM_ID), std::nullopt);
}

TEST(Vdr, TakesSatelliteFrequenciesInMegahertz) {
  EXPECT_EQ(frequency({.frequency = "3840"}), 3840000U);
  EXPECT_EQ(frequency({.frequency = "12187"}), 12187000U);
  EXPECT_EQ(frequency({.frequency = "19701"}), 19701000U);
}

TEST(Vdr, TellsMegahertzKilohertzAndHertzByTheMagnitude) {
  EXPECT_EQ(frequency(terrestrial("578")), 578000U);
  EXPECT_EQ(frequency(terrestrial("578000")), 578000U);
  EXPECT_EQ(frequency(terrestrial("578000000")), 578000U);
  EXPECT_EQ(frequency(terrestrial("226500")), 226500U);
  EXPECT_EQ(frequency(cable("113")), 113000U);
  EXPECT_EQ(frequency(cable("113000")), 113000U);
  EXPECT_EQ(frequency(cable("113000000")), 113000U);
  EXPECT_EQ(frequency(terrestrial("30")), 30000U);
  EXPECT_EQ(frequency(terrestrial("1500000000")), 1500000U);
}

TEST(Vdr, RoundsHertzToTheNearestKilohertz) {
  EXPECT_EQ(frequency(terrestrial("713833334")), 713833U);
  EXPECT_EQ(frequency(terrestrial("713833500")), 713834U);
}

TEST(Vdr, TellsTheAntennaByTheSource) {
  EXPECT_EQ(antenna({.source = "S19.2E"}), 2U);
  EXPECT_EQ(antenna({.source = "S28.5W"}), 2U);
  EXPECT_EQ(antenna(terrestrial("578")), 0U);
  EXPECT_EQ(antenna(cable("306")), 1U);
}

TEST(Vdr, TellsTheAntennaOfAmericanServicesByTheModulation) {
  EXPECT_EQ(antenna({.frequency = "473000", .parameters = "M10", .source = "A"}), 0U);
  EXPECT_EQ(antenna({.frequency = "473000", .parameters = "", .source = "A"}), 0U);
  EXPECT_EQ(antenna({.frequency = "473000", .parameters = "M256", .source = "A"}), 1U);
}

TEST(Vdr, TakesInputsOfOtherKindsForCableAndSaysNothingOfTheirTuning) {
  const Service service = vdr({.frequency = "10", .parameters = "S=1|P=0|F=UDP|U=10.0.0.1", .source = "I"});
  EXPECT_EQ(number(service, TCServiceData::ANTENNA_MODE), 1U);
  EXPECT_EQ(number(service, TCServiceData::FREQUENCY), std::nullopt);
  EXPECT_EQ(number(service, TCServiceData::PTC), std::nullopt);
  EXPECT_EQ(number(service, TCServiceData::SYMBOL_RATE), std::nullopt);
  EXPECT_EQ(number(service, TCServiceData::MODULATION), 0U);
  EXPECT_EQ(number(vdr({.frequency = "48250", .parameters = "TV|PAL", .source = "P"}), TCServiceData::FREQUENCY),
            std::nullopt);
}

TEST(Vdr, MakesTheSourceIdOfTheOrbitalPosition) {
  const auto source = [](const std::string& text) {
    return number(vdr({.source = text}), TCServiceData::SOURCE_ID).value_or(9999);
  };
  EXPECT_EQ(source("S19.2E"), 192U);
  EXPECT_EQ(source("S13E"), 130U);
  EXPECT_EQ(source("S28.5W"), 3315U);
  EXPECT_EQ(source("S0.8W"), 3592U);
  EXPECT_EQ(source("S0W"), 0U);
  EXPECT_EQ(source("S180E"), 1800U);
}

TEST(Vdr, MakesTheSourceIdOfOtherServicesTheirNetwork) {
  VdrLine line = terrestrial("578");
  line.network = "8468";
  EXPECT_EQ(number(vdr(line), TCServiceData::SOURCE_ID), 8468U);
}

TEST(Vdr, ReadsModulations) {
  EXPECT_EQ(modulation({.parameters = "HM2S0"}), 7U);
  EXPECT_EQ(modulation({.parameters = "HM2S1"}), 18U);
  EXPECT_EQ(modulation({.parameters = "HC23M5O35P0S1"}), 16U);
  EXPECT_EQ(modulation({.parameters = "HM6S1"}), 13U);
  EXPECT_EQ(modulation({.parameters = "HM7S1"}), 14U);
  EXPECT_EQ(modulation(terrestrial("578", "B8M2")), 7U);
  EXPECT_EQ(modulation(terrestrial("578", "B8M16")), 1U);
  EXPECT_EQ(modulation(terrestrial("578", "B8M32")), 2U);
  EXPECT_EQ(modulation(terrestrial("578", "B8M64")), 3U);
  EXPECT_EQ(modulation(terrestrial("578", "B8M128")), 4U);
  EXPECT_EQ(modulation(terrestrial("578", "B8M256")), 5U);
  EXPECT_EQ(modulation(terrestrial("578", "B8M512")), 6U);
  EXPECT_EQ(modulation(terrestrial("578", "M1024")), 8U);
  EXPECT_EQ(modulation(terrestrial("578", "M4096")), 9U);
  EXPECT_EQ(modulation(terrestrial("578", "M10")), 10U);
  EXPECT_EQ(modulation(terrestrial("578", "M11")), 11U);
  EXPECT_EQ(modulation(terrestrial("578", "M12")), 12U);
  EXPECT_EQ(modulation(terrestrial("578", "M999")), 0U);
}

TEST(Vdr, SuppliesAModulationOnlyWhereTheSystemHasNoOther) {
  EXPECT_EQ(modulation({.parameters = "H"}), 7U);
  EXPECT_EQ(modulation({.parameters = "HS0"}), 7U);
  EXPECT_EQ(modulation({.parameters = "HS1"}), 0U);
  EXPECT_EQ(modulation(terrestrial("578", "B8")), 0U);
  EXPECT_EQ(modulation(terrestrial("578", "")), 0U);
}

TEST(Vdr, ReadsParametersInAnyCaseAndOrderWithThoseItHasNoUseFor) {
  EXPECT_EQ(modulation({.parameters = "h"}), 7U);
  EXPECT_EQ(modulation({.parameters = "s1m5c910d0i999n1o20p13q2x1z77v"}), 16U);
  EXPECT_EQ(modulation(terrestrial("578", "I999B8C23D12M64T8G32Y0")), 3U);
}

TEST(Vdr, GivesASymbolRateToSatelliteAndCableOnly) {
  const auto rate = [](const VdrLine& line) { return number(vdr(line), TCServiceData::SYMBOL_RATE); };
  EXPECT_EQ(rate({}), 27500U);
  EXPECT_EQ(rate(cable("306")), 6900U);
  EXPECT_EQ(rate(terrestrial("578")), std::nullopt);
  EXPECT_EQ(rate({.symbolRate = "0"}), std::nullopt);
}

TEST(Vdr, TellsTelevisionRadioAndDataApart) {
  const auto type = [](VdrLine line, const std::string& video, const std::string& sound) {
    line.video = video;
    line.audio = sound;
    return number(vdr(line), TCServiceData::CHANNEL_TYPE).value_or(0);
  };
  for (const VdrLine& line : {VdrLine{}, cable("306"), terrestrial("578")}) {
    EXPECT_EQ(type(line, "163=2", "104"), 9U);
    EXPECT_EQ(type(line, "163", "0"), 9U);
  }
  EXPECT_EQ(type(terrestrial("578"), "0", "104"), 3U);
  EXPECT_EQ(type(cable("306"), "0", "104"), 4U);
  EXPECT_EQ(type({}, "0", "104"), 5U);
  EXPECT_EQ(type(terrestrial("578"), "0", "0"), 6U);
  EXPECT_EQ(type(cable("306"), "0", "0"), 7U);
  EXPECT_EQ(type({}, "0", "0;0"), 8U);
  EXPECT_EQ(type({}, "0", "0;106"), 5U);
}

TEST(Vdr, TakesVideoPidsThatNoStreamCanHaveForNone) {
  const auto type = [](const std::string& video) {
    return number(vdr({.video = video}), TCServiceData::CHANNEL_TYPE).value_or(0);
  };
  EXPECT_EQ(type("1"), 5U);
  EXPECT_EQ(type("8191"), 5U);
  EXPECT_EQ(type("2"), 9U);
  EXPECT_EQ(type("8190"), 9U);
}

TEST(Vdr, ReadsAVideoPidWithAClockPidAndAType) {
  const auto type = [](const std::string& video) {
    return number(vdr({.video = video}), TCServiceData::CHANNEL_TYPE).value_or(0);
  };
  EXPECT_EQ(type("164+17=27"), 9U);
  EXPECT_EQ(type("164+17"), 9U);
  EXPECT_EQ(type("0+17=2"), 5U);
}

TEST(Vdr, ReadsAudioPidsWithLanguagesAndTypes) {
  const Service service = vdr({.audio = "5102=deu@3,5103=mis@4,5104=fra@17,5105=@15;5106=deu@106,5107=eng@122"});
  const std::vector<AudioTrack> expected{
      audio(5102, language("deu"), virtualtv::CODING_MPEG), audio(5103, language("mis"), virtualtv::CODING_MPEG),
      audio(5104, language("fra"), virtualtv::CODING_AAC),  audio(5105, 0, virtualtv::CODING_AAC),
      audio(5106, language("deu"), virtualtv::CODING_AC3),  audio(5107, language("eng"), virtualtv::CODING_EAC3),
  };
  EXPECT_EQ(service.audio, expected);
}

TEST(Vdr, ReadsTheAudioTypesOfAmericanListsAndLeavesOthersUnknown) {
  const Service service = vdr({.audio = "20@129,21@135,22@123"});
  ASSERT_EQ(service.audio.size(), 3U);
  EXPECT_EQ(service.audio[0].decodeType, virtualtv::CODING_AC3);
  EXPECT_EQ(service.audio[1].decodeType, virtualtv::CODING_EAC3);
  EXPECT_EQ(service.audio[2].decodeType, virtualtv::CODING_UNKNOWN);
}

TEST(Vdr, TakesUntypedAudioForMpegAndBehindTheSemicolonForAc3) {
  const std::vector<AudioTrack> expected{audio(104, 0, virtualtv::CODING_MPEG),
                                         audio(105, language("eng"), virtualtv::CODING_MPEG),
                                         audio(106, 0, virtualtv::CODING_AC3)};
  EXPECT_EQ(vdr({.audio = "104,105=eng;106"}).audio, expected);
}

TEST(Vdr, MakesATrackOfEachLanguageOfABilingualStream) {
  const std::vector<AudioTrack> expected{audio(104, language("deu"), virtualtv::CODING_MPEG),
                                         audio(104, language("eng"), virtualtv::CODING_MPEG)};
  EXPECT_EQ(vdr({.audio = "104=deu+eng@4"}).audio, expected);
}

TEST(Vdr, WritesLanguagesInLowerCaseAndLeavesOddOnesUnknown) {
  const Service service = vdr({.audio = "10=DEU,11=de,12=d3u,13=deut"});
  ASSERT_EQ(service.audio.size(), 4U);
  EXPECT_EQ(service.audio[0].lang, language("deu"));
  for (std::size_t at = 1; at < 4; ++at) EXPECT_EQ(service.audio[at].lang, 0) << at;
}

TEST(Vdr, CountsNoAudioTracksForPidZeroAndEmptyPieces) {
  EXPECT_TRUE(vdr({.audio = "0"}).audio.empty());
  EXPECT_TRUE(vdr({.audio = ""}).audio.empty());
  const std::vector<AudioTrack> expected{audio(259, language("deu"), virtualtv::CODING_AC3)};
  EXPECT_EQ(vdr({.audio = "0;259=deu@106,"}).audio, expected);
}

TEST(Vdr, TakesTheSubtitlesBehindTheTeletextPid) {
  const std::vector<SubtitleTrack> expected{subtitle(5115, language("deu")), subtitle(5118, language("fra")),
                                            subtitle(5119, 0)};
  EXPECT_EQ(vdr({.teletext = "5114;5115=deu,5118=fra,5119"}).subtitles, expected);
  EXPECT_EQ(vdr({.teletext = "0;5115=deu,5118=fra,5119"}).subtitles, expected);
}

TEST(Vdr, MakesNoSubtitleTrackOfTeletextAlone) {
  EXPECT_TRUE(vdr({.teletext = "105"}).subtitles.empty());
  EXPECT_TRUE(vdr({.teletext = "0"}).subtitles.empty());
  EXPECT_TRUE(vdr({.teletext = ""}).subtitles.empty());
}

TEST(Vdr, LocksNoServiceForItsConditionalAccess) {
  const Service service = vdr({.conditionalAccess = "98C,9c4,9AF, 98D,1"});
  EXPECT_EQ(number(service, TCServiceData::LOCK), 0U);
}

TEST(Vdr, PutsServicesIntoTheGroupAboveThem) {
  const std::string line = VdrLine{}.text();
  const auto result = readVdr(line + ":First\n" + line + line + "  :Second| group \n" + line + ":\n" + line);
  ASSERT_EQ(result.services.size(), 5U);
  EXPECT_EQ(result.services[0].group, "");
  EXPECT_EQ(result.services[1].group, "First");
  EXPECT_EQ(result.services[2].group, "First");
  EXPECT_EQ(result.services[3].group, "Second: group");
  EXPECT_EQ(result.services[4].group, "");
  EXPECT_EQ(result.problems.count(), 0U);
}

TEST(Vdr, WritesGroupsAsUtf8WhateverTheirEncoding) {
  EXPECT_EQ(only(readVdr(":\xD6sterreich\n" + VdrLine{}.text())).group, "Österreich");
}

TEST(Vdr, NumbersServicesFromOne) {
  const std::string line = VdrLine{}.text();
  const auto result = readVdr(line + ":Group\n" + line + "broken\n" + line);
  EXPECT_EQ(column(result, TCServiceData::MAJOR), (Numbers{1, 2, 3}));
  EXPECT_EQ(column(result, TCServiceData::MINOR), (Numbers{0, 0, 0}));
}

TEST(Vdr, GoesOnFromTheNumberOfAGroup) {
  const std::string line = VdrLine{}.text();
  const auto result = readVdr(line + ":@20 Films\n" + line + line + ":@100\n:Sport\n" + line + ":@101\tNext\n" + line);
  EXPECT_EQ(column(result, TCServiceData::MAJOR), (Numbers{1, 20, 21, 100, 101}));
  EXPECT_EQ(result.services[1].group, "Films");
  EXPECT_EQ(result.services[3].group, "Sport");
  EXPECT_EQ(result.services[4].group, "Next");
  EXPECT_EQ(result.problems.count(), 0U);
}

TEST(Vdr, NumbersOnAndRemarksThatAGroupNumberIsNoneThatIsLeft) {
  const std::string line = VdrLine{}.text();
  const auto result = readVdr(line + line + ":@2 Films\n" + line);
  EXPECT_EQ(column(result, TCServiceData::MAJOR), (Numbers{1, 2, 3}));
  EXPECT_EQ(result.services[2].group, "Films");
  EXPECT_EQ(problems(result),
            (std::vector<std::string>{"3: channel number \"2\" is less than 3; its services start at 3"}));
  EXPECT_EQ(result.problems.unread(), 0U) << "the group is read";
}

TEST(Vdr, ReadsAServiceWithoutANameThoughItsLineStartsAsAGroupDoes) {
  VdrLine nameless;
  nameless.name = "";
  const auto result = readVdr(":News\n" + nameless.text() + "  " + nameless.text() + VdrLine{}.text());
  ASSERT_EQ(result.services.size(), 3U);
  EXPECT_EQ(result.problems.count(), 0U);
  for (const auto& service : result.services) EXPECT_EQ(service.group, "News");
  EXPECT_EQ(name(result.services[0]), u"Service 12003");
  EXPECT_EQ(name(result.services[1]), u"Service 12003");
  EXPECT_EQ(column(result, TCServiceData::MAJOR), (Numbers{1, 2, 3}));
}

TEST(Vdr, TakesColonsInAGroupForItsName) {
  for (const std::string group : {"24:7", "12187:HC34", ":::::::::::::", "a:1:b:c:d:e:f:g:h:i:j:k", "a|b", "x @12"}) {
    const auto result = readVdr(":" + group + "\n" + VdrLine{}.text());
    ASSERT_EQ(result.services.size(), 1U) << group;
    EXPECT_EQ(result.services[0].group, group == "a|b" ? "a:b" : group);
    EXPECT_EQ(result.problems.count(), 0U) << group;
  }
}

TEST(Vdr, LeavesServicesBeyondTheLastChannelNumberWithoutOne) {
  const std::string line = VdrLine{}.text();
  const auto result = readVdr(":@65534\n" + line + line);
  ASSERT_EQ(result.services.size(), 2U);
  EXPECT_EQ(number(result.services[0], TCServiceData::MAJOR), 65534U);
  EXPECT_EQ(number(result.services[1], TCServiceData::MAJOR), std::nullopt);
  EXPECT_EQ(number(result.services[1], TCServiceData::MINOR), std::nullopt);
}

TEST(Vdr, ImportsAHundredThousandServices) {
  std::string list;
  for (int at = 0; at < 100'000; ++at) {
    VdrLine line;
    line.name = "Service " + std::to_string(at);
    line.frequency = std::to_string(11000 + at / 100);
    line.stream = std::to_string(at / 100);
    line.service = std::to_string(at % 100);
    list += line.text();
  }
  const auto result = readVdr(list);
  EXPECT_EQ(result.services.size(), 100'000U);
  EXPECT_EQ(result.problems.count(), 0U);
  EXPECT_EQ(name(result.services.back()), u"Service 99999");
  EXPECT_EQ(number(result.services.back(), TCServiceData::PTC), 1000U);
}

}  // namespace
}  // namespace import_tests

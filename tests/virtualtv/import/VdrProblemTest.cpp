// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "virtualtv/import/Lists.h"

namespace import_tests {
namespace {

using Lines = std::vector<std::string>;

TEST(VdrProblem, NamesTheLineAndImportsTheRest) {
  VdrLine bad;
  bad.service = "65536";
  const auto result = readVdr("# list\n" + VdrLine{}.text() + "\n:Group\n" + bad.text() + VdrLine{}.text() + "x\n");
  EXPECT_EQ(result.services.size(), 2U);
  EXPECT_EQ(result.services.back().group, "Group");
  EXPECT_EQ(problems(result),
            (Lines{"5: service id \"65536\" is greater than 65535", "7: \"x\" has 1 of the 13 fields of a service"}));
}

TEST(VdrProblem, CountsTheFields) {
  EXPECT_EQ(problems(readVdr("News:12187:h:S19.2E:27500:163:104:105:0\n")),
            (Lines{"1: \"News:12187:h:S19.2E:27500:163:104:105:0\" has 9 of the 13 fields of a service"}));
  EXPECT_EQ(problems(readVdr("A:" + VdrLine{}.text())),
            (Lines{"1: \"A:News:12187:HC34M2S0:S19.2E:27500:163=2\"... has more than the 13 fields of a service; a "
                   "colon in a name is written as |"}));
}

TEST(VdrProblem, FindsFrequenciesThatAreNone) {
  EXPECT_EQ(reason({.frequency = "12x87"}), "frequency \"12x87\" is not a decimal number");
  EXPECT_EQ(reason({.frequency = ""}), "frequency is missing");
  EXPECT_EQ(reason({.frequency = "-12187"}), "frequency \"-12187\" is negative");
  EXPECT_EQ(reason({.frequency = "+12187"}), "frequency \"+12187\" is not a decimal number");
  EXPECT_EQ(reason({.frequency = "99999999999999999999"}),
            "frequency \"99999999999999999999\" is greater than 999999999999");
  EXPECT_EQ(reason({.frequency = "12187500"}), "frequency \"12187500\" is not that of a satellite, 2000 to 50000 MHz");
  EXPECT_EQ(reason({.frequency = "0"}), "frequency \"0\" is not that of a satellite, 2000 to 50000 MHz");
  EXPECT_EQ(reason(terrestrial("0")), "frequency \"0\" is not within 30 to 1500 MHz, be it in MHz, kHz or Hz");
  EXPECT_EQ(reason(terrestrial("29")), "frequency \"29\" is not within 30 to 1500 MHz, be it in MHz, kHz or Hz");
  EXPECT_EQ(reason(terrestrial("1501")), "frequency \"1501\" is not within 30 to 1500 MHz, be it in MHz, kHz or Hz");
  EXPECT_EQ(reason(cable("1500000001")),
            "frequency \"1500000001\" is not within 30 to 1500 MHz, be it in MHz, kHz or Hz");
}

TEST(VdrProblem, FindsSourcesThatAreNone) {
  for (const std::string source : {"", "s19.2E", "S", "S19.2", "S19.22E", "S.2E", "S19.E", "S180.1E", "S1920E",
                                   "S19.2N", "Sx", "1", "Terra", "T\x01"}) {
    EXPECT_EQ(reason({.source = source}).find("source \""), 0U) << source;
  }
  EXPECT_EQ(reason({.source = "S180.1E"}), "source \"S180.1E\" is not known");
}

TEST(VdrProblem, FindsParametersThatAreNone) {
  EXPECT_EQ(reason({.parameters = "H M2"}), "parameters \"H M2\" are not letters with numbers");
  EXPECT_EQ(reason({.parameters = "H12"}), "parameters \"H12\" are not letters with numbers");
  EXPECT_EQ(reason({.parameters = "12"}), "parameters \"12\" are not letters with numbers");
  EXPECT_EQ(reason({.parameters = "HM"}), "parameter M is missing");
  EXPECT_EQ(reason({.parameters = "HM2S2"}), "system generation \"S2\" is not known");
  EXPECT_EQ(reason({.parameters = "HM3"}), "modulation \"M3\" is not known");
  EXPECT_EQ(reason({.parameters = "HM1234567890"}), "parameter M \"1234567890\" is greater than 999999999");
  EXPECT_EQ(reason(terrestrial("578", "B11")), "bandwidth \"B11\" is not known");
}

TEST(VdrProblem, FindsSymbolRatesThatAreNone) {
  EXPECT_EQ(reason({.symbolRate = "27500000"}), "symbol rate \"27500000\" is greater than 100000");
  EXPECT_EQ(reason({.symbolRate = ""}), "symbol rate is missing");
}

TEST(VdrProblem, FindsPidsThatAreNone) {
  EXPECT_EQ(reason({.video = "8192"}), "video PID \"8192\" is greater than 8191");
  EXPECT_EQ(reason({.video = ""}), "video PID is missing");
  EXPECT_EQ(reason({.audio = "104=deu@3,70000"}), "audio PID \"70000\" is greater than 8191");
  EXPECT_EQ(reason({.audio = "104=deu@3;-1"}), "audio PID \"-1\" is negative");
  EXPECT_EQ(reason({.audio = "104=deu@256"}), "audio type \"256\" is greater than 255");
  EXPECT_EQ(reason({.audio = "104@"}), "audio type is missing");
  EXPECT_EQ(reason({.teletext = "105;x=deu"}), "subtitle PID \"x\" is not a decimal number");
}

TEST(VdrProblem, FindsIdsOutOfRange) {
  EXPECT_EQ(reason({.service = "65536"}), "service id \"65536\" is greater than 65535");
  EXPECT_EQ(reason({.service = "-1"}), "service id \"-1\" is negative");
  EXPECT_EQ(reason({.service = ""}), "service id is missing");
  EXPECT_EQ(reason({.network = "70000"}), "network id \"70000\" is greater than 65535");
  EXPECT_EQ(reason({.stream = "0x10"}), "transport stream id \"0x10\" is not a decimal number");
  EXPECT_EQ(number(vdr({.service = "65535", .network = "65535", .stream = "65535"}), TCServiceData::PROGRAM_NUMBER),
            65535U);
}

TEST(VdrProblem, DoesNotLookAtWhatTheSetHasNoUseFor) {
  const virtualtv::Service plain = told(vdr({}));
  for (const char* odd : {"", "8192", "70000", "x", "-1", "10000", "98C,xyz", "4294967296", "\xFF"}) {
    EXPECT_EQ(told(vdr({.teletext = odd})), plain) << odd;
    EXPECT_EQ(told(vdr({.conditionalAccess = odd})), plain) << odd;
    EXPECT_EQ(told(vdr({.radio = odd})), plain) << odd;
    EXPECT_EQ(told(vdr({.video = std::string("163=") + odd})), plain) << odd;
    EXPECT_EQ(told(vdr({.video = std::string("163+") + odd + "=2"})), plain) << odd;
    VdrLine line = terrestrial("578");
    line.symbolRate = odd;
    EXPECT_EQ(told(vdr(line)), told(vdr(terrestrial("578")))) << odd;
  }
  EXPECT_EQ(told(vdr({.teletext = "x;107=eng"})), told(vdr({.teletext = "105;107=eng"})));
  for (const char* odd : {"HC34M2S0B11", "HC1234567890M2S0", "HCM2S0", "HM2S0X"}) {
    EXPECT_EQ(told(vdr({.parameters = odd})), plain) << odd;
  }
  EXPECT_EQ(told(vdr(terrestrial("578", "B8M64S9H7"))), told(vdr(terrestrial("578"))));
  VdrLine input{.frequency = "x", .parameters = "?", .source = "I", .symbolRate = "x"};
  EXPECT_EQ(number(vdr(input), TCServiceData::FREQUENCY), std::nullopt);
}

TEST(VdrProblem, RemarksThatAGroupNumberIsOutOfRangeAndKeepsTheGroup) {
  const auto result = readVdr(":@65535 Films\n:@99999999999999999999 Sport\n" + VdrLine{}.text());
  EXPECT_EQ(problems(result),
            (Lines{"1: channel number \"65535\" is greater than 65534; its services start at 1",
                   "2: channel number \"99999999999999999999\" is greater than 65534; its services start at 1"}));
  EXPECT_EQ(result.problems.unread(), 0U);
  ASSERT_EQ(result.services.size(), 1U);
  EXPECT_EQ(result.services[0].group, "Sport");
  EXPECT_EQ(number(result.services[0], TCServiceData::MAJOR), 1U);
}

TEST(VdrProblem, IsAnAtSignOfAGroupWithoutANumber) {
  const std::string line = VdrLine{}.text();
  const std::string lines = ":First\n" + line + ":@12abc\n" + line + ":@home\n:@\n:@ 12\n:@-5 Films\n" + line;
  const auto result = readVdr(lines);
  EXPECT_EQ(problems(result),
            (Lines{"3: channel number \"12abc\" is not a decimal number",
                   "5: channel number \"home\" is not a decimal number", "6: channel number is missing",
                   "7: channel number is missing", "8: channel number \"-5\" is negative"}));
  EXPECT_EQ(result.problems.unread(), 5U);
  ASSERT_EQ(result.services.size(), 3U);
  for (const auto& service : result.services) EXPECT_EQ(service.group, "First");
  EXPECT_EQ(column(result, TCServiceData::MAJOR), (std::vector<std::uint64_t>{1, 2, 3}));
}

TEST(VdrProblem, IsAServiceWithoutANameThatCantBeReadAndNoGroup) {
  VdrLine bad{.name = "", .source = "Q?"};
  const auto result =
      readVdr(":News\n" + bad.text() + ":12187:h:S19.2E:27500:163:104:105:0:1:1:1:0:7\n" + VdrLine{}.text());
  EXPECT_EQ(
      problems(result),
      (Lines{"2: source \"Q?\" is not known",
             "3: \":12187:h:S19.2E:27500:163:104:105:0:1:1:\"... has more than the 13 fields of a service; a colon "
             "in a name is written as |"}));
  ASSERT_EQ(result.services.size(), 1U);
  EXPECT_EQ(result.services[0].group, "News");
}

TEST(VdrProblem, SaysOfAGroupBehindTheLastNumberThatItsServicesHaveNone) {
  const std::string line = VdrLine{}.text();
  const auto result = readVdr(":@65534 Last\n" + line + ":@5 Back\n" + line + ":@65535 Beyond\n" + line);
  EXPECT_EQ(problems(result),
            (Lines{"3: channel number \"5\" is less than 65535; its services have no number",
                   "5: channel number \"65535\" is greater than 65534; its services have no number"}));
  EXPECT_EQ(result.problems.unread(), 0U);
  ASSERT_EQ(result.services.size(), 3U);
  EXPECT_EQ(result.services[1].group, "Back");
  EXPECT_EQ(number(result.services[1], TCServiceData::MAJOR), std::nullopt);
  EXPECT_EQ(number(result.services[2], TCServiceData::MAJOR), std::nullopt);
}

TEST(VdrProblem, SaysOfAGroupNumberWhyItIsNoneThatIsLeft) {
  const std::string line = VdrLine{}.text();
  const auto result = readVdr(":@0 Zero\n" + line + ":@100\n" + line + ":@50 Never given\n" + line);
  EXPECT_EQ(problems(result), (Lines{"1: channel number \"0\" is less than 1; its services start at 1",
                                     "5: channel number \"50\" is less than 101; its services start at 101"}));
  EXPECT_EQ(column(result, TCServiceData::MAJOR), (std::vector<std::uint64_t>{1, 100, 101}));
}

TEST(VdrProblem, IsKeptAHundredTimesAndCountedOn) {
  std::string list = VdrLine{}.text() + ":@1 Taken\n";
  for (int line = 0; line < 1000; ++line) list += "broken\n";
  const auto result = readVdr(list);
  EXPECT_EQ(result.services.size(), 1U);
  EXPECT_EQ(result.problems.kept().size(), 100U);
  EXPECT_EQ(result.problems.kept().back().line, 101);
  EXPECT_EQ(result.problems.count(), 1001U);
  EXPECT_EQ(result.problems.unread(), 1000U);
}

TEST(VdrProblem, QuotesWithControlBytesEscapedAndShortened) {
  EXPECT_EQ(reason({.frequency = std::string("1\0\x1B[31m\\\xFF", 9)}),
            "frequency \"1\\x00\\x1B[31m\\\\xFF\" is not a decimal number");
  EXPECT_EQ(reason({.frequency = std::string(41, 'x')}),
            "frequency \"" + std::string(40, 'x') + "\"... is not a decimal number");
  EXPECT_EQ(reason({.frequency = std::string(40, 'x')}),
            "frequency \"" + std::string(40, 'x') + "\" is not a decimal number");
}

TEST(VdrProblem, DoesNotCutAQuotedCharacterInTwo) {
  EXPECT_EQ(reason({.frequency = std::string(39, 'x') + "ä"}),
            "frequency \"" + std::string(39, 'x') + "\"... is not a decimal number");
}

}  // namespace
}  // namespace import_tests

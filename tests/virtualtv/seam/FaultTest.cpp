// SPDX-License-Identifier: MIT
// Which words make a fault, and what the errors for other words say.
#include <gtest/gtest.h>

#include "seam/Seam.h"

namespace virtualtv::seam {
namespace {

/// The error for the words, of which the first is the operation's name; empty when they make a fault.
std::string refusal(const std::vector<std::string>& words) {
  try {
    parseFault(words);
    return {};
  } catch (const std::invalid_argument& reason) {
    return reason.what();
  }
}

const std::string ofInt = "a number from -2147483648 to 2147483647";

TEST(FaultWords, ANumberBeyondItsOutputIsRefusedWithTheRange) {
  const std::string start = "'value' of vconf_get_int: " + ofInt + " is wanted, not '";
  for (const char* beyond : {"2147483648", "-2147483649", "99999999999", "18446744073709551617", "x", "", "1,2", "--1"})
    EXPECT_EQ(refusal({"vconf_get_int", std::string("out.value=") + beyond}), start + beyond + "'");
  for (const char* within : {"2147483647", "-2147483648", "0", "-1"})
    EXPECT_EQ(refusal({"vconf_get_int", std::string("out.value=") + within}), "");
}

TEST(FaultWords, EachOutputHasTheRangeOfItsType) {
  EXPECT_EQ(refusal({"ITunerControl::GetSignalStrength", "out.strength=256"}),
            "'strength' of ITunerControl::GetSignalStrength: a number from 0 to 255 is wanted, not '256'");
  EXPECT_EQ(refusal({"ISatellite::LookupTransponder", "out.result=-1"}),
            "'result' of ISatellite::LookupTransponder: a number from 0 to 65535 is wanted, not '-1'");
  EXPECT_EQ(refusal({"ServiceDataAux::GetAudioSize", "out.size=4294967296"}),
            "'size' of ServiceDataAux::GetAudioSize: a number from 0 to 4294967295 is wanted, not '4294967296'");
  EXPECT_EQ(
      refusal({"IServiceNavigation::GetPreviousServiceId", "out.serviceId=18446744073709551616"}),
      "'serviceId' of IServiceNavigation::GetPreviousServiceId: a number from 0 to 18446744073709551615 is wanted, "
      "not '18446744073709551616'");
  EXPECT_EQ(refusal({"ServiceDataAux::GetAudioSize", "out.size=4294967295"}), "");
  EXPECT_EQ(refusal({"IServiceNavigation::GetPreviousServiceId", "out.serviceId=18446744073709551615"}), "");
}

TEST(FaultWords, OfSeveralNumbersTheOneBeyondItsRangeIsNamed) {
  EXPECT_EQ(refusal({"ServiceDataAux::GetAudio", "out.audio=1,2,65536,4,5"}),
            "'audio' of ServiceDataAux::GetAudio: a number from 0 to 65535 is wanted, not '65536'");
  EXPECT_EQ(refusal({"ServiceDataAux::GetAudio", "out.audio=1,2,3,4,9999999999"}),
            "'audio' of ServiceDataAux::GetAudio: " + ofInt + " is wanted, not '9999999999'");
  EXPECT_EQ(refusal({"ServiceDataAux::GetAudio", "out.audio=1,2,3,4"}),
            "'audio' of ServiceDataAux::GetAudio: 5 numbers with commas between are wanted, not '1,2,3,4'");
  EXPECT_EQ(refusal({"ServiceDataAux::GetAudio", "out.audio=1,2,3,4,"}),
            "'audio' of ServiceDataAux::GetAudio: " + ofInt + " is wanted, not ''");
  EXPECT_EQ(refusal({"ServiceDataAux::GetAudio", "out.audio=-1,2,65535,-2147483648,5"}), "");
}

TEST(FaultWords, AGroupIsANumberFrom0To255WithOneOrZero) {
  for (const char* bad : {"{300=1}", "{256=1}", "{-1=1}", "{1=2}", "{1=-1}", "{1=1,99999999999=1}", "{1}", "1=1"}) {
    EXPECT_EQ(refusal({"IService::GetFavorites", std::string("out.favorites=") + bad}),
              "'favorites' of IService::GetFavorites: groups from 0 to 255 as in {1=1,12=0} are wanted, not '" +
                  std::string(bad) + "'");
  }
  EXPECT_EQ(refusal({"IService::GetFavorites", "out.favorites={0=1,255=0}"}), "");
}

TEST(FaultWords, ANumberBeyondItsFieldIsRefusedWithTheRange) {
  const std::string ofId =
      "field 12 (SERVICE_ID) takes a number from 1 to 18446744073709551615 (0 stands for no service)";
  const std::string place = "'service' of IService::FindService: ";
  const std::vector<std::pair<std::string, std::string>> bad{
      {"{13=70000}", "field 13 (MAJOR) takes a number from 0 to 65535, not '70000'"},
      {"{13=-1}", "field 13 (MAJOR) takes a number from 0 to 65535, not '-1'"},
      {"{12=5,4=2147483648}", "field 4 (FREQUENCY) takes " + ofInt + ", not '2147483648'"},
      {"{12=-1}", ofId + ", not '-1'"},
      {"{12=0}", ofId + ", not '0'"},
      {"{12=18446744073709551616}", ofId + ", not '18446744073709551616'"},
      {"{200=9223372036854775808}",
       "field 200 takes a number from -9223372036854775808 to 9223372036854775807 or a text between double quotes, "
       "not '9223372036854775808'"},
      {"{99999999999=1}", "a field has a number from 0 to 2147483647, not '99999999999'"},
      {"{12=5,2147483648=1}", "a field has a number from 0 to 2147483647, not '2147483648'"},
      {"{-1=1}", "a field has a number from 0 to 2147483647, not '-1'"},
      {"{=1}", "a record as in {12=281,16=\"News\"} is wanted, not '{=1}'"},
  };
  for (const auto& [record, reason] : bad) {
    EXPECT_EQ(refusal({"IService::FindService", "out.service=" + record}), place + reason);
  }
  EXPECT_EQ(refusal({"IService::FindService",
                     "out.service={13=65535,4=-2147483648,12=18446744073709551615,"
                     "200=-9223372036854775808}"}),
            "");
}

TEST(FaultWords, EachRecordOfAListIsHeldAgainstTheFields) {
  EXPECT_EQ(refusal({"IServiceNavigation::GetServiceList", "out.services=[{13=1},null,{13=65536}]"}),
            "'services' of IServiceNavigation::GetServiceList: field 13 (MAJOR) takes a number from 0 to 65535, not "
            "'65536'");
  EXPECT_EQ(refusal({"IServiceNavigation::GetServiceList", "out.services={13=1}"}),
            "'services' of IServiceNavigation::GetServiceList: records as in [{12=281},null] are wanted, not '{13=1}'");
}

TEST(FaultWords, AFieldOfAnotherKindIsRefusedWithWhatItTakes) {
  const std::string place = "'service' of IService::FindService: ";
  const std::string any = "a number from -9223372036854775808 to 9223372036854775807";
  const std::vector<std::pair<std::string, std::string>> bad{
      {"{13=\"7\"}", "field 13 (MAJOR) takes a number from 0 to 65535, not a text"},
      {"{16=\"News\",4=\"\"}", "field 4 (FREQUENCY) takes " + ofInt + ", not a text"},
      {"{1003=\"wide\"}", "field 1003 (picture_width) takes " + any + ", not a text"},
      {"{16=7}", "field 16 (CHANNEL_NAME) takes a text between double quotes, not '7'"},
      {"{13=x}", "field 13 (MAJOR) takes a number from 0 to 65535, not 'x'"},
      {"{13=}", "field 13 (MAJOR) takes a number from 0 to 65535, not ''"},
      {"{13=7x,14=1}", "field 13 (MAJOR) takes a number from 0 to 65535, not '7x'"},
      {"{16=News}", "field 16 (CHANNEL_NAME) takes a text between double quotes, not 'News'"},
      {"{200=x}", "field 200 takes " + any + " or a text between double quotes, not 'x'"},
      {"{12=281,110=-1}", "field 110 (SERVICE_FIELD_110) takes a text between double quotes, not '-1'"},
  };
  for (const auto& [record, reason] : bad) {
    EXPECT_EQ(refusal({"IService::FindService", "out.service=" + record}), place + reason);
    EXPECT_EQ(refusal({"IServiceNavigation::GetServiceList", "out.services=[{12=5}," + record + "]"}),
              "'services' of IServiceNavigation::GetServiceList: " + reason);
  }
  EXPECT_EQ(refusal({"IService::FindService", "out.service={16=\"7\",110=\"\",200=7,201=\"x\"}"}), "");
}

TEST(FaultWords, AFieldOrGroupThatStandsTwiceIsRefusedByName) {
  EXPECT_EQ(refusal({"IService::FindService", "out.service={13=1,16=\"News\",13=1}"}),
            "'service' of IService::FindService: field 13 (MAJOR) stands there already");
  EXPECT_EQ(refusal({"IService::FindService", "out.service={200=1,200=\"x\"}"}),
            "'service' of IService::FindService: field 200 stands there already");
  EXPECT_EQ(refusal({"IServiceNavigation::GetServiceList", "out.services=[{13=1},{16=\"a\",16=\"b\"}]"}),
            "'services' of IServiceNavigation::GetServiceList: field 16 (CHANNEL_NAME) stands there already");
  EXPECT_EQ(refusal({"IServiceNavigation::GetServiceList", "out.services=[{13=1},{13=1}]"}), "");
  EXPECT_EQ(refusal({"IService::GetFavorites", "out.favorites={1=1,12=0,1=0}"}),
            "'favorites' of IService::GetFavorites: group 1 stands there already");
}

TEST(FaultWords, AnOptionThatStandsTwiceIsRefused) {
  const std::vector<std::pair<std::string, std::string>> twice{
      {"result=0", "result=1"},      {"nth=2", "nth=2"},
      {"times=1", "times=always"},   {"always", "times=2"},
      {"window=main", "window=pip"}, {"engine=main", "engine=other"},
      {"out.x=1", "out.x=2"},        {"always", "always"}};
  for (const auto& [first, second] : twice) {
    EXPECT_EQ(refusal({"IVideoControl::GetSize", first, "out.y=5", second}),
              "'" + second + "': '" + first + "' stands there already");
  }
  EXPECT_EQ(refusal({"IVideoControl::GetSize", "out.x=1", "out.y=1", "nth=1", "times=1", "result=1"}), "");
}

TEST(FaultWords, ACountIsANumberFromOneOn) {
  const std::string range = "': a number from 1 to 18446744073709551615";
  for (const std::string bad : {"0", "-1", "x", "", "18446744073709551616"}) {
    EXPECT_EQ(refusal({"vconf_set_int", "result=0", "nth=" + bad}), "'nth" + range + " is wanted, not '" + bad + "'");
    EXPECT_EQ(refusal({"vconf_set_int", "result=0", "times=" + bad}),
              "'times" + range + " or always is wanted, not '" + bad + "'");
  }
}

TEST(FaultWords, AnAnswerBeyondItsTypeIsRefusedWithTheRange) {
  for (const char* bad : {"99999999999", "2147483648", "x", ""}) {
    EXPECT_EQ(refusal({"vconf_set_int", std::string("result=") + bad}),
              "vconf_set_int can't answer '" + std::string(bad) + "'; " + ofInt + " is wanted");
  }
  EXPECT_EQ(refusal({"CD2tvMgrProxy::GetInstance", "result=1"}), "CD2tvMgrProxy::GetInstance can't answer '1'");
  EXPECT_EQ(refusal({"vconf_set_int", "result=-2147483648"}), "");
}

}  // namespace
}  // namespace virtualtv::seam

// Which words make a fault, and what is said of others.
#include <gtest/gtest.h>

#include "seam/Seam.h"

namespace virtualtv::seam {
namespace {

/// What is said of the words, the operation's name first; empty when they make a fault.
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
  const std::string place = "'service' of IService::FindService: ";
  const std::vector<std::pair<std::string, std::string>> bad{
      {"{13=70000}", "field 13 (MAJOR) takes a number from 0 to 65535, not '70000'"},
      {"{13=-1}", "field 13 (MAJOR) takes a number from 0 to 65535, not '-1'"},
      {"{12=5,4=2147483648}", "field 4 (FREQUENCY) takes " + ofInt + ", not '2147483648'"},
      {"{12=-1}", "field 12 (SERVICE_ID) takes a number from 0 to 18446744073709551615, not '-1'"},
      {"{12=18446744073709551616}",
       "field 12 (SERVICE_ID) takes a number from 0 to 18446744073709551615, not '18446744073709551616'"},
      {"{200=9223372036854775808}",
       "field 200 takes a number from -9223372036854775808 to 9223372036854775807, not '9223372036854775808'"},
      {"{99999999999=1}", "a record as in {12=281,16=\"News\"} is wanted, not '{99999999999=1}'"},
      {"{-1=1}", "a record as in {12=281,16=\"News\"} is wanted, not '{-1=1}'"},
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

TEST(FaultWords, ARecordMayHaveATextForANumberAndTheOtherWayRound) {
  EXPECT_EQ(refusal({"IService::FindService", "out.service={13=\"no number\",16=7}"}), "");
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

// SPDX-License-Identifier: MIT
// Switching to a source and to the first of its services with a major number.
#include <climits>

#include "Switching.h"

namespace switching {

namespace {

/// The log lines of a switch to the TV source, from after the request up to the search.
Lines searched(int major) {
  return join({other(0), translated(0, 0, major)});
}
std::string notFound(int major) {
  return "0 GetServiceList did not find any services for nMajor=" + std::to_string(major);
}

TEST_F(SwitchTest, ANegativeMajorNumberMeansTheSourceAlone) {
  for (const int major : {-1, INT_MIN}) {
    restart();
    EXPECT_TRUE(set(0, major));
    EXPECT_EQ(callsOf("::SetSource"), Lines{switchTo(0)});
  }
}

TEST_F(SwitchTest, AMajorNumberWithoutAServiceWritesNothing) {
  for (const int major : {0, 70, INT_MAX}) {
    restart();
    EXPECT_FALSE(set(0, major));
    EXPECT_EQ(callsOf("::SetSource"), Lines());
    EXPECT_EQ(logs(), join({asked(0, major), searched(major), {notFound(major)}}));
    EXPECT_EQ(keys(), startKeys);
  }
}

TEST_F(SwitchTest, ASearchThatFailsOrFindsNothingIsNoServiceWhateverElseItSays) {
  const std::string call = "IServiceNavigation::GetServiceList ";
  std::vector<Failure> failures{
      {call + "result=throw", {caught("t_SetSource", "IServiceNavigation::GetServiceList"), notFound(8)}}};
  for (const std::string way : {"result=0 out.services=[{12=281},{12=282}]", "result=-7 out.services=[{12=281}]",
                                "result=1 out.services=[]", "result=1 out.services=[null,null]", "result=unwritten"}) {
    failures.push_back({call + way, {notFound(8)}});
  }
  for (const std::string list :
       {"[{}]", "[{13=8},{13=8}]", "[null,{},null]", "[{12=18446744073709551615},{},{12=18446744073709551615}]"}) {
    failures.push_back({call + "out.services=" + list, {"0 Could not extract valid service ID"}});
  }
  expectFailures(0, 8, searched(8), failures);
}

TEST_F(SwitchTest, TheFirstServiceThatHasAnIdIsTaken) {
  const std::map<std::string, std::string> lists{
      {"[{12=283},{12=282}]", "283"},
      {"[{13=8},{12=282},{12=283}]", "282"},
      {"[{},{12=18446744073709551615},{12=282},{12=281}]", "282"},
      {"[{12=0},{12=282}]", "0"},
      {"[null,{},null,{12=283},null]", "283"},
      {"[{12=18446744073709551614},{12=282}]", "18446744073709551614"},
  };
  for (const auto& [list, id] : lists) {
    for (const int major : {0, 8}) {
      SCOPED_TRACE(list);
      restart();
      fault("IServiceNavigation::GetServiceList result=1 out.services=" + list);
      fault("ISourceControl::SetSource result=1");
      EXPECT_TRUE(set(0, major));
      EXPECT_EQ(logs(), join({asked(0, major), searched(major), {"3 Target service: " + id}, recorded(0, 20)}));
      EXPECT_EQ(callsOf("::SetSource"), Lines{switchTo(0, id) + " [fault]"});
    }
  }
}

TEST_F(SwitchTest, AServiceThatTheTvServiceRefusesWritesNothing) {
  const std::string failed = "0 SetSource failed eTVSSource= 0";
  expectFailures(
      0, 8, join({searched(8), {"3 Target service: 282"}}),
      {{"ISourceControl::SetSource result=0", {failed}},
       {"ISourceControl::SetSource result=-1", {failed}},
       {"ISourceControl::SetSource result=throw", {caught("t_SetSource", "ISourceControl::SetSource"), failed}}});
}

TEST_F(SwitchTest, TheMajorNumberIsSearchedForOnAnySourceOfTheTvService) {
  EXPECT_TRUE(set(31, 7));
  EXPECT_EQ(callsOf("::SetSource"), Lines{switchTo(13, "281")});
}

TEST_F(SwitchTest, WithoutNavigationNoServiceIsFoundAndNoneIsMade) {
  worker.svc_navi_proxy = nullptr;
  EXPECT_FALSE(set(0, 8));
  EXPECT_EQ(logs(), join({asked(0, 8), searched(8), {notFound(8)}}));
  EXPECT_TRUE(set(0)) << "the source alone needs none";
  EXPECT_EQ(worker.svc_navi_proxy, nullptr);
}

}  // namespace

}  // namespace switching

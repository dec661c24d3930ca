// Switching to a source and, of its services, to the first with a major number.
#include <climits>

#include "Switching.h"
#include "services/ServiceStore.h"

namespace switching {

namespace {

/// The log lines of a switch to the TV source as far as the search.
Lines searched(int major) {
  return join({asked(0, major), other(0), translated(0, 0, major)});
}

std::string notFound(int major) {
  return "0 GetServiceList did not find any services for nMajor=" + std::to_string(major);
}

TEST_F(SwitchTest, SwitchesToTheServiceWithTheMajorNumber) {
  EXPECT_TRUE(set(0, 8));
  EXPECT_EQ(calls(), join({askSource(), {askApp, search(8, "[{12=282}] -> 1"), switchTo(0, 282)}, record(0, 20)}));
  EXPECT_EQ(logs(), join({searched(8), {"3 Target service: 282"}, recorded(0, 20)}));
  EXPECT_EQ(keys(), (Lines{"0", "20", "0", "-", "test.widget:0"}));
  EXPECT_EQ(shown(), 0);
}

TEST_F(SwitchTest, ANegativeMajorNumberMeansTheSourceAlone) {
  for (const int major : {-1, -2, INT_MIN}) {
    restart();
    EXPECT_TRUE(set(0, major));
    EXPECT_EQ(calls(), join({askSource(), {askApp, switchTo(0)}, record(0, 20)}));
    EXPECT_EQ(logs(), join({asked(0, major), other(0), translated(0, 0, major), recorded(0, 20)}));
  }
}

TEST_F(SwitchTest, AMajorNumberOfZeroIsANumber) {
  ASSERT_TRUE(tv().setField(*tv().services().keyOf(282), TCServiceData::MAJOR, std::uint64_t{0}));
  EXPECT_TRUE(set(0, 0));
  EXPECT_EQ(calls(), join({askSource(), {askApp, search(0, "[{12=282}] -> 1"), switchTo(0, 282)}, record(0, 20)}));
  EXPECT_EQ(logs(), join({searched(0), {"3 Target service: 282"}, recorded(0, 20)}));
}

TEST_F(SwitchTest, NoServiceWithTheMajorNumberZeroIsNoServiceToo) {
  EXPECT_FALSE(set(0, 0));
  EXPECT_EQ(logs(), join({searched(0), {notFound(0)}}));
}

TEST_F(SwitchTest, AMajorNumberWithoutAServiceWritesNothing) {
  for (const int major : {70, INT_MAX}) {
    restart();
    EXPECT_FALSE(set(0, major));
    EXPECT_EQ(calls(), join({askSource(), {askApp, search(major, "[] -> 0")}}));
    EXPECT_EQ(logs(), join({searched(major), {notFound(major)}}));
    EXPECT_EQ(keys(), startKeys);
    EXPECT_EQ(shown(), 5);
  }
}

TEST_F(SwitchTest, ASearchThatFailsOrFindsNothingIsNoServiceWhateverElseItSays) {
  const std::vector<std::pair<std::string, Lines>> ways{
      {"result=0", {}},
      {"result=-1", {}},
      {"result=0 out.services=[{12=281},{12=282}]", {}},
      {"result=-7 out.services=[{12=281}]", {}},
      {"result=1 out.services=[]", {}},
      {"result=1 out.services=[null,null]", {}},
      {"result=unwritten", {}},
      {"result=throw", {caught("t_SetSource", "IServiceNavigation::GetServiceList")}},
  };
  for (const auto& [way, lines] : ways) {
    SCOPED_TRACE(way);
    restart();
    fault("IServiceNavigation::GetServiceList " + way);
    EXPECT_FALSE(set(0, 8));
    EXPECT_EQ(logs(), join({searched(8), lines, {notFound(8)}}));
    EXPECT_EQ(keys(), startKeys);
    EXPECT_EQ(shown(), 5);
  }
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
    SCOPED_TRACE(list);
    restart();
    fault("IServiceNavigation::GetServiceList out.services=" + list);
    fault("ISourceControl::SetSource result=1");
    EXPECT_TRUE(set(0, 8));
    EXPECT_EQ(logs(), join({searched(8), {"3 Target service: " + id}, recorded(0, 20)}));
    EXPECT_EQ(calls()[4], switchTo(0, std::stoull(id)) + " [fault]");
  }
}

TEST_F(SwitchTest, ServicesWithoutAnyIdCannotBeSwitchedTo) {
  for (const char* list : {"[{}]", "[{13=8},{13=8}]", "[{12=18446744073709551615}]",
                           "[{12=18446744073709551615},{},{12=18446744073709551615}]", "[null,{},null]"}) {
    SCOPED_TRACE(list);
    restart();
    fault(std::string("IServiceNavigation::GetServiceList out.services=") + list);
    EXPECT_FALSE(set(0, 8));
    EXPECT_EQ(logs(), join({searched(8), {"0 Could not extract valid service ID"}}));
    EXPECT_EQ(calls().size(), 4U) << "nothing is switched";
    EXPECT_EQ(keys(), startKeys);
  }
}

TEST_F(SwitchTest, AServiceThatTheTvServiceRefusesWritesNothing) {
  const std::string failed = "0 SetSource failed eTVSSource= 0";
  const std::map<std::string, Lines> ways{
      {"result=0", {failed}},
      {"result=-1", {failed}},
      {"result=throw", {caught("t_SetSource", "ISourceControl::SetSource"), failed}}};
  for (const auto& [way, lines] : ways) {
    SCOPED_TRACE(way);
    restart();
    fault("ISourceControl::SetSource " + way);
    EXPECT_FALSE(set(0, 8));
    EXPECT_EQ(logs(), join({searched(8), {"3 Target service: 282"}, lines}));
    EXPECT_EQ(keys(), startKeys);
    EXPECT_EQ(shown(), 5);
  }
}

TEST_F(SwitchTest, TheMajorNumberIsSearchedForOnAnySourceOfTheTvService) {
  EXPECT_TRUE(set(31, 7));
  EXPECT_EQ(calls(), join({askSource(), {askApp, search(7, "[{12=281}] -> 1"), switchTo(13, 281)}, record(31, 20)}));
}

TEST_F(SwitchTest, ASourceWithoutACounterpartIsRefusedBeforeTheSearch) {
  EXPECT_FALSE(set(1, 7));
  EXPECT_EQ(calls(), join({askSource(), {askApp}}));
}

TEST_F(SwitchTest, WithoutNavigationNoServiceIsFoundAndNoneIsMade) {
  worker.svc_navi_proxy = nullptr;
  EXPECT_FALSE(set(0, 8));
  EXPECT_EQ(calls(), join({askSource(), {askApp}}));
  EXPECT_EQ(logs(), join({searched(8), {notFound(8)}}));
  EXPECT_EQ(worker.svc_navi_proxy, nullptr);
}

TEST_F(SwitchTest, WithoutNavigationTheSourceAloneCanBeSwitched) {
  worker.svc_navi_proxy = nullptr;
  EXPECT_TRUE(set(0));
  EXPECT_EQ(shown(), 0);
}

}  // namespace

}  // namespace switching

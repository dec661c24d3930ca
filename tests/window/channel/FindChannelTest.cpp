// SPDX-License-Identifier: MIT
// The found-channel list: built by FindChannel, read by position.
#include <string>
#include <utility>
#include <vector>

#include "support/Channels.h"
#include "tvservice/TCServiceData.h"

namespace {

using channels::caught;
using channels::ChannelEngineTest;
using channels::ChannelTest;
using channels::head;
using channels::join;
using channels::withoutConditions;
using support::Lines;

constexpr auto all = PL_WINDOW_CHANNEL_TYPE_ALL;
constexpr auto television = static_cast<_PL_WINDOW_CHANNEL_TYPE>(2);
constexpr auto radio = static_cast<_PL_WINDOW_CHANNEL_TYPE>(3);
constexpr auto terrestrial = static_cast<_PL_WINDOW_TV_MODE>(1);
constexpr auto satelliteList = static_cast<_PL_WINDOW_TV_MODE>(9);

const Lines modeLogs{"3 CEmpConverterWindow :: t_GetDefaultServiceMode", "3 CEmpConverterWindow :: m_country : [ 3 ]",
                     "3 nTCTVMode.antennaMode = 0, nTCTVMode.serviceMode = 1 !"};
const Lines modeCalls{"system_info_get_value_int(key=0) value=0 -> 0",
                      "system_settings_get_value_int(key=0) value=3 -> 0"};
const std::string criteriaCall =
    "TCNavigationModeHelper::GetNavigationCriteria(navigation=0, mode=0,1, service=18446744073709551615) "
    "criteria=CRITERIA -> 1";
const std::string fetched = "fetch 12 16 41 15 18 1 2 6 37 4 13 14 110";

/// The line of each of the three services; its program number is cut to 8 bits.
const std::vector<std::string> serviceLogs{
    "3 SERVICE_ID = 281,FREQUENCY = 578000,PROGRAM_NUMBER= 44,CHANNEL_TYPE = 1,MAJOR = 7,MINOR = 0, "
    "TRANSPORT_STREAM_ID = 1051, ORIGINAL_NETWORK_ID = 8442",
    "3 SERVICE_ID = 282,FREQUENCY = 586000,PROGRAM_NUMBER= 20,CHANNEL_TYPE = 2,MAJOR = 8,MINOR = 0, "
    "TRANSPORT_STREAM_ID = 1051, ORIGINAL_NETWORK_ID = 8442",
    "3 SERVICE_ID = 283,FREQUENCY = 594000,PROGRAM_NUMBER= 30,CHANNEL_TYPE = 1,MAJOR = 9,MINOR = 0, "
    "TRANSPORT_STREAM_ID = 1051, ORIGINAL_NETWORK_ID = 8442"};

class FindChannel : public ChannelTest {
 protected:
  /// Service ids of the found-channel list; 0 for a record without one.
  std::vector<unsigned long long> found() const {
    std::vector<unsigned long long> ids;
    for (const TCServiceData* record : worker.m_ChannelList) {
      unsigned long long id = 0;
      record->Get(TCServiceData::SERVICE_ID, id);
      ids.push_back(id);
    }
    return ids;
  }
  /// The list that the failures below start from.
  void findAll() {
    ASSERT_EQ(worker.FindChannel(all, terrestrial), 1);
    ASSERT_EQ(found(), Ids({281, 282, 283}));
    forget();
  }
  using Ids = std::vector<unsigned long long>;
};

TEST_F(FindChannel, AsksForTheServicesOfTheModeAndListsThemInTheSetsOrder) {
  EXPECT_EQ(worker.FindChannel(all, terrestrial), 1);
  EXPECT_EQ(found(), Ids({281, 282, 283}));
  EXPECT_EQ(logs(), join({modeLogs, {"3 execute GetServiceList"}, serviceLogs}));

  Lines asked = withoutConditions(calls());
  ASSERT_EQ(asked.size(), 4U);
  EXPECT_EQ(Lines(asked.begin(), asked.end() - 1), join({modeCalls, {criteriaCall}}));
  EXPECT_EQ(head(asked.back()),
            "IServiceNavigation[main#1]::GetServiceList(CRITERIA, " + fetched + ", mode=-1,-1, 0, 0)");
  EXPECT_TRUE(asked.back().ends_with(" -> 3")) << asked.back();
}

TEST_F(FindChannel, RecordsHoldTheFieldsThatWereFetchedAndNoOthers) {
  findAll();
  const TCServiceData& news = *worker.m_ChannelList.front();
  unsigned short value = 0;
  EXPECT_TRUE(news.Get(TCServiceData::MAJOR, value));
  EXPECT_EQ(news.GetLength(TCServiceData::CHANNEL_NAME), 7);
  EXPECT_FALSE(news.Get(TCServiceData::LOCK, value));
  EXPECT_FALSE(news.Get(TCServiceData::ANTENNA_MODE, value));
}

TEST_F(FindChannel, AChannelTypeBecomesAConditionOnItsMappedValue) {
  EXPECT_EQ(worker.FindChannel(radio, terrestrial), 1);
  EXPECT_EQ(found(), Ids{282});
  EXPECT_EQ(logs(), join({modeLogs, {"3 execute GetServiceList", serviceLogs[1]}}));
  EXPECT_EQ(head(withoutConditions(calls()).back()),
            "IServiceNavigation[main#1]::GetServiceList(CRITERIA, where 1=2, " + fetched + ", mode=-1,-1, 0, 0)");

  EXPECT_EQ(worker.FindChannel(television, terrestrial), 1);
  EXPECT_EQ(found(), Ids({281, 283}));
}

TEST_F(FindChannel, TypeZeroIsNoCondition) {
  worker.FindChannel(all, terrestrial);
  EXPECT_EQ(calls().back().find("where 1="), std::string::npos);
}

TEST_F(FindChannel, ATypeWithoutCounterpartAsksForType0) {
  EXPECT_EQ(worker.FindChannel(static_cast<_PL_WINDOW_CHANNEL_TYPE>(1), terrestrial), 0);
  EXPECT_NE(calls().back().find(", where 1=0, fetch"), std::string::npos);
}

TEST_F(FindChannel, AModeThatNamesItsListReadsNoSettings) {
  EXPECT_EQ(worker.FindChannel(all, satelliteList), 0);
  EXPECT_EQ(found(), Ids{});
  EXPECT_EQ(logs(), Lines({"3 nTCTVMode.antennaMode = 2, nTCTVMode.serviceMode = 7 !", "3 execute GetServiceList"}));
  const Lines asked = withoutConditions(calls());
  ASSERT_EQ(asked.size(), 2U);
  EXPECT_EQ(asked[0],
            "TCNavigationModeHelper::GetNavigationCriteria(navigation=0, mode=2,7, service=18446744073709551615) "
            "criteria=CRITERIA -> 1");
  EXPECT_EQ(asked[1],
            "IServiceNavigation[main#1]::GetServiceList(CRITERIA, " + fetched + ", mode=-1,-1, 0, 0) services=[] -> 0");
}

TEST_F(FindChannel, AModeWithoutMeaningIsPassedOnAsNoMode) {
  for (const int mode : {0, 21, 22, -1, 32}) {
    SCOPED_TRACE(mode);
    findAll();
    worker.FindChannel(all, static_cast<_PL_WINDOW_TV_MODE>(mode));
    EXPECT_EQ(logs().front(), "3 nTCTVMode.antennaMode = -1, nTCTVMode.serviceMode = -1 !");
    EXPECT_NE(calls().front().find("GetNavigationCriteria(navigation=0, mode=-1,-1, "), std::string::npos);
  }
}

TEST_F(FindChannel, ARegionThatCanNotBeReadAsksForNoServiceMode) {
  fault("system_info_get_value_int result=-1");
  EXPECT_EQ(worker.FindChannel(all, terrestrial), 1);
  EXPECT_EQ(logs()[2], "3 nTCTVMode.antennaMode = 0, nTCTVMode.serviceMode = -1 !");
  EXPECT_NE(calls()[1].find("mode=0,-1"), std::string::npos);
}

TEST_F(FindChannel, MissingFieldsReadAsTheirDefaults) {
  EXPECT_EQ(under("IServiceNavigation::GetServiceList out.services=[{}]",
                  [&] { return worker.FindChannel(all, terrestrial); }),
            1);
  EXPECT_EQ(logs().back(),
            "3 SERVICE_ID = 18446744073709551615,FREQUENCY = -1,PROGRAM_NUMBER= 255,CHANNEL_TYPE = -1,MAJOR = 65535,"
            "MINOR = 65535, TRANSPORT_STREAM_ID = 65535, ORIGINAL_NETWORK_ID = 65535");
}

TEST_F(FindChannel, NumbersOfAllBitsAreReadAtTheirWidth) {
  under(
      "IServiceNavigation::GetServiceList "
      "out.services=[{12=9223372036854775808,4=-2,15=65535,1=-1,13=65535,14=0,18=65536,41=65535}]",
      [&] { return worker.FindChannel(all, terrestrial); });
  EXPECT_EQ(logs().back(),
            "3 SERVICE_ID = 9223372036854775808,FREQUENCY = -2,PROGRAM_NUMBER= 255,CHANNEL_TYPE = -1,MAJOR = 65535,"
            "MINOR = 0, TRANSPORT_STREAM_ID = 0, ORIGINAL_NETWORK_ID = 65535");
}

TEST_F(FindChannel, ReplacesTheListOfTheCallBefore) {
  findAll();
  EXPECT_EQ(worker.FindChannel(radio, terrestrial), 1);
  EXPECT_EQ(found(), Ids{282});
}

TEST_F(FindChannel, WithoutNavigationProxyAnswersMinus1AndKeepsTheList) {
  findAll();
  loseNavigation();
  EXPECT_EQ(worker.FindChannel(all, terrestrial), -1);
  EXPECT_EQ(logs(), join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}));
  EXPECT_EQ(calls(), Lines{"TVServiceAPI::CreateServiceNavigation(profile=1, index=0) -> -1 [fault]"});
  EXPECT_EQ(found(), Ids({281, 282, 283}));
}

TEST_F(FindChannel, CriteriaThatCanNotBeHadLeaveTheListEmpty) {
  const std::string failed = "0 Get navigation criteria failed";
  const std::string thrown = caught("FindChannel", "TCNavigationModeHelper::GetNavigationCriteria");
  const std::vector<std::pair<std::string, Lines>> ways{{"result=0", {failed}}, {"result=throw", {thrown, failed}}};
  for (const auto& [way, lines] : ways) {
    SCOPED_TRACE(way);
    findAll();
    EXPECT_EQ(under("TCNavigationModeHelper::GetNavigationCriteria " + way,
                    [&] { return worker.FindChannel(all, terrestrial); }),
              0);
    EXPECT_EQ(logs(), join({modeLogs, lines}));
    EXPECT_EQ(calls().size(), 3U) << "no list is asked for";
    EXPECT_EQ(found(), Ids{});
  }
}

TEST_F(FindChannel, AnyNumberButZeroIsASuccessOfTheCriteria) {
  for (const std::string result : {"2", "-1"}) {
    EXPECT_EQ(under("TCNavigationModeHelper::GetNavigationCriteria result=" + result,
                    [&] { return worker.FindChannel(all, terrestrial); }),
              1)
        << result;
  }
}

TEST_F(FindChannel, UnwrittenCriteriaAreUsedAsTheyAre) {
  under("TCNavigationModeHelper::GetNavigationCriteria result=unwritten",
        [&] { return worker.FindChannel(radio, terrestrial); });
  EXPECT_EQ(head(calls().back()),
            "IServiceNavigation[main#1]::GetServiceList(where 1=2, " + fetched + ", mode=-1,-1, 0, 0)");
}

TEST_F(FindChannel, AFailedListLookupAnswers0AndLeavesTheListEmpty) {
  const std::string thrown = caught("FindChannel", "IServiceNavigation::GetServiceList");
  const std::vector<std::pair<std::string, Lines>> ways{
      {"result=0", {}}, {"result=-1", {}}, {"result=unwritten", {}}, {"result=throw", {thrown}}};
  for (const auto& [way, lines] : ways) {
    SCOPED_TRACE(way);
    findAll();
    EXPECT_EQ(under("IServiceNavigation::GetServiceList " + way, [&] { return worker.FindChannel(all, terrestrial); }),
              0);
    EXPECT_EQ(logs(), join({modeLogs, {"3 execute GetServiceList"}, lines}));
    EXPECT_EQ(found(), Ids{});
    int size = -1;
    EXPECT_EQ(worker.GetChannel_Size(&size), 1);
    EXPECT_EQ(size, 0);
  }
}

TEST_F(FindChannel, RecordsOfAFailedLookupStayInTheList) {
  EXPECT_EQ(under("IServiceNavigation::GetServiceList result=0 out.services=[{12=5},{12=6}]",
                  [&] { return worker.FindChannel(all, terrestrial); }),
            0);
  EXPECT_EQ(found(), Ids({5, 6}));
  EXPECT_EQ(logs().size(), modeLogs.size() + 3) << "each record is logged";
}

TEST_F(FindChannel, ANullIsNoRecordAndHasNoPosition) {
  EXPECT_EQ(under("IServiceNavigation::GetServiceList out.services=[null,{12=5},null,null,{12=6},null]",
                  [&] { return worker.FindChannel(all, terrestrial); }),
            1);
  EXPECT_EQ(found(), Ids({5, 6}));
  EXPECT_EQ(logs().size(), modeLogs.size() + 3) << "each record is logged";
  TCServiceData* got = nullptr;
  EXPECT_EQ(worker.t_GetChannelSeek(1, &got), 1);
  EXPECT_EQ(got, worker.m_ChannelList.back());
  EXPECT_EQ(worker.t_GetChannelSeek(2, &got), 0);
}

TEST_F(FindChannel, AListOfNothingButNullsIsEmpty) {
  for (const std::string nulls : {"[null]", "[null,null]"}) {
    EXPECT_EQ(under("IServiceNavigation::GetServiceList out.services=" + nulls,
                    [&] { return worker.FindChannel(all, terrestrial); }),
              0);
    EXPECT_EQ(found(), Ids{});
    EXPECT_EQ(logs(), join({modeLogs, {"3 execute GetServiceList"}}));
  }
}

TEST_F(FindChannel, NullsOfAFailedLookupAreLeftOutToo) {
  EXPECT_EQ(under("IServiceNavigation::GetServiceList result=0 out.services=[null,{12=5}]",
                  [&] { return worker.FindChannel(all, terrestrial); }),
            0);
  EXPECT_EQ(found(), Ids{5});
}

TEST_F(FindChannel, AsksTheMainWindowsNavigationAlsoForThePictureInPicture) {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  forget();
  EXPECT_EQ(worker.FindChannel(all, terrestrial), 1);
  EXPECT_NE(calls().back().find("IServiceNavigation[main#1]::GetServiceList"), std::string::npos);
}

TEST_F(FindChannel, WithoutTheMainWindowsNavigationAnswers0AndMakesNone) {
  findAll();
  worker.svc_navi_proxy_main = nullptr;
  EXPECT_EQ(worker.FindChannel(all, terrestrial), 0);
  EXPECT_EQ(logs(), join({modeLogs, {"3 execute GetServiceList"}}));
  EXPECT_EQ(withoutConditions(calls()), join({modeCalls, {criteriaCall}}));
  EXPECT_EQ(found(), Ids{});
}

TEST_F(FindChannel, DestroyEmptiesTheList) {
  findAll();
  worker.Destroy();
  EXPECT_EQ(found(), Ids{});
  int size = -1;
  EXPECT_EQ(worker.GetChannel_Size(&size), 1);
  EXPECT_EQ(size, 0);
}

TEST_F(FindChannel, EachWorkerHasAListOfItsOwn) {
  findAll();
  support::WorkerProbe other;
  ASSERT_TRUE(other.Create("CEmpTaskWindow", &engine));
  EXPECT_TRUE(other.m_ChannelList.empty());
  EXPECT_EQ(other.FindChannel(radio, terrestrial), 1);
  EXPECT_EQ(found(), Ids({281, 282, 283}));
}

TEST_F(FindChannel, APositionGivesTheListsOwnRecord) {
  findAll();
  int at = 0;
  for (TCServiceData* record : worker.m_ChannelList) {
    TCServiceData* got = nullptr;
    EXPECT_EQ(worker.t_GetChannelSeek(at++, &got), 1);
    EXPECT_EQ(got, record);
  }
  EXPECT_EQ(calls(), Lines{});
}

TEST_F(FindChannel, APositionGivesARecordOfTheListThatWasFoundLast) {
  const auto expectOwnRecords = [this] {
    int at = 0;
    for (TCServiceData* record : worker.m_ChannelList) {
      TCServiceData* got = nullptr;
      EXPECT_EQ(worker.t_GetChannelSeek(at++, &got), 1);
      EXPECT_EQ(got, record);
    }
    TCServiceData* none = nullptr;
    EXPECT_EQ(worker.t_GetChannelSeek(at, &none), 0);
  };
  for (const auto type : {all, all, television, radio, all}) {  // as long as the one before, shorter, longer
    ASSERT_EQ(worker.FindChannel(type, terrestrial), 1);
    expectOwnRecords();
  }
  worker.Destroy();
  expectOwnRecords();
}

TEST_F(FindChannel, APositionOutsideTheListLeavesTheOutputAsItWas) {
  TCServiceData mine;
  TCServiceData* got = &mine;
  EXPECT_EQ(worker.t_GetChannelSeek(0, &got), 0) << "the list is empty";
  findAll();
  for (const int position : {-1, 3, 4, -2147483647 - 1, 2147483647}) {
    EXPECT_EQ(worker.t_GetChannelSeek(position, &got), 0) << position;
  }
  EXPECT_EQ(got, &mine);
}

TEST_F(ChannelEngineTest, FindChannelPassesBothNumbersAndItsResultOn) {
  EXPECT_EQ(execute("FindChannel", {"0", "1"}), "int 1");
  EXPECT_EQ(finished(), "1");
  EXPECT_EQ(execute("GetChannel_Size"), "int 3");
  EXPECT_EQ(execute("FindChannel", {"3", "1"}), "int 1");
  EXPECT_EQ(execute("GetChannel_Size"), "int 1");
  EXPECT_EQ(execute("FindChannel", {"0", "9"}), "int 0");
  EXPECT_EQ(finished(), "0");
  EXPECT_EQ(execute("GetChannel_Size"), "int 0");
}

TEST_F(ChannelEngineTest, CommandsReadTheRecordsBesideNulls) {
  EXPECT_EQ(executeUnder("IServiceNavigation::GetServiceList out.services=[null,{12=5,13=1},null,{12=6,13=2}]",
                         "FindChannel", {"0", "1"}),
            "int 1");
  EXPECT_EQ(execute("GetChannel_Size"), "int 2");
  EXPECT_EQ(execute("GetChannel_Major", {"0"}), "int 1");
  EXPECT_EQ(execute("GetChannel_ServiceId", {"1"}), "ascii 6");
  EXPECT_EQ(execute("GetChannel_OnTVJson", {"1"}), "ascii");
  EXPECT_EQ(execute("GetChannel_Major", {"2"}), "int -1");
}

TEST_F(ChannelEngineTest, FindChannelReadsParametersThatAreNoNumbersAs0) {
  EXPECT_EQ(execute("FindChannel", {"all", ""}), execute("FindChannel", {"0", "0"}));
  calls();
  execute("FindChannel", {"x", "9 satellite"});
  EXPECT_NE(calls().front().find("mode=2,7"), std::string::npos);
}

TEST_F(ChannelEngineTest, FindChannelOfOneEngineDoesNotTouchTheListOfAnother) {
  execute("FindChannel", {"0", "1"});
  ASSERT_TRUE(open("other"));
  EXPECT_EQ(execute("GetChannel_Size"), "int 0");
  execute("FindChannel", {"3", "1"});
  EXPECT_EQ(execute("GetChannel_Size"), "int 1");
  use("emp");
  EXPECT_EQ(execute("GetChannel_Size"), "int 3");
}

class UnconnectedEngineTest : public support::TvTest {
 protected:
  void SetUp() override { channels::furnish(tv()); }
};

TEST_F(UnconnectedEngineTest, FindChannelWithoutNavigationAnswersMinus1) {
  fault("TVServiceAPI::CreateServiceNavigation always result=1");
  ASSERT_TRUE(open());
  forget();
  EXPECT_EQ(execute("FindChannel", {"0", "1"}), "int -1");
  EXPECT_EQ(calls(), Lines{"TVServiceAPI::CreateServiceNavigation(profile=101, index=0) -> 1 [fault]"});
}

TEST_F(UnconnectedEngineTest, FindChannelFindsNothingUntilAWindowIsSelected) {
  fault("TVServiceAPI::CreateServiceNavigation times=1 result=1");
  ASSERT_TRUE(open());
  EXPECT_EQ(execute("FindChannel", {"0", "1"}), "int 0");
  EXPECT_EQ(execute("SetWindow", {"0"}), "int 1");
  EXPECT_EQ(execute("FindChannel", {"0", "1"}), "int 1");
}

}  // namespace

// SPDX-License-Identifier: MIT
// The found-channel list: built by FindChannel, read by position.
#include <string>
#include <utility>
#include <vector>

#include "support/Channels.h"
#include "tvservice/TCServiceData.h"

namespace {

using channels::caught;
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

/// The line of each of the three services. Program numbers are cut to 8 bits.
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
  int find(_PL_WINDOW_CHANNEL_TYPE type = all) { return worker.FindChannel(type, terrestrial); }
  int findUnder(const std::string& words) {
    return under(words, [this] { return find(); });
  }
  /// Fills the list from which the failures below start.
  void findAll() {
    ASSERT_EQ(find(), 1);
    ASSERT_EQ(found(), Ids({281, 282, 283}));
    forget();
  }
  /// Each position gives the list's own record. The position after the last one gives none.
  void expectOwnRecords() {
    int at = 0;
    for (TCServiceData* record : worker.m_ChannelList) {
      TCServiceData* got = nullptr;
      EXPECT_EQ(worker.t_GetChannelSeek(at++, &got), 1);
      EXPECT_EQ(got, record);
    }
    TCServiceData* none = nullptr;
    EXPECT_EQ(worker.t_GetChannelSeek(at, &none), 0);
  }
  using Ids = std::vector<unsigned long long>;
};

TEST_F(FindChannel, AsksForTheServicesOfTheModeAndListsThemInTheSetsOrder) {
  EXPECT_EQ(find(), 1);
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
  EXPECT_EQ(find(radio), 1);
  EXPECT_EQ(found(), Ids{282});
  EXPECT_EQ(logs(), join({modeLogs, {"3 execute GetServiceList", serviceLogs[1]}}));
  EXPECT_EQ(head(withoutConditions(calls()).back()),
            "IServiceNavigation[main#1]::GetServiceList(CRITERIA, where 1=2, " + fetched + ", mode=-1,-1, 0, 0)");
  EXPECT_EQ(find(television), 1);
  EXPECT_EQ(found(), Ids({281, 283})) << "in place of those of the call before";
  EXPECT_EQ(find(static_cast<_PL_WINDOW_CHANNEL_TYPE>(1)), 0);
  EXPECT_NE(calls().back().find(", where 1=0, fetch"), std::string::npos) << "a type without a counterpart";
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
  EXPECT_EQ(find(), 1);
  EXPECT_EQ(logs()[2], "3 nTCTVMode.antennaMode = 0, nTCTVMode.serviceMode = -1 !");
  EXPECT_NE(calls()[1].find("mode=0,-1"), std::string::npos);
}

TEST_F(FindChannel, FieldsAreReadAtTheirWidthAndMissingOnesAsTheirDefaults) {
  const std::map<std::string, std::string> lines{
      {"[{}]",
       "3 SERVICE_ID = 18446744073709551615,FREQUENCY = -1,PROGRAM_NUMBER= 255,CHANNEL_TYPE = -1,MAJOR = 65535,"
       "MINOR = 65535, TRANSPORT_STREAM_ID = 65535, ORIGINAL_NETWORK_ID = 65535"},
      {"[{12=9223372036854775808,4=-2,15=65535,1=-1,13=65535,14=0,18=65536,41=65535}]",
       "3 SERVICE_ID = 9223372036854775808,FREQUENCY = -2,PROGRAM_NUMBER= 255,CHANNEL_TYPE = -1,MAJOR = 65535,"
       "MINOR = 0, TRANSPORT_STREAM_ID = 0, ORIGINAL_NETWORK_ID = 65535"}};
  for (const auto& [services, line] : lines) {
    EXPECT_EQ(findUnder("IServiceNavigation::GetServiceList out.services=" + services), 1);
    EXPECT_EQ(logs().back(), line);
  }
}

TEST_F(FindChannel, WithoutNavigationProxyAnswersMinus1AndKeepsTheList) {
  findAll();
  loseNavigation();
  EXPECT_EQ(find(), -1);
  EXPECT_EQ(logs(), join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}));
  EXPECT_EQ(calls(), Lines{"TVServiceAPI::CreateServiceNavigation(profile=1, index=0) -> -1 [fault]"});
  EXPECT_EQ(found(), Ids({281, 282, 283}));
}

TEST_F(FindChannel, AFailedCallAnswers0AndEmptiesTheList) {
  const std::string criteria = "TCNavigationModeHelper::GetNavigationCriteria";
  const std::string list = "IServiceNavigation::GetServiceList";
  const std::string noCriteria = "0 Get navigation criteria failed";
  const std::string asked = "3 execute GetServiceList";
  const std::vector<std::pair<std::string, Lines>> failures{
      {criteria + " result=0", {noCriteria}},
      {criteria + " result=throw", {caught("FindChannel", criteria), noCriteria}},
      {list + " result=0", {asked}},
      {list + " result=-1", {asked}},
      {list + " result=unwritten", {asked}},
      {list + " out.services=[null]", {asked}},
      {list + " out.services=[null,null]", {asked}},
      {list + " result=throw", {asked, caught("FindChannel", list)}}};
  for (const auto& [words, lines] : failures) {
    SCOPED_TRACE(words);
    findAll();
    EXPECT_EQ(findUnder(words), 0);
    EXPECT_EQ(logs(), join({modeLogs, lines}));
    EXPECT_NE(calls().back().find("[fault]"), std::string::npos) << "nothing is asked behind it";
    EXPECT_EQ(found(), Ids{});
  }
}

TEST_F(FindChannel, AnyNumberButZeroIsASuccessOfTheCriteriaWhichAreUsedAsTheyAre) {
  const std::string criteria = "TCNavigationModeHelper::GetNavigationCriteria";
  for (const std::string result : {"2", "-1"}) EXPECT_EQ(findUnder(criteria + " result=" + result), 1) << result;
  under(criteria + " result=unwritten", [&] { return find(radio); });
  EXPECT_EQ(head(calls().back()),
            "IServiceNavigation[main#1]::GetServiceList(where 1=2, " + fetched + ", mode=-1,-1, 0, 0)");
}

TEST_F(FindChannel, ANullIsNoRecordAndRecordsOfAFailedLookupStayInTheList) {
  const std::vector<std::tuple<std::string, int, Ids>> outcomes{
      {"out.services=[null,{12=5},null,null,{12=6},null]", 1, {5, 6}},
      {"result=0 out.services=[{12=5},{12=6}]", 0, {5, 6}},
      {"result=0 out.services=[null,{12=5}]", 0, {5}}};
  for (const auto& [words, result, ids] : outcomes) {
    SCOPED_TRACE(words);
    EXPECT_EQ(findUnder("IServiceNavigation::GetServiceList " + words), result);
    EXPECT_EQ(found(), ids);
    EXPECT_EQ(logs().size(), modeLogs.size() + 1 + ids.size()) << "each record is logged";
    expectOwnRecords();
  }
}

TEST_F(FindChannel, AsksTheMainWindowsNavigationAlsoForThePictureInPicture) {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  forget();
  EXPECT_EQ(find(), 1);
  EXPECT_NE(calls().back().find("IServiceNavigation[main#1]::GetServiceList"), std::string::npos);
}

TEST_F(FindChannel, WithoutTheMainWindowsNavigationAnswers0AndMakesNone) {
  findAll();
  worker.svc_navi_proxy_main = nullptr;
  EXPECT_EQ(find(), 0);
  EXPECT_EQ(logs(), join({modeLogs, {"3 execute GetServiceList"}}));
  EXPECT_EQ(withoutConditions(calls()), join({modeCalls, {criteriaCall}}));
  EXPECT_EQ(found(), Ids{});
}

TEST_F(FindChannel, EachWorkerHasAListOfItsOwn) {
  findAll();
  support::WorkerProbe other;
  ASSERT_TRUE(other.Create("CEmpTaskWindow", &engine));
  EXPECT_TRUE(other.m_ChannelList.empty());
  EXPECT_EQ(other.FindChannel(radio, terrestrial), 1);
  EXPECT_EQ(found(), Ids({281, 282, 283}));
}

TEST_F(FindChannel, APositionGivesARecordOfTheListThatWasFoundLast) {
  for (const auto type : {all, all, television, radio, all}) {  // as long as the list before it, shorter, longer
    ASSERT_EQ(find(type), 1);
    calls();
    expectOwnRecords();
    EXPECT_EQ(calls(), Lines{});
  }
  worker.Destroy();
  EXPECT_EQ(found(), Ids{});
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

}  // namespace

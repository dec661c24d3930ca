// SPDX-License-Identifier: MIT
// Service ids as text, by position or by numbers, and the length of the found-channel list.
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "support/Channels.h"

namespace {

using channels::banner;
using channels::caught;
using channels::ChannelTest;
using channels::head;
using channels::join;
using support::Lines;

_PL_WINDOW_CHANNEL_TYPE type(int number) {
  return static_cast<_PL_WINDOW_CHANNEL_TYPE>(number);
}

std::string prefix(const std::string& function) {
  return "3 [CEmpTaskWindow::" + function + "]";
}

class ChannelSize : public ChannelTest {};

class ChannelServiceId : public ChannelTest {
 protected:
  void list(const std::vector<std::string>& records) {
    for (const std::string& one : records) worker.m_ChannelList.push_back(new TCServiceData(channels::record(one)));
  }
  const Lines begin{channels::place("GetChannel_ServiceId"), prefix("GetChannel_ServiceId") + "[Idx:0] call begin."};
  char text[33] = "as it was";
};

TEST_F(ChannelSize, IsTheLengthOfTheList) {
  int size = -7;
  EXPECT_EQ(worker.GetChannel_Size(&size), 1);
  EXPECT_EQ(size, 0);
  EXPECT_EQ(logs(), Lines({channels::place("GetChannel_Size"), "3 *pnSize = [0]"}));
  worker.FindChannel(PL_WINDOW_CHANNEL_TYPE_ALL, static_cast<_PL_WINDOW_TV_MODE>(1));
  forget();
  EXPECT_EQ(worker.GetChannel_Size(&size), 1);
  EXPECT_EQ(size, 3);
  EXPECT_EQ(logs(), Lines({channels::place("GetChannel_Size"), "3 *pnSize = [3]"}));
  EXPECT_EQ(calls(), Lines{});
}

TEST_F(ChannelSize, ANullOutputAnswers0) {
  EXPECT_EQ(worker.GetChannel_Size(nullptr), 0);
  EXPECT_EQ(logs(), Lines({channels::place("GetChannel_Size"), banner(0, "GetChannel_Size")}));
}

TEST_F(ChannelServiceId, IsUnsignedDecimalOfAll64Bits) {
  const std::vector<std::pair<std::string, std::string>> ids{{"{12=281}", "281"},
                                                             {"{12=0}", "0"},
                                                             {"{12=9223372036854775808}", "9223372036854775808"},
                                                             {"{12=18446744073709551615}", "18446744073709551615"},
                                                             {"{13=7}", "18446744073709551615"}};
  for (const auto& [record, id] : ids) {
    SCOPED_TRACE(record);
    worker.Destroy();
    list({record});
    forget();
    std::memset(text, 'x', sizeof text);
    EXPECT_EQ(worker.GetChannel_ServiceId(0, text), 1);
    EXPECT_EQ(text, id);
    EXPECT_EQ(text[32], 'x') << "written behind the 32 bytes";
    EXPECT_EQ(logs(), join({begin, {"3 ServiceId = " + id}}));
    EXPECT_EQ(calls(), Lines{});
  }
}

TEST_F(ChannelServiceId, WithoutTheChannelAnswersMinus1) {
  EXPECT_EQ(worker.GetChannel_ServiceId(0, text), -1);
  EXPECT_STREQ(text, "as it was");
  EXPECT_EQ(logs(), join({begin, {prefix("GetChannel_ServiceId") + "[Idx:0] Failed to get data."}}));
}

/// The variant of the command with a major number, a minor number and a channel type.
class ServiceIdByNumbers : public ChannelTest {
 protected:
  int ask(int major, int minor, int channelType) {
    return worker.GetChannel_ServiceId(major, minor, type(channelType), text);
  }
  static Lines begun(int major, int minor) {
    return {channels::place("GetChannel_ServiceId"), prefix("GetChannel_ServiceId") +
                                                         "[nMajor:" + std::to_string(major) +
                                                         ",Minor:" + std::to_string(minor) + "] call begin."};
  }
  static std::string types(int mine, int theirs) {
    return "3 eChannelType = " + std::to_string(mine) + ",nChannelType = " + std::to_string(theirs);
  }
  static std::string lookup(const std::string& conditions) {
    return "IService[set#1]::FindService(fetch 12 13 14, order 12 up, where 13=7, where 14=0" + conditions +
           ", count=1)";
  }
  char text[32] = "as it was";
};

TEST_F(ServiceIdByNumbers, FindsTheServiceWithoutTuning) {
  EXPECT_EQ(ask(7, 0, 2), 1);
  EXPECT_STREQ(text, "281");
  EXPECT_EQ(logs(), join({begun(7, 0), {types(2, 1), "3 ServiceId == 281"}}));
  const Lines asked = calls();
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_EQ(head(asked[0]), lookup(", where 1=1"));
}

TEST_F(ServiceIdByNumbers, ATypeThatMapsTo1To9IsAConditionAndNoOther) {
  const std::vector<std::pair<int, int>> mapped{{2, 1},  {3, 2},   {4, 3},   {5, 4},   {8, 7},   {9, 3},  {10, 8},
                                                {11, 4}, {12, 5},  {13, 6},  {16, 7},  {18, 8},  {0, -1}, {1, 0},
                                                {6, 0},  {19, 13}, {21, 10}, {23, 11}, {24, 19}, {99, 0}};
  for (const auto& [mine, theirs] : mapped) {
    SCOPED_TRACE(mine);
    forget();
    ask(7, 0, mine);
    EXPECT_EQ(logs()[2], types(mine, theirs));
    EXPECT_EQ(head(calls().back()),
              lookup(theirs >= 1 && theirs <= 9 ? ", where 1=" + std::to_string(theirs) : std::string()));
  }
}

TEST_F(ServiceIdByNumbers, AType9IsLimitedToTheAntennaInUse) {
  for (const int mine : {20, 28}) {
    SCOPED_TRACE(mine);
    forget();
    fault("IServiceNavigation::GetTvMode out.mode=2,7");
    EXPECT_EQ(ask(7, 0, mine), 0);
    const Lines asked = calls();
    ASSERT_EQ(asked.size(), 2U);
    EXPECT_EQ(asked[0], "IServiceNavigation[main#1]::GetTvMode() mode=2,7 -> 1 [fault]");
    EXPECT_EQ(head(asked[1]), lookup(", where 1=9, where 115=2"));
    EXPECT_EQ(logs(), join({begun(7, 0), {types(mine, 9), banner(0, "GetChannel_ServiceId")}}));
  }
}

TEST_F(ServiceIdByNumbers, AnAntennaThatCanNotBeReadIsNoCondition) {
  const std::map<std::string, std::string> conditions{
      {"result=0", ""}, {"result=-1", ""}, {"result=unwritten", ", where 115=-1"}};
  for (const auto& [way, antenna] : conditions) {
    SCOPED_TRACE(way);
    EXPECT_EQ(under("IServiceNavigation::GetTvMode " + way, [&] { return ask(7, 0, 20); }), 0);
    EXPECT_EQ(head(calls().back()), lookup(", where 1=9" + antenna));
    EXPECT_EQ(logs(), join({begun(7, 0), {types(20, 9), banner(0, "GetChannel_ServiceId")}}));
  }
  loseNavigation();
  forget();
  EXPECT_EQ(ask(7, 0, 20), 0);
  const Lines asked = calls();
  ASSERT_EQ(asked.size(), 1U) << "no navigation is made";
  EXPECT_EQ(head(asked[0]), lookup(", where 1=9"));
}

TEST_F(ServiceIdByNumbers, AnAntennaThatIsReadWithAnExceptionAnswers0AndFindsNothing) {
  EXPECT_EQ(under("IServiceNavigation::GetTvMode result=throw", [&] { return ask(7, 0, 20); }), 0);
  EXPECT_EQ(calls(), Lines{"IServiceNavigation[main#1]::GetTvMode() -> throws [fault]"});
  EXPECT_EQ(logs(),
            join({begun(7, 0), {types(20, 9), caught("GetChannel_ServiceId", "IServiceNavigation::GetTvMode")}}));
  EXPECT_STREQ(text, "as it was");
}

TEST_F(ServiceIdByNumbers, TheFirstInIdOrderIsFound) {
  std::vector<virtualtv::Service> services = channels::threeServices();
  for (virtualtv::Service& service : services) {
    service.numbers[TCServiceData::MAJOR] = 7;
    service.numbers[TCServiceData::SERVICE_ID] = 1000 - service.numbers[TCServiceData::SERVICE_ID];
  }
  setServices(services);
  EXPECT_EQ(ask(7, 0, 0), 1);
  EXPECT_STREQ(text, "717");
}

TEST_F(ServiceIdByNumbers, AServiceThatCanNotBeFoundAnswers0AndLeavesTheOutputAsItWas) {
  const std::vector<std::pair<std::string, Lines>> ways{
      {"result=0", {}}, {"result=-1", {}}, {"result=throw", {caught("GetChannel_ServiceId", "IService::FindService")}}};
  for (const auto& [way, lines] : ways) {
    SCOPED_TRACE(way);
    EXPECT_EQ(under("IService::FindService " + way, [&] { return ask(7, 0, 2); }), 0);
    EXPECT_STREQ(text, "as it was");
    EXPECT_EQ(logs(), join({begun(7, 0), {types(2, 1)}, lines, {banner(0, "GetChannel_ServiceId")}}));
  }
  EXPECT_EQ(ask(7, 5, 2), 0) << "no such minor number";
}

TEST_F(ServiceIdByNumbers, ARecordWithoutIdAnswersAllOnes) {
  EXPECT_EQ(under("IService::FindService result=unwritten", [&] { return ask(7, 0, 2); }), 1);
  EXPECT_STREQ(text, "18446744073709551615");
  EXPECT_EQ(under("IService::FindService out.service={12=9223372036854775808}", [&] { return ask(7, 0, 2); }), 1);
  EXPECT_STREQ(text, "9223372036854775808");
  EXPECT_EQ(logs().back(), "3 ServiceId == 9223372036854775808");
}

TEST_F(ServiceIdByNumbers, WithoutServiceProxyAnswersMinus1) {
  loseService();
  EXPECT_EQ(ask(7, 0, 2), -1);
  EXPECT_STREQ(text, "as it was");
  EXPECT_EQ(logs(), join({begun(7, 0), channels::noService(), {"0 Serviceproxy is NULL"}}));
}

TEST_F(ServiceIdByNumbers, TheFoundChannelListIsNotUsed) {
  worker.FindChannel(type(3), static_cast<_PL_WINDOW_TV_MODE>(1));
  EXPECT_EQ(ask(7, 0, 2), 1);
  EXPECT_STREQ(text, "281");
  EXPECT_EQ(worker.m_ChannelList.size(), 1U);
}

}  // namespace

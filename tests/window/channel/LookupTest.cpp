// SPDX-License-Identifier: MIT
// Looking up the channel on screen, the one before it and the one that the set starts with.
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "support/Channels.h"

namespace {

using channels::banner;
using channels::caught;
using channels::ChannelEngineTest;
using channels::ChannelTest;
using channels::head;
using channels::join;
using support::Lines;

using Outcomes = std::vector<std::pair<std::string, Lines>>;

/// The ways in which a call that answers a positive number fails, with the lines that the operation logs then.
Outcomes failures(const std::string& function, const std::string& call, const Lines& lines) {
  return {{call + " result=0", lines},
          {call + " result=-1", lines},
          {call + " result=throw", join({{caught(function, call)}, lines})}};
}

unsigned long long idOf(const TCServiceData& record) {
  unsigned long long id = 0;
  record.Get(TCServiceData::SERVICE_ID, id);
  return id;
}

class CurrentChannel : public ChannelTest {};
class PreviousChannel : public ChannelTest {};
class StartService : public ChannelTest {};
class StartServiceId : public ChannelTest {};

TEST_F(CurrentChannel, IsTheServiceOnScreenWithTheFieldsOfAChannel) {
  TCServiceData record;
  EXPECT_EQ(worker.t_GetCurrentChannel(record), 1);
  EXPECT_EQ(idOf(record), 281U);
  EXPECT_EQ(logs(), Lines({"3 SERVICE_ID = 281", "3 MAJOR = 7"}));
  const Lines asked = calls();
  ASSERT_EQ(asked.size(), 2U);
  EXPECT_EQ(asked[0], "IServiceNavigation[main#1]::GetTvMode() mode=0,1 -> 1");
  EXPECT_EQ(head(asked[1]),
            "IServiceNavigation[main#1]::GetCurrentService(mode=0,1, fetch 12 16 41 15 18 1 2 6 37 4 13 14 22 110)");
}

TEST_F(CurrentChannel, LogsTheDefaultsOfMissingFields) {
  TCServiceData record;
  EXPECT_EQ(under("IServiceNavigation::GetCurrentService result=unwritten",
                  [&] { return worker.t_GetCurrentChannel(record); }),
            1);
  EXPECT_EQ(logs(), Lines({"3 SERVICE_ID = 18446744073709551615", "3 MAJOR = 65535"}));
}

TEST_F(CurrentChannel, AModeThatCanNotBeReadAnswers0WithoutALookup) {
  for (const auto& [words, lines] :
       failures("t_GetCurrentChannel", "IServiceNavigation::GetTvMode", {banner(0, "t_GetCurrentChannel")})) {
    SCOPED_TRACE(words);
    TCServiceData record;
    EXPECT_EQ(under(words, [&] { return worker.t_GetCurrentChannel(record); }), 0);
    EXPECT_EQ(logs(), lines);
    EXPECT_EQ(calls().size(), 1U);
  }
}

TEST_F(CurrentChannel, AModeThatTheSetDoesNotWriteIsAskedForAsNotKnown) {
  TCServiceData record;
  under("IServiceNavigation::GetTvMode result=unwritten", [&] { return worker.t_GetCurrentChannel(record); });
  EXPECT_EQ(calls()[1].find("IServiceNavigation[main#1]::GetCurrentService(mode=-1,-1, fetch"), 0U);
}

TEST_F(CurrentChannel, AServiceThatCanNotBeReadAnswers0) {
  for (const auto& [words, lines] : failures("t_GetCurrentChannel", "IServiceNavigation::GetCurrentService",
                                             {"0 Fail to get current service data\n"})) {
    SCOPED_TRACE(words);
    TCServiceData record;
    EXPECT_EQ(under(words, [&] { return worker.t_GetCurrentChannel(record); }), 0);
    EXPECT_EQ(logs(), lines);
  }
}

TEST_F(CurrentChannel, WithoutNavigationProxyAnswers0) {
  loseNavigation();
  TCServiceData record;
  EXPECT_EQ(worker.t_GetCurrentChannel(record), 0);
  EXPECT_EQ(logs(), join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}));
}

TEST_F(CurrentChannel, IsAskedForAnewEachTime) {
  TCServiceData record;
  worker.t_GetCurrentChannel(record);
  const virtualtv::ServiceKey news = tv().state()[virtualtv::WindowId::main].service;
  tv().tune(virtualtv::WindowId::main, news + 1);
  EXPECT_EQ(worker.t_GetCurrentChannel(record), 1);
  EXPECT_EQ(idOf(record), 282U);
}

TEST_F(CurrentChannel, IsThatOfTheSelectedWindow) {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  forget();
  TCServiceData record;
  worker.t_GetCurrentChannel(record);
  EXPECT_EQ(calls().front().find("IServiceNavigation[pip#"), 0U);
}

TEST_F(PreviousChannel, IsFoundByTheIdThatTheNavigationKnows) {
  TCServiceData record;
  EXPECT_EQ(worker.t_GetPreviousChannel(record), 1);
  EXPECT_EQ(idOf(record), 282U);
  EXPECT_EQ(logs(), Lines({"3 previous channel SERVICE_ID = 282", "3 previous channel MAJOR = 8,MINOR = 0"}));
  const Lines asked = calls();
  ASSERT_EQ(asked.size(), 3U);
  EXPECT_EQ(asked[0], "IServiceNavigation[main#1]::GetTvMode() mode=0,1 -> 1");
  EXPECT_EQ(asked[1], "IServiceNavigation[main#1]::GetPreviousServiceId(mode=0,1) serviceId=282 -> 1");
  EXPECT_EQ(head(asked[2]),
            "IService[set#1]::FindService(fetch 12 16 41 15 18 1 2 6 37 4 13 14, where 12=282, count=1)");
}

TEST_F(PreviousChannel, LogsTheDefaultsOfMissingFields) {
  TCServiceData record;
  under("IService::FindService result=unwritten", [&] { return worker.t_GetPreviousChannel(record); });
  EXPECT_EQ(logs(), Lines({"3 previous channel SERVICE_ID = 18446744073709551615",
                           "3 previous channel MAJOR = 65535,MINOR = 65535"}));
}

TEST_F(PreviousChannel, EachFailedCallAnswers0WithItsOwnLineAndEndsTheLookup) {
  const std::vector<std::tuple<std::string, std::string, std::size_t>> steps{
      {"IServiceNavigation::GetTvMode", banner(0, "t_GetPreviousChannel"), 1},
      {"IServiceNavigation::GetPreviousServiceId", "0 Fail to get previous service id\n", 2},
      {"IService::FindService", "0 Fail to find previous service\n", 3}};
  for (const auto& [call, line, made] : steps) {
    for (const auto& [words, lines] : failures("t_GetPreviousChannel", call, {line})) {
      SCOPED_TRACE(words);
      TCServiceData record;
      EXPECT_EQ(under(words, [&] { return worker.t_GetPreviousChannel(record); }), 0);
      EXPECT_EQ(logs(), lines);
      EXPECT_EQ(calls().size(), made);
    }
  }
}

TEST_F(PreviousChannel, AnIdThatIsNotWrittenHasADefinedValue) {
  TCServiceData record;
  EXPECT_EQ(under("IServiceNavigation::GetPreviousServiceId result=unwritten",
                  [&] { return worker.t_GetPreviousChannel(record); }),
            0);
  EXPECT_EQ(logs(), Lines{"0 Fail to find previous service\n"});
}

TEST_F(PreviousChannel, IdsOf64BitsAreAskedForAsTheyAre) {
  TCServiceData record;
  for (const std::string id : {"9223372036854775808", "18446744073709551615"}) {
    under("IServiceNavigation::GetPreviousServiceId out.serviceId=" + id,
          [&] { return worker.t_GetPreviousChannel(record); });
    EXPECT_NE(calls().back().find("where 12=" + id + ", count=1"), std::string::npos) << id;
  }
}

TEST_F(PreviousChannel, WithoutNavigationProxyAnswers0) {
  loseNavigation();
  loseService();
  TCServiceData record;
  EXPECT_EQ(worker.t_GetPreviousChannel(record), 0);
  EXPECT_EQ(logs(), join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}));
}

TEST_F(PreviousChannel, WithoutServiceProxyAnswers0BeforeAnyOtherCall) {
  loseService();
  TCServiceData record;
  EXPECT_EQ(worker.t_GetPreviousChannel(record), 0);
  EXPECT_EQ(logs(), join({channels::noService(), {"0 Serviceproxy is NULL"}}));
  EXPECT_EQ(calls(), Lines{"TVServiceAPI::CreateService() -> -1 [fault]"});
}

TEST_F(StartService, IsFoundByTheIdThatTheSetStartsWith) {
  TCServiceData record;
  EXPECT_EQ(worker.t_GetStartService(record), 1);
  EXPECT_EQ(idOf(record), 281U);
  EXPECT_EQ(logs(), Lines{"3 serviceId = 281, source = 0"});
  const Lines asked = calls();
  ASSERT_EQ(asked.size(), 2U);
  EXPECT_EQ(asked[0], "IServiceNavigation[main#1]::GetStartService() serviceId=281 source=0 -> 1");
  EXPECT_EQ(head(asked[1]), "IService[set#1]::FindService(fetch 16 13 14 1 12, where 12=281, count=1)");
}

TEST_F(StartService, TheSourceIsOnlyLogged) {
  TCServiceData record;
  EXPECT_EQ(under("IServiceNavigation::GetStartService out.source=17 out.serviceId=282",
                  [&] { return worker.t_GetStartService(record); }),
            1);
  EXPECT_EQ(logs(), Lines{"3 serviceId = 282, source = 17"});
  EXPECT_EQ(idOf(record), 282U);
}

TEST_F(StartService, IdAndSourceThatTheSetDoesNotTellAreUnknown) {
  TCServiceData record;
  EXPECT_EQ(
      under("IServiceNavigation::GetStartService result=unwritten", [&] { return worker.t_GetStartService(record); }),
      0);
  EXPECT_EQ(logs(), Lines({"3 serviceId = 18446744073709551615, source = -1", "0 Fail to FindService!!!"}));
}

TEST_F(StartService, EachFailedCallAnswers0WithItsOwnLine) {
  const std::vector<std::tuple<std::string, Lines, std::string>> steps{
      {"IServiceNavigation::GetStartService", {}, "0 Fail to GetStartService!!!"},
      {"IService::FindService", {"3 serviceId = 281, source = 0"}, "0 Fail to FindService!!!"}};
  for (const auto& [call, before, line] : steps) {
    for (const auto& [words, lines] : failures("t_GetStartService", call, {line})) {
      SCOPED_TRACE(words);
      TCServiceData record;
      EXPECT_EQ(under(words, [&] { return worker.t_GetStartService(record); }), 0);
      EXPECT_EQ(logs(), join({before, lines}));
    }
  }
}

TEST_F(StartService, WithoutNavigationProxyAnswers0) {
  loseNavigation();
  TCServiceData record;
  EXPECT_EQ(worker.t_GetStartService(record), 0);
  EXPECT_EQ(logs(), join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}));
}

TEST_F(StartService, WithoutServiceProxyTellsThatTheNavigationIsMissing) {
  loseService();
  TCServiceData record;
  EXPECT_EQ(worker.t_GetStartService(record), 0);
  EXPECT_EQ(logs(), join({channels::noService(), {"0 ServiceNavigationproxy is NULL"}}));
  EXPECT_EQ(calls(), Lines({"IServiceNavigation[main#1]::GetStartService() serviceId=281 source=0 -> 1",
                            "TVServiceAPI::CreateService() -> -1 [fault]"}));
}

TEST_F(StartServiceId, IsTheSetsOwnWithoutALookup) {
  char text[32] = {};
  EXPECT_EQ(worker.GetStartChannel_ServiceId(text), 1);
  EXPECT_STREQ(text, "281");
  EXPECT_EQ(logs(), Lines{"0 ServiceId == 281"});
  EXPECT_EQ(calls(), Lines{"IServiceNavigation[main#1]::GetStartService() serviceId=281 source=0 -> 1"});
}

TEST_F(StartServiceId, IsAskedForWithIdAndSourceUnknown) {
  char text[32] = {};
  EXPECT_EQ(
      under("IServiceNavigation::GetStartService result=0", [&] { return worker.GetStartChannel_ServiceId(text); }), 0);
  EXPECT_EQ(calls(),
            Lines{"IServiceNavigation[main#1]::GetStartService() serviceId=18446744073709551615 source=-1 -> 0 "
                  "[fault]"});
}

TEST_F(StartServiceId, IsWrittenUnsignedWithAll64Bits) {
  for (const std::string id : {"0", "9223372036854775808", "18446744073709551615"}) {
    char text[32];
    std::memset(text, 'x', sizeof text);
    EXPECT_EQ(under("IServiceNavigation::GetStartService out.serviceId=" + id,
                    [&] { return worker.GetStartChannel_ServiceId(text); }),
              1);
    EXPECT_EQ(text, id);
    EXPECT_EQ(logs(), Lines{"0 ServiceId == " + id});
  }
}

TEST_F(StartServiceId, AFailureAnswers0AndLeavesTheOutputAsItWas) {
  for (const auto& [words, lines] :
       failures("GetStartChannel_ServiceId", "IServiceNavigation::GetStartService", {"0 Fail to GetStartService!!!"})) {
    SCOPED_TRACE(words);
    char text[32] = "as it was";
    EXPECT_EQ(under(words, [&] { return worker.GetStartChannel_ServiceId(text); }), 0);
    EXPECT_STREQ(text, "as it was");
    EXPECT_EQ(logs(), lines);
  }
}

TEST_F(StartServiceId, WithoutNavigationProxyAnswers0) {
  loseNavigation();
  char text[32] = "as it was";
  EXPECT_EQ(worker.GetStartChannel_ServiceId(text), 0);
  EXPECT_STREQ(text, "as it was");
  EXPECT_EQ(logs(), join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}));
}

TEST_F(ChannelEngineTest, GetStartChannelServiceIdAnswersTheIdAsText) {
  EXPECT_EQ(execute("GetStartChannel_ServiceId"), "ascii 281");
  EXPECT_EQ(finished(), "1");
  fault("IServiceNavigation::GetStartService out.serviceId=18446744073709551615");
  EXPECT_EQ(execute("GetStartChannel_ServiceId"), "ascii 18446744073709551615");
}

TEST_F(ChannelEngineTest, GetStartChannelServiceIdThatFailsAnswersTheEmptyText) {
  fault("IServiceNavigation::GetStartService result=0");
  EXPECT_EQ(execute("GetStartChannel_ServiceId"), "ascii");
  EXPECT_EQ(finished(), "0");
}

}  // namespace

// SPDX-License-Identifier: MIT
// Looking up the channel on screen, the previous one, and the one that the set starts with.
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
using support::WorkerProbe;

const std::string tvMode = "IServiceNavigation::GetTvMode";
const std::string startService = "IServiceNavigation::GetStartService";
const std::string findService = "IService::FindService";

/// A step of a lookup: its call without outputs and result, the line logged when it fails, and the lines logged before
/// it.
struct Step {
  std::string call;
  std::string failed;
  Lines before;

  /// The called operation.
  std::string operation() const {
    const std::size_t bracket = call.find('[');
    return call.substr(0, bracket) + call.substr(call.find("::"), call.find('(') - call.find("::"));
  }
};

struct Lookup {
  std::string name;
  int (WorkerProbe::*run)(TCServiceData&);
  std::string id;  ///< id of the service that it finds
  Lines logged;
  std::vector<Step> steps;
};

const std::string allFields = "fetch 12 16 41 15 18 1 2 6 37 4 13 14";

const std::vector<Lookup>& lookups() {
  static const std::vector<Lookup> table{
      {"t_GetCurrentChannel",
       &WorkerProbe::t_GetCurrentChannel,
       "281",
       {"3 SERVICE_ID = 281", "3 MAJOR = 7"},
       {{"IServiceNavigation[main#1]::GetTvMode()", banner(0, "t_GetCurrentChannel"), {}},
        {"IServiceNavigation[main#1]::GetCurrentService(mode=0,1, " + allFields + " 22 110)",
         "0 Fail to get current service data\n",
         {}}}},
      {"t_GetPreviousChannel",
       &WorkerProbe::t_GetPreviousChannel,
       "282",
       {"3 previous channel SERVICE_ID = 282", "3 previous channel MAJOR = 8,MINOR = 0"},
       {{"IServiceNavigation[main#1]::GetTvMode()", banner(0, "t_GetPreviousChannel"), {}},
        {"IServiceNavigation[main#1]::GetPreviousServiceId(mode=0,1)", "0 Fail to get previous service id\n", {}},
        {"IService[set#1]::FindService(" + allFields + ", where 12=282, count=1)",
         "0 Fail to find previous service\n",
         {}}}},
      {"t_GetStartService",
       &WorkerProbe::t_GetStartService,
       "281",
       {"3 serviceId = 281, source = 0"},
       {{"IServiceNavigation[main#1]::GetStartService()", "0 Fail to GetStartService!!!", {}},
        {"IService[set#1]::FindService(fetch 16 13 14 1 12, where 12=281, count=1)",
         "0 Fail to FindService!!!",
         {"3 serviceId = 281, source = 0"}}}},
  };
  return table;
}

class LookupTest : public ChannelTest {
 protected:
  int run(const Lookup& lookup) {
    found = TCServiceData();
    return (worker.*lookup.run)(found);
  }
  std::string id() const {
    unsigned long long number = 0;
    found.Get(TCServiceData::SERVICE_ID, number);
    return std::to_string(number);
  }
  static const Lookup& current() { return lookups()[0]; }
  static const Lookup& previous() { return lookups()[1]; }
  static const Lookup& start() { return lookups()[2]; }

  TCServiceData found;
};

TEST_F(LookupTest, FindsTheServiceWithTheFieldsThatItTakes) {
  for (const Lookup& lookup : lookups()) {
    SCOPED_TRACE(lookup.name);
    forget();
    EXPECT_EQ(run(lookup), 1);
    EXPECT_EQ(id(), lookup.id);
    EXPECT_EQ(logs(), lookup.logged);
    Lines made;
    for (const std::string& call : calls()) made.push_back(head(call));
    Lines expected;
    for (const Step& step : lookup.steps) expected.push_back(step.call);
    EXPECT_EQ(made, expected);
  }
}

TEST_F(LookupTest, EachFailedCallAnswers0WithItsOwnLineAndEndsTheLookup) {
  for (const Lookup& lookup : lookups()) {
    std::size_t made = 0;
    for (const Step& step : lookup.steps) {
      ++made;
      for (const std::string way : {"result=0", "result=-1", "result=throw"}) {
        const std::string words = step.operation() + " " + way;
        SCOPED_TRACE(lookup.name + ": " + words);
        EXPECT_EQ(under(words, [&] { return run(lookup); }), 0);
        const Lines thrown = way == "result=throw" ? Lines{caught(lookup.name, step.operation())} : Lines();
        EXPECT_EQ(logs(), join({step.before, thrown, {step.failed}}));
        EXPECT_EQ(calls().size(), made);
      }
    }
  }
}

TEST_F(LookupTest, ValuesThatTheSetDoesNotWriteAreDefined) {
  const std::string ones = "18446744073709551615";
  EXPECT_EQ(under("IServiceNavigation::GetCurrentService result=unwritten", [&] { return run(current()); }), 1);
  EXPECT_EQ(logs(), Lines({"3 SERVICE_ID = " + ones, "3 MAJOR = 65535"}));
  under(findService + " result=unwritten", [&] { return run(previous()); });
  EXPECT_EQ(logs(),
            Lines({"3 previous channel SERVICE_ID = " + ones, "3 previous channel MAJOR = 65535,MINOR = 65535"}));
  under(tvMode + " result=unwritten", [&] { return run(current()); });
  EXPECT_EQ(calls()[1].find("IServiceNavigation[main#1]::GetCurrentService(mode=-1,-1, fetch"), 0U);
  EXPECT_EQ(under("IServiceNavigation::GetPreviousServiceId result=unwritten", [&] { return run(previous()); }), 0);
  EXPECT_EQ(logs(), Lines{"0 Fail to find previous service\n"});
  EXPECT_EQ(under(startService + " result=unwritten", [&] { return run(start()); }), 0);
  EXPECT_EQ(logs(), Lines({"3 serviceId = " + ones + ", source = -1", "0 Fail to FindService!!!"}));
}

TEST_F(LookupTest, WithoutNavigationProxyAnswers0) {
  loseNavigation();
  loseService();
  for (const Lookup& lookup : lookups()) {
    EXPECT_EQ(run(lookup), 0) << lookup.name;
    EXPECT_EQ(logs(), join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}})) << lookup.name;
  }
}

TEST_F(LookupTest, WithoutServiceProxyAnswers0) {
  const std::string factory = "TVServiceAPI::CreateService() -> -1 [fault]";
  loseService();
  EXPECT_EQ(run(previous()), 0);
  EXPECT_EQ(logs(), join({channels::noService(), {"0 Serviceproxy is NULL"}}));
  EXPECT_EQ(calls(), Lines{factory}) << "before any other call";
  EXPECT_EQ(run(start()), 0);
  EXPECT_EQ(logs(), join({channels::noService(), {"0 ServiceNavigationproxy is NULL"}}));
  EXPECT_EQ(calls(), Lines({"IServiceNavigation[main#1]::GetStartService() serviceId=281 source=0 -> 1", factory}));
}

TEST_F(LookupTest, TheCurrentChannelIsAskedForAnewOfTheSelectedWindow) {
  run(current());
  tv().tune(virtualtv::WindowId::main, tv().state()[virtualtv::WindowId::main].service + 1);
  EXPECT_EQ(run(current()), 1);
  EXPECT_EQ(id(), "282");
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  forget();
  run(current());
  EXPECT_EQ(calls().front().find("IServiceNavigation[pip#"), 0U);
}

TEST_F(LookupTest, IdsOf64BitsAreAskedForAsTheyAre) {
  for (const std::string number : {"9223372036854775808", "18446744073709551615"}) {
    under("IServiceNavigation::GetPreviousServiceId out.serviceId=" + number, [&] { return run(previous()); });
    EXPECT_NE(calls().back().find("where 12=" + number + ", count=1"), std::string::npos) << number;
  }
}

TEST_F(LookupTest, TheSourceOfTheStartServiceIsOnlyLogged) {
  EXPECT_EQ(under(startService + " out.source=17 out.serviceId=282", [&] { return run(start()); }), 1);
  EXPECT_EQ(logs(), Lines{"3 serviceId = 282, source = 17"});
  EXPECT_EQ(id(), "282");
}

class StartServiceId : public ChannelTest {
 protected:
  int ask() { return worker.GetStartChannel_ServiceId(text); }
  char text[32] = "as it was";
};

TEST_F(StartServiceId, IsTheSetsOwnUnsignedWithAll64BitsWithoutALookup) {
  EXPECT_EQ(ask(), 1);
  EXPECT_EQ(calls(), Lines{"IServiceNavigation[main#1]::GetStartService() serviceId=281 source=0 -> 1"});
  for (const std::string id : {"0", "281", "9223372036854775808", "18446744073709551615"}) {
    std::memset(text, 'x', sizeof text);
    EXPECT_EQ(under(startService + " out.serviceId=" + id, [&] { return ask(); }), 1);
    EXPECT_EQ(text, id);
    EXPECT_EQ(logs(), Lines{"0 ServiceId == " + id});
  }
}

TEST_F(StartServiceId, AFailureAnswers0AndLeavesTheOutputAsItWas) {
  const std::string failed = "0 Fail to GetStartService!!!";
  const Lines thrown{caught("GetStartChannel_ServiceId", startService), failed};
  for (const auto& [way, lines] :
       std::map<std::string, Lines>{{"result=0", {failed}}, {"result=-1", {failed}}, {"result=throw", thrown}}) {
    EXPECT_EQ(under(startService + " " + way, [&] { return ask(); }), 0) << way;
    EXPECT_EQ(logs(), lines) << way;
  }
  under(startService + " result=0", [&] { return ask(); });
  EXPECT_TRUE(calls().back().ends_with("serviceId=18446744073709551615 source=-1 -> 0 [fault]")) << "both unknown";
  loseNavigation();
  forget();
  EXPECT_EQ(ask(), 0);
  EXPECT_EQ(logs(), join({channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}));
  EXPECT_STREQ(text, "as it was");
}

}  // namespace

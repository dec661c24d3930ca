// SPDX-License-Identifier: MIT
// The reply of each command, by the worker's result.
#include "support/Channels.h"
#include "support/LogLines.h"

namespace {

using support::Lines;

struct Case {
  std::string command;
  Lines parameters;
  std::string fault;  ///< empty for none
  std::string reply;
  std::string result;  ///< in the finish line
};

class ReplyTest : public channels::ChannelEngineTest {
 protected:
  void SetUp() override {
    ChannelEngineTest::SetUp();
    ASSERT_EQ(execute("FindChannel", {"0", "1"}), "int 1");
    setSetting("db/emp/previousmainsource", 20);
  }

  void expect(const std::vector<Case>& cases) {
    for (const Case& one : cases) {
      SCOPED_TRACE(one.command + " " + one.fault);
      clearFaults();
      forget();
      if (!one.fault.empty()) fault(one.fault);
      EXPECT_EQ(execute(one.command, one.parameters), one.reply);
      EXPECT_EQ(finished(), one.result);
      EXPECT_TRUE(faultsHit());
    }
  }

  void showInput(int state, int source, int previous) {
    tv().adjust([&](virtualtv::TvState& set) {
      set[virtualtv::WindowId::main].sourceState = state;
      set[virtualtv::WindowId::main].source = source;
      set[virtualtv::WindowId::main].previousSource = previous;
    });
  }
};

TEST_F(ReplyTest, TheResultIsTheOperationsAlsoWhereTheReplyIsAnother) {
  setSetting("db/emp/previousmainsource", -5);
  expect({{"GetSource", {"8"}, "", "int -5", "1"},
          {"GetTVMode", {}, "IServiceNavigation::GetTvMode result=5", "int 1", "5"},
          {"SetTVMode", {"1"}, "IServiceNavigation::SetTVMode result=7", "int 1", "1"},
          {"GetSourceState", {}, "ISourceControl::GetSourceState out.state=-1", "int -1", "1"},
          {"GetSourceState", {}, "ISourceControl::GetSourceState out.state=0", "int 0", "1"},
          {"GetChannel_Name", {"2"}, "", "int -1", "-1"},
          {"GetChannel_ServiceName", {"2"}, "", "unicode \"\"", "1"},
          {"GetChannel_OnTVJson", {"0"}, "", "ascii", "1"},
          {"GetFullChannelList", {}, "IServiceNavigation::GetServiceList result=0", "int -1", "0"}});
}

TEST_F(ReplyTest, AnExceptionAnswersTheFailureAlsoWhereTheCallMayFail) {
  const std::string noApplication = "CEmpEngineBase::GetAppInfo result=throw";
  const std::string noWidget = "CEmpEngineBase::GetAppInfo nth=2 result=throw";
  const std::string noState = "ISourceControl::GetSourceState result=throw";
  expect({{"SetWindow", {"0"}, "TVServiceAPI::CreateDataControl result=throw", "int 0", "0"},
          {"GetSource", {"0"}, noState, "int -1", "-1"},
          {"SetTVMode", {"1"}, noApplication, "int -1", "-1"},
          {"SetChannel", {"8", "0"}, noApplication, "int 0", "0"},
          {"SetChannel_PTC", {"35"}, noApplication, "int 0", "0"},
          {"SetChannel_Seek", {"3", "0"}, noApplication, "int 0", "0"},
          {"SetChannelByServiceid", {"282"}, noApplication, "int 0", "0"},
          {"SetChannelDirect", {"35", "2", "0", "1"}, noApplication, "int 0", "0"},
          {"SetDVBSIChannelDirectEx", {"{}", "0"}, "ISatellite::LookupTransponder result=throw", "int 0", "0"},
          {"SetSource", {"0", "0"}, "vconf_get_int result=throw", "int 0", "0"}});
  for (const std::string& words : {noState, noApplication, noWidget}) {
    showInput(virtualtv::SOURCE_STATE_SHOWN, 5, 8);
    expect({{"SetSource", {"31", "0"}, words, "int 0", "0"}});
  }
  showInput(virtualtv::SOURCE_STATE_SHOWN, 5, 8);
  expect({{"SetChannelByServiceid", {"282"}, "ISourceControl::SetSource result=throw", "int 0", "0"}});
}

}  // namespace

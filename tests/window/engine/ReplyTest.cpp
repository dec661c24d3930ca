// SPDX-License-Identifier: MIT
// What each command answers, by the worker's result.
#include "support/Channels.h"
#include "support/LogLines.h"

namespace {

using support::Lines;

struct Case {
  std::string command;
  Lines parameters;
  std::string fault;  ///< none when empty
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

TEST_F(ReplyTest, SetWindowAnswersTheResult) {
  expect({{"SetWindow", {"1"}, "", "int 1", "1"},
          {"SetWindow", {"0"}, "TVServiceAPI::CreateVideoControl result=1", "int 0", "0"},
          {"SetWindow", {"0"}, "", "int 1", "1"}});
}

TEST_F(ReplyTest, GetSourceAnswersTheSourceOrTheNegativeResult) {
  showInput(virtualtv::SOURCE_STATE_SHOWN, 5, 8);
  expect({{"GetSource", {"0"}, "", "int 20", "1"},
          {"GetSource", {"0"}, "ISourceControl::GetSourceState result=0", "int 43", "1"},
          {"GetSource", {"0"}, "ISourceControl::GetCurrentSourceInfo result=0", "int -1", "-1"},
          {"GetSource", {"6"}, "", "int 20", "1"}});
}

TEST_F(ReplyTest, GetSourceAnswersItsPresetForAResultOfZero) {
  expect({{"GetSource", {"6"}, "vconf_get_int result=-1", "int 101", "0"}});
}

TEST_F(ReplyTest, GetSourceAnswersANegativeSourceThatIsStored) {
  setSetting("db/emp/previousmainsource", -5);
  expect({{"GetSource", {"8"}, "", "int -5", "1"}});
}

TEST_F(ReplyTest, GetPreviousSourceAnswersTheSourceOrTheNegativeResult) {
  showInput(virtualtv::SOURCE_STATE_SHOWN, 5, 8);
  expect({{"GetPreviousSource", {}, "", "int 24", "1"},
          {"GetPreviousSource", {}, "ISourceControl::GetPreviousSourceInfo result=0", "int -1", "-1"}});
}

TEST_F(ReplyTest, GetSourceStateAnswersTheStateOrTheNegativeResult) {
  expect({{"GetSourceState", {}, "", "int 2", "1"},
          {"GetSourceState", {}, "ISourceControl::GetSourceState out.state=-1", "int -1", "1"},
          {"GetSourceState", {}, "ISourceControl::GetSourceState out.state=0", "int 0", "1"},
          {"GetSourceState", {}, "ISourceControl::GetSourceState result=0", "int -1", "-1"}});
}

TEST_F(ReplyTest, FindChannelAnswersTheResult) {
  expect({{"FindChannel", {"0", "1"}, "", "int 1", "1"},
          {"FindChannel", {"0", "1"}, "TCNavigationModeHelper::GetNavigationCriteria result=0", "int 0", "0"}});
}

TEST_F(ReplyTest, GetTvModeAlwaysAnswersTheMode) {
  expect({{"GetTVMode", {}, "", "int 1", "1"},
          {"GetTVMode", {}, "IServiceNavigation::GetTvMode result=5", "int 1", "5"},
          {"GetTVMode", {}, "IServiceNavigation::GetTvMode out.mode=2,19", "int 4", "1"},
          {"GetTVMode", {}, "IServiceNavigation::GetTvMode result=unwritten", "int 0", "1"},
          {"GetTVMode", {}, "IServiceNavigation::GetTvMode result=-3", "int -1", "-1"}});
}

TEST_F(ReplyTest, SetTvModeAnswersTheResult) {
  expect({{"SetTVMode", {"1"}, "", "int 1", "1"},
          {"SetTVMode", {"1"}, "IServiceNavigation::SetTVMode result=7", "int 1", "1"},
          {"SetTVMode", {"1"}, "IServiceNavigation::SetTVMode result=0", "int -1", "-1"}});
}

TEST_F(ReplyTest, ServiceIdsAnswerTheTextWhichStaysEmptyForAResultOfZero) {
  expect({{"GetChannel_ServiceId", {"0"}, "", "ascii 281", "1"},
          {"GetChannel_ServiceId", {"9"}, "", "int -1", "-1"},
          {"GetChannel_ServiceId", {"99", "0", "0"}, "", "ascii", "0"},
          {"GetChannel_ServiceId", {"7", "0", "0"}, "IService::FindService result=0", "ascii", "0"},
          {"GetStartChannel_ServiceId", {}, "", "ascii 281", "1"},
          {"GetStartChannel_ServiceId", {}, "IServiceNavigation::GetStartService result=0", "ascii", "0"}});
}

TEST_F(ReplyTest, AServiceIdMayHaveAll64Bits) {
  expect({{"GetStartChannel_ServiceId",
           {},
           "IServiceNavigation::GetStartService out.serviceId=18446744073709551615",
           "ascii 18446744073709551615",
           "1"}});
}

TEST_F(ReplyTest, NamesAnswerTheUnitsBehindTheByteOrderMark) {
  expect({{"GetCurrentChannel_Name", {}, "", "unicode \"News 24\"", "1"},
          {"GetCurrentChannel_ServiceName", {}, "", "unicode \"News 24\"", "1"},
          {"GetChannel_Name", {"1"}, "", "unicode \"Radio 5\"", "1"},
          {"GetChannel_ServiceName", {"1"}, "", "unicode \"Radio 5\"", "1"},
          {"GetStartChannel_Name", {}, "", "unicode \"News 24\"", "1"}});
}

TEST_F(ReplyTest, AnEmptyNameIsTheEmptyTextButForGetChannelName) {
  expect({{"GetChannel_Name", {"2"}, "", "int -1", "-1"},
          {"GetChannel_ServiceName", {"2"}, "", "unicode \"\"", "1"},
          {"GetCurrentChannel_Name", {}, "IServiceNavigation::GetCurrentService out.service={}", "unicode \"\"", "1"},
          {"GetCurrentChannel_ServiceName",
           {},
           "IServiceNavigation::GetCurrentService out.service={12=1}",
           "unicode \"\"",
           "1"},
          {"GetStartChannel_Name", {}, "IService::FindService out.service={}", "unicode \"\"", "1"}});
}

TEST_F(ReplyTest, ALongNameIsCutWhereItsBufferEnds) {
  const std::string name = "\"" + std::string(300, 'n') + "\"";
  const std::string cut = "unicode \"" + std::string(255, 'n') + "\"";
  expect(
      {{"GetCurrentChannel_Name", {}, "IServiceNavigation::GetCurrentService out.service={16=" + name + "}", cut, "1"},
       {"GetStartChannel_Name", {}, "IService::FindService out.service={16=" + name + "}", cut, "1"}});
}

TEST_F(ReplyTest, ANegativeResultIsTheAnswerOfEveryQuery) {
  const std::string noCurrent = "IServiceNavigation::GetCurrentService result=0";
  const std::string noStart = "IService::FindService result=0";
  for (const char* command :
       {"GetCurrentChannel_Major", "GetCurrentChannel_Minor", "GetCurrentChannel_Name", "GetCurrentChannel_OriginNetID",
        "GetCurrentChannel_ProgramNumber", "GetCurrentChannel_PTC", "GetCurrentChannel_ServiceName",
        "GetCurrentChannel_TransportStreamID", "GetCurrentChannel_Type"}) {
    expect({{command, {}, noCurrent, "int -1", "-1"}});
  }
  for (const char* command : {"GetStartChannel_Type", "GetStartChannel_Major", "GetStartChannel_Minor",
                              "GetStartChannel_Name", "GetStartChannel_Info"}) {
    expect({{command, {}, noStart, "int -1", "-1"}});
  }
}

TEST_F(ReplyTest, DocumentsAnswerTheTextOrTheResult) {
  const std::string noCurrent = "IServiceNavigation::GetCurrentService result=0";
  expect({{"GetChannel_OnTVJson", {"9"}, "", "int -1", "-1"},
          {"GetCurrentChannelInfo", {}, noCurrent, "int -1", "-1"},
          {"GetCurrentChannel", {}, noCurrent, "int -1", "-1"},
          {"GetPreviousChannelInfo", {}, "IService::FindService result=0", "int -1", "-1"},
          {"GetStartChannel_Info", {}, "IServiceNavigation::GetStartService result=0", "int -1", "-1"}});
  for (const char* command : {"GetCurrentChannelInfo", "GetCurrentChannel", "GetPreviousChannelInfo",
                              "GetStartChannel_Info", "GetFullChannelList"}) {
    EXPECT_EQ(ask(command).text().substr(0, 2), "{\n") << command;
    EXPECT_EQ(finished(), "1");
  }
}

TEST_F(ReplyTest, AFullChannelListThatCannotBeHadIsMinusOneWhateverTheResult) {
  expect({{"GetFullChannelList", {}, "IServiceNavigation::GetTvMode result=0", "int -1", "0"},
          {"GetFullChannelList", {}, "IServiceNavigation::GetServiceList result=0", "int -1", "0"}});
}

TEST_F(ReplyTest, AnAttachedTextThatIsEmptyIsTheEmptyText) {
  expect({{"GetChannel_OnTVJson", {"0"}, "", "ascii", "1"}});
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

/// The line before the finish line.
std::string lastButOne(const Lines& lines) {
  return lines.size() < 2 ? "" : lines[lines.size() - 2];
}

TEST_F(ReplyTest, RowsTellOfNoDocumentThatCouldBeHad) {
  ASSERT_EQ(execute("FindChannel", {"0", "1"}), "int 1");
  const std::vector<std::pair<std::string, Lines>> commands{
      {"GetChannel_OnTVJson", {"0"}}, {"GetCurrentChannelInfo", {}}, {"GetCurrentChannel", {}}};
  for (const auto& [command, parameters] : commands) {
    forget();
    execute(command, parameters);
    const Lines lines = logs();
    ASSERT_FALSE(lines.empty());
    EXPECT_NE(lines.back().find("Finish result[1]"), std::string::npos) << lines.back();
    EXPECT_EQ(lastButOne(lines).find("Fail to get "), std::string::npos) << command;
  }
}

TEST_F(ReplyTest, RowsTellOfDocumentsThatCouldNotBeHad) {
  execute("GetChannel_OnTVJson", {"9"});
  EXPECT_EQ(lastButOne(logs()), "0 Fail to get Json string");
  fault("IServiceNavigation::GetCurrentService always result=0");
  for (const char* command : {"GetCurrentChannelInfo", "GetCurrentChannel"}) {
    execute(command);
    EXPECT_EQ(lastButOne(logs()), "0 Fail to get current channel information") << command;
  }
  for (const char* command : {"GetPreviousChannelInfo", "GetStartChannel_Info", "GetFullChannelList"}) {
    fault("IServiceNavigation::GetTvMode result=0");
    fault("IServiceNavigation::GetStartService result=0");
    execute(command);
    EXPECT_EQ(lastButOne(logs()).find("Fail to get "), std::string::npos) << command;
    clearFaults();
  }
}

TEST_F(ReplyTest, GetCurrentChannelIsAnAliasOfGetCurrentChannelInfo) {
  forget();
  const std::string info = ask("GetCurrentChannelInfo").text();
  const Lines infoCalls = calls();
  const Lines infoLogs = logs();
  EXPECT_EQ(ask("GetCurrentChannel").text(), info);
  EXPECT_EQ(calls(), infoCalls);
  const Lines aliasLogs = logs();
  ASSERT_EQ(aliasLogs.size(), infoLogs.size());
  EXPECT_EQ(Lines(aliasLogs.begin() + 1, aliasLogs.end() - 1), Lines(infoLogs.begin() + 1, infoLogs.end() - 1));
}

}  // namespace

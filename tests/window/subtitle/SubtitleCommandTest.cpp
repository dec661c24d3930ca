// The commands of subtitles through the engine: what they read as parameters, what they answer.
#include "Subtitle.h"

namespace {

using reports::WriterFault;
using subtitle::element;
using support::commandLogs;
using support::join;
using support::Lines;
using tracks::document;
using virtualtv::WindowId;

const std::string listCommand = "GetSubtitleInfo";
const std::string currentCommand = "GetCurrentSubtitle";
const std::string changeCommand = "ChangeSubtitle";

const std::string listFailed = "0 Fail to get the subtitle information";
const std::string currentFailed = "0 Fail to GetCurrentSubtitle information";

class SubtitleCommand : public tracks::TrackCommand {
 protected:
  void SetUp() override {
    TrackCommand::SetUp();
    virtualtv::Service service;
    service.subtitles = subtitle::threeTracks;
    showTv(service);
  }
};

// GetSubtitleInfo: the text, whatever the result, but -1 where the ISP source left none.

TEST_F(SubtitleCommand, SubtitlesAreADocument) {
  const std::string text =
      document({{"NumOfSubtitle", "3"}}, "subtitle", {element("0", "41"), element("1", "51"), element("2", "61")});
  EXPECT_EQ(ask(listCommand, {"x", "1"}).text(), text);
  const Lines made = calls();
  EXPECT_EQ(made.front(), tracks::tvTold);
  EXPECT_EQ(made.back(), tracks::tvTold) << "and once more for the answer";
  EXPECT_EQ(logs(), commandLogs(listCommand, {"x", "1"},
                                join({tracks::onTv,
                                      {"3 Current service Id = 281", "3 Size Of HybridSBT is 3.",
                                       "3 CEmpTaskWindow::GetSubtitleInfo ::jsonstr =>[" + text + "]",
                                       "0 value of GetSubtitleInfo [" + text + "]"},
                                      tracks::onTv}),
                                1));
}

TEST_F(SubtitleCommand, SubtitlesThatTheTvServiceCannotTellAreAnEmptyText) {
  for (const std::string words : {"IServiceNavigation::GetTvMode result=2", "ServiceDataAux::GetHybridSBTSize result=0",
                                  "IServiceNavigation::GetCurrentServiceInfo result=throw"}) {
    EXPECT_EQ(executeUnder(words, listCommand), "ascii") << words;
    const Lines lines = ownLogs();
    EXPECT_EQ(lines[lines.size() - 2], listFailed) << words;
    EXPECT_NE(lines.back().find("Finish result[-1]."), std::string::npos) << words;
  }
}

TEST_F(SubtitleCommand, SubtitlesThatTheSecondaryStackCannotTellAreADocument) {
  showIsp({}, subtitle::fiveEntries);
  const std::string text = document({{"NumOfSubtitle", "0"}, {"NumOfTTX", "0"}, {"NumOfTTXSubtitle", "0"}}, "subtitle");
  for (const std::string words : {"GetInstance result=null", "GetTotalNumOfSubtitle result=1",
                                  "GetTotalNumOfSubtitle result=throw", "GetDVBSubtitleInfo result=throw"}) {
    forget();
    fault("CD2tvMgrProxy::" + words);
    EXPECT_EQ(ask(listCommand).text(), text) << words;
    EXPECT_TRUE(faultsHit()) << words;
    clearFaults();
    const Lines lines = ownLogs();
    EXPECT_EQ(lines[lines.size() - 2], listFailed) << words;
    EXPECT_NE(lines.back().find("Finish result[-1]."), std::string::npos) << words;
  }
}

TEST_F(SubtitleCommand, SubtitlesAreMinusOneWhereTheIspSourceLeavesNoText) {
  showIsp({}, subtitle::fiveEntries);
  const WriterFault writer;
  EXPECT_EQ(execute(listCommand), "int -1");
  EXPECT_EQ(finished(), "-1");
}

TEST_F(SubtitleCommand, WhetherTheSourceIsIspIsAskedAnewForTheAnswer) {
  fault("vconf_get_str nth=2 result=isp-service");
  fault("IServiceNavigation::GetTvMode result=0");
  EXPECT_EQ(execute(listCommand), "int -1") << "the worker asked the TV service, which left no text";
  EXPECT_TRUE(faultsHit());
  clearFaults();
  showIsp({}, {});
  fault("vconf_get_str nth=2 result=tv-service");
  const WriterFault writer;
  EXPECT_EQ(execute(listCommand), "ascii") << "and the other way round";
  EXPECT_TRUE(faultsHit());
}

TEST_F(SubtitleCommand, WithoutInterfacesSubtitlesAreAnEmptyText) {
  close();
  fault("TVServiceAPI::CreateDataControl always result=null");
  ASSERT_TRUE(open());
  EXPECT_EQ(execute(listCommand), "ascii");
  EXPECT_EQ(finished(), "0");
  EXPECT_EQ(execute(currentCommand), "int -1");
  EXPECT_EQ(finished(), "0");
  EXPECT_EQ(execute(changeCommand, {"1"}), "int -1");
  EXPECT_EQ(finished(), "-1");
}

// GetCurrentSubtitle: always the number, -1 where nobody wrote it.

TEST_F(SubtitleCommand, TheSubtitleInUseIsALanguage) {
  ASSERT_TRUE(tv().selectSubtitle(WindowId::main, 2));
  forget();
  EXPECT_EQ(execute(currentCommand, {"x"}), "int 61");
  EXPECT_EQ(ownLogs(),
            commandLogs(currentCommand, {"x"}, {"3 language:[3d] ", "0 value of GetCurrentSubtitle is  [61]"}, 1));
  EXPECT_EQ(executeUnder("IDataControl::GetCurrentHybridSBT result=1 out.lang=-2", currentCommand), "int -2");
}

TEST_F(SubtitleCommand, ASubtitleInUseThatIsNotKnownIsMinusOne) {
  EXPECT_EQ(execute(currentCommand), "int -1") << "none is in use";
  EXPECT_EQ(ownLogs(),
            commandLogs(currentCommand, {}, {"0 CEmpTaskWindow::GetCurrentSubtitle:: Failed!!", currentFailed}, -1));
  for (const std::string way : {"result=0 out.lang=5", "result=-1", "result=throw"}) {
    EXPECT_EQ(executeUnder("IDataControl::GetCurrentHybridSBT " + way, currentCommand), "int -1") << way;
    EXPECT_EQ(finished(), "-1") << way;
  }
}

TEST_F(SubtitleCommand, OnTheIspSourceTheNumberIsAnsweredWhateverTheResult) {
  showIsp({}, subtitle::fiveEntries);
  ASSERT_TRUE(tv().selectIspSubtitle(1));
  forget();
  EXPECT_EQ(execute(currentCommand), "int 51");
  EXPECT_EQ(ownLogs(),
            commandLogs(currentCommand, {},
                        {"3 CEmpTaskWindow::GetCurrentSubtitle:: Start!!",
                         "3 CEmpTaskWindow::GetCurrentSubtitle:: Success!!", "0 value of GetCurrentSubtitle is  [51]"},
                        1));
  const std::string call = "CD2tvMgrProxy::GetCurrentSubtitle ";
  EXPECT_EQ(executeUnder(call + "result=-5", currentCommand), "int -1") << "and no failure code";
  EXPECT_EQ(ownLogs(),
            commandLogs(currentCommand, {},
                        {"3 CEmpTaskWindow::GetCurrentSubtitle:: Start!!",
                         "3 CEmpTaskWindow::GetCurrentSubtitle::CurrentSubtitleLanguage =>[-1]", currentFailed},
                        -5));
  EXPECT_EQ(executeUnder(call + "result=-5 out.language=9", currentCommand), "int 9");
  EXPECT_EQ(finished(), "-5");
  EXPECT_EQ(executeUnder(call + "result=1", currentCommand), "int -1") << "whose failure of one reads as a success";
  const Lines lines = logs();
  EXPECT_EQ(lines[lines.size() - 2], "0 value of GetCurrentSubtitle is  [-1]");
  EXPECT_NE(lines.back().find("Finish result[1]."), std::string::npos);
}

// ChangeSubtitle: the result.

TEST_F(SubtitleCommand, ASubtitleIsSelectedByItsPosition) {
  EXPECT_EQ(execute(changeCommand, {"2", "x"}), "int 1");
  EXPECT_EQ(tv().state()[WindowId::main].inUse.subtitle, 2);
  EXPECT_EQ(ownLogs(),
            commandLogs(
                changeCommand, {"2", "x"},
                {"3  this is ChangeSubtitle", "3 Current is not ISP Source.\n ", "0 Sucessful to ChangeSubtitle"}, 1));
}

TEST_F(SubtitleCommand, APositionThatHasNoSubtitleAnswersMinusOne) {
  const std::vector<std::pair<std::string, std::string>> positions{
      {"3", "3"}, {"-1", "ffffffff"}, {"2147483647", "7fffffff"}, {"-2147483648", "80000000"}, {"+300", "12c"}};
  for (const auto& [text, shown] : positions) {
    EXPECT_EQ(execute(changeCommand, {text}), "int -1") << text;
    EXPECT_EQ(ownLogs(), commandLogs(changeCommand, {text},
                                     {"3  this is ChangeSubtitle", "3 Current is not ISP Source.\n ",
                                      "0 Fail to ChangeSubtitle [0x" + shown + "]"},
                                     -1));
  }
}

TEST_F(SubtitleCommand, APositionThatIsNoNumberAnswersZeroWithoutACall) {
  for (const std::string& text : support::noNumbers) {
    EXPECT_EQ(execute(changeCommand, {text, "1"}), "int 0") << '\'' << text << '\'';
    EXPECT_EQ(calls(), Lines());
    EXPECT_EQ(logs(), commandLogs(changeCommand, {text, "1"}, {}, 0));
  }
}

TEST_F(SubtitleCommand, OnTheIspSourceAFailureIsAnsweredWithTheStacksOwnNumber) {
  showIsp({}, subtitle::fiveEntries);
  EXPECT_EQ(execute(changeCommand, {"4"}), "int 1");
  EXPECT_EQ(finished(), "1");
  for (const std::string result : {"2", "-5", "2147483647", "-2147483648"}) {
    EXPECT_EQ(executeUnder("CD2tvMgrProxy::ChangeSubtitleLanguage result=" + result, changeCommand, {"1"}),
              "int " + result);
    const Lines lines = logs();
    EXPECT_EQ(lines[lines.size() - 2], "0 Fail to ChangeSubtitle [0x1]");
    EXPECT_NE(lines.back().find("Finish result[" + result + "]."), std::string::npos);
  }
  EXPECT_EQ(executeUnder("CD2tvMgrProxy::ChangeSubtitleLanguage result=1", changeCommand, {"1"}), "int 1");
  const Lines lines = logs();
  EXPECT_EQ(lines[lines.size() - 2], "0 Sucessful to ChangeSubtitle") << "though it failed";
}

}  // namespace

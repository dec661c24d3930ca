// The list of subtitles on the ISP source, from the secondary stack.
#include "Subtitle.h"

namespace {

using reports::notWritten;
using reports::parsed;
using reports::WriterFault;
using subtitle::element;
using subtitle::fiveEntries;
using subtitle::SubtitleTrack;
using support::caught;
using support::join;
using support::Lines;
using tracks::document;
using tracks::documentWith;
using tracks::Members;

const std::string operation = "GetSubtitleInfo";

/// The counts of a document: subtitles, teletext pages, teletext subtitle pages.
Members counts(const std::string& subtitles, const std::string& teletext, const std::string& teletextSubtitles) {
  return {{"NumOfSubtitle", subtitles}, {"NumOfTTX", teletext}, {"NumOfTTXSubtitle", teletextSubtitles}};
}
const std::string failureDocument = document(counts("0", "0", "0"), "subtitle");

const std::string begun = "3 GetSubtitleInfo Start!!";
const std::string totalFailed = "0 CEmpTaskWindow::GetSubtitleInfo GetTotalNumOfSubtitle fail to return  \n ";
const std::string empty =
    "3 CEmpTaskWindow::GetSubtitleInfo:: root items = arr_value : for NUll handling undefined case \n";
const std::string collected = "3 CEmpTaskWindow::GetSubtitleInfo :root[subtitle] = items\n ";
const std::string entryFailed = "0 CEmpTaskWindow::GetSubtitleInfo :pCHMgr->GetDVBSubtitleInf  call Fail. ";

/// What is logged of the counts.
Lines counted(const std::string& total, const std::string& subtitles, const std::string& teletext,
              const std::string& teletextSubtitles) {
  return {"3 CEmpTaskWindow::GetSubtitleInfo GetTotalNumOfSubtitle  sucessufully returned ::with  NumOfSubtitle =>[" +
              subtitles + "]",
          "3 CEmpTaskWindow::GetSubtitleInfo:: root[TotalSubtitleSize]==> [" + total + "]   ",
          "3 CEmpTaskWindow::GetSubtitleInfo:: root[NumOfSubtitle]==> [" + subtitles + "]  :: root[NumOfTTX]==> [" +
              teletext + "] :: root[NumOfTTXSubtitle]==> [" + teletextSubtitles + "]  "};
}
std::string position(const std::string& at) {
  return "3 CEmpTaskWindow::GetSubtitleInfo:: Index NO is :[" + at + "] ";
}
/// What is logged of an entry that can be read.
Lines entryTold(const std::string& at, const std::string& index, const std::string& lang) {
  return {
      position(at), "3 CEmpTaskWindow::GetSubtitleInfo :pCHMgr->GetDVBSubtitleInf  call Success. ",
      "3 CEmpTaskWindow::GetSubtitleInfo :sbtList[index]=> [" + index + "] and sbtList[lang] =>[" + lang + "] value  "};
}
std::string told(const std::string& text) {
  return "3 CEmpTaskWindow::GetSubtitleInfo ::jsonstr =>[" + text + "]";
}
std::string askEntry(const std::string& at, const std::string& entry) {
  return tracks::manager + "GetDVBSubtitleInfo(position=" + at + ") subtitle=" + entry + " -> 0";
}

class IspSubtitleList : public tracks::Telling<subtitle::SubtitleTest, &kel::CEmpTaskWindow::GetSubtitleInfo> {
 protected:
  void SetUp() override {
    SubtitleTest::SetUp();
    showIsp({}, fiveEntries);
  }
};

TEST_F(IspSubtitleList, TellsTheEntriesOfAllThreeKindsInOneArray) {
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, R"({
   "NumOfSubtitle" : 2,
   "NumOfTTX" : 2,
   "NumOfTTXSubtitle" : 1,
   "subtitle" : [
      {
         "index" : 0,
         "lang" : 41
      },
      {
         "index" : 1,
         "lang" : 51
      },
      {
         "index" : 2,
         "lang" : 61
      },
      {
         "index" : 3,
         "lang" : 71
      },
      {
         "index" : 4,
         "lang" : 81
      }
   ]
}
)");
  EXPECT_EQ(calls(), (Lines{tracks::ispTold, tracks::askManager + "made",
                            tracks::manager + "GetTotalNumOfSubtitle() subtitles=2 teletext=2 teletextSubtitles=1 -> 0",
                            askEntry("0", "0,41"), askEntry("1", "1,51"), askEntry("2", "2,61"), askEntry("3", "3,71"),
                            askEntry("4", "4,81")}));
  EXPECT_EQ(logs(), join({{tracks::onIsp, begun},
                          counted("5", "2", "2", "1"),
                          entryTold("0", "0", "41"),
                          entryTold("1", "1", "51"),
                          entryTold("2", "2", "61"),
                          entryTold("3", "3", "71"),
                          entryTold("4", "4", "81"),
                          {collected, told(text)}}));
}

TEST_F(IspSubtitleList, ReadsAsManyEntriesAsThereAreOfAllKinds) {
  const std::vector<std::tuple<std::string, std::string, std::string, std::size_t>> kinds{
      {"2", "3", "0", 5}, {"2", "0", "3", 5}, {"0", "0", "1", 1}, {"1", "0", "0", 1}, {"4", "5", "6", 15}};
  for (const auto& [subtitles, teletext, pages, total] : kinds) {
    const std::string words = "CD2tvMgrProxy::GetTotalNumOfSubtitle out.subtitles=" + subtitles +
                              " out.teletext=" + teletext + " out.teletextSubtitles=" + pages;
    clearFaults();
    fault("CD2tvMgrProxy::GetDVBSubtitleInfo always result=0 out.subtitle=9,8");
    fault(words);
    forget();
    EXPECT_EQ(tell(), 1) << words;
    EXPECT_EQ(text,
              document(counts(subtitles, teletext, pages), "subtitle", std::vector<Members>(total, element("9", "8"))));
    EXPECT_EQ(calls().size(), 3 + total);
  }
}

TEST_F(IspSubtitleList, WithoutEntriesHasAnEmptyArray) {
  showIsp({}, {});
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, failureDocument) << "which looks the same";
  const Json::Value root = parsed(text);
  EXPECT_EQ(root.getMemberNames(), (Lines{"NumOfSubtitle", "NumOfTTX", "NumOfTTXSubtitle", "subtitle"}));
  EXPECT_TRUE(root["subtitle"].isArray());
  EXPECT_EQ(logs(), join({{tracks::onIsp, begun}, counted("0", "0", "0", "0"), {empty, told(text)}}));
}

TEST_F(IspSubtitleList, AnEntryThatCannotBeReadIsCountedAndLeftOut) {
  showIsp({}, {fiveEntries[0], fiveEntries[1], fiveEntries[2]});
  for (const std::string& way : tracks::notZero) {
    EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetDVBSubtitleInfo nth=2 out.subtitle=7,7 " + way), 1) << way;
    EXPECT_EQ(text, document(counts("2", "1", "0"), "subtitle", {element("0", "41"), element("2", "61")})) << way;
    EXPECT_EQ(logs(), join({{tracks::onIsp, begun},
                            counted("3", "2", "1", "0"),
                            entryTold("0", "0", "41"),
                            {position("1"), entryFailed},
                            entryTold("2", "2", "61"),
                            {collected, told(text)}}));
  }
}

TEST_F(IspSubtitleList, TheArrayIsNullWhenNoEntryCanBeRead) {
  showIsp({}, {fiveEntries[0]});
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetDVBSubtitleInfo result=1"), 1);
  EXPECT_EQ(text, documentWith(counts("1", "0", "0"), "subtitle", "null"));
  EXPECT_TRUE(parsed(text).isMember("subtitle"));
  EXPECT_TRUE(parsed(text)["subtitle"].isNull());
  EXPECT_EQ(
      logs(),
      join({{tracks::onIsp, begun}, counted("1", "1", "0", "0"), {position("0"), entryFailed, collected, told(text)}}));
}

TEST_F(IspSubtitleList, NumbersAreUnsignedAndLoggedSigned) {
  showIsp({}, {fiveEntries[0]});
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetDVBSubtitleInfo out.subtitle=4294967295,2147483648"), 1);
  EXPECT_EQ(text, document(counts("1", "0", "0"), "subtitle", {element("4294967295", "2147483648")}));
  const Json::Value entry = parsed(text)["subtitle"][0];
  EXPECT_TRUE(entry["index"].isUInt());
  EXPECT_TRUE(entry["lang"].isUInt());
  EXPECT_EQ(logs(), join({{tracks::onIsp, begun},
                          counted("1", "1", "0", "0"),
                          entryTold("0", "-1", "-2147483648"),
                          {collected, told(text)}}));
}

TEST_F(IspSubtitleList, CountsAreUnsignedAndTheirSumIsCutToTheirSize) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetTotalNumOfSubtitle out.subtitles=4294967295 out.teletext=1 "
                      "out.teletextSubtitles=0"),
            1);
  EXPECT_EQ(text, document(counts("4294967295", "1", "0"), "subtitle"));
  EXPECT_TRUE(parsed(text)["NumOfSubtitle"].isUInt());
  EXPECT_EQ(logs(), join({{tracks::onIsp, begun}, counted("0", "-1", "1", "0"), {empty, told(text)}}));
}

TEST_F(IspSubtitleList, WhatIsNotWrittenIsZero) {
  showIsp({}, {fiveEntries[0], fiveEntries[1]});
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetDVBSubtitleInfo nth=2 result=unwritten"), 1);
  EXPECT_EQ(text, document(counts("2", "0", "0"), "subtitle", {element("0", "41"), element("0", "0")}))
      << "nothing is left of the entry before";
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetTotalNumOfSubtitle result=unwritten"), 1);
  EXPECT_EQ(text, failureDocument);
}

TEST_F(IspSubtitleList, HoldsTwoHundredEntries) {
  std::vector<SubtitleTrack> many;
  std::vector<Members> elements;
  for (int at = 0; at < 200; ++at) {
    many.push_back({1000 + at, at, virtualtv::KIND_DVB, true});
    elements.push_back(element(std::to_string(at), std::to_string(at)));
  }
  showIsp({}, many);
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, document(counts("200", "0", "0"), "subtitle", elements));
}

TEST_F(IspSubtitleList, CountsThatFailAnswerMinusOneWithADocument) {
  for (const std::string result : {"1", "-1", "2", "-2147483648"}) {
    EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetTotalNumOfSubtitle out.subtitles=9 result=" + result), -1) << result;
    EXPECT_EQ(text, failureDocument) << result;
    EXPECT_EQ(calls().size(), 3U) << "no entry is asked for";
    EXPECT_EQ(logs(), (Lines{tracks::onIsp, begun, totalFailed}));
  }
}

TEST_F(IspSubtitleList, WithoutAManagerAnswersMinusOneWithADocument) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetInstance result=null"), -1);
  EXPECT_EQ(text, failureDocument);
  const Json::Value root = parsed(text);
  for (const char* const name : {"NumOfSubtitle", "NumOfTTX", "NumOfTTXSubtitle"}) EXPECT_TRUE(root[name].isInt());
  EXPECT_TRUE(root["subtitle"].isArray());
  EXPECT_EQ(calls(), (Lines{tracks::ispTold, tracks::askManager + "null [fault]"})) << "nothing is called through it";
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, begun, tracks::noManager}));
}

TEST_F(IspSubtitleList, AManagerThatGoesAwayBetweenTwoCallsFailsTheSecond) {
  ASSERT_EQ(tell(), 1);
  tv().adjust([](virtualtv::TvState& state) { state.isp.present = false; });
  EXPECT_EQ(tell(), -1);
  EXPECT_EQ(text, failureDocument);
}

TEST_F(IspSubtitleList, AnExceptionAnswersMinusOneWithADocument) {
  const std::vector<std::pair<std::string, Lines>> steps{
      {"CD2tvMgrProxy::GetInstance", {begun, caught(operation, "CD2tvMgrProxy::GetInstance"), tracks::noManager}},
      {"CD2tvMgrProxy::GetTotalNumOfSubtitle", {begun, caught(operation, "CD2tvMgrProxy::GetTotalNumOfSubtitle")}},
      {"CD2tvMgrProxy::GetDVBSubtitleInfo",
       join({{begun},
             counted("5", "2", "2", "1"),
             {position("0"), caught(operation, "CD2tvMgrProxy::GetDVBSubtitleInfo")}})}};
  for (const auto& [call, lines] : steps) {
    EXPECT_EQ(tellUnder(call + " result=throw"), -1) << call;
    EXPECT_EQ(text, failureDocument) << call;
    EXPECT_EQ(logs(), join({{tracks::onIsp}, lines}));
  }
}

TEST_F(IspSubtitleList, ADocumentThatCannotBeWrittenAnswersMinusOneAndLeavesTheText) {
  showIsp({}, {});
  const WriterFault writer;
  EXPECT_EQ(tell(), -1);
  EXPECT_TRUE(writer.hit());
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), join({{tracks::onIsp, begun}, counted("0", "0", "0", "0"), {empty, notWritten(operation)}}));
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetInstance result=null"), -1);
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, begun, tracks::noManager, notWritten(operation)}));
}

TEST_F(IspSubtitleList, NothingOfTheTvServiceIsNeeded) {
  worker.svc_datacontrol_proxy = nullptr;
  worker.svc_navi_proxy = nullptr;
  worker.servicedata_aux_proxy = nullptr;
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(worker.svc_datacontrol_proxy, nullptr);
  EXPECT_EQ(worker.svc_navi_proxy, nullptr);
  EXPECT_EQ(worker.servicedata_aux_proxy, nullptr);
}

}  // namespace

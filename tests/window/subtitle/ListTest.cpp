// SPDX-License-Identifier: MIT
// The list of subtitles, from either TV stack, including rare answers of the set.
#include "Subtitle.h"

namespace {

using reports::notWritten;
using reports::parsed;
using reports::WriterFault;
using subtitle::element;
using subtitle::fiveEntries;
using support::caught;
using support::join;
using support::Lines;
using tracks::document;
using tracks::Members;

const std::string operation = "GetSubtitleInfo";

// From the TV service.

const std::string idTold = "3 Current service Id = 281";
const std::string noSize = "0 Get size of HybridSBT fails";
const std::string sizeTold = "3 Size Of HybridSBT is 3.";

/// The list of a service with three tracks, of which these can be read.
std::string ofThree(const std::vector<Members>& elements) {
  return document({{"NumOfSubtitle", "3"}}, "subtitle", elements);
}
const std::string all = ofThree({element("0", "41"), element("1", "51"), element("2", "61")});

using TvSubtitleList = tracks::Telling<subtitle::SubtitleTest, &kel::CEmpTaskWindow::GetSubtitleInfo>;

TEST_F(TvSubtitleList, ATrackThatCannotBeReadIsLeftOutSilently) {
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(tellUnder("ServiceDataAux::GetHybridSBT nth=2 " + way), 1) << way;
    EXPECT_EQ(text, ofThree({element("0", "41"), element("2", "61")})) << way;
    EXPECT_EQ(logs().size(), tracks::onTv.size() + 3);
  }
}

TEST_F(TvSubtitleList, ALanguageThatIsNotWrittenIsThatOfTheTrackBefore) {
  EXPECT_EQ(tellUnder("ServiceDataAux::GetHybridSBT nth=2 result=unwritten"), 1);
  EXPECT_EQ(text, ofThree({element("0", "41"), element("1", "41"), element("2", "61")}));
  EXPECT_EQ(tellUnder("ServiceDataAux::GetHybridSBT result=unwritten"), 1);
  EXPECT_EQ(parsed(text)["subtitle"][0]["lang"].asInt(), -1) << "and -1 before any";
  fault("ServiceDataAux::GetHybridSBT out.lang=7 result=0");
  fault("ServiceDataAux::GetHybridSBT nth=2 result=unwritten");
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, ofThree({element("1", "7"), element("2", "61")})) << "also where that one failed";
}

TEST_F(TvSubtitleList, ATrackThatIsNotWrittenIsHandedOverAsZerosEachTime) {
  const std::string ask = "ServiceDataAux[main#1]::GetHybridSBT(serviceId=281, index=";
  tellUnder("ServiceDataAux::GetHybridSBT result=unwritten");
  EXPECT_EQ(callsOf("::GetHybridSBT").front(), ask + "0) lang=-1 subtitle=0,0 -> 1 [fault]");
  tellUnder("ServiceDataAux::GetHybridSBT nth=3 result=unwritten");
  EXPECT_EQ(callsOf("::GetHybridSBT").back(), ask + "2) lang=51 subtitle=0,0 -> 1 [fault]")
      << "nothing is left of the track before";
}

TEST_F(TvSubtitleList, TheLanguageIsSigned) {
  EXPECT_EQ(tellUnder("ServiceDataAux::GetHybridSBT out.lang=-2147483648"), 1);
  EXPECT_EQ(text, ofThree({element("0", "-2147483648"), element("1", "51"), element("2", "61")}));
}

TEST_F(TvSubtitleList, AnyResultAboveZeroSucceeds) {
  for (const char* const words :
       {"ServiceDataAux::GetHybridSBT always result=2", "ServiceDataAux::GetHybridSBTSize result=2",
        "IServiceNavigation::GetCurrentServiceInfo result=2",
        "TCNavigationModeHelper::GetNavigationCriteria result=-1"}) {  // fails with 0 only
    EXPECT_EQ(tellUnder(words), 1) << words;
    EXPECT_EQ(text, all) << words;
  }
}

TEST_F(TvSubtitleList, WhatIsNotWrittenReadsAsUnknown) {
  EXPECT_EQ(tellUnder("ServiceDataAux::GetHybridSBTSize result=unwritten"), 1);
  EXPECT_EQ(text, document({{"NumOfSubtitle", "0"}}));
  EXPECT_EQ(tellUnder("IServiceNavigation::GetCurrentServiceInfo result=unwritten"), -1);
  EXPECT_EQ(calls().back(), "ServiceDataAux[main#1]::GetHybridSBTSize(serviceId=18446744073709551615) size=0 -> 0");
  EXPECT_EQ(logs(), join({tracks::onTv, {"3 Current service Id = 18446744073709551615", noSize}}));
  tellUnder("IServiceNavigation::GetTvMode result=unwritten");
  EXPECT_NE(calls()[2].find("(mode=-1,-1, navigation=0,"), std::string::npos);
}

TEST_F(TvSubtitleList, AFailureLeavesTheText) {
  const auto told = [this] { return tell(); };
  const std::string ask = "IServiceNavigation::GetCurrentServiceInfo";
  const std::string count = "ServiceDataAux::GetHybridSBTSize";
  const Lines below{"result=0", "result=-1"};
  expectEach(tracks::onTv,
             {{"IServiceNavigation::GetTvMode",
               -1,
               {"0 GetTvMode failed."},
               {"result=0", "result=-1", "result=2", "result=2147483647"}},  // succeeds with 1 only
              {"TCNavigationModeHelper::GetNavigationCriteria result=0", -1, {"0 Get navigation criteria failed"}},
              {ask, -1, {"0 GetCurrentServiceInfo failed."}, below},
              {count + " out.size=2", -1, {idTold, noSize}, below}},
             told);
  const std::vector<std::pair<std::string, Lines>> steps{{"IServiceNavigation::GetTvMode", {}},
                                                         {"TCNavigationModeHelper::GetNavigationCriteria", {}},
                                                         {ask, {}},
                                                         {count, {idTold}},
                                                         {"ServiceDataAux::GetHybridSBT", {idTold, sizeTold}}};
  for (const auto& [call, lines] : steps) {
    expectEach(tracks::onTv, {{call + " result=throw", -1, join({lines, {caught(operation, call)}})}}, told);
  }
  failsWithout(worker.servicedata_aux_proxy, "ServiceDataAux",
               join({tracks::onTv,
                     {idTold, "0 servicedata_aux_proxy is NULL, t_eWindow =0",
                      "0 CEmpTaskWindow servicedata_aux_proxy create is FAIL!!", "0 ServiceDataAuxproxy is NULL"}}),
               told, -1);
  failsWithout(worker.svc_navi_proxy, "CreateServiceNavigation",
               join({tracks::onTv, channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}), told, 0);
  failsWithout(worker.svc_datacontrol_proxy, "CreateDataControl", join({tracks::onTv, subtitle::dataControlMissing}),
               told, 0);
  EXPECT_EQ(text, untouched);
}

TEST_F(TvSubtitleList, ADocumentThatCannotBeWrittenAnswersMinusOneAndLeavesTheText) {
  const WriterFault writer;
  EXPECT_EQ(tell(), -1);
  EXPECT_TRUE(writer.hit());
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), join({tracks::onTv, {idTold, sizeTold, notWritten(operation)}}));
}

// From the secondary stack: a document on every path.

/// The list of a stack with these numbers of subtitles, teletext pages and pages of teletext subtitles.
std::string ofFive(const std::vector<Members>& elements, const std::string& subtitles = "2",
                   const std::string& teletext = "2", const std::string& teletextSubtitles = "1") {
  return document({{"NumOfSubtitle", subtitles}, {"NumOfTTX", teletext}, {"NumOfTTXSubtitle", teletextSubtitles}},
                  "subtitle", elements);
}
const std::string noEntries = ofFive({}, "0", "0", "0");
const Lines begunOnIsp{tracks::onIsp, "3 GetSubtitleInfo Start!!"};

/// The log lines of the counts.
Lines counted(const std::string& total, const std::string& subtitles, const std::string& teletext,
              const std::string& teletextSubtitles) {
  return {"3 CEmpTaskWindow::GetSubtitleInfo GetTotalNumOfSubtitle  sucessufully returned ::with  NumOfSubtitle =>[" +
              subtitles + "]",
          "3 CEmpTaskWindow::GetSubtitleInfo:: root[TotalSubtitleSize]==> [" + total + "]   ",
          "3 CEmpTaskWindow::GetSubtitleInfo:: root[NumOfSubtitle]==> [" + subtitles + "]  :: root[NumOfTTX]==> [" +
              teletext + "] :: root[NumOfTTXSubtitle]==> [" + teletextSubtitles + "]  "};
}

using IspSubtitleList = tracks::Telling<subtitle::IspSubtitleTest, &kel::CEmpTaskWindow::GetSubtitleInfo>;

TEST_F(IspSubtitleList, ReadsAsManyEntriesAsThereAreOfAllKinds) {
  const std::vector<std::tuple<std::string, std::string, std::string, std::size_t>> kinds{
      {"2", "3", "0", 5}, {"2", "0", "3", 5}, {"0", "0", "1", 1}, {"1", "0", "0", 1}, {"4", "5", "6", 15}};
  for (const auto& [subtitles, teletext, pages, total] : kinds) {
    clearFaults();
    fault("CD2tvMgrProxy::GetDVBSubtitleInfo always result=0 out.subtitle=9,8");
    fault("CD2tvMgrProxy::GetTotalNumOfSubtitle out.subtitles=" + subtitles + " out.teletext=" + teletext +
          " out.teletextSubtitles=" + pages);
    EXPECT_EQ(tell(), 1) << total;
    EXPECT_EQ(text, ofFive(std::vector<Members>(total, element("9", "8")), subtitles, teletext, pages));
  }
}

TEST_F(IspSubtitleList, AnEntryThatCannotBeReadIsLeftOut) {
  for (const std::string& way : tracks::notZero) {
    EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetDVBSubtitleInfo nth=2 out.subtitle=7,7 " + way), 1) << way;
    EXPECT_EQ(text, ofFive({element("0", "41"), element("2", "61"), element("3", "71"), element("4", "81")})) << way;
  }
}

TEST_F(IspSubtitleList, NumbersAreUnsignedAndLoggedSigned) {
  showIsp({}, {fiveEntries[0]});
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetDVBSubtitleInfo out.subtitle=4294967295,2147483648"), 1);
  EXPECT_EQ(text, ofFive({element("4294967295", "2147483648")}, "1", "0", "0"));
  EXPECT_EQ(logs()[7],
            "3 CEmpTaskWindow::GetSubtitleInfo :sbtList[index]=> [-1] and sbtList[lang] =>[-2147483648] value  ");
}

TEST_F(IspSubtitleList, TheSumOfTheCountsIsCutToTheirSize) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetTotalNumOfSubtitle out.subtitles=4294967295 out.teletext=1 "
                      "out.teletextSubtitles=0"),
            1);
  EXPECT_EQ(text, ofFive({}, "4294967295", "1", "0"));
  const Lines lines = logs();
  EXPECT_EQ(Lines(lines.begin() + 2, lines.begin() + 5), counted("0", "-1", "1", "0"));
}

TEST_F(IspSubtitleList, WhatIsNotWrittenIsZero) {
  showIsp({}, {fiveEntries[0], fiveEntries[1]});
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetDVBSubtitleInfo nth=2 result=unwritten"), 1);
  EXPECT_EQ(text, ofFive({element("0", "41"), element("0", "0")}, "2", "0", "0"))
      << "nothing is left of the entry before";
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetTotalNumOfSubtitle result=unwritten"), 1);
  EXPECT_EQ(text, noEntries);
}

TEST_F(IspSubtitleList, AFailureAnswersMinusOneWithADocument) {
  const std::string count = "CD2tvMgrProxy::GetTotalNumOfSubtitle";
  const std::string read = "CD2tvMgrProxy::GetDVBSubtitleInfo";
  const auto told = [this] { return tell(); };
  expectEach(begunOnIsp,
             {{count + " out.subtitles=9",
               -1,
               {"0 CEmpTaskWindow::GetSubtitleInfo GetTotalNumOfSubtitle fail to return  \n "},
               {"result=1", "result=-1", "result=2", "result=-2147483648"}},
              {count + " result=throw", -1, {caught(operation, count)}},
              {read + " result=throw", -1,
               join({counted("5", "2", "2", "1"),
                     {"3 CEmpTaskWindow::GetSubtitleInfo:: Index NO is :[0] ", caught(operation, read)}})}},
             told, noEntries);
  expectWithoutManager(operation, begunOnIsp, {tracks::noManager}, told, -1, noEntries);
}

TEST_F(IspSubtitleList, ADocumentThatCannotBeWrittenAnswersMinusOneAndLeavesTheText) {
  const WriterFault writer;
  EXPECT_EQ(tell(), -1);
  EXPECT_TRUE(writer.hit());
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs().back(), notWritten(operation));
  expectEach(begunOnIsp, {{"CD2tvMgrProxy::GetInstance result=null", -1, {tracks::noManager, notWritten(operation)}}},
             [this] { return tell(); });
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

// The answer of the command when no document could be written.

class SubtitleListCommand : public tracks::TrackCommand {};

TEST_F(SubtitleListCommand, WhetherTheSourceIsIspIsAskedAnewForTheAnswer) {
  const WriterFault writer;
  expectIspAskedAnew(operation);
}

}  // namespace

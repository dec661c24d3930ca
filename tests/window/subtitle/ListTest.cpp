// The list of subtitles, from the TV service.
#include "Subtitle.h"

namespace {

using reports::notWritten;
using reports::parsed;
using reports::WriterFault;
using subtitle::element;
using subtitle::SubtitleTrack;
using support::caught;
using support::join;
using support::Lines;
using tracks::document;
using tracks::documentWith;
using tracks::Members;

const std::string operation = "GetSubtitleInfo";
const std::string noTracks = document({{"NumOfSubtitle", "0"}});

const std::string idTold = "3 Current service Id = 281";
const std::string noSize = "0 Get size of HybridSBT fails";

std::string sizeTold(const std::string& size) {
  return "3 Size Of HybridSBT is " + size + ".";
}
std::string told(const std::string& text) {
  return "3 CEmpTaskWindow::GetSubtitleInfo ::jsonstr =>[" + text + "]";
}
std::string askTrack(const std::string& index, const std::string& outcome) {
  return subtitle::aux + "GetHybridSBT(serviceId=281, index=" + index + ") " + outcome;
}

const std::string askMode = "IServiceNavigation[main#1]::GetTvMode() mode=0,1 -> 1";
const std::string askSize = subtitle::aux + "GetHybridSBTSize(serviceId=281) size=3 -> 1";

class SubtitleList : public tracks::Telling<subtitle::SubtitleTest, &kel::CEmpTaskWindow::GetSubtitleInfo> {};

TEST_F(SubtitleList, TellsEachTrackOfTheServiceOnScreen) {
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, R"({
   "NumOfSubtitle" : 3,
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
      }
   ]
}
)");
  EXPECT_EQ(channels::withoutConditions(calls()),
            (Lines{tracks::tvTold, askMode,
                   "TCNavigationModeHelper::GetNavigationCriteria(mode=0,1, navigation=0, "
                   "service=18446744073709551615) criteria=CRITERIA -> 1",
                   "IServiceNavigation[main#1]::GetCurrentServiceInfo(mode=0,1, where 115=0, where 1001=0, fetch 12) "
                   "service={12=281} -> 1",
                   askSize, askTrack("0", "lang=41 subtitle=0,270 -> 1"), askTrack("1", "lang=51 subtitle=0,271 -> 1"),
                   askTrack("2", "lang=61 subtitle=0,272 -> 1")}));
  EXPECT_EQ(logs(), join({tracks::onTv, {idTold, sizeTold("3"), told(text)}}));
}

TEST_F(SubtitleList, AServiceWithoutSubtitlesHasNoArray) {
  give({});
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, noTracks);
  const Json::Value root = parsed(text);
  EXPECT_EQ(root.getMemberNames(), Lines{"NumOfSubtitle"});
  EXPECT_TRUE(root["NumOfSubtitle"].isUInt());
  EXPECT_EQ(logs(), join({tracks::onTv, {idTold, sizeTold("0"), told(text)}}));
}

TEST_F(SubtitleList, ATrackThatCannotBeReadIsCountedAndLeftOutSilently) {
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(tellUnder("ServiceDataAux::GetHybridSBT nth=2 " + way), 1) << way;
    EXPECT_EQ(text, document({{"NumOfSubtitle", "3"}}, "subtitle", {element("0", "41"), element("2", "61")})) << way;
    EXPECT_EQ(logs(), join({tracks::onTv, {idTold, sizeTold("3"), told(text)}}));
  }
}

TEST_F(SubtitleList, TheArrayIsNullWhenNoTrackCanBeRead) {
  EXPECT_EQ(tellUnder("ServiceDataAux::GetHybridSBT always result=0"), 1);
  EXPECT_EQ(text, documentWith({{"NumOfSubtitle", "3"}}, "subtitle", "null"));
  EXPECT_TRUE(parsed(text).isMember("subtitle"));
  EXPECT_TRUE(parsed(text)["subtitle"].isNull());
}

TEST_F(SubtitleList, ALanguageThatIsNotWrittenIsThatOfTheTrackBefore) {
  EXPECT_EQ(tellUnder("ServiceDataAux::GetHybridSBT nth=2 result=unwritten"), 1);
  EXPECT_EQ(text, document({{"NumOfSubtitle", "3"}}, "subtitle",
                           {element("0", "41"), element("1", "41"), element("2", "61")}));
  EXPECT_EQ(tellUnder("ServiceDataAux::GetHybridSBT result=unwritten"), 1);
  EXPECT_EQ(parsed(text)["subtitle"][0]["lang"].asInt(), -1) << "and -1 before any";
}

TEST_F(SubtitleList, ATrackThatIsNotWrittenIsHandedOverAsZerosEachTime) {
  tellUnder("ServiceDataAux::GetHybridSBT result=unwritten");
  EXPECT_EQ(callsOf("::GetHybridSBT").front(), askTrack("0", "lang=-1 subtitle=0,0 -> 1 [fault]"));
  tellUnder("ServiceDataAux::GetHybridSBT nth=3 result=unwritten");
  EXPECT_EQ(callsOf("::GetHybridSBT").back(), askTrack("2", "lang=51 subtitle=0,0 -> 1 [fault]"))
      << "nothing is left of the track before";
}

TEST_F(SubtitleList, ALanguageThatAFailedTrackWroteIsCarriedOver) {
  clearFaults();
  forget();
  fault("ServiceDataAux::GetHybridSBT out.lang=7 result=0");
  fault("ServiceDataAux::GetHybridSBT nth=2 result=unwritten");
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, document({{"NumOfSubtitle", "3"}}, "subtitle", {element("1", "7"), element("2", "61")}));
}

TEST_F(SubtitleList, TheLanguageIsSignedAndTheIndexThePosition) {
  EXPECT_EQ(tellUnder("ServiceDataAux::GetHybridSBT always out.lang=-2147483648"), 1);
  EXPECT_EQ(text, document({{"NumOfSubtitle", "3"}}, "subtitle",
                           {element("0", "-2147483648"), element("1", "-2147483648"), element("2", "-2147483648")}));
  for (const Json::Value& track : parsed(text)["subtitle"]) {
    EXPECT_EQ(track.getMemberNames(), (Lines{"index", "lang"}));
    EXPECT_TRUE(track["index"].isUInt());
    EXPECT_TRUE(track["lang"].isInt());
  }
}

TEST_F(SubtitleList, AnyResultAboveZeroSucceeds) {
  EXPECT_EQ(tellUnder("ServiceDataAux::GetHybridSBT always result=2"), 1);
  EXPECT_EQ(parsed(text)["subtitle"].size(), 3U);
  EXPECT_EQ(tellUnder("ServiceDataAux::GetHybridSBTSize result=2"), 1);
  EXPECT_EQ(parsed(text)["subtitle"].size(), 3U);
  EXPECT_EQ(tellUnder("IServiceNavigation::GetCurrentServiceInfo result=2"), 1);
  EXPECT_EQ(tellUnder("TCNavigationModeHelper::GetNavigationCriteria result=-1"), 1) << "but here zero alone fails";
}

TEST_F(SubtitleList, HoldsTwoHundredTracks) {
  std::vector<SubtitleTrack> many;
  std::vector<Members> elements;
  for (int at = 0; at < 200; ++at) {
    many.push_back({1000 + at, at, virtualtv::KIND_DVB, true});
    elements.push_back(element(std::to_string(at), std::to_string(at)));
  }
  give(many);
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, document({{"NumOfSubtitle", "200"}}, "subtitle", elements));
}

TEST_F(SubtitleList, ATvModeIsReadByOneAlone) {
  for (const std::string result : {"0", "-1", "2", "2147483647"}) {
    EXPECT_EQ(tellUnder("IServiceNavigation::GetTvMode result=" + result), -1) << result;
    EXPECT_EQ(text, untouched) << result;
    EXPECT_EQ(calls().size(), 2U);
    EXPECT_EQ(logs(), join({tracks::onTv, {"0 GetTvMode failed."}}));
  }
}

TEST_F(SubtitleList, ATvModeThatIsNotWrittenIsAskedForAsNotKnown) {
  fault("IServiceNavigation::GetCurrentServiceInfo result=1 out.service={12=281}");
  fault("TCNavigationModeHelper::GetNavigationCriteria result=1");
  fault("IServiceNavigation::GetTvMode result=unwritten");
  EXPECT_EQ(tell(), 1);
  EXPECT_NE(calls()[2].find("(mode=-1,-1, navigation=0,"), std::string::npos);
}

TEST_F(SubtitleList, EachCallThatFailsEndsTheListAndLeavesTheText) {
  const std::vector<std::tuple<std::string, std::size_t, Lines>> steps{
      {"TCNavigationModeHelper::GetNavigationCriteria result=0", 3, {"0 Get navigation criteria failed"}},
      {"IServiceNavigation::GetCurrentServiceInfo result=0", 4, {"0 GetCurrentServiceInfo failed."}},
      {"IServiceNavigation::GetCurrentServiceInfo result=-1", 4, {"0 GetCurrentServiceInfo failed."}},
      {"ServiceDataAux::GetHybridSBTSize out.size=2 result=0", 5, {idTold, noSize}},
      {"ServiceDataAux::GetHybridSBTSize out.size=2 result=-1", 5, {idTold, noSize}}};
  for (const auto& [words, made, lines] : steps) {
    EXPECT_EQ(tellUnder(words), -1) << words;
    EXPECT_EQ(text, untouched) << words;
    EXPECT_EQ(calls().size(), made) << words;
    EXPECT_EQ(logs(), join({tracks::onTv, lines})) << words;
  }
}

TEST_F(SubtitleList, ASizeThatIsNotWrittenIsZero) {
  EXPECT_EQ(tellUnder("ServiceDataAux::GetHybridSBTSize result=unwritten"), 1);
  EXPECT_EQ(text, noTracks);
}

TEST_F(SubtitleList, AnExceptionAnswersMinusOneAndLeavesTheText) {
  const std::vector<std::pair<std::string, Lines>> steps{{"IServiceNavigation::GetTvMode", {}},
                                                         {"TCNavigationModeHelper::GetNavigationCriteria", {}},
                                                         {"IServiceNavigation::GetCurrentServiceInfo", {}},
                                                         {"ServiceDataAux::GetHybridSBTSize", {idTold}},
                                                         {"ServiceDataAux::GetHybridSBT", {idTold, sizeTold("3")}}};
  for (const auto& [call, lines] : steps) {
    EXPECT_EQ(tellUnder(call + " result=throw"), -1) << call;
    EXPECT_EQ(text, untouched) << call;
    EXPECT_EQ(logs(), join({tracks::onTv, lines, {caught(operation, call)}})) << call;
  }
}

TEST_F(SubtitleList, ADocumentThatCannotBeWrittenAnswersMinusOneAndLeavesTheText) {
  const WriterFault writer;
  EXPECT_EQ(tell(), -1);
  EXPECT_TRUE(writer.hit());
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), join({tracks::onTv, {idTold, sizeTold("3"), notWritten(operation)}}));
}

TEST_F(SubtitleList, WithoutDataControlAnswersZeroThoughTheListDoesNotUseIt) {
  failsWithout(
      worker.svc_datacontrol_proxy, "CreateDataControl", join({tracks::onTv, subtitle::dataControlMissing}),
      [this] { return tell(); }, 0);
  EXPECT_EQ(text, untouched);
}

TEST_F(SubtitleList, WithoutNavigationAnswersZero) {
  failsWithout(
      worker.svc_navi_proxy, "CreateServiceNavigation",
      join({tracks::onTv, channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}), [this] { return tell(); },
      0);
  EXPECT_EQ(text, untouched);
}

TEST_F(SubtitleList, WithoutServiceDataAnswersMinusOneOnceTheServiceIsKnown) {
  failsWithout(
      worker.servicedata_aux_proxy, "ServiceDataAux",
      join({tracks::onTv,
            {idTold, "0 servicedata_aux_proxy is NULL, t_eWindow =0",
             "0 CEmpTaskWindow servicedata_aux_proxy create is FAIL!!", "0 ServiceDataAuxproxy is NULL"}}),
      [this] { return tell(); }, -1);
  EXPECT_EQ(text, untouched);
}

TEST_F(SubtitleList, ProxiesThatAreMissingAreMadeInTheirOrder) {
  worker.svc_datacontrol_proxy = nullptr;
  worker.svc_navi_proxy = nullptr;
  worker.servicedata_aux_proxy = nullptr;
  EXPECT_EQ(tell(), 1);
  const Lines all = calls();
  ASSERT_GE(all.size(), 8U);
  EXPECT_EQ(all[1], "TVServiceAPI::CreateDataControl(profile=1, index=0) -> 0");
  EXPECT_EQ(all[2], "TVServiceAPI::CreateServiceNavigation(profile=1, index=0) -> 0");
  EXPECT_EQ(all[6], "TVServiceAPI::ServiceDataAux(profile=1, index=0) -> made");
  EXPECT_EQ(all[7], "ServiceDataAux[main#2]::GetHybridSBTSize(serviceId=281) size=3 -> 1");
}

TEST_F(SubtitleList, AServiceWithoutAnIdIsAskedForByTheGreatestOne) {
  EXPECT_EQ(tellUnder("IServiceNavigation::GetCurrentServiceInfo result=unwritten"), -1);
  EXPECT_EQ(calls().back(), subtitle::aux + "GetHybridSBTSize(serviceId=18446744073709551615) size=0 -> 0");
  EXPECT_EQ(logs(), join({tracks::onTv, {"3 Current service Id = 18446744073709551615", noSize}}));
}

TEST_F(SubtitleList, IsThatOfTheWindowDriven) {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  fault("IServiceNavigation::GetCurrentServiceInfo result=1 out.service={12=281}");
  forget();
  EXPECT_EQ(tell(), 1);
  const Lines all = calls();
  ASSERT_EQ(all.size(), 8U);
  EXPECT_EQ(all[1].rfind("IServiceNavigation[pip#2]::GetTvMode()", 0), 0U);
  EXPECT_EQ(all[4], "ServiceDataAux[pip#2]::GetHybridSBTSize(serviceId=281) size=3 -> 1");
}

}  // namespace

// The list of audio tracks on the ISP source, from the secondary stack.
#include "Sound.h"

namespace {

using reports::notWritten;
using reports::parsed;
using reports::WriterFault;
using sound::AudioTrack;
using sound::element;
using sound::threeTracks;
using support::caught;
using support::join;
using support::Lines;
using tracks::document;
using tracks::documentWith;
using tracks::Members;

const std::string variant = "GetMultiAudioInfo_D2TV";
const std::string failureDocument = document({{"NumOfAudio", "0"}}, "items");

const std::string begun = "3 CEmpTaskWindow::GetMultiAudioInfo::Start of  GetMultiAudioInfo \n ";
const std::string countFailed = "0 CEmpTaskWindow::GetMultiAudioInfo:: GetTotalNumOfAudio()  fail to return   ";
const std::string empty =
    "3 CEmpTaskWindow::GetMultiAudioInfo:: index <= 0; root items = undefined : for handling undefined case \n";
const std::string trackFailed = "0 CEmpTaskWindow::GetMultiAudioInfo::GetMultiAudioInfo() fail to return   ";
const std::string collected = "3 CEmpTaskWindow::GetMultiAudioInfo:: root items = items : after \n";
const std::string ended = "3 CEmpTaskWindow::GetMultiAudioInfo end of  GetMultiAudioInfo \n ";
const std::string went = sound::went(variant);
const std::string failed = sound::failed(variant);

std::string counted(const std::string& count) {
  return "3 CEmpTaskWindow::GetMultiAudioInfo: GetTotalNumOfAudio  sucessufully returned : NumofAudio==> " + count +
         " ";
}
/// What is logged of a record: index, PID, coding, mode, type, language.
std::string told(const std::array<std::string, 6>& record) {
  return "3 CEmpTaskWindow::GetMultiAudioInfo::audioList[index]==>" + record[0] + " \n audioList[pid]==>" + record[1] +
         " \n audioList[decodeType]==>" + record[2] + " \n audioList[audioMode]==> " + record[3] +
         " \n audioList[audioType]==> " + record[4] + " audioList[lang]==> " + record[5] + "\n";
}
std::string askTrack(const std::string& position, const std::string& audio) {
  return tracks::manager + "GetMultiAudioInfo(position=" + position + ") audio=" + audio + " -> 0";
}

const std::string firstTold = told({"0", "256", "4", "2", "3", "11"});
const std::string secondTold = told({"1", "257", "3", "1", "2", "21"});
const std::string thirdTold = told({"2", "258", "2", "0", "1", "31"});

class IspAudioList : public tracks::Telling<sound::SoundTest, &kel::CEmpTaskWindow::GetMultiAudioInfo> {
 protected:
  void SetUp() override {
    SoundTest::SetUp();
    showIsp(threeTracks, {});
  }
};

TEST_F(IspAudioList, TellsEachTrackOfTheSecondaryStack) {
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, sound::textOfThreeTracks);
  EXPECT_EQ(calls(),
            (Lines{tracks::ispTold, tracks::askManager + "made", tracks::manager + "GetTotalNumOfAudio() count=3 -> 0",
                   askTrack("0", "0,256,4,2,3,11"), askTrack("1", "1,257,3,1,2,21"), askTrack("2", "2,258,2,0,1,31")}));
  EXPECT_EQ(logs(),
            (Lines{tracks::onIsp, begun, counted("3"), firstTold, secondTold, thirdTold, collected, ended, went}));
}

TEST_F(IspAudioList, WithoutTracksHasAnEmptyArray) {
  showIsp({}, {});
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, failureDocument) << "which looks the same";
  const Json::Value root = parsed(text);
  EXPECT_EQ(root.getMemberNames(), (Lines{"NumOfAudio", "items"}));
  EXPECT_TRUE(root["items"].isArray());
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, begun, counted("0"), empty, ended, went}));
}

TEST_F(IspAudioList, ATrackThatCannotBeReadIsCountedAndLeftOut) {
  for (const std::string& way : tracks::notZero) {
    EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetMultiAudioInfo nth=2 out.audio=1,2,3,4,5,6 " + way), 1) << way;
    EXPECT_EQ(text, document({{"NumOfAudio", "3"}}, "items", {element(0, threeTracks[0]), element(2, threeTracks[2])}));
    EXPECT_EQ(logs(),
              (Lines{tracks::onIsp, begun, counted("3"), firstTold, trackFailed, thirdTold, collected, ended, went}));
  }
}

TEST_F(IspAudioList, ItemsAreNullWhenNoTrackCanBeRead) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetMultiAudioInfo always result=1"), 1);
  EXPECT_EQ(text, documentWith({{"NumOfAudio", "3"}}, "items", "null"));
  EXPECT_TRUE(parsed(text).isMember("items"));
  EXPECT_TRUE(parsed(text)["items"].isNull());
  EXPECT_EQ(logs(),
            (Lines{tracks::onIsp, begun, counted("3"), trackFailed, trackFailed, trackFailed, collected, ended, went}));
}

TEST_F(IspAudioList, IndexPidAndCodingAreSignedTheOtherNumbersUnsigned) {
  showIsp({threeTracks[0]}, {});
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetMultiAudioInfo out.audio=-1,-2,-3,-4,-5,-6"), 1);
  EXPECT_EQ(text, document({{"NumOfAudio", "1"}}, "items",
                           {element("-1", "-2", "-3", "4294967292", "4294967291", "4294967290")}));
  const Json::Value track = parsed(text)["items"][0];
  for (const char* const name : {"index", "pid", "decodeType"}) EXPECT_TRUE(track[name].isInt()) << name;
  for (const char* const name : {"audioMode", "audioType", "lang"}) EXPECT_TRUE(track[name].isUInt()) << name;
  EXPECT_EQ(logs()[3], told({"-1", "-2", "-3", "-4", "-5", "-6"})) << "logged signed";
}

TEST_F(IspAudioList, TheIndexIsTheRecordsOwn) {
  showIsp({threeTracks[0]}, {});
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetMultiAudioInfo out.audio=77,1,2,3,4,5"), 1);
  EXPECT_EQ(parsed(text)["items"][0]["index"].asInt(), 77);
}

TEST_F(IspAudioList, ATrackThatIsNotWrittenIsZerosEachTime) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetMultiAudioInfo nth=2 result=unwritten"), 1);
  const Members zeros = element("0", "0", "0", "0", "0", "0");
  EXPECT_EQ(text,
            document({{"NumOfAudio", "3"}}, "items", {element(0, threeTracks[0]), zeros, element(2, threeTracks[2])}))
      << "nothing is left of the track before";
}

TEST_F(IspAudioList, ACountThatIsNotWrittenIsZero) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetTotalNumOfAudio result=unwritten"), 1);
  EXPECT_EQ(text, failureDocument);
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, begun, counted("0"), empty, ended, went}));
}

TEST_F(IspAudioList, HoldsTwoHundredTracks) {
  std::vector<AudioTrack> many;
  std::vector<Members> elements;
  for (int at = 0; at < 200; ++at) {
    many.push_back({1000 + at, at, 1, 0, 0, true});
    elements.push_back(element(at, many.back()));
  }
  showIsp(many, {});
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, document({{"NumOfAudio", "200"}}, "items", elements));
}

TEST_F(IspAudioList, ACountThatFailsAnswersZeroWithADocument) {
  for (const std::string& way : tracks::notZero) {
    EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetTotalNumOfAudio out.count=9 " + way), 0) << way;
    EXPECT_EQ(text, failureDocument) << way;
    EXPECT_EQ(calls().size(), 3U) << "no track is asked for";
    EXPECT_EQ(logs(), (Lines{tracks::onIsp, begun, countFailed, failed}));
  }
}

TEST_F(IspAudioList, WithoutAManagerAnswersZeroWithADocument) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetInstance result=null"), 0);
  EXPECT_EQ(text, failureDocument);
  EXPECT_TRUE(parsed(text)["NumOfAudio"].isInt());
  EXPECT_EQ(calls(), (Lines{tracks::ispTold, tracks::askManager + "null [fault]"})) << "nothing is called through it";
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, begun, tracks::noManager, failed}));
}

TEST_F(IspAudioList, AManagerThatGoesAwayBetweenTwoCallsFailsTheSecond) {
  ASSERT_EQ(tell(), 1);
  tv().adjust([](virtualtv::TvState& state) { state.isp.present = false; });
  EXPECT_EQ(tell(), 0);
  EXPECT_EQ(text, failureDocument);
}

TEST_F(IspAudioList, AnExceptionAnswersZeroWithADocument) {
  const std::vector<std::pair<std::string, Lines>> steps{{"CD2tvMgrProxy::GetInstance", {tracks::noManager}},
                                                         {"CD2tvMgrProxy::GetTotalNumOfAudio", {}},
                                                         {"CD2tvMgrProxy::GetMultiAudioInfo", {}}};
  for (const auto& [call, after] : steps) {
    EXPECT_EQ(tellUnder(call + " result=throw"), 0) << call;
    EXPECT_EQ(text, failureDocument) << call;
    const Lines counts = call == "CD2tvMgrProxy::GetMultiAudioInfo" ? Lines{counted("3")} : Lines{};
    EXPECT_EQ(logs(), join({{tracks::onIsp, begun}, counts, {caught(variant, call)}, after, {failed}}));
  }
}

TEST_F(IspAudioList, ADocumentThatCannotBeWrittenAnswersZeroAndLeavesTheText) {
  showIsp({}, {});
  {
    const WriterFault writer;
    EXPECT_EQ(tell(), 0);
    EXPECT_TRUE(writer.hit());
    EXPECT_EQ(text, untouched);
    EXPECT_EQ(logs(), (Lines{tracks::onIsp, begun, counted("0"), empty, notWritten(variant), failed}));
    EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetInstance result=null"), 0);
    EXPECT_EQ(text, untouched);
    EXPECT_EQ(logs(), (Lines{tracks::onIsp, begun, tracks::noManager, notWritten(variant), failed}));
  }
  EXPECT_EQ(tell(), 1);
}

TEST_F(IspAudioList, TheVariantItselfFailsWithMinusOne) {
  EXPECT_EQ(worker.GetMultiAudioInfo_D2TV(text), 1);
  for (const std::string words : {"GetInstance result=null", "GetInstance result=throw", "GetTotalNumOfAudio result=2",
                                  "GetTotalNumOfAudio result=throw", "GetMultiAudioInfo result=throw"}) {
    text = untouched;
    EXPECT_EQ(under("CD2tvMgrProxy::" + words, [this] { return worker.GetMultiAudioInfo_D2TV(text); }), -1) << words;
    EXPECT_EQ(text, failureDocument) << words;
  }
  const WriterFault writer;
  EXPECT_EQ(worker.GetMultiAudioInfo_D2TV(text), -1);
}

TEST_F(IspAudioList, NothingOfTheTvServiceIsNeeded) {
  worker.servicedata_aux_proxy = nullptr;
  worker.av_ctrl_proxy = nullptr;
  worker.svc_navi_proxy = nullptr;
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(worker.servicedata_aux_proxy, nullptr);
  EXPECT_EQ(worker.av_ctrl_proxy, nullptr);
  EXPECT_EQ(worker.svc_navi_proxy, nullptr);
}

}  // namespace

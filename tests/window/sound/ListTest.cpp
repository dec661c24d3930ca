// The list of audio tracks, from the TV service.
#include "Sound.h"
#include "store/SettingsStore.h"

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

const std::string noTracks = document({{"NumOfAudio", "0"}});
const std::string success = "3 GetAudio success.\n";
const std::string failure = "0 GetAudio failed.\n";
const Lines before = join({tracks::onTv, tracks::currentTold});

std::string sizeTold(const std::string& size) {
  return "3 sizeofAudio = " + size + "\n";
}
std::string ended(const std::string& ix) {
  return "3 ix = " + ix;
}
std::string told(const std::string& text) {
  return "3 CEmpTaskWindow::GetMultiAudioInfo ::jsonstr =>[" + text + "]";
}
std::string askSize(const std::string& size, const std::string& id = "281") {
  return sound::aux + "GetAudioSize(serviceId=" + id + ") size=" + size + " -> 1";
}
std::string askTrack(const std::string& index, const std::string& audio) {
  return sound::aux + "GetAudio(serviceId=281, index=" + index + ") audio=" + audio + " -> 1";
}

class AudioList : public tracks::Telling<sound::SoundTest, &kel::CEmpTaskWindow::GetMultiAudioInfo> {};

TEST_F(AudioList, TellsEachTrackOfTheServiceOnScreen) {
  give(threeTracks);
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, sound::textOfThreeTracks);
  EXPECT_EQ(made(), join({{tracks::tvTold},
                          tracks::askCurrent,
                          {askSize("3"), askTrack("0", "11,4,256,2,3"), askTrack("1", "21,3,257,1,2"),
                           askTrack("2", "31,2,258,0,1")}}));
  EXPECT_EQ(logs(), join({before, {sizeTold("3"), success, success, success, ended("3"), told(text)}}));
}

TEST_F(AudioList, AServiceWithoutTracksHasNoItems) {
  give({});
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, noTracks);
  const Json::Value root = parsed(text);
  EXPECT_EQ(root.getMemberNames(), Lines{"NumOfAudio"});
  EXPECT_TRUE(root["NumOfAudio"].isUInt());
  EXPECT_EQ(made(), join({{tracks::tvTold}, tracks::askCurrent, {askSize("0")}}));
  EXPECT_EQ(logs(), join({before, {sizeTold("0"), ended("0"), told(text)}}));
}

TEST_F(AudioList, ATrackThatCannotBeReadIsCountedAndLeftOut) {
  std::vector<AudioTrack> second = threeTracks;
  second[1].readable = false;
  give(second);
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, document({{"NumOfAudio", "3"}}, "items", {element(0, threeTracks[0]), element(2, threeTracks[2])}));
  const Json::Value root = parsed(text);
  EXPECT_EQ(root["NumOfAudio"].asUInt(), 3U);
  ASSERT_EQ(root["items"].size(), 2U);
  EXPECT_EQ(root["items"][0]["index"].asUInt(), 0U);
  EXPECT_EQ(root["items"][1]["index"].asUInt(), 2U);
  EXPECT_EQ(logs(), join({before, {sizeTold("3"), success, failure, success, ended("3"), told(text)}}));
}

TEST_F(AudioList, ItemsAreNullWhenNoTrackCanBeRead) {
  std::vector<AudioTrack> none = threeTracks;
  for (AudioTrack& track : none) track.readable = false;
  give(none);
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, documentWith({{"NumOfAudio", "3"}}, "items", "null"));
  const Json::Value root = parsed(text);
  EXPECT_EQ(root.getMemberNames(), (Lines{"NumOfAudio", "items"}));
  EXPECT_TRUE(root["items"].isNull());
  EXPECT_EQ(logs(), join({before, {sizeTold("3"), failure, failure, failure, ended("3"), told(text)}}));
}

TEST_F(AudioList, EachResultOfReadingATrackCountsByItsSign) {
  give(threeTracks);
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio nth=3 out.audio=1,2,3,4,5 " + way), 1) << way;
    EXPECT_EQ(text, document({{"NumOfAudio", "3"}}, "items", {element(0, threeTracks[0]), element(1, threeTracks[1])}));
  }
  for (const std::string result : {"2", "2147483647"}) {
    EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio nth=1 out.audio=1,2,3,4,5 result=" + result), 1) << result;
    EXPECT_EQ(parsed(text)["items"][0]["pid"].asInt(), 3);
  }
}

TEST_F(AudioList, NumbersOfATrackAreSigned) {
  give({threeTracks[0]});
  EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio out.audio=-1,-2147483648,65535,2147483647,-5"), 1);
  EXPECT_EQ(text,
            document({{"NumOfAudio", "1"}}, "items", {element("0", "65535", "-2147483648", "2147483647", "-5", "-1")}));
  const Json::Value track = parsed(text)["items"][0];
  EXPECT_EQ(track.getMemberNames(), (Lines{"audioMode", "audioType", "decodeType", "index", "lang", "pid"}));
  for (const Json::Value& member : track) EXPECT_TRUE(member.isInt()) << text;
}

TEST_F(AudioList, ATrackThatIsNotWrittenIsZerosEachTime) {
  give(threeTracks);
  EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio nth=2 result=unwritten"), 1);
  const Members zeros = element("1", "0", "0", "0", "0", "0");
  EXPECT_EQ(text,
            document({{"NumOfAudio", "3"}}, "items", {element(0, threeTracks[0]), zeros, element(2, threeTracks[2])}))
      << "nothing is left of the track before";
}

TEST_F(AudioList, WhetherTheCountWasToldIsNotAsked) {
  give(threeTracks);
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(tellUnder("ServiceDataAux::GetAudioSize out.size=1 " + way), 1) << way;
    EXPECT_EQ(text, document({{"NumOfAudio", "1"}}, "items", {element(0, threeTracks[0])})) << way;
    EXPECT_EQ(tellUnder("ServiceDataAux::GetAudioSize " + way), 1) << way;
    EXPECT_EQ(text, noTracks) << way;
  }
  EXPECT_EQ(tellUnder("ServiceDataAux::GetAudioSize result=unwritten"), 1);
  EXPECT_EQ(text, noTracks);
}

TEST_F(AudioList, HoldsTwoHundredTracks) {
  std::vector<AudioTrack> many;
  std::vector<Members> elements;
  for (int at = 0; at < 200; ++at) {
    many.push_back({1000 + at, at, 1, 0, 0, true});
    elements.push_back(element(at, many.back()));
  }
  give(many);
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, document({{"NumOfAudio", "200"}}, "items", elements));
  EXPECT_EQ(parsed(text)["items"].size(), 200U);
}

TEST_F(AudioList, WithoutAServiceOnScreenFailsAndLeavesTheText) {
  give(threeTracks);
  for (const auto& [words, lines] : sound::noCurrent) {
    EXPECT_EQ(tellUnder(words), 0) << words;
    EXPECT_EQ(text, untouched) << words;
    EXPECT_EQ(logs(), join({tracks::onTv, lines})) << words;
  }
  failsWithout(
      worker.svc_navi_proxy, "CreateServiceNavigation",
      join({tracks::onTv, channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}), [this] { return tell(); },
      0);
  EXPECT_EQ(text, untouched);
}

TEST_F(AudioList, WithoutServiceDataFailsOnceTheServiceOnScreenIsKnown) {
  failsWithout(
      worker.servicedata_aux_proxy, "ServiceDataAux", join({before, sound::auxMissing}), [this] { return tell(); }, 0);
  EXPECT_EQ(text, untouched);
}

TEST_F(AudioList, DoesNotNeedTheAvControl) {
  give(threeTracks);
  worker.av_ctrl_proxy = nullptr;
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(worker.av_ctrl_proxy, nullptr);
}

TEST_F(AudioList, AMissingServiceDataProxyIsMade) {
  give({});
  worker.servicedata_aux_proxy = nullptr;
  EXPECT_EQ(tell(), 1);
  const Lines all = made();
  ASSERT_EQ(all.size(), 5U);
  EXPECT_EQ(all[3], "TVServiceAPI::ServiceDataAux(profile=1, index=0) -> made");
  EXPECT_EQ(all[4], "ServiceDataAux[main#2]::GetAudioSize(serviceId=281) size=0 -> 1");
}

TEST_F(AudioList, AServiceWithoutAnIdIsAskedForByTheGreatestOne) {
  EXPECT_EQ(tellUnder("IServiceNavigation::GetCurrentService out.service={13=7}"), 1);
  EXPECT_EQ(text, noTracks);
  EXPECT_EQ(calls().back(), sound::aux + "GetAudioSize(serviceId=18446744073709551615) size=0 -> 0");
}

TEST_F(AudioList, AnExceptionAnswersMinusOneAndLeavesTheText) {
  give(threeTracks);
  const std::vector<std::pair<std::string, Lines>> calls{{"ServiceDataAux::GetAudioSize", {}},
                                                         {"ServiceDataAux::GetAudio", {sizeTold("3"), success}}};
  for (const auto& [call, lines] : calls) {
    EXPECT_EQ(tellUnder(call + (lines.empty() ? "" : " nth=2") + " result=throw"), -1) << call;
    EXPECT_EQ(text, untouched) << call;
    EXPECT_EQ(logs(), join({before, lines, {caught("GetMultiAudioInfo", call)}}));
  }
}

TEST_F(AudioList, ADocumentThatCannotBeWrittenAnswersMinusOneAndLeavesTheText) {
  give({});
  const WriterFault writer;
  EXPECT_EQ(tell(), -1);
  EXPECT_TRUE(writer.hit());
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), join({before, {sizeTold("0"), ended("0"), notWritten("GetMultiAudioInfo")}}));
}

TEST_F(AudioList, IsThatOfTheWindowDriven) {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  give(threeTracks);
  EXPECT_EQ(tellUnder("IServiceNavigation::GetCurrentService result=1 out.service={12=281}"), 1);
  const Lines all = made();
  ASSERT_EQ(all.size(), 7U);
  EXPECT_EQ(all[2].rfind("IServiceNavigation[pip#2]::GetCurrentService(", 0), 0U);
  EXPECT_EQ(all[3], "ServiceDataAux[pip#2]::GetAudioSize(serviceId=281) size=3 -> 1");
}

TEST_F(AudioList, AsksTheTvServiceWhereTheLastServiceIsUnknown) {
  give(threeTracks);
  tv().removeSetting(tracks::lastService);
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(parsed(text)["items"].size(), 3U);
}

}  // namespace

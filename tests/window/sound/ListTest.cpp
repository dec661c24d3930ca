// SPDX-License-Identifier: MIT
// The list of audio tracks, from either TV stack, including rare answers of the set.
#include "Sound.h"

namespace {

using reports::notWritten;
using reports::parsed;
using reports::WriterFault;
using sound::element;
using support::caught;
using support::join;
using support::Lines;

const std::string operation = "GetMultiAudioInfo";

// From the TV service.

const std::string noTracks = tracks::document({{"NumOfAudio", "0"}});
const Lines begunOnTv = join({tracks::onTv, tracks::currentTold});

using TvAudioList = tracks::Telling<sound::SoundTest, &kel::CEmpTaskWindow::GetMultiAudioInfo>;

TEST_F(TvAudioList, CountsEachResultOfReadingATrackByItsSign) {
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio nth=3 out.audio=1,2,3,4,5 " + way), 1) << way;
    EXPECT_EQ(text, sound::list(3, {element(0), element(1)}));
  }
  for (const std::string result : {"2", "2147483647"}) {
    EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio nth=1 out.audio=1,2,3,4,5 result=" + result), 1) << result;
    EXPECT_EQ(parsed(text)["items"][0]["pid"].asInt(), 3);
  }
}

TEST_F(TvAudioList, NumbersOfATrackAreSigned) {
  EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio out.audio=-1,-2147483648,65535,2147483647,-5"), 1);
  EXPECT_EQ(text,
            sound::list(3, {element("0", "65535", "-2147483648", "2147483647", "-5", "-1"), element(1), element(2)}));
}

TEST_F(TvAudioList, ATrackThatIsNotWrittenIsZerosEachTime) {
  EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio nth=2 result=unwritten"), 1);
  EXPECT_EQ(text, sound::list(3, {element(0), element("1", "0", "0", "0", "0", "0"), element(2)}))
      << "nothing is left of the track before";
}

TEST_F(TvAudioList, WhetherTheCountWasToldIsNotAsked) {
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(tellUnder("ServiceDataAux::GetAudioSize out.size=1 " + way), 1) << way;
    EXPECT_EQ(text, sound::list(1, {element(0)})) << way;
    EXPECT_EQ(tellUnder("ServiceDataAux::GetAudioSize " + way), 1) << way;
    EXPECT_EQ(text, noTracks) << way;
  }
  EXPECT_EQ(tellUnder("ServiceDataAux::GetAudioSize result=unwritten"), 1);
  EXPECT_EQ(text, noTracks);
}

TEST_F(TvAudioList, AFailureLeavesTheText) {
  const auto told = [this] { return tell(); };
  expectEach(tracks::onTv,
             {{"IServiceNavigation::GetTvMode result=0", 0, {sound::noMode}},
              {"IServiceNavigation::GetCurrentService result=-1", 0, {sound::noService}}},
             told);
  expectEach(begunOnTv,
             {{"ServiceDataAux::GetAudioSize result=throw", -1, {caught(operation, "ServiceDataAux::GetAudioSize")}},
              {"ServiceDataAux::GetAudio nth=2 result=throw",
               -1,
               {"3 sizeofAudio = 3\n", "3 GetAudio success.\n", caught(operation, "ServiceDataAux::GetAudio")}}},
             told);
  failsWithout(worker.svc_navi_proxy, "CreateServiceNavigation", join({tracks::onTv, sound::navigationMissing}), told,
               0);
  ASSERT_TRUE(worker.t_CheckServiceNavigationproxy());
  failsWithout(worker.servicedata_aux_proxy, "ServiceDataAux", join({begunOnTv, sound::auxMissing}), told, 0);
  EXPECT_EQ(text, untouched);
}

TEST_F(TvAudioList, ADocumentThatCannotBeWrittenAnswersMinusOneAndLeavesTheText) {
  const WriterFault writer;
  EXPECT_EQ(tell(), -1);
  EXPECT_TRUE(writer.hit());
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs().back(), notWritten(operation));
}

TEST_F(TvAudioList, DoesNotNeedTheAvControl) {
  worker.av_ctrl_proxy = nullptr;
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(worker.av_ctrl_proxy, nullptr);
}

TEST_F(TvAudioList, AServiceWithoutAnIdIsAskedForByTheGreatestOne) {
  EXPECT_EQ(tellUnder(sound::nameless), 1);
  EXPECT_EQ(text, noTracks);
  EXPECT_EQ(calls().back(), "ServiceDataAux[main#1]::GetAudioSize(serviceId=" + sound::greatest + ") size=0 -> 0");
}

// From the secondary stack: a document on every path.

const std::string variant = "GetMultiAudioInfo_D2TV";
const std::string noIspTracks = tracks::document({{"NumOfAudio", "0"}}, "items");
const Lines begunOnIsp{tracks::onIsp, "3 CEmpTaskWindow::GetMultiAudioInfo::Start of  GetMultiAudioInfo \n "};
const std::string failed = sound::failed(variant);

using IspAudioList = tracks::Telling<sound::IspSoundTest, &kel::CEmpTaskWindow::GetMultiAudioInfo>;

TEST_F(IspAudioList, ATrackThatCannotBeReadIsLeftOut) {
  for (const std::string& way : tracks::notZero) {
    EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetMultiAudioInfo nth=2 out.audio=1,2,3,4,5,6 " + way), 1) << way;
    EXPECT_EQ(text, sound::list(3, {element(0), element(2)}));
  }
}

TEST_F(IspAudioList, IndexPidAndCodingAreSignedTheOtherNumbersUnsigned) {
  showIsp({sound::threeTracks[0]}, {});
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetMultiAudioInfo out.audio=-1,-2,-3,-4,-5,-6"), 1);
  EXPECT_EQ(text, sound::list(1, {element("-1", "-2", "-3", "4294967292", "4294967291", "4294967290")}));
  EXPECT_EQ(logs()[3],
            "3 CEmpTaskWindow::GetMultiAudioInfo::audioList[index]==>-1 \n audioList[pid]==>-2 \n "
            "audioList[decodeType]==>-3 \n audioList[audioMode]==> -4 \n audioList[audioType]==> -5 audioList[lang]==> "
            "-6\n")
      << "logged signed";
}

TEST_F(IspAudioList, WhatIsNotWrittenIsZeroEachTime) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetMultiAudioInfo nth=2 result=unwritten"), 1);
  EXPECT_EQ(text, sound::list(3, {element(0), element("0", "0", "0", "0", "0", "0"), element(2)}))
      << "nothing is left of the track before";
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetTotalNumOfAudio result=unwritten"), 1);
  EXPECT_EQ(text, noIspTracks);
}

TEST_F(IspAudioList, AFailureAnswersZeroWithADocument) {
  const std::string counted =
      "3 CEmpTaskWindow::GetMultiAudioInfo: GetTotalNumOfAudio  sucessufully returned : NumofAudio==> 3 ";
  const std::string count = "CD2tvMgrProxy::GetTotalNumOfAudio";
  const std::string read = "CD2tvMgrProxy::GetMultiAudioInfo";
  const std::string notCounted = "0 CEmpTaskWindow::GetMultiAudioInfo:: GetTotalNumOfAudio()  fail to return   ";
  const auto told = [this] { return tell(); };
  expectEach(begunOnIsp,
             {{count + " result=throw", 0, {caught(variant, count), failed}},
              {count + " out.count=9", 0, {notCounted, failed}, tracks::notZero},
              {read + " result=throw", 0, {counted, caught(variant, read), failed}}},
             told, noIspTracks);
  expectWithoutManager(variant, begunOnIsp, {tracks::noManager, failed}, told, 0, noIspTracks);
}

TEST_F(IspAudioList, ADocumentThatCannotBeWrittenAnswersZeroAndLeavesTheText) {
  const WriterFault writer;
  EXPECT_EQ(tell(), 0);
  EXPECT_TRUE(writer.hit());
  EXPECT_EQ(text, untouched);
  const Lines lines = logs();
  EXPECT_EQ(Lines(lines.end() - 2, lines.end()), (Lines{notWritten(variant), failed}));
  expectEach(begunOnIsp,
             {{"CD2tvMgrProxy::GetInstance result=null", 0, {tracks::noManager, notWritten(variant), failed}}},
             [this] { return tell(); });
}

TEST_F(IspAudioList, TheVariantItselfFailsWithMinusOne) {
  EXPECT_EQ(worker.GetMultiAudioInfo_D2TV(text), 1);
  for (const std::string words :
       {"GetInstance result=null", "GetTotalNumOfAudio result=2", "GetMultiAudioInfo result=throw"}) {
    EXPECT_EQ(under("CD2tvMgrProxy::" + words, [this] { return worker.GetMultiAudioInfo_D2TV(text); }), -1) << words;
    EXPECT_EQ(text, noIspTracks) << words;
  }
  const WriterFault writer;
  EXPECT_EQ(worker.GetMultiAudioInfo_D2TV(text), -1);
}

TEST_F(IspAudioList, NothingOfTheTvServiceIsNeeded) {
  EXPECT_EQ(alone([this] { return tell(); }), 1);
}

// The answer of the command when no document could be written.

class AudioListCommand : public tracks::TrackCommand {};

TEST_F(AudioListCommand, WhetherTheSourceIsIspIsAskedAnewForTheAnswer) {
  const WriterFault writer;
  expectIspAskedAnew(operation);
}

}  // namespace

// SPDX-License-Identifier: MIT
// The audio track in use, on either TV stack, including rare answers of the set.
#include "Sound.h"

namespace {

using reports::notWritten;
using reports::WriterFault;
using sound::current;
using support::banner;
using support::caught;
using support::join;
using support::Lines;

const std::string operation = "GetCurrentAudioInfo";

// From the TV service.

const std::string notKnown = "0 GetCurrentAudioInfo failed";
const std::string notRead = "0 GetAudio failed";

/// The line always shows the PID as -1.
std::string told(const std::string& index, const std::string& lang) {
  return "3 GetCurrentAudioInfo =>pid:-1, index:" + index + " lang:" + lang;
}

using TvCurrentAudio = tracks::Telling<sound::SoundTest, &kel::CEmpTaskWindow::GetCurrentAudioInfo>;

TEST_F(TvCurrentAudio, TheLanguageIsThatOfTheAvControlAndThePidThatOfTheTrack) {
  EXPECT_EQ(tellUnder("IAVControl::GetCurrentAudioInfo out.lang=-7 out.index=2"), 1);
  EXPECT_EQ(text, current("2", "-7", "258"));
  EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio out.audio=-1,-1,65535,-1,-1"), 1);
  EXPECT_EQ(text, current("0", "11", "65535"));
}

TEST_F(TvCurrentAudio, WhatIsNotKnownOrCannotBeReadAnswersMinusOneWithADocument) {
  const auto asked = [this] { return tell(); };
  const std::string ask = "IAVControl::GetCurrentAudioInfo";
  expectEach(tracks::onTv,
             {{ask, -1, join({{notKnown}, tracks::currentTold, {notRead, told("-1", "-1")}}), tracks::notPositive}},
             asked, current("-1", "-1", "0"));
  expectEach(tracks::onTv,
             {{ask + " out.lang=5 out.index=2", -1, join({{notKnown}, tracks::currentTold, {told("2", "5")}}),
               tracks::notPositive}},
             asked, current("2", "5", "258"));
  expectEach(
      tracks::onTv,
      {{"ServiceDataAux::GetAudio", -1, join({tracks::currentTold, {notRead, told("0", "11")}}), tracks::notPositive}},
      asked, current("0", "11", "0"));
}

TEST_F(TvCurrentAudio, WhatIsNotWrittenStaysPreset) {
  EXPECT_EQ(tellUnder("IAVControl::GetCurrentAudioInfo result=unwritten"), -1);
  EXPECT_EQ(text, current("-1", "-1", "0"));
  EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio result=unwritten"), 1);
  EXPECT_EQ(text, current("0", "11", "0"));
}

TEST_F(TvCurrentAudio, AnyResultAboveZeroSucceeds) {
  EXPECT_EQ(tellUnder("IAVControl::GetCurrentAudioInfo result=2"), 1);
  EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio result=2147483647"), 1);
  EXPECT_EQ(text, current("0", "11", "256"));
}

TEST_F(TvCurrentAudio, WithoutATrackToTellTheTextIsLeft) {
  const auto asked = [this] { return tell(); };
  const Lines noData{banner(0, operation), "0 [CEmpTaskWindow::GetCurrentAudioInfo] Failed to get data."};
  expectEach(
      tracks::onTv,
      {{"IServiceNavigation::GetTvMode result=0", -1, join({{sound::noMode}, noData})},
       {"IServiceNavigation::GetCurrentService result=-1", -1, join({{sound::noService}, noData})},
       {"IAVControl::GetCurrentAudioInfo result=throw", -1, {caught(operation, "IAVControl::GetCurrentAudioInfo")}},
       {"ServiceDataAux::GetAudio result=throw", -1,
        join({tracks::currentTold, {caught(operation, "ServiceDataAux::GetAudio")}})}},
      asked);
  failsWithout(worker.svc_navi_proxy, "CreateServiceNavigation", join({tracks::onTv, sound::navigationMissing, noData}),
               asked, -1);
  failsWithout(worker.servicedata_aux_proxy, "ServiceDataAux", join({tracks::onTv, sound::auxMissing}), asked, 0);
  ASSERT_TRUE(worker.t_CheckServiceDataAuxproxy());
  failsWithout(worker.av_ctrl_proxy, "CreateAVControl", join({tracks::onTv, sound::avMissing}), asked, 0);
  EXPECT_EQ(text, untouched);
}

TEST_F(TvCurrentAudio, ADocumentThatCannotBeWrittenAnswersMinusOneAndLeavesTheText) {
  const WriterFault writer;
  EXPECT_EQ(tell(), -1);
  EXPECT_TRUE(writer.hit());
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), join({tracks::onTv, tracks::currentTold, {told("0", "11"), notWritten(operation)}}));
}

TEST_F(TvCurrentAudio, AServiceWithoutAnIdIsAskedForByTheGreatestOne) {
  EXPECT_EQ(tellUnder(sound::nameless), -1);
  EXPECT_EQ(calls().back(),
            "ServiceDataAux[main#1]::GetAudio(serviceId=" + sound::greatest + ", index=0) audio=0,0,0,0,0 -> 0");
}

// From the secondary stack: a document on every path.

const std::string variant = "GetCurrentAudioInfo_D2TV";
const std::string failureDocument = current("-1", "0", "-1");
const std::string failed = sound::failed(variant);
const Lines begunOnIsp{tracks::onIsp, "3 CEmpTaskWindow::GetCurrentAudioInfo_D2TV::Start of  GetCurrentAudioInfo \n "};

/// The log lines for a track that the stack reports.
Lines toldByIsp(const std::string& pid, const std::string& index, const std::string& lang) {
  return {begunOnIsp[0], begunOnIsp[1],
          "3 CEmpTaskWindow::GetCurrentAudioInfo_D2TV::GetCurrentAudioInfo =>pid:" + pid + ", index:" + index +
              " lang:" + lang};
}

using IspCurrentAudio = tracks::Telling<sound::IspSoundTest, &kel::CEmpTaskWindow::GetCurrentAudioInfo>;

TEST_F(IspCurrentAudio, TheLanguageIsUnsignedAndLoggedSigned) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetCurrentAudioInfo out.pid=-3 out.index=-2 out.lang=4294967295"), 1);
  EXPECT_EQ(text, current("-2", "4294967295", "-3"));
  EXPECT_EQ(logs(), join({toldByIsp("-3", "-2", "-1"), {sound::went(variant)}}));
}

TEST_F(IspCurrentAudio, WhatTheStackDoesNotWriteStaysPreset) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetCurrentAudioInfo result=unwritten"), 1);
  EXPECT_EQ(text, current("-1", "0", "-1"));
}

TEST_F(IspCurrentAudio, AFailureAnswersZeroWithADocument) {
  const std::string notTold = "0 CEmpTaskWindow::GetMultiAudioInfo::GetMultiAudioInfo() fail to return   ";
  const std::string call = "CD2tvMgrProxy::GetCurrentAudioInfo";
  const auto asked = [this] { return tell(); };
  expectEach(begunOnIsp,
             {{call + " result=throw", 0, {caught(variant, call), notTold, failed}},
              {call + " out.pid=1 out.index=2 out.lang=3", 0, {notTold, failed}, tracks::notZero}},
             asked, failureDocument);
  expectWithoutManager(variant, begunOnIsp, {tracks::noManager, failed}, asked, 0, failureDocument);
}

TEST_F(IspCurrentAudio, ADocumentThatCannotBeWrittenAnswersZeroAndLeavesTheText) {
  const WriterFault writer;
  EXPECT_EQ(tell(), 0);
  EXPECT_TRUE(writer.hit());
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), join({toldByIsp("256", "0", "11"), {notWritten(variant), failed}}));
  expectEach(begunOnIsp,
             {{"CD2tvMgrProxy::GetInstance result=null", 0, {tracks::noManager, notWritten(variant), failed}}},
             [this] { return tell(); });
}

TEST_F(IspCurrentAudio, TheVariantItselfFailsWithMinusOne) {
  EXPECT_EQ(worker.GetCurrentAudioInfo_D2TV(text), 1);
  for (const std::string words : {"GetInstance result=null", "GetCurrentAudioInfo result=2",
                                  "GetCurrentAudioInfo result=1", "GetCurrentAudioInfo result=throw"}) {
    EXPECT_EQ(under("CD2tvMgrProxy::" + words, [this] { return worker.GetCurrentAudioInfo_D2TV(text); }), -1) << words;
    EXPECT_EQ(text, failureDocument) << words;
  }
}

TEST_F(IspCurrentAudio, NothingOfTheTvServiceIsNeeded) {
  EXPECT_EQ(alone([this] { return tell(); }), 1);
}

}  // namespace

// The audio track in use, on either TV stack.
#include "Sound.h"

namespace {

using reports::notWritten;
using reports::parsed;
using reports::WriterFault;
using sound::current;
using sound::threeTracks;
using support::banner;
using support::caught;
using support::join;
using support::Lines;
using virtualtv::WindowId;

const std::string operation = "GetCurrentAudioInfo";

class CurrentAudio : public tracks::Telling<sound::SoundTest, &kel::CEmpTaskWindow::GetCurrentAudioInfo> {
 protected:
  void SetUp() override {
    SoundTest::SetUp();
    give(threeTracks);
  }
};

// From the TV service.

const std::string notKnown = "0 GetCurrentAudioInfo failed";
const std::string notRead = "0 GetAudio failed";

/// The PID's place in the line always holds -1.
std::string told(const std::string& index, const std::string& lang) {
  return "3 GetCurrentAudioInfo =>pid:-1, index:" + index + " lang:" + lang;
}
std::string askInUse(const std::string& outputs, const std::string& result = "1") {
  return sound::av + "GetCurrentAudioInfo() " + outputs + " -> " + result;
}
std::string askTrack(const std::string& index, const std::string& outcome) {
  return sound::aux + "GetAudio(serviceId=281, index=" + index + ") audio=" + outcome;
}

class TvCurrentAudio : public CurrentAudio {};

TEST_F(TvCurrentAudio, IsTheTrackThatTheWindowUses) {
  ASSERT_TRUE(tv().selectAudio(WindowId::main, 1));
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, "{\n   \"index\" : 1,\n   \"lang\" : 21,\n   \"pid\" : 257\n}\n");
  EXPECT_EQ(
      made(),
      join({{tracks::tvTold, askInUse("lang=21 index=1")}, tracks::askCurrent, {askTrack("1", "21,3,257,1,2 -> 1")}}));
  EXPECT_EQ(logs(), join({tracks::onTv, tracks::currentTold, {told("1", "21")}}));
}

TEST_F(TvCurrentAudio, TheLanguageIsThatOfTheAvControlAndThePidThatOfTheTrack) {
  EXPECT_EQ(tellUnder("IAVControl::GetCurrentAudioInfo out.lang=-7 out.index=2"), 1);
  EXPECT_EQ(text, current("2", "-7", "258"));
  EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio out.audio=-1,-1,65535,-1,-1"), 1);
  EXPECT_EQ(text, current("0", "11", "65535"));
  const Json::Value root = parsed(text);
  EXPECT_EQ(root.getMemberNames(), (Lines{"index", "lang", "pid"}));
  for (const Json::Value& member : root) EXPECT_TRUE(member.isInt()) << text;
}

TEST_F(TvCurrentAudio, ATrackInUseThatIsNotKnownAnswersMinusOneWithADocument) {
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(tellUnder("IAVControl::GetCurrentAudioInfo " + way), -1) << way;
    EXPECT_EQ(text, current("-1", "-1", "0")) << way;
    EXPECT_EQ(made().back(), askTrack("-1", "0,0,0,0,0 -> 0"));
    EXPECT_EQ(logs(), join({tracks::onTv, {notKnown}, tracks::currentTold, {notRead, told("-1", "-1")}}));
  }
}

TEST_F(TvCurrentAudio, AnUnknownTrackInUseStaysAFailureWhereTheTrackCanBeRead) {
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(tellUnder("IAVControl::GetCurrentAudioInfo out.lang=5 out.index=2 " + way), -1) << way;
    EXPECT_EQ(text, current("2", "5", "258")) << way;
    EXPECT_EQ(logs(), join({tracks::onTv, {notKnown}, tracks::currentTold, {told("2", "5")}}));
  }
}

TEST_F(TvCurrentAudio, ATrackInUseThatIsNotWrittenIsMinusOne) {
  EXPECT_EQ(tellUnder("IAVControl::GetCurrentAudioInfo result=unwritten"), -1);
  EXPECT_EQ(text, current("-1", "-1", "0"));
  EXPECT_EQ(logs(), join({tracks::onTv, tracks::currentTold, {notRead, told("-1", "-1")}}));
}

TEST_F(TvCurrentAudio, ATrackThatCannotBeReadAnswersMinusOneWithADocument) {
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio " + way), -1) << way;
    EXPECT_EQ(text, current("0", "11", "0")) << way;
    EXPECT_EQ(logs(), join({tracks::onTv, tracks::currentTold, {notRead, told("0", "11")}}));
  }
  EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio result=unwritten"), 1);
  EXPECT_EQ(text, current("0", "11", "0"));
}

TEST_F(TvCurrentAudio, AnyResultAboveZeroSucceeds) {
  EXPECT_EQ(tellUnder("IAVControl::GetCurrentAudioInfo result=2"), 1);
  EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio result=2147483647"), 1);
  EXPECT_EQ(text, current("0", "11", "256"));
}

TEST_F(TvCurrentAudio, AServiceWithoutTracksAnswersMinusOneWithADocument) {
  give({});
  EXPECT_EQ(tell(), -1);
  EXPECT_EQ(text, current("-1", "-1", "0"));
}

TEST_F(TvCurrentAudio, WithoutAServiceOnScreenAnswersMinusOneAndLeavesTheText) {
  for (const auto& [words, lines] : sound::noCurrent) {
    EXPECT_EQ(tellUnder(words), -1) << words;
    EXPECT_EQ(text, untouched) << words;
    EXPECT_EQ(logs(), join({tracks::onTv,
                            lines,
                            {banner(0, operation), "0 [CEmpTaskWindow::GetCurrentAudioInfo] Failed to get data."}}));
  }
  failsWithout(
      worker.svc_navi_proxy, "CreateServiceNavigation",
      join({tracks::onTv,
            channels::noNavigation(),
            {"0 ServiceNavigationproxy is NULL", banner(0, operation),
             "0 [CEmpTaskWindow::GetCurrentAudioInfo] Failed to get data."}}),
      [this] { return tell(); }, -1);
  EXPECT_EQ(text, untouched);
}

TEST_F(TvCurrentAudio, WithoutAProxyAnswersZeroAndLeavesTheText) {
  failsWithout(
      worker.servicedata_aux_proxy, "ServiceDataAux", join({tracks::onTv, sound::auxMissing}),
      [this] { return tell(); }, 0);
  ASSERT_TRUE(worker.t_CheckServiceDataAuxproxy());
  failsWithout(
      worker.av_ctrl_proxy, "CreateAVControl", join({tracks::onTv, sound::avMissing}), [this] { return tell(); }, 0);
  EXPECT_EQ(text, untouched);
}

TEST_F(TvCurrentAudio, ProxiesThatAreMissingAreMadeInTheirOrder) {
  worker.servicedata_aux_proxy = nullptr;
  worker.av_ctrl_proxy = nullptr;
  EXPECT_EQ(tell(), 1);
  const Lines all = made();
  ASSERT_GE(all.size(), 4U);
  EXPECT_EQ(all[1], "TVServiceAPI::ServiceDataAux(profile=1, index=0) -> made");
  EXPECT_EQ(all[2], "TVServiceAPI::CreateAVControl(profile=1, index=0) -> 0");
  EXPECT_EQ(all[3], "IAVControl[main#2]::GetCurrentAudioInfo() lang=11 index=0 -> 1");
}

TEST_F(TvCurrentAudio, AnExceptionAnswersMinusOneAndLeavesTheText) {
  EXPECT_EQ(tellUnder("IAVControl::GetCurrentAudioInfo result=throw"), -1);
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), join({tracks::onTv, {caught(operation, "IAVControl::GetCurrentAudioInfo")}}));
  EXPECT_EQ(tellUnder("ServiceDataAux::GetAudio result=throw"), -1);
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), join({tracks::onTv, tracks::currentTold, {caught(operation, "ServiceDataAux::GetAudio")}}));
}

TEST_F(TvCurrentAudio, ADocumentThatCannotBeWrittenAnswersMinusOneAndLeavesTheText) {
  const WriterFault writer;
  EXPECT_EQ(tell(), -1);
  EXPECT_TRUE(writer.hit());
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), join({tracks::onTv, tracks::currentTold, {told("0", "11"), notWritten(operation)}}));
}

TEST_F(TvCurrentAudio, AServiceWithoutAnIdIsAskedForByTheGreatestOne) {
  EXPECT_EQ(tellUnder("IServiceNavigation::GetCurrentService out.service={13=7}"), -1);
  EXPECT_EQ(text, current("0", "11", "0"));
  EXPECT_EQ(calls().back(), sound::aux + "GetAudio(serviceId=18446744073709551615, index=0) audio=0,0,0,0,0 -> 0");
}

TEST_F(TvCurrentAudio, IsThatOfTheWindowDriven) {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  forget();
  tell();
  EXPECT_EQ(calls()[1].rfind("IAVControl[pip#2]::GetCurrentAudioInfo()", 0), 0U);
}

// From the secondary stack.

const std::string variant = "GetCurrentAudioInfo_D2TV";
const std::string failureDocument = current("-1", "0", "-1");
const std::string ispBegun = "3 CEmpTaskWindow::GetCurrentAudioInfo_D2TV::Start of  GetCurrentAudioInfo \n ";
const std::string ispNotKnown = "0 CEmpTaskWindow::GetMultiAudioInfo::GetMultiAudioInfo() fail to return   ";
const std::string ispFailed = sound::failed(variant);

std::string ispTold(const std::string& pid, const std::string& index, const std::string& lang) {
  return "3 CEmpTaskWindow::GetCurrentAudioInfo_D2TV::GetCurrentAudioInfo =>pid:" + pid + ", index:" + index +
         " lang:" + lang;
}

class IspCurrentAudio : public CurrentAudio {
 protected:
  void SetUp() override {
    CurrentAudio::SetUp();
    showIsp(threeTracks, {});
  }
};

TEST_F(IspCurrentAudio, IsTheTrackThatTheStackUses) {
  ASSERT_TRUE(tv().selectIspAudio(2));
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(text, "{\n   \"index\" : 2,\n   \"lang\" : 31,\n   \"pid\" : 258\n}\n");
  EXPECT_EQ(calls(), (Lines{tracks::ispTold, tracks::askManager + "made",
                            tracks::manager + "GetCurrentAudioInfo() pid=258 index=2 lang=31 -> 0"}));
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, ispTold("258", "2", "31"), sound::went(variant)}));
}

TEST_F(IspCurrentAudio, TheLanguageIsUnsignedAndLoggedSigned) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetCurrentAudioInfo out.pid=-3 out.index=-2 out.lang=4294967295"), 1);
  EXPECT_EQ(text, current("-2", "4294967295", "-3"));
  const Json::Value root = parsed(text);
  EXPECT_TRUE(root["lang"].isUInt());
  EXPECT_TRUE(root["pid"].isInt());
  EXPECT_TRUE(root["index"].isInt());
  EXPECT_EQ(logs()[2], ispTold("-3", "-2", "-1"));
}

TEST_F(IspCurrentAudio, WhatTheStackDoesNotWriteStaysPreset) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetCurrentAudioInfo result=unwritten"), 1);
  EXPECT_EQ(text, current("-1", "0", "-1"));
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, ispTold("-1", "-1", "0"), sound::went(variant)}));
}

TEST_F(IspCurrentAudio, AStackThatCannotTellAnswersZeroWithADocument) {
  for (const std::string& way : tracks::notZero) {
    EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetCurrentAudioInfo out.pid=1 out.index=2 out.lang=3 " + way), 0) << way;
    EXPECT_EQ(text, failureDocument) << way;
    EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, ispNotKnown, ispFailed}));
  }
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetCurrentAudioInfo result=throw"), 0);
  EXPECT_EQ(text, failureDocument);
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, caught(variant, "CD2tvMgrProxy::GetCurrentAudioInfo"), ispNotKnown,
                           ispFailed}));
}

TEST_F(IspCurrentAudio, WithoutAManagerAnswersZeroWithADocument) {
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetInstance result=null"), 0);
  EXPECT_EQ(text, failureDocument);
  EXPECT_EQ(calls(), (Lines{tracks::ispTold, tracks::askManager + "null [fault]"}));
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, tracks::noManager, ispFailed}));
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetInstance result=throw"), 0);
  EXPECT_EQ(text, failureDocument);
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, caught(variant, "CD2tvMgrProxy::GetInstance"), tracks::noManager,
                           ispFailed}));
}

TEST_F(IspCurrentAudio, ADocumentThatCannotBeWrittenAnswersZeroAndLeavesTheText) {
  const WriterFault writer;
  EXPECT_EQ(tell(), 0);
  EXPECT_TRUE(writer.hit());
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, ispTold("256", "0", "11"), notWritten(variant), ispFailed}));
  EXPECT_EQ(tellUnder("CD2tvMgrProxy::GetInstance result=null"), 0);
  EXPECT_EQ(text, untouched);
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispBegun, tracks::noManager, notWritten(variant), ispFailed}));
}

TEST_F(IspCurrentAudio, TheVariantItselfFailsWithMinusOne) {
  EXPECT_EQ(worker.GetCurrentAudioInfo_D2TV(text), 1);
  for (const std::string words : {"GetInstance result=null", "GetInstance result=throw", "GetCurrentAudioInfo result=2",
                                  "GetCurrentAudioInfo result=1", "GetCurrentAudioInfo result=throw"}) {
    EXPECT_EQ(under("CD2tvMgrProxy::" + words, [this] { return worker.GetCurrentAudioInfo_D2TV(text); }), -1) << words;
    EXPECT_EQ(text, failureDocument) << words;
  }
}

TEST_F(IspCurrentAudio, NothingOfTheTvServiceIsNeeded) {
  worker.servicedata_aux_proxy = nullptr;
  worker.av_ctrl_proxy = nullptr;
  EXPECT_EQ(tell(), 1);
  EXPECT_EQ(worker.servicedata_aux_proxy, nullptr);
  EXPECT_EQ(worker.av_ctrl_proxy, nullptr);
}

}  // namespace

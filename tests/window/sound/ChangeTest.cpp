// Choosing an audio track, by its PID or its position, on either TV stack; and the volume, which is nobody's.
#include <climits>

#include "Sound.h"

namespace {

using sound::AudioTrack;
using sound::threeTracks;
using support::caught;
using support::join;
using support::Lines;
using virtualtv::WindowId;

class ChangeAudio : public sound::SoundTest {
 protected:
  void SetUp() override {
    SoundTest::SetUp();
    give(threeTracks);
  }

  int byPid(short pid) { return worker.ChangeAudioPID(pid); }
  int byPidUnder(const std::string& words, short pid = 257) {
    return under(words, [&] { return byPid(pid); });
  }
  bool byIndex(int index) { return worker.ChangeAudioByIndex(index); }
  bool byIndexUnder(const std::string& words, int index = 1) {
    return under(words, [&] { return byIndex(index); });
  }

  /// Positions of the tracks in use.
  int inUse() { return tv().state()[WindowId::main].inUse.audio; }
  int inUseOfIsp() { return tv().state().isp.inUse.audio; }
};

// By PID, on the TV service.

const std::string begun = "3 SetCurrentAudioByIndex begin!";
const std::string succeeded = "3 SetCurrentAudioByIndex success!";
const std::string failed = "0 SetCurrentAudioByIndex failed!";
const Lines before = join({tracks::onTv, tracks::currentTold});

std::string counted(const std::string& count) {
  return "3 SizeOfAudio = " + count + ".\n";
}
std::string compared(const std::string& position, const std::string& trackPid, const std::string& pid) {
  return "3 k =" + position + ",audio.pid = " + trackPid + ",pid = " + pid + "!";
}
std::string notFound(const std::string& pid, const std::string& id = "281") {
  return "0 Don't find pid = " + pid + " in curCh = " + id + "!";
}
std::string askTrack(const std::string& index, const std::string& audio) {
  return sound::aux + "GetAudio(serviceId=281, index=" + index + ") audio=" + audio + " -> 1";
}
std::string select(const std::string& index, const std::string& result = "1") {
  return sound::av + "SetCurrentAudioByIndex(index=" + index + ") -> " + result;
}
const std::string askSize = sound::aux + "GetAudioSize(serviceId=281) size=3 -> 1";

class TvAudioPid : public ChangeAudio {};

TEST_F(TvAudioPid, TheTrackWithThePidIsSelectedAndTheSearchEnds) {
  EXPECT_EQ(byPid(257), 1);
  EXPECT_EQ(inUse(), 1);
  EXPECT_EQ(made(), join({{tracks::tvTold},
                          tracks::askCurrent,
                          {askSize, askTrack("0", "11,4,256,2,3"), askTrack("1", "21,3,257,1,2"), select("1")}}));
  EXPECT_EQ(logs(),
            join({before, {counted("3"), compared("0", "256", "257"), compared("1", "257", "257"), begun, succeeded}}));
}

TEST_F(TvAudioPid, OfTwoTracksWithThePidTheFirstIsSelected) {
  give({threeTracks[0], threeTracks[1], threeTracks[1]});
  EXPECT_EQ(byPid(257), 1);
  EXPECT_EQ(inUse(), 1);
}

TEST_F(TvAudioPid, APidThatNoTrackHasAnswersMinusOne) {
  EXPECT_EQ(byPid(300), -1);
  EXPECT_EQ(inUse(), 0);
  const Lines all = calls();
  EXPECT_EQ(all.back(), askTrack("2", "31,2,258,0,1"));
  EXPECT_EQ(logs(), join({before,
                          {counted("3"), compared("0", "256", "300"), compared("1", "257", "300"),
                           compared("2", "258", "300"), notFound("300")}}));
}

TEST_F(TvAudioPid, AServiceWithoutTracksAnswersMinusOne) {
  give({});
  EXPECT_EQ(byPid(257), -1);
  EXPECT_EQ(logs(), join({before, {counted("0"), notFound("257")}}));
}

TEST_F(TvAudioPid, ANegativePidMatchesNoTrack) {
  EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudio always out.audio=0,0,65535,0,0", -1), -1);
  EXPECT_EQ(logs(), join({before,
                          {counted("3"), compared("0", "65535", "-1"), compared("1", "65535", "-1"),
                           compared("2", "65535", "-1"), notFound("-1")}}));
  EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudio always out.audio=0,0,32768,0,0", SHRT_MIN), -1);
  EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudio nth=2 out.audio=0,0,32767,0,0", SHRT_MAX), 1);
  EXPECT_EQ(inUse(), 1);
}

TEST_F(TvAudioPid, WhetherATrackCanBeReadIsNotAsked) {
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudio nth=3 out.audio=0,0,999,0,0 " + way, 999), 1) << way;
    EXPECT_EQ(inUse(), 2);
  }
  std::vector<AudioTrack> unreadable = threeTracks;
  unreadable[0].readable = false;
  give(unreadable);
  EXPECT_EQ(byPid(0), 1) << "a track that is not written has the PID 0";
  EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudio nth=2 result=unwritten", 257), -1)
      << "nothing is left of the track before";
}

TEST_F(TvAudioPid, WhetherTheCountWasToldIsNotAsked) {
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudioSize out.size=2 " + way), 1) << way;
    EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudioSize out.size=1 " + way), -1) << way;
    EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudioSize " + way), -1) << way;
  }
  EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudioSize result=unwritten"), -1);
  EXPECT_EQ(logs(), join({before, {counted("0"), notFound("257")}}));
}

TEST_F(TvAudioPid, ASelectionThatFailsAnswersZeroAndEndsTheSearch) {
  give({threeTracks[1], threeTracks[1]});
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(byPidUnder("IAVControl::SetCurrentAudioByIndex " + way), 0) << way;
    EXPECT_EQ(calls().size(), 6U) << "the second is not tried";
    EXPECT_EQ(logs(), join({before, {counted("2"), compared("0", "257", "257"), begun, failed}}));
  }
  EXPECT_EQ(byPidUnder("IAVControl::SetCurrentAudioByIndex result=2"), 1);
}

TEST_F(TvAudioPid, AnExceptionAnswersZero) {
  EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudioSize result=throw"), 0);
  EXPECT_EQ(logs(), join({before, {caught("ChangeAudioPID", "ServiceDataAux::GetAudioSize")}}));
  EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudio result=throw"), 0);
  EXPECT_EQ(logs(), join({before, {counted("3"), caught("ChangeAudioPID", "ServiceDataAux::GetAudio")}}));
  EXPECT_EQ(byPidUnder("IAVControl::SetCurrentAudioByIndex result=throw", 256), 0);
  EXPECT_EQ(logs(), join({before,
                          {counted("3"), compared("0", "256", "256"), begun,
                           caught("ChangeAudioPID", "IAVControl::SetCurrentAudioByIndex")}}));
  EXPECT_EQ(inUse(), 0);
}

TEST_F(TvAudioPid, WithoutAServiceOnScreenAnswersZero) {
  for (const auto& [words, lines] : sound::noCurrent) {
    EXPECT_EQ(byPidUnder(words), 0) << words;
    EXPECT_EQ(logs(), join({tracks::onTv, lines})) << words;
  }
  failsWithout(
      worker.svc_navi_proxy, "CreateServiceNavigation",
      join({tracks::onTv, channels::noNavigation(), {"0 ServiceNavigationproxy is NULL"}}),
      [this] { return byPid(257); }, 0);
}

TEST_F(TvAudioPid, WithoutAProxyAnswersZeroBeforeTheServiceOnScreenIsAskedFor) {
  failsWithout(
      worker.servicedata_aux_proxy, "ServiceDataAux", join({tracks::onTv, sound::auxMissing}),
      [this] { return byPid(257); }, 0);
  ASSERT_TRUE(worker.t_CheckServiceDataAuxproxy());
  failsWithout(
      worker.av_ctrl_proxy, "CreateAVControl", join({tracks::onTv, sound::avMissing}), [this] { return byPid(257); },
      0);
}

TEST_F(TvAudioPid, AServiceWithoutAnIdIsAskedForByTheGreatestOne) {
  EXPECT_EQ(byPidUnder("IServiceNavigation::GetCurrentService out.service={13=7}"), -1);
  EXPECT_EQ(logs().back(), notFound("257", "18446744073709551615"));
}

// By position, on the TV service.

const std::string indexTold = "3 SetAudioByIndex =>[1]";

class TvAudioIndex : public ChangeAudio {};

TEST_F(TvAudioIndex, TheTrackAtThePositionIsSelected) {
  EXPECT_TRUE(byIndex(1));
  EXPECT_EQ(inUse(), 1);
  EXPECT_EQ(calls(), (Lines{tracks::tvTold, select("1")}));
  EXPECT_EQ(logs(), join({tracks::onTv, {indexTold}}));
}

TEST_F(TvAudioIndex, EveryPositionReachesTheSet) {
  for (const int index : {-1, 3, INT_MAX, INT_MIN}) {
    EXPECT_FALSE(byIndex(index)) << index;
    EXPECT_EQ(calls(), (Lines{tracks::tvTold, select(std::to_string(index), "0")}));
    EXPECT_EQ(logs(), join({tracks::onTv, {"3 SetAudioByIndex =>[" + std::to_string(index) + "]"}}));
  }
}

TEST_F(TvAudioIndex, AnyResultAboveZeroSucceeds) {
  EXPECT_TRUE(byIndexUnder("IAVControl::SetCurrentAudioByIndex result=2"));
  for (const std::string& way : tracks::notPositive) {
    EXPECT_FALSE(byIndexUnder("IAVControl::SetCurrentAudioByIndex " + way)) << way;
    EXPECT_EQ(logs(), join({tracks::onTv, {indexTold}}));
  }
}

TEST_F(TvAudioIndex, AnExceptionIsAFailure) {
  EXPECT_FALSE(byIndexUnder("IAVControl::SetCurrentAudioByIndex result=throw"));
  EXPECT_EQ(logs(),
            join({tracks::onTv, {caught("ChangeAudioByIndex", "IAVControl::SetCurrentAudioByIndex"), indexTold}}));
}

TEST_F(TvAudioIndex, NeedsTheAvControlAlone) {
  failsWithout(
      worker.av_ctrl_proxy, "CreateAVControl", join({tracks::onTv, sound::avMissing}), [this] { return byIndex(1); },
      false);
  ASSERT_TRUE(worker.t_CheckAVControlproxy());
  worker.servicedata_aux_proxy = nullptr;
  EXPECT_TRUE(byIndex(1));
  EXPECT_EQ(worker.servicedata_aux_proxy, nullptr);
}

TEST_F(TvAudioIndex, IsThatOfTheWindowDriven) {
  ASSERT_EQ(worker.SetWindow(PL_WINDOW_WINDOW_PIP), 1);
  EXPECT_TRUE(byIndexUnder("IAVControl::SetCurrentAudioByIndex result=1"));
  EXPECT_EQ(calls().back(), "IAVControl[pip#2]::SetCurrentAudioByIndex(index=1) -> 1 [fault]");
  EXPECT_EQ(inUse(), 0);
}

// By PID, on the secondary stack.

const std::string ispPid = "ChangeAudioPID_D2TV";
const std::string ispPidBegun = "3 CEmpTaskWindow::ChangeAudioPID::ChangeAudioByPID Start!!";
const std::string ispPidDone = "3 CEmpTaskWindow::ChangeAudioPID::ChangeAudioByPID Success!!";
const std::string ispPidNoManager = "0 CEmpTaskWindow::ChangeAudioPID::Invalid Channel Manager Instance.";

std::string ispPidTold(const std::string& pid) {
  return "3 CEmpTaskWindow::ChangeAudioPID::SetAudioByPID =>[" + pid + "]";
}

class IspChangeAudio : public ChangeAudio {
 protected:
  void SetUp() override {
    ChangeAudio::SetUp();
    showIsp(threeTracks, {});
  }
};
class IspAudioPid : public IspChangeAudio {};

TEST_F(IspAudioPid, ThePidReachesTheStack) {
  EXPECT_EQ(byPid(257), 1);
  EXPECT_EQ(inUseOfIsp(), 1);
  EXPECT_EQ(inUse(), 0);
  EXPECT_EQ(calls(),
            (Lines{tracks::ispTold, tracks::askManager + "made", tracks::manager + "ChangeAudioByPID(pid=257) -> 0"}));
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispPidBegun, ispPidDone, sound::went(ispPid)}));
}

TEST_F(IspAudioPid, ANegativePidIsWidenedWithItsSign) {
  EXPECT_EQ(byPidUnder("CD2tvMgrProxy::ChangeAudioByPID result=0", -2), 1);
  EXPECT_EQ(calls().back(), tracks::manager + "ChangeAudioByPID(pid=4294967294) -> 0 [fault]");
}

TEST_F(IspAudioPid, ARefusalAnswersZero) {
  for (const std::string& way : tracks::notZero) {
    EXPECT_EQ(byPidUnder("CD2tvMgrProxy::ChangeAudioByPID " + way, -2), 0) << way;
    EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispPidBegun, ispPidTold("-2"), sound::failed(ispPid)}));
  }
  EXPECT_EQ(byPid(300), 0) << "no track has it";
}

TEST_F(IspAudioPid, TheStacksFailureOfOneReadsAsASuccess) {
  EXPECT_EQ(byPidUnder("CD2tvMgrProxy::ChangeAudioByPID result=1"), 1);
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispPidBegun, ispPidTold("257"), sound::went(ispPid)}));
}

TEST_F(IspAudioPid, WithoutAManagerAnswersZero) {
  EXPECT_EQ(byPidUnder("CD2tvMgrProxy::GetInstance result=null"), 0);
  EXPECT_EQ(calls(), (Lines{tracks::ispTold, tracks::askManager + "null [fault]"}));
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispPidBegun, ispPidNoManager, sound::failed(ispPid)}));
}

TEST_F(IspAudioPid, AnExceptionAnswersZero) {
  EXPECT_EQ(byPidUnder("CD2tvMgrProxy::GetInstance result=throw"), 0);
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispPidBegun, caught(ispPid, "CD2tvMgrProxy::GetInstance"), ispPidNoManager,
                           sound::failed(ispPid)}));
  EXPECT_EQ(byPidUnder("CD2tvMgrProxy::ChangeAudioByPID result=throw"), 0);
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispPidBegun, caught(ispPid, "CD2tvMgrProxy::ChangeAudioByPID"),
                           ispPidTold("257"), sound::failed(ispPid)}));
}

TEST_F(IspAudioPid, TheVariantItselfAnswersTheStacksOwnNumber) {
  for (const int result : {1, 2, -1, -77, INT_MIN}) {
    EXPECT_EQ(under("CD2tvMgrProxy::ChangeAudioByPID result=" + std::to_string(result),
                    [this] { return worker.ChangeAudioPID_D2TV(257); }),
              result);
  }
  EXPECT_EQ(under("CD2tvMgrProxy::GetInstance result=null", [this] { return worker.ChangeAudioPID_D2TV(257); }), -1);
  EXPECT_EQ(under("CD2tvMgrProxy::ChangeAudioByPID result=throw", [this] { return worker.ChangeAudioPID_D2TV(257); }),
            -1);
  EXPECT_EQ(worker.ChangeAudioPID_D2TV(257), 1);
}

// By position, on the secondary stack.

const std::string ispIndex = "ChangeAudioByIndex_D2TV";
const std::string ispIndexBegun = "3 CEmpTaskWindow::ChangeAudioByIndex()::ChangeAudioByIndex Start!!";
const std::string ispIndexTold = "3 CEmpTaskWindow::ChangeAudioByIndex::SetAudioByIndex =>[1]";
const std::string ispIndexDone = "3 CEmpTaskWindow::ChangeAudioByIndex()::ChangeAudioByIndex Success!!";
const std::string ispIndexNoManager = "0 CEmpTaskWindow::ChangeAudioByIndex()::Invalid Channel Manager Instance.";

class IspAudioIndex : public IspChangeAudio {};

TEST_F(IspAudioIndex, ThePositionReachesTheStack) {
  EXPECT_TRUE(byIndex(1));
  EXPECT_EQ(inUseOfIsp(), 1);
  EXPECT_EQ(inUse(), 0);
  EXPECT_EQ(calls(), (Lines{tracks::ispTold, tracks::askManager + "made",
                            tracks::manager + "ChangeAudioByIndex(index=1) -> 0"}));
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispIndexBegun, ispIndexTold, ispIndexDone, sound::went(ispIndex)}));
}

TEST_F(IspAudioIndex, ANegativePositionIsPassedUnsigned) {
  EXPECT_TRUE(byIndexUnder("CD2tvMgrProxy::ChangeAudioByIndex result=0", -1));
  EXPECT_EQ(calls().back(), tracks::manager + "ChangeAudioByIndex(index=4294967295) -> 0 [fault]");
  EXPECT_EQ(logs()[2], "3 CEmpTaskWindow::ChangeAudioByIndex::SetAudioByIndex =>[-1]");
}

TEST_F(IspAudioIndex, ARefusalIsAFailure) {
  for (const std::string& way : tracks::notZero) {
    EXPECT_FALSE(byIndexUnder("CD2tvMgrProxy::ChangeAudioByIndex " + way)) << way;
    EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispIndexBegun, ispIndexTold, sound::failed(ispIndex)}));
  }
  EXPECT_FALSE(byIndex(3)) << "there is no such track";
}

TEST_F(IspAudioIndex, TheStacksFailureOfOneReadsAsASuccess) {
  EXPECT_TRUE(byIndexUnder("CD2tvMgrProxy::ChangeAudioByIndex result=1"));
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispIndexBegun, ispIndexTold, sound::went(ispIndex)}));
}

TEST_F(IspAudioIndex, WithoutAManagerIsAFailure) {
  EXPECT_FALSE(byIndexUnder("CD2tvMgrProxy::GetInstance result=null"));
  EXPECT_EQ(calls(), (Lines{tracks::ispTold, tracks::askManager + "null [fault]"}));
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispIndexBegun, ispIndexNoManager, sound::failed(ispIndex)}));
}

TEST_F(IspAudioIndex, AnExceptionIsAFailure) {
  EXPECT_FALSE(byIndexUnder("CD2tvMgrProxy::GetInstance result=throw"));
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispIndexBegun, caught(ispIndex, "CD2tvMgrProxy::GetInstance"),
                           ispIndexNoManager, sound::failed(ispIndex)}));
  EXPECT_FALSE(byIndexUnder("CD2tvMgrProxy::ChangeAudioByIndex result=throw"));
  EXPECT_EQ(logs(), (Lines{tracks::onIsp, ispIndexBegun, ispIndexTold,
                           caught(ispIndex, "CD2tvMgrProxy::ChangeAudioByIndex"), sound::failed(ispIndex)}));
}

TEST_F(IspAudioIndex, TheVariantItselfAnswersTheStacksOwnNumber) {
  for (const int result : {1, 2, -1, -77, INT_MIN}) {
    EXPECT_EQ(under("CD2tvMgrProxy::ChangeAudioByIndex result=" + std::to_string(result),
                    [this] { return worker.ChangeAudioByIndex_D2TV(1); }),
              result);
  }
  EXPECT_EQ(under("CD2tvMgrProxy::GetInstance result=null", [this] { return worker.ChangeAudioByIndex_D2TV(1); }), -1);
  EXPECT_EQ(worker.ChangeAudioByIndex_D2TV(1), 1);
}

TEST_F(IspAudioIndex, NothingOfTheTvServiceIsNeeded) {
  worker.servicedata_aux_proxy = nullptr;
  worker.av_ctrl_proxy = nullptr;
  EXPECT_TRUE(byIndex(1));
  EXPECT_EQ(byPid(258), 1);
  EXPECT_EQ(worker.servicedata_aux_proxy, nullptr);
  EXPECT_EQ(worker.av_ctrl_proxy, nullptr);
}

// The volume.

TEST_F(ChangeAudio, NoVolumeIsEverSet) {
  const virtualtv::TvState at = tv().state();
  for (int volume = 0; volume <= UCHAR_MAX; ++volume) {
    EXPECT_EQ(worker.SetSourceVolume(static_cast<unsigned char>(volume)), 0) << volume;
  }
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(logs(), Lines());
  EXPECT_TRUE(tv().state() == at);
}

}  // namespace

// SPDX-License-Identifier: MIT
// Selecting an audio track by its PID or its position, on either TV stack, including rare answers of the set.
#include <climits>

#include "Sound.h"

namespace {

using support::caught;
using support::join;
using support::Lines;

/// The two ways to select a track, on one of the stacks.
template <typename Base>
class ChangeAudio : public Base {
 protected:
  int byPidUnder(const std::string& words, short pid = 257) {
    return this->under(words, [&] { return this->worker.ChangeAudioPID(pid); });
  }
  int byIndexUnder(const std::string& words, int index = 1) {
    return this->under(words, [&] { return this->worker.ChangeAudioByIndex(index); });
  }
};

// On the TV service.

const Lines begunOnTv = join({tracks::onTv, tracks::currentTold});

std::string counted(const std::string& count) {
  return "3 SizeOfAudio = " + count + ".\n";
}
std::string compared(const std::string& position, const std::string& trackPid, const std::string& pid) {
  return "3 k =" + position + ",audio.pid = " + trackPid + ",pid = " + pid + "!";
}
/// The log lines of a search that ends at the second track, which has the PID 257, followed by `then`.
Lines found(const Lines& then) {
  return join(
      {{counted("3"), compared("0", "256", "257"), compared("1", "257", "257"), "3 SetCurrentAudioByIndex begin!"},
       then});
}

using TvChangeAudio = ChangeAudio<sound::SoundTest>;

TEST_F(TvChangeAudio, ANegativePidMatchesNoTrack) {
  EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudio always out.audio=0,0,65535,0,0", -1), -1);
  EXPECT_EQ(logs(), join({begunOnTv,
                          {counted("3"), compared("0", "65535", "-1"), compared("1", "65535", "-1"),
                           compared("2", "65535", "-1"), "0 Don't find pid = -1 in curCh = 281!"}}));
  EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudio always out.audio=0,0,32768,0,0", SHRT_MIN), -1);
  EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudio nth=2 out.audio=0,0,32767,0,0", SHRT_MAX), 1);
}

TEST_F(TvChangeAudio, WhetherATrackCanBeReadIsNotAsked) {
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudio nth=3 out.audio=0,0,999,0,0 " + way, 999), 1) << way;
  }
  EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudio result=unwritten", 0), 1)
      << "a track that is not written has the PID 0";
  EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudio nth=2 result=unwritten"), -1) << "nothing is left of the track before";
}

TEST_F(TvChangeAudio, WhetherTheCountWasToldIsNotAsked) {
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudioSize out.size=2 " + way), 1) << way;
    EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudioSize out.size=1 " + way), -1) << way;
    EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudioSize " + way, 256), -1) << way;
  }
  EXPECT_EQ(byPidUnder("ServiceDataAux::GetAudioSize result=unwritten", 256), -1);
}

TEST_F(TvChangeAudio, ByPidEachFailureAnswersZero) {
  const auto change = [this] { return worker.ChangeAudioPID(257); };
  const std::string select = "IAVControl::SetCurrentAudioByIndex";
  expectEach(
      begunOnTv,
      {{"ServiceDataAux::GetAudioSize result=throw", 0, {caught("ChangeAudioPID", "ServiceDataAux::GetAudioSize")}},
       {"ServiceDataAux::GetAudio result=throw",
        0,
        {counted("3"), caught("ChangeAudioPID", "ServiceDataAux::GetAudio")}},
       {select + " result=throw", 0, found({caught("ChangeAudioPID", select)})},
       {select + " result=2", 1, found({"3 SetCurrentAudioByIndex success!"})},
       {select, 0, found({"0 SetCurrentAudioByIndex failed!"}), tracks::notPositive}},
      change);
  expectEach(tracks::onTv,
             {{"IServiceNavigation::GetTvMode result=0", 0, {sound::noMode}},
              {"IServiceNavigation::GetCurrentService result=-1", 0, {sound::noService}}},
             change);
  failsWithout(worker.svc_navi_proxy, "CreateServiceNavigation", join({tracks::onTv, sound::navigationMissing}), change,
               0);
  failsWithout(worker.servicedata_aux_proxy, "ServiceDataAux", join({tracks::onTv, sound::auxMissing}), change, 0);
  ASSERT_TRUE(worker.t_CheckServiceDataAuxproxy());
  failsWithout(worker.av_ctrl_proxy, "CreateAVControl", join({tracks::onTv, sound::avMissing}), change, 0);
}

TEST_F(TvChangeAudio, AServiceWithoutAnIdIsAskedForByTheGreatestOne) {
  EXPECT_EQ(byPidUnder(sound::nameless), -1);
  EXPECT_EQ(logs().back(), "0 Don't find pid = 257 in curCh = " + sound::greatest + "!");
}

TEST_F(TvChangeAudio, EveryPositionReachesTheSet) {
  for (const int index : {-1, 3, INT_MAX, INT_MIN}) {
    EXPECT_FALSE(worker.ChangeAudioByIndex(index)) << index;
    const std::string shown = std::to_string(index);
    EXPECT_EQ(calls().back(), "IAVControl[main#1]::SetCurrentAudioByIndex(index=" + shown + ") -> 0");
    EXPECT_EQ(logs(), join({tracks::onTv, {"3 SetAudioByIndex =>[" + shown + "]"}}));
  }
}

TEST_F(TvChangeAudio, ByPositionAnyResultAboveZeroIsASuccess) {
  const auto change = [this] { return worker.ChangeAudioByIndex(1); };
  const std::string told = "3 SetAudioByIndex =>[1]";
  const std::string select = "IAVControl::SetCurrentAudioByIndex";
  expectEach(tracks::onTv,
             {{select + " result=2", true, {told}},
              {select + " result=throw", false, {caught("ChangeAudioByIndex", select), told}},
              {select, false, {told}, tracks::notPositive}},
             change);
  failsWithout(worker.av_ctrl_proxy, "CreateAVControl", join({tracks::onTv, sound::avMissing}), change, false);
}

TEST_F(TvChangeAudio, APositionNeedsTheAvControlAlone) {
  worker.servicedata_aux_proxy = nullptr;
  EXPECT_TRUE(worker.ChangeAudioByIndex(1));
  EXPECT_EQ(worker.servicedata_aux_proxy, nullptr);
}

// On the secondary stack.

const std::string pidVariant = "ChangeAudioPID_D2TV";
const std::string indexVariant = "ChangeAudioByIndex_D2TV";

using IspChangeAudio = ChangeAudio<sound::IspSoundTest>;

TEST_F(IspChangeAudio, ANegativeNumberReachesTheStackUnsigned) {
  EXPECT_EQ(byPidUnder("CD2tvMgrProxy::ChangeAudioByPID result=0", -2), 1);
  EXPECT_EQ(calls().back(), tracks::manager + "ChangeAudioByPID(pid=4294967294) -> 0 [fault]");
  EXPECT_TRUE(byIndexUnder("CD2tvMgrProxy::ChangeAudioByIndex result=0", -1));
  EXPECT_EQ(calls().back(), tracks::manager + "ChangeAudioByIndex(index=4294967295) -> 0 [fault]");
}

TEST_F(IspChangeAudio, ByPidOnlyZeroAndOneOfTheStackAreSuccesses) {
  const std::string call = "CD2tvMgrProxy::ChangeAudioByPID";
  const std::string told = "3 CEmpTaskWindow::ChangeAudioPID::SetAudioByPID =>[257]";
  const std::string noManager = "0 CEmpTaskWindow::ChangeAudioPID::Invalid Channel Manager Instance.";
  const std::string failed = sound::failed(pidVariant);
  const Lines begun{tracks::onIsp, "3 CEmpTaskWindow::ChangeAudioPID::ChangeAudioByPID Start!!"};
  const auto change = [this] { return worker.ChangeAudioPID(257); };
  expectEach(begun,
             {{call + " result=1", 1, {told, sound::went(pidVariant)}},
              {call + " result=throw", 0, {caught(pidVariant, call), told, failed}},
              {call, 0, {told, failed}, tracks::notZero}},
             change);
  expectWithoutManager(pidVariant, begun, {noManager, failed}, change, 0);
}

TEST_F(IspChangeAudio, ByPositionOnlyZeroAndOneOfTheStackAreSuccesses) {
  const std::string call = "CD2tvMgrProxy::ChangeAudioByIndex";
  const std::string told = "3 CEmpTaskWindow::ChangeAudioByIndex::SetAudioByIndex =>[1]";
  const std::string noManager = "0 CEmpTaskWindow::ChangeAudioByIndex()::Invalid Channel Manager Instance.";
  const std::string failed = sound::failed(indexVariant);
  const Lines begun{tracks::onIsp, "3 CEmpTaskWindow::ChangeAudioByIndex()::ChangeAudioByIndex Start!!"};
  const auto change = [this] { return worker.ChangeAudioByIndex(1); };
  expectEach(begun,
             {{call + " result=1", true, {told, sound::went(indexVariant)}},
              {call + " result=throw", false, {told, caught(indexVariant, call), failed}},
              {call, false, {told, failed}, tracks::notZero}},
             change);
  expectWithoutManager(indexVariant, begun, {noManager, failed}, change, false);
}

TEST_F(IspChangeAudio, TheVariantsThemselvesAnswerTheStacksOwnNumber) {
  const auto byPid = [this] { return worker.ChangeAudioPID_D2TV(257); };
  const auto byIndex = [this] { return worker.ChangeAudioByIndex_D2TV(1); };
  for (const int result : {1, 2, -1, -77, INT_MIN}) {
    EXPECT_EQ(under("CD2tvMgrProxy::ChangeAudioByPID result=" + std::to_string(result), byPid), result);
    EXPECT_EQ(under("CD2tvMgrProxy::ChangeAudioByIndex result=" + std::to_string(result), byIndex), result);
  }
  EXPECT_EQ(under("CD2tvMgrProxy::ChangeAudioByPID result=throw", byPid), -1);
  for (const std::function<int()>& change : {std::function<int()>(byPid), std::function<int()>(byIndex)}) {
    EXPECT_EQ(under("CD2tvMgrProxy::GetInstance result=null", change), -1);
    EXPECT_EQ(change(), 1);
  }
}

TEST_F(IspChangeAudio, NothingOfTheTvServiceIsNeeded) {
  EXPECT_EQ(alone([this] { return worker.ChangeAudioByIndex(1) ? worker.ChangeAudioPID(258) : -1; }), 1);
}

}  // namespace

// Choosing a subtitle by its position, on either TV stack.
#include <climits>

#include "Subtitle.h"

namespace {

using support::caught;
using support::join;
using support::Lines;
using virtualtv::WindowId;

const std::string operation = "ChangeSubtitle";
const std::string asked = "3  this is ChangeSubtitle";

class ChangeSubtitle : public subtitle::SubtitleTest {
 protected:
  int change(int index = 1) { return worker.ChangeSubtitle(index); }
  int changeUnder(const std::string& words, int index = 1) {
    return under(words, [&] { return change(index); });
  }

  int inUse() { return tv().state()[WindowId::main].inUse.subtitle; }
  int inUseOfIsp() { return tv().state().isp.inUse.subtitle; }
};

// On the TV service.

const Lines onTv = join({{asked}, tracks::onTv, {"3 Current is not ISP Source.\n "}});

std::string select(const std::string& index, const std::string& outcome) {
  return subtitle::control + "SelectHybridSBT(index=" + index + ") -> " + outcome;
}

class TvChangeSubtitle : public ChangeSubtitle {};

TEST_F(TvChangeSubtitle, TheTrackAtThePositionIsSelected) {
  EXPECT_EQ(change(), 1);
  EXPECT_EQ(inUse(), 1);
  EXPECT_EQ(calls(), (Lines{tracks::tvTold, select("1", "1")}));
  EXPECT_EQ(logs(), onTv);
}

TEST_F(TvChangeSubtitle, ATrackThatTheSetRejectsAnswersMinusOne) {
  for (const int index : {-1, 3, INT_MAX, INT_MIN}) {
    EXPECT_EQ(change(index), -1) << index;
    EXPECT_EQ(calls(), (Lines{tracks::tvTold, select(std::to_string(index), "0")}));
    EXPECT_EQ(logs(), onTv);
  }
  for (const std::string& way : tracks::notPositive) {
    EXPECT_EQ(changeUnder("IDataControl::SelectHybridSBT " + way), -1) << way;
    EXPECT_EQ(logs(), onTv);
  }
  EXPECT_EQ(changeUnder("IDataControl::SelectHybridSBT result=2"), 1);
}

TEST_F(TvChangeSubtitle, AnExceptionAnswersMinusOne) {
  EXPECT_EQ(changeUnder("IDataControl::SelectHybridSBT result=throw"), -1);
  EXPECT_EQ(logs(), join({onTv, {caught(operation, "IDataControl::SelectHybridSBT")}}));
}

TEST_F(TvChangeSubtitle, WithoutDataControlAnswersMinusOne) {
  failsWithout(
      worker.svc_datacontrol_proxy, "CreateDataControl", join({onTv, subtitle::dataControlMissing}),
      [this] { return change(); }, -1);
}

TEST_F(TvChangeSubtitle, AMissingDataControlIsMade) {
  worker.svc_datacontrol_proxy = nullptr;
  EXPECT_EQ(change(), 1);
  EXPECT_EQ(calls(), (Lines{tracks::tvTold, "TVServiceAPI::CreateDataControl(profile=1, index=0) -> 0",
                            "IDataControl[main#2]::SelectHybridSBT(index=1) -> 1"}));
}

// On the secondary stack.

const Lines onIsp{asked, tracks::onIsp, "3 CEmpTaskWindow::ChangeSubtitleLanguage Start!!"};
const std::string done = "3 ChangeSubtitleLanguage Success!!";

std::string received(const std::string& index) {
  return "3 CEmpTaskWindow::ChangeSubtitleLanguage for recieved SubtitleIndex:: [" + index + "]!!";
}
std::string failed(const std::string& index) {
  return "3 CEmpTaskWindow::ChangeSubtitleLanguage Ends =>[" + index + "]  Success";
}

class IspChangeSubtitle : public ChangeSubtitle {
 protected:
  void SetUp() override {
    ChangeSubtitle::SetUp();
    showIsp({}, subtitle::fiveEntries);
  }
};

TEST_F(IspChangeSubtitle, ThePositionReachesTheStack) {
  EXPECT_EQ(change(4), 1);
  EXPECT_EQ(inUseOfIsp(), 4);
  EXPECT_EQ(inUse(), -1);
  EXPECT_EQ(calls(), (Lines{tracks::ispTold, tracks::askManager + "made",
                            tracks::manager + "ChangeSubtitleLanguage(index=4) -> 0"}));
  EXPECT_EQ(logs(), join({onIsp, {received("4"), done}}));
}

TEST_F(IspChangeSubtitle, AFailureIsTheStacksOwnNumberAndSaysSuccess) {
  for (const int result : {1, 2, -1, -5, INT_MIN}) {
    EXPECT_EQ(changeUnder("CD2tvMgrProxy::ChangeSubtitleLanguage result=" + std::to_string(result), -3), result);
    EXPECT_EQ(logs(), join({onIsp, {received("-3"), failed("-3")}}));
  }
  EXPECT_NE(change(5), 1) << "there is no such entry";
}

TEST_F(IspChangeSubtitle, AnExceptionAnswersMinusOne) {
  EXPECT_EQ(changeUnder("CD2tvMgrProxy::ChangeSubtitleLanguage result=throw"), -1);
  EXPECT_EQ(logs(),
            join({onIsp, {received("1"), caught(operation, "CD2tvMgrProxy::ChangeSubtitleLanguage"), failed("1")}}));
}

TEST_F(IspChangeSubtitle, WithoutAManagerAnswersMinusOne) {
  EXPECT_EQ(changeUnder("CD2tvMgrProxy::GetInstance result=null"), -1);
  EXPECT_EQ(calls(), (Lines{tracks::ispTold, tracks::askManager + "null [fault]"}));
  EXPECT_EQ(logs(), join({onIsp, {tracks::noManager}}));
  EXPECT_EQ(changeUnder("CD2tvMgrProxy::GetInstance result=throw"), -1);
  EXPECT_EQ(logs(), join({onIsp, {caught(operation, "CD2tvMgrProxy::GetInstance"), tracks::noManager}}));
}

}  // namespace

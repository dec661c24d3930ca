// Choosing a subtitle by its position, on either TV stack, where calls answer what they seldom do.
#include <climits>

#include "Subtitle.h"

namespace {

using support::caught;
using support::join;
using support::Lines;
using tracks::Outcome;

const std::string operation = "ChangeSubtitle";
const std::string asked = "3  this is ChangeSubtitle";

using TvChangeSubtitle = subtitle::SubtitleTest;

TEST_F(TvChangeSubtitle, AnyResultAboveZeroIsASuccess) {
  const Lines begun = join({{asked}, tracks::onTv, {"3 Current is not ISP Source.\n "}});
  const auto change = [this] { return worker.ChangeSubtitle(1); };
  std::vector<Outcome> outcomes{
      {"IDataControl::SelectHybridSBT result=2", 1, {}},
      {"IDataControl::SelectHybridSBT result=throw", -1, {caught(operation, "IDataControl::SelectHybridSBT")}}};
  for (const std::string& way : tracks::notPositive)
    outcomes.push_back({"IDataControl::SelectHybridSBT " + way, -1, {}});
  expectEach(begun, outcomes, change);
  failsWithout(worker.svc_datacontrol_proxy, "CreateDataControl", join({begun, subtitle::dataControlMissing}), change,
               -1);
}

TEST_F(TvChangeSubtitle, EveryPositionReachesTheSet) {
  for (const int index : {-1, 3, INT_MAX, INT_MIN}) {
    EXPECT_EQ(worker.ChangeSubtitle(index), -1) << index;
    EXPECT_EQ(calls().back(), "IDataControl[main#1]::SelectHybridSBT(index=" + std::to_string(index) + ") -> 0");
  }
}

using IspChangeSubtitle = subtitle::IspSubtitleTest;

TEST_F(IspChangeSubtitle, AFailureIsTheStacksOwnNumberAndSaysSuccess) {
  const std::string call = "CD2tvMgrProxy::ChangeSubtitleLanguage";
  const std::string received = "3 CEmpTaskWindow::ChangeSubtitleLanguage for recieved SubtitleIndex:: [-3]!!";
  const std::string failed = "3 CEmpTaskWindow::ChangeSubtitleLanguage Ends =>[-3]  Success";
  std::vector<Outcome> outcomes{{call + " result=throw", -1, {received, caught(operation, call), failed}},
                                {"CD2tvMgrProxy::GetInstance result=null", -1, {tracks::noManager}},
                                {"CD2tvMgrProxy::GetInstance result=throw",
                                 -1,
                                 {caught(operation, "CD2tvMgrProxy::GetInstance"), tracks::noManager}}};
  for (const int result : {1, 2, -1, -5, INT_MIN}) {
    outcomes.push_back({call + " result=" + std::to_string(result), result, {received, failed}});
  }
  expectEach({asked, tracks::onIsp, "3 CEmpTaskWindow::ChangeSubtitleLanguage Start!!"}, outcomes,
             [this] { return worker.ChangeSubtitle(-3); });
}

}  // namespace

// SPDX-License-Identifier: MIT
// Selecting a subtitle by its position, on either TV stack, including rare answers of the set.
#include <climits>

#include "Subtitle.h"

namespace {

using support::caught;
using support::join;
using support::Lines;

const std::string operation = "ChangeSubtitle";
const std::string asked = "3  this is ChangeSubtitle";

using TvChangeSubtitle = subtitle::SubtitleTest;

TEST_F(TvChangeSubtitle, AnyResultAboveZeroIsASuccess) {
  const Lines begun = join({{asked}, tracks::onTv, {"3 Current is not ISP Source.\n "}});
  const auto change = [this] { return worker.ChangeSubtitle(1); };
  const std::string select = "IDataControl::SelectHybridSBT";
  expectEach(begun,
             {{select + " result=2", 1, {}},
              {select + " result=throw", -1, {caught(operation, select)}},
              {select, -1, {}, tracks::notPositive}},
             change);
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
  const Lines begun{asked, tracks::onIsp, "3 CEmpTaskWindow::ChangeSubtitleLanguage Start!!"};
  const auto change = [this] { return worker.ChangeSubtitle(-3); };
  for (const int result : {1, 2, -1, -5, INT_MIN}) {
    expectEach(begun, {{call + " result=" + std::to_string(result), result, {received, failed}}}, change);
  }
  expectEach(begun, {{call + " result=throw", -1, {received, caught(operation, call), failed}}}, change);
  expectWithoutManager(operation, begun, {tracks::noManager}, change, -1);
}

}  // namespace

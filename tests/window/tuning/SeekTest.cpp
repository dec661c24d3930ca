// SPDX-License-Identifier: MIT
// A step of navigation from the service on screen.
#include "Tuning.h"
#include "services/ServiceStore.h"

namespace {

using channels::banner;
using tuning::askApp;
using tuning::caught;
using tuning::join;
using tuning::Lines;
using tuning::place;
using tuning::sourceLogs;
using tuning::tune;
using virtualtv::WindowId;

constexpr const char* function = "SetChannel_Seek";

class SeekTest : public tuning::TuningTest {
 protected:
  int seek(int seek, int navigator = 0) {
    return worker.SetChannel_Seek(static_cast<_PL_WINDOW_SEEK>(seek),
                                  static_cast<_PL_WINDOW_NAVIGATOR_MODE>(navigator));
  }
  static Lines opening(int seek, int navigator = 0) {
    const std::string start = "3 eSeek=[" + std::to_string(seek) + "] ";
    return {place(function), start + "eNavigatorMode=[" + std::to_string(navigator) + "]",
            start + "nTCNavigatorMode=[0]"};
  }
};

TEST_F(SeekTest, FourStepsToThePreviousService) {
  tv().tune(WindowId::main, *tv().services().keyOf(283));
  forget();
  EXPECT_EQ(seek(4), 1);
  EXPECT_EQ(current(), "282");
  EXPECT_EQ(logs(), join({opening(4),
                          {"3 appid is test.app", "3 svcid = 283", "3 svcidNext = 282"},
                          sourceLogs(0, 0),
                          {tuning::onTv}}));
  const Lines made = seen();
  ASSERT_EQ(made.size(), 8U);
  EXPECT_EQ(made[4],
            "IServiceNavigation[main#1]::SeekPreviousService(CONDITIONS, fetch 1 12 22, currentId=283, mode=-1,-1) "
            "service={1=2,12=282,22=0} -> 1");
}

TEST_F(SeekTest, APreviousServiceThatCannotBeHadAnswersMinus1) {
  const Lines before = join({opening(4), {"3 appid is test.app", "3 svcid = 281"}});
  for (const char* way : {"result=0", "result=-1"}) {
    EXPECT_EQ(under(std::string("IServiceNavigation::SeekPreviousService ") + way, [&] { return seek(4); }), -1);
    EXPECT_EQ(logs(), join({before, {banner(0, function)}}));
  }
  EXPECT_EQ(under("IServiceNavigation::SeekPreviousService result=throw", [&] { return seek(4); }), -1);
  EXPECT_EQ(logs(), join({before, {caught(function, "IServiceNavigation::SeekPreviousService"), banner(0, function)}}));
  EXPECT_EQ(current(), "281");
}

TEST_F(SeekTest, AnyOtherSeekIsRefusedBehindCurrentServiceAndApplication) {
  for (const int other : {0, 1, 2, 5, 6, 12, 100, -3, 2147483647}) {
    SCOPED_TRACE(other);
    showHdmi();
    EXPECT_EQ(seek(other), 0);
    EXPECT_EQ(logs(), join({opening(other), {"3 appid is test.app", "3 svcid = 281", "0 not support"}}));
    const Lines made = calls();
    ASSERT_EQ(made.size(), 4U);
    EXPECT_EQ(made[3], askApp);
    EXPECT_EQ(current(), "281");
    EXPECT_EQ(keys(), tuning::keysOfHdmi);
  }
}

TEST_F(SeekTest, EveryNavigatorModeIsTheSetsMode0) {
  for (const int navigator : {0, 1, 7, -1, 2147483647}) {
    SCOPED_TRACE(navigator);
    forget();
    EXPECT_EQ(seek(3, navigator), 1);
    EXPECT_EQ(calls()[1].rfind("TCNavigationModeHelper::GetNavigationCriteria(navigation=0, mode=0,1, service="
                               "18446744073709551615)",
                               0),
              0U);
    const Lines lines = logs();
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 3), opening(3, navigator));
  }
}

TEST_F(SeekTest, ATvModeThatIsNotWrittenCountsAsNotKnown) {
  EXPECT_EQ(under("IServiceNavigation::GetTvMode result=unwritten", [&] { return seek(3); }), 0);
  EXPECT_NE(calls().back().find("GetNavigationCriteria(navigation=0, mode=-1,-1, "), std::string::npos);
  EXPECT_EQ(logs(), join({opening(3), {"0 Get navigation criteria failed"}}));
}

TEST_F(SeekTest, CriteriaAreHadWithAnyNumberButZero) {
  EXPECT_EQ(under("TCNavigationModeHelper::GetNavigationCriteria result=-1", [&] { return seek(3); }), 1);
}

TEST_F(SeekTest, ACurrentServiceWithoutIdIsAllOnes) {
  EXPECT_EQ(under("IServiceNavigation::GetCurrentService result=unwritten", [&] { return seek(3); }), 1);
  EXPECT_EQ(logs()[4], "3 svcid = 18446744073709551615");
  EXPECT_NE(calls()[4].find("currentId=18446744073709551615, mode=-1,-1"), std::string::npos);
}

TEST_F(SeekTest, AFoundServiceWithoutIdIsTunedToAllTheSame) {
  EXPECT_EQ(under("IServiceNavigation::SeekNextService out.service={1=2}", [&] { return seek(3); }), 0);
  EXPECT_EQ(logs()[5], "3 svcidNext = 18446744073709551615");
  EXPECT_NE(calls().back().find("TuneService(serviceId=18446744073709551615, "), std::string::npos);
}

TEST_F(SeekTest, ASeekThatWritesNothingStaysOnTheCurrentService) {
  EXPECT_EQ(under("IServiceNavigation::SeekNextService result=unwritten", [&] { return seek(3); }), 1);
  EXPECT_EQ(logs()[5], "3 svcidNext = 281");
  EXPECT_EQ(calls().back(), tune("281"));
  EXPECT_EQ(current(), "281");
}

}  // namespace

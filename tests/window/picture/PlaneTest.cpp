// SPDX-License-Identifier: MIT
// Raising and lowering the video plane, and showing and hiding the picture.
#include <climits>

#include "Picture.h"

namespace {

using picture::mainAv;
using picture::mainVideo;
using picture::noAvControl;
using picture::noVideoControl;
using support::banner;
using support::caught;
using support::join;
using support::Lines;

class PlaneTest : public picture::PictureTest {
 protected:
  int order(int zorder) { return worker.SetScreenZorder(static_cast<PL_WINDOW_ZORDER>(zorder)); }
  int orderUnder(const std::string& words) {
    return under(words, [this] { return order(1); });
  }
  int show(int type) { return worker.Show(static_cast<_PL_WINDOW_SHOW_TYPE>(type)); }
  int showUnder(const std::string& words, int type) {
    return under(words, [this, type] { return show(type); });
  }
  int muteUnder(const std::string& words, bool mute) {
    return under(words, [this, mute] { return worker.MuteVideo(mute); });
  }
};

// Order.

TEST_F(PlaneTest, ThePlaneIsRaisedAndLoweredInTheSetsNumbers) {
  EXPECT_EQ(order(1), 1);
  EXPECT_EQ(calls(), Lines{mainVideo + "SetZOrder(order=2) -> 0"}) << "the source does not matter";
  EXPECT_EQ(logs(), Lines{"3 SetScreenRect by order : result : 0"});
  EXPECT_EQ(plane().order, 2);
  EXPECT_EQ(order(0), 1);
  EXPECT_EQ(calls(), Lines{mainVideo + "SetZOrder(order=0) -> 0"});
  EXPECT_EQ(plane().order, 0);
}

TEST_F(PlaneTest, AnOrderThatHasNoCounterpartIsTheLowest) {
  for (const int zorder : {2, 3, -1, 99, INT_MAX, INT_MIN}) {
    forget();
    EXPECT_EQ(order(zorder), 1) << zorder;
    EXPECT_EQ(calls(), Lines{mainVideo + "SetZOrder(order=0) -> 0"}) << zorder;
  }
}

TEST_F(PlaneTest, AnOrderSucceedsUnlessTheResultIsNegative) {
  for (const std::string result : {"0", "1", "5", "2147483647"}) {
    EXPECT_EQ(orderUnder("IVideoControl::SetZOrder result=" + result), 1) << result;
    EXPECT_EQ(logs(), Lines{"3 SetScreenRect by order : result : " + result});
  }
  for (const std::string result : {"-1", "-2147483648"}) {
    EXPECT_EQ(orderUnder("IVideoControl::SetZOrder result=" + result), -1) << result;
    EXPECT_EQ(logs(), Lines());
  }
}

TEST_F(PlaneTest, WithoutVideoControlThereIsNoOrder) {
  failsWithout(
      worker.video_ctrl_proxy, "CreateVideoControl", noVideoControl(), [this] { return order(1); }, -1);
  EXPECT_EQ(plane().order, 0);
}

// Show.

std::string typed(int type, const std::string& more = "") {
  return "eShowType=[" + std::to_string(type) + "]" + more;
}
Lines hides(int type) {
  return {"3 " + typed(type), "3 " + typed(type, ",Set MuteVideo(TRUE).")};
}
Lines shows(int type) {
  return {"3 " + typed(type), "3 " + typed(type, ",Set MuteVideo(FALSE).")};
}

TEST_F(PlaneTest, ShowTypesFourToSixAreNotSupported) {
  for (const int type : {4, 5, 6}) {
    EXPECT_EQ(show(type), -1) << type;
    EXPECT_EQ(calls(), Lines()) << type;
    EXPECT_EQ(logs(),
              (Lines{"3 " + typed(type), banner(0, "Show"), "0 " + typed(type, " is NOT supported in VELUN.")}));
  }
}

TEST_F(PlaneTest, OtherShowTypesAreNotDefined) {
  for (const int type : {7, 9, -1, 100, INT_MAX, INT_MIN}) {
    EXPECT_EQ(show(type), -1) << type;
    EXPECT_EQ(calls(), Lines()) << type;
    EXPECT_EQ(logs(), (Lines{"3 " + typed(type), "0 " + typed(type, ",NOT defined."), banner(0, "Show")}));
  }
}

TEST_F(PlaneTest, ShowSucceedsOnNoResultButOne) {
  for (const std::string result : {"0", "2", "-1", "2147483647", "-2147483648"}) {
    for (const int type : {0, 1, 2, 3}) {
      EXPECT_EQ(showUnder("IAVControl::MuteVideo result=" + result, type), -1) << type << ' ' << result;
      EXPECT_EQ(logs(), join({type % 2 == 0 ? hides(type) : shows(type), {banner(0, "Show")}}));
    }
  }
}

TEST_F(PlaneTest, WithoutAvControlNothingIsShownOrHiddenWhateverTheType) {
  const Lines lines = join({noAvControl(), {"0 AVControlproxy is NULL"}});
  for (const int type : {0, 1, 4, 9}) {
    failsWithout(
        worker.av_ctrl_proxy, "CreateAVControl", lines, [=, this] { return show(type); }, -1);
  }
}

// Mute.

TEST_F(PlaneTest, OfThePictureInPictureWindowAllIsItsOwn) {
  drivePictureInPicture();
  EXPECT_EQ(order(1), 1);
  EXPECT_EQ(show(0), 1);
  EXPECT_EQ(worker.MuteVideo(false), 1);
  const std::string av = "IAVControl[pip#2]::MuteVideo(mute=";
  EXPECT_EQ(calls(), (Lines{"IVideoControl[pip#2]::SetZOrder(order=2) -> 0", av + "1) -> 1", av + "0) -> 1"}));
}

TEST_F(PlaneTest, MuteVideoHidesAndShowsWithoutAWord) {
  EXPECT_EQ(worker.MuteVideo(true), 1);
  EXPECT_TRUE(plane().muted);
  EXPECT_EQ(worker.MuteVideo(false), 1);
  EXPECT_FALSE(plane().muted);
  EXPECT_EQ(calls(), (Lines{mainAv + "MuteVideo(mute=1) -> 1", mainAv + "MuteVideo(mute=0) -> 1"}));
  EXPECT_EQ(logs(), Lines());
}

TEST_F(PlaneTest, MuteVideoFailsOnZeroAlone) {
  for (const bool mute : {true, false}) {
    EXPECT_EQ(muteUnder("IAVControl::MuteVideo result=0", mute), -1);
    for (const std::string result : {"1", "2", "-1", "2147483647", "-2147483648"}) {
      EXPECT_EQ(muteUnder("IAVControl::MuteVideo result=" + result, mute), 1) << result;
    }
  }
  EXPECT_EQ(logs(), Lines());
}

TEST_F(PlaneTest, WithoutAvControlMuteVideoFailsWithoutAMessageOfItsOwn) {
  failsWithout(
      worker.av_ctrl_proxy, "CreateAVControl", noAvControl(), [this] { return worker.MuteVideo(true); }, -1);
}

TEST_F(PlaneTest, AnOrderThatThrowsFails) {
  EXPECT_EQ(orderUnder("IVideoControl::SetZOrder result=throw"), -1);
  EXPECT_EQ(logs(), Lines{caught("SetScreenZorder", "IVideoControl::SetZOrder")});
}

TEST_F(PlaneTest, ShowThatThrowsFails) {
  for (const int type : {0, 1}) {
    EXPECT_EQ(showUnder("IAVControl::MuteVideo result=throw", type), -1);
    EXPECT_EQ(logs(), join({type == 0 ? hides(type) : shows(type),
                            {caught("Show", "IAVControl::MuteVideo"), banner(0, "Show")}}));
  }
}

TEST_F(PlaneTest, MuteVideoThatThrowsFails) {
  EXPECT_EQ(muteUnder("IAVControl::MuteVideo result=throw", true), -1);
  EXPECT_EQ(logs(), Lines{caught("MuteVideo", "IAVControl::MuteVideo")});
  EXPECT_FALSE(plane().muted);
}

}  // namespace

// SPDX-License-Identifier: MIT
#include "shell/Nearest.h"

#include <gtest/gtest.h>

namespace virtualtv::shell {
namespace {

const Lines known{"GetTVMode", "GetChannel_Name", "GetChannel_Size", "GetSource", "SetSource", ".get",
                  ".set",      ".reset"};

TEST(Nearest, PassesOverCaseAndMarks) {
  EXPECT_EQ(nearest("gettvmode", known), Lines{"GetTVMode"});
  EXPECT_EQ(nearest("get-channel.name", known), Lines{"GetChannel_Name"});
  EXPECT_EQ(nearest("--RESET", known), Lines{".reset"});
}

TEST(Nearest, TakesALetterChangedMissingAddedOrSwapped) {
  EXPECT_EQ(nearest("GetTVMote", known), Lines{"GetTVMode"});
  EXPECT_EQ(nearest("GetTVMde", known), Lines{"GetTVMode"});
  EXPECT_EQ(nearest("GetTVModes", known), Lines{"GetTVMode"});
  EXPECT_EQ(nearest(".rseet", known), Lines{".reset"});
  EXPECT_EQ(nearest("GteSuorce", known), Lines{"GetSource"});
}

TEST(Nearest, GivesThoseWithTheFewestSlipsOnly) {
  EXPECT_EQ(nearest("GetSorce", known), Lines{"GetSource"});
  EXPECT_EQ(nearest("SetSource", known), Lines{"SetSource"});
}

TEST(Nearest, GivesAllThatAreEquallyNear) {
  EXPECT_EQ(nearest(".bet", known), (Lines{".get", ".set"}));
  EXPECT_EQ(nearest("BetSource", known), (Lines{"GetSource", "SetSource"}));
}

TEST(Nearest, TakesNoMoreSlipsThanOneLetterOfThreeAndThreeInAll) {
  EXPECT_EQ(nearest("ge", known), Lines{});
  EXPECT_EQ(nearest("bxt", known), Lines{});
  EXPECT_EQ(nearest("GetChannel_Nxyz", known), Lines{"GetChannel_Name"});
  EXPECT_EQ(nearest("GetChannel_wxyz", known), Lines{});
}

TEST(Nearest, TakesTheStartOfAFewNamesBeforeAnotherName) {
  EXPECT_EQ(nearest("GetCh", known), (Lines{"GetChannel_Name", "GetChannel_Size"}));
  EXPECT_EQ(nearest("re", known), Lines{".reset"});
  EXPECT_EQ(nearest("r", known), Lines{});
  EXPECT_EQ(nearest("GetChannel", {"SetChannel", "GetChannel_Name", "GetChannel_Size"}),
            (Lines{"GetChannel_Name", "GetChannel_Size"}));
  EXPECT_EQ(nearest("ab", {"ab1", "ab2", "ab3", "ab4"}).size(), 4U);
  EXPECT_EQ(nearest("abc", {"abd", "abc1", "abc2", "abc3", "abc4", "abc5"}), Lines{});
}

TEST(Nearest, GivesNothingForNothing) {
  EXPECT_EQ(nearest("", known), Lines{});
  EXPECT_EQ(nearest("...", known), Lines{});
  EXPECT_EQ(nearest("get", {}), Lines{});
}

}  // namespace
}  // namespace virtualtv::shell

// SPDX-License-Identifier: MIT
// TV modes: the plug-in's number, the TV service's pair, and the service mode of the set's region and country.
#include <array>
#include <set>
#include <string>
#include <utility>

#include "EmpConverterWindow.h"
#include "support/TvTest.h"

namespace {

using kel::CEmpConverterWindow;
using support::Lines;
using Mode = std::pair<int, int>;

int plOf(int antenna, int service) {
  return CEmpConverterWindow::GetPLTVModeValue(
      TSTvMode(static_cast<EAntennaMode>(antenna), static_cast<EServiceMode>(service)));
}

Mode tcOf(int pl) {
  const TSTvMode mode = CEmpConverterWindow::GetTCTVModeValue(static_cast<_PL_WINDOW_TV_MODE>(pl));
  return {mode.antennaMode, mode.serviceMode};
}

class TvModeTest : public support::TvTest {
 protected:
  static constexpr int fixedRegion = 17;  ///< the region whose country does not matter

  void setPlace(int region, int country) {
    tv().adjust([&](virtualtv::TvState& state) {
      state.region = region;
      state.country = country;
    });
  }

  /// Default service mode of a country outside the fixed region.
  int defaultOf(int country) {
    setPlace(0, country);
    return CEmpConverterWindow::t_GetDefaultServiceMode();
  }
};

TEST_F(TvModeTest, OfTheTerrestrialAntennaIsOneButForItsSpecialList) {
  for (int service = -3; service <= 40; ++service) EXPECT_EQ(plOf(0, service), service == 21 ? 23 : 1) << service;
}

TEST_F(TvModeTest, OfTheCableAntennaIsTwoButForItsSpecialList) {
  for (int service = -3; service <= 40; ++service) EXPECT_EQ(plOf(1, service), service == 21 ? 24 : 2) << service;
}

TEST_F(TvModeTest, OfTheSatelliteAntennaFollowsTheOperatorsList) {
  const std::array<int, 25> fromThree{5,  6,  7,  8, 9, 10, 11, 12, 13, 14, 15, 16, 17,
                                      18, 19, 20, 4, 4, 25, 26, 27, 28, 29, 30, 31};
  for (int service = -3; service <= 40; ++service) {
    const bool listed = service >= 3 && service <= 27;
    EXPECT_EQ(plOf(2, service), listed ? fromThree[static_cast<std::size_t>(service - 3)] : 4) << service;
  }
}

TEST_F(TvModeTest, FoldsSatelliteListsWithoutANumberOfTheirOwnIntoFour) {
  for (const int service : {0, 1, 2, 19, 20, 28, -1, 2147483647, -2147483647 - 1}) EXPECT_EQ(plOf(2, service), 4);
}

TEST_F(TvModeTest, OfAnUnknownAntennaIsZero) {
  for (const int antenna : {-1, 3, 4, 100, -2147483647 - 1}) {
    for (const int service : {-1, 0, 3, 21, 27}) EXPECT_EQ(plOf(antenna, service), 0) << antenna << ',' << service;
  }
}

TEST_F(TvModeTest, OfASpecialListGoesThereAndBack) {
  for (const int pl : {23, 24}) {
    EXPECT_EQ(tcOf(pl), Mode(pl - 23, 21));
    EXPECT_EQ(plOf(pl - 23, 21), pl);
  }
}

TEST_F(TvModeTest, OfAnOperatorGoesThereAndBack) {
  for (int pl = 5; pl <= 20; ++pl) {
    EXPECT_EQ(tcOf(pl), Mode(2, pl - 2));
    EXPECT_EQ(plOf(2, pl - 2), pl);
  }
  for (int pl = 25; pl <= 31; ++pl) {
    EXPECT_EQ(tcOf(pl), Mode(2, pl - 4));
    EXPECT_EQ(plOf(2, pl - 4), pl);
  }
}

TEST_F(TvModeTest, WithoutMeaningIsMinusOneTwiceAndReadsNoSetting) {
  for (const int pl : {0, 21, 22, -1, 32, 100, 2147483647, -2147483647 - 1}) EXPECT_EQ(tcOf(pl), Mode(-1, -1)) << pl;
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(logs(), Lines());
}

TEST_F(TvModeTest, ThatNamesItsListReadsNoSetting) {
  for (int pl = 5; pl <= 31; ++pl) tcOf(pl);
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(logs(), Lines());
}

TEST_F(TvModeTest, OfAnAntennaAloneTakesTheDefaultServiceMode) {
  setPlace(0, 63);
  EXPECT_EQ(tcOf(1), Mode(0, 21));
  EXPECT_EQ(tcOf(2), Mode(1, 21));
  EXPECT_EQ(tcOf(3), Mode(1, 21));
  EXPECT_EQ(tcOf(4), Mode(2, 21));
}

TEST_F(TvModeTest, ReadsTheDefaultServiceModeAnewEachTime) {
  setPlace(0, 63);
  EXPECT_EQ(tcOf(4), Mode(2, 21));
  setPlace(0, 3);
  EXPECT_EQ(tcOf(4), Mode(2, 1));
  setPlace(0, 0);
  EXPECT_EQ(tcOf(4), Mode(2, 0));
  setPlace(fixedRegion, 0);
  EXPECT_EQ(tcOf(4), Mode(2, 2));
}

TEST_F(TvModeTest, OfTheCableAntennaFoldsBackToTwo) {
  setPlace(0, 0);
  EXPECT_EQ(plOf(1, 0), 2);
  EXPECT_EQ(tcOf(2), Mode(1, 0));
  EXPECT_EQ(tcOf(3), Mode(1, 0));
}

TEST_F(TvModeTest, DefaultServiceModeFollowsTheCountry) {
  const std::set<int> zero{0, 2};
  const std::set<int> special{1, 36, 63, 75};
  const std::set<int> two{34, 64, 65, 67, 69, 70, 71, 72, 73, 74, 80};
  for (int country = -3; country <= 100; ++country) {
    const int expected = zero.count(country) ? 0 : special.count(country) ? 21 : two.count(country) ? 2 : 1;
    EXPECT_EQ(defaultOf(country), expected) << country;
  }
  EXPECT_EQ(defaultOf(2147483647), 1);
  EXPECT_EQ(defaultOf(-2147483647 - 1), 1);
}

TEST_F(TvModeTest, DefaultServiceModeReadsRegionThenCountry) {
  setPlace(16, 63);
  EXPECT_EQ(CEmpConverterWindow::t_GetDefaultServiceMode(), 21);
  EXPECT_EQ(calls(), (Lines{"system_info_get_value_int(key=0) value=16 -> 0",
                            "system_settings_get_value_int(key=0) value=63 -> 0"}));
  EXPECT_EQ(logs(),
            (Lines{"3 CEmpConverterWindow :: t_GetDefaultServiceMode", "3 CEmpConverterWindow :: m_country : [ 63 ]"}));
}

TEST_F(TvModeTest, DefaultServiceModeOfTheFixedRegionIsTwoWithoutTheCountry) {
  setPlace(fixedRegion, 63);
  EXPECT_EQ(tcOf(1), Mode(0, 2));
  EXPECT_EQ(calls(), Lines{"system_info_get_value_int(key=0) value=17 -> 0"});
  EXPECT_EQ(logs(), Lines{"3 CEmpConverterWindow :: t_GetDefaultServiceMode"});
}

TEST_F(TvModeTest, DefaultServiceModeIsMinusOneWhenTheRegionCannotBeRead) {
  setPlace(fixedRegion, 63);
  for (const int result : {-1, -7, 1}) {
    clearFaults();
    fault("system_info_get_value_int result=" + std::to_string(result));
    EXPECT_EQ(tcOf(1), Mode(0, -1));
    EXPECT_EQ(calls().size(), 1U) << "the country is not asked for";
    EXPECT_EQ(logs(),
              (Lines{"3 CEmpConverterWindow :: t_GetDefaultServiceMode",
                     "3 system_info_get_value_int(SYSTEM_INFO_KEY_REGION_KIND, &region) : " + std::to_string(result)}));
  }
}

TEST_F(TvModeTest, DefaultServiceModeIsMinusOneWhenTheCountryCannotBeRead) {
  setPlace(0, 63);
  for (const int result : {-1, -7, 1}) {
    clearFaults();
    fault("system_settings_get_value_int result=" + std::to_string(result));
    EXPECT_EQ(tcOf(4), Mode(2, -1));
    EXPECT_EQ(calls().size(), 2U);
    EXPECT_EQ(logs(), (Lines{"3 CEmpConverterWindow :: t_GetDefaultServiceMode",
                             "0 system_settings_get_value_int(SYSTEM_SETTINGS_KEY_COUNTRY, &nCountry) failed"}));
  }
}

TEST_F(TvModeTest, DefaultServiceModeIsMinusOneWhenASettingThrows) {
  setPlace(0, 63);
  fault("system_info_get_value_int result=throw");
  EXPECT_EQ(CEmpConverterWindow::t_GetDefaultServiceMode(), -1);
  EXPECT_EQ(logs(), (Lines{"3 CEmpConverterWindow :: t_GetDefaultServiceMode",
                           "0 Exception Handled by t_GetDefaultServiceMode fault in system_info_get_value_int",
                           "3 system_info_get_value_int(SYSTEM_INFO_KEY_REGION_KIND, &region) : -1"}));
  clearFaults();
  fault("system_settings_get_value_int result=throw");
  EXPECT_EQ(CEmpConverterWindow::t_GetDefaultServiceMode(), -1);
  EXPECT_EQ(logs(), (Lines{"3 CEmpConverterWindow :: t_GetDefaultServiceMode",
                           "0 Exception Handled by t_GetDefaultServiceMode fault in system_settings_get_value_int",
                           "0 system_settings_get_value_int(SYSTEM_SETTINGS_KEY_COUNTRY, &nCountry) failed"}));
}

TEST_F(TvModeTest, DefaultServiceModeOfValuesThatNobodyWroteIsThatOfTheCountry0) {
  fault("system_info_get_value_int always result=unwritten");
  fault("system_settings_get_value_int always result=unwritten");
  EXPECT_EQ(CEmpConverterWindow::t_GetDefaultServiceMode(), 0);
  setPlace(fixedRegion, 63);
  EXPECT_EQ(CEmpConverterWindow::t_GetDefaultServiceMode(), 0) << "the values before the call are defined";
}

}  // namespace

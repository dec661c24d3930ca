// SPDX-License-Identifier: MIT
// TV modes: the plug-in's number, the TV service's pair, and the service mode of the set's region and country.
#include <array>
#include <map>
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
  static constexpr int fixedRegion = 17;  ///< the region where the country does not matter

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

TEST_F(TvModeTest, OfTheTerrestrialAndTheCableAntennaIsOneOrTwoButForTheSpecialList) {
  for (int service = -3; service <= 40; ++service) {
    EXPECT_EQ(plOf(0, service), service == 21 ? 23 : 1) << service;
    EXPECT_EQ(plOf(1, service), service == 21 ? 24 : 2) << service;
  }
}

TEST_F(TvModeTest, OfTheSatelliteAntennaFollowsTheOperatorsList) {
  const std::array<int, 25> fromThree{5,  6,  7,  8, 9, 10, 11, 12, 13, 14, 15, 16, 17,
                                      18, 19, 20, 4, 4, 25, 26, 27, 28, 29, 30, 31};
  for (int service = -3; service <= 40; ++service) {
    const bool listed = service >= 3 && service <= 27;
    EXPECT_EQ(plOf(2, service), listed ? fromThree[static_cast<std::size_t>(service - 3)] : 4) << service;
  }
  for (const int service : {2147483647, -2147483647 - 1}) EXPECT_EQ(plOf(2, service), 4);
}

TEST_F(TvModeTest, OfAnUnknownAntennaIsZero) {
  for (const int antenna : {-1, 3, 4, 100, -2147483647 - 1}) {
    for (const int service : {-1, 0, 3, 21, 27}) EXPECT_EQ(plOf(antenna, service), 0) << antenna << ',' << service;
  }
}

TEST_F(TvModeTest, OfAListGoesThereAndBackAndReadsNoSetting) {
  const auto expectBothWays = [](int pl, const Mode& mode) {
    EXPECT_EQ(tcOf(pl), mode);
    EXPECT_EQ(plOf(mode.first, mode.second), pl);
  };
  for (int pl = 5; pl <= 20; ++pl) expectBothWays(pl, {2, pl - 2});
  for (int pl = 25; pl <= 31; ++pl) expectBothWays(pl, {2, pl - 4});
  for (const int pl : {23, 24}) expectBothWays(pl, {pl - 23, 21});
  for (const int pl : {0, 21, 22, -1, 32, 100, 2147483647, -2147483647 - 1}) EXPECT_EQ(tcOf(pl), Mode(-1, -1)) << pl;
  EXPECT_EQ(calls(), Lines());
  EXPECT_EQ(logs(), Lines());
}

TEST_F(TvModeTest, OfAnAntennaAloneTakesTheDefaultServiceMode) {
  setPlace(0, 63);
  const std::map<int, int> antennas{{1, 0}, {2, 1}, {3, 1}, {4, 2}};
  for (const auto& [pl, antenna] : antennas) EXPECT_EQ(tcOf(pl), Mode(antenna, 21));
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

TEST_F(TvModeTest, DefaultServiceModeIsMinusOneWhenASettingCannotBeRead) {
  const std::string begun = "3 CEmpConverterWindow :: t_GetDefaultServiceMode";
  const std::string thrown = "0 Exception Handled by t_GetDefaultServiceMode fault in ";
  const std::string noRegion = "3 system_info_get_value_int(SYSTEM_INFO_KEY_REGION_KIND, &region) : ";
  const std::string noCountry = "0 system_settings_get_value_int(SYSTEM_SETTINGS_KEY_COUNTRY, &nCountry) failed";
  setPlace(0, 63);
  for (const std::string result : {"-1", "-7", "1", "throw"}) {
    SCOPED_TRACE(result);
    const bool throws = result == "throw";
    EXPECT_EQ(under("system_info_get_value_int result=" + result, [] { return tcOf(1); }), Mode(0, -1));
    EXPECT_EQ(calls().size(), 1U) << "the country is not asked for";
    EXPECT_EQ(logs(), throws ? Lines({begun, thrown + "system_info_get_value_int", noRegion + "-1"})
                             : Lines({begun, noRegion + result}));
    EXPECT_EQ(under("system_settings_get_value_int result=" + result, [] { return tcOf(4); }), Mode(2, -1));
    EXPECT_EQ(calls().size(), 2U);
    EXPECT_EQ(logs(),
              throws ? Lines({begun, thrown + "system_settings_get_value_int", noCountry}) : Lines({begun, noCountry}));
  }
}

TEST_F(TvModeTest, DefaultServiceModeOfValuesThatNobodyWroteIsThatOfTheCountry0) {
  fault("system_info_get_value_int always result=unwritten");
  fault("system_settings_get_value_int always result=unwritten");
  EXPECT_EQ(CEmpConverterWindow::t_GetDefaultServiceMode(), 0);
  setPlace(fixedRegion, 63);
  EXPECT_EQ(CEmpConverterWindow::t_GetDefaultServiceMode(), 0) << "the values before the call are defined";
}

}  // namespace

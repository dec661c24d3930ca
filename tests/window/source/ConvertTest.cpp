// SPDX-License-Identifier: MIT
// Translating sources between the plug-in's numbers and the TV service's.
#include <map>

#include "support/Sources.h"

namespace {

using support::Lines;

class ConvertTest : public sources::SourceTest {
 protected:
  /// The converted source; null when the conversion is refused.
  template <typename To, typename From>
  std::optional<int> converted(From from) {
    constexpr int untouched = -77;
    auto to = static_cast<To>(untouched);
    const bool good = worker.t_IsConvertable(from, to);
    EXPECT_EQ(good, to != untouched) << "the output is written on success only";
    return good ? std::optional<int>(to) : std::nullopt;
  }
  std::optional<int> toPl(int tc) { return converted<_PL_WINDOW_Source>(static_cast<ESource>(tc)); }
  std::optional<int> toTc(int pl) { return converted<ESource>(static_cast<_PL_WINDOW_Source>(pl)); }
};

const std::map<int, int> plByTc{{0, 0},   {1, 15},  {2, 16},  {3, 17},  {4, 19},  {5, 20},  {6, 21},  {7, 23},
                                {8, 24},  {9, 25},  {10, 27}, {11, 28}, {12, 29}, {13, 31}, {14, 32}, {15, 33},
                                {16, 34}, {17, 35}, {18, 36}, {19, 37}, {20, 39}, {21, 40}, {22, 41}, {31, 53}};

TEST_F(ConvertTest, FromTheTvServiceRefusesWhatHasNoRowAndTheValueForNone) {
  for (int tc = -5; tc <= 60; ++tc) {
    const auto row = plByTc.find(tc);
    EXPECT_EQ(toPl(tc), row == plByTc.end() ? std::nullopt : std::optional<int>(row->second)) << tc;
    EXPECT_EQ(logs().back(), row == plByTc.end()
                                 ? "0 t_IsConvertable can't convert to  PL_WINDOW_SOURCE"
                                 : "3 t_IsConvertable output ePLSource = " + std::to_string(row->second));
  }
}

TEST_F(ConvertTest, ToTheTvServiceRefusesTheSourcesWithoutACounterpart) {
  for (const int pl : {1, 2, 3, 4, 5, 6, 7, 11, 12, 13, 14, 43, 44, 45, 46, 47, 48, 49, 50, 51, 52, 100}) {
    EXPECT_EQ(toTc(pl), std::nullopt) << pl;
    EXPECT_EQ(logs(), (Lines{"3 t_IsConvertable input ePLSource = " + std::to_string(pl),
                             "0 t_IsConvertable can't convert to  ESource"}));
  }
}

TEST_F(ConvertTest, ToTheTvServiceTakesSourcesWithoutARowForTheTvSource) {
  for (const int pl : {8, 9, 10, 18, 22, 26, 30, 38, 42, 54, 99, 101, -1, -48}) EXPECT_EQ(toTc(pl), 0) << pl;
  for (const auto& [tc, pl] : plByTc) EXPECT_EQ(toTc(pl), tc) << pl;
  EXPECT_EQ(logs().back(), "3 t_IsConvertable output eTVSSource = 31");
  EXPECT_EQ(calls(), Lines()) << "and the set is not asked";
}

TEST_F(ConvertTest, SourcesOfTheTvServiceAreThoseUpToFortyTwo) {
  const auto isTvService = [&](int pl) { return worker.t_IsTVServiceSource(static_cast<_PL_WINDOW_Source>(pl)); };
  for (const int pl : {0, 1, 20, 41, 42}) EXPECT_TRUE(isTvService(pl)) << pl;
  for (const int pl : {43, 48, 100, 2147483647, -1, -2147483647 - 1}) EXPECT_FALSE(isTvService(pl)) << pl;
}

}  // namespace

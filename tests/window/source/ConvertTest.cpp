// Translating sources between the plug-in's numbers and the TV service's.
#include <map>

#include "support/Sources.h"

namespace {

using sources::SourceTest;
using support::Lines;

class ConvertTest : public SourceTest {
 protected:
  /// The plug-in's number for a source of the TV service; nothing when it is refused.
  std::optional<int> toPl(int tc) {
    auto pl = static_cast<_PL_WINDOW_Source>(-77);
    const bool good = worker.t_IsConvertable(static_cast<ESource>(tc), pl);
    EXPECT_EQ(good, pl != -77) << "the output is written on success only";
    return good ? std::optional<int>(pl) : std::nullopt;
  }
  std::optional<int> toTc(int pl) {
    auto tc = static_cast<ESource>(-77);
    const bool good = worker.t_IsConvertable(static_cast<_PL_WINDOW_Source>(pl), tc);
    EXPECT_EQ(good, tc != -77);
    return good ? std::optional<int>(tc) : std::nullopt;
  }
};

const std::map<int, int> plByTc{{0, 0},   {1, 15},  {2, 16},  {3, 17},  {4, 19},  {5, 20},  {6, 21},  {7, 23},
                                {8, 24},  {9, 25},  {10, 27}, {11, 28}, {12, 29}, {13, 31}, {14, 32}, {15, 33},
                                {16, 34}, {17, 35}, {18, 36}, {19, 37}, {20, 39}, {21, 40}, {22, 41}, {31, 53}};

TEST_F(ConvertTest, FromTheTvServiceRefusesWhatHasNoRowAndTheValueForNone) {
  for (int tc = -5; tc <= 60; ++tc) {
    const auto row = plByTc.find(tc);
    EXPECT_EQ(toPl(tc), row == plByTc.end() ? std::nullopt : std::optional<int>(row->second)) << tc;
  }
}

TEST_F(ConvertTest, FromTheTvServiceAcceptsZero) {
  EXPECT_EQ(toPl(0), 0);
}

TEST_F(ConvertTest, FromTheTvServiceTellsWhatItDid) {
  toPl(5);
  EXPECT_EQ(logs(), (Lines{"3 t_IsConvertable input eTVSSource = 5", "3 t_IsConvertable output ePLSource = 20"}));
  toPl(-1);
  EXPECT_EQ(logs(),
            (Lines{"3 t_IsConvertable input eTVSSource = -1", "0 t_IsConvertable can't convert to  PL_WINDOW_SOURCE"}));
}

TEST_F(ConvertTest, ToTheTvServiceRefusesTheSourcesWithoutACounterpart) {
  for (const int pl : {1, 2, 3, 4, 5, 6, 7, 11, 12, 13, 14, 43, 44, 45, 46, 47, 48, 49, 50, 51, 52, 100}) {
    EXPECT_EQ(toTc(pl), std::nullopt) << pl;
  }
}

TEST_F(ConvertTest, ToTheTvServiceTakesSourcesWithoutARowForTheTvSource) {
  for (const int pl : {8, 9, 10, 18, 22, 26, 30, 38, 42, 54, 99, 101, -1, -48}) EXPECT_EQ(toTc(pl), 0) << pl;
}

TEST_F(ConvertTest, ToTheTvServiceAcceptsEverySourceWithACounterpart) {
  for (const auto& [tc, pl] : plByTc) EXPECT_EQ(toTc(pl), tc) << pl;
}

TEST_F(ConvertTest, ToTheTvServiceTellsWhatItDid) {
  toTc(20);
  EXPECT_EQ(logs(), (Lines{"3 t_IsConvertable input ePLSource = 20", "3 t_IsConvertable output eTVSSource = 5"}));
  toTc(100);
  EXPECT_EQ(logs(), (Lines{"3 t_IsConvertable input ePLSource = 100", "0 t_IsConvertable can't convert to  ESource"}));
}

TEST_F(ConvertTest, AsksTheSetNothing) {
  toPl(5);
  toTc(20);
  EXPECT_EQ(calls(), Lines());
}

TEST_F(ConvertTest, SourcesOfTheTvServiceAreThoseUpToFortyTwo) {
  const auto isTvService = [&](int pl) { return worker.t_IsTVServiceSource(static_cast<_PL_WINDOW_Source>(pl)); };
  for (const int pl : {0, 1, 20, 41, 42}) EXPECT_TRUE(isTvService(pl)) << pl;
  for (const int pl : {43, 48, 100, 2147483647, -1, -2147483647 - 1}) EXPECT_FALSE(isTvService(pl)) << pl;
}

}  // namespace

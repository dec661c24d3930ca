// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "import/Raster.h"
#include "virtualtv/import/Lists.h"

namespace import_tests {
namespace {

using virtualtv::import::Raster;
using virtualtv::import::rasterChannel;
using Numbers = std::vector<std::uint64_t>;

Numbers channels(const std::vector<VdrLine>& lines) {
  std::string list;
  for (const VdrLine& line : lines) list += line.text();
  return column(readVdr(list), TCServiceData::PTC);
}

TEST(PhysicalChannel, FollowsTheEuropeanRaster) {
  for (int channel = 5; channel <= 12; ++channel) {
    EXPECT_EQ(rasterChannel(Raster::european, 177500 + 7000 * (channel - 5), 7000), channel);
  }
  for (int channel = 6; channel <= 12; ++channel) {
    EXPECT_EQ(rasterChannel(Raster::european, 178000 + 8000 * (channel - 6), 8000), channel);
  }
  for (int channel = 21; channel <= 69; ++channel) {
    EXPECT_EQ(rasterChannel(Raster::european, 306000 + 8000 * channel, 8000), channel);
  }
}

TEST(PhysicalChannel, FollowsTheAustralianRaster) {
  for (int channel = 6; channel <= 9; ++channel) {
    EXPECT_EQ(rasterChannel(Raster::australian, 177500 + 7000 * (channel - 6), 7000), channel);
  }
  EXPECT_EQ(rasterChannel(Raster::australian, 205500, 7000), 13);  // 9A
  for (int channel = 10; channel <= 12; ++channel) {
    EXPECT_EQ(rasterChannel(Raster::australian, 212500 + 7000 * (channel - 10), 7000), channel);
  }
  for (int channel = 28; channel <= 69; ++channel) {
    EXPECT_EQ(rasterChannel(Raster::australian, 529500 + 7000 * (channel - 28), 7000), channel);
  }
}

TEST(PhysicalChannel, FollowsTheAmericanRaster) {
  EXPECT_EQ(rasterChannel(Raster::american, 57000, 6000), 2);
  EXPECT_EQ(rasterChannel(Raster::american, 69000, 6000), 4);
  EXPECT_EQ(rasterChannel(Raster::american, 79000, 6000), 5);
  EXPECT_EQ(rasterChannel(Raster::american, 213000, 6000), 13);
  EXPECT_EQ(rasterChannel(Raster::american, 473000, 6000), 14);
  EXPECT_EQ(rasterChannel(Raster::american, 803000, 6000), 69);
}

TEST(PhysicalChannel, AllowsForTransmittersUpToHalfAMegahertzBesideTheMiddle) {
  EXPECT_EQ(rasterChannel(Raster::european, 713833, 8000), 51);
  EXPECT_EQ(rasterChannel(Raster::european, 474500, 8000), 21);
  EXPECT_EQ(rasterChannel(Raster::european, 473500, 8000), 21);
  EXPECT_EQ(rasterChannel(Raster::european, 474501, 8000), std::nullopt);
  EXPECT_EQ(rasterChannel(Raster::european, 473499, 8000), std::nullopt);
}

TEST(PhysicalChannel, EndsWhereTheRasterEnds) {
  EXPECT_EQ(rasterChannel(Raster::european, 466000, 8000), std::nullopt);
  EXPECT_EQ(rasterChannel(Raster::european, 866000, 8000), std::nullopt);
  EXPECT_EQ(rasterChannel(Raster::european, 170500, 7000), std::nullopt);
  EXPECT_EQ(rasterChannel(Raster::european, 233500, 7000), std::nullopt);
  EXPECT_EQ(rasterChannel(Raster::european, 30000, 0), std::nullopt);
}

TEST(PhysicalChannel, FindsTheNearestWithoutABandwidth) {
  EXPECT_EQ(rasterChannel(Raster::european, 177500, 0), 5);
  EXPECT_EQ(rasterChannel(Raster::european, 178000, 0), 6);
  EXPECT_EQ(rasterChannel(Raster::european, 474000, 0), 21);
}

TEST(PhysicalChannel, OfATerrestrialServiceIsThatOfTheEuropeanRaster) {
  EXPECT_EQ(channels({terrestrial("474", "B8"), terrestrial("578", "B8"), terrestrial("177500", "B7"),
                      terrestrial("191500", "B7"), terrestrial("226", "B8"), terrestrial("858000000", "")}),
            (Numbers{21, 34, 5, 7, 12, 69}));
}

TEST(PhysicalChannel, IsAustralianThroughoutAListWithSevenMegahertzInUhf) {
  EXPECT_EQ(channels({terrestrial("177500", "B7"), terrestrial("205500", "B7"), terrestrial("226500", "B7"),
                      terrestrial("536625", "B7"), terrestrial("578", "B8")}),
            (Numbers{6, 13, 12, 29, 34}));
}

TEST(PhysicalChannel, OfAnAmericanServiceIsThatOfTheAmericanRaster) {
  EXPECT_EQ(channels({{.frequency = "177000", .parameters = "M10", .source = "A"},
                      {.frequency = "479028", .parameters = "M10", .source = "A"}}),
            (Numbers{7, 15}));
}

TEST(PhysicalChannel, BesideTheRasterIsTheFrequencyInMegahertz) {
  EXPECT_EQ(channels({terrestrial("593142", "B6"), terrestrial("470", "B8"), terrestrial("577499", "B8")}),
            (Numbers{593, 470, 577}));
}

TEST(PhysicalChannel, OfACableServiceIsTheFrequencyInMegahertz) {
  EXPECT_EQ(channels({cable("306"), cable("113500"), cable("113499"), cable("862000000")}),
            (Numbers{306, 114, 113, 862}));
}

TEST(PhysicalChannel, OfASatelliteServiceCountsTransponders) {
  EXPECT_EQ(channels({{.frequency = "12000", .parameters = "V"},
                      {.frequency = "11000", .parameters = "V"},
                      {.frequency = "12000", .parameters = "H"},
                      {.frequency = "11000", .parameters = "v"},
                      {.frequency = "10700", .parameters = "H"}}),
            (Numbers{4, 2, 3, 2, 1}));
}

TEST(PhysicalChannel, TellsTranspondersOfSeveralSatellitesApart) {
  EXPECT_EQ(channels({{.frequency = "12000", .parameters = "V", .source = "S19.2E"},
                      {.frequency = "12000", .parameters = "V", .source = "S13E"},
                      {.frequency = "12000", .parameters = "H", .source = "S19.2E"}}),
            (Numbers{3, 2, 1}));
}

TEST(PhysicalChannel, CountsSatellitesApartFromOtherAntennas) {
  EXPECT_EQ(channels({cable("306"), {.frequency = "12000", .parameters = "V"}, terrestrial("474", "B8")}),
            (Numbers{306, 1, 21}));
}

}  // namespace
}  // namespace import_tests

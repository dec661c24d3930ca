// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <set>

#include "services/ChannelType.h"
#include "services/Modulation.h"
#include "virtualtv/import/Lists.h"

namespace import_tests {
namespace {

std::vector<std::uint64_t> ids(const std::string& list) {
  return column(readVdr(list), TCServiceData::SERVICE_ID);
}

bool areDistinct(const std::vector<std::uint64_t>& values) {
  return std::set<std::uint64_t>(values.begin(), values.end()).size() == values.size();
}

TEST(ServiceId, IsTheSameWheneverAListIsRead) {
  const std::string list = VdrLine{}.text() + VdrLine{}.text() + terrestrial("578").text() + cable("306").text();
  EXPECT_EQ(ids(list), ids(list));
}

TEST(ServiceId, DoesNotDependOnTheServicesAround) {
  VdrLine other;
  other.service = "7";
  EXPECT_EQ(ids(VdrLine{}.text())[0], ids(other.text() + VdrLine{}.text())[1]);
}

TEST(ServiceId, TellsAntennaNetworkStreamAndProgramApart) {
  const VdrLine line;
  VdrLine network = line;
  network.network = "2";
  VdrLine stream = line;
  stream.stream = "2";
  VdrLine program = line;
  program.service = "2";
  EXPECT_TRUE(areDistinct(ids(line.text() + network.text() + stream.text() + program.text() +
                              terrestrial("578").text() + cable("578").text())));
}

TEST(ServiceId, TellsFrequenciesApartWhereNoIdsAreKnown) {
  EXPECT_NE(number(dvbv5(section("A")), TCServiceData::SERVICE_ID),
            number(dvbv5(section("A", "FREQUENCY = 482000000\n")), TCServiceData::SERVICE_ID));
  VdrLine zero;
  zero.network = zero.stream = "0";
  VdrLine elsewhere = zero;
  elsewhere.frequency = "12188";
  EXPECT_NE(ids(zero.text()), ids(elsewhere.text()));
}

TEST(ServiceId, DiffersBetweenServicesThatAreOtherwiseTheSame) {
  std::string list;
  for (int at = 0; at < 20'000; ++at) list += VdrLine{}.text();
  const auto all = ids(list);
  EXPECT_EQ(all.size(), 20'000U);
  EXPECT_TRUE(areDistinct(all));
}

TEST(ServiceId, DiffersWhereManyTwinsReachTheIdsOfTheNextProgram) {
  std::string list;
  VdrLine next;
  next.service = "12004";
  for (int at = 0; at < 9'000; ++at) list += VdrLine{}.text() + next.text();
  EXPECT_TRUE(areDistinct(ids(list)));
}

TEST(ServiceId, IsNeverZeroNorAllOnes) {
  VdrLine least = terrestrial("578");
  least.service = least.network = least.stream = "0";
  VdrLine most;
  most.service = most.network = most.stream = "65535";
  std::string list = least.text();
  for (int at = 0; at < 9'000; ++at) list += most.text();
  VdrLine unknown{.frequency = "0", .source = "I", .service = "0", .network = "0", .stream = "0"};
  list += unknown.text();
  const auto all = ids(list);
  ASSERT_EQ(all.size(), 9'002U);
  EXPECT_TRUE(areDistinct(all));
  for (const std::uint64_t id : all) {
    EXPECT_GT(id, 0U);
    EXPECT_LT(id, std::uint64_t{1} << 63U);
  }
}

TEST(ChannelType, HasACounterpartForEveryAntennaAndKind) {
  // The channel types of the TV service that have a number for web pages, and that a lookup by number compares.
  const std::set<int> comparable{1, 2, 3, 4, 5, 6, 7, 8, 9};
  std::set<int> radioAndData;
  for (const EAntennaMode antenna : {ANTENNA_TERRESTRIAL, ANTENNA_CABLE, ANTENNA_SATELLITE}) {
    EXPECT_EQ(virtualtv::channelType(antenna, virtualtv::ServiceKind::television), 9);
    for (const auto kind : {virtualtv::ServiceKind::radio, virtualtv::ServiceKind::data}) {
      const int type = virtualtv::channelType(antenna, kind);
      EXPECT_EQ(comparable.count(type), 1U);
      EXPECT_TRUE(radioAndData.insert(type).second) << type;
    }
  }
  EXPECT_EQ(radioAndData.count(9), 0U);
}

TEST(Modulation, TellsQamOfCableNetworks) {
  EXPECT_TRUE(virtualtv::isQam(virtualtv::MODULATION_QAM_16));
  EXPECT_TRUE(virtualtv::isQam(virtualtv::MODULATION_QAM_256));
  EXPECT_FALSE(virtualtv::isQam(virtualtv::MODULATION_QPSK));
  EXPECT_FALSE(virtualtv::isQam(virtualtv::MODULATION_VSB_8));
}

}  // namespace
}  // namespace import_tests

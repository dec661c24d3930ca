// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "virtualtv/broadcast/Broadcast.h"

namespace broadcast_tests {
namespace {

using virtualtv::broadcast::Delivery;
using virtualtv::broadcast::FoundService;

/// A service whose stream has these descriptors in the network's table.
FoundService sentWith(const Blob& descriptors) {
  return only(oneService().add(0x10, networkTable("Coasts", sent(2, 3, descriptors))).bytes);
}

std::string channel(const FoundService& service) {
  if (!service.number) return "-";
  return std::to_string(service.number->major) + (service.number->isVisible ? "" : " hidden");
}

TEST(Network, HasAName) {
  EXPECT_EQ(sentWith({}).network, "Coasts");
}

TEST(Network, NumbersItsServices) {
  EXPECT_EQ(channel(sentWith(descriptor(0x83, {0, 1, 0xFC, 21}))), "21");
  EXPECT_EQ(channel(sentWith(descriptor(0x83, {0, 1, 0xFF, 0xFF}))), "1023");
  EXPECT_EQ(channel(sentWith(descriptor(0x83, {0, 1, 0x7C, 5}))), "5 hidden");
  EXPECT_EQ(channel(sentWith(descriptor(0x83, {0, 2, 0xFC, 21}))), "-");
  EXPECT_EQ(channel(sentWith(descriptor(0x83, {0, 1, 0xFC, 0}))), "-");
  EXPECT_EQ(channel(sentWith(descriptor(0x5F, {0, 0, 0, 0x28}) + descriptor(0x83, {0, 1, 0xFD, 1}))), "257");
  EXPECT_EQ(channel(sentWith(descriptor(0x5F, {0, 0, 0, 0x29}) + descriptor(0x83, {0, 1, 0xBF, 0xFF}))), "16383");
}

TEST(Network, NumbersItsServicesByTheFirstOfTheListsOfTheNorth) {
  const Blob north = descriptor(0x5F, {0, 0, 0, 0x29});
  const Blob plain = descriptor(0x83, {0, 1, 0xC0, 21});
  const Blob first = Blob{1, 2, 'A', 'B', 's', 'w', 'e', 4, 0, 1, 0xFC, 30};
  const Blob second = Blob{2, 0, 'n', 'o', 'r', 4, 0, 1, 0xFC, 40};
  EXPECT_EQ(channel(sentWith(north + plain + descriptor(0x87, first + second))), "30");
  EXPECT_EQ(channel(sentWith(north + descriptor(0x87, first + second) + plain)), "30");
  EXPECT_EQ(channel(sentWith(north + plain + descriptor(0x87, {1, 0, 's', 'w', 'e', 0}))), "21");
  EXPECT_EQ(channel(sentWith(north + plain + descriptor(0x87, {1, 200, 's', 'w'}))), "21");
  EXPECT_EQ(channel(sentWith(plain + descriptor(0x87, first))), "21");  // no descriptor says whose list it is
  EXPECT_EQ(channel(sentWith(north + descriptor(0x87, {1, 0, 's', 'w', 'e', 4, 0, 1, 0x7C, 5}))), "5 hidden");
}

TEST(Network, GivesProgramsInHighDefinitionTheNumbersOfTheirSimulcast) {
  const Blob plain = descriptor(0x83, {0, 1, 0xFC, 101});
  const Blob simulcast = descriptor(0x88, {0, 1, 0xFC, 1});
  EXPECT_EQ(channel(sentWith(plain + simulcast)), "1");
  EXPECT_EQ(channel(sentWith(simulcast + plain)), "1");
  EXPECT_EQ(channel(sentWith(plain + descriptor(0x88, {0, 1, 0x7C, 1}))), "1 hidden");
  EXPECT_EQ(channel(sentWith(plain + descriptor(0x88, {0, 2, 0xFC, 1}))), "101");  // for another program
  EXPECT_EQ(channel(sentWith(plain + descriptor(0x88, {0, 1, 0xFC, 0}))), "101");  // no number
  EXPECT_EQ(channel(sentWith(plain + descriptor(0x88, {0, 1, 0xFC}))), "101");     // cut off
  const Blob north = descriptor(0x5F, {0, 0, 0, 0x29});
  EXPECT_EQ(channel(sentWith(north + descriptor(0x83, {0, 1, 0xC0, 101}) + simulcast)), "101");  // meaningless there
}

TEST(Network, SendsTerrestrially) {
  const Blob body{0x02, 0xF7, 0xE3, 0x40, 0x1F, 0x81, 0x00, 0xFF, 0xFF, 0xFF, 0xFF};  // 498 MHz, 8 MHz, 64-QAM
  const Delivery delivery = sentWith(descriptor(0x5A, body)).delivery;
  EXPECT_EQ(delivery.antenna, ANTENNA_TERRESTRIAL);
  EXPECT_EQ(delivery.frequency, 498000);
  EXPECT_EQ(delivery.bandwidth, 8000);
  EXPECT_EQ(delivery.modulation, virtualtv::MODULATION_QAM_64);
}

TEST(Network, SendsTerrestriallyInTheSecondGeneration) {
  const Blob body{0x04, 0, 0, 1, 0x04, 0x00, 0, 7, 0x02, 0xF7, 0xE3, 0x40, 0};  // 7 MHz, cell 7 on 498 MHz
  const Delivery delivery = sentWith(descriptor(0x7F, body)).delivery;
  EXPECT_EQ(delivery.antenna, ANTENNA_TERRESTRIAL);
  EXPECT_EQ(delivery.frequency, 498000);
  EXPECT_EQ(delivery.bandwidth, 7000);
  EXPECT_EQ(sentWith(descriptor(0x7F, {0x04, 0, 0, 1})).delivery.frequency, 0);
}

TEST(Network, SendsOverCable) {
  const Blob body{0x03, 0x46, 0x00, 0x00, 0xFF, 0xF2, 0x05, 0x00, 0x69, 0x00, 0x0F};  // 346 MHz, 256-QAM, 6,900 ksym/s
  const Delivery delivery = sentWith(descriptor(0x44, body)).delivery;
  EXPECT_EQ(delivery.antenna, ANTENNA_CABLE);
  EXPECT_EQ(delivery.frequency, 346000);
  EXPECT_EQ(delivery.modulation, virtualtv::MODULATION_QAM_256);
  EXPECT_EQ(delivery.symbolRate, 6900);
}

TEST(Network, SendsFromASatellite) {
  const Blob body{0x01, 0x17, 0x27, 0x50, 0x01, 0x92, 0xA5, 0x02, 0x75, 0x00, 0x03};  // 11,727.5 V, 19.2 E, S2 QPSK
  const Delivery delivery = sentWith(descriptor(0x43, body)).delivery;
  EXPECT_EQ(delivery.antenna, ANTENNA_SATELLITE);
  EXPECT_EQ(delivery.frequency, 11727500);
  EXPECT_EQ(delivery.polarisation, 'V');
  EXPECT_EQ(delivery.position, 192);
  EXPECT_EQ(delivery.modulation, virtualtv::MODULATION_QPSK_S2);
  EXPECT_EQ(delivery.symbolRate, 27500);
  Blob west = body;
  west[4] = 0x02, west[5] = 0x82, west[6] = 0x01;
  const Delivery other = sentWith(descriptor(0x43, west)).delivery;
  EXPECT_EQ(other.position, 3318);
  EXPECT_EQ(other.polarisation, 'H');
  EXPECT_EQ(other.modulation, virtualtv::MODULATION_QPSK);
}

TEST(Network, MaySayWhatCannotBe) {
  const Delivery delivery = sentWith(descriptor(0x43, Blob(11, 0xFF))).delivery;
  EXPECT_EQ(delivery.antenna, ANTENNA_SATELLITE);
  EXPECT_EQ(delivery.frequency, 0);
  EXPECT_EQ(delivery.symbolRate, 0);
  EXPECT_EQ(sentWith(descriptor(0x44, {3})).delivery.frequency, 0);
  EXPECT_EQ(sentWith(descriptor(0x5A, {})).delivery.frequency, 0);
}

TEST(Network, LendsItsAntennaToStreamsThatItSaysNothingOf) {
  Stream stream = oneService();
  stream.add(
      0x10, networkTable("Coasts", sent(2, 3, descriptor(0x44, Blob{0x03, 0x46, 0, 0, 0xFF, 0xF2, 5, 0, 0x69, 0, 0}))));
  stream.add(0x11, services(9, 3, described(1, 1, "Coast", "Elsewhere"), false));
  const auto found = scan(stream.bytes);
  ASSERT_EQ(found.services.size(), 2U);
  EXPECT_EQ(found.services[1].delivery.antenna, ANTENNA_CABLE);
  EXPECT_EQ(found.services[1].delivery.frequency, 0);
}

TEST(Network, MayBeOnAPidOfItsOwn) {
  Stream stream = oneService();
  stream.add(0x00, programs(2, {{0, 50}, {1, 100}}, {.version = 1}));
  stream.add(50, networkTable("Coasts", sent(2, 3, descriptor(0x83, {0, 1, 0xFC, 21}))));
  EXPECT_EQ(channel(only(stream.bytes)), "21");
}

// Channel numbers of American broadcasts.

Blob channelOf(const std::string& name, int major, int minor, int program, int flags, const Blob& descriptors = {}) {
  Blob units;
  for (std::size_t at = 0; at < 7; ++at)
    units = units + number(at < name.size() ? static_cast<unsigned char>(name[at]) : 0U, 2);
  return units + number(0xF00000U | static_cast<unsigned>(major) << 10U | static_cast<unsigned>(minor), 3) +
         Blob{0x04} + number(0, 4) + number(2, 2) + number(static_cast<std::uint64_t>(program), 2) +
         number(static_cast<std::uint64_t>(flags), 2) + number(9, 2) + number(0xFC00 | descriptors.size(), 2) +
         descriptors;
}

Blob channels(int table, int count, const Blob& channels) {
  return section(table, 2, number(0, 1) + number(static_cast<std::uint64_t>(count), 1) + channels + number(0xFC00, 2));
}

Stream americanService() {
  return Stream().add(0x00, programs(2, {{1, 100}})).add(100, programMap(1, elementary(0x02, 101)));
}

TEST(Channel, HasAMajorAndAMinorNumber) {
  const auto service =
      only(americanService().add(0x1FFB, channels(0xC8, 1, channelOf("WCOAST", 7, 2, 1, 0x0002))).bytes);
  EXPECT_EQ(service.name, "WCOAST");
  ASSERT_TRUE(service.number);
  EXPECT_EQ(service.number->major, 7);
  EXPECT_EQ(service.number->minor, 2);
  EXPECT_TRUE(service.number->isVisible);
  EXPECT_EQ(service.kind, virtualtv::ServiceKind::television);
  EXPECT_EQ(service.delivery.antenna, ANTENNA_TERRESTRIAL);
  EXPECT_EQ(service.delivery.modulation, virtualtv::MODULATION_VSB_8);
  EXPECT_TRUE(service.isCarried);
}

TEST(Channel, MayBeHiddenOrScrambled) {
  const auto service = only(americanService().add(0x1FFB, channels(0xC8, 1, channelOf("A", 7, 2, 1, 0x3003))).bytes);
  EXPECT_TRUE(service.isScrambled);
  EXPECT_FALSE(service.number->isVisible);
  EXPECT_EQ(service.kind, virtualtv::ServiceKind::radio);
}

TEST(Channel, OfCableMayHaveANumberOfOnePart) {
  const auto service =
      only(americanService().add(0x1FFB, channels(0xC9, 1, channelOf("A", 0x3F1, 5, 1, 0x0002))).bytes);
  EXPECT_EQ(service.number->major, 1024 + 5);
  EXPECT_EQ(service.number->minor, 0);
  EXPECT_EQ(service.delivery.antenna, ANTENNA_CABLE);
}

TEST(Channel, MayHaveALongName) {
  const Blob name = Blob{1} + text("eng") + Blob{1, 0, 0} + counted("Coast and Country");
  const auto service =
      only(americanService().add(0x1FFB, channels(0xC8, 1, channelOf("A", 7, 2, 1, 2, descriptor(0xA0, name)))).bytes);
  EXPECT_EQ(service.name, "Coast and Country");
  const Blob compressed = Blob{1} + text("eng") + Blob{1, 1, 0} + counted("xyz");
  EXPECT_EQ(only(americanService()
                     .add(0x1FFB, channels(0xC8, 1, channelOf("A", 7, 2, 1, 2, descriptor(0xA0, compressed))))
                     .bytes)
                .name,
            "A");
}

TEST(Channel, ThatIsAnalogueIsNoService) {
  EXPECT_EQ(only(americanService()
                     .add(0x1FFB, channels(0xC8, 2, channelOf("A", 7, 1, 0xFFFF, 1) + channelOf("B", 7, 2, 1, 2)))
                     .bytes)
                .name,
            "B");
}

TEST(Channel, ThatIsMissingIsTold) {
  const auto found = scan(americanService().add(0x1FFB, channels(0xC8, 3, channelOf("A", 7, 1, 1, 2))).bytes);
  EXPECT_EQ(found.services.size(), 1U);
  EXPECT_EQ(found.services[0].name, "A");
  EXPECT_EQ(found.problems.count(), 1U);
}

}  // namespace
}  // namespace broadcast_tests

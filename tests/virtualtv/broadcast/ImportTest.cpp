// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "text/Units.h"
#include "virtualtv/broadcast/Broadcast.h"

namespace broadcast_tests {
namespace {

using virtualtv::Service;
using virtualtv::broadcast::servicesOf;

std::optional<std::uint64_t> numberOf(const Service& service, int field) {
  const auto found = service.numbers.find(field);
  return found == service.numbers.end() ? std::nullopt : std::optional(found->second);
}

std::string textOf(const Service& service, int field) {
  const auto found = service.texts.find(field);
  return found == service.texts.end() ? "" : virtualtv::text::toUtf8(found->second);
}

/// The numbers of services in a network whose table holds these numbers.
std::vector<std::uint64_t> numbersOf(const Blob& numbers) {
  Stream stream;
  stream.add(0x11, services(2, 3, described(1, 1, "", "A") + described(2, 1, "", "B") + described(3, 1, "", "C")));
  stream.add(0x10, networkTable("Coasts", sent(2, 3, descriptor(0x83, numbers)))).filler(2);
  std::vector<std::uint64_t> majors;
  for (const Service& service : servicesOf(scan(stream.bytes))) {
    majors.push_back(service.numbers.at(TCServiceData::MAJOR));
  }
  return majors;
}

TEST(ImportedScan, HasTheFieldsOfAService) {
  const Blob delivery{0x02, 0xF7, 0xE3, 0x40, 0x1F, 0x81, 0x00, 0xFF, 0xFF, 0xFF, 0xFF};
  Stream stream = oneService();
  stream.add(0x10, networkTable("Coasts", sent(2, 3, descriptor(0x5A, delivery) + descriptor(0x83, {0, 1, 0x7C, 7}))));
  const auto services = servicesOf(scan(stream.bytes));
  ASSERT_EQ(services.size(), 1U);
  const Service& service = services[0];
  EXPECT_EQ(textOf(service, TCServiceData::CHANNEL_NAME), "News");
  EXPECT_EQ(numberOf(service, TCServiceData::CHANNEL_TYPE), 9U);
  EXPECT_EQ(numberOf(service, TCServiceData::FREQUENCY), 498000U);
  EXPECT_EQ(numberOf(service, TCServiceData::PTC), 24U);
  EXPECT_EQ(numberOf(service, TCServiceData::MODULATION), 3U);
  EXPECT_EQ(numberOf(service, TCServiceData::PROGRAM_NUMBER), 1U);
  EXPECT_EQ(numberOf(service, TCServiceData::TRANSPORT_STREAM_ID), 2U);
  EXPECT_EQ(numberOf(service, TCServiceData::ORIGINAL_NETWORK_ID), 3U);
  EXPECT_EQ(numberOf(service, TCServiceData::ANTENNA_MODE), 0U);
  EXPECT_EQ(numberOf(service, TCServiceData::MAJOR), 7U);
  EXPECT_EQ(numberOf(service, TCServiceData::MINOR), 0U);
  EXPECT_EQ(numberOf(service, virtualtv::HIDDEN), 1U);
  EXPECT_EQ(service.audio.size(), 1U);
  EXPECT_EQ(textOf(service, TCServiceData::SERVICE_FIELD_110), R"({"network":"Coasts","provider":"Coast"})");
}

TEST(ImportedScan, NumbersServicesWithoutANumberBehindTheOthers) {
  EXPECT_EQ(numbersOf({0, 2, 0xFC, 7}), (std::vector<std::uint64_t>{7, 8, 9}));
  EXPECT_EQ(numbersOf({}), (std::vector<std::uint64_t>{1, 2, 3}));
}

TEST(Scan, TellsTheFirstPictureOfAServiceAndTheFileThatHasIt) {
  virtualtv::broadcast::Scanner scanner;
  scanner.feed(Stream().add(0x00, programs(9, {{9, 100}})).filler(2).bytes);
  scanner.endStream();
  scanner.feed(Stream()
                   .add(0x00, programs(2, {{1, 100}}))
                   .add(100, programMap(1, elementary(0x03, 102) + elementary(0x02, 103) + elementary(0x1B, 101)))
                   .filler(2)
                   .bytes);
  scanner.endStream();
  const auto found = scanner.finish().services;
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].program, 1);
  EXPECT_EQ(found[0].file, 2U);
  EXPECT_EQ(found[0].video, 103);
  EXPECT_EQ(found[0].videoType, 0x02);
  EXPECT_EQ(found[1].video, 0);
}

TEST(ImportedScan, NamesAServiceWithoutAName) {
  const auto services = servicesOf(scan(Stream().add(0x00, programs(2, {{7, 100}})).filler(2).bytes));
  EXPECT_EQ(textOf(services.at(0), TCServiceData::CHANNEL_NAME), "Service 7");
}

TEST(ImportedScan, AttachesWhatIsOn) {
  const Blob when{0xC0, 0x79, 0x12, 0x45, 0x00, 0x01, 0x30, 0x00};
  Stream stream = oneService();
  stream.add(0x12, events(1, 2, 3, 0,
                          broadcast_tests::number(77, 2) + when +
                              loop(descriptor(0x4D, text("eng") + counted("Noon") + counted("Weather")))));
  EXPECT_EQ(textOf(servicesOf(scan(stream.bytes)).at(0), TCServiceData::SERVICE_FIELD_110),
            R"({"presentEvent":{"duration":5400,"name":"Noon","start":"1993-10-13T12:45:00Z","text":"Weather"},)"
            R"("provider":"Coast"})");
}

}  // namespace
}  // namespace broadcast_tests

// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "services/ListText.h"
#include "virtualtv/broadcast/Broadcast.h"

namespace broadcast_tests {
namespace {

using virtualtv::textOf;
using virtualtv::broadcast::FoundService;

/// Program 1 with these streams, without an entry in a service table.
FoundService with(const Blob& streams, const Blob& descriptors = {}) {
  return only(Stream().add(0x00, programs(2, {{1, 100}})).add(100, programMap(1, streams, descriptors)).bytes);
}

std::string audio(const Blob& streams) {
  return textOf(with(streams).audio);
}

std::string subtitles(const Blob& descriptors) {
  return textOf(with(elementary(0x06, 300, descriptors)).subtitles);
}

TEST(Program, HasTheAudioThatStreamTypesTell) {
  EXPECT_EQ(audio(elementary(0x03, 300) + elementary(0x04, 301)), "300:und:mpeg:0:0,301:und:mpeg:0:0");
  EXPECT_EQ(audio(elementary(0x0F, 300) + elementary(0x11, 301)), "300:und:aac:0:0,301:und:aac:0:0");
  EXPECT_EQ(audio(elementary(0x81, 300) + elementary(0x87, 301)), "300:und:ac3:0:0,301:und:eac3:0:0");
  EXPECT_EQ(audio(elementary(0x06, 300) + elementary(0x1B, 301) + elementary(0x05, 302)), "none");
}

TEST(Program, HasTheAudioThatDescriptorsOfPrivateStreamsTell) {
  EXPECT_EQ(audio(elementary(0x06, 300, descriptor(0x6A, {0}))), "300:und:ac3:0:0");
  EXPECT_EQ(audio(elementary(0x06, 300, descriptor(0x7A, {0}))), "300:und:eac3:0:0");
  EXPECT_EQ(audio(elementary(0x06, 300, descriptor(0x7C, {0x50}))), "300:und:aac:0:0");
  EXPECT_EQ(audio(elementary(0x06, 300, descriptor(0x7B, {0}))), "300:und:unknown:0:0");
  EXPECT_EQ(audio(elementary(0x06, 300, descriptor(0x05, text("AC-3")))), "300:und:ac3:0:0");
  EXPECT_EQ(audio(elementary(0x06, 300, descriptor(0x05, text("EAC3")))), "300:und:eac3:0:0");
  EXPECT_EQ(audio(elementary(0x06, 300, descriptor(0x05, text("AC")))), "none");
}

TEST(Program, HasAudioInTheLanguagesThatAreTold) {
  EXPECT_EQ(audio(elementary(0x03, 300, language("ENG", 0))), "300:eng:mpeg:0:0");
  EXPECT_EQ(audio(elementary(0x03, 300, language("und", 1))), "300:und:mpeg:0:1");
  EXPECT_EQ(audio(elementary(0x03, 300, language("1 3", 0))), "300:und:mpeg:0:0");
  const Blob both = descriptor(0x0A, text("deu") + Blob{0} + text("fra") + Blob{2});
  EXPECT_EQ(audio(elementary(0x03, 300, both)), "300:deu:mpeg:0:0,300:fra:mpeg:0:2");
}

TEST(Program, HasAudioForThoseWhoSeeOrHearLess) {
  EXPECT_EQ(audio(elementary(0x03, 300, language("eng", 3))), "300:eng:mpeg:0:3");
  EXPECT_EQ(audio(elementary(0x06, 300, descriptor(0x6A, {0x80, 0x10}) + language("eng", 0))), "300:eng:ac3:0:3");
  EXPECT_EQ(audio(elementary(0x06, 300, descriptor(0x7A, {0x80, 0x18}))), "300:und:eac3:0:2");
  EXPECT_EQ(audio(elementary(0x06, 300, descriptor(0x7A, {0x00, 0x18}))), "300:und:eac3:0:0");
  // Supplementary audio: its purpose, then a language.
  const Blob described = descriptor(0x7F, Blob{0x06, 0x01 << 2 | 0x83} + text("cym"));
  EXPECT_EQ(audio(elementary(0x0F, 300, described)), "300:cym:aac:0:3");
  EXPECT_EQ(audio(elementary(0x0F, 300, language("eng", 0) + described)), "300:eng:aac:0:3");
  EXPECT_EQ(audio(elementary(0x0F, 300, descriptor(0x7F, {0x06, 0x02 << 2 | 0x82}))), "300:und:aac:0:2");
}

TEST(Program, HasSubtitles) {
  const Blob english = text("eng") + Blob{0x10, 0, 1, 0, 1};
  const Blob german = text("deu") + Blob{0x20, 0, 2, 0, 2};
  EXPECT_EQ(subtitles(descriptor(0x59, english + german)), "300:eng:dvb,300:deu:dvb");
}

TEST(Program, HasTheTeletextPagesThatAreSubtitles) {
  const auto page = [](const std::string& language, int kind) {
    return text(language) + number(static_cast<std::uint64_t>(kind) << 3U | 1U, 1) + Blob{0x50};
  };
  EXPECT_EQ(subtitles(descriptor(0x56, page("eng", 1) + page("eng", 2) + page("fra", 5) + page("deu", 3))),
            "300:eng:teletext,300:fra:teletext");
}

TEST(Program, IsOfTheKindThatItsStreamsMakeIt) {
  EXPECT_EQ(with(elementary(0x02, 300) + elementary(0x03, 301)).kind, virtualtv::ServiceKind::television);
  EXPECT_EQ(with(elementary(0x24, 300)).kind, virtualtv::ServiceKind::television);
  EXPECT_EQ(with(elementary(0x03, 300)).kind, virtualtv::ServiceKind::radio);
  EXPECT_EQ(with(elementary(0x05, 300)).kind, virtualtv::ServiceKind::data);
}

TEST(Program, IsScrambledWhereItsPacketsAre) {
  EXPECT_FALSE(only(oneService().packet(101, {}, false).packet(500, {}, false, 2).bytes).isScrambled);
  EXPECT_TRUE(only(oneService().packet(101, {}, false, 2).bytes).isScrambled);
  EXPECT_TRUE(only(oneService().packet(102, {}, false, 3).bytes).isScrambled);
}

TEST(Program, IsScrambledWhereNothingButItsMapTells) {
  const Blob access = descriptor(0x09, {1, 2, 0xE0, 0x50});
  EXPECT_TRUE(with(elementary(0x03, 300), access).isScrambled);
  EXPECT_TRUE(with(elementary(0x03, 300, access)).isScrambled);
  EXPECT_FALSE(with(elementary(0x03, 300)).isScrambled);
  Stream described = oneService();
  described.add(100, programMap(1, elementary(0x03, 102), access, {.version = 1}));
  EXPECT_FALSE(only(described.bytes).isScrambled);
}

TEST(Program, IsReadFromItsOwnPidOnly) {
  Stream stream;
  stream.add(0x00, programs(2, {{1, 100}, {2, 200}}));
  stream.add(200, programMap(1, elementary(0x03, 300))).add(100, programMap(2, elementary(0x03, 400)));
  for (const FoundService& service : scan(stream.bytes).services) EXPECT_EQ(textOf(service.audio), "none");
}

TEST(Program, MayMoveToAnotherPid) {
  Stream stream;
  const Blob map = programMap(1, elementary(0x03, 300));
  stream.add(0x00, programs(2, {{1, 100}, {2, 200}})).add(200, map);
  EXPECT_EQ(textOf(scan(stream.bytes).services[0].audio), "none");
  stream.add(0x00, programs(2, {{1, 200}}, {.version = 1})).add(200, map);
  const auto found = scan(stream.bytes);
  ASSERT_EQ(found.services.size(), 2U);
  EXPECT_EQ(textOf(found.services[0].audio), "300:und:mpeg:0:0");
}

TEST(Program, OfTwoStreamsIsTwo) {
  virtualtv::broadcast::Scanner scanner;
  for (const int stream : {2, 5}) {
    const Blob bytes = Stream().add(0x00, programs(stream, {{1, 100}})).filler(3).bytes;
    scanner.feed(bytes);
    scanner.endStream("a.ts");
  }
  EXPECT_EQ(scanner.finish().services.size(), 2U);
  EXPECT_EQ(scanner.finish().packets, 8U);
}

}  // namespace
}  // namespace broadcast_tests

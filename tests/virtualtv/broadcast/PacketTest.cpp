// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "virtualtv/broadcast/Broadcast.h"

namespace broadcast_tests {
namespace {

const std::string news =
    R"({"packets":8,"problems":[],"services":[{"audio":[{"coding":"mpeg","language":"eng","pid":102,"type":0}],)"
    R"("kind":"television","name":"News","originalNetworkId":3,"programNumber":1,"provider":"Coast",)"
    R"("scrambled":false,"subtitles":[],"transportStreamId":2}]})";

Blob newsIn(Stream stream) {
  for (const auto& [pid, table] :
       {std::pair(0x00, programs(2, {{1, 100}})),
        std::pair(100, programMap(1, elementary(0x1B, 101) + elementary(0x03, 102, language("eng", 0)))),
        std::pair(0x11, services(2, 3, described(1, 0x19, "Coast", "News")))}) {
    stream.add(pid, table);
  }
  return stream.filler(5).bytes;
}

TEST(Packet, MayHaveATimeInFrontOfItOrParityBehindIt) {
  EXPECT_EQ(document(scan(newsIn(Stream()))), news);
  EXPECT_EQ(document(scan(newsIn(Stream(4, 0)))), news);
  EXPECT_EQ(document(scan(newsIn(Stream(0, 16)))), news);
}

TEST(Packet, MayComeInBlocksOfAnySize) {
  for (const Blob& bytes : {newsIn(Stream()), newsIn(Stream(4, 0)), newsIn(Stream(0, 16))}) {
    for (std::size_t block = 1; block < 900; block += block < 230 ? 1 : 37) {
      EXPECT_EQ(document(scan(bytes, block)), news) << block;
    }
  }
}

TEST(Packet, IsFoundWhereverTheStreamStarts) {
  const Blob bytes = newsIn(Stream());
  for (std::size_t more = 1; more < 188; ++more) {
    const Blob front = Blob(more, 0x47);  // bytes that look like the starts of packets
    EXPECT_EQ(document(scan(front + bytes)), news) << more;
    EXPECT_EQ(document(scan(Blob(more, 0x00) + bytes, 100)), news) << more;
  }
}

TEST(Packet, ThatIsAloneIsOne) {
  EXPECT_EQ(scan(Stream().filler(1).bytes).packets, 1U);
  EXPECT_EQ(scan(Stream().filler(2).bytes).packets, 2U);
  EXPECT_EQ(scan({}).packets, 0U);
}

TEST(Packet, IsNotFoundInOtherBytes) {
  Blob words;
  for (int at = 0; at < 20000; ++at) words.push_back(static_cast<std::uint8_t>("Going Grey "[at % 11]));
  const auto found = scan(words);
  EXPECT_EQ(found.packets, 0U);
  EXPECT_EQ(problems(found), std::vector<std::string>{});
}

TEST(Packet, WithADamagedFirstByteIsLeftOutAndTold) {
  Blob bytes = newsIn(Stream()) + Stream().filler(4).bytes;
  bytes[6 * 188] = 0x46;
  const auto found = scan(bytes, 333);
  EXPECT_EQ(found.packets, 12U);
  EXPECT_EQ(found.services.size(), 1U);
  EXPECT_EQ(problems(found), std::vector<std::string>{"packet 7: 1 packet without the byte that starts one, left out"});
}

TEST(Packet, IsFoundAgainBehindBytesThatAreNone) {
  const Blob once = newsIn(Stream());
  const auto found = scan(once + Blob(77, 0x01) + once + Blob(1000, 0x02) + once, 500);
  EXPECT_EQ(found.packets, 24U);
  EXPECT_EQ(problems(found).front(), "packet 8: 1077 bytes between packets, passed over");
}

TEST(Packet, WithTransmissionErrorsIsLeftOutAndTold) {
  Blob bytes = newsIn(Stream());
  for (const int at : {2, 4, 5}) bytes[static_cast<std::size_t>(at) * 188 + 1] |= 0x80;
  const auto found = scan(bytes);
  EXPECT_EQ(found.services.front().name, "");  // the name was in the third packet
  EXPECT_EQ(problems(found),
            std::vector<std::string>{"packet 3: 3 packets with transmission errors, left out; the first one here"});
}

TEST(Packet, ThatIsMissingIsTold) {
  Stream stream = oneService();
  stream.lose(101, 0).packet(101, {}, false).lose(101, 3).packet(101, {}, false).packet(101, {}, false);
  stream.lose(102, 1).packet(102, {}, false);  // the counter of a PID may start anywhere
  EXPECT_EQ(problems(scan(stream.bytes)), std::vector<std::string>{"packet 5: PID 101: 1 gap between packets"});
}

TEST(Packet, MayComeTwiceButNotThrice) {
  Stream stream = oneService();
  stream.packet(101, {}, false).lose(101, -1).packet(101, {}, false).packet(101, {}, false);
  EXPECT_EQ(problems(scan(stream.bytes)), std::vector<std::string>{});
  stream.lose(101, -1).packet(101, {}, false).lose(101, -1).packet(101, {}, false);
  EXPECT_EQ(problems(scan(stream.bytes)), std::vector<std::string>{"packet 8: PID 101: 1 gap between packets"});
}

TEST(Packet, MaySayThatItFollowsOnNone) {
  Stream stream = oneService();
  stream.packet(101, {}, false).lose(101, 5).packet(101, {7, 0x80}, false);
  stream.bytes[stream.bytes.size() - 188 + 3] |= 0x20;
  EXPECT_EQ(problems(scan(stream.bytes)), std::vector<std::string>{});
}

TEST(Packet, OfASectionWithAGapSpoilsThatSectionOnly) {
  Stream stream;
  stream.add(0x00, programs(2, {{1, 100}}));
  const Blob table = services(2, 3, described(1, 1, "Coast", std::string(200, 'a')));
  stream.packet(0x11, Blob{0} + Blob(table.begin(), table.begin() + 183), true).lose(0x11, 1);
  stream.packet(0x11, Blob(table.begin() + 183, table.end()), false);
  EXPECT_EQ(scan(stream.bytes).services.front().name, "");
  stream.add(0x11, table);
  EXPECT_EQ(scan(stream.bytes).services.front().name, std::string(200, 'a'));
}

}  // namespace
}  // namespace broadcast_tests

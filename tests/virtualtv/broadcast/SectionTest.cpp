// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "virtualtv/broadcast/Broadcast.h"

namespace broadcast_tests {
namespace {

using virtualtv::broadcast::checksum;

TEST(Section, HasTheChecksumOfItsStandard) {
  const Blob digits = text("123456789");
  EXPECT_EQ(checksum(digits), 0x0376E6E7U);  // the published check value of CRC-32/MPEG-2
  EXPECT_EQ(checksum(sealed(digits)), 0U);
}

TEST(Section, WithAWrongChecksumIsLeftOutAndTold) {
  Stream stream;
  stream.add(0x00, programs(2, {{1, 100}}));
  Blob wrong = services(2, 3, described(1, 1, "Coast", "News"));
  wrong[20] ^= 1;
  stream.add(0x11, wrong).add(0x11, wrong);
  const auto found = scan(stream.bytes);
  EXPECT_EQ(found.services.front().name, "");
  EXPECT_EQ(problems(found), std::vector<std::string>{
                                 "packet 2: PID 17: 2 sections with a wrong checksum, left out; the first one here"});
}

TEST(Section, MayFollowAnotherInOnePacket) {
  const Blob both = services(2, 3, described(1, 1, "Coast", "News"), true, {.section = 0, .last = 1}) +
                    services(2, 3, described(2, 1, "Coast", "Sport"), true, {.section = 1, .last = 1});
  Stream stream;
  stream.add(0x00, programs(2, {{1, 100}, {2, 200}})).add(0x11, both);
  const auto found = scan(stream.bytes);
  ASSERT_EQ(found.services.size(), 2U);
  EXPECT_EQ(found.services[1].name, "Sport");
}

TEST(Section, MayStartBehindTheEndOfAnother) {
  const Blob first = services(2, 3, described(1, 1, "Coast", std::string(200, 'a')), true, {.section = 0, .last = 1});
  const Blob second = services(2, 3, described(2, 1, "Coast", "Sport"), true, {.section = 1, .last = 1});
  Stream stream;
  stream.add(0x00, programs(2, {{1, 100}, {2, 200}}));
  stream.packet(0x11, Blob{0} + Blob(first.begin(), first.begin() + 183), true);
  const Blob rest(first.begin() + 183, first.end());
  stream.packet(0x11, number(rest.size(), 1) + rest + second, true);
  const auto found = scan(stream.bytes);
  EXPECT_EQ(problems(found), std::vector<std::string>{});
  ASSERT_EQ(found.services.size(), 2U);
  EXPECT_EQ(found.services[0].name, std::string(200, 'a'));
  EXPECT_EQ(found.services[1].name, "Sport");
}

TEST(Section, ThatDoesNotHoldYetIsLeftOut) {
  Stream stream = oneService();
  stream.add(0x11, services(2, 3, described(1, 1, "Coast", "Later"), true, {.version = 1, .isCurrent = false}));
  EXPECT_EQ(only(stream.bytes).name, "News");
}

TEST(Section, OfANewVersionCountsFromThenOn) {
  Stream stream = oneService();
  stream.add(0x11, services(2, 3, described(1, 1, "Coast", "Newer"), true, {.version = 1}));
  EXPECT_EQ(only(stream.bytes).name, "Newer");
}

TEST(Section, WithALengthThatCannotBeIsLeftOutAndTold) {
  Stream stream = oneService();
  const Blob inner{0, 2, 0xC1, 5, 4, 0, 3, 0xFF};  // section 5, where 4 is the last one
  stream.add(0x11, sealed(Blob{0x42} + number(0xB000 | (inner.size() + 4), 2) + inner));
  stream.add(0x11, Blob{0x42, 0xB0, 0x03, 1, 2, 3});
  EXPECT_EQ(
      problems(scan(stream.bytes)),
      std::vector<std::string>{"packet 4: PID 17: 2 sections of a length that can't be, left out; the first one here"});
}

TEST(Section, WithADescriptorBeyondItsEndIsUsedUpToThere) {
  const Blob sound = descriptor(0x48, Blob{1} + counted("Coast") + counted("News"));
  const Blob loop = sound + Blob{0x48, 200, 1};
  const Blob service = number(1, 2) + number(0xFC, 1) + number(0x8000 | loop.size(), 2) + loop;
  Stream stream;
  stream.add(0x00, programs(2, {{1, 100}})).add(0x11, services(2, 3, service));
  const auto found = scan(stream.bytes);
  EXPECT_EQ(found.services.front().name, "News");
  EXPECT_EQ(problems(found), std::vector<std::string>{"packet 2: PID 17: 1 section with a part that runs over its "
                                                      "end, left out from there on"});
}

}  // namespace
}  // namespace broadcast_tests

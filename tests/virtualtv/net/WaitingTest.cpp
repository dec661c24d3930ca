// SPDX-License-Identifier: MIT
// Messages of a WebSocket client that wait until the answer to an earlier one, which is held back, is sent.
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <string>

#include "virtualtv/net/Served.h"

namespace virtualtv::net {
namespace {

Options attentive() {
  Options options;
  options.limits.attention = std::chrono::milliseconds(10);
  options.limits.closing = std::chrono::minutes(1);
  options.limits.mostAhead = 250'000;
  return options;
}

class WaitingTest : public ::testing::Test {
 protected:
  WaitingTest() {
    subscriber.upgrade();
    subscriber.call(requestOf(1, "events.subscribe", R"({"topics":["session","knob"]})"));
    client.upgrade();
    EXPECT_NE(nextEvent().find(R"("opened")"), std::string::npos);
    client.call(holdBack());
    EXPECT_NE(nextEvent().find("latency"), std::string::npos);
    client.sendFrame(textFrame, heldBack(2));
    EXPECT_NE(nextEvent().find(R"("clock")"), std::string::npos) << "it has begun";
  }

  std::string nextEvent() {
    Frame frame = subscriber.frame();
    while (frame.first == pingFrame) frame = subscriber.frame();
    return frame.payload;
  }
  /// Sends messages that have to wait: one that would change the set, then harmless ones. @param last  id of the last
  /// one.
  void fill(int last) {
    std::string frames = bytesOf(textFrame, requestOf(3, "tv.set", R"({"name":"region","value":"7"})"));
    for (int id = 4; id <= last; ++id) frames += bytesOf(textFrame, quick(id));
    client.send(frames);
  }
  /// Expects that the client's session ends and that no waiting message has run.
  void expectEnd() {
    const std::string event = nextEvent();
    EXPECT_NE(event.find(R"("closed")"), std::string::npos) << event;
    EXPECT_EQ(subscriber.call(quick(9)).find(R"("7")"), std::string::npos);
  }

  Served served{attentive()};
  Wire subscriber{served.port()};
  Wire client{served.port()};
};

TEST_F(WaitingTest, KeepsNoPingWaiting) {
  fill(100);
  client.sendFrame(pingFrame, "there?");
  const Frame frame = client.frame();
  EXPECT_EQ(frame.first, pongFrame);
  EXPECT_EQ(frame.payload, "there?");
}

TEST_F(WaitingTest, EndsWithACloseFrame) {
  fill(100);
  client.sendFrame(closeFrame, "\x03\xE8");
  EXPECT_EQ(client.frame().code(), 1000);
  expectEnd();
}

TEST_F(WaitingTest, EndsWithWhatTheClientSends) {
  fill(100);
  client.endSending();
  expectEnd();
}

TEST_F(WaitingTest, EndsWithABrokenConnection) {
  fill(100);
  client.reset();
  expectEnd();
}

TEST_F(WaitingTest, EndsWithWhatBreaksTheRules) {
  fill(100);
  client.sendFrame(binaryFrame, "{}");
  EXPECT_EQ(client.frame().code(), 1003);
  client.close();
  expectEnd();
}

/// Sends more than the server reads ahead. @return the number of bytes that it took before it stopped reading.
std::size_t overfill(Wire& client) {
  const std::string frame = bytesOf(textFrame, quick(4) + std::string(1000, ' '));
  std::size_t taken = 0;
  client.sendImpatiently();
  constexpr std::size_t tooMuch = 64U << 20U;
  while (taken < tooMuch && client.trySend(frame)) taken += frame.size();
  EXPECT_LT(taken, tooMuch);
  return taken;
}

TEST_F(WaitingTest, IsReadAheadWithinBounds) {
  EXPECT_GT(overfill(client), attentive().limits.mostAhead / 2);
}

TEST_F(WaitingTest, BeyondWhatIsReadAheadEndsWithItsClientToo) {
  overfill(client);
  client.close();
  expectEnd();
}

TEST_F(WaitingTest, BeyondWhatIsReadAheadEndsWithABrokenConnection) {
  overfill(client);
  client.reset();
  expectEnd();
}

/// All bytes arrive, but the server does not read the last message. That message is short: with many unread bytes
/// before it, the end of the connection would not arrive.
TEST_F(WaitingTest, BeyondWhatIsReadAheadEndsWithWhatTheClientSends) {
  client.sendFrame(textFrame, quick(4) + std::string(attentive().limits.mostAhead, ' '));
  client.sendFrame(textFrame, quick(5));
  client.endSending();
  expectEnd();
}

TEST(WaitingMessagesTest, AreAnsweredInTheirOrderOnceTheTimeIsOver) {
  Served served;
  Wire client(served.port());
  client.upgrade();
  client.call(requestOf(1, "tv.set", R"({"name":"latency.IServiceNavigation::GetTvMode","value":"30"})"));
  constexpr int last = 2000;  // more than the server reads ahead
  std::string frames = bytesOf(textFrame, heldBack(2));
  for (int id = 3; id < last; ++id) {
    frames += bytesOf(textFrame, id % 500 == 0 ? heldBack(id) : quick(id) + std::string(1000, ' '));
  }
  client.send(frames + bytesOf(textFrame, quick(last)));
  for (int id = 2; id <= last; ++id) ASSERT_EQ(idOf(client.frame().payload), id);
}

}  // namespace
}  // namespace virtualtv::net

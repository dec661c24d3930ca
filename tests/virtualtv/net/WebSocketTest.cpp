// SPDX-License-Identifier: MIT
// Calls over WebSocket, with frames written out as bytes.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "virtualtv/net/Served.h"

namespace virtualtv::net {
namespace {

Options withSilence(std::chrono::milliseconds silence) {
  Options options;
  options.limits.silence = silence;
  return options;
}

class WebSocketTest : public ::testing::Test {
 protected:
  WebSocketTest() { EXPECT_EQ(wire.upgrade().status, 101); }

  /// Expects that the server closes the connection with this code, and ends it once that is answered.
  static void expectClose(Wire& wire, int code) {
    const Frame frame = wire.frame();
    EXPECT_EQ(frame.first, closeFrame);
    EXPECT_EQ(frame.code(), code);
    wire.trySend(bytesOf(closeFrame, frame.payload.substr(0, 2)));
    wire.endSending();
    EXPECT_TRUE(wire.isAtEnd());
  }
  /// Sends frames on a new connection. @return the code with which the server closes it.
  int codeFor(const std::vector<std::string>& frames) {
    Wire own(served.port());
    own.upgrade();
    for (const std::string& frame : frames) own.trySend(frame);
    own.endSending();
    Frame frame = own.frame();
    while (frame.first != closeFrame && frame.first != 0) frame = own.frame();
    return frame.code();
  }

  Served served;
  Wire wire{served.port()};
};

TEST_F(WebSocketTest, AnswersTheHandshake) {
  Wire own(served.port());
  const HttpResponse response = own.upgrade("/rpc",
                                            "Sec-WebSocket-Extensions: permessage-deflate; client_max_window_bits\n"
                                            "Sec-WebSocket-Protocol: chat\nOrigin: http://localhost\n");
  EXPECT_EQ(response.status, 101);
  EXPECT_EQ(response.headers.at("sec-websocket-accept"), "s3pPLMBiTxaQ9kYGzzhZRbK+xOo=");
  EXPECT_EQ(response.headers.count("sec-websocket-extensions"), 0U);
  EXPECT_EQ(response.headers.count("sec-websocket-protocol"), 0U);
  EXPECT_EQ(response.headers.at("x-content-type-options"), "nosniff");
  EXPECT_EQ(response.headers.at("access-control-allow-origin"), "http://localhost");
}

TEST_F(WebSocketTest, RefusesHandshakesThatAreNone) {
  const std::string front = "GET /rpc HTTP/1.1\nHost: localhost\nConnection: keep-alive, Upgrade\nUpgrade: websocket\n";
  Wire own(served.port());
  const HttpResponse old = own.ask(front + "Sec-WebSocket-Version: 8\nSec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\n");
  EXPECT_EQ(old.status, 426);
  EXPECT_EQ(old.headers.at("sec-websocket-version"), "13");
  EXPECT_EQ(own.ask(front + "Sec-WebSocket-Version: 13\n").status, 400);
  EXPECT_EQ(own.ask(front + "Sec-WebSocket-Version: 13\nSec-WebSocket-Key: short\n").status, 400);
  EXPECT_EQ(own.upgrade("/", "").status, 200);
  EXPECT_EQ(own.upgrade("/rpc", "Origin: http://evil.example\n").status, 403);
  EXPECT_EQ(own.ask("GET /rpc HTTP/1.0\nHost: localhost\nConnection: Upgrade\nUpgrade: websocket\n").status, 426);
}

TEST_F(WebSocketTest, AnswersCallsInTheirOrder) {
  std::string frames;
  for (int id = 1; id <= 100; ++id) frames += bytesOf(textFrame, quick(id));
  wire.send(frames);
  for (int id = 1; id <= 100; ++id) {
    const Frame frame = wire.frame();
    EXPECT_EQ(frame.first, textFrame);
    EXPECT_EQ(idOf(frame.payload), id);
  }
}

TEST_F(WebSocketTest, AdoptsTheSessionOfARequest) {
  const std::string session = Wire(served.port()).openSession();
  Wire adopting(served.port());
  EXPECT_EQ(adopting.upgrade("/rpc?session=" + session).status, 101);
  EXPECT_EQ(idOf(adopting.call(quick(4))), 4);
}

TEST_F(WebSocketTest, AnUnknownSessionIsToldBeforeTheUpgrade) {
  Wire own(served.port());
  const HttpResponse response = own.upgrade("/rpc?session=nosuch");
  EXPECT_EQ(response.status, 404);
  EXPECT_GT(response.body.size(), 5U);
  EXPECT_EQ(own.upgrade().status, 101) << "the connection goes on";
}

TEST(WebSocketSessionsTest, MoreThanThereMayBeAreRefused) {
  Options options;
  options.mostSessions = 2;
  Served served(options);
  Wire first(served.port());
  Wire second(served.port());
  Wire third(served.port());
  EXPECT_EQ(first.upgrade().status, 101);
  EXPECT_EQ(second.upgrade().status, 101);
  EXPECT_EQ(third.upgrade().status, 503);
  second.sendFrame(closeFrame, "\x03\xE8");
  EXPECT_EQ(second.frame().code(), 1000);
  second.endSending();
  EXPECT_TRUE(second.isAtEnd());
  EXPECT_EQ(third.upgrade().status, 101);
}

TEST_F(WebSocketTest, TakesMessagesInFragmentsWithControlsBetween) {
  const std::string message = quick(5);
  wire.sendFrame(0x01, message.substr(0, 3));
  wire.sendFrame(pingFrame, "now");
  wire.sendFrame(0x00, "");
  wire.sendFrame(0x00, message.substr(3, 4));
  wire.sendFrame(pongFrame, "unasked");
  wire.sendFrame(0x80, message.substr(7));
  const Frame pong = wire.frame();
  EXPECT_EQ(pong.first, pongFrame);
  EXPECT_EQ(pong.payload, "now");
  EXPECT_EQ(idOf(wire.frame().payload), 5);
}

TEST_F(WebSocketTest, AnswersPings) {
  wire.sendFrame(pingFrame, "");
  EXPECT_EQ(wire.frame().first, pongFrame);
  wire.sendFrame(pingFrame, std::string(125, 'p'));
  EXPECT_EQ(wire.frame().payload, std::string(125, 'p'));
}

TEST_F(WebSocketTest, AnswersACloseWithItsCode) {
  wire.sendFrame(closeFrame, "\x0F\xA1gone");
  EXPECT_EQ(wire.frame().code(), 4001);
  wire.endSending();
  EXPECT_TRUE(wire.isAtEnd());
  EXPECT_EQ(codeFor({bytesOf(closeFrame, "")}), 1000);
}

TEST_F(WebSocketTest, ClosesWhereTheRulesAreBroken) {
  struct Row {
    const char* what;
    std::vector<std::string> frames;
    int code;
  };
  const std::vector<Row> rows{
      {"no mask", {bytesOf(textFrame, "{}", false)}, 1002},
      {"first reserved bit", {bytesOf(0xC1, "{}")}, 1002},
      {"second reserved bit", {bytesOf(0xA1, "{}")}, 1002},
      {"third reserved bit", {bytesOf(0x91, "{}")}, 1002},
      {"unknown kind", {bytesOf(0x83, "")}, 1002},
      {"unknown control", {bytesOf(0x8B, "")}, 1002},
      {"long control", {bytesOf(pingFrame, std::string(126, 'p'))}, 1002},
      {"control in fragments", {bytesOf(0x09, "p")}, 1002},
      {"continuation of nothing", {bytesOf(0x80, "x")}, 1002},
      {"message within a message", {bytesOf(0x01, "{"), bytesOf(textFrame, "}")}, 1002},
      {"close of one byte", {bytesOf(closeFrame, "x")}, 1002},
      {"close with a code that is none", {bytesOf(closeFrame, "\x03\xED")}, 1002},
      {"binary", {bytesOf(binaryFrame, "{}")}, 1003},
      {"binary in fragments", {bytesOf(0x02, "{")}, 1003},
      {"no UTF-8", {bytesOf(textFrame, "\"\xFF\"")}, 1007},
      {"half a character", {bytesOf(textFrame, "\xC3")}, 1007},
      {"a surrogate", {bytesOf(textFrame, "\xED\xA0\x80")}, 1007},
  };
  for (const Row& row : rows) EXPECT_EQ(codeFor(row.frames), row.code) << row.what;
}

TEST_F(WebSocketTest, TakesCharactersThatTwoFragmentsShare) {
  wire.sendFrame(0x01, "\"\xC3");
  wire.sendFrame(0x80, "\xA4\"");
  EXPECT_NE(wire.frame().payload.find("-32600"), std::string::npos);
}

TEST_F(WebSocketTest, TakesAMessageOfTheGreatestSizeAndNoGreaterOne) {
  constexpr std::size_t most = 32 * 1024 * 1024;
  const std::string request = quick(6);
  EXPECT_EQ(idOf(wire.call(request + std::string(most - request.size(), ' '))), 6);
  wire.trySend(bytesOf(textFrame, request + std::string(most + 1 - request.size(), ' ')));
  expectClose(wire, 1009);
  // The parts of a message count together.
  std::vector<std::string> parts(33, bytesOf(0x00, std::string(1024 * 1024, ' ')));
  parts.front() = bytesOf(0x01, std::string(1024 * 1024, ' '));
  EXPECT_EQ(codeFor(parts), 1009);
}

TEST_F(WebSocketTest, OneClientIsServedWhileAnotherIsHeldBack) {
  wire.call(holdBack());
  wire.send(bytesOf(textFrame, heldBack(2)) + bytesOf(textFrame, quick(3)));
  Wire other(served.port());
  other.upgrade();
  for (int id = 1; id <= 20; ++id) EXPECT_EQ(idOf(other.call(quick(id))), id);
}

TEST_F(WebSocketTest, AClientThatIsHeldBackIsStillAnsweredPingsAndMayGo) {
  wire.call(holdBack());
  wire.sendFrame(textFrame, heldBack(2));
  wire.sendFrame(pingFrame, "there?");
  EXPECT_EQ(wire.frame().payload, "there?");
  wire.sendFrame(closeFrame, "\x03\xE8");
  EXPECT_EQ(wire.frame().code(), 1000);
}

TEST_F(WebSocketTest, TheEndOfTheServerIsToldWithItsCode) {
  Wire talking(served.port());
  talking.upgrade();
  EXPECT_EQ(idOf(talking.call(quick(1))), 1);
  Wire http(served.port());
  EXPECT_EQ(http.ask(postOf(quick(1)), quick(1)).status, 200);
  served.end();
  expectClose(wire, 1001);
  expectClose(talking, 1001);
  EXPECT_TRUE(http.isAtEnd());
  served.wait();
  EXPECT_THROW(Wire(served.port()), std::runtime_error);
}

TEST(WebSocketEndTest, TheServerDoesNotWaitLongForClients) {
  Options options;
  options.limits.ending = std::chrono::milliseconds(20);
  Served served(options);
  Wire silent(served.port());
  silent.upgrade();
  silent.call(holdBack());
  silent.sendFrame(textFrame, heldBack(2));
  Wire posting(served.port());
  posting.sendRequest(postOf(heldBack(3)), heldBack(3));
  served.end();
  EXPECT_EQ(silent.frame().code(), 1001);
  EXPECT_TRUE(silent.isAtEnd());
  EXPECT_TRUE(posting.isAtEnd());
  served.wait();
}

TEST(WebSocketSilenceTest, AsksSilentClientsForASignAndEndsThoseThatGiveNone) {
  Served served(withSilence(std::chrono::milliseconds(40)));
  Wire silent(served.port());
  silent.upgrade();
  EXPECT_EQ(silent.frame().first, pingFrame);
  EXPECT_EQ(silent.readAll().find(static_cast<char>(textFrame)), std::string::npos);
  Wire alive(served.port());
  alive.upgrade();
  for (int time = 0; time < 5; ++time) {
    const Frame ping = alive.frame();
    ASSERT_EQ(ping.first, pingFrame);
    alive.sendFrame(pongFrame, ping.payload);
  }
  EXPECT_EQ(idOf([&] {
              alive.sendFrame(textFrame, quick(8));
              Frame frame = alive.frame();
              while (frame.first == pingFrame) frame = alive.frame();
              return frame.payload;
            }()),
            8);
}

TEST(WebSocketSilenceTest, AClientThatWaitsForItsAnswerIsNotSilent) {
  Served served(withSilence(std::chrono::milliseconds(40)));
  Wire waiting(served.port());
  waiting.upgrade();
  waiting.send(bytesOf(textFrame, holdBack()) + bytesOf(textFrame, heldBack(2)) + bytesOf(textFrame, quick(3)));
  EXPECT_EQ(waiting.frame().first, textFrame);
  for (int time = 0; time < 6; ++time) {
    const Frame ping = waiting.frame();
    ASSERT_EQ(ping.first, pingFrame);
    waiting.sendFrame(pongFrame, ping.payload);
  }
}

TEST(WebSocketDeviceTest, OtherThreadsCanUseTheSetMeanwhile) {
  Served served;
  Wire wire(served.port());
  wire.upgrade();
  served.onDevice([](device::Device& device) { EXPECT_TRUE(device.isOn()); });
  EXPECT_EQ(idOf(wire.call(quick(1))), 1);
}

}  // namespace
}  // namespace virtualtv::net

// SPDX-License-Identifier: MIT
// Limits on what a connection may use: bytes and time.
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "virtualtv/net/Served.h"

namespace virtualtv::net {
namespace {

constexpr std::size_t most = 32 * 1024 * 1024;

Options limited(const Limits& limits) {
  Options options;
  options.limits = limits;
  return options;
}

/// A request padded with blanks to this many bytes.
std::string padded(int id, std::size_t size) {
  const std::string request = quick(id);
  return request + std::string(size - request.size(), ' ');
}

const std::string head = "POST /rpc HTTP/1.1\nHost: localhost\nContent-Type: application/json\n";

TEST(BoundsTest, TakesABodyOfTheGreatestSizeAndNoGreaterOne) {
  Served served;
  Wire wire(served.port());
  EXPECT_EQ(idOf(wire.ask(head + "Content-Length: " + std::to_string(most) + "\n", padded(5, most)).body), 5);
  const HttpResponse refused = wire.ask(head + "Content-Length: " + std::to_string(most + 1) + "\n");
  EXPECT_EQ(refused.status, 413);
  EXPECT_EQ(refused.headers.at("connection"), "close");
  EXPECT_TRUE(wire.isAtEnd());
}

TEST(BoundsTest, TellsAClientThatSendsTooMuchAllTheSame) {
  Served served;
  Wire wire(served.port());
  const HttpResponse refused =
      wire.ask(head + "Content-Length: " + std::to_string(most + 1000) + "\n", padded(5, most + 1000));
  EXPECT_EQ(refused.status, 413);
}

TEST(BoundsTest, CountsBodiesInChunksToo) {
  Served served(limited({.mostBody = 1000}));
  Wire good(served.port());
  const auto chunked = [](std::size_t size) {
    std::string body;
    const std::string request = padded(4, size);
    for (std::size_t at = 0; at < size; at += 10) body += "a\r\n" + request.substr(at, 10) + "\r\n";
    return body + "0\r\n\r\n";
  };
  EXPECT_EQ(idOf(good.ask(head + "Transfer-Encoding: chunked\n", chunked(1000)).body), 4);
  EXPECT_EQ(good.ask(head + "Transfer-Encoding: chunked\n", chunked(1010)).status, 413);
  Wire endless(served.port());
  EXPECT_EQ(endless.ask(head + "Transfer-Encoding: chunked\n", "fffffffffffffff0\r\n").status, 413);
}

TEST(BoundsTest, RefusesAHeadWithoutEnd) {
  Served served(limited({.mostHead = 2000}));
  Wire wire(served.port());
  EXPECT_EQ(wire.ask("GET / HTTP/1.1\nHost: localhost\nA: " + std::string(1500, 'a') + "\n").status, 200);
  EXPECT_EQ(wire.ask("GET / HTTP/1.1\nHost: localhost\nA: " + std::string(2500, 'a') + "\n").status, 431);
  Wire target(served.port());
  target.send("GET /" + std::string(5000, 'a'));
  EXPECT_EQ(target.response().status, 431);
  Wire extension(served.port());
  EXPECT_GE(extension.ask(head + "Transfer-Encoding: chunked\n", "1;" + std::string(10000, 'x')).status, 400);
}

TEST(BoundsTest, EndsConnectionsThatAreSilentBetweenRequests) {
  Served served(limited({.silence = std::chrono::milliseconds(20)}));
  Wire never(served.port());
  EXPECT_TRUE(never.isAtEnd());
  Wire once(served.port());
  EXPECT_EQ(once.ask("GET / HTTP/1.1\nHost: localhost\n").status, 200);
  EXPECT_TRUE(once.isAtEnd());
}

TEST(BoundsTest, EndsConnectionsThatDoNotFinishARequest) {
  Served served(limited({.forHead = std::chrono::milliseconds(20), .forBody = std::chrono::milliseconds(20)}));
  for (const char* begun :
       {"G", "GET / HTTP/1.1\r\nHost: loc", "GET /rpc HTTP/1.1\r\nHost: localhost\r\nUpgrade: websocket\r\n",
        "POST /rpc HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/json\r\n"
        "Content-Length: 100\r\n\r\n{"}) {
    Wire wire(served.port());
    wire.send(begun);
    EXPECT_TRUE(wire.isAtEnd()) << begun;
  }
}

TEST(BoundsTest, AByteAtATimeBuysNoTime) {
  Served served(limited({.forHead = std::chrono::milliseconds(50), .mostHead = 100'000'000}));
  Wire wire(served.port());
  wire.send("GET / HTTP/1.1\r\nA: ");
  bool taken = true;
  while (taken && !HasFailure()) taken = wire.trySend("a") && !wire.hasEnded();
  EXPECT_TRUE(wire.isAtEnd());
}

TEST(BoundsTest, EndsConnectionsThatDoNotTakeTheirAnswers) {
  Served served(limited({.forAnswer = std::chrono::milliseconds(50)}));
  Wire wire(served.port(), 4096);
  std::string requests;
  for (int time = 0; time < 2000; ++time) requests += "GET / HTTP/1.1\r\nHost: localhost\r\n\r\n";
  bool taken = true;
  for (int time = 0; taken && time < 1000; ++time) taken = wire.trySend(requests);
  EXPECT_FALSE(taken);
}

TEST(BoundsTest, ServesOthersWhileSomeAreSlow) {
  Served served;
  std::vector<std::unique_ptr<Wire>> slow;
  for (int count = 0; count < 100; ++count) {
    slow.push_back(std::make_unique<Wire>(served.port()));
    slow.back()->send(count % 2 == 0 ? "GET / HT" : "");
  }
  Wire quickOne(served.port());
  for (int id = 1; id <= 20; ++id) EXPECT_EQ(idOf(quickOne.ask(postOf(quick(id)), quick(id)).body), id);
  for (auto& wire : slow) wire->close();
  EXPECT_EQ(idOf(quickOne.ask(postOf(quick(1)), quick(1)).body), 1);
}

TEST(BoundsTest, ReadsNoFurtherWhereAClientDoesNotTakeItsReplies) {
  Served served(limited({.mostUnsent = 100'000}));
  Wire slow(served.port(), 4096);
  ASSERT_EQ(slow.upgrade().status, 101);
  constexpr int calls = 400;  // more replies than the system's buffers hold
  std::string frames;
  for (int id = 1; id <= calls; ++id) frames += bytesOf(textFrame, requestOf(id, "window.GetFullChannelList"));
  frames += bytesOf(textFrame, requestOf(calls + 1, "tv.set", R"({"name":"region","value":"7"})"));
  slow.send(frames);
  Wire other(served.port());
  ASSERT_EQ(other.upgrade().status, 101);
  std::string region;
  for (int id = 1; id <= 3000; ++id) region = other.call(quick(id));
  EXPECT_EQ(region.find("\"7\""), std::string::npos) << region;
  for (int id = 1; id <= calls + 1; ++id) ASSERT_EQ(idOf(slow.frame().payload), id);
  EXPECT_NE(other.call(quick(1)).find("\"7\""), std::string::npos);
}

/// Subscribes a client to everything, then raises more events than may wait for it, while it reads nothing.
void fallBehind(Served& served, Wire& slow) {
  ASSERT_EQ(slow.upgrade().status, 101);
  EXPECT_EQ(idOf(slow.call(requestOf(1, "events.subscribe", R"({"topics":["*"]})"))), 1);
  Wire busy(served.port());
  ASSERT_EQ(busy.upgrade().status, 101);
  for (int id = 1; id <= 24; ++id) {
    const std::string value(1'000'000, static_cast<char>('a' + id % 2));
    const std::string parameters = R"({"key":"db/x","value":")" + value + "\"}";
    ASSERT_EQ(idOf(busy.call(requestOf(id, "tv.setSetting", parameters))), id);
  }
}

TEST(BoundsTest, CutsASubscriberThatIsTooSlow) {
  Served served(limited({.closing = std::chrono::milliseconds(50)}));
  Wire slow(served.port(), 4096);
  fallBehind(served, slow);
  EXPECT_LT(slow.readAll().size(), 20'000'000U);  // what was in the system's buffers; all events together are 24 MB
  Wire other(served.port());
  EXPECT_EQ(idOf(other.ask(postOf(quick(9)), quick(9)).body), 9);
}

TEST(BoundsTest, TellsASlowSubscriberThatReadsInTheEndWhyItIsClosed) {
  Served served(limited({.closing = std::chrono::minutes(1)}));
  Wire slow(served.port(), 4096);
  fallBehind(served, slow);
  Frame last = slow.frame();
  while (last.first == textFrame) last = slow.frame();
  EXPECT_EQ(last.first, closeFrame);
  EXPECT_EQ(last.code(), 1013);
}

}  // namespace
}  // namespace virtualtv::net

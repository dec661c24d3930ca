// SPDX-License-Identifier: MIT
// How long others wait when many large messages are ready at the same time.
#include <gtest/gtest.h>
#include <json/json.h>

#include <cstddef>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <sstream>
#include <string>

#include "virtualtv/net/Served.h"

namespace virtualtv::net {
namespace {

constexpr int many = 8;

using Wires = std::map<int, std::unique_ptr<Wire>>;  ///< by the number in what they send

/// A large request that sets the region of the set to its number.
std::string large(int number) {
  constexpr std::size_t size = 1'500'000;
  const std::string request =
      requestOf(number, "tv.set", R"({"name":"region","value":")" + std::to_string(number) + "\"}");
  return request + std::string(size - request.size(), ' ');
}

/// The region in the answer to `quick`.
int regionIn(const std::string& response) {
  std::istringstream stream(response);
  Json::Value value;
  stream >> value;
  return std::stoi(value["result"]["value"].asString());
}

class FairnessTest : public ::testing::Test {
 protected:
  FairnessTest() {
    EXPECT_EQ(other.upgrade().status, 101);
    other.call(requestOf(1, "tv.set", R"({"name":"region","value":"0"})"));
  }

  /// Runs `work` while the server is busy, so that everything sent meanwhile is ready at the same time.
  void whileBusy(const std::function<void()>& work) {
    std::promise<void> begun;
    std::promise<void> over;
    const auto busy = std::async(std::launch::async, [&] {
      served.onDevice([&](device::Device&) {
        begun.set_value();
        over.get_future().wait();
      });
    });
    begun.get_future().wait();
    work();
    over.set_value();
  }

  /// A connection over which all of a large message but its end has arrived.
  std::unique_ptr<Wire> almostSent(int number) {
    auto wire = std::make_unique<Wire>(served.port());
    EXPECT_EQ(wire->upgrade().status, 101);
    wire->sendFrame(textFrame & 0x7F, large(number));
    wire->sendFrame(pingFrame, "");
    EXPECT_EQ(wire->frame().first, pongFrame);
    return wire;
  }
  /// The same for a large POST request. @param more  additional lines of its header.
  std::unique_ptr<Wire> almostPosted(int number, const std::string& more = "") {
    auto wire = std::make_unique<Wire>(served.port());
    const std::string body = large(number);
    wire->sendRequest(postOf(body, more), body.substr(0, body.size() - 1));
    for (int turn = 0; turn < 50; ++turn) other.call(quick(1));  // gives the server time to read it
    return wire;
  }

  Served served;
  Wire other{served.port()};
};

TEST_F(FairnessTest, ASmallCallWaitsForTwoLargeMessagesAtMost) {
  Wires wires;
  for (int number = 1; number <= many; ++number) wires[number] = almostSent(number);
  whileBusy([&] {
    for (const auto& [number, wire] : wires) wire->send(bytesOf(0x80, " ") + bytesOf(textFrame, quick(100)));
    other.sendFrame(textFrame, quick(1));
  });
  EXPECT_LE(regionIn(other.frame().payload), 2);
  for (int number = 1; number <= many; ++number) {
    EXPECT_EQ(idOf(wires[number]->frame().payload), number);
    EXPECT_EQ(idOf(wires[number]->frame().payload), 100) << "the order of a connection stays";
  }
}

TEST_F(FairnessTest, ASmallRequestWaitsForTwoLargeOnesAtMost) {
  Wires wires;
  for (int number = 1; number <= many; ++number) wires[number] = almostPosted(number);
  Wire small(served.port());
  EXPECT_EQ(small.ask(postOf(quick(1)), quick(1)).status, 200);
  whileBusy([&] {
    for (const auto& [number, wire] : wires) wire->send(" ");
    small.sendRequest(postOf(quick(1)), quick(1));
  });
  EXPECT_LE(regionIn(small.response().body), 2);
  for (int number = 1; number <= many; ++number) EXPECT_EQ(idOf(wires[number]->response().body), number);
}

TEST_F(FairnessTest, RequestsOfASessionStayInTheirOrder) {
  const std::string session = "Emp-Session: " + Wire(served.port()).openSession() + "\n";
  Wires wires;
  for (int number = 1; number < many; ++number) wires[number] = almostPosted(number);
  wires[many] = almostPosted(many, session);
  Wire small(served.port());
  EXPECT_EQ(small.ask(postOf(quick(1), session), quick(1)).status, 200);
  whileBusy([&] {
    for (const auto& [number, wire] : wires) wire->send(" ");
    small.sendRequest(postOf(quick(1), session), quick(1));
  });
  EXPECT_EQ(regionIn(small.response().body), many);
}

TEST_F(FairnessTest, ConnectionsThatEndMeanwhileAreLeftOut) {
  Wires wires;
  for (int number = 1; number <= many; ++number) {
    wires[number] = number % 2 == 0 ? almostSent(number) : almostPosted(number);
  }
  whileBusy([&] {
    for (int number = 1; number <= many; ++number) {
      wires[number]->send(number % 2 == 0 ? bytesOf(0x80, " ") : " ");
      if (number > 4) wires[number]->close();
    }
  });
  EXPECT_EQ(idOf(wires[1]->response().body), 1);
  EXPECT_EQ(idOf(wires[2]->frame().payload), 2);
  EXPECT_EQ(idOf(other.call(quick(7))), 7);
  Wire last(served.port());
  last.sendRequest(postOf(large(1)), large(1));
  served.end();
}

}  // namespace
}  // namespace virtualtv::net

// SPDX-License-Identifier: MIT
// Broadcasts that clients send.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>

#include "services/ServiceStore.h"
#include "virtualtv/broadcast/Broadcast.h"
#include "virtualtv/net/Served.h"

namespace virtualtv::net {
namespace {

std::string textOf(const broadcast_tests::Blob& bytes) {
  return {bytes.begin(), bytes.end()};
}

std::string scanHead(const std::string& query, const std::string& more) {
  return "POST /scan" + query + " HTTP/1.1\nHost: localhost\n" + more;
}

std::string headFor(const std::string& body, const std::string& query = "") {
  return scanHead(query,
                  "Content-Type: application/octet-stream\nContent-Length: " + std::to_string(body.size()) + "\n");
}

class ScanOverHttpTest : public ::testing::Test {
 protected:
  std::size_t services() {
    std::size_t count = 0;
    served.onDevice([&](device::Device& device) { count = device.tv().services().size(); });
    return count;
  }

  const broadcast_tests::Blob bytes = broadcast_tests::oneService().bytes;
  const std::string found = broadcast_tests::document(broadcast_tests::scan(bytes));
  Served served;
  Wire wire{served.port()};
};

TEST_F(ScanOverHttpTest, TellsWhatIsInABroadcast) {
  const HttpResponse response = wire.ask(headFor(textOf(bytes)), textOf(bytes));
  EXPECT_EQ(response.status, 200);
  EXPECT_EQ(response.body, found);
  EXPECT_EQ(response.headers.at("content-type"), "application/json");
  EXPECT_EQ(services(), 81U);
  EXPECT_EQ(wire.ask(headFor(""), "").body, R"({"packets":0,"problems":[],"services":[]})");
}

TEST_F(ScanOverHttpTest, ImportsOrAddsWhatIsInABroadcast) {
  EXPECT_EQ(wire.ask(headFor(textOf(bytes), "?import=1&add=1"), textOf(bytes)).body, found);
  EXPECT_EQ(services(), 82U);
  EXPECT_EQ(wire.ask(headFor(textOf(bytes), "?import=1"), textOf(bytes)).body, found);
  EXPECT_EQ(services(), 1U);
  EXPECT_EQ(wire.ask(headFor("", "?import=1"), "").status, 200);
  EXPECT_EQ(services(), 1U);
}

TEST_F(ScanOverHttpTest, KeepsWhatItFoundForTheSessionThatIsNamed) {
  const auto call = [&](const std::string& method, const std::string& more) {
    const std::string body = R"({"jsonrpc":"2.0","id":1,"method":")" + method + "\"}";
    return wire
        .ask("POST /rpc HTTP/1.1\nHost: localhost\nContent-Type: application/json\nContent-Length: " +
                 std::to_string(body.size()) + "\n" + more,
             body)
        .body;
  };
  const std::string opened = call("session.open", "");
  const std::string name = opened.substr(opened.find("\"session\":\"") + 11, 18);
  const std::string session = "Emp-Session: " + name + "\n";
  EXPECT_EQ(wire.ask(headFor(textOf(bytes)) + session, textOf(bytes)).body, found);
  EXPECT_NE(call("tv.importScan", session).find("\"imported\":1"), std::string::npos) << opened;
  EXPECT_EQ(services(), 1U);
  const HttpResponse refusal = wire.ask(headFor(textOf(bytes)) + "Emp-Session: nobody\n", textOf(bytes));
  EXPECT_EQ(refusal.status, 404);
  EXPECT_EQ(refusal.body, "there is no session 'nobody'\n");
}

TEST_F(ScanOverHttpTest, TakesABroadcastInChunksThatIsLongerThanAnyMessage) {
  const std::string filler = textOf(broadcast_tests::Stream().filler(5000).bytes);  // 0.9 MB
  wire.sendRequest(scanHead("", "Content-Type: application/octet-stream\nTransfer-Encoding: chunked\n"));
  const auto chunk = [](const std::string& content) {
    std::array<char, 16> size{};
    std::snprintf(size.data(), size.size(), "%zx\r\n", content.size());
    return size.data() + content + "\r\n";
  };
  for (int at = 0; at < 40; ++at) wire.send(chunk(filler));
  wire.send(chunk(textOf(bytes)));
  wire.send("0\r\n\r\n");
  const HttpResponse response = wire.response();
  EXPECT_EQ(response.status, 200);
  EXPECT_NE(response.body.find("{\"packets\":200003,"), std::string::npos) << response.body.substr(0, 100);
  EXPECT_NE(response.body.find("\"name\":\"News\""), std::string::npos);
}

TEST_F(ScanOverHttpTest, DoesNotReserveWhatALengthClaims) {
  wire.sendRequest(scanHead("", "Content-Type: application/octet-stream\nContent-Length: 999999999999999999\n"),
                   textOf(bytes));
  wire.close();
  Wire another(served.port());
  EXPECT_EQ(another.ask(headFor(textOf(bytes)), textOf(bytes)).body, found);
}

TEST_F(ScanOverHttpTest, TakesBytesAlone) {
  EXPECT_EQ(wire.ask(scanHead("", "Content-Type: application/json\nContent-Length: 0\n"), "").status, 415);
  EXPECT_EQ(wire.ask("GET /scan HTTP/1.1\nHost: localhost\n").headers.at("allow"), "POST");
}

}  // namespace
}  // namespace virtualtv::net

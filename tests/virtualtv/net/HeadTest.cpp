// SPDX-License-Identifier: MIT
// Request headers that are ambiguous, or that the server can't read.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "virtualtv/net/Served.h"

namespace virtualtv::net {
namespace {

Options options() {
  Options options;
  options.limits.mostHead = 2000;
  options.access.origins = {"http://app.example"};
  return options;
}

const std::string call = "POST /rpc HTTP/1.1\nHost: localhost\nContent-Type: application/json\n";
const std::string page = "GET / HTTP/1.1\nHost: localhost\n";

class HeadTest : public ::testing::Test {
 protected:
  /// Sends a request with another request hidden in its body. @return the answer, which must be the only one.
  HttpResponse askWithHidden(const std::string& lines) {
    Wire own(served.port());
    own.sendRequest(lines, "GET /nothing HTTP/1.1\r\nHost: localhost\r\n\r\n");
    own.endSending();
    HttpResponse response = own.response();
    EXPECT_EQ(own.readAll(), "") << lines;
    return response;
  }

  Served served{options()};
  Wire wire{served.port()};
};

TEST_F(HeadTest, ABodyWhoseEndIsNotClearEndsTheConnection) {
  for (const char* coding : {"gzip", "identity", "xchunked", "chunkedx", "x chunked", "chunked, gzip",
                             "chunked, chunked", "chunked;x=y", "chunked,", "\"chunked\"", ""}) {
    for (const std::string& lines : {call, page, std::string("GET / HTTP/1.1\nHost: evil.example\n")}) {
      EXPECT_EQ(askWithHidden(lines + "Transfer-Encoding: " + coding + "\n").status, 400) << lines << coding;
    }
  }
  for (const char* more :
       {"Transfer-Encoding: chunked\nTransfer-Encoding: chunked\n",
        "Transfer-Encoding: chunked\nTransfer-Encoding: gzip\n", "Transfer-Encoding: gzip\nContent-Length: 5\n",
        "Content-Length: 5\nTransfer-Encoding: chunked\n"}) {
    EXPECT_EQ(askWithHidden(call + more).status, 400) << more;
  }
  EXPECT_EQ(askWithHidden("POST /rpc HTTP/1.0\nHost: localhost\nTransfer-Encoding: chunked\n").status, 400);
  HttpResponse response = askWithHidden(call + "Transfer-Encoding: gzip\n");
  EXPECT_EQ(response.body, "the Transfer-Encoding of a request is chunked, not 'gzip'\n");
  EXPECT_EQ(response.headers["connection"], "close");
}

TEST_F(HeadTest, OtherCodingsBeforeChunkedAreNotImplemented) {
  for (const char* coding :
       {"gzip, chunked", "identity,Chunked", "deflate;q=1 , gzip, chunked", "gzip\nTransfer-Encoding: chunked"}) {
    EXPECT_EQ(askWithHidden(call + "Transfer-Encoding: " + coding + "\n").status, 501) << coding;
  }
  EXPECT_EQ(wire.ask(call + "Transfer-Encoding: CHUNKED \n", "2\r\n[]\r\n0\r\n\r\n").status, 200);
}

TEST_F(HeadTest, ABodyIsTakenAsItIs) {
  for (const char* coding : {"gzip", "identity, gzip", "x", "identity\nContent-Encoding: br"}) {
    const HttpResponse refused = askWithHidden(call + "Content-Length: 44\nContent-Encoding: " + coding + "\n");
    EXPECT_EQ(refused.status, 415) << coding;
    EXPECT_EQ(refused.headers.at("accept-encoding"), "identity");
  }
  for (const char* coding : {"identity", "Identity", "", "identity, identity"}) {
    EXPECT_EQ(wire.ask(postOf(quick(1), "Content-Encoding: " + std::string(coding) + "\n"), quick(1)).status, 200);
  }
}

TEST_F(HeadTest, SaysWhatIsWrongWithAHost) {
  const auto bodyFor = [&](const std::string& hosts) {
    return Wire(served.port()).ask("GET / HTTP/1.1\n" + hosts).body;
  };
  const std::string wanted = "the Host header is a host and perhaps a port, as in localhost:8090 or [::1]:8090, not ";
  for (const std::string host : {"::1", "a@localhost", "localhost:x", "localhost, localhost", ""}) {
    EXPECT_EQ(bodyFor("Host: " + host + "\n"), wanted + "'" + host + "'\n");
  }
  EXPECT_EQ(bodyFor(""), "a request has one Host header, this one has none\n");
  EXPECT_EQ(bodyFor("Host: localhost\nHost: localhost\n"), "a request has one Host header, this one has 2\n");
  EXPECT_EQ(wire.ask("GET / HTTP/1.1\nHost: localhost:\n").status, 200);
}

TEST_F(HeadTest, IgnoresAFewEmptyLinesBeforeARequest) {
  wire.send("\r\nGET /nothing HTTP/1.1\r\nHost: localhost\r\n\r\n");
  EXPECT_EQ(wire.response().status, 404);
  wire.send("\r\n");
  wire.send("\r");
  EXPECT_EQ(Wire(served.port()).ask(page).status, 200);  // the line arrived in two parts
  wire.send("\nGET / HTTP/1.1\r\nHost: localhost\r\n\r\n\r\n\r\n");
  EXPECT_EQ(wire.response().status, 200);
  EXPECT_EQ(wire.ask(postOf(quick(1)), quick(1) + "\r\n").status, 200);
  EXPECT_EQ(wire.ask(postOf(quick(2)), quick(2)).status, 200);
  Wire endless(served.port());
  for (int line = 0; line < 100; ++line) endless.trySend("\r\n");
  EXPECT_EQ(endless.response().status, 400);
  Wire bare(served.port());
  bare.send("\rGET / HTTP/1.1\r\nHost: localhost\r\n\r\n");
  EXPECT_EQ(bare.response().status, 400);
}

TEST_F(HeadTest, AnswersToBadHeadsNameAnAllowedOriginWhereItCouldBeRead) {
  const std::string origin = "Origin: http://app.example\n";
  const std::string large = "A: " + std::string(2500, 'a') + "\n";
  const auto named = [&](const std::string& lines, int status) {
    HttpResponse response = Wire(served.port()).ask(lines);
    EXPECT_EQ(response.status, status) << lines;
    EXPECT_EQ(response.headers["vary"], "Origin") << lines;
    return response.headers["access-control-allow-origin"];
  };
  for (const auto& [bad, status] : {std::pair<std::string, int>{"Content-Length: x\n", 400},
                                    {"Content-Length: 1\nContent-Length: 2\n", 400},
                                    {"Content-Length: 1\nTransfer-Encoding: chunked\n", 400},
                                    {"Transfer-Encoding: gzip\n", 400},
                                    {large, 431}}) {
    EXPECT_EQ(named(call + origin + bad, status), "http://app.example") << bad;
    EXPECT_EQ(named(call + bad + origin, status), "http://app.example") << bad;
    EXPECT_EQ(named(call + bad + "Origin: http://evil.example\n", status), "") << bad;
    EXPECT_EQ(named(call + bad + origin + origin, status), "") << bad;
    EXPECT_EQ(named(call + bad, status), "") << bad;
  }
  EXPECT_EQ(named("nonsense\n", 400), "");
  EXPECT_EQ(named(call + "Content-Length: x\nOrigin: http://localhost\n", 400), "http://localhost");
}

TEST_F(HeadTest, HeadersThatStandOnceAreRefusedTwice) {
  const std::string upgrade =
      "GET /rpc HTTP/1.1\nHost: localhost\nConnection: Upgrade\nUpgrade: websocket\nSec-WebSocket-Version: 13\n"
      "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\n";
  for (const auto& [lines, name] : {std::pair<std::string, std::string>{postOf(""), "Content-Type"},
                                    {call + "Authorization: Bearer x\n", "Authorization"},
                                    {call + "Emp-Session: x\n", "Emp-Session"},
                                    {upgrade, "Sec-WebSocket-Key"},
                                    {upgrade, "Sec-WebSocket-Version"}}) {
    const HttpResponse response = Wire(served.port()).ask(lines + name + ": x\n");
    EXPECT_EQ(response.status, 400) << name;
    EXPECT_EQ(response.body, "a request has one " + name + " header at most\n");
  }
}

}  // namespace
}  // namespace virtualtv::net

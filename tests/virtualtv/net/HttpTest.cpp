// SPDX-License-Identifier: MIT
// The server's answers over HTTP, to requests written out as bytes.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "virtualtv/net/Served.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::net {
namespace {

using Texts = std::vector<std::string>;

const std::filesystem::path pageFolder = PAGE_FILES;

/// Options of a server that does not wait long for its clients when it ends.
Options hasty() {
  Options options;
  options.limits.ending = std::chrono::milliseconds(20);
  return options;
}

class HttpTest : public ::testing::Test {
 protected:
  Served served{hasty()};
  Wire wire{served.port()};
};

TEST_F(HttpTest, AnswersACall) {
  const HttpResponse response = wire.ask(postOf(quick(7)), quick(7));
  EXPECT_EQ(response.status, 200);
  EXPECT_EQ(idOf(response.body), 7);
  EXPECT_EQ(response.headers.at("content-type"), "application/json");
  EXPECT_EQ(response.headers.at("x-content-type-options"), "nosniff");
  EXPECT_EQ(response.headers.at("vary"), "Origin");
  EXPECT_EQ(response.headers.count("access-control-allow-origin"), 0U);
  EXPECT_EQ(response.headers.count("set-cookie"), 0U);
}

TEST_F(HttpTest, AnswersNotificationsWithNothing) {
  const std::string notification = R"({"jsonrpc":"2.0","method":"tv.get","params":{"name":"region"}})";
  const HttpResponse response = wire.ask(postOf(notification), notification);
  EXPECT_EQ(response.status, 204);
  EXPECT_EQ(response.headers.count("content-length"), 0U);
  EXPECT_EQ(response.headers.count("content-type"), 0U);
  EXPECT_EQ(wire.ask(postOf(quick(1)), quick(1)).status, 200);
}

TEST_F(HttpTest, LeavesWhatIsNoJsonToTheDispatcher) {
  const HttpResponse response = wire.ask(postOf("{"), "{");
  EXPECT_EQ(response.status, 200);
  EXPECT_NE(response.body.find("-32700"), std::string::npos) << response.body;
  EXPECT_NE(wire.ask(postOf("")).body.find("-32700"), std::string::npos);
}

TEST_F(HttpTest, TakesJsonAlone) {
  const auto statusOf = [&](const std::string& type) {
    const std::string header = type.empty() ? "" : "Content-Type: " + type + "\n";
    Wire own(served.port());
    return own
        .ask("POST /rpc HTTP/1.1\nHost: localhost\nContent-Length: " + std::to_string(quick(1).size()) + "\n" + header,
             quick(1))
        .status;
  };
  for (const char* type : {"application/json", "application/json; charset=utf-8", "Application/JSON ;charset=UTF-8"}) {
    EXPECT_EQ(statusOf(type), 200) << type;
  }
  for (const char* type : {"", "text/plain", "application/jsonp", "application/x-www-form-urlencoded",
                           "multipart/form-data; boundary=x", "text/plain; application/json"}) {
    EXPECT_EQ(statusOf(type), 415) << type;
  }
}

TEST_F(HttpTest, TakesBodiesInChunks) {
  std::string chunks;
  for (const char byte : quick(9)) chunks += std::string("1;x=y\r\n") + byte + "\r\n";
  const HttpResponse response =
      wire.ask("POST /rpc HTTP/1.1\nHost: localhost\nContent-Type: application/json\nTransfer-Encoding: chunked\n",
               chunks + "0\r\nTrailer: x\r\n\r\n");
  EXPECT_EQ(idOf(response.body), 9);
}

TEST_F(HttpTest, AnswersManyRequestsOnAConnectionInTheirOrder) {
  std::string bytes;
  for (int id = 1; id <= 50; ++id) {
    bytes += "POST /rpc HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/json\r\nContent-Length: " +
             std::to_string(quick(id).size()) + "\r\n\r\n" + quick(id);
  }
  wire.send(bytes);
  for (int id = 1; id <= 50; ++id) EXPECT_EQ(idOf(wire.response().body), id);
}

TEST_F(HttpTest, ClosesWhereItIsAskedTo) {
  const HttpResponse last = wire.ask(postOf(quick(1), "Connection: close\n"), quick(1));
  EXPECT_EQ(last.status, 200);
  EXPECT_EQ(last.headers.at("connection"), "close");
  EXPECT_TRUE(wire.isAtEnd());
  Wire old(served.port());
  EXPECT_EQ(old.ask("GET / HTTP/1.0\nHost: localhost\n").status, 200);
  EXPECT_TRUE(old.isAtEnd());
}

TEST_F(HttpTest, SaysThatItGoesOnWhereThatIsAsked) {
  wire.send(
      "POST /rpc HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/json\r\nExpect: 100-continue\r\n"
      "Content-Length: " +
      std::to_string(quick(3).size()) + "\r\n\r\n");
  EXPECT_EQ(wire.readUntil("\r\n\r\n"), "HTTP/1.1 100 Continue\r\n\r\n");
  wire.send(quick(3));
  EXPECT_EQ(idOf(wire.response().body), 3);
  Wire refused(served.port());
  EXPECT_EQ(refused
                .ask("POST /rpc HTTP/1.1\nHost: localhost\nContent-Type: text/plain\nExpect: 100-continue\n"
                     "Content-Length: 5\n")
                .status,
            415);
  EXPECT_TRUE(refused.isAtEnd());
}

TEST_F(HttpTest, SaysWhichMethodsAnAddressTakes) {
  for (const char* method : {"PUT", "DELETE", "PATCH", "OPTIONS", "TRACE", "NONSENSE"}) {
    const HttpResponse calls = wire.ask(std::string(method) + " /rpc HTTP/1.1\nHost: localhost\n");
    EXPECT_EQ(calls.status, 405) << method;
    EXPECT_EQ(calls.headers.at("allow"), "GET, HEAD, POST");
    const HttpResponse page = wire.ask(std::string(method) + " / HTTP/1.1\nHost: localhost\n");
    EXPECT_EQ(page.status, 405) << method;
    EXPECT_EQ(page.headers.at("allow"), "GET, HEAD");
  }
  EXPECT_EQ(wire.ask("POST / HTTP/1.1\nHost: localhost\n").status, 405);
  EXPECT_EQ(wire.ask("POST /openrpc.json HTTP/1.1\nHost: localhost\n").status, 405);
}

TEST_F(HttpTest, HasNothingElsewhere) {
  for (const char* target : {"/nothing", "/rpc/", "/%72pc", "//rpc", "/index.html", "/../etc/passwd", "/live/main",
                             "/live/pip", "/?x", "/rpc#x"}) {
    const HttpResponse response = wire.ask("GET " + std::string(target) + " HTTP/1.1\nHost: localhost\n");
    EXPECT_EQ(response.status, std::string(target) == "/?x" ? 200 : 404) << target;
    EXPECT_EQ(response.headers.at("x-content-type-options"), "nosniff");
  }
  EXPECT_EQ(wire.ask("PUT /nothing HTTP/1.1\nHost: localhost\n").status, 404);
}

TEST_F(HttpTest, ShowsAPageThatLoadsNothingFromElsewhere) {
  const HttpResponse page = wire.ask("GET / HTTP/1.1\nHost: localhost:1234\n");
  EXPECT_EQ(page.status, 200);
  EXPECT_EQ(page.headers.at("content-type"), "text/html; charset=utf-8");
  EXPECT_EQ(page.headers.at("content-security-policy"),
            "default-src 'self'; media-src 'self' blob:; frame-src 'self'; frame-ancestors 'none'; object-src 'none'; "
            "base-uri 'none'; form-action 'none'");
  EXPECT_EQ(page.body, test::contentOf(pageFolder / "index.html"));
  const HttpResponse head = wire.ask("HEAD / HTTP/1.1\nHost: localhost:1234\n");
  EXPECT_EQ(head.status, 200);
  EXPECT_EQ(head.headers, page.headers);
  EXPECT_EQ(wire.ask("GET / HTTP/1.1\nHost: localhost:1234\n").body, page.body);
}

TEST_F(HttpTest, HasTheFilesThatThePageLoadsFromThere) {
  const std::map<std::string, std::string> types{{".js", "text/javascript; charset=utf-8"},
                                                 {".css", "text/css; charset=utf-8"},
                                                 {".html", "text/html; charset=utf-8"},
                                                 {".svg", "image/svg+xml"}};
  for (const auto& entry : std::filesystem::recursive_directory_iterator(pageFolder)) {
    if (!types.contains(entry.path().extension())) continue;
    const std::string path = "/page/" + entry.path().lexically_relative(pageFolder).string();
    const HttpResponse response = wire.ask("GET " + path + " HTTP/1.1\nHost: localhost\n");
    EXPECT_EQ(response.status, 200) << path;
    EXPECT_EQ(response.headers.at("content-type"), types.at(entry.path().extension())) << path;
    EXPECT_EQ(response.body, test::contentOf(entry.path())) << path;
    for (const char* elsewhere : {"src=\"http", "href=\"http", "url(", "import 'http"}) {
      EXPECT_EQ(response.body.find(elsewhere), std::string::npos) << path << ": " << elsewhere;
    }
  }
  for (const char* none : {"/page", "/page/", "/page/nothing.js", "/page/../client.js", "/page/tsconfig.json"}) {
    EXPECT_EQ(wire.ask("GET " + std::string(none) + " HTTP/1.1\nHost: localhost\n").status, 404) << none;
  }
}

TEST_F(HttpTest, CompressesFilesForWhoTakesThat) {
  const auto ask = [&](const std::string& lines) {
    return wire.ask("GET /client.js HTTP/1.1\nHost: localhost\n" + lines);
  };
  const std::string whole = test::contentOf(std::filesystem::path(CLIENT_FILES) / "client.js");
  for (const char* lines : {"", "Accept-Encoding: identity\n", "Accept-Encoding: gzip;q=0, br\n", "Accept-Encoding:\n",
                            "Accept-Encoding: gzip; q=0.000\n", "Accept-Encoding: x-gzip-like\n"}) {
    const HttpResponse response = ask(lines);
    EXPECT_EQ(response.body, whole) << lines;
    EXPECT_EQ(response.headers.count("content-encoding"), 0U) << lines;
    EXPECT_EQ(response.headers.at("vary"), "Origin, Accept-Encoding") << lines;
  }
  for (const char* lines : {"Accept-Encoding: gzip\n", "Accept-Encoding: br, GZIP ;q=0.5\n",
                            "Accept-Encoding: deflate\nAccept-Encoding: gzip;q=1\n"}) {
    const HttpResponse response = ask(lines);
    EXPECT_EQ(response.headers.at("content-encoding"), "gzip") << lines;
    EXPECT_EQ(response.body.substr(0, 3), "\x1f\x8b\x08") << lines;
    EXPECT_LT(response.body.size(), whole.size() / 2) << lines;
  }
}

TEST_F(HttpTest, HasTheFilesOfTheClientThatPagesLoad) {
  const std::filesystem::path folder = CLIENT_FILES;
  for (const char* const name :
       {"client.js", "window.js", "transcript.js", "client.d.ts", "commands.d.ts", "transcript.d.ts"}) {
    const HttpResponse response = wire.ask("GET /" + std::string(name) + "?name=tv HTTP/1.1\nHost: localhost\n");
    EXPECT_EQ(response.status, 200) << name;
    const bool isScript = std::filesystem::path(name).extension() == ".js";
    EXPECT_EQ(response.headers.at("content-type"),
              isScript ? "text/javascript; charset=utf-8" : "text/plain; charset=utf-8");
    EXPECT_EQ(response.body, test::contentOf(folder / name)) << name;
  }
  EXPECT_EQ(wire.ask("GET /launch.js HTTP/1.1\nHost: localhost\n").status, 404) << "only Node needs it";
}

TEST_F(HttpTest, TellsItsMethods) {
  const HttpResponse response = wire.ask("GET /openrpc.json HTTP/1.1\nHost: localhost\n");
  EXPECT_EQ(response.status, 200);
  EXPECT_EQ(response.headers.at("content-type"), "application/json");
  EXPECT_NE(response.body.find("\"openrpc\""), std::string::npos);
}

TEST_F(HttpTest, WantsAnUpgradeWhereThereIsNoCall) {
  for (const char* method : {"GET", "HEAD"}) {
    const HttpResponse response = wire.ask(std::string(method) + " /rpc HTTP/1.1\nHost: localhost\n");
    EXPECT_EQ(response.status, 426);
    EXPECT_EQ(response.headers.at("upgrade"), "websocket");
    EXPECT_EQ(response.headers.at("connection"), "Upgrade");
  }
}

TEST_F(HttpTest, RefusesWhatIsNoRequest) {
  for (const char* bytes :
       {"nonsense\r\n\r\n", "GET / HTTP/2.0\r\nHost: localhost\r\n\r\n", "GET /\r\n\r\n",
        "GET / HTTP/1.1\r\nHost localhost\r\n\r\n", "GET / HTTP/1.1\r\nHost: localhost\r\nA\x01: b\r\n\r\n",
        "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", "\x16\x03\x01\x02 hello\r\n\r\n",
        "POST /rpc HTTP/1.1\r\nHost: localhost\r\nContent-Length: -1\r\n\r\n",
        "POST /rpc HTTP/1.1\r\nHost: localhost\r\nContent-Length: 1\r\nContent-Length: 2\r\n\r\nx",
        "POST /rpc HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/json\r\n"
        "Transfer-Encoding: chunked\r\n\r\nzz\r\n\r\n"}) {
    Wire own(served.port());
    own.send(bytes);
    const HttpResponse response = own.response();
    EXPECT_EQ(response.status, 400) << bytes;
    EXPECT_EQ(response.headers.at("connection"), "close");
    EXPECT_TRUE(own.isAtEnd());
  }
}

TEST_F(HttpTest, RefusesHostsOriginsAndTargetsThatAreNotClear) {
  for (const char* lines :
       {"GET / HTTP/1.1\n", "GET / HTTP/1.1\nHost: localhost\nHost: localhost\n",
        "GET http://localhost/ HTTP/1.1\nHost: localhost\n",
        "GET / HTTP/1.1\nHost: localhost\nOrigin: http://localhost\nOrigin: http://localhost\n",
        "OPTIONS * HTTP/1.1\nHost: localhost\n", "CONNECT localhost:80 HTTP/1.1\nHost: localhost\n"}) {
    Wire own(served.port());
    const HttpResponse response = own.ask(lines);
    EXPECT_EQ(response.status, 400) << lines;
    EXPECT_FALSE(response.body.empty());
  }
}

TEST_F(HttpTest, DoesNotTakeTheRestOfARefusedBodyForARequest) {
  const std::string hidden = "POST /rpc HTTP/1.1\r\nHost: localhost\r\n\r\n";
  const HttpResponse response = wire.ask(
      "POST /rpc HTTP/1.1\nHost: evil.example\nContent-Length: " + std::to_string(hidden.size()) + "\n", hidden);
  EXPECT_EQ(response.status, 403);
  EXPECT_TRUE(wire.isAtEnd());
}

TEST_F(HttpTest, TellsOnceOnlyWhoMayNotAsk) {
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(wire.ask("GET / HTTP/1.1\nHost: localhost\nOrigin: http://a.example\n").status, 403);
    const HttpResponse response = wire.ask("GET / HTTP/1.1\nHost: tv.example\n");
    EXPECT_EQ(response.status, 403);
    EXPECT_EQ(response.body, "this server is not known as tv.example: start it with --allow-host tv.example\n");
  }
  EXPECT_EQ(served.complaints(),
            (Texts{"pages of http://a.example may not use this server: start it with --allow-origin http://a.example",
                   "this server is not known as tv.example: start it with --allow-host tv.example"}));
}

TEST_F(HttpTest, LogsEachRequestWithoutItsQuery) {
  wire.ask(postOf(quick(1)), quick(1));
  wire.ask("GET /nothing?token=s3cret HTTP/1.1\nHost: localhost\nAuthorization: Bearer s3cret\n");
  wire.upgrade("/rpc?token=s3cret");
  std::string lines;
  for (const std::string& line : served.log()) lines += line.substr(0, line.find_last_of(' ', line.size() - 4)) + "\n";
  EXPECT_EQ(lines, "POST /rpc 200\nGET /nothing 404\nGET /rpc 101\n");
}

TEST_F(HttpTest, OneClientIsServedWhileAnotherIsHeldBack) {
  const std::string session = wire.openSession();
  wire.ask(postOf(holdBack()), holdBack());
  wire.sendRequest(postOf(heldBack(2), "Emp-Session: " + session + "\n"), heldBack(2));
  Wire other(served.port());
  for (int id = 1; id <= 20; ++id) EXPECT_EQ(idOf(other.ask(postOf(quick(id)), quick(id)).body), id);
  EXPECT_EQ(served.log().size(), 22U);  // all requests but the one whose answer is held back
}

TEST_F(HttpTest, ACallRunsOnTheSessionThatItNames) {
  const std::string session = wire.openSession();
  const std::string question = requestOf(1, "tv.sessions", "{}");
  EXPECT_NE(wire.ask(postOf(question, "Emp-Session: " + session + "\n"), question).body.find(session),
            std::string::npos);
  EXPECT_NE(wire.ask(postOf(quick(1), "Emp-Session: nosuch\n"), quick(1)).body.find("1003"), std::string::npos);
  EXPECT_NE(wire.ask(postOf(quick(1), "Emp-Session:\n"), quick(1)).body.find("1003"), std::string::npos);
}

class AccessOverHttpTest : public ::testing::Test {
 protected:
  static Options options() {
    Options options;
    options.access = {.origins = {"http://app.example:*"}, .hosts = {"tv.example"}, .token = "s3cret"};
    return options;
  }
  Served served{options()};
  Wire wire{served.port()};
};

TEST_F(AccessOverHttpTest, NamesAnAllowedOriginInEveryAnswer) {
  const std::string origin = "Origin: http://app.example:5173\n";
  const auto named = [](const HttpResponse& response) {
    EXPECT_EQ(response.headers.at("vary").substr(0, 6), "Origin");
    EXPECT_EQ(response.headers.at("x-content-type-options"), "nosniff");
    const auto found = response.headers.find("access-control-allow-origin");
    return found == response.headers.end() ? "" : found->second;
  };
  const std::string key = "Authorization: Bearer s3cret\n";
  for (const auto& [lines, status] : {
           std::pair<std::string, int>{"GET / HTTP/1.1\nHost: localhost\n", 200},
           {"GET /rpc HTTP/1.1\nHost: localhost\n", 401},
           {"GET /nothing HTTP/1.1\nHost: localhost\n", 404},
           {"PUT / HTTP/1.1\nHost: localhost\n", 405},
           {"GET / HTTP/1.1\nHost: evil.example\n", 403},
           {"GET http://localhost/ HTTP/1.1\nHost: localhost\n", 400},
           {"POST /rpc HTTP/1.1\nHost: localhost\n" + key, 415},
           {"GET /rpc HTTP/1.1\nHost: localhost\n" + key, 426},
           {"GET /openrpc.json HTTP/1.1\nHost: tv.example\n" + key, 200},
       }) {
    const HttpResponse response = wire.ask(lines + origin);
    EXPECT_EQ(response.status, status) << lines;
    EXPECT_EQ(named(response), "http://app.example:5173") << lines;
  }
  Wire big(served.port());
  const HttpResponse tooBig =
      big.ask("POST /rpc HTTP/1.1\nHost: localhost\nContent-Type: application/json\nContent-Length: 999999999\n" + key +
              origin);
  EXPECT_EQ(tooBig.status, 413);
  EXPECT_EQ(named(tooBig), "http://app.example:5173");
  Wire socket(served.port());
  EXPECT_EQ(named(socket.upgrade("/rpc?token=s3cret", origin)), "http://app.example:5173");
  EXPECT_EQ(named(wire.ask("GET / HTTP/1.1\nHost: localhost\nOrigin: http://other.example\n")), "");
  EXPECT_EQ(named(wire.ask("GET / HTTP/1.1\nHost: localhost\n")), "");
}

TEST_F(AccessOverHttpTest, AnswersPreflights) {
  const std::string question = "OPTIONS /rpc HTTP/1.1\nHost: localhost\nOrigin: http://app.example:1\n";
  const HttpResponse response =
      wire.ask(question + "Access-Control-Request-Method: POST\nAccess-Control-Request-Private-Network: true\n");
  EXPECT_EQ(response.status, 204);
  EXPECT_EQ(response.headers.at("access-control-allow-origin"), "http://app.example:1");
  EXPECT_EQ(response.headers.at("access-control-allow-methods"), "GET, POST");
  EXPECT_EQ(response.headers.at("access-control-allow-headers"), "authorization, content-type, emp-session");
  EXPECT_EQ(response.headers.at("access-control-max-age"), "7200");
  EXPECT_EQ(response.headers.at("access-control-allow-private-network"), "true");
  EXPECT_EQ(wire.ask(question + "Access-Control-Request-Method: POST\n")
                .headers.count("access-control-allow-private-network"),
            0U);
  EXPECT_EQ(wire.ask(question).status, 401);
}

TEST_F(AccessOverHttpTest, WantsTheToken) {
  EXPECT_EQ(wire.ask("GET /openrpc.json HTTP/1.1\nHost: localhost\n").status, 401);
  EXPECT_EQ(wire.ask("GET /openrpc.json HTTP/1.1\nHost: localhost\nAuthorization: Bearer s3cret\n").status, 200);
  EXPECT_EQ(wire.ask("GET /scan HTTP/1.1\nHost: localhost\n").status, 401);
  const HttpResponse refused = wire.upgrade("/rpc?token=wrong");
  EXPECT_EQ(refused.status, 401);
  EXPECT_EQ(refused.headers.at("www-authenticate"), "Bearer");
  EXPECT_EQ(wire.upgrade("/rpc?token=s3cret").status, 101);
  for (const std::string& line : served.log()) EXPECT_EQ(line.find("s3cret"), std::string::npos) << line;
}

TEST_F(AccessOverHttpTest, ThePageMayShowAllowedOrigins) {
  const HttpResponse page = wire.ask("GET / HTTP/1.1\nHost: localhost\n");
  EXPECT_NE(page.headers.at("content-security-policy").find("frame-src 'self' http://app.example:*;"),
            std::string::npos);
}

}  // namespace
}  // namespace virtualtv::net

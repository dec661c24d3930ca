// SPDX-License-Identifier: MIT
#include "net/Access.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace virtualtv::net {
namespace {

/// The value of a header; empty without one.
std::string valueOf(const Headers& headers, std::string_view name) {
  for (const auto& [known, value] : headers) {
    if (known == name) return value;
  }
  return {};
}

Verdict judged(const Access& access, std::vector<std::string_view> hosts, std::vector<std::string_view> origins,
               std::string_view target = "/rpc") {
  return access.judge({.target = target, .hosts = std::move(hosts), .origins = std::move(origins)});
}

Access allowing(std::vector<std::string> origins, std::vector<std::string> hosts = {}, std::string token = "") {
  return Access({.origins = std::move(origins), .hosts = std::move(hosts), .token = std::move(token)});
}

TEST(AccessTest, TakesHostsThatNoOtherSiteCanBe) {
  const Access access = allowing({}, {"Tv.example"});
  struct Row {
    std::string_view host;
    int status;
  };
  const std::vector<Row> rows{
      {"localhost", 0},
      {"LocalHost:1", 0},
      {"127.0.0.1", 0},
      {"127.0.0.1:8090", 0},
      {"192.168.1.20:99", 0},
      {"[::1]", 0},
      {"[::1]:8090", 0},
      {"tv.example", 0},
      {"TV.EXAMPLE:80", 0},
      {"localhost:", 0},
      {"[::1]:", 0},
      {"evil.example", 403},
      {"localhost.", 403},
      {"a.tv.example", 403},
      {"127.0.0.1.evil", 403},
      {"2130706433", 403},
      {"127.1", 403},
      {"", 400},
      {":80", 400},
      {"localhost:x", 400},
      {"localhost:123456", 400},
      {"a b", 400},
      {"u@localhost", 400},
      {"[::1", 400},
      {"[::1]x", 400},
      {"[x]", 400},
      {"::1", 400},
      {"localhost/x", 400},
      {"localhost,evil.example", 400},
  };
  for (const Row& row : rows) EXPECT_EQ(judged(access, {row.host}, {}).status, row.status) << row.host;
}

TEST(AccessTest, WantsOneHostAndOneOriginAtMostAndATargetOnThisServer) {
  const Access access = allowing({"http://a.example"});
  EXPECT_EQ(judged(access, {}, {}).status, 400);
  EXPECT_EQ(judged(access, {"localhost", "localhost"}, {}).status, 400);
  EXPECT_EQ(judged(access, {"localhost"}, {"http://localhost", "http://localhost"}).status, 400);
  for (const std::string_view target : {"http://localhost/", "*", "localhost:80", ""}) {
    EXPECT_EQ(judged(access, {"localhost"}, {"http://a.example"}, target).status, 400) << target;
  }
}

TEST(AccessTest, TakesItsOwnOriginAndAllowedOnesExactly) {
  const Access access =
      allowing({"http://app.example:5173", "https://Safe.example:443", "http://[::1]:3000", "ext+x://abc"});
  struct Row {
    std::string_view host;
    std::string_view origin;
    bool allowed;
  };
  const std::vector<Row> rows{
      {"127.0.0.1:8090", "http://127.0.0.1:8090", true},
      {"localhost", "http://localhost", true},
      {"[::1]:1", "http://[::1]:1", true},
      {"localhost:80", "http://localhost", true},
      {"localhost", "http://localhost:80", true},
      {"localhost:", "http://localhost", true},
      {"LOCALHOST:9", "http://localhost:9", true},
      {"[::1]:80", "http://[::1]", true},
      {"localhost:443", "http://localhost", false},
      {"localhost:80", "https://localhost", false},
      {"localhost:99999", "", false},
      {"localhost:99999", "http://localhost:99999", false},
      {"127.0.0.1:8090", "http://app.example:5173", true},
      {"127.0.0.1:8090", "https://safe.example", true},
      {"127.0.0.1:8090", "http://[::1]:3000", true},
      {"127.0.0.1:8090", "ext+x://abc", true},
      {"127.0.0.1:8090", "http://127.0.0.1", false},
      {"127.0.0.1:8090", "http://127.0.0.1:8091", false},
      {"127.0.0.1:8090", "https://127.0.0.1:8090", false},
      {"127.0.0.1:8090", "http://localhost:8090", false},
      {"127.0.0.1:8090", "http://app.example", false},
      {"127.0.0.1:8090", "http://app.example:51733", false},
      {"127.0.0.1:8090", "http://app.example:5173/", false},
      {"127.0.0.1:8090", "https://app.example:5173", false},
      {"127.0.0.1:8090", "http://x.app.example:5173", false},
      {"127.0.0.1:8090", "null", false},
      {"127.0.0.1:8090", "*", false},
      {"127.0.0.1:8090", "", false},
  };
  for (const Row& row : rows) {
    const Verdict verdict = judged(access, {row.host}, {row.origin});
    EXPECT_EQ(verdict.status, row.allowed ? 0 : 403) << row.origin;
    EXPECT_EQ(valueOf(verdict.headers, "Access-Control-Allow-Origin"), row.allowed ? row.origin : "") << row.origin;
    EXPECT_EQ(valueOf(verdict.headers, "Vary"), "Origin");
  }
}

TEST(AccessTest, AStarStandsForEveryPortAndForNothingElse) {
  const Access access = allowing({"http://localhost:*"});
  for (const std::string_view origin : {"http://localhost", "http://localhost:1", "http://localhost:65535"}) {
    EXPECT_EQ(judged(access, {"127.0.0.1"}, {origin}).status, 0) << origin;
  }
  for (const std::string_view origin : {"http://localhost:", "http://localhost:x", "http://localhost:1.evil.example",
                                        "http://localhost.evil.example", "http://localhosts:1", "https://localhost:1",
                                        "http://localhost:*", "http://localhost:123456", "http://localhost:65536"}) {
    EXPECT_EQ(judged(access, {"127.0.0.1"}, {origin}).status, 403) << origin;
  }
}

TEST(AccessTest, SaysWhatToDo) {
  const Access access = allowing({});
  EXPECT_EQ(judged(access, {"tv.example:80"}, {}).reason,
            "this server is not known as tv.example: start it with --allow-host tv.example");
  EXPECT_EQ(judged(access, {"localhost"}, {"http://a.example:1"}).reason,
            "pages of http://a.example:1 may not use this server: start it with --allow-origin http://a.example:1");
  EXPECT_EQ(judged(access, {"localhost"}, {"null"}).reason,
            "pages without an origin, such as files and sandboxed frames, may not use this server: serve the page over "
            "http");
  EXPECT_EQ(judged(access, {"localhost"}, {"x; rm\x1b"}).reason, "pages of x; rm\\x1B may not use this server");
}

TEST(AccessTest, RefusesWhatIsNoOriginAndNoName) {
  for (const char* origin : {"", "*", "null", "localhost", "http://", "http://a/", "http://a/b", "http://a:x",
                             "http://*", "http://*.a", "http://a b", "http://a;b", "http://u@a", "://a",
                             "http://a:", "http://a:99999", "http://a:65536", "http://a:0", "http://a:080"}) {
    EXPECT_THROW(allowing({origin}), std::invalid_argument) << origin;
  }
  for (const char* host : {"", "a:1", "a b", "http://a", "*", "[::1]"}) {
    EXPECT_THROW(allowing({}, {host}), std::invalid_argument) << host;
  }
  try {
    allowing({"http://a/"});
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(error.what(), "--allow-origin: an origin is wanted, as in http://localhost:5173, not 'http://a/'");
  }
}

TEST(AccessTest, GuardsWhatNeedsTheTokenAndNothingElse) {
  const Access access = allowing({}, {}, "s3cret");
  for (const std::string_view target :
       {"/rpc", "/rpc?x", "/scan", "/scan?import=1", "/openrpc.json", "/live/main", "/live"}) {
    const Verdict verdict = judged(access, {"localhost"}, {}, target);
    EXPECT_EQ(verdict.status, 401) << target;
    EXPECT_EQ(valueOf(verdict.headers, "WWW-Authenticate"), "Bearer");
    EXPECT_EQ(verdict.reason.find("s3cret"), std::string::npos);
  }
  for (const std::string_view target : {"/", "/client.js", "/window.js?token=s3cret", "/other"}) {
    EXPECT_EQ(judged(access, {"localhost"}, {}, target).status, 0) << target;
  }
}

TEST(AccessTest, TakesTheTokenFromItsHeaderAndOfAnUpgradeFromItsTarget) {
  const Access access = allowing({}, {}, "s3c+ret/=");
  struct Row {
    std::string_view target;
    std::string_view authorization;
    bool upgrades;
    int status;
  };
  const std::vector<Row> rows{
      {"/rpc", "Bearer s3c+ret/=", false, 0},
      {"/rpc", "bearer s3c+ret/=", false, 0},
      {"/rpc", "BEARER    s3c+ret/=", false, 0},
      {"/rpc", "Bearer\ts3c+ret/=", false, 401},
      {"/rpc", "Bearer \ts3c+ret/=", false, 401},
      {"/rpc", "Bearers3c+ret/=", false, 401},
      {"/rpc", "Bearer", false, 401},
      {"/rpc", "Bearer   ", false, 401},
      {"/rpc", "Bearer s3c +ret/=", false, 401},
      {"/rpc", "Bearer s3c+ret/", false, 401},
      {"/rpc", "Bearer s3c+ret/=x", false, 401},
      {"/rpc", "Bearer ", false, 401},
      {"/rpc", "Basic s3c+ret/=", false, 401},
      {"/rpc", "s3c+ret/=", false, 401},
      {"/rpc?token=s3c+ret/=", "", true, 0},
      {"/rpc?session=S&token=s3c%2Bret%2f%3d", "", true, 0},
      {"/rpc?token=", "", true, 401},
      {"/rpc?tokens=s3c+ret/=", "", true, 401},
      {"/rpc?token=s3c+ret/=", "", false, 401},
      {"/rpc?token=s3c+ret/=", "Bearer wrong", true, 401},
  };
  for (const Row& row : rows) {
    const Asking asking{
        .target = row.target, .hosts = {"localhost"}, .authorization = row.authorization, .upgrades = row.upgrades};
    EXPECT_EQ(access.judge(asking).status, row.status) << row.target << " " << row.authorization;
  }
}

TEST(AccessTest, AnswersPreflightsOfAllowedOriginsWithoutAToken) {
  const Access access = allowing({"http://a.example"}, {}, "s3cret");
  Asking asking{.target = "/rpc", .hosts = {"localhost"}, .origins = {"http://a.example"}, .preflight = true};
  const Verdict verdict = access.judge(asking);
  EXPECT_EQ(verdict.status, 204);
  EXPECT_EQ(verdict.headers, (Headers{{"Vary", "Origin"},
                                      {"Access-Control-Allow-Origin", "http://a.example"},
                                      {"Access-Control-Allow-Methods", "GET, POST"},
                                      {"Access-Control-Allow-Headers", "authorization, content-type, emp-session"},
                                      {"Access-Control-Max-Age", "7200"}}));
  asking.privateNetwork = true;
  EXPECT_EQ(valueOf(access.judge(asking).headers, "Access-Control-Allow-Private-Network"), "true");
  asking.origins = {"http://b.example"};
  EXPECT_EQ(access.judge(asking).status, 403);
  EXPECT_EQ(access.judge(asking).headers, (Headers{{"Vary", "Origin"}}));
}

TEST(AccessTest, NamesAnAllowedOriginInRefusalsToo) {
  const Access access = allowing({"http://a.example"}, {}, "s3cret");
  const auto named = [&](std::string_view host, std::string_view target) {
    return valueOf(judged(access, {host}, {"http://a.example"}, target).headers, "Access-Control-Allow-Origin");
  };
  EXPECT_EQ(named("localhost", "/rpc"), "http://a.example");
  EXPECT_EQ(named("evil.example", "/rpc"), "http://a.example");
  EXPECT_EQ(named("localhost", "http://x/"), "http://a.example");
  const Verdict rebound = judged(access, {"evil.example"}, {"http://evil.example"});
  EXPECT_EQ(rebound.status, 403);
  EXPECT_EQ(valueOf(rebound.headers, "Access-Control-Allow-Origin"), "");
}

TEST(AccessTest, ReadsValuesOfAQuery) {
  EXPECT_EQ(queryValue("/rpc?session=S1&token=T", "session"), "S1");
  EXPECT_EQ(queryValue("/rpc?session=S1&token=T", "token"), "T");
  EXPECT_EQ(queryValue("/rpc?a", "a"), "");
  EXPECT_EQ(queryValue("/rpc?a=%41%zz%4", "a"), "A%zz%4");
  EXPECT_EQ(queryValue("/rpc?aa=1&&a=2", "a"), "2");
  EXPECT_EQ(queryValue("/rpc", "a"), std::nullopt);
  EXPECT_EQ(queryValue("/rpc?", "a"), std::nullopt);
  EXPECT_EQ(pathOf("/a/b?c=/d"), "/a/b");
}

TEST(AccessTest, ComparesSecretsAsAWhole) {
  EXPECT_TRUE(equalInConstantTime("abc", "abc"));
  EXPECT_FALSE(equalInConstantTime("abc", "abd"));
  EXPECT_FALSE(equalInConstantTime("abc", "ab"));
  EXPECT_FALSE(equalInConstantTime("abc", "abcd"));
  EXPECT_FALSE(equalInConstantTime("abc", std::string_view("abc\0", 4)));
  EXPECT_FALSE(equalInConstantTime("abc", ""));
}

}  // namespace
}  // namespace virtualtv::net

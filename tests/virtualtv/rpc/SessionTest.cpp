// SPDX-License-Identifier: MIT
// Sessions: those of connections, those opened by a request, and how long they live.
#include "virtualtv/rpc/RpcTest.h"

namespace virtualtv::rpc {
namespace {

using namespace std::chrono_literals;

class Sessions : public RpcTest {
 protected:
  explicit Sessions(Options options = {}) : RpcTest(std::move(options)) {}

  /// Opens a session without a connection.
  std::string open() { return posted("session.open")["result"]["session"].asString(); }
  std::size_t engines() { return device().host().engines().size(); }
};

class SessionsOfAKeptSet : public RpcTest {
 protected:
  SessionsOfAKeptSet() : RpcTest({.state = "/somewhere/state"}) {}
};

TEST_F(SessionsOfAKeptSet, TellWhereItIsKept) {
  Connected client(server);
  EXPECT_EQ(client.result("session.open")["state"], "/somewhere/state");
}

TEST_F(Sessions, OfASetInMemoryTellNoPlace) {
  Connected client(server);
  EXPECT_FALSE(client.result("session.open").isMember("state"));
}

TEST_F(Sessions, AreOpenedWithAConnection) {
  Connected client(server);
  const Json::Value opened = client.result("session.open");
  EXPECT_EQ(opened["virtual"], true);
  EXPECT_EQ(opened["revision"].asUInt64(), device().revision());
  EXPECT_EQ(client.result("session.open")["session"], opened["session"]);
  Connected other(server);
  EXPECT_NE(other.result("session.open")["session"], opened["session"]);
  EXPECT_EQ(other.result("session.open")["server"], opened["server"]);
}

TEST_F(Sessions, OfAnotherServerHaveOtherNames) {
  const std::string here = open();
  Server another(device(), {.after = [](auto, auto) {}});
  bool isRefused = false;
  another.post(R"({"jsonrpc":"2.0","id":1,"method":"tv.state"})", here,
               [&](const std::optional<std::string>& reply) { isRefused = codeOf(json(*reply)) == 1003; });
  EXPECT_TRUE(isRefused);
}

TEST_F(Sessions, TellTheirEngineWhichApplicationCalls) {
  Connected client(server);
  client.result("events.subscribe", json(R"([["engine"]])"));
  client.result("session.open", json(R"({"appId": "app", "widgetId": "w"})"));
  client.run("GetTVMode");
  const std::vector<Json::Value> events = client.events();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0]["what"], "opened");
  EXPECT_EQ(events[0]["appId"], "app");
  EXPECT_EQ(events[0]["widgetId"], "w");
}

TEST_F(Sessions, BeginAnewWhenTheyResetTheSet) {
  Connected client(server);
  client.result("session.open", json(R"({"appId": "app", "widgetId": "w"})"));
  for (const char* const line : {".engine other", ".trace on", "GetTVMode"}) {
    Json::Value params;
    params["line"] = line;
    client.result("tv.run", params);
  }
  client.result("tv.reset");
  client.result("events.subscribe", json(R"([["engine"]])"));
  EXPECT_EQ(client.result("tv.run", json(R"([".why"])"))["lines"], json(R"(["error: no command has run yet"])"));
  EXPECT_EQ(client.result("tv.run", json(R"(["GetTVMode"])"))["lines"], json(R"(["int 1"])")) << "not traced";
  const std::vector<Json::Value> events = client.events();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_TRUE(events[0]["engine"].asString().ends_with(":main")) << events[0];
  EXPECT_EQ(events[0]["appId"], "");
}

TEST_F(Sessions, EndWithTheirConnection) {
  Connected client(server);
  client.run("GetTVMode");
  EXPECT_EQ(engines(), 1U);
  client.end();
  EXPECT_EQ(engines(), 0U);
}

TEST_F(Sessions, WithoutAConnectionAreNamedByEachRequest) {
  const std::string one = open();
  const std::string other = open();
  EXPECT_NE(one, other);
  EXPECT_EQ(posted("window.GetTVMode", {}, one)["result"]["kind"], "int");
  EXPECT_EQ(posted("session.open", {}, one)["result"]["session"], one);
  EXPECT_EQ(engines(), 1U);
  EXPECT_EQ(posted("window.GetTVMode", {}, other)["result"]["kind"], "int");
  EXPECT_EQ(engines(), 2U);
  EXPECT_EQ(codeOf(posted("session.close", {}, one)), 0);
  EXPECT_EQ(engines(), 1U);
  EXPECT_EQ(codeOf(posted("window.GetTVMode", {}, one)), 1003);
}

TEST_F(Sessions, AreSharedByRequestsThatNameNone) {
  posted("window.GetTVMode");
  posted("window.GetTVMode");
  EXPECT_EQ(engines(), 1U);
  EXPECT_EQ(codeOf(posted("session.close")), -32602);
}

TEST_F(Sessions, AreTakenOverByAConnection) {
  const std::string session = open();
  posted("window.SetWindow", json("[1]"), session);
  Connected client(server, session);
  EXPECT_EQ(client.result("session.open")["session"], session);
  EXPECT_EQ(engines(), 1U);
  EXPECT_THROW(Connected(server, session), NoSuchSession) << "it has a connection";
  EXPECT_THROW(Connected(server, "none"), NoSuchSession);
  clock.advance(1h);
  EXPECT_EQ(client.result("session.open")["session"], session);
  client.end();
  EXPECT_EQ(codeOf(posted("tv.state", {}, session)), 1003);
}

TEST_F(Sessions, ThatNobodyTakesOverEndAfterHalfAMinute) {
  const std::string session = open();
  posted("window.GetTVMode", {}, session);
  clock.advance(29s);
  EXPECT_EQ(codeOf(posted("tv.state", {}, session)), 0);
  clock.advance(29s);
  EXPECT_EQ(codeOf(posted("tv.state", {}, session)), 0) << "it was used meanwhile";
  EXPECT_EQ(engines(), 1U);
  clock.advance(30s);
  EXPECT_EQ(engines(), 0U);
  EXPECT_EQ(codeOf(posted("tv.state", {}, session)), 1003);
}

TEST_F(Sessions, ThatWaitAreAtMost64) {
  const std::string first = open();
  for (int count = 1; count < 64; ++count) open();
  EXPECT_EQ(codeOf(posted("session.open")), 1002);
  const Connected client(server, first);
  EXPECT_EQ(codeOf(posted("session.open")), 0) << "one of them waits no more";
}

TEST_F(Sessions, GoOnAfterTheyWereClosedOnTheirConnection) {
  Connected client(server);
  const Json::Value first = client.result("session.open")["session"];
  client.run("GetTVMode");
  EXPECT_EQ(client.result("session.close"), Json::Value(Json::objectValue));
  EXPECT_EQ(engines(), 0U);
  EXPECT_NE(client.result("session.open")["session"], first);
  client.run("GetTVMode");
  EXPECT_EQ(engines(), 1U);
}

/// A batch in which calls follow the one that ends the session.
constexpr const char* closing = R"([{"jsonrpc":"2.0","id":1,"method":"window.GetTVMode"},
    {"jsonrpc":"2.0","id":2,"method":"session.close"},
    {"jsonrpc":"2.0","id":"x","method":"window.GetTVMode"},
    {"jsonrpc":"2.0","method":"tv.set","params":["region","7"]}, 5,
    {"jsonrpc":"2.0","id":4,"method":"tv.get","params":["region"]}])";

void expectClosedFromTheThirdOn(const Json::Value& replies) {
  ASSERT_EQ(replies.size(), 5U);
  EXPECT_EQ(replies[0]["result"]["value"], 1);
  EXPECT_TRUE(replies[1].isMember("result"));
  EXPECT_EQ(replies[2]["id"], "x");
  EXPECT_EQ(codeOf(replies[2]), 1003);
  EXPECT_EQ(reasonOf(replies[2]), "the session has ended");
  EXPECT_EQ(codeOf(replies[3]), -32600);
  EXPECT_EQ(codeOf(replies[4]), 1003);
}

TEST_F(Sessions, ThatABatchClosesRunNothingThatStandsBehindThatInIt) {
  Connected client(server);
  const Json::Value region = client.result("tv.get", json(R"(["region"])"));
  expectClosedFromTheThirdOn(client.replyTo(closing));
  EXPECT_EQ(engines(), 0U);
  EXPECT_EQ(client.result("tv.get", json(R"(["region"])")), region) << "the connection goes on";
  const std::string session = open();
  expectClosedFromTheThirdOn(json(*post(closing, session)));
  EXPECT_EQ(engines(), 0U);
  EXPECT_EQ(codeOf(posted("tv.get", json(R"(["region"])"), session)), 1003);
}

TEST_F(Sessions, OpenNewEnginesBehindARestart) {
  Connected client(server);
  for (const char* const method : {"tv.restart", "tv.reset"}) {
    client.run("GetTVMode");
    EXPECT_EQ(engines(), 1U);
    client.result(method);
    EXPECT_EQ(engines(), 0U);
  }
  const Json::Value snapshot = client.result("tv.snapshot");
  client.run("SetChannel", json("[3,0]"));
  client.result("tv.restore", snapshot);
  EXPECT_EQ(engines(), 0U);
  EXPECT_EQ(client.result("tv.snapshot"), snapshot);
}

TEST_F(Sessions, RunLinesOfTheShell) {
  Connected client(server);
  const auto lines = [&](const std::string& line) {
    Json::Value params;
    params["line"] = line;
    return client.result("tv.run", params)["lines"];
  };
  EXPECT_EQ(lines("SetChannel 3 0"), json(R"(["int 1"])"));
  EXPECT_EQ(lines(".engine other"), json("[]"));
  EXPECT_EQ(engines(), 2U);
  EXPECT_EQ(lines(".quit"), json("[]"));
  EXPECT_EQ(lines("GetTVMode").size(), 1U) << "a client is not ended by it";
  EXPECT_TRUE(lines(".nothing")[0].asString().starts_with("error: "));
}

TEST_F(Sessions, ReachNoFilesUnlessTheyAreGivenSome) {
  Connected client(server);
  for (const std::string line : {".snapshot a", ".restore /etc/passwd", ".source a", ".import a"}) {
    Json::Value params;
    params["line"] = line;
    const std::string said = client.result("tv.run", params)["lines"][0].asString();
    EXPECT_NE(said.find("clients reach no files unless the server is started with --files"), std::string::npos) << said;
  }
}

class FewSessions : public Sessions {
 protected:
  FewSessions() : Sessions({.mostSessions = 2}) {}
};

TEST_F(FewSessions, AreRefusedBeyondTheirNumber) {
  const Connected one(server);
  Connected other(server);
  EXPECT_THROW(Connected(server, std::nullopt), TooManySessions);
  EXPECT_EQ(post(R"({"jsonrpc":"2.0","id":1,"method":"tv.state"})"), std::nullopt);
  EXPECT_EQ(refusals, 1);
  other.end();
  EXPECT_TRUE(posted("tv.state").isMember("result"));
}

TEST_F(FewSessions, AreRefusedToAConnectionThatClosedItsOwn) {
  Connected one(server);
  Connected other(server);
  one.result("session.close");
  auto third = std::make_unique<Connected>(server);
  const Json::Value refused = one.call("tv.get", json(R"(["region"])"));
  EXPECT_EQ(codeOf(refused), 1002);
  EXPECT_EQ(reasonOf(refused), "there are 2 sessions, as many as may be");
  one.say(R"({"jsonrpc":"2.0","method":"tv.set","params":["region","7"]})");
  EXPECT_TRUE(one.takeTexts().empty());
  EXPECT_EQ(one.done, 3);
  third.reset();
  EXPECT_NE(one.result("tv.get", json(R"(["region"])"))["value"], "7");
}

TEST_F(FewSessions, AreNotOpenedByRequestsBeyondTheirNumber) {
  const std::string open = R"({"jsonrpc":"2.0","id":1,"method":"session.open"})";
  const std::string session = posted("session.open")["result"]["session"].asString();
  EXPECT_TRUE(posted("tv.state").isMember("result")) << "opens the session of all requests without one";
  EXPECT_EQ(post(open), std::nullopt);
  EXPECT_EQ(post(R"({"jsonrpc":"2.0","method":"session.open"})"), std::nullopt);
  EXPECT_EQ(refusals, 2);
  EXPECT_TRUE(posted("tv.state").isMember("result")) << "what needs no other session goes on";
  EXPECT_EQ(posted("session.open", Json::nullValue, session)["result"]["session"], session);
  const Json::Value batch =
      json(*post("[" + open + R"(,{"jsonrpc":"2.0","id":2,"method":"tv.get","params":["region"]}])"));
  EXPECT_EQ(codeOf(batch[0]), 1002);
  EXPECT_EQ(reasonOf(batch[0]), "there are 2 sessions, as many as may be");
  EXPECT_TRUE(batch[1].isMember("result"));
  posted("session.close", Json::nullValue, session);
  EXPECT_TRUE(posted("session.open").isMember("result"));
  EXPECT_EQ(refusals, 2);
}

TEST_F(FewSessions, AreAsManyAsRequestsMayOpen) {
  const std::string first = posted("session.open")["result"]["session"].asString();
  const std::string second = posted("session.open")["result"]["session"].asString();
  EXPECT_NE(first, second);
  EXPECT_EQ(post(R"({"jsonrpc":"2.0","id":1,"method":"session.open"})"), std::nullopt);
  const Json::Value sessions = posted("tv.sessions", Json::nullValue, first)["result"]["sessions"];
  ASSERT_EQ(sessions.size(), 2U);
  EXPECT_EQ(sessions[0]["session"], first);
  EXPECT_EQ(sessions[1]["session"], second);
}

TEST_F(Sessions, AreOpenedWhileACallOfThoseWithoutOneIsHeldBack) {
  posted("tv.set", json(R"({"name": "latency.IServiceNavigation::GetTvMode", "value": 70000})"));
  EXPECT_EQ(post(R"({"jsonrpc":"2.0","id":1,"method":"window.GetTVMode"})"), std::nullopt);
  EXPECT_NE(open(), "");
}

TEST_F(Sessions, ThatNobodyIsConnectedToLastAsLongAsACallThatIsHeldBack) {
  const std::string session = posted("session.open")["result"]["session"].asString();
  posted("tv.set", json(R"({"name": "latency.IServiceNavigation::GetTvMode", "value": 70000})"));
  std::optional<std::string> answer;
  server.post(R"({"jsonrpc":"2.0","id":1,"method":"window.GetTVMode"})", session,
              [&](std::optional<std::string> reply) { answer = std::move(reply); });
  clock.advance(std::chrono::seconds(69));
  EXPECT_EQ(answer, std::nullopt);
  clock.advance(std::chrono::seconds(1));
  ASSERT_TRUE(answer);
  EXPECT_EQ(json(*answer)["result"]["value"], 1);
  EXPECT_TRUE(posted("tv.get", json(R"(["region"])"), session).isMember("result"));
  clock.advance(std::chrono::seconds(31));
  EXPECT_EQ(codeOf(posted("tv.get", json(R"(["region"])"), session)), 1003);
}

}  // namespace
}  // namespace virtualtv::rpc

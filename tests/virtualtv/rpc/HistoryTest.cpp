// SPDX-License-Identifier: MIT
// What clients learn about commands that have run, and how they go back to them.
#include "device/History.h"

#include <algorithm>

#include "rpc/Events.h"
#include "virtualtv/rpc/RpcTest.h"

namespace virtualtv::rpc {
namespace {

class HistoryMethods : public RpcTest {
 protected:
  Json::Value why(const Json::Value& command) { return client.result("tv.why", of(command)); }
  Json::Value state() { return client.result("tv.state"); }
  static Json::Value of(const Json::Value& command) {
    Json::Value params;
    params["command"] = command;
    return params;
  }
  std::vector<std::string> lines(const std::string& line) {
    Json::Value params;
    params["line"] = line;
    std::vector<std::string> printed;
    const Json::Value told = client.result("tv.run", params)["lines"];
    for (const Json::Value& one : told) printed.push_back(one.asString());
    return printed;
  }

  Connected client{server};
};

TEST_F(HistoryMethods, TellAllOfACommandThatNobodyListenedTo) {
  client.run("SetSource", json("[31]"));
  const Json::Value told = why(1);
  EXPECT_EQ(told["command"], 1);
  EXPECT_EQ(told["name"], "SetSource");
  EXPECT_EQ(told["parameters"], json(R"(["31"])"));
  EXPECT_EQ(told["list"], false);
  EXPECT_EQ(told["session"], client.result("session.open")["session"]);
  EXPECT_EQ(told["engine"], "main");
  EXPECT_EQ(told["reply"], json(R"({"accepted": true, "kind": "int", "value": 1})"));
  EXPECT_TRUE(told["duration"].isDouble());
  EXPECT_EQ(told["delay"], 0);
  EXPECT_GT(told["calls"].size(), 0U);
  EXPECT_TRUE(told["calls"][0].asString().find("::") != std::string::npos) << told["calls"][0];
  EXPECT_GT(told["log"].size(), 1U);
  EXPECT_TRUE(told["log"][0]["text"].asString().find("[SetSource][31]") != std::string::npos) << told["log"][0];
  const auto isInput = [](const Json::Value& key) {
    return key["before"] == "tv-service" && key["after"] == "av-service";
  };
  EXPECT_TRUE(std::any_of(told["keys"].begin(), told["keys"].end(), isInput)) << told["keys"];
}

TEST_F(HistoryMethods, TellTheSameWhetherOrNotAnybodyListens) {
  Connected listener(server);
  const auto told = [&] {
    client.result("tv.reset");
    client.run("SetSource", json("[31]"));
    Json::Value all = why(Json::UInt64{device().history()->last()});
    for (const char* const name : {"command", "duration"}) all.removeMember(name);
    for (Json::Value* const part : {&all, &all["opening"]}) {
      for (Json::Value& line : (*part)["log"]) line.removeMember("text");  // it contains addresses
    }
    return all;
  };
  const Json::Value unheard = told();
  listener.result("events.subscribe", json(R"([["*"]])"));
  EXPECT_EQ(told(), unheard);
}

TEST_F(HistoryMethods, DoNotTellListenersMoreThanTheyAskedFor) {
  client.result("events.subscribe", json(R"([["*"]])"));
  client.result("events.unsubscribe", json(R"([["*"]])"));
  Connected listener(server);
  listener.result("events.subscribe", json(R"([["command"]])"));
  client.run("SetSource", json("[31]"));
  const auto events = listener.events();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0]["topic"], "command");
}

TEST_F(HistoryMethods, TellOfACommandThatFailedOnRequest) {
  client.result("tv.fault", json(R"({"operation": "IServiceNavigation::GetTvMode", "result": 0})"));
  client.run("GetTVMode");
  const Json::Value calls = why(1)["calls"];
  const auto isFault = [](const Json::Value& call) { return call.asString().ends_with("[fault]"); };
  EXPECT_TRUE(std::any_of(calls.begin(), calls.end(), isFault)) << calls;
}

TEST_F(HistoryMethods, TellWhatOpeningTheEngineDid) {
  client.run("SetSource", json("[31]"));
  const Json::Value opening = why(1)["opening"];
  EXPECT_EQ(opening.getMemberNames(), (std::vector<std::string>{"calls", "keys", "log"}));
  EXPECT_EQ(opening["calls"][0], "TVServiceAPI::CreateService() -> 0");
  EXPECT_EQ(opening["keys"][0], json(R"({"key": "db/emp/mainsource", "before": null, "after": 0})"));
  EXPECT_GT(opening["log"].size(), 0U);
  client.run("SetSource", json("[0]"));
  EXPECT_FALSE(why(2).isMember("opening"));
}

/// The opening of the engine may be the cause of a command's failure.
TEST_F(HistoryMethods, TellOfAFaultThatHitTheOpening) {
  client.result("tv.fault", json(R"({"operation": "TVServiceAPI::CreateTunerControl", "result": -1})"));
  EXPECT_EQ(client.run("GetSignalStrength"), -1);
  const auto isFault = [](const Json::Value& call) { return call.asString().ends_with("[fault]"); };
  const Json::Value told = why(1);
  EXPECT_TRUE(std::any_of(told["opening"]["calls"].begin(), told["opening"]["calls"].end(), isFault)) << told;
  EXPECT_FALSE(std::any_of(told["calls"].begin(), told["calls"].end(), isFault)) << told;
}

TEST_F(HistoryMethods, TellTheLastCommandOfTheSessionWhereNoneIsNamed) {
  for (const char* const method : {"tv.why", "tv.history"}) {
    const Json::Value reply = client.call(method);
    EXPECT_EQ(codeOf(reply), 1002) << method;
    EXPECT_EQ(reasonOf(reply), "no command has run yet");
  }
  client.run("SetChannel", json("[3,0]"));
  const Json::Value behind = state();
  Connected other(server);
  other.run("SetChannel", json("[5,0]"));
  EXPECT_EQ(client.result("tv.why"), why(1));
  EXPECT_EQ(client.result("tv.history"), behind);
  EXPECT_EQ(other.result("tv.why")["command"], 2);
  EXPECT_EQ(codeOf(client.call("tv.goBack")), -32602) << "nothing is undone without being named";
}

TEST_F(HistoryMethods, TellTheShellOfTheLastCommandHoweverItCame) {
  EXPECT_EQ(lines(".why"), std::vector<std::string>{"error: no command has run yet"});
  client.run("GetTVMode");
  const std::vector<std::string> of = lines(".why");
  ASSERT_GT(of.size(), 2U);
  EXPECT_EQ(of[0], "command main 1: GetTVMode");
  EXPECT_TRUE(of[1].starts_with("call ")) << of[1];
  EXPECT_TRUE(of.back().starts_with("log ")) << of.back();
  lines("GetSource   6");
  EXPECT_EQ(lines(".why")[0], "command main 2: GetSource   6") << "as it was typed";
  client.result("window.executeWithParamList", json(R"(["SetChannel", ["3", "", "a b"]])"));
  EXPECT_EQ(lines(".why")[0], "command main 3: + SetChannel 3 '' a\\ b");
  Connected other(server);
  other.run("GetTVMode");
  EXPECT_EQ(lines(".why")[0], "command main 3: + SetChannel 3 '' a\\ b") << "of this session";
}

TEST_F(HistoryMethods, TellTheShellOfACommandNoLongerThanItIsHeld) {
  client.run("GetTVMode");
  Connected other(server);
  for (std::size_t count = 0; count < device::History::Bounds().commands; ++count) other.run("GetTVMode");
  EXPECT_EQ(lines(".why"), std::vector<std::string>{"error: the last command is not held any more"});
  EXPECT_EQ(reasonOf(client.call("tv.why", of(1))), "command 1 is not held");
  EXPECT_EQ(why(2)["name"], "GetTVMode");
}

TEST_F(HistoryMethods, TellTheStateBehindACommand) {
  client.run("SetChannel", json("[3,0]"));
  const Json::Value first = state();
  client.result("tv.set", json(R"(["region", 9])"));
  client.run("SetChannel", json("[5,0]"));
  const Json::Value second = state();
  client.result("tv.reset");
  EXPECT_EQ(client.result("tv.history", of(1)), first);
  EXPECT_EQ(client.result("tv.history", of(2)), second);
  EXPECT_NE(first["windows"]["main"]["service"], second["windows"]["main"]["service"]);
  EXPECT_NE(first["region"], second["region"]);
}

TEST_F(HistoryMethods, GoBackToTheSetBehindACommand) {
  client.run("SetChannel", json("[3,0]"));
  const Json::Value snapshot = client.result("tv.snapshot");
  client.run("SetChannel", json("[5,0]"));
  client.result("tv.setSetting", json(R"(["a/key", "x"])"));
  client.result("events.subscribe", json(R"([["service", "services", "engine", "settings"]])"));
  const Json::Value before = state();
  const Json::Value answer = client.result("tv.goBack", of(1));
  EXPECT_GT(answer["revision"].asUInt64(), before["revision"].asUInt64());
  EXPECT_EQ(client.result("tv.snapshot"), snapshot);
  std::vector<std::string> topics;
  for (const Json::Value& event : client.events()) {
    topics.push_back(event["topic"].asString());
  }
  for (const char* const topic : {"service", "services", "engine", "settings"}) {
    EXPECT_TRUE(std::find(topics.begin(), topics.end(), topic) != topics.end()) << topic;
  }
  EXPECT_EQ(client.run("GetCurrentChannel_Name"), "Lighthouse News");
  EXPECT_EQ(client.result("tv.history", of(2))["revision"].asUInt64(), before["revision"].asUInt64() - 1)
      << "still held";
}

TEST_F(HistoryMethods, TellWhatTheSetPersistedBeforeACommand) {
  const auto snapshot = [&](const char* params) { return client.result("tv.snapshot", json(params))["snapshot"]; };
  const Json::Value fresh = snapshot("{}");
  client.run("SetChannel", json("[3,0]"));
  client.result("tv.set", json(R"(["region", 9])"));
  client.result("tv.import", json(R"(["A;B:562000:B8C23D0M64T8G8Y0:T:27500:101=2:102=deu@4:0:0:7:8468:517:0\n"])"));
  const Json::Value second = snapshot("{}");
  client.run("SetSource", json("[31]"));
  client.result("tv.reset");
  EXPECT_EQ(snapshot(R"({"before": 1})"), fresh) << "before the engine was opened";
  EXPECT_EQ(snapshot(R"({"before": 2})"), second) << "behind what was done from outside";
  EXPECT_EQ(snapshot("{}"), fresh);
  EXPECT_EQ(reasonOf(client.call("tv.snapshot", json(R"({"before": 3})"))), "command 3 is not held");
  EXPECT_EQ(codeOf(client.call("tv.snapshot", json(R"({"before": -1})"))), -32602);
}

TEST_F(HistoryMethods, RefuseCommandsThatAreNotHeld) {
  client.run("GetTVMode");
  for (const char* const method : {"tv.why", "tv.history", "tv.goBack"}) {
    for (const int command : {0, 2, 1'000'000}) {
      const Json::Value reply = client.call(method, of(command));
      EXPECT_EQ(codeOf(reply), 1002) << method;
      EXPECT_EQ(reasonOf(reply), "command " + std::to_string(command) + " is not held");
    }
    EXPECT_EQ(codeOf(client.call(method, of("1"))), -32602);
    EXPECT_EQ(codeOf(client.call(method, of(-1))), -32602);
  }
}

}  // namespace
}  // namespace virtualtv::rpc

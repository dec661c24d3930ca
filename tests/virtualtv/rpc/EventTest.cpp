// SPDX-License-Identifier: MIT
// Events: their order, their numbers, replays, and delays.
#include "rpc/Events.h"

#include <algorithm>

#include "virtualtv/rpc/RpcTest.h"

namespace virtualtv::rpc {
namespace {

using namespace std::chrono_literals;

class EventsTest : public RpcTest {
 protected:
  /// Subscribes to topics. @return the answer.
  static Json::Value subscribe(Connected& client, const std::string& params) {
    return client.result("events.subscribe", json(params));
  }
  static std::vector<std::string> topicsOf(const std::vector<Json::Value>& events) {
    std::vector<std::string> topics;
    topics.reserve(events.size());
    for (const Json::Value& event : events) topics.push_back(event["topic"].asString());
    return topics;
  }
  /// The messages that a client gets for a command, in order: the topics of the events, and "reply".
  static std::vector<std::string> order(Connected& client, const std::string& command) {
    client.say(R"({"jsonrpc":"2.0","id":"me","method":"window.)" + command + "}");
    std::vector<std::string> order;
    for (const Json::Value& message : client.take()) {
      order.push_back(message["id"] == "me" ? "reply" : message["params"]["topic"].asString());
    }
    return order;
  }
  void turn() { device().loop().turn(); }

  Connected client{server};
};

TEST_F(EventsTest, OfACommandComeBeforeItsReply) {
  client.run("GetTVMode");
  subscribe(client, R"([["service", "command"]])");
  EXPECT_EQ(order(client, R"(SetChannel","params":[3,0])"), std::vector<std::string>({"service", "command", "reply"}));
}

TEST_F(EventsTest, SayWhatChangedFromWhatToWhat) {
  client.run("SetChannel", json("[3,0]"));
  subscribe(client, R"([["service", "mode", "source", "plane", "knob", "settings", "inputs"]])");
  client.run("SetChannel", json("[5,0]"));
  for (const Json::Value& event : client.events()) {
    EXPECT_NE(event["before"], event["after"]) << event.toStyledString();
    if (event["topic"] != "service") continue;
    EXPECT_EQ(event["window"], "main");
    EXPECT_EQ(event["before"]["service"]["name"], "Lighthouse News");
    EXPECT_EQ(event["after"]["previous"], event["before"]["service"]);
    EXPECT_TRUE(event["after"]["service"]["id"].isString());
  }
  client.result("tv.set", json(R"(["region", "9"])"));
  const std::vector<Json::Value> events = client.events();
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0]["topic"], "knob");
  EXPECT_EQ(events[0]["name"], "region");
  EXPECT_EQ(events[0]["after"], "9");
  EXPECT_FALSE(events[0].isMember("command"));
}

TEST_F(EventsTest, SayWhichServiceWasMovedOrRemoved) {
  subscribe(client, R"([["services"]])");
  client.result("tv.editService", json(R"({"service": "#3", "change": "move", "value": 5})"));
  client.result("tv.editService", json(R"({"service": "#3", "change": "remove"})"));
  client.result("tv.import",
                json(R"({"content": "A;B:11836:HC34M2O0S0:S19.2E:27500:101:102:104:0:28106:1:1101:0\n"})"));
  std::vector<Json::Value> edits;
  for (const Json::Value& event : client.events()) edits.push_back(event["edit"]);
  EXPECT_EQ(edits, std::vector<Json::Value>({"#3 move 5", "#3 remove", Json::Value()}));
}

TEST_F(EventsTest, TellWhenTheyHappened) {
  const auto now = [] {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
  };
  subscribe(client, R"([["*"]])");
  const auto before = now();
  client.run("SetChannel", json("[3,0]"));
  client.result("tv.set", json(R"(["region", 9])"));
  for (const Json::Value& event : client.events()) {
    const std::string topic = event["topic"].asString();
    if (topic == "call" || topic == "log") {
      EXPECT_FALSE(event.isMember("time")) << event;
      continue;
    }
    EXPECT_GE(event["time"].asInt64(), before) << event;
    EXPECT_LE(event["time"].asInt64(), now()) << event;
  }
}

TEST_F(EventsTest, CountUpByOneOverAllTopics) {
  Json::UInt64 last = subscribe(client, R"([["*"]])")["number"].asUInt64();
  client.run("SetChannel", json("[3,0]"));
  client.run("SetSource", json("[31]"));
  client.result("tv.restart");
  const std::vector<Json::Value> events = client.events();
  EXPECT_GT(events.size(), 10U);
  for (const Json::Value& event : events) EXPECT_EQ(event["number"].asUInt64(), ++last);
}

TEST_F(EventsTest, HaveRevisionsThatNeverGoBack) {
  subscribe(client, R"([["*"]])");
  Connected other(server);
  client.result("tv.set", json(R"(["latency.IServiceNavigation::GetTvMode", "300"])"));
  other.say(R"({"jsonrpc":"2.0","id":1,"method":"window.GetTVMode"})");
  client.result("tv.set", json(R"(["region", 8])"));
  clock.advance(300ms);
  for (const char* const method : {"tv.restart", "window.SetSource", "tv.reset", "window.GetTVMode"}) {
    client.result(method);
  }
  Json::UInt64 last = 0;
  for (const Json::Value& event : client.events()) {
    EXPECT_GE(event["revision"].asUInt64(), last) << event.toStyledString();
    last = event["revision"].asUInt64();
  }
  EXPECT_EQ(last, device().revision());
}

TEST_F(EventsTest, CarryTheNumberOfTheirCommand) {
  subscribe(client, R"([["*"]])");
  client.run("GetTVMode");
  client.events();
  client.run("SetChannel", json("[3,0]"));
  const std::vector<Json::Value> events = client.events();
  ASSERT_FALSE(events.empty());
  for (const Json::Value& event : events) EXPECT_EQ(event["command"], 2) << event.toStyledString();
  const Json::Value& command = events.back();
  EXPECT_EQ(command["topic"], "command");
  EXPECT_EQ(command["name"], "SetChannel");
  EXPECT_EQ(command["parameters"], json(R"(["3", "0"])"));
  EXPECT_EQ(command["reply"], json(R"({"accepted": true, "kind": "int", "value": 1})"));
  EXPECT_EQ(command["session"], client.result("session.open")["session"]);
  EXPECT_TRUE(command["duration"].isDouble());
}

TEST_F(EventsTest, TellTheLogOfACommandAtOnce) {
  subscribe(client, R"([["log", "command"]])");
  client.run("SetChannel", json("[3,0]"));
  const std::vector<Json::Value> events = client.events();
  ASSERT_EQ(topicsOf(events), std::vector<std::string>({"log", "log", "command"})) << "one as the engine is opened";
  EXPECT_FALSE(events[0].isMember("command"));
  EXPECT_GT(events[1]["lines"].size(), 1U);
  EXPECT_EQ(events[1]["omitted"], 0);
  EXPECT_TRUE(events[1]["lines"][0]["text"].isString());
}

TEST_F(EventsTest, AreGatheredForACommand) {
  subscribe(client, R"([["*"]])");
  client.run("SetSource", json("[31]"));
  const std::vector<Json::Value> events = client.events();
  const Json::Value why = client.result("tv.why", json("[1]"));
  EXPECT_EQ(why["command"], 1);
  EXPECT_EQ(why["name"], "SetSource");
  EXPECT_EQ(why["reply"]["kind"], "int");
  const auto told = [&](const char* topic) {
    return static_cast<Json::ArrayIndex>(std::count_if(events.begin(), events.end(), [&](const Json::Value& event) {
      return event["topic"] == topic && event["command"] == 1;
    }));
  };
  EXPECT_EQ(why["calls"].size(), told("call"));
  EXPECT_EQ(why["keys"].size(), told("settings"));
  EXPECT_GT(why["keys"].size(), 0U);
  EXPECT_GT(why["log"].size(), 0U);
  EXPECT_EQ(codeOf(client.call("tv.why", json("[2]"))), 1002);
  EXPECT_EQ(codeOf(client.call("tv.why", json("[0]"))), 1002);
}

TEST_F(EventsTest, AreToldToAllWhoWantThem) {
  Connected other(server);
  Connected third(server);
  subscribe(client, R"([["knob"]])");
  subscribe(other, R"([["*"]])");
  third.result("tv.set", json(R"(["region", "7"])"));
  EXPECT_EQ(client.takeTexts(), other.takeTexts());
  EXPECT_TRUE(third.takeTexts().empty());
  client.result("events.unsubscribe", json(R"([["knob"]])"));
  third.result("tv.set", json(R"(["region", "8"])"));
  EXPECT_TRUE(client.takeTexts().empty());
  EXPECT_EQ(other.takeTexts().size(), 1U);
}

TEST_F(EventsTest, OfATopicEndWithItsSubscriptionAlsoAmongAllTopics) {
  subscribe(client, R"([["*"]])");
  client.result("events.unsubscribe", json(R"([["knob"]])"));
  client.result("tv.set", json(R"(["region", "8"])"));
  EXPECT_TRUE(client.takeTexts().empty());
  subscribe(client, R"([["knob"]])");
  client.takeTexts();
  client.result("events.unsubscribe", json(R"([["*"]])"));
  client.result("tv.set", json(R"(["region", "9"])"));
  EXPECT_TRUE(client.takeTexts().empty());
}

TEST_F(EventsTest, OfWhatOthersDoOnTheSetAreToldToo) {
  subscribe(client, R"([["knob", "command"]])");
  television.tv().adjust([](TvState& state) { state.region = 6; });
  turn();
  EXPECT_EQ(topicsOf(client.events()), std::vector<std::string>({"knob"}));
}

TEST_F(EventsTest, AreReplayedBehindTheOneThatAClientHas) {
  Connected other(server);
  const Json::Value start = subscribe(client, R"([["knob"]])");
  for (const char* const region : {"11", "12", "13"}) {
    Json::Value params;
    params["name"] = "region";
    params["value"] = region;
    other.result("tv.set", params);
  }
  const std::vector<std::string> told = client.takeTexts();
  ASSERT_EQ(told.size(), 3U);
  client.end();
  Connected again(server);
  Json::Value params;
  params["topics"] = json(R"(["knob"])");
  params["after"] = json(told[0])["params"]["number"];
  params["server"] = start["server"];
  const Json::Value answer = again.result("events.subscribe", params);
  EXPECT_FALSE(answer.isMember("resync"));
  EXPECT_EQ(again.takeTexts(), std::vector<std::string>({told[1], told[2]}));
  EXPECT_EQ(answer["state"]["region"], 13);
  other.result("tv.set", json(R"(["region", "14"])"));
  EXPECT_EQ(again.takeTexts().size(), 1U);
}

TEST_F(EventsTest, ThatAreNoLongerHeldAskForAFreshStart) {
  Connected other(server);
  const Json::Value start = subscribe(client, R"([["knob"]])");
  for (std::size_t count = 0; count <= Events::mostHeld; ++count) {
    television.tv().adjust([&](TvState& state) { state.region = static_cast<int>(count % 2) + 50; });
  }
  turn();
  const auto answer = [&](const Json::Value& after, const Json::Value& of) {
    Json::Value params;
    params["topics"] = json(R"(["knob"])");
    params["after"] = after;
    params["server"] = of;
    Json::Value result = other.result("events.subscribe", params);
    other.takeTexts();
    other.result("events.unsubscribe", json(R"([["knob"]])"));
    return result;
  };
  EXPECT_EQ(answer(start["number"], start["server"])["resync"], true);
  const Json::UInt64 number = start["number"].asUInt64();
  EXPECT_FALSE(answer(Json::UInt64{number + 1}, start["server"]).isMember("resync"));
  EXPECT_EQ(answer(Json::UInt64{number + 1}, "another")["resync"], true);
  EXPECT_EQ(answer(Json::UInt64{number + 1'000'000}, start["server"])["resync"], true) << "of the future";
}

TEST_F(EventsTest, OfABatchComeBehindTheReplyThatBeginsThem) {
  client.say(R"([{"jsonrpc":"2.0","id":1,"method":"events.subscribe","params":[["knob"]]},
                 {"jsonrpc":"2.0","id":2,"method":"tv.set","params":["region","8"]}])");
  const std::vector<Json::Value> messages = client.take();
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_TRUE(messages[0].isArray());
  EXPECT_EQ(messages[1]["params"]["after"], "8");
}

TEST_F(EventsTest, OfUnknownTopicsAreRefused) {
  const Json::Value reply = client.call("events.subscribe", json(R"([["knob", "nothing"]])"));
  EXPECT_EQ(codeOf(reply), -32602);
  EXPECT_EQ(reasonOf(reply), "topics[1]: there is no topic 'nothing'");
  EXPECT_EQ(codeOf(client.call("events.subscribe", json(R"(["knob"])"))), -32602);
  EXPECT_EQ(codeOf(posted("events.subscribe", json(R"([["knob"]])"))), 1002) << "nowhere to tell them";
}

TEST_F(EventsTest, CutOffAClientThatDoesNotReadThem) {
  Connected other(server);
  subscribe(client, R"([["knob"]])");
  subscribe(other, R"([["knob"]])");
  client.unsentBytes = 8U << 20U;
  television.tv().adjust([](TvState& state) { state.region = 6; });
  television.tv().adjust([](TvState& state) { state.region = 7; });
  turn();
  EXPECT_TRUE(client.isCutOff);
  EXPECT_TRUE(client.takeTexts().empty());
  EXPECT_EQ(other.takeTexts().size(), 2U);
}

TEST_F(EventsTest, TellLongRepliesInPart) {
  std::string list;
  for (int number = 1; number <= 600; ++number) {
    list +=
        "Service;Net:578000:I999C23D0M64T8G4Y0:T:27500:101:102=eng:0:0:" + std::to_string(number) + ":9018:4100:0\n";
  }
  Json::Value params;
  params["content"] = list;
  client.result("tv.import", params);
  subscribe(client, R"([["command"]])");
  const std::string whole = client.run("GetFullChannelList").asString();
  ASSERT_GT(whole.size(), 65536U);
  const Json::Value event = client.events().at(0);
  const std::string told = event["reply"]["value"].asString();
  EXPECT_LE(told.size(), 65536U);
  EXPECT_GT(told.size(), 65000U);
  EXPECT_TRUE(whole.starts_with(told));
  EXPECT_EQ(event["reply"]["length"].asUInt64(), whole.size());
  Json::Value which;
  which["command"] = event["command"];
  EXPECT_EQ(client.result("tv.why", which)["reply"]["value"], whole);
}

class Delays : public EventsTest {
 protected:
  Delays() {
    client.run("GetTVMode");
    client.result("tv.set", json(R"(["latency.IServiceNavigation::GetTvMode", "500"])"));
  }
  static constexpr const char* slow = R"({"jsonrpc":"2.0","id":1,"method":"window.GetTVMode"})";
  static constexpr const char* quick = R"({"jsonrpc":"2.0","id":2,"method":"tv.faults"})";
};

TEST_F(Delays, HoldAReplyBackAndWhatTheSameSessionAsksLater) {
  const int before = client.done;
  client.say(slow);
  client.say(quick);
  EXPECT_TRUE(client.takeTexts().empty());
  clock.advance(499ms);
  EXPECT_TRUE(client.takeTexts().empty());
  EXPECT_EQ(client.done, before);
  clock.advance(1ms);
  const std::vector<Json::Value> replies = client.take();
  ASSERT_EQ(replies.size(), 2U);
  EXPECT_EQ(replies[0]["id"], 1);
  EXPECT_EQ(replies[1]["id"], 2);
  EXPECT_EQ(client.done, before + 2);
}

TEST_F(Delays, HoldNobodyElseUp) {
  Connected other(server);
  client.say(slow);
  EXPECT_EQ(codeOf(other.call("tv.state")), 0);
  EXPECT_EQ(codeOf(posted("tv.state")), 0);
  EXPECT_TRUE(client.takeTexts().empty());
}

TEST_F(Delays, MoveTheSetsClockAtOnce) {
  Connected other(server);
  const Json::UInt64 clockBefore = other.result("tv.state")["clock"].asUInt64();
  client.say(slow);
  EXPECT_EQ(other.result("tv.state")["clock"].asUInt64(), clockBefore + 500);
}

TEST_F(Delays, HoldTheEventOfTheCommandBackAndNotItsOthers) {
  subscribe(client, R"([["command", "knob"]])");
  client.say(slow);
  EXPECT_EQ(topicsOf(client.events()), std::vector<std::string>({"knob"})) << "the clock";
  clock.advance(500ms);
  const std::vector<Json::Value> messages = client.take();
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_EQ(messages[0]["params"]["topic"], "command");
  EXPECT_EQ(messages[0]["params"]["delay"], 500);
  EXPECT_EQ(messages[1]["id"], 1);
}

TEST_F(Delays, OfABatchAddUp) {
  client.say(std::string("[") + slow + "," + slow + "]");
  clock.advance(999ms);
  EXPECT_TRUE(client.takeTexts().empty());
  clock.advance(1ms);
  EXPECT_EQ(client.take().at(0).size(), 2U);
}

TEST_F(Delays, EndWithTheirClient) {
  client.say(slow);
  const int before = client.done;
  client.end();
  clock.advance(1h);
  EXPECT_TRUE(client.takeTexts().empty());
  EXPECT_EQ(client.done, before);
}

TEST_F(Delays, OfASessionThatIsClosedMeanwhileAreAnsweredWithThat) {
  const std::string session = posted("session.open")["result"]["session"].asString();
  std::vector<std::string> answers;
  server.post(slow, session, [&](std::optional<std::string> reply) { answers.push_back(reply.value_or("refused")); });
  EXPECT_TRUE(answers.empty());
  Json::Value params;
  params["session"] = session;
  client.result("session.close", params);
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(codeOf(json(answers[0])), 1003);
  clock.advance(1h);
  EXPECT_EQ(answers.size(), 1U);
}

class NoDelays : public RpcTest {
 protected:
  NoDelays() : RpcTest({.waits = false}) {}
};

TEST_F(NoDelays, AreWaitedForWhereTheServerDoesNotWait) {
  Connected client(server);
  client.result("tv.set", json(R"(["latency.IServiceNavigation::GetTvMode", "500"])"));
  EXPECT_EQ(client.result("window.GetTVMode")["kind"], "int");
}

}  // namespace
}  // namespace virtualtv::rpc

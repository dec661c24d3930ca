// SPDX-License-Identifier: MIT
// The results of methods match their schemas in the OpenRPC document.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <set>
#include <string>
#include <vector>

#include "virtualtv/rpc/JsonSchema.h"
#include "virtualtv/rpc/RpcTest.h"

namespace virtualtv::rpc {
namespace {

using Findings = std::vector<std::string>;

class Schemas : public RpcTest {
 protected:
  const Json::Value& schemaOf(const std::string& name) const {
    for (const Json::Value& method : document["methods"]) {
      if (method["name"] == name) return method["result"]["schema"];
    }
    ADD_FAILURE() << "there is no method " << name;
    return Json::Value::nullSingleton();
  }
  /// Calls a method. @return its result, which must match the method's schema.
  Json::Value fitting(Connected& caller, const std::string& name, const std::string& params = "{}") {
    Json::Value result = caller.result(name, json(params));
    EXPECT_EQ(schema.findings(schemaOf(name), result), Findings()) << name << " " << params;
    return result;
  }
  /// Calls all methods that report on the set, and checks their results.
  void expectAllFit(Connected& caller) {
    for (const char* const name : {"tv.state", "tv.services", "tv.knobs", "tv.settings", "tv.sessions", "tv.faults",
                                   "tv.operations", "tv.why", "tv.history"}) {
      fitting(caller, name);
    }
    fitting(caller, "events.subscribe", R"({"topics": ["*"], "after": 1, "server": "another"})");
  }
  /// Runs a line in the shell; it must not fail.
  void line(const std::string& text) {
    Json::Value params;
    params["line"] = text;
    const Json::Value lines = client.result("tv.run", params)["lines"];
    for (const Json::Value& said : lines) {
      EXPECT_FALSE(said.asString().starts_with("error")) << text << ": " << said;
    }
  }

  const Json::Value document = posted("rpc.discover")["result"];
  const JsonSchema schema{document["components"]["schemas"]};
  Connected client{server};
  Connected other{server};
};

TEST_F(Schemas, FitTheBuiltInSet) {
  client.run("GetTVMode");
  expectAllFit(client);
}

TEST_F(Schemas, FitASetOnWhichThingsHappen) {
  client.result("tv.fault", json(R"({"operation": "IServiceNavigation::GetTvMode", "result": 0})"));
  client.result("tv.fault", json(R"({"operation": "TVServiceAPI::CreateSourceControl", "result": "throw"})"));
  client.run("GetTVMode");
  expectAllFit(client);
  for (const char* const text :
       {".set input.13.plugged off", ".set main.source 13", ".set pip.source 17", ".set pip.service #4",
        ".set main.service #9", ".set isp.audio 256:eng,!257", ".set service.#9.audio 256:eng,!257",
        ".set service.#9.name unset", ".set service.#4.major unset", ".engine second"}) {
    line(text);
  }
  client.result("tv.setSetting", json(R"(["a/number", 7])"));
  client.result("tv.setSetting", json(R"(["a/text", "x"])"));
  tv().setSetting("no/text", std::string("\xFF"));
  other.run("SetWindow", json("[1]"));
  other.run("SetScreenRect", json("[10,20,300,200]"));
  other.run("SetScreenCropRect", json("[0,0,100,100]"));
  other.run("SetSource", json("[31]"));
  other.result("window.executeWithParamList", json(R"(["SetScreenCropRect", [0,0,100,100,0,0,200,200]])"));
  client.result("tv.set", json(R"(["latency.IServiceNavigation::GetTvMode", 3])"));
  client.call("window.GetTVMode");
  clock.advance(std::chrono::milliseconds(3));
  expectAllFit(client);
  expectAllFit(other);
  for (int command = 1; command <= 6; ++command) {
    fitting(client, "tv.why", "[" + std::to_string(command) + "]");
    fitting(client, "tv.history", "[" + std::to_string(command) + "]");
  }
}

TEST_F(Schemas, FitASetWithoutServices) {
  client.result("tv.import", json(R"({"content": "One;Net:474000:B8C23D12G4M64T8Y0:T:27500:101:102:0:0:1:1:1:0\n"})"));
  client.run("GetCurrentChannel_Name");
  expectAllFit(client);
}

class EventSchemas : public Schemas {
 protected:
  void letAllHappen();
};

/// Makes something of every kind happen.
void EventSchemas::letAllHappen() {
  client.result("tv.fault", json(R"({"operation": "IServiceNavigation::GetTvMode", "result": 0})"));
  client.result("tv.fault", json(R"({"operation": "IServiceNavigation::GetTvMode", "nth": 9, "result": "throw"})"));
  client.run("GetTVMode");
  client.run("SetChannel", json("[3,0]"));
  for (const char* const text :
       {".set input.13.plugged off", ".set main.source 13", "SetScreenRect 10 20 300 200", ".set main.mode 1,2",
        ".set main.audio 1", ".set isp.audio 256:eng,!257", ".set service.#4.audio 256:eng,!257",
        ".set service.#4.subtitles 300:eng:teletext", ".set service.#4.name unset", ".set service.#4.major 7",
        ".set service.#4.favourites 2=1,3=0", ".set pip.service #4", ".set region 9", ".engine second", "GetTVMode",
        ".engine close"}) {
    line(text);
  }
  client.result("tv.setSetting", json(R"(["a/number", 7])"));
  client.result("tv.setSetting", json(R"(["a/number", "seven"])"));
  client.result("tv.removeSetting", json(R"(["a/number"])"));
  Connected(server).result("session.open");
  client.result("tv.clearFaults");
  client.result("tv.import", json(R"({"content": "One;Net:474000:B8C23D12G4M64T8Y0:T:27500:101:102:0:0:1:1:1:0\n"})"));
  const Json::Value snapshot = client.result("tv.snapshot");
  for (const char* const method : {"tv.restart", "tv.reset"}) client.result(method);
  client.result("tv.restore", snapshot);
}

TEST_F(EventSchemas, FitEventsOfEveryKind) {
  client.result("events.subscribe", json(R"([["*"]])"));
  letAllHappen();
  const Json::Value& named = document["components"]["schemas"];
  std::set<std::string> wanted;
  std::set<std::string> seen;
  for (const std::string& name : named.getMemberNames()) {
    if (!name.starts_with("event.")) continue;
    for (const Json::Value& kind : named[name]["anyOf"]) wanted.insert(kind["$ref"].asString());
  }
  for (const Json::Value& event : client.events()) {
    const Json::Value& kinds = named["event." + event["topic"].asString()]["anyOf"];
    int fitting = 0;
    for (const Json::Value& kind : kinds) {
      if (!schema.findings(kind, event).empty()) continue;
      ++fitting;
      seen.insert(kind["$ref"].asString());
    }
    EXPECT_EQ(fitting, 1) << event;
  }
  EXPECT_EQ(seen, wanted);
}

/// Every object that has members names all of them, so that a missing new member is noticed.
TEST_F(Schemas, LeaveNoMemberOut) {
  const Json::Value& named = document["components"]["schemas"];
  int count = 0;
  for (const std::string& name : named.getMemberNames()) {
    if (name.starts_with("event.")) continue;  // it is a choice of named schemas
    ++count;
    EXPECT_EQ(named[name]["additionalProperties"], false) << name;
    for (const std::string& member : named[name]["properties"].getMemberNames()) {
      const Json::Value& one = named[name]["properties"][member];
      EXPECT_TRUE(one.isMember("description") || one.isMember("$ref")) << name << "." << member;
    }
  }
  EXPECT_GT(count, 20);
}

TEST_F(Schemas, TellWhatDoesNotFit) {
  Json::Value state = client.result("tv.state");
  state["windows"]["main"]["more"] = 1;
  state["windows"]["pip"].removeMember("plane");
  state["region"] = "nine";
  state["inputs"][0]["picture"]["shape"] = "1:1";
  state["windows"]["main"]["service"] = 5;
  const Findings found = schema.findings(schemaOf("tv.state"), state);
  for (const char* const wanted :
       {"windows.main: has 'more'", "windows.pip: has no 'plane'", "region: is of another type: \"nine\"",
        "inputs[0].picture.shape: is not in the enum: \"1:1\"", "windows.main.service: none of anyOf fits: 5"}) {
    EXPECT_TRUE(std::find(found.begin(), found.end(), wanted) != found.end()) << wanted;
  }
  EXPECT_EQ(found.size(), 5U);
}

}  // namespace
}  // namespace virtualtv::rpc

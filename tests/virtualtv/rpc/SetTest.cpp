// SPDX-License-Identifier: MIT
// The set through its methods: state, services, lists, knobs, settings, faults, and their descriptions.
#include <set>

#include "channels/EditList.h"
#include "import/Import.h"
#include "json/Write.h"
#include "rpc/Method.h"
#include "set/Knobs.h"
#include "shell/DotCommands.h"
#include "virtualtv/rpc/RpcTest.h"

namespace virtualtv::rpc {
namespace {

class SetMethods : public RpcTest {
 protected:
  /// Parameters by name, from pairs.
  static Json::Value named(std::initializer_list<std::pair<const char*, Json::Value>> members) {
    Json::Value params(Json::objectValue);
    for (const auto& [name, value] : members) params[name] = value;
    return params;
  }
  Json::Value result(const std::string& method, const Json::Value& params = Json::nullValue) {
    return client.result(method, params);
  }

  Connected client{server};
};

TEST_F(SetMethods, TellTheStateWithItsRevision) {
  const Json::UInt64 before = result("tv.state")["revision"].asUInt64();
  EXPECT_EQ(result("tv.set", json(R"(["region", 9])"))["revision"].asUInt64(), before + 1);
  const Json::Value state = result("tv.state");
  EXPECT_EQ(state["revision"].asUInt64(), before + 1);
  EXPECT_EQ(state["region"], 9);
  for (const char* const member : {"windows", "inputs", "isp", "country", "clock", "start"}) {
    EXPECT_TRUE(state.isMember(member)) << member;
  }
}

TEST_F(SetMethods, ListServices) {
  const Json::Value all = result("tv.services");
  EXPECT_EQ(all["services"].size(), all["total"].asUInt());
  EXPECT_GT(all["total"].asUInt(), 10U);
  const Json::Value page = result("tv.services", named({{"offset", 2}, {"limit", 3}}));
  EXPECT_EQ(page["total"], all["total"]);
  ASSERT_EQ(page["services"].size(), 3U);
  EXPECT_EQ(page["services"][0], all["services"][2]);
  std::size_t kinds = 0;
  for (const char* const kind : {"television", "radio", "data"}) {
    const Json::Value found = result("tv.services", named({{"kind", kind}}));
    for (const Json::Value& service : found["services"]) EXPECT_EQ(service["kind"], kind);
    kinds += found["total"].asUInt();
  }
  EXPECT_EQ(kinds, all["total"].asUInt());
  const Json::Value cable = result("tv.services", named({{"antenna", "cable"}, {"text", "LIGHT"}}));
  for (const Json::Value& service : cable["services"]) EXPECT_EQ(service["antenna"], "cable");
  EXPECT_EQ(codeOf(client.call("tv.services", named({{"kind", "film"}}))), -32602);
  EXPECT_EQ(codeOf(client.call("tv.services", named({{"favourite", 256}}))), -32602);
  EXPECT_EQ(codeOf(client.call("tv.services", named({{"major", 65536}}))), -32602);
  const Json::Value fourth = result("tv.services", named({{"antenna", "cable"}, {"major", 4}}));
  EXPECT_EQ(fourth["total"], 2);
  for (const Json::Value& service : fourth["services"]) EXPECT_EQ(service["major"], 4);
  const Json::Value third = result("tv.services", named({{"key", all["services"][2]["key"]}}));
  EXPECT_EQ(third["total"], 1);
  EXPECT_EQ(third["services"][0], all["services"][2]);
  EXPECT_EQ(result("tv.services", named({{"key", 4711}}))["total"], 0);
}

TEST_F(SetMethods, ListTheServicesOfAGroupAndOfAFavouriteGroup) {
  const Json::Value first = result("tv.services")["services"][0];
  tv().setFavouritesOf(first["key"].asInt64(), {{7, true}, {8, false}});
  const Json::Value found = result("tv.services", named({{"favourite", 7}}));
  ASSERT_EQ(found["total"], 1);
  EXPECT_EQ(found["services"][0]["key"], first["key"]);
  EXPECT_EQ(found["services"][0]["favourites"], json("[7]"));
  EXPECT_EQ(result("tv.services", named({{"favourite", 8}}))["total"], 0);
  std::size_t total = 0;
  std::set<std::string> groups;
  const Json::Value all = result("tv.services");
  for (const Json::Value& service : all["services"]) groups.insert(service["group"].asString());
  for (const std::string& group : groups) total += result("tv.services", named({{"group", group}}))["total"].asUInt();
  EXPECT_EQ(total, all["total"].asUInt());
  Json::Value named = Json::arrayValue;
  for (const std::string& group : groups) named.append(group);
  EXPECT_EQ(all["groups"], named);
  EXPECT_EQ(result("tv.services", json(R"({"text":"no such name","limit":0})"))["groups"], named);
}

constexpr const char* list =
    "One;Net:578000:I999C23D0M64T8G4Y0:T:27500:101:102=eng:0:0:11:9018:4100:0\n"
    "Two;Net:578000:I999C23D0M64T8G4Y0:T:27500:201:202=eng:0:0:12:9018:4100:0\n";

TEST_F(SetMethods, ImportLists) {
  const Json::Value report = result("tv.import", named({{"content", std::string(list) + "noise\n"}}));
  EXPECT_EQ(report["imported"], 2);
  EXPECT_EQ(report["added"], 2);
  EXPECT_GT(report["gone"].asUInt(), 0U);
  EXPECT_EQ(report["total"], 1);
  ASSERT_EQ(report["problems"].size(), 1U);
  EXPECT_EQ(report["problems"][0]["line"], 3);
  EXPECT_TRUE(report["problems"][0]["at"].isString() && report["problems"][0]["reason"].isString());
  EXPECT_EQ(result("tv.services")["total"], 2);
  EXPECT_EQ(result("tv.import", named({{"content", list}, {"add", true}, {"format", "vdr"}}))["changed"], 0);
}

TEST_F(SetMethods, ExportLists) {
  result("tv.import", named({{"content", list}}));
  const Json::Value exported = result("tv.export", named({{"format", "vdr"}}));
  EXPECT_EQ(exported["content"], list);
  EXPECT_EQ(exported["services"], 2);
  EXPECT_EQ(exported["lost"].size(), 0U);
  const Json::Value whole = result("tv.export")["content"];
  EXPECT_EQ(result("tv.import", named({{"content", whole}}))["changed"], 0);
  EXPECT_EQ(result("tv.export", named({{"format", "m3u"}}))["leftOut"], 2);
  EXPECT_EQ(codeOf(client.call("tv.export", named({{"format", "zap"}}))), 1002);
}

std::string enumOf(const char* method, const char* parameter) {
  for (const Parameter& one : findMethod(method)->parameters) {
    if (one.name == parameter) return virtualtv::json::write(json(std::string(one.schema))["enum"]);
  }
  return "";
}

TEST(SetSchemas, NameAllFormatsAndEditsThatThereAre) {
  Json::Value formats(Json::arrayValue);
  for (const auto& format : import::formats()) {
    if (import::isWritten(format)) formats.append(std::string(format.name));
  }
  EXPECT_EQ(enumOf("tv.export", "format"), virtualtv::json::write(formats));
  Json::Value edits(Json::arrayValue);
  std::string words = "ID ";
  for (const ServiceEdit& edit : serviceEdits()) {
    edits.append(std::string(edit.name));
    words.append(words == "ID " ? "" : "|").append(edit.name);
    if (!edit.value.empty()) words.append(" ").append(edit.value);
  }
  EXPECT_EQ(enumOf("tv.editService", "change"), virtualtv::json::write(edits));
  EXPECT_EQ(shell::dotCommand(".service").usage, words);
}

TEST_F(SetMethods, EditServices) {
  result("tv.import", named({{"content", list}}));
  result("tv.editService", named({{"service", "#1"}, {"change", "renumber"}, {"value", 7}}));
  EXPECT_EQ(result("tv.services", named({{"major", 7}}))["total"], 1);
  result("tv.editService", named({{"service", "#1"}, {"change", "remove"}}));
  EXPECT_EQ(result("tv.services")["total"], 1);
  EXPECT_EQ(codeOf(client.call("tv.editService", named({{"service", "#1"}, {"change", "remove"}}))), 1002);
  EXPECT_EQ(codeOf(client.call("tv.editService", named({{"service", "#2"}, {"change", "paint"}}))), 1002);
}

TEST_F(SetMethods, SayWhyAListIsNotImported) {
  const Json::Value before = result("tv.services")["total"];
  for (const auto& params : {named({{"content", "nothing known"}}), named({{"content", list}, {"format", "x"}}),
                             named({{"content", list}, {"encoding", "x"}}), named({{"content", ""}})}) {
    const Json::Value reply = client.call("tv.import", params);
    EXPECT_EQ(codeOf(reply), 1002) << params.toStyledString();
    EXPECT_FALSE(reasonOf(reply).empty());
  }
  EXPECT_EQ(result("tv.services")["total"], before);
}

TEST_F(SetMethods, TellWhatIsWrongWithAListWithoutAService) {
  const Json::Value reply =
      client.call("tv.import", named({{"content", "One:578000:h\nnoise\n"}, {"format", "vdr"}, {"name", "a.conf"}}));
  EXPECT_EQ(codeOf(reply), 1002);
  EXPECT_EQ(reasonOf(reply), "a.conf: no service in it");
  const Json::Value& data = reply["error"]["data"];
  EXPECT_EQ(data["total"], 2);
  ASSERT_EQ(data["problems"].size(), 2U);
  EXPECT_EQ(data["problems"][0]["line"], 1);
  EXPECT_EQ(data["problems"][0]["reason"], "\"One:578000:h\" has 3 of the 13 fields of a service");
}

TEST_F(SetMethods, ReadAndTurnKnobs) {
  const Json::Value all = result("tv.knobs");
  EXPECT_EQ(all["knobs"].size(), knobNames(tv()).size());
  EXPECT_EQ(all["kinds"].size(), knobs().size());
  for (const Json::Value& knob : all["knobs"]) {
    EXPECT_EQ(result("tv.get", named({{"name", knob["name"]}}))["value"], knob["value"]);
  }
  result("tv.set", json(R"(["input.31.plugged", "off"])"));
  EXPECT_EQ(result("tv.get", json(R"(["input.31.plugged"])"))["value"], "off");
  EXPECT_EQ(codeOf(client.call("tv.set", json(R"(["region", 1.5])"))), -32602);
  EXPECT_EQ(codeOf(client.call("tv.set", json(R"(["region", [1]])"))), -32602);
  EXPECT_EQ(codeOf(client.call("tv.set", json(R"(["main.nothing", 1])"))), 1002);
  EXPECT_EQ(reasonOf(client.call("tv.get", json(R"(["nothing"])"))), "there is no knob 'nothing'; tv.knobs lists them");
  EXPECT_EQ(reasonOf(client.call("tv.set", json(R"(["main", "1"])"))), "'main' is a group of knobs");
  EXPECT_EQ(reasonOf(client.call("tv.fault", json(R"({"operation": "Nothing", "result": 0})"))),
            "no operation 'Nothing'; tv.operations lists them");
}

TEST_F(SetMethods, ReadAndWriteSettingsKeys) {
  result("tv.setSetting", json(R"(["db/a", 5])"));
  result("tv.setSetting", json(R"(["db/b", "text"])"));
  tv().setSetting("db/c", "\xFF");
  std::map<std::string, Json::Value> found;
  const Json::Value settings = result("tv.settings");
  for (const Json::Value& setting : settings["settings"]) found[setting["key"].asString()] = setting;
  EXPECT_EQ(found["db/a"]["value"], 5);
  EXPECT_EQ(found["db/b"]["value"], "text");
  EXPECT_EQ(found["db/c"]["value"], "\xEF\xBF\xBD");
  EXPECT_EQ(found["db/c"]["bytes"], "/w==");
  result("tv.removeSetting", json(R"(["db/a"])"));
  EXPECT_EQ(codeOf(client.call("tv.removeSetting", json(R"(["db/a"])"))), 1002);
  EXPECT_EQ(codeOf(client.call("tv.setSetting", json(R"(["db/a", 2147483648])"))), -32602);
}

TEST_F(SetMethods, RestoreWhatTheySnapshot) {
  const Json::Value before = result("tv.snapshot");
  result("tv.import", named({{"content", list}}));
  result("tv.setSetting", json(R"(["db/a", 5])"));
  EXPECT_NE(result("tv.snapshot"), before);
  result("tv.restore", before);
  EXPECT_EQ(result("tv.snapshot"), before);
  const Json::Value reply = client.call("tv.restore", json(R"([{"version": 2}])"));
  EXPECT_EQ(codeOf(reply), 1002);
  EXPECT_EQ(reasonOf(reply), "version: this program reads version 1, not 2");
}

TEST_F(SetMethods, SetAndRemoveFaults) {
  const Json::Value id = result("tv.fault", json(R"({"operation": "IServiceNavigation::GetTvMode", "nth": 2, "times": 2,
      "outputs": {"mode": "1,2"}, "window": "main"})"))["id"];
  const Json::Value faults = result("tv.faults")["faults"];
  ASSERT_EQ(faults.size(), 1U);
  EXPECT_EQ(faults[0]["id"], id);
  EXPECT_EQ(faults[0]["operation"], "IServiceNavigation::GetTvMode");
  EXPECT_EQ(faults[0]["hits"], 0);
  EXPECT_EQ(faults[0]["fault"], "IServiceNavigation::GetTvMode nth=2 times=2 window=main out.mode=1,2");
  result("tv.clearFaults", named({{"id", id}}));
  EXPECT_EQ(result("tv.faults")["faults"].size(), 0U);
  EXPECT_EQ(codeOf(client.call("tv.clearFaults", named({{"id", id}}))), 1002);
  for (const char* const params : {R"({"operation": "IServiceNavigation::GetTvMode", "result": null})",
                                   R"({"operation": "no.such", "result": 0})", R"({"operation": "vconf_set_int"})"}) {
    EXPECT_EQ(codeOf(client.call("tv.fault", json(params))), 1002) << params;
  }
  EXPECT_EQ(codeOf(client.call("tv.fault", json(R"(["vconf_set_int", 1, 1, [0]])"))), -32602);
  EXPECT_GT(result("tv.operations")["operations"].size(), 50U);
}

TEST_F(SetMethods, LimitAFaultToASession) {
  Connected other(server);
  client.run("GetTVMode");
  const int healthy = other.run("GetTVMode").asInt();
  Json::Value params = json(R"({"operation": "IServiceNavigation::GetTvMode", "result": 0, "times": "always"})");
  params["session"] = result("session.open")["session"];
  result("tv.fault", params);
  EXPECT_EQ(other.run("GetTVMode"), healthy);
  EXPECT_EQ(client.run("GetTVMode"), -1);
  params["session"] = "none";
  EXPECT_EQ(codeOf(client.call("tv.fault", params)), 1003);
}

TEST_F(SetMethods, AreAllDescribed) {
  const Json::Value document = result("rpc.discover");
  EXPECT_EQ(document, json(server.openRpc()));
  EXPECT_TRUE(document["openrpc"].asString().starts_with("1."));
  std::set<std::string> described;
  for (const Json::Value& method : document["methods"]) {
    EXPECT_TRUE(described.insert(method["name"].asString()).second) << "twice: " << method["name"];
    EXPECT_FALSE(method["summary"].asString().empty());
    EXPECT_TRUE(method["result"]["schema"].isObject());
    for (const Json::Value& parameter : method["params"]) EXPECT_TRUE(parameter["schema"].isObject());
  }
  EXPECT_EQ(described.size(), methods().size());
}

TEST_F(SetMethods, AreDescribedWithTheFailureCodesOfCommands) {
  const Json::Value document = result("rpc.discover");
  const auto failuresOf = [&](const char* name) {
    for (const Json::Value& method : document["methods"]) {
      if (method["name"] == name) return method["result"]["schema"]["x-failures"];
    }
    return Json::Value();
  };
  const Json::Value window = failuresOf("window.SetWindow");
  ASSERT_EQ(window.size(), 1U);
  EXPECT_EQ(window[0]["value"], 0);
  EXPECT_TRUE(window[0]["description"].asString().starts_with("Another connection")) << window;
  const Json::Value mode = failuresOf("window.GetTVMode");
  ASSERT_EQ(mode.size(), 1U) << "what is answered where the set tells nothing";
  EXPECT_EQ(mode[0]["value"], -1);
}

}  // namespace
}  // namespace virtualtv::rpc

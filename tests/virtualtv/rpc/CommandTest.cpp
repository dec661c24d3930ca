// SPDX-License-Identifier: MIT
// The plug-in's commands as methods.
#include "catalogue/Catalogue.h"
#include "virtualtv/rpc/RpcTest.h"

namespace virtualtv::rpc {
namespace {

class Commands : public RpcTest {
 protected:
  Connected client{server};
};

TEST_F(Commands, AreMethodsByTheirNames) {
  for (const std::string& name : commandNames()) {
    const Json::Value result = client.result("window." + name);
    EXPECT_TRUE(result["accepted"].isBool()) << name;
    EXPECT_TRUE(result["kind"].isString()) << name;
  }
  EXPECT_EQ(commandNames().size(), 73U);
}

TEST_F(Commands, AnswerTheKindAndTheValueOfTheirReply) {
  EXPECT_EQ(client.result("window.SetChannel", json("[3, 0]")), json(R"({"accepted":true,"kind":"int","value":1})"));
  EXPECT_EQ(client.result("window.GetCurrentChannel_Name"),
            json(R"({"accepted":true,"kind":"unicode","value":"Lighthouse News"})"));
  EXPECT_EQ(client.result("window.GetTVMode")["kind"], "int");
  EXPECT_EQ(client.result("window.execute", json(R"({"name":"NoSuch"})"))["accepted"], false);
}

TEST_F(Commands, AreDescribedWithTheKindsOfTheirReplies) {
  const Json::Value document = client.result("rpc.discover");
  const auto resultOf = [&](const std::string& name) {
    for (const Json::Value& method : document["methods"]) {
      if (method["name"] == "window." + name) return method["result"]["schema"];
    }
    return Json::Value();
  };
  const auto kindsOf = [&](const std::string& name) { return resultOf(name)["properties"]["kind"]["enum"]; };
  EXPECT_EQ(kindsOf("SetChannel"), json(R"(["int", "empty"])"));
  EXPECT_EQ(kindsOf("GetScreenRect"), json(R"(["int", "ascii", "empty"])"));
  EXPECT_EQ(kindsOf("GetCurrentChannel_Name"), json(R"(["int", "unicode", "empty"])"));
  EXPECT_EQ(kindsOf("execute"), json(R"(["int", "ascii", "unicode", "empty"])"));
  EXPECT_EQ(resultOf("GetTVMode")["description"], catalogue().find("GetTVMode")->answerHelp);
}

TEST_F(Commands, TakeTextsNumbersAndTruths) {
  EXPECT_EQ(client.run("SetChannel", json(R"(["3", "0"])")), 1);
  EXPECT_EQ(client.run("SetChannel", json(R"({"major": 3, "minor": false})")), 1);
  EXPECT_EQ(client.run("SetChannel", json("[3.0]")), 1) << "a whole number, however it is written";
  for (const char* params :
       {"[1.5]", "[null]", "[[]]", "[{}]", "[9007199254740992]", "[-9007199254740992]", "[1e300]", R"(["a\u0000b"])"}) {
    EXPECT_EQ(codeOf(client.call("window.SetChannel", json(params))), -32602) << params;
  }
}

TEST_F(Commands, TakeNoMoreParametersThanTheyHave) {
  const Json::Value reply = client.call("window.GetTVMode", json("[1]"));
  EXPECT_EQ(codeOf(reply), -32602);
  EXPECT_EQ(reasonOf(reply), "1 parameters; it takes none");
}

TEST_F(Commands, OfAnyNameAreRunAsOnTheSet) {
  EXPECT_EQ(client.result("window.execute", json(R"(["SetChannel", [3, 0]])"))["value"], 1);
  EXPECT_EQ(codeOf(client.call("window.execute", json(R"(["SetChannel", [1,2,3,4,5]])"))), -32602);
  EXPECT_EQ(codeOf(client.call("window.execute", json(R"(["SetChannel", 5])"))), -32602);
  EXPECT_EQ(codeOf(client.call("window.execute", json(R"(["Set\u0000Channel"])"))), -32602);
  EXPECT_EQ(codeOf(client.call("window.execute", json("[]"))), -32602);
  EXPECT_EQ(client.result("window.execute", json(R"([""])"))["accepted"], false);
  for (const std::string& name : listCommandNames()) {
    EXPECT_TRUE(client.result("window.executeWithParamList", json("[\"" + name + "\", [\"1\"]]"))["accepted"].asBool());
  }
}

TEST_F(Commands, RunOnAnEngineOfTheirSession) {
  Connected other(server);
  EXPECT_EQ(client.run("SetWindow", json("[1]")), 1);
  EXPECT_EQ(client.run("GetSource").type(), other.run("GetSource").type());
  const Json::Value sessions = client.result("tv.sessions")["sessions"];
  ASSERT_EQ(sessions.size(), 2U);
  for (const Json::Value& session : sessions) {
    EXPECT_EQ(session["engines"].size(), 1U);
    EXPECT_EQ(session["connected"], true);
  }
}

TEST_F(Commands, OpenAnEngineOnlyWhenTheFirstIsRun) {
  client.result("session.open", json(R"({"appId": "app", "widgetId": "w"})"));
  client.result("tv.state");
  EXPECT_TRUE(device().host().engines().empty());
  client.run("GetTVMode");
  EXPECT_EQ(device().host().engines().size(), 1U);
  client.end();
  EXPECT_TRUE(device().host().engines().empty());
}

TEST_F(Commands, TellFailuresAsResults) {
  client.result("tv.fault", json(R"({"operation": "IServiceNavigation::GetTvMode", "result": 0, "times": "always"})"));
  EXPECT_EQ(client.run("GetTVMode"), -1);
  client.result("tv.fault", json(R"({"operation": "IServiceNavigation::TuneService", "result": "throw"})"));
  const Json::Value thrown = client.call("window.SetChannel", json("[3,0]"));
  EXPECT_EQ(codeOf(thrown), 0) << thrown.toStyledString();
}

}  // namespace
}  // namespace virtualtv::rpc

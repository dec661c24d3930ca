// SPDX-License-Identifier: MIT
// A refusal answers the request that it belongs to, in words for a person.
#include <string>

#include "virtualtv/rpc/RpcTest.h"

namespace virtualtv::rpc {
namespace {

class Refusals : public RpcTest {
 protected:
  Connected client{server};
};

TEST_F(Refusals, OfWhatIsNoRequestHaveItsId) {
  for (const std::string members : {R"("method":"tv.state","params":null)", R"("method":"tv.state","params":"x")",
                                    R"("params":[])", R"("method":7)", R"("method":"\ud800")"}) {
    const Json::Value reply = client.replyTo(R"({"jsonrpc":"2.0","id":43,)" + members + "}");
    EXPECT_EQ(codeOf(reply), -32600) << members;
    EXPECT_EQ(reply["id"], 43) << members;
  }
  EXPECT_TRUE(client.replyTo(R"({"jsonrpc":"2.0","method":"tv.state","params":null})")["id"].isNull());
}

TEST_F(Refusals, OfASessionThatThereIsNotAnswerEachRequest) {
  const auto answered = [&](const std::string& body) { return post(body, "nosuch").value_or("nothing"); };
  const Json::Value one = json(answered(R"({"jsonrpc":"2.0","id":7,"method":"tv.state"})"));
  EXPECT_EQ(one["id"], 7);
  EXPECT_EQ(codeOf(one), 1003);
  const Json::Value batch = json(answered(
      R"([{"jsonrpc":"2.0","id":1,"method":"tv.state"},{"jsonrpc":"2.0","method":"tv.state"},7,{"jsonrpc":"2.0","id":"b","method":"x"}])"));
  ASSERT_EQ(batch.size(), 3U);
  EXPECT_EQ(batch[0]["id"], 1);
  EXPECT_EQ(codeOf(batch[0]), 1003);
  EXPECT_EQ(codeOf(batch[1]), -32600);
  EXPECT_EQ(batch[2]["id"], "b");
  EXPECT_EQ(answered(R"({"jsonrpc":"2.0","method":"tv.state"})"), "");
  EXPECT_EQ(codeOf(json(answered("[1,"))), -32700);
}

TEST_F(Refusals, OfASessionThatEndsAnswerEachRequestThatWaits) {
  client.result("tv.set", json(R"(["latency.IServiceNavigation::GetTvMode", 1000])"));
  Connected other(server);
  const std::string session = client.result("session.open")["session"].asString();
  client.say(
      R"([{"jsonrpc":"2.0","id":1,"method":"tv.get","params":["region"]},{"jsonrpc":"2.0","id":2,"method":"window.GetTVMode"},{"jsonrpc":"2.0","id":3,"method":"tv.get","params":["region"]}])");
  client.say(R"({"jsonrpc":"2.0","id":4,"method":"tv.get","params":["region"]})");
  client.say(R"({"jsonrpc":"2.0","method":"tv.get","params":["region"]})");
  EXPECT_TRUE(client.take().empty());
  Json::Value which;
  which["session"] = session;
  other.result("session.close", which);
  const std::vector<Json::Value> replies = client.take();
  ASSERT_EQ(replies.size(), 2U);
  ASSERT_EQ(replies[0].size(), 3U);
  EXPECT_TRUE(replies[0][0].isMember("result"));
  for (Json::ArrayIndex at = 1; at < 3; ++at) {
    EXPECT_EQ(replies[0][at]["id"].asUInt(), at + 1);
    EXPECT_EQ(codeOf(replies[0][at]), 1003);
  }
  EXPECT_EQ(replies[1]["id"], 4);
  EXPECT_EQ(codeOf(replies[1]), 1003);
  EXPECT_EQ(client.done, 5);
}

TEST_F(Refusals, AMemberWhoseNameNoUtf8StandsForIsPassedOver) {
  for (int time = 0; time < 2; ++time) {  // and the session goes on
    const Json::Value reply = client.replyTo(R"({"\ud800":1,"\udfff":2,"jsonrpc":"2.0","id":5,"method":"tv.faults"})");
    EXPECT_TRUE(reply.isMember("result")) << reply;
  }
}

TEST_F(Refusals, OfHalfASurrogatePairAreThoseOfAParameter) {
  const Json::Value reply = client.replyTo(R"({"jsonrpc":"2.0","id":5,"method":"tv.get","params":["\ud800"]})");
  EXPECT_EQ(codeOf(reply), -32602);
  EXPECT_EQ(reply["id"], 5);
  EXPECT_EQ(reasonOf(reply), "half of a surrogate pair alone is no character");
  for (const char* params : {R"(["\udfff"])", R"(["\uDFFF",1e2])", R"({"name":"\ud800","more":1e2})"}) {
    const Json::Value other =
        client.replyTo(R"({"jsonrpc":"2.0","id":6,"method":"tv.get","params":)" + std::string(params) + "}");
    EXPECT_EQ(codeOf(other), -32602) << params;
    EXPECT_EQ(other["id"], 6) << params;
  }
}

TEST_F(Refusals, ShowNamesWithZeroBytes) {
  const auto reason = [&](const std::string& rest) {
    return reasonOf(client.replyTo(R"({"jsonrpc":"2.0","id":1,)" + rest + "}"));
  };
  EXPECT_EQ(reason(R"("method":"a\u0000b")"),
            "there is no method 'a\xEF\xBF\xBD"
            "b'");
  EXPECT_EQ(reason(R"("method":"tv.state","params":{"\u0000":1})"),
            "\xEF\xBF\xBD: there is no such parameter; it takes none");
  EXPECT_EQ(reason(R"("method":"tv.get","params":["a\u0000b"])"), "name: a text without U+0000 is wanted");
  EXPECT_EQ(reason(R"("method":"tv.removeSetting","params":["a\u0000b"])"), "key: a text without U+0000 is wanted");
}

TEST_F(Refusals, AreNotAsLongAsWhatTheyRefuse) {
  Json::Value params;
  params.append(std::string(300'000, 'x'));
  EXPECT_LT(reasonOf(client.call("tv.get", params)).size(), 5000U);
  EXPECT_LT(reasonOf(client.call(std::string(300'000, 'x'))).size(), 300U);
}

TEST_F(Refusals, OfFaultsSpeakOfParameters) {
  EXPECT_EQ(reasonOf(client.call("tv.fault", json(R"(["IServiceNavigation::GetTvMode"])"))),
            "a result or outputs are wanted");
  for (const std::string wrong : {R"({"operation":"vconf_get_int","window":5,"result":0})",
                                  R"({"operation":"vconf_get_int","nth":"2","result":0})"}) {
    EXPECT_EQ(codeOf(client.call("tv.fault", json(wrong))), -32602) << wrong;
  }
  EXPECT_EQ(codeOf(client.call("tv.import", json(R"({"content":"a","name":5})"))), -32602);
}

TEST_F(Refusals, LeaveNumbersThatAreWholeAlone) {
  EXPECT_EQ(client.result("tv.services", json(R"({"limit":1.0})"))["services"].size(), 1U);
  EXPECT_TRUE(client.result("tv.setSetting", json(R"(["a/key", 3e0])")).isMember("revision"));
  EXPECT_EQ(tv().settings().get("a/key"), Setting(3));
}

TEST_F(Refusals, OfDelaysThatWouldTakeTooLong) {
  EXPECT_EQ(codeOf(client.call("tv.set", json(R"(["latency.IServiceNavigation::GetTvMode", 600001])"))), 1002);
  EXPECT_EQ(codeOf(client.call("tv.set", json(R"(["latency.IServiceNavigation::GetTvMode", 600000])"))), 0);
}

TEST_F(Refusals, OfMoreEnginesThanASessionMayHave) {
  for (int engine = 0; engine < 16; ++engine) {
    client.result("tv.run", json("[\".engine e" + std::to_string(engine) + "\"]"));
  }
  const Json::Value lines = client.result("tv.run", json(R"([".engine e16"])"))["lines"];
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0], "error: the session has 16 engines open, as many as may be");
  client.result("tv.run", json(R"([".close e3"])"));
  EXPECT_TRUE(client.result("tv.run", json(R"([".engine e16"])"))["lines"].empty());
}

TEST_F(Refusals, AreNoneOfRemarks) {
  client.result("events.subscribe", json(R"([["command"]])"));
  client.run("GetTVMode");
  EXPECT_EQ(client.events().size(), 1U);
  EXPECT_TRUE(client.result("tv.run", json(R"(["# a remark"])"))["lines"].empty());
  EXPECT_TRUE(client.result("tv.run", json(R"(["  "])"))["lines"].empty());
  EXPECT_TRUE(client.events().empty());
}

TEST_F(Refusals, DoNotChangeTheOrderOfSessions) {
  std::vector<std::unique_ptr<Connected>> more;
  more.reserve(12);
  for (int at = 0; at < 12; ++at) more.push_back(std::make_unique<Connected>(server));
  const Json::Value sessions = client.result("tv.sessions")["sessions"];
  ASSERT_EQ(sessions.size(), 13U);
  EXPECT_TRUE(sessions[1]["session"].asString().ends_with("-2"));
  EXPECT_TRUE(sessions[12]["session"].asString().ends_with("-13"));
}

}  // namespace
}  // namespace virtualtv::rpc

// SPDX-License-Identifier: MIT
// JSON-RPC itself: what counts as a request, and which answer it gets.
#include "virtualtv/rpc/RpcTest.h"

namespace virtualtv::rpc {
namespace {

class Envelope : public RpcTest {
 protected:
  /// Expects no reply to a message.
  void expectSilence(const std::string& message) {
    client.say(message);
    EXPECT_EQ(client.takeTexts(), std::vector<std::string>()) << message;
  }

  Connected client{server};
};

TEST_F(Envelope, IsAnsweredWithItsId) {
  for (const std::string id : {"1", "\"a\"", "null", "-5", "1.5", "9007199254740993"}) {
    const Json::Value reply = client.replyTo(R"({"jsonrpc":"2.0","method":"tv.faults","id":)" + id + "}");
    EXPECT_EQ(reply["id"], json(id)) << id;
    EXPECT_EQ(codeOf(reply), 0);
  }
  EXPECT_EQ(client.done, 6);
}

TEST_F(Envelope, IsAnsweredWithItsIdAsItStands) {
  for (const std::string id :
       {"-0", "1.50", "1E2", "123456789012345678901234567890", R"("\u0061\/\"")", "\"\xC3\xA9\""}) {
    client.say(R"( { "id" : )" + id + R"( , "jsonrpc" : "2.0" , "method" : "no.such" } )");
    const std::vector<std::string> replies = client.takeTexts();
    ASSERT_EQ(replies.size(), 1U);
    EXPECT_TRUE(replies.front().starts_with(R"({"jsonrpc":"2.0","id":)" + id + ",")) << replies.front();
  }
}

TEST_F(Envelope, MayBeWrittenWithEscapesAndInAnyOrder) {
  const Json::Value reply = client.replyTo(
      R"({"p\u0061rams":{"n\u0061me":"r\u0065gion"},"method":"tv\u002eget","more":[{"id":2}],"id":1,"jsonrpc":"2\u002e0"})");
  EXPECT_EQ(codeOf(reply), 0);
  EXPECT_EQ(reply["id"], 1);
}

TEST_F(Envelope, WithTwoMembersOfOneNameHasTheLast) {
  const Json::Value reply = client.replyTo(
      R"({"jsonrpc":"1.0","id":[],"method":1,"params":1,"jsonrpc":"2.0","id":7,"method":"tv.get","params":["region"]})");
  EXPECT_EQ(codeOf(reply), 0);
  EXPECT_EQ(reply["id"], 7);
}

TEST_F(Envelope, ThatHasANumberBeyondThoseOfADoubleIsAParseError) {
  for (const std::string text : {R"({"jsonrpc":"2.0","method":"tv.faults","id":1e999})",
                                 R"({"jsonrpc":"2.0","method":"tv.get","params":["region",1e999],"id":1})",
                                 R"({"jsonrpc":"2.0","method":"tv.faults","more":-1e999,"id":1})",
                                 R"([{"jsonrpc":"2.0","method":"tv.faults","id":1},1e999])"}) {
    const Json::Value reply = client.replyTo(text);
    EXPECT_EQ(codeOf(reply), -32700) << text;
    EXPECT_TRUE(reasonOf(reply).ends_with("1e999' is not a number")) << reasonOf(reply);
  }
}

TEST_F(Envelope, ThatIsANotificationIsCarriedOutAndNotAnswered) {
  expectSilence(R"({"jsonrpc":"2.0","method":"tv.set","params":["region","3"]})");
  EXPECT_EQ(client.result("tv.get", json(R"(["region"])"))["value"], "3");
  expectSilence(R"({"jsonrpc":"2.0","method":"no.such"})");
  expectSilence(R"({"jsonrpc":"2.0","method":"tv.set","params":["region","x"]})");
  EXPECT_EQ(client.done, 4);
}

TEST_F(Envelope, ThatIsNoJsonIsAParseError) {
  for (const std::string text : {"", "{", "{\"jsonrpc\":\"2.0\",}", "[1,", "\xFF", "{} {}", "// a"}) {
    const Json::Value reply = client.replyTo(text);
    EXPECT_EQ(codeOf(reply), -32700) << text;
    EXPECT_TRUE(reply["id"].isNull() && reply.isMember("id"));
    EXPECT_TRUE(reasonOf(reply).starts_with("line 1, column ")) << reasonOf(reply);
  }
}

TEST_F(Envelope, HasLimits) {
  const std::string deep = std::string(101, '[') + std::string(101, ']');
  EXPECT_EQ(reasonOf(client.replyTo(deep)), "line 1, column 101: nested deeper than 100");
  std::string many = "[1";
  for (int count = 0; count < 1'000'000; ++count) many += ",1";
  EXPECT_EQ(codeOf(client.replyTo(many + "]")), -32700);
}

TEST_F(Envelope, ThatIsNoRequestIsRefused) {
  for (const std::string text :
       {"1", "null", "\"a\"", "true", "{}", R"({"method":"tv.state","id":1})",
        R"({"jsonrpc":"1.0","method":"tv.state","id":1})", R"({"jsonrpc":2.0,"method":"tv.state","id":1})",
        R"({"jsonrpc":"2.0","method":1,"id":1})", R"({"jsonrpc":"2.0","id":1})",
        R"({"jsonrpc":"2.0","method":"tv.state","params":"a","id":1})",
        R"({"jsonrpc":"2.0","method":"tv.state","params":null,"id":1})",
        R"({"jsonrpc":"2.0","method":"tv.state","id":{}})", R"({"jsonrpc":"2.0","method":"tv.state","id":true})"}) {
    const Json::Value reply = client.replyTo(text);
    EXPECT_EQ(codeOf(reply), -32600) << text;
    EXPECT_FALSE(reasonOf(reply).empty());
    const bool hasId = text.find(R"("id":1)") != text.npos;
    EXPECT_EQ(reply["id"], hasId ? Json::Value(1) : Json::Value()) << text;
  }
}

TEST_F(Envelope, WithParametersThatAMethodDoesNotHaveIsRefused) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {R"("tv.get","params":[])", "there is no \"name\""},
      {R"("tv.get")", "there is no \"name\""},
      {R"("tv.get","params":{"name":null})", "there is no \"name\""},
      {R"("tv.get","params":[1])", "name: a text is wanted, not 1"},
      {R"("tv.get","params":["region",2])", "2 parameters; it takes name"},
      {R"("tv.get","params":{"name":"region","more":2})", "more: there is no such parameter; it takes name"},
      {R"("tv.state","params":{"a":1})", "a: there is no such parameter; it takes none"},
      {R"("tv.services","params":{"limit":-1})", "limit: a number from 0 to 9223372036854775807 is wanted, not -1"},
  };
  for (const auto& [call, reason] : cases) {
    const Json::Value reply = client.replyTo(R"({"jsonrpc":"2.0","id":1,"method":)" + call + "}");
    EXPECT_EQ(codeOf(reply), -32602) << call;
    EXPECT_EQ(reasonOf(reply), reason);
    EXPECT_EQ(reply["id"], 1);
  }
}

TEST_F(Envelope, OfAnUnknownMethodIsRefused) {
  for (const std::string name : {"", "tv", "tv.State", "window.Foo", "window.", "state"}) {
    const Json::Value reply = client.call(name);
    EXPECT_EQ(codeOf(reply), -32601) << name;
    EXPECT_EQ(reasonOf(reply), "there is no method '" + name + "'");
  }
}

TEST_F(Envelope, InABatchIsAnsweredInOrder) {
  const Json::Value replies = client.replyTo(R"([{"jsonrpc":"2.0","id":1,"method":"tv.set","params":["region","2"]},
      {"jsonrpc":"2.0","method":"tv.set","params":["region","5"]}, 7,
      {"jsonrpc":"2.0","id":"x","method":"tv.get","params":["region"]}])");
  ASSERT_EQ(replies.size(), 3U);
  EXPECT_EQ(replies[0]["id"], 1);
  EXPECT_EQ(codeOf(replies[1]), -32600);
  EXPECT_EQ(replies[2]["id"], "x");
  EXPECT_EQ(replies[2]["result"]["value"], "5");
}

TEST_F(Envelope, InABatchOfNotificationsIsNotAnswered) {
  expectSilence(R"([{"jsonrpc":"2.0","method":"tv.set","params":["region","2"]}])");
}

TEST_F(Envelope, InABatchMayBeThousandfold) {
  const Json::Value none = client.replyTo("[]");
  EXPECT_EQ(codeOf(none), -32600);
  std::string batch;
  for (int count = 0; count < 1000; ++count) {
    batch += std::string(count == 0 ? "" : ",") + R"({"jsonrpc":"2.0","id":0,"method":"tv.faults"})";
  }
  EXPECT_EQ(client.replyTo("[" + batch + "]").size(), 1000U);
  const Json::Value tooMany = client.replyTo("[1," + batch + "]");
  EXPECT_EQ(codeOf(tooMany), -32600);
  EXPECT_EQ(reasonOf(tooMany), "a batch has at most 1,000 requests");
}

TEST_F(Envelope, ThatThrowsSaysWhatTheSetDoesNotTake) {
  const Json::Value reply = client.call("tv.set", json(R"(["region","x"])"));
  EXPECT_EQ(codeOf(reply), 1002);
  EXPECT_NE(reasonOf(reply).find("'x'"), std::string::npos) << reasonOf(reply);
  EXPECT_EQ(codeOf(client.call("tv.get", json(R"(["no.such"])"))), 1002);
}

}  // namespace
}  // namespace virtualtv::rpc

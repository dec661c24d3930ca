// The examples in the OpenRPC document.
#include "rpc/Examples.h"

#include <string>

#include "catalogue/Catalogue.h"
#include "virtualtv/rpc/RpcTest.h"

namespace virtualtv::rpc {
namespace {

class Examples : public RpcTest {
 protected:
  /// The examples of a command in the document.
  Json::Value examplesOf(const std::string& command) {
    for (const Json::Value& method : document["methods"]) {
      if (method["name"] == "window." + command) return method["examples"];
    }
    return {};
  }
  Json::Value document = posted("rpc.discover")["result"];
};

TEST_F(Examples, AreThereOfEveryCommand) {
  for (const CatalogueCommand& command : catalogue()) {
    const Json::Value examples = examplesOf(command.name);
    ASSERT_EQ(examples.size(), 1U) << command.name;
    const Json::Value& params = examples[0]["params"];
    ASSERT_LE(params.size(), command.parameters.size()) << command.name;
    for (Json::ArrayIndex at = 0; at < params.size(); ++at) {
      EXPECT_EQ(params[at]["name"], command.parameters[at].name) << command.name;
    }
  }
}

TEST_F(Examples, AnswerWhatTheySayAfterTheLinesBeforeThem) {
  for (const CatalogueCommand& command : catalogue()) {
    const Json::Value example = examplesOf(command.name)[0];
    posted("tv.reset");
    Connected client(server);
    std::string before;
    for (const std::string& line : exampleOf(command.name)->before) {
      Json::Value params;
      params["line"] = line;
      client.result("tv.run", params);
      before += (before.empty() ? ", after: " : "; ") + line;
    }
    EXPECT_EQ(example["description"], "on the built-in set" + before);
    Json::Value params(Json::arrayValue);
    for (const Json::Value& parameter : example["params"]) params.append(parameter["value"]);
    EXPECT_EQ(client.result("window." + command.name, params), example["result"]["value"]) << command.name;
  }
}

TEST_F(Examples, HaveNumbersWhereTheyFit) {
  EXPECT_EQ(examplesOf("SetChannel")[0]["params"][0], json(R"({"name": "major", "value": 3})"));
  EXPECT_EQ(examplesOf("SetChannelByServiceid")[0]["params"][0],
            json(R"({"name": "serviceId", "value": "1152959734176350309"})"));
  EXPECT_EQ(exampleOf("NoSuchCommand"), nullptr);
}

}  // namespace
}  // namespace virtualtv::rpc

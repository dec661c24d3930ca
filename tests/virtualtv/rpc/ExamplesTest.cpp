// SPDX-License-Identifier: MIT
// The examples in the OpenRPC document.
#include "rpc/Examples.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/Catalogue.h"
#include "json/Write.h"
#include "virtualtv/rpc/JsonSchema.h"
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
    for (const std::string& line : exampleOf("window." + command.name)->before) {
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
  EXPECT_EQ(exampleOf("window.NoSuchCommand"), nullptr);
}

/// A server that has just started, and a client of it.
class Fresh : public RpcTest {
 public:
  void TestBody() override {}
  Json::Value call(const ExampleCall& example) { return client_.result(example.method, example.parameters); }

 private:
  Connected client_{server};
};

/// A result in which everything that varies has a fixed value: ids of sessions, durations, and the addresses, threads
/// and line numbers in messages.
Json::Value steady(const Json::Value& result) {
  std::string text = virtualtv::json::write(result);
  for (const auto& [pattern, stead] :
       {std::pair(R"("[0-9a-f]{16}(-[0-9]+)?")", "\"5e59b1a0c3d7f284$1\""),
        std::pair(R"("duration":[-+.e0-9]+)", "\"duration\":0.125"), std::pair(R"(\b0x[0-9a-f]+)", "0x55d0c8a41e70"),
        std::pair(R"(pid = [0-9]+)", "pid = 139833008090304"), std::pair(R"((LINE=\[|\]\[)[0-9]+\])", "$01100]")}) {
    text = std::regex_replace(text, std::regex(pattern), stead);
  }
  return json(text);
}

/// A result in the form that the file has.
std::string shown(const Json::Value& result) {
  constexpr std::size_t widest = 120;
  const std::string line = virtualtv::json::write(result);
  return line.size() <= widest ? line + "\n" : Json::StyledWriter().write(result);
}

/// When results differ, the corrected file is written to the folder for temporary files.
TEST(MethodExamples, AnswerWhatTheySay) {
  std::unique_ptr<Fresh> fresh;
  std::string wanted;
  int wrong = 0;
  for (const ExampleCall& call : exampleCalls()) {
    if (call.isFirst()) {
      fresh.reset();
      fresh = std::make_unique<Fresh>();
      wanted += "\n";
    }
    ASSERT_TRUE(fresh) << "a session.open is to come first";
    const Json::Value result = steady(fresh->call(call));
    EXPECT_EQ(result, call.result) << call.line;
    wrong += result == call.result ? 0 : 1;
    wanted += "> " + call.line + "\n" + shown(result);
  }
  const auto file = std::filesystem::temp_directory_path() / "examples.methods.txt";
  if (wrong == 0) return;
  std::ofstream(file) << wanted;
  ADD_FAILURE() << "what the calls answer stands in " << file;
}

TEST_F(Examples, AreThereOfEveryMethodAndFitItsSchema) {
  const JsonSchema schema(document["components"]["schemas"]);
  for (const Json::Value& method : document["methods"]) {
    const std::string name = method["name"].asString();
    if (name == "rpc.discover" || name.starts_with("window.execute")) continue;
    ASSERT_EQ(method["examples"].size(), 1U) << name;
    const Json::Value& example = method["examples"][0];
    EXPECT_EQ(schema.findings(method["result"]["schema"], example["result"]["value"]), std::vector<std::string>())
        << name;
    for (const Json::Value& parameter : example["params"]) {
      const auto isIt = [&](const Json::Value& known) { return known["name"] == parameter["name"]; };
      const auto known = std::find_if(method["params"].begin(), method["params"].end(), isIt);
      ASSERT_NE(known, method["params"].end()) << name << ": " << parameter;
      EXPECT_EQ(schema.findings((*known)["schema"], parameter["value"]), std::vector<std::string>()) << name;
    }
  }
}

}  // namespace
}  // namespace virtualtv::rpc

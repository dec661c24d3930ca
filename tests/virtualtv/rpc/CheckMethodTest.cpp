// SPDX-License-Identifier: MIT
// `tv.check`: transcripts sent by clients, which run on a set of their own.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include "net/FilesBeneath.h"
#include "seam/Seam.h"
#include "shell/Files.h"
#include "virtualtv/rpc/RpcTest.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::rpc {
namespace {

class CheckMethod : public RpcTest {
 protected:
  explicit CheckMethod(Options options = {}) : RpcTest(std::move(options)) {}

  static Json::Value transcript(const std::string& text) {
    Json::Value params;
    params["transcript"] = text;
    return params;
  }
  Json::Value check(const std::string& text) { return client.result("tv.check", transcript(text)); }
  void expectPassed(const std::string& text) {
    const Json::Value result = check(text);
    EXPECT_EQ(result["passed"], true) << result["diff"].asString();
    EXPECT_EQ(result["diff"], "");
  }

  Connected client{server};
};

TEST_F(CheckMethod, TellsWhetherATranscriptPasses) {
  expectPassed("# A comment.\n> GetTVMode\nint 1\n> GetChannel_Size\nint 0\n");
  const Json::Value failed = check("> GetTVMode\nint 2\n");
  EXPECT_EQ(failed["passed"], false);
  EXPECT_EQ(failed["diff"],
            "--- transcript\n+++ transcript (printed now)\n@@ -1,2 +1,2 @@\n > GetTVMode\n-int 2\n+int 1\n");
}

TEST_F(CheckMethod, TellsWhatElseFailsOne) {
  const Json::Value idle = check("> .fault vconf_set_int result=-1\n");
  EXPECT_EQ(idle["passed"], false);
  EXPECT_EQ(idle["diff"], "transcript:1: a fault was never hit: vconf_set_int times=1 result=-1\n");
  expectPassed("> .recorded\n> .fault vconf_set_int result=-1\n");
}

TEST_F(CheckMethod, RefusesWhatIsNoTranscript) {
  for (const auto& [text, reason] : {std::pair("", "transcript: there is no '>' line to run"),
                                     {"int 1\n", "transcript:1: output before the first '>' line"}}) {
    const Json::Value refused = client.call("tv.check", transcript(text));
    EXPECT_EQ(codeOf(refused), 1002);
    EXPECT_EQ(reasonOf(refused), reason);
  }
  EXPECT_EQ(codeOf(client.call("tv.check")), -32602);
  EXPECT_EQ(codeOf(client.call("tv.check", transcript(std::string("> GetTVMode\0\nint 1\n", 19)))), 1002);
}

TEST_F(CheckMethod, LeavesTheSetThatIsServedAlone) {
  client.result("events.subscribe", json(R"([["*"]])"));
  client.run("FindChannel", json("[0, 1]"));
  client.result("tv.set", json(R"(["main.source", 17])"));
  client.result("tv.set", json(R"(["latency.IServiceNavigation::GetTvMode", 5])"));
  client.result("tv.fault", json(R"({"operation": "IServiceNavigation::GetTvMode", "result": 0, "times": 1})"));
  client.take();
  clock.advance(std::chrono::hours(1));
  const Json::Value before = client.result("tv.state");
  const Json::Value snapshot = client.result("tv.snapshot");
  const auto engines = device().host().engines();

  expectPassed(
      "> GetTVMode\nint 1\n> GetSource\nint 0\n> .get clock\nclock = 0\n> .fault\nno faults\n> .reset\n"
      "> .engine\nno engine is open\n> SetChannel 3 0\nint 1\n> .trace on\n> GetSource\nint 0\n"
      "call ISourceControl[main#1]::GetSourceState() state=2 -> 1\n"
      "call ISourceControl[main#1]::GetCurrentSourceInfo() source=0 -> 1\n> .trace off\n"
      "> .restart\n> .set region 99\n");
  EXPECT_EQ(client.events().size(), 0U);
  EXPECT_EQ(client.result("tv.state"), before);
  EXPECT_EQ(client.result("tv.snapshot"), snapshot);
  EXPECT_EQ(device().host().engines(), engines);
  EXPECT_EQ(client.run("GetChannel_Size"), 31);
  client.take();
  client.say(R"({"jsonrpc":"2.0","method":"window.GetTVMode"})");
  clock.advance(std::chrono::hours(1));
  EXPECT_GT(client.events().size(), 1U) << "it is heard as before";
  EXPECT_EQ(client.result("tv.faults")["faults"][0]["hits"], 1);
}

TEST_F(CheckMethod, EndsAfterSoManyInputs) {
  std::string inputs;
  for (int input = 0; input < 10'000; ++input) inputs += ">\n";
  EXPECT_EQ(codeOf(client.call("tv.check", transcript(inputs))), 0);
  const Json::Value refused = client.call("tv.check", transcript(inputs + ">\n"));
  EXPECT_EQ(codeOf(refused), 1002);
  EXPECT_EQ(reasonOf(refused), "transcript: more than 10000 inputs, those of files included");
  EXPECT_EQ(client.run("GetTVMode"), 1);
}

TEST_F(CheckMethod, ReachesNoFiles) {
  expectPassed(
      "> .source /etc/hostname\nerror: cannot read /etc/hostname: clients reach no files unless the server is started "
      "with --files\n");
}

class CheckMethodWithFiles : public CheckMethod {
 protected:
  CheckMethodWithFiles() : CheckMethod({.files = std::make_shared<net::FilesBeneath>(folder().path())}) {}
  static test::TemporaryDirectory& folder() {
    static test::TemporaryDirectory made;
    return made;
  }
};

TEST_F(CheckMethodWithFiles, ReachesThoseBeneathTheDirectoryAndOverwritesNone) {
  test::write(folder() / "inner.txt", "> .set region 4\n");
  expectPassed(
      "> .source inner.txt\n> .get region\nregion = 4\n> .snapshot new.json\n> .restore new.json\n"
      "> .snapshot new.json\nerror: cannot write new.json: File exists\n"
      "> .source ../x\nerror: cannot read ../x: it leads out of the directory, or over a link\n");
  EXPECT_NE(shell::readFile(folder() / "new.json").find("\"region\""), std::string::npos);
}

TEST_F(CheckMethodWithFiles, CountsTheInputsOfFilesToo) {
  std::string inputs;
  for (int input = 0; input < 20; ++input) inputs += "> .source many.txt\n";
  test::write(folder() / "many.txt", inputs);
  const Json::Value refused = client.call("tv.check", transcript("> .source many.txt\n"));
  EXPECT_EQ(reasonOf(refused), "transcript: more than 10000 inputs, those of files included");
}

}  // namespace
}  // namespace virtualtv::rpc

// SPDX-License-Identifier: MIT
// Recording what clients do, and replaying it.
#include "shell/Recording.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/Catalogue.h"
#include "set/Knobs.h"
#include "shell/Check.h"
#include "shell/Files.h"
#include "shell/Session.h"
#include "virtualtv/rpc/RpcTest.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::rpc {
namespace {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;

constexpr const char* list =
    "One;Net:474000:B8C23D12G4M64T8Y0:T:27500:101:102=eng@4:0:0:1:1:1:0\n"
    "no channel\n"
    "Zw\xC3\xB6lf;Net:474000:B8C23D12G4M64T8Y0:T:27500:201:202=deu@4:0:0:2:1:1:0\n";

/// A server on a set whose inputs are all recorded.
class Recorded : public RpcTest {
 protected:
  explicit Recorded(Options options = {}) : RpcTest(std::move(options)) {}

  std::string file() const { return (folder / "session.txt").string(); }
  /// Ends the recording. @return the content of its file.
  std::string ended() {
    recording.reset();
    return shell::readFile(file());
  }
  shell::CheckedFile checked(const std::string& name) {
    const device::DeviceAside aside(device().app());
    return shell::checkTranscript(device().app(), name, false);
  }
  void expectPassed(const std::string& name) {
    const shell::CheckedFile result = checked(name);
    std::string findings;
    for (const std::string& finding : result.findings) findings += finding + "\n";
    EXPECT_TRUE(result.passed()) << result.error << result.diff << findings;
  }

  test::TemporaryDirectory folder;
  std::optional<shell::Recording> recording{std::in_place, device(), file(),
                                            [](const std::string& error) { ADD_FAILURE() << error; }};
};

/// Four clients that send random requests of all kinds.
class Crowd {
 public:
  Crowd(unsigned seed, Server& server, ManualClock& clock) : random_(seed), server_(server), clock_(clock) {
    for (std::unique_ptr<Connected>& client : clients_) client = std::make_unique<Connected>(server_);
  }

  void act() {
    using Act = void (Crowd::*)();
    static constexpr std::array<std::pair<int, Act>, 18> acts{{{40, &Crowd::runCommand},
                                                               {6, &Crowd::runAnything},
                                                               {8, &Crowd::typeLine},
                                                               {3, &Crowd::closeEngine},
                                                               {8, &Crowd::turnKnob},
                                                               {8, &Crowd::addFault},
                                                               {3, &Crowd::clearFaults},
                                                               {6, &Crowd::changeSetting},
                                                               {2, &Crowd::importList},
                                                               {2, &Crowd::takeSnapshot},
                                                               {2, &Crowd::restore},
                                                               {2, &Crowd::goBack},
                                                               {1, &Crowd::restart},
                                                               {1, &Crowd::reset},
                                                               {3, &Crowd::sayWhoItIs},
                                                               {3, &Crowd::reconnect},
                                                               {3, &Crowd::post},
                                                               {3, &Crowd::delay}}};
    int total = 0;
    for (const auto& [weight, act] : acts) total += weight;
    int chosen = below(static_cast<std::size_t>(total));
    for (const auto& [weight, act] : acts) {
      chosen -= weight;
      if (chosen < 0) {
        (this->*act)();
        break;
      }
    }
    clock_.advance(10h);  // sends the replies that were held back
  }

  int wentBack = 0;  ///< how often the set has gone back to a command

 private:
  int below(std::size_t count) { return static_cast<int>(random_() % count); }
  template <typename List>
  const auto& any(const List& values) {
    return values[static_cast<std::size_t>(below(values.size()))];
  }
  Connected& client() { return *any(clients_); }
  Json::Value call(const std::string& method, const Json::Value& params = Json::arrayValue) {
    return client().call(method, params);
  }

  /// Values that people and programs may pass anywhere.
  std::string word() {
    static const Words words{"0",  "1",        "2",        "3",     "13",        "-1",       "255",      "4097",
                             "",   "a b",      "it's",     "\"q\"", "back\\x41", "one\ntwo", "\t",       "\r\n",
                             "é",  "日本",     "\x01\x7F", "$'x'",  "> .quit",   "#",        ".restart", "+",
                             "\\", "\xC2\x85", "News",     "eng",   "640",       "360",      "1920",     "2147483648"};
    return any(words);
  }
  std::string operation() {
    return std::string(any(std::vector(seam::operations.begin(), seam::operations.end())).name);
  }
  Json::Value parameters(int most) {
    Json::Value words(Json::arrayValue);
    for (int left = below(static_cast<std::size_t>(most) + 1); left > 0; --left) words.append(word());
    return words;
  }

  void runCommand() {
    std::vector<const CatalogueCommand*> commands;
    for (const CatalogueCommand& command : catalogue()) commands.push_back(&command);
    const CatalogueCommand& command = *any(commands);
    Json::Value given(Json::arrayValue);
    for (std::size_t at = 0; at < command.parameters.size(); ++at) {
      given.append(below(3) == 0 ? Json::Value(word()) : Json::Value(below(40)));
    }
    call("window." + command.name, given);
  }
  void runAnything() {
    Json::Value params;
    params["name"] = below(2) == 0 ? word() : "SetScreenCropRect";
    const bool asList = below(2) == 0;
    params["parameters"] = parameters(asList ? 9 : 4);
    call(asList ? "window.executeWithParamList" : "window.execute", params);
  }
  void typeLine() {
    static const Words lines{".engine second",
                             ".engine main",
                             ".engine 'a:b'",
                             ".engine '#1'",
                             ".reopen",
                             ".close",
                             ".close second",
                             ".app x 'y z'",
                             "GetSource",
                             "FindChannel 0 1",
                             ".set region 7",
                             "SetWindow 1",
                             ".trace on",
                             ".fault clear",
                             ".vconf set k int 5",
                             "GetChannel_Name 3",
                             ".restart",
                             ".set services 3",
                             "Bad 'quote",
                             "SetWindow $'\\x30'",
                             ".fault IServiceNavigation::GetTvMode engine=second nth=2 times=3 result=0"};
    call("tv.run", list(any(lines)));
  }
  /// Closes an engine between a search and a query of its result, which is then gone.
  void closeEngine() {
    Connected& owner = client();
    for (const char* const line : {"FindChannel 0 1", below(2) == 0 ? ".close" : ".reopen", "GetChannel_Size"}) {
      owner.call("tv.run", list(line));
      clock_.advance(10h);
    }
  }
  void turnKnob() {
    static const std::array<std::pair<const char*, const char*>, 14> turns{{{"main.source", "17"},
                                                                            {"main.source", "0"},
                                                                            {"main.source", "-1"},
                                                                            {"pip.service", "#4"},
                                                                            {"main.service", "#9"},
                                                                            {"main.mode", "1,0"},
                                                                            {"isp.present", "off"},
                                                                            {"isp.audio", "256:eng,!257"},
                                                                            {"input.13.plugged", "on"},
                                                                            {"tuner.fade", "90"},
                                                                            {"service.#3.audio", "1:deu,2:eng"},
                                                                            {"service.#2.favourites", "1=1,12=0"},
                                                                            {"service.#5.frame_rate", "unset"},
                                                                            {"country", "banana"}}};
    if (below(4) == 0) return static_cast<void>(call("tv.set", list("service.#3.name", word())));
    const auto& [name, value] = any(turns);
    call("tv.set", list(name, value));
  }
  void delay() { call("tv.set", list("latency." + operation(), std::to_string(below(4) * 100))); }
  void addFault() {
    Json::Value fault;
    fault["operation"] = operation();
    static const Words results{"0", "1", "-1", "null", "throw", "unwritten", "text"};
    fault["result"] = any(results);
    if (below(2) == 0) fault["nth"] = 1 + below(3);
    if (below(2) == 0) fault["times"] = below(3) == 0 ? Json::Value("always") : Json::Value(1 + below(4));
    if (below(4) == 0) fault["window"] = below(2) == 0 ? "main" : "pip";
    if (below(3) == 0) fault["session"] = client().call("session.open")["result"]["session"];
    if (below(4) == 0) {
      fault["operation"] = "IServiceNavigation::GetCurrentService";
      fault["result"] = "1";
      fault["outputs"]["service"] = R"({12=281,16="Zwei\u000ADrei 'é'"})";
    }
    call("tv.fault", fault);
  }
  void clearFaults() { call("tv.clearFaults", below(2) == 0 ? Json::arrayValue : list(1 + below(20))); }
  void changeSetting() {
    const std::string key = below(3) == 0 ? word() : "db/emp/mainsource";
    if (below(4) == 0) return static_cast<void>(call("tv.removeSetting", list(key)));
    call("tv.setSetting", list(key, below(2) == 0 ? Json::Value(word()) : Json::Value(below(60))));
  }
  void importList() {
    Json::Value params;
    params["content"] = below(5) == 0 ? "no list" : rpc::list;
    params["name"] = word();
    if (below(2) == 0) params["format"] = "vdr";
    if (below(2) == 0) params["encoding"] = "ISO-8859-15";
    params["add"] = below(3) != 0;
    call("tv.import", params);
  }
  void takeSnapshot() { snapshot_ = client().call("tv.snapshot")["result"]["snapshot"]; }
  void restore() { call("tv.restore", list(snapshot_)); }
  /// Goes back to one of the last commands, or to a command that has not run.
  void goBack() {
    const Json::Value last = client().call("tv.why")["result"]["command"];
    const std::uint64_t back = static_cast<std::uint64_t>(below(8));
    const std::uint64_t command = last.isNull() || last.asUInt64() <= back ? 1'000'000 : last.asUInt64() - back;
    const Json::Value reply = client().call("tv.goBack", list(Json::UInt64{command}));
    wentBack += reply.isMember("result") ? 1 : 0;
  }
  void restart() { call("tv.restart"); }
  void reset() { call("tv.reset"); }
  void sayWhoItIs() {
    Json::Value who;
    who["appId"] = word();
    if (below(2) == 0) who["widgetId"] = word();
    call("session.open", who);
  }
  void reconnect() {
    std::unique_ptr<Connected>& client = clients_[static_cast<std::size_t>(below(clients_.size()))];
    client.reset();
    client = std::make_unique<Connected>(server_);
  }
  void post() {
    server_.post(R"({"jsonrpc":"2.0","id":1,"method":"window.SetTVMode","params":[1,2]})", std::nullopt,
                 [](const std::optional<std::string>&) {});
  }

  template <typename... Value>
  static Json::Value list(const Value&... value) {
    Json::Value values(Json::arrayValue);
    (values.append(value), ...);
    return values;
  }

  std::mt19937 random_;
  Server& server_;
  ManualClock& clock_;
  std::array<std::unique_ptr<Connected>, 4> clients_;
  Json::Value snapshot_;
};

/// All values of the set that a person can read, in the form of a transcript.
std::string shown(device::Device& device) {
  shell::Session session(device, std::filesystem::path());
  std::string text;
  for (const std::string input : {".get", ".get latency", ".vconf", ".services 1000", ".get service.#3", ".fault"}) {
    text += "> " + input + "\n";
    for (const std::string& line : session.run(input)) text += line + "\n";
  }
  return text;
}

/// The text with the engines named as in the recording.
std::string asRecorded(std::string text, const std::string& recording) {
  const std::string before = "# Engines of session ";
  for (std::size_t at = 0; (at = recording.find(before, at)) != recording.npos; ++at) {
    const std::size_t start = at + before.size();
    const std::string session = recording.substr(start, recording.find(' ', start) - start);
    const std::size_t number = recording.find(" called ", start) + std::string(" called ").size();
    const std::string client = recording.substr(number, recording.find(':', number) - number);
    for (std::size_t found = 0; (found = text.find(session + ":", found)) != text.npos;) {
      text.replace(found, session.size(), client);
    }
  }
  return text;
}

/// The indexes of the lines of a transcript that are output, not inputs or comments.
std::vector<std::size_t> repliesIn(const shell::Lines& lines) {
  std::vector<std::size_t> replies;
  for (std::size_t at = 0; at < lines.size(); ++at) {
    if (!lines[at].starts_with('>') && !lines[at].starts_with('#')) replies.push_back(at);
  }
  return replies;
}

class RecordedCrowd : public Recorded, public ::testing::WithParamInterface<unsigned> {
 protected:
  RecordedCrowd() : Recorded({.waits = GetParam() % 2 == 0}) {}
};

TEST_P(RecordedCrowd, IsReplayedAndAnAlteredReplyFails) {
  {
    Crowd crowd(GetParam(), server, clock);
    for (int act = 0; act < 400; ++act) crowd.act();
    EXPECT_GT(crowd.wentBack, 0);
  }
  const std::string recorded = ended();
  const std::string whole = recorded + asRecorded(shown(device()), recorded);
  const std::string name = (folder / "whole.txt").string();
  test::write(name, whole);
  expectPassed(name);

  std::mt19937 random(GetParam());
  for (int alteration = 0; alteration < 5; ++alteration) {
    shell::Lines lines = shell::splitLines(recorded);
    const std::vector<std::size_t> replies = repliesIn(lines);
    ASSERT_GT(replies.size(), 100U);
    lines[replies[random() % replies.size()]] += "1";
    std::string altered;
    for (const std::string& line : lines) altered += line + "\n";
    test::write(name, altered);
    EXPECT_FALSE(checked(name).passed());
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RecordedCrowd, ::testing::Range(1U, 9U));

}  // namespace
}  // namespace virtualtv::rpc

// SPDX-License-Identifier: MIT
// Sends messages of any bytes to the JSON-RPC server, each separately as a POST. The answer must be JSON in the right
// form, must come at once or after the set's delay, and the set must still answer afterwards.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/support/Demand.h"
#include "json/Read.h"
#include "rpc/Server.h"
#include "support/bench/Bench.h"

namespace {

using fuzz::demand;
using virtualtv::rpc::Options;

/// The tasks that wait for a delay. Time passes only when these run.
std::vector<std::function<void()>>& waiting() {
  static std::vector<std::function<void()>> tasks;
  return tasks;
}

void advanceTime() {
  for (int round = 0; round < 1000 && !waiting().empty(); ++round) {
    for (const auto& task : std::exchange(waiting(), {})) task();
  }
}

void demandResponse(const Json::Value& response) {
  demand(response.isObject() && response["jsonrpc"] == "2.0" && response.isMember("id"), "a response has no form");
  demand(response.isMember("result") != response.isMember("error"), "a response has a result or an error");
  if (!response.isMember("error")) return;
  const Json::Value& error = response["error"];
  demand(error["code"].isInt() && error["message"].isString(), "an error has no form");
  demand(error["data"]["reason"].isString() && !error["data"]["reason"].asString().empty(), "an error has no reason");
}

void demandMessage(const std::string& text) {
  const Json::Value message = virtualtv::json::read(text);
  if (message.isArray()) {
    for (const Json::Value& response : message) demandResponse(response);
    return;
  }
  if (message["method"] == "event") return demand(message["params"]["number"].isUInt64(), "an event has no number");
  demandResponse(message);
}

class Outlet : public virtualtv::rpc::Outlet {
 public:
  void send(std::shared_ptr<const std::string> message) override { demandMessage(*message); }
  std::size_t unsent() const override { return 0; }
  void cutOff() override {}
};

class World {
 public:
  World() : server_(bench_.device(), options()) { bench_.logNoMore(); }
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  void connected(std::string_view message) {
    Outlet outlet;
    const auto client = server_.connect(outlet, std::nullopt);
    bool isDone = false;
    client->take(message, [&] { isDone = true; });
    advanceTime();
    demand(isDone, "a message is not dealt with");
  }

  void posted(std::string_view message) {
    int answers = 0;
    server_.post(message, std::nullopt, [&](const std::optional<std::string>& reply) {
      ++answers;
      demand(reply.has_value(), "a request is refused for lack of a session");
      if (!reply->empty()) demandMessage(*reply);
    });
    advanceTime();
    demand(answers == 1, "a request is answered " + std::to_string(answers) + " times");
  }

  /// Resets everything, which takes far longer than most messages.
  void renew() {
    bench_.device().clearFaults();
    if (bench_.device().revision() == fresh_) return;
    bench_.device().reset();
    fresh_ = bench_.device().revision();
  }

 private:
  static Options options() {
    Options options;
    options.after = [](auto, std::function<void()> task) { waiting().push_back(std::move(task)); };
    return options;
  }

  support::Bench bench_;
  std::uint64_t fresh_ = bench_.device().revision();
  virtualtv::rpc::Server server_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  const std::string_view message(reinterpret_cast<const char*>(data), size);
  world.connected(message);
  world.posted(message);
  world.renew();
  return 0;
}

// SPDX-License-Identifier: MIT
// Runs commands under valgrind's callgrind, which counts the instructions of each. Without callgrind nothing is
// counted. With the argument `served` the commands run beside a server without clients; with `calls` they run as calls
// to that server.
#include <cstddef>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "rpc/Server.h"
#include "support/Counted.h"
#include "support/Television.h"

namespace {

constexpr std::size_t services = 200;
constexpr int warming = 3;
constexpr int counted = 10;

struct Run {
  const char* label = "";
  const char* command = "";
  const char* first = "";
  const char* second = "";
};

/// The order matters: a command depends on the state that earlier commands leave.
constexpr Run runs[] = {
    {"a name that no command has", "GetNothing"},
    {"GetSource", "GetSource"},
    {"GetSourceState", "GetSourceState"},
    {"GetState_Show", "GetState_Show"},
    {"SetChannel", "SetChannel", "1", "7"},
    {"GetCurrentChannel_Major", "GetCurrentChannel_Major"},
    {"GetCurrentChannel_Name", "GetCurrentChannel_Name"},
    {"GetCurrentChannelInfo", "GetCurrentChannelInfo"},
    {"FindChannel, 200 services", "FindChannel", "0", "1"},
    {"GetChannel_Major", "GetChannel_Major", "150"},
    {"GetChannel_Name", "GetChannel_Name", "150"},
    {"GetFullChannelList, 200 services", "GetFullChannelList"},
    {"GetMultiAudioInfo", "GetMultiAudioInfo"},
    {"GetResolutionDetail", "GetResolutionDetail"},
    {"SetSource to an input", "SetSource", "15"},
    {"SetSource to the tuner", "SetSource", "0"},
};

void run(bench::Television& television, const Run& run) {
  const std::string command = run.command;
  const std::string first = run.first;
  const std::string second = run.second;
  bench::count(run.label, warming, counted, [&] { television.execute(command, first, second); });
}

/// Discards everything sent to it.
class Outlet : public virtualtv::rpc::Outlet {
 public:
  void send(std::shared_ptr<const std::string> message) override { last_ = std::move(message); }
  std::size_t unsent() const override { return 0; }
  void cutOff() override {}

  const std::string& last() const { return *last_; }

 private:
  std::shared_ptr<const std::string> last_;
};

struct Request {
  const char* label = "";
  const char* message = "";
};

constexpr Request requests[] = {
    {"a call of GetTVMode", R"({"jsonrpc":"2.0","id":1,"method":"window.GetTVMode"})"},
    {"a call of SetChannel", R"({"jsonrpc":"2.0","id":2,"method":"window.SetChannel","params":[1,7]})"},
    {"a call of GetFullChannelList, 200 services", R"({"jsonrpc":"2.0","id":3,"method":"window.GetFullChannelList"})"},
    {"a call of tv.set", R"({"jsonrpc":"2.0","id":4,"method":"tv.set","params":{"name":"region","value":"5"}})"},
};
constexpr const char* subscription =
    R"({"jsonrpc":"2.0","id":5,"method":"events.subscribe","params":[["command","service"]]})";
constexpr Request told{"a call of SetChannel, of which the client is told", requests[1].message};

void call(virtualtv::device::Device& device, virtualtv::rpc::Client& client, const Outlet& outlet,
          const Request& request) {
  bench::count(request.label, warming, counted, [&] {
    client.take(request.message, [] {});
    device.loop().turn();
  });
  if (outlet.last().find("\"result\"") == std::string::npos) throw std::runtime_error(outlet.last());
}

void runCalls(virtualtv::device::Device& device, virtualtv::rpc::Server& server) {
  Outlet outlet;
  const auto client = server.connect(outlet, std::nullopt);
  for (const Request& request : requests) call(device, *client, outlet, request);
  client->take(subscription, [] {});
  call(device, *client, outlet, told);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::string_view wish = argc == 2 ? argv[1] : "";
    bench::Television television(services);
    std::optional<virtualtv::rpc::Server> server;
    if (!wish.empty()) server.emplace(television.device(), virtualtv::rpc::Options());
    if (wish == "calls") {
      runCalls(television.device(), *server);
    } else {
      for (const Run& one : runs) run(television, one);
    }
    return 0;
  } catch (const std::exception& exception) {
    std::cerr << "bench_instructions: " << exception.what() << '\n';
    return 1;
  }
}

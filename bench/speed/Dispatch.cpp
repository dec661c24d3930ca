// SPDX-License-Identifier: MIT
// A whole command that makes one call to the set, compared with the same call through a JSON-RPC dispatcher.
#include <benchmark/benchmark.h>
#include <jsonrpccpp/server.h>
#include <jsonrpccpp/server/abstractserverconnector.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "support/Television.h"
#include "tvservice/ISourceControl.h"
#include "tvservice/TVServiceAPI.h"

namespace {

constexpr const char* command = "GetSourceState";
constexpr std::size_t services = 100;

void execute(benchmark::State& state) {
  bench::Television& television = bench::Television::with(services);
  if (television.callsOf(command) != 1) throw std::runtime_error("the command does not make one call");
  const std::string name = command;
  for (auto _ : state) benchmark::DoNotOptimize(television.execute(name));
}

/// A connector for requests from this program itself.
class Connector : public jsonrpc::AbstractServerConnector {
 public:
  bool StartListening() override { return true; }
  bool StopListening() override { return true; }
  bool SendResponse(const std::string& response, void*) override {
    response_ = response;
    return true;
  }

  const std::string& answer(const std::string& request) {
    OnRequest(request);
    return response_;
  }

 private:
  std::string response_;
};

/// A server with the call as its procedure.
class Server : public jsonrpc::AbstractServer<Server> {
 public:
  explicit Server(jsonrpc::AbstractServerConnector& connector) : AbstractServer(connector, jsonrpc::JSONRPC_SERVER_V2) {
    TVServiceAPI::CreateSourceControl(PROFILE_MAIN, 0, &control_);
    bindAndAddMethod(jsonrpc::Procedure(command, jsonrpc::PARAMS_BY_POSITION, jsonrpc::JSON_INTEGER, nullptr),
                     &Server::sourceState);
  }

 private:
  void sourceState(const Json::Value&, Json::Value& response) {
    int state = -1;
    const int result = control_->GetSourceState(&state);
    response = result == 1 ? state : result;
  }

  ISourceControl* control_ = nullptr;
};

void jsonRpc(benchmark::State& state) {
  bench::Television::with(services);
  Connector connector;
  Server server(connector);
  const std::string request = R"({"jsonrpc":"2.0","id":1,"method":"GetSourceState","params":[]})";
  const std::string response = connector.answer(request);
  if (response.find("\"result\"") == std::string::npos) throw std::runtime_error("the dispatcher answers " + response);
  for (auto _ : state) benchmark::DoNotOptimize(connector.answer(request));
}

BENCHMARK(execute);
BENCHMARK(jsonRpc);

}  // namespace

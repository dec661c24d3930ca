// SPDX-License-Identifier: MIT
// Calls, lists and events over WebSocket, compared with the same bytes through the library's bare server.
#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Caller.h"
#include "Echo.h"
#include "Served.h"

namespace {

using bench::Caller;
using bench::Echo;
using bench::Served;

constexpr std::size_t few = 100;
constexpr std::size_t many = 10'000;
constexpr std::size_t inFlight = 100;
constexpr std::size_t subscribers = 100;
constexpr std::string_view query = R"({"jsonrpc":"2.0","id":1,"method":"window.GetTVMode"})";
constexpr std::string_view answer = R"({"jsonrpc":"2.0","id":1,"result":{"accepted":true,"kind":"int","value":1}})";
constexpr std::string_view list = R"({"jsonrpc":"2.0","id":2,"method":"window.GetFullChannelList"})";
constexpr std::string_view subscribe = R"({"jsonrpc":"2.0","id":3,"method":"events.subscribe","params":[["knob"]]})";
constexpr std::array<std::string_view, 2> knobs{
    R"({"jsonrpc":"2.0","id":4,"method":"tv.set","params":["region","5"]})",
    R"({"jsonrpc":"2.0","id":4,"method":"tv.set","params":["region","6"]})"};

void require(bool isSo, const std::string& what) {
  if (!isSo) throw std::runtime_error(what);
}

/// Alternately sends a message and waits for its answer.
void talk(benchmark::State& state, unsigned short port, std::string_view wanted) {
  Caller caller(port);
  require(caller.call(query) == wanted, "the server answers something else");
  const std::string frame = bench::frameOf(query);
  for (auto _ : state) {
    caller.send(frame);
    benchmark::DoNotOptimize(caller.take());
  }
}

/// Sends many messages at once, and waits for all answers.
void talkMuch(benchmark::State& state, unsigned short port) {
  Caller caller(port);
  std::string frames;
  for (std::size_t count = 0; count < inFlight; ++count) frames += bench::frameOf(query);
  for (auto _ : state) {
    caller.send(frames);
    for (std::size_t count = 0; count < inFlight; ++count) benchmark::DoNotOptimize(caller.take());
  }
}

void servedCall(benchmark::State& state) {
  talk(state, Served::with(few).port(), answer);
}

void echoedCall(benchmark::State& state) {
  const Echo echo;
  talk(state, echo.port(), query);
}

void servedCalls(benchmark::State& state) {
  talkMuch(state, Served::with(few).port());
}

void echoedCalls(benchmark::State& state) {
  const Echo echo;
  talkMuch(state, echo.port());
}

void servedList(benchmark::State& state) {
  Served& served = Served::with(many);
  Caller caller(served.port());
  const std::string frame = bench::frameOf(list);
  for (auto _ : state) {
    caller.send(frame);
    benchmark::DoNotOptimize(caller.take());
  }
}

/// The command alone, then the bytes that the server sends for it.
void sentList(benchmark::State& state) {
  Served& served = Served::with(many);
  Echo echo;
  echo.sendInstead(Caller(served.port()).call(list), false);
  Caller caller(echo.port());
  const std::string frame = bench::frameOf("now");
  for (auto _ : state) {
    served.onDevice([](bench::Television& television) { television.execute("GetFullChannelList"); });
    caller.send(frame);
    benchmark::DoNotOptimize(caller.take());
  }
}

using Callers = std::vector<std::unique_ptr<Caller>>;

Callers connect(unsigned short port) {
  Callers callers;
  while (callers.size() < subscribers) callers.push_back(std::make_unique<Caller>(port));
  return callers;
}

/// A message that sets another value than the last one.
const std::string& change() {
  static const std::array frames{bench::frameOf(knobs[0]), bench::frameOf(knobs[1])};
  static std::size_t turn = 0;
  return frames[++turn % frames.size()];
}

/// Lets one client cause an event, and waits until all others have received it.
void tellAll(benchmark::State& state, Caller& causing, const Callers& told) {
  for (auto _ : state) {
    causing.send(change());
    for (const auto& caller : told) benchmark::DoNotOptimize(caller->take());
    benchmark::DoNotOptimize(causing.take());
  }
}

void servedEvent(benchmark::State& state) {
  Caller causing(Served::with(few).port());
  const Callers told = connect(Served::with(few).port());
  for (const auto& caller : told) {
    require(caller->call(subscribe).find("\"result\"") != std::string::npos, "the server lets nobody subscribe");
  }
  tellAll(state, causing, told);
}

void sentEvents(benchmark::State& state) {
  Echo echo;
  const Callers told = connect(echo.port());
  constexpr std::string_view text =
      R"({"jsonrpc":"2.0","method":"event","params":{"after":"6","before":"5","name":"region","number":1000,)"
      R"("revision":1000,"topic":"knob"}})";
  echo.sendInstead(std::string(text), true);
  Caller causing(echo.port());
  tellAll(state, causing, told);
}

BENCHMARK(servedCall)->UseRealTime();
BENCHMARK(echoedCall)->UseRealTime();
BENCHMARK(servedCalls)->UseRealTime();
BENCHMARK(echoedCalls)->UseRealTime();
BENCHMARK(servedList)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(sentList)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(servedEvent)->UseRealTime();
BENCHMARK(sentEvents)->UseRealTime();

}  // namespace

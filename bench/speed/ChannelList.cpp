// SPDX-License-Identifier: MIT
// The full channel list, compared with the JSON library's writer alone and with a straightforward implementation; and
// the cost per service in a long and in a short list.
#include <benchmark/benchmark.h>
#include <json/json.h>

#include <cstddef>
#include <stdexcept>
#include <string>

#include "PlainList.h"
#include "framework/Reply.h"
#include "support/Television.h"
#include "support/Tree.h"
#include "tvservice/IServiceNavigation.h"
#include "tvservice/TVServiceAPI.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace {

constexpr const char* command = "GetFullChannelList";
constexpr std::size_t many = 10'000;

void whole(benchmark::State& state) {
  const auto services = static_cast<std::size_t>(state.range(0));
  bench::Television& television = bench::Television::with(services);
  const std::string name = command;
  for (auto _ : state) benchmark::DoNotOptimize(television.execute(name));
  state.SetItemsProcessed(static_cast<std::int64_t>(services) * state.iterations());
}

std::string answered() {
  const auto reply = virtualtv::framework::decode(bench::Television::with(many).execute(command));
  if (!reply || reply->kind != virtualtv::framework::Reply::Kind::ascii) throw std::runtime_error("there is no list");
  return reply->text;
}

void writer(benchmark::State& state) {
  const std::string text = answered();
  const Json::Value tree = bench::channelTree(text);
  if (Json::StyledWriter().write(tree) != text) throw std::runtime_error("the writer writes something else");
  for (auto _ : state) benchmark::DoNotOptimize(Json::StyledWriter().write(tree));
}

void plain(benchmark::State& state) {
  using virtualtv::framework::Reply;
  const std::string text = answered();
  IServiceNavigation* navigation = nullptr;
  TVServiceAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &navigation);
  if (bench::plainChannelList(*navigation) != text) throw std::runtime_error("the plain way writes something else");
  std::string reply;
  for (auto _ : state) {
    reply = virtualtv::framework::encode({Reply::Kind::ascii, 0, bench::plainChannelList(*navigation), {}});
    benchmark::DoNotOptimize(reply);
  }
}

BENCHMARK(whole)->Arg(many)->Arg(100)->Arg(100'000)->Name("list")->Unit(benchmark::kMillisecond);
BENCHMARK(writer)->Unit(benchmark::kMillisecond);
BENCHMARK(plain)->Unit(benchmark::kMillisecond);

}  // namespace

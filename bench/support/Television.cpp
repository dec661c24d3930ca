// SPDX-License-Identifier: MIT
#include "support/Television.h"

#include <cstdint>
#include <memory>
#include <stdexcept>

#include "framework/Host.h"
#include "framework/Log.h"
#include "framework/Reply.h"
#include "seam/Seam.h"
#include "services/ChannelType.h"
#include "set/StorageParts.h"
#include "tvservice/TVServiceTypes.h"

namespace bench {

namespace {

using S = TCServiceData;
using virtualtv::framework::Host;

constexpr const char* engineName = "bench";

std::unique_ptr<Television> inMemory;
std::size_t servicesInMemory = 0;

virtualtv::Service service(std::size_t number) {
  constexpr std::size_t servicesAChannel = 12;
  const std::size_t channel = number / servicesAChannel;
  virtualtv::Service service;
  service.numbers = {{S::SERVICE_ID, 10'000'000'000ULL + number},
                     {S::ORIGINAL_NETWORK_ID, 8442},
                     {S::PROGRAM_NUMBER, number % 65'000 + 1},
                     {S::TRANSPORT_STREAM_ID, channel % 65'000 + 1},
                     {S::CHANNEL_TYPE, virtualtv::CHANNEL_TELEVISION},
                     {S::PTC, channel % 130 + 2},
                     {S::MODULATION, 8},
                     {S::SOURCE_ID, number % 65'000 + 1},
                     {S::FREQUENCY, 474'000 + channel % 130 * 8'000},
                     {S::MAJOR, number / 60'000 + 1},
                     {S::MINOR, number % 60'000 + 1},
                     {S::LOCK, 0},
                     {S::ANTENNA_MODE, ANTENNA_TERRESTRIAL}};
  const std::string digits = std::to_string(1'000'000 + number);
  const std::u16string units(digits.begin(), digits.end());
  service.texts[S::CHANNEL_NAME] = u"Made-up " + units;
  service.texts[S::SERVICE_FIELD_110] = uR"({"logo":")" + units + uR"("})";
  return service;
}

}  // namespace

std::vector<virtualtv::Service> services(std::size_t count) {
  std::vector<virtualtv::Service> all;
  for (std::size_t number = 0; number < count; ++number) all.push_back(service(number));
  return all;
}

Television::Television(std::size_t services, const std::filesystem::path& directory)
    : bench_(bench::services(services), directory) {
  bench_.logNoMore();
  if (!bench_.open()) throw std::runtime_error("no engine can be opened");
  Host::of(bench_.app()).execute(virtualtv::framework::engineKey(engineName), [this](kel::CEmpEngineBase& engine) {
    engine_ = &engine;
    return true;
  });
  require(1, "SetWindow", "0");
}

Television& Television::with(std::size_t services) {
  if (inMemory == nullptr || servicesInMemory != services) {
    drop();
    inMemory = std::make_unique<Television>(services);
    servicesInMemory = services;
  }
  return *inMemory;
}

void Television::drop() {
  inMemory.reset();
}

sqlite3* Television::database() {
  return bench_.storage().parts().database.handle();
}

const std::string& Television::execute(const std::string& command, const std::string& first,
                                       const std::string& second) {
  static const std::string none;
  engine_->Execute(reply_, command, first, second, none, none);
  return reply_;
}

void Television::require(int answer, const std::string& command, const std::string& first, const std::string& second) {
  using virtualtv::framework::Reply;
  const std::string expected = virtualtv::framework::encode({Reply::Kind::integer, answer, {}, {}});
  if (execute(command, first, second) == expected) return;
  throw std::runtime_error(command + " answers " + virtualtv::framework::showAnswer(true, reply_));
}

std::size_t Television::callsOf(const std::string& command) {
  std::size_t count = 0;
  {
    const auto calls = bench_.device().subscribe({.calls = true});
    execute(command);
    count = calls->take().happenings.size();
  }
  // The set stops recording calls only after the next call and a turn of its loop, so run a command here.
  execute(command);
  bench_.device().loop().turn();
  return count;
}

}  // namespace bench

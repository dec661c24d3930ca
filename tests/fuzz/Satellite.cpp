// SPDX-License-Identifier: MIT
// Passes any text as the description to SetDVBSIChannelDirectEx. It must be answered. A text that is not an object must
// cause no call to the set. After a reported success, the set's only satellite service must be on screen.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/support/Demand.h"
#include "services/ServiceStore.h"
#include "support/bench/Bench.h"

namespace {

using support::Bench;
using support::Outcome;
using virtualtv::Service;
using Data = TCServiceData;

constexpr std::uint64_t satelliteId = 41203;

std::vector<Service> services() {
  Service onScreen;
  onScreen.numbers = {{Data::SERVICE_ID, 281}, {Data::CHANNEL_TYPE, 9}, {Data::MAJOR, 1}, {Data::ANTENNA_MODE, 0}};
  Service satellite;
  satellite.numbers = {
      {Data::SERVICE_ID, satelliteId}, {Data::CHANNEL_TYPE, 5}, {Data::PTC, 3},   {Data::SYMBOL_RATE, 27500},
      {Data::PROGRAM_NUMBER, 203},     {Data::MODULATION, 18},  {Data::MAJOR, 2}, {Data::MINOR, 1},
      {Data::ANTENNA_MODE, 2}};
  return {onScreen, satellite};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  static Bench bench(services());
  bench.renew();
  bench.open();
  virtualtv::Tv& tv = bench.tv();

  const auto calls = bench.device().subscribe({.calls = true});
  const Outcome outcome = bench.execute("SetDVBSIChannelDirectEx", {text, "0"});
  const bool asked = !calls->take().happenings.empty();

  const bool tuned = outcome.isNumber(1);
  fuzz::demand(tuned || outcome.isNumber(0), "answers " + outcome.shown());
  fuzz::demand(text.starts_with('{') || (!asked && !tuned), "asks the set about what is no object");
  const virtualtv::ServiceKey satellite = tv.services().keyOf(satelliteId).value();
  const bool onScreen = tv.state()[virtualtv::WindowId::main].service == satellite;
  fuzz::demand(tuned == onScreen, tuned ? "has not tuned" : "has tuned, and says that it has not");
  fuzz::demandNothing(bench.unhealthy());
  bench.close();
  return 0;
}

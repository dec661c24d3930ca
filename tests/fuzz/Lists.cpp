// Channel lists of any bytes, read as each format: every service is one that the set can keep, and is kept as it was
// read; every problem names a line of the list and reads as one line.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "fuzz/support/Demand.h"
#include "import/Import.h"
#include "services/ServiceStore.h"
#include "support/bench/Bench.h"
#include "text/Units.h"

namespace {

using fuzz::demand;
using support::Bench;
using virtualtv::Service;
using virtualtv::import::Format;
using virtualtv::import::Result;

constexpr std::size_t longestReason = 400;

void lookAtProblems(const Result& result, std::string_view content) {
  const auto lines = std::count(content.begin(), content.end(), '\n') + 1;
  for (const auto& problem : result.problems) {
    demand(problem.line >= 1 && problem.line <= lines, "a problem in line " + std::to_string(problem.line));
    const bool readable = !problem.reason.empty() && problem.reason.size() < longestReason;
    demand(readable && virtualtv::text::isPrintable(problem.reason), "a reason: " + problem.reason);
  }
}

void lookAtServices(const Result& result) {
  std::set<std::uint64_t> ids;
  for (const Service& service : result.services) {
    const std::uint64_t id = service.numbers.at(TCServiceData::SERVICE_ID);
    demand(id != 0 && id != ~std::uint64_t{0} && ids.insert(id).second, "service id " + std::to_string(id));
    demand(service.numbers.at(TCServiceData::ANTENNA_MODE) <= 2, "an antenna that there is none of");
    demand(!service.texts.at(TCServiceData::CHANNEL_NAME).empty(), "a service without a name");
  }
}

void keep(virtualtv::Tv& tv, const std::vector<Service>& services) {
  tv.import(services, false);
  const auto keys = tv.services().keys();
  demand(keys.size() == services.size(), "not all services are kept");
  for (std::size_t at = 0; at < services.size(); ++at) {
    // Keys count in the order in which the services stand in the list.
    const auto kept = tv.services().read(static_cast<virtualtv::ServiceKey>(at + 1));
    demand(kept == services[at], "a service is kept otherwise than it was read");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view content(reinterpret_cast<const char*>(data), size);
  static Bench bench;
  virtualtv::import::recognise(content);
  for (const Format format : {Format::vdr, Format::dvbv5}) {
    const Result result = virtualtv::import::read(content, format);
    demand(result.format == format, "another format");
    lookAtProblems(result, content);
    lookAtServices(result);
    if (!result.services.empty()) keep(bench.tv(), result.services);
  }
  return 0;
}

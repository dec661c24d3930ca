// SPDX-License-Identifier: MIT
// Reads channel lists of any bytes in some format and encoding. The set must be able to store every service unchanged.
// Importing the list again must change nothing. An export must contain as many services as it reports. Every problem
// must be one line that names its place, and the line number if the format has lines.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "channels/ExportList.h"
#include "fuzz/support/Demand.h"
#include "import/Export.h"
#include "import/Import.h"
#include "services/ServiceStore.h"
#include "support/bench/Bench.h"
#include "text/Units.h"

namespace {

using fuzz::demand;
using support::Bench;
using virtualtv::Service;
using virtualtv::ServiceChanges;
using virtualtv::import::Format;
using virtualtv::import::Problems;
using virtualtv::import::Result;

constexpr std::size_t longestReason = 400;

/// The actions on a list. With all actions on each list, only a tenth as many lists could be tried.
struct Choice {
  const Format& format;
  const char* encoding;
  const Format& exported;
  bool add;  ///< import it again
};

/// The last byte chooses how a list is read. A line feed, the usual end of a list, means that the format is recognised.
/// Any other byte stands for a format, possibly the wrong one, and an encoding. The length of the list chooses the
/// rest.
Choice choiceFor(std::string_view content) {
  constexpr std::array encodings{"", "ISO-8859-2", "CP932"};
  const auto formats = virtualtv::import::formats();
  const std::size_t byte = content.empty() ? 0 : static_cast<unsigned char>(content.back());
  const Format* recognised = virtualtv::import::recognise(content);
  if (recognised == nullptr || byte != '\n') recognised = &formats[byte % formats.size()];
  const Format* exported = &formats[content.size() / 2 % formats.size()];
  if (!virtualtv::import::isWritten(*exported)) exported = &virtualtv::defaultExportFormat();
  const std::size_t encoding = byte == '\n' ? 0 : byte / formats.size() % encodings.size();
  return {*recognised, encodings.at(encoding), *exported, content.size() % 2 == 0};
}

void lookAtProblems(const Problems& problems, std::string_view content) {
  const auto lines = std::count(content.begin(), content.end(), '\n') + 1;
  demand(problems.kept().size() == std::min(problems.count(), Problems::mostKept), "problems are lost");
  demand(problems.unread() <= problems.count(), "more is unread than told");
  for (const auto& problem : problems.kept()) {
    demand(!problem.line || (problem.line >= 1 && problem.line <= lines), "a problem at " + problem.at);
    demand(!problem.at.empty(), "a problem without a place");
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
  tv.removeServices();
  demand(tv.import(services, false) == ServiceChanges{services.size(), 0, 0}, "not all services are added");
  demand(tv.services().keys().size() == services.size(), "not all services are kept");
  for (std::size_t at = 0; at < services.size(); ++at) {
    // Keys are numbered in the order of the list.
    const auto kept = tv.services().read(static_cast<virtualtv::ServiceKey>(at + 1));
    demand(kept == services[at], "a service is kept otherwise than it was read");
  }
}

/// Requires that an export can be read, and contains as many services as it reports.
void exportAs(const Format& format, const std::vector<Service>& services) {
  virtualtv::import::Exporter exporter(format);
  for (const Service& service : services) exporter.add(service);
  const virtualtv::import::Exported exported = exporter.finish();
  demand(exported.services + exported.leftOut == services.size(), "services are neither exported nor left out");
  const Result again = virtualtv::import::read(exported.content, format);
  demand(again.services.size() == exported.services, "an export has another number of services than told");
  demand(again.problems.unread() == 0, "an export has what can't be read");
}

void importAgain(virtualtv::Tv& tv, const std::vector<Service>& services, bool add) {
  const auto last = static_cast<virtualtv::ServiceKey>(services.size());
  tv.tune(virtualtv::WindowId::main, last);
  tv.setFavouritesOf(last, {{3, true}});
  demand(tv.import(services, add) == ServiceChanges{}, "the same list again changes services");
  demand(tv.state()[virtualtv::WindowId::main].service == last, "the service on screen is lost");
  demand(tv.services().read(last)->favourites.contains(3), "a favourite is lost");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view content(reinterpret_cast<const char*>(data), size);
  static Bench bench;
  const Choice choice = choiceFor(content);
  const Result result = virtualtv::import::read(content, choice.format, choice.encoding);
  lookAtProblems(result.problems, content);
  lookAtServices(result);
  if (result.services.empty()) return 0;
  keep(bench.tv(), result.services);
  importAgain(bench.tv(), result.services, choice.add);
  exportAs(choice.exported, result.services);
  return 0;
}

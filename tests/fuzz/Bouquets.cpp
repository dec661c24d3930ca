// SPDX-License-Identifier: MIT
// Reads directories with a lamedb and bouquets of any bytes. The importer may read only files that are named and in the
// directory, and each of them once. Bouquets may change only the groups and favourites of services. Every problem must
// name a line of a file that was read.
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "fuzz/support/Demand.h"
#include "import/Bouquets.h"
#include "import/Import.h"
#include "support/ListsApart.h"
#include "text/Units.h"

namespace {

using fuzz::demand;
using virtualtv::Service;
using virtualtv::import::Result;
using Files = std::map<std::string, std::string>;

constexpr std::size_t longestReason = 400;

/// Joins the files of a directory to one text.
std::string join(const Files& files) {
  std::set<std::string> asked;
  std::size_t most = 0;
  const auto read = [&](const std::string& name) -> std::optional<std::string> {
    demand(!name.empty() && name != "." && name != ".." && name.find_first_of("/\\") == std::string::npos,
           "it asks for " + name);
    demand(asked.insert(name).second, "it asks twice for " + name);
    const auto found = files.find(name);
    if (found == files.end()) return std::nullopt;
    most += found->second.size() + name.size() + virtualtv::import::joinedFile.size() + 2;
    return found->second;
  };
  const std::optional<std::string> joined = virtualtv::import::joinedLists(read);
  demand(joined.has_value(), "the lamedb is overlooked");
  demand(joined->size() <= most, "what is joined is longer than its files");
  return *joined;
}

Result read(std::string_view content) {
  return virtualtv::import::read(content, *virtualtv::import::formatNamed("lamedb"));
}

void lookAtProblems(const Result& result, const Files& files) {
  for (const auto& problem : result.problems.kept()) {
    const std::string file = problem.at.substr(0, problem.at.rfind(", line "));
    demand(problem.line || files.contains(file), "a problem at " + problem.at);
    const bool readable = !problem.reason.empty() && problem.reason.size() < longestReason;
    demand(readable && virtualtv::text::isPrintable(problem.reason), "a reason: " + problem.reason);
  }
}

void lookAtServices(const Result& whole, const Result& alone, bool hasBouquets) {
  demand(whole.services.size() == alone.services.size(), "bouquets change how many services there are");
  for (std::size_t at = 0; at < whole.services.size(); ++at) {
    const Service& service = whole.services[at];
    const Service& bare = alone.services[at];
    demand(service.numbers == bare.numbers && service.audio == bare.audio, "bouquets change a service");
    demand(bare.group.empty() && bare.favourites.empty(), "a service has a group without bouquets");
    demand(hasBouquets || (service.group.empty() && service.favourites.empty()), "a service has a group of no bouquet");
    demand(service.favourites.empty() || service.favourites == std::map<std::uint8_t, bool>{{1, true}},
           "a service has other favourite groups");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view content(reinterpret_cast<const char*>(data), size);
  Files files = support::listsApart(content);
  const std::string lamedb = files.at("lamedb");
  if (size % 2 == 1) {  // the file may have either name
    files.erase("lamedb");
    files["lamedb5"] = lamedb;
  }
  const Result whole = read(join(files));
  lookAtProblems(whole, files);
  lookAtServices(whole, read(lamedb), files.size() > 1);
  return 0;
}

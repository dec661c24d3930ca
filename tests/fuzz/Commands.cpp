// SPDX-License-Identifier: MIT
// Runs commands with any names and parameters, on a set that answers anything. Each reply must be of a kind that the
// command's row allows, no exception may escape, and afterwards a command on a healthy set must be answered correctly.
#include <cstddef>
#include <cstdint>

#include "Window/Src/Commands.h"
#include "fuzz/support/Demand.h"
#include "fuzz/support/Draw.h"
#include "store/SettingsStore.h"
#include "support/Faults.h"
#include "support/bench/Bench.h"

namespace {

using fuzz::demandNothing;
using fuzz::Draw;
using support::Bench;
using support::Outcome;
using virtualtv::seam::Seam;

constexpr std::size_t mostSteps = 12;
constexpr std::size_t mostListed = 12;

constexpr std::array keys{"db/emp/mainsource",        "db/emp/previousmainsource",  "db/emp/pipsource",
                          "db/emp/previouspipsource", "db/kel/current_source_type", "db/boot/last_service"};
constexpr std::array kinds{"tv-service", "av-service", "isp-service"};

std::string drawName(Draw& draw) {
  std::size_t count = 0;
  const kel::Command* const table = kel::CommandTable(count);
  const std::size_t row = draw.below(count + 1);
  return row < count ? std::string(table[row].name) : draw.text();
}

std::vector<std::string> drawParameters(Draw& draw, std::size_t count) {
  std::vector<std::string> parameters;
  while (parameters.size() < count) parameters.push_back(draw.parameter());
  return parameters;
}

void runCommand(Bench& bench, Draw& draw) {
  const std::string name = drawName(draw);
  demandNothing(support::undocumented(name, bench.execute(name, drawParameters(draw, draw.below(5)))));
}

/// The parameter-list entry accepts one command. It refuses the empty name without a reply, and all other names with
/// -1.
void runListCommand(Bench& bench, Draw& draw) {
  constexpr const char* known = "SetScreenCropRect";
  const std::string name = draw.chance() ? known : drawName(draw);
  const Outcome outcome = bench.executeWithParamList(name, drawParameters(draw, draw.below(mostListed)));
  if (name == known) {
    fuzz::demand(outcome.accepted && outcome.written == outcome.reply.has_value(), name + " " + outcome.shown());
  } else {
    fuzz::demand(outcome.shown() == (name.empty() ? "refused" : "refused int -1"), name + " " + outcome.shown());
  }
}

void setKey(Bench& bench, Draw& draw) {
  const std::string key = draw.of(keys);
  virtualtv::Tv& tv = bench.tv();
  switch (draw.below(4)) {
    case 0:
      tv.setSetting(key, draw.of(kinds));
      break;
    case 1:
      tv.setSetting(key, draw.text());
      break;
    case 2:
      tv.removeSetting(key);
      break;
    default:
      tv.setSetting(key, static_cast<int>(draw.byte()) - 2);
  }
}

void step(Bench& bench, Draw& draw) {
  switch (draw.below(8)) {
    case 0:
      Seam::instance().add(support::oddFault(fuzz::drawFault(draw)));
      break;
    case 1:
      setKey(bench, draw);
      break;
    case 2:
      runListCommand(bench, draw);
      break;
    case 3:
      bench.execute("SetWindow", {draw.chance() ? "1" : "0"});
      break;
    default:
      runCommand(bench, draw);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Draw draw(data, size);
  static Bench bench;
  bench.renew();
  if (draw.chance()) bench.showIsp();
  if (draw.chance()) Seam::instance().add(support::oddFault(fuzz::drawFault(draw)));
  if (!bench.open()) fuzz::demand(false, "no engine");
  for (std::size_t steps = 0; steps < mostSteps && !draw.isEmpty(); ++steps) step(bench, draw);
  demandNothing(bench.unhealthy());
  bench.close();
  return 0;
}

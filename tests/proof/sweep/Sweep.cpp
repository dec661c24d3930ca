// SPDX-License-Identifier: MIT
#include "Sweep.h"

#include <algorithm>
#include <map>
#include <stdexcept>

#include "seam/Seam.h"
#include "support/comparison/Ways.h"

namespace sweep {

namespace {

using comparison::faultLine;
using comparison::someWaysOf;
using comparison::waysOf;
using virtualtv::seam::Call;
using virtualtv::seam::Operation;
using virtualtv::seam::Seam;

constexpr std::size_t mostForPairs = 12;
constexpr const char* once = "times=1";
constexpr const char* always = "always";

bool isSame(const TCServiceData& a, const TCServiceData& b) {
  return virtualtv::seam::print(a) == virtualtv::seam::print(b);
}

bool areSame(const model::Engine& a, const model::Engine& b) {
  return a.window == b.window && a.sourceKey == b.sourceKey && a.service == b.service && a.tuner == b.tuner &&
         a.active == b.active && a.main == b.main && a.pip == b.pip &&
         std::equal(a.found.begin(), a.found.end(), b.found.begin(), b.found.end(), isSame);
}

/// The number of a call among the calls of its operation, counted from 1.
std::uint64_t rank(const std::vector<Call>& calls, std::size_t position) {
  std::uint64_t rank = 0;
  for (std::size_t at = 0; at <= position; ++at) {
    if (calls[at].operation == calls[position].operation) ++rank;
  }
  return rank;
}

/// The possible orders of key writes: for a source switch in each window, and for the opening of an engine.
const std::vector<std::vector<std::string>> orders{
    {"db/emp/previousmainsource", "db/kel/current_source_type", "db/emp/mainsource"},
    {"db/emp/previouspipsource"},
    {"db/emp/mainsource", "db/emp/previousmainsource", "db/emp/pipsource"},
};

/// Checks that a command writes keys in one of the orders, and none after a failed write. @return the misplaced write;
/// empty when there is none.
std::string misplacedWrite(const std::vector<Call>& calls) {
  std::vector<std::string> keys;
  bool failed = false;
  for (const Call& call : calls) {
    if (!call.operation->name.starts_with("vconf_set_")) continue;
    if (failed) return "a key is written behind a write that failed: " + comparison::shown(call) + "\n";
    failed = call.result != "0";
    const std::size_t quote = call.arguments.find('"') + 1;
    keys.push_back(call.arguments.substr(quote, call.arguments.find('"', quote) - quote));
  }
  for (const std::vector<std::string>& order : orders) {
    if (keys.size() <= order.size() && std::equal(keys.begin(), keys.end(), order.begin())) return {};
  }
  return "keys are written out of order\n";
}

}  // namespace

void Sweep::enter(const Context& context) {
  pair_.restart(services());
  for (const std::string& line : context.lines) {
    const std::string details = pair_.run(line);
    if (!details.empty()) throw std::runtime_error(context.name + ": " + line + ": " + details);
  }
  set_ = pair_.world().set;
  engine_ = pair_.world().engines.at("main");
  context_ = context;
}

void Sweep::renewEngine() {
  pair_.turnTo(set_);
  std::string details = pair_.run(".reopen");
  for (const std::string& line : context_.engineLines) details += pair_.run(line);
  if (!details.empty()) throw std::runtime_error(context_.name + ": " + details);
  engine_ = pair_.world().engines.at("main");
}

void Sweep::rewind() {
  if (!areSame(pair_.world().engines.at("main"), engine_)) renewEngine();
  pair_.turnTo(set_);
}

void Sweep::command(const Context& context, const std::string& line, Pairs pairs) {
  if (context_.name != context.name) enter(context);
  line_ = line;
  ++figures_.commands;
  const Calls calls = inject({});
  for (std::size_t position = 0; position < calls.size(); ++position) {
    const Operation& operation = *calls[position].operation;
    const std::uint64_t nth = rank(calls, position);
    std::map<std::string, Calls> underOne;
    for (const std::string& words : waysOf(operation)) {
      underOne[words] = inject({faultLine(operation, nth, once, words)});
      inject({faultLine(operation, nth, always, words)});
    }
    if (pairs == Pairs::none || calls.size() > mostForPairs) continue;
    for (const std::string& words : pairs == Pairs::all ? waysOf(operation) : someWaysOf(operation)) {
      sweepPairs(position, faultLine(operation, nth, once, words), underOne.at(words), pairs);
    }
  }
}

/// The second fault hits a call after the first fault's.
void Sweep::sweepPairs(std::size_t position, const std::string& first, const Calls& calls, Pairs pairs) {
  for (std::size_t next = position + 1; next < calls.size(); ++next) {
    const Operation& operation = *calls[next].operation;
    for (const std::string& words : pairs == Pairs::all ? waysOf(operation) : someWaysOf(operation)) {
      inject({first, faultLine(operation, rank(calls, next), once, words)});
    }
  }
}

Sweep::Calls Sweep::inject(const Faults& faults) {
  rewind();
  for (const std::string& fault : faults) pair_.run(fault, comparison::Depth::state);
  std::string details = pair_.run(line_);
  Calls calls = pair_.calls();
  details += misplacedWrite(calls);
  bool allHit = !faults.empty();
  for (const virtualtv::seam::Fault& fault : Seam::instance().faults()) {
    if (fault.hits > 0) continue;
    allHit = false;
    details += "a fault is never hit: " + virtualtv::seam::describe(fault) + "\n";
  }
  if (allHit) ++figures_.runs;
  pair_.run(".fault clear", comparison::Depth::state);
  for (const std::string& healthy : {line_, std::string("GetSource 0")}) {
    if (details.empty()) details = pair_.run(healthy);
  }
  if (!details.empty()) note(faults, details);
  return calls;
}

/// After a deviation the model's state is no longer that of the set, so both start again.
void Sweep::note(const Faults& faults, const std::string& details) {
  ++figures_.deviations;
  if (reports_.size() < mostReports_) {
    std::string report = "on " + context_.name + ":\n";
    for (const std::string& fault : faults) report += "> " + fault + "\n";
    reports_.push_back(report + "> " + line_ + "\n" + details);
  }
  enter(context_);
}

}  // namespace sweep
